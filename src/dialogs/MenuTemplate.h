// Menu templates of the module: popups by position, entries by id with their catalog keys.
#pragma once
#include <QString>
#include <QVector>

#include <string>

// One entry: id 0 is a separator. key names the catalog text that replaces the template's text.
struct MenuEntry {
    int id = 0;
    QString key;
    QString text;
    bool isSeparator() const { return id == 0; }
};

struct MenuPopup {
    QString key;
    QString text;
    QVector<MenuEntry> entries;
};

// Parses a menu in the form of menu<id>.json; false, with the reason, for text that is no menu.
bool parseMenuTemplate(const QByteArray& json, QVector<MenuPopup>& out, QString* error = nullptr);
// Menu id of the module's resources; false, with the reason, when it cannot be had.
bool loadMenuTemplate(int id, QVector<MenuPopup>& out, QString* error = nullptr);

// The catalog's text of key, or null for a key the catalog does not have.
const std::string* catalogText(const QString& key);
