// cSysVarList: the chain of records in name order, bulk host reads and writes, and load checks.
#include "cSysVarList.h"

#include "TextHelpers.h"
#include "settings/cMsgCatalog.h"

#include "acedads.h"

#include <string_view>
#include <unordered_set>


cSysVarList::~cSysVarList() { clearAll(); }

bool cSysVarList::addVariable(const std::string& themeField, const std::string& nameField,
                              const std::string& modeField, const std::string& descriptionField,
                              int lineNumber)
{
    auto* record = new cSysVar(this);
    if (!record->parseAvlFields(themeField, nameField, modeField, descriptionField)) {
        delete record;
        return false;
    }
    record->sourceLine = lineNumber;
    cSysVar** link = &first;
    while (*link && compareText((*link)->name, record->name) <= 0)
        link = &(*link)->next;
    record->next = *link;
    *link = record;
    return true;
}

bool cSysVarList::containsName(const std::string& name) const { return findName(name) != nullptr; }

cSysVar* cSysVarList::findName(const std::string& name) const
{
    // The chain is ascending by compareText: past the name's place it cannot stand.
    for (cSysVar* v = first; v; v = v->next) {
        const int order = compareText(v->name, name);
        if (order == 0)
            return v;
        if (order > 0)
            break;
    }
    return nullptr;
}

bool cSysVarList::hasUserEntries() const
{
    for (const cSysVar* v = first; v; v = v->next)
        if (v->inUserList())
            return true;
    return false;
}

void cSysVarList::readAllFromHost()
{
    for (cSysVar* v = first; v; v = v->next)
        v->readFromHost();
}

// The read that follows a load. No value is written back to test whether the host takes it:
// the drawing must stay as it was when the dialog only looked at it, and a value read may not
// be the value stored (a text ends at its first NUL byte, and the host rounds what it takes).
// So a record keeps the mode its description gives, and a host's refusal shows when the user
// sets the variable. isUnprobed is cleared on the records read, as their one look is done.
void cSysVarList::firstReadFromHost()
{
    for (cSysVar* v = first; v; v = v->next)
        if (v->readFromHost())
            v->clearUnprobed();
}

bool cSysVarList::writeMarkedToHost()
{
    for (cSysVar* v = first; v; v = v->next)
        if (v->isMarkedToSet())
            v->writeToHost();
    return true;
}

void cSysVarList::clearAllNewValues()
{
    for (cSysVar* v = first; v; v = v->next)
        v->clearNewValue();
}

void cSysVarList::clearAllSelected()
{
    for (cSysVar* v = first; v; v = v->next)
        v->clearSelected();
}

void cSysVarList::clearAll()
{
    while (first) {
        cSysVar* next = first->next;
        delete first;
        first = next;
    }
    themes.clear();
}

int cSysVarList::purgeUnreadable(ReportList& report)
{
    int removed = 0;
    cSysVar** link = &first;
    while (*link) {
        cSysVar* v = *link;
        if (!v->isUnreadable()) {
            link = &v->next;
            continue;
        }
        *link = v->next;
        report.push_back(formatText("%s %-4d: %s", gMsg.TxSysLoadError6.c_str(), v->sourceLine,
                                    v->name.c_str()));
        delete v;
        ++removed;
    }
    return removed;
}

bool cSysVarList::proofAgainstHost(ReportList& report)
{
    resbuf* names = nullptr;
    if (acedGetSysvarList("*", &names) != RTNORM)
        return true;
    // One set of the list's names, not a walk of the chain for every host variable: with
    // thousands of both the walks took most of the load.
    std::unordered_set<std::string_view> held;
    for (const cSysVar* v = first; v; v = v->next)
        held.insert(v->name);
    for (const resbuf* rb = names; rb; rb = rb->rbnext) {
        if (rb->restype != RTSTR || !rb->resval.rstring)
            continue;
        if (!held.count(rb->resval.rstring))
            report.push_back(
                formatText("%s: %s", gMsg.TxProofError1.c_str(), rb->resval.rstring));
    }
    acutRelRb(names);
    return true;
}
