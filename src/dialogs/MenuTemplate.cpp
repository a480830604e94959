// Menu templates of the module: popups by position, entries by id with their catalog keys.
#include "MenuTemplate.h"

#include "settings/cMsgCatalog.h"
#include "vars/QtText.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

bool parseMenuTemplate(const QByteArray& json, QVector<MenuPopup>& out, QString* error) {
    auto fail = [error](const QString& text) {
        if (error)
            *error = text;
        return false;
    };
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (document.isNull())
        return fail(QStringLiteral("menu: %1").arg(parseError.errorString()));
    const QJsonValue popups = document.object().value("popups");
    if (!popups.isArray())
        return fail(QStringLiteral("menu: no popups"));
    QVector<MenuPopup> result;
    for (const QJsonValue& pv : popups.toArray()) {
        const QJsonObject p = pv.toObject();
        MenuPopup popup;
        popup.key = p.value("key").toString();
        popup.text = p.value("text").toString();
        for (const QJsonValue& ev : p.value("entries").toArray()) {
            const QJsonArray e = ev.toArray();
            if (e.size() == 1 && e[0].isString() && !e[0].toString().isEmpty()) {
                MenuEntry place;
                place.place = e[0].toString();
                popup.entries.push_back(place);
                continue;
            }
            if (e.isEmpty() || !e[0].isDouble())
                return fail(QStringLiteral("menu: an entry of %1 has no id").arg(popup.key));
            MenuEntry entry;
            entry.id = e[0].toInt();
            if (!entry.isSeparator()) {
                if (e.size() != 3)
                    return fail(QStringLiteral("menu: entry %1 needs its key and text").arg(entry.id));
                entry.key = e[1].toString();
                entry.text = e[2].toString();
            }
            popup.entries.push_back(entry);
        }
        result.push_back(popup);
    }
    out = result;
    return true;
}

bool loadMenuTemplate(int id, QVector<MenuPopup>& out, QString* error) {
    QFile file(QStringLiteral(":/vardesk/menu%1.json").arg(id));
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("no menu %1").arg(id);
        return false;
    }
    return parseMenuTemplate(file.readAll(), out, error);
}

void fillMenuPlace(QVector<MenuPopup>& popups, const QString& place, const QVector<MenuEntry>& entries) {
    for (MenuPopup& popup : popups) {
        QVector<MenuEntry> filled;
        for (const MenuEntry& e : popup.entries) {
            if (e.isPlace() && e.place == place)
                filled += entries;
            else
                filled.push_back(e);
        }
        popup.entries = filled;
    }
}

const std::string* catalogText(const QString& key) {
    const std::string wanted = stdText(key);
    for (const cMsgCatalog::Entry& entry : cMsgCatalog::Entries())
        if (wanted == entry.key)
            return &(gMsg.*entry.text);
    return nullptr;
}

QString catalogKeyOf(std::string cMsgCatalog::*text) {
    for (const cMsgCatalog::Entry& entry : cMsgCatalog::Entries())
        if (entry.text == text)
            return QString::fromUtf8(entry.key);
    return {};
}
