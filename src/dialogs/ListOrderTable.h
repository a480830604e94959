// ListOrderEntry: the table of the list's orders: each order's command, tool button, image, menu entry
// and rows.
#pragma once
#include "MenuTemplate.h"
#include "VarListModel.h"
#include "vars/ListModes.h"

#include <span>
#include <string>
#include <vector>

class cMsgCatalog;

// Builds the rows of one order for the records that pass filter.
using RowBuilder = std::vector<ListRow> (*)(const cSysVarList& list, const RowFilter& filter);

// One order of the list with everything that names or builds it. A new order is a ListOrder value
// and one row of the table, with its row builder beside the others in VarListModel.cpp; the main
// dialog takes its menu entry, button, mark and command from the row, and the list's delegate its
// image.
struct ListOrderEntry {
    ListOrder order;
    int command;                        // the main dialog's menu command
    int button;                         // the main dialog's tool button
    int icon;                           // the tool button's image, also the list's image of the order
    RowImage image;                     // where the list keeps that image; the automation reports it
    std::string cMsgCatalog::*menuText; // the menu text, also the button's tool tip
    bool byScope;                       // rows under scope headers: groups and records a level deeper
    RowBuilder rows;
};

// The place in the main dialog's menu template where the orders' entries go.
inline constexpr char kListOrderMenuPlace[] = "orders";

// The orders in the order of their menu entries and tool buttons.
std::span<const ListOrderEntry> listOrderTable();
// The row of order, or null for a value outside the table.
const ListOrderEntry* listOrderEntry(ListOrder order);
// The row whose menu command is command, or null.
const ListOrderEntry* listOrderOfCommand(int command);
// The menu entries of the orders in table order: command, catalog key and the catalog's text.
QVector<MenuEntry> listOrderMenuEntries();
