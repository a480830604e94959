// The one converter between the system's texts, kept in UTF-8, and Qt's text.
#pragma once
#include <QString>

#include <string>

// A catalog, file or record text as Qt's text.
inline QString qs(const std::string& text) {
    return QString::fromStdString(text);
}

// Qt's text (a field, a locale's date) as the system keeps it.
inline std::string stdText(const QString& text) {
    return text.toStdString();
}
