// ListOrderEntry: the table of the list's orders and its look-ups.
#include "ListOrderTable.h"

#include "settings/cMsgCatalog.h"
#include "vars/QtText.h"

namespace {

// The menu entries and tool buttons of the orders stand together in the main dialog's tool bar, in this
// order.
const ListOrderEntry kListOrders[] = {
    {ListOrder::Letter, 8038, 7010, 1072, RowImage::Letter, &cMsgCatalog::MnSortLetter, false, rowsByLetter},
    {ListOrder::Theme, 8039, 7011, 1073, RowImage::Theme, &cMsgCatalog::MnSortTheme, false, rowsByTheme},
    {ListOrder::ScopeLetter, 8040, 7012, 1110, RowImage::ScopeLetter, &cMsgCatalog::MnSortGlobeA, true,
     rowsByScopeThenLetter},
    {ListOrder::ScopeTheme, 8041, 7013, 1111, RowImage::ScopeTheme, &cMsgCatalog::MnSortGlobeT, true,
     rowsByScopeThenTheme},
};

} // namespace

std::span<const ListOrderEntry> listOrderTable() {
    return kListOrders;
}

const ListOrderEntry* listOrderEntry(ListOrder order) {
    for (const ListOrderEntry& entry : kListOrders)
        if (entry.order == order)
            return &entry;
    return nullptr;
}

const ListOrderEntry* listOrderOfCommand(int command) {
    for (const ListOrderEntry& entry : kListOrders)
        if (entry.command == command)
            return &entry;
    return nullptr;
}

QVector<MenuEntry> listOrderMenuEntries() {
    QVector<MenuEntry> entries;
    for (const ListOrderEntry& entry : kListOrders)
        entries.push_back({entry.command, catalogKeyOf(entry.menuText), qs(gMsg.*entry.menuText), {}});
    return entries;
}
