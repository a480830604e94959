// Menu templates of the module: popups by position, entries by id with their catalog keys.
#pragma once
#include <QString>
#include <QVector>

#include <string>

class cMsgCatalog;

// One entry: id 0 is a separator. key names the catalog text that replaces the template's text. An
// entry with a place name (["orders"] in the template) marks where the module puts the entries of
// one of its tables (fillMenuPlace); a place left unfilled shows nothing.
struct MenuEntry {
    int id = 0;
    QString key;
    QString text;
    QString place;
    bool isSeparator() const { return id == 0 && place.isEmpty(); }
    bool isPlace() const { return !place.isEmpty(); }
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

// Puts entries where popups mark place, in their order, and drops the marks.
void fillMenuPlace(QVector<MenuPopup>& popups, const QString& place, const QVector<MenuEntry>& entries);

// The catalog's text of key, or null for a key the catalog does not have.
const std::string* catalogText(const QString& key);
// The catalog's key of text, a member of cMsgCatalog; empty for a member the catalog does not read.
QString catalogKeyOf(std::string cMsgCatalog::*text);
