// cSysVarList: the chain of records in name order, bulk host reads and writes, and load checks.
#include "cSysVarList.h"

#include "settings/cMsgCatalog.h"
#include "TextHelpers.h"

#include "acedads.h"

#include <iterator>
#include <string_view>

cSysVarList::~cSysVarList() {
    clearAll();
}

bool cSysVarList::addVariable(const std::string& themeField, const std::string& nameField,
                              const std::string& modeField, const std::string& descriptionField,
                              int lineNumber) {
    auto* record = new cSysVar(this);
    if (!record->parseAvlFields(themeField, nameField, modeField, descriptionField)) {
        delete record;
        return false;
    }
    record->sourceLine = lineNumber;
    // std::string orders as compareText does: bytes, unsigned. The record goes behind the last one
    // whose name is less than or equal to its own, in the chain and in the index alike.
    const auto behind = m_byName.upper_bound(record->name);
    cSysVar** link = behind == m_byName.begin() ? &first : &std::prev(behind)->second->next;
    record->next = *link;
    *link = record;
    m_byName.emplace_hint(behind, record->name, record);
    return true;
}

bool cSysVarList::containsName(const std::string& name) const {
    return findName(name) != nullptr;
}

cSysVar* cSysVarList::findName(const std::string& name) const {
    const auto found = m_byName.lower_bound(name);
    return found != m_byName.end() && found->first == name ? found->second : nullptr;
}

bool cSysVarList::hasUserEntries() const {
    for (const cSysVar* v = first; v; v = v->next)
        if (v->inUserList())
            return true;
    return false;
}

void cSysVarList::readAllFromHost() {
    for (cSysVar* v = first; v; v = v->next)
        v->readFromHost();
}

// The read that follows a load. No value is written back to test whether the host takes it:
// the drawing must stay as it was when the dialog only looked at it, and a value read may not
// be the value stored (a text ends at its first NUL byte, and the host rounds what it takes).
// So a record keeps the mode its description gives, and a host's refusal shows when the user
// sets the variable. isUnprobed is cleared on the records read, as their one look is done.
void cSysVarList::firstReadFromHost() {
    for (cSysVar* v = first; v; v = v->next)
        if (v->readFromHost())
            v->clearUnprobed();
}

bool cSysVarList::writeMarkedToHost() {
    for (cSysVar* v = first; v; v = v->next)
        if (v->isMarkedToSet())
            v->writeToHost();
    return true;
}

void cSysVarList::clearAllNewValues() {
    for (cSysVar* v = first; v; v = v->next)
        v->clearNewValue();
}

void cSysVarList::clearAllSelected() {
    for (cSysVar* v = first; v; v = v->next)
        v->clearSelected();
}

void cSysVarList::clearAll() {
    while (first) {
        cSysVar* next = first->next;
        delete first;
        first = next;
    }
    m_byName.clear();
    themes.clear();
}

void cSysVarList::unindex(const cSysVar* record) {
    auto [at, end] = m_byName.equal_range(record->name);
    while (at != end && at->second != record)
        ++at;
    if (at != end)
        m_byName.erase(at);
}

int cSysVarList::purgeUnreadable(ReportList& report) {
    int removed = 0;
    cSysVar** link = &first;
    while (*link) {
        cSysVar* v = *link;
        if (!v->isUnreadable()) {
            link = &v->next;
            continue;
        }
        *link = v->next;
        unindex(v);
        report.push_back(
            formatText("%s %-4d: %s", gMsg.TxSysLoadError6.c_str(), v->sourceLine, v->name.c_str()));
        delete v;
        ++removed;
    }
    return removed;
}

bool cSysVarList::proofAgainstHost(ReportList& report) {
    resbuf* names = nullptr;
    if (acedGetSysvarList("*", &names) != RTNORM)
        return true;
    for (const resbuf* rb = names; rb; rb = rb->rbnext) {
        if (rb->restype != RTSTR || !rb->resval.rstring)
            continue;
        if (!m_byName.contains(std::string_view(rb->resval.rstring)))
            report.push_back(formatText("%s: %s", gMsg.TxProofError1.c_str(), rb->resval.rstring));
    }
    acutRelRb(names);
    return true;
}
