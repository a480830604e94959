// The variables of the session: the values of drawings' and global variables, the rules of
// setting them, and the global ones kept in the profile folder's globals.json.
#include "hostsession.h"

#include "GlobalsFile.h"
#include "SessionState.h"

#include <cmath>
#include <ctime>
#include <filesystem>

namespace fs = std::filesystem;

namespace cadhost {

namespace {

constexpr const char* kGlobalsFile = "globals.json";

} // namespace

VarValue SessionState::valueOf(const VarDef& def, const Document* doc) const {
    VarValue v = def.defaultValue;
    switch (def.computed) {
    case Computed::DwgName:
        v.text = doc ? doc->displayName : "";
        return v;
    case Computed::DwgPrefix: {
        std::string folder;
        if (doc && !doc->path.empty())
            folder = fs::path(doc->path).parent_path().string();
        else {
            std::error_code ec;
            folder = fs::current_path(ec).string();
        }
        if (folder.empty() || folder.back() != '/')
            folder += '/';
        v.text = folder;
        return v;
    }
    case Computed::DwgTitled:
        v.integer = doc && !doc->path.empty() ? 1 : 0;
        return v;
    case Computed::CDate:
    case Computed::Date: {
        timespec ts{};
        clock_gettime(CLOCK_REALTIME, &ts);
        if (def.computed == Computed::Date) {
            // Julian day and fraction, in local time as the host's clock shows it.
            std::tm local{};
            localtime_r(&ts.tv_sec, &local);
            double seconds = static_cast<double>(ts.tv_sec + local.tm_gmtoff) + ts.tv_nsec / 1e9;
            v.real[0] = 2440587.5 + seconds / 86400.0;
            return v;
        }
        std::tm t{};
        localtime_r(&ts.tv_sec, &t);
        double day = (t.tm_year + 1900) * 10000.0 + (t.tm_mon + 1) * 100.0 + t.tm_mday;
        double time = t.tm_hour * 10000.0 + t.tm_min * 100.0 + t.tm_sec;
        long long millis = ts.tv_nsec / 1000000;
        v.real[0] = day + time / 1e6 + static_cast<double>(millis) / 1e9;
        return v;
    }
    case Computed::None:
        break;
    }
    if (def.global) {
        const VarValue* stored = globals.find(def);
        return stored ? *stored : def.defaultValue;
    }
    return doc ? doc->db->variable(def) : def.defaultValue;
}

// Precision and point separator of the current drawing, made usable as the module makes them.
void SessionState::numberFormat(int& precision, char& separator) const {
    precision = 4;
    separator = ' ';
    if (!current)
        return;
    signed char sep = static_cast<signed char>(current->db->dimdsep());
    if (sep >= ' ' && !(sep >= '0' && sep <= '9') && sep != 'E' && sep != 'e')
        separator = static_cast<char>(sep);
    int p = current->db->luprec();
    if (p >= 0)
        precision = p;
}

// Sets a value by the rules; an empty text when taken, else the host's refusal.
std::string SessionState::setValue(const VarDef& def, VarValue value) {
    if (def.isReadOnly())
        return "Variable " + def.name + " is read-only.";
    if (!def.global && !current)
        return "No drawing is open.";
    if (std::string why = admitValue(def, value); !why.empty())
        return why;
    // The saved globals hold UTF-8 text only; a text that could not be saved is refused
    // here, rather than lost, or failing the write, when the globals are saved.
    if (std::string why;
        def.global && def.type == VarType::String && !GlobalsFile::isStorableText(value.text, why))
        return "Variable " + def.name + " cannot take this text: " + why + ".";
    const bool globalChanged = def.global && !(valueOf(def, nullptr) == value);
    tellEditorReactors([&](AcEditorReactor* r) { r->sysVarWillChange(def.name.c_str()); });
    if (def.global) {
        globals.set(def, value);
    } else {
        current->db->setVariable(def, value);
    }
    tellEditorReactors([&](AcEditorReactor* r) { r->sysVarChanged(def.name.c_str(), true); });
    globalsChanged = globalsChanged || globalChanged;
    return {};
}

std::string SessionState::globalsPath() const {
    return (fs::path(profileDir) / kGlobalsFile).string();
}

void SessionState::loadGlobals() {
    if (profileDir.empty() || table.isEmpty())
        return;
    std::vector<std::string> notes;
    VarValues saved;
    GlobalsFile::read(globalsPath(), table, saved, notes);
    for (auto& [name, value] : saved)
        if (const VarDef* def = table.find(name))
            globals.set(*def, std::move(value));
    for (const std::string& note : notes)
        print(note + "\n");
}

// Writes globals.json when a global changed since the last write.
void SessionState::flushGlobals() {
    if (globalsChanged)
        saveGlobals();
}

bool SessionState::saveGlobals() {
    globalsChanged = false;
    if (profileDir.empty() || table.isEmpty())
        return true;
    VarValues values;
    for (const VarDef& def : table.definitions())
        if (def.global && !def.isReadOnly())
            values[def.name] = valueOf(def, nullptr);
    const std::string path = globalsPath();
    std::string why;
    if (!GlobalsFile::write(path, values, why)) {
        print("Cannot save global variables to " + path + ": " + why + ".\n");
        return false;
    }
    return true;
}

HostResult HostSession::loadVariableTable(const std::string& path) {
    VariableTable table;
    std::string report;
    bool read = table.load(path, report);
    if (!read)
        return HostResult::failure(report);
    // Open drawings hold their values by the places of the old table's definitions.
    for (const std::unique_ptr<Document>& doc : d->documents)
        doc->db->rebindVariables(d->table, table);
    d->table = std::move(table);
    d->globals.clear();
    d->loadGlobals();
    if (!report.empty()) {
        report.pop_back();
        return HostResult::failure(report);
    }
    return {};
}

HostResult HostSession::setVariableText(const std::string& name, const std::string& text) {
    const VarDef* def = d->table.find(name);
    if (!def)
        return HostResult::failure("Unknown variable name: " + upperCase(name));
    if (def->isReadOnly())
        return HostResult::failure("Variable " + def->name + " is read-only.");
    int precision;
    char separator;
    d->numberFormat(precision, separator);
    VarValue value;
    std::string message;
    if (!valueFromText(*def, text, separator, value, message))
        return HostResult::failure(message);
    message = d->setValue(*def, value);
    d->flushGlobals();
    return message.empty() ? HostResult{} : HostResult::failure(message);
}

HostResult HostSession::variableText(const std::string& name, std::string& text) const {
    const VarDef* def = d->table.find(name);
    if (!def)
        return HostResult::failure("Unknown variable name: " + upperCase(name));
    if (def->isDrawingVariable() && !d->current)
        return HostResult::failure("No drawing is open.");
    int precision;
    char separator;
    d->numberFormat(precision, separator);
    text = def->name + " = " + valueToText(d->valueOf(*def, d->current), precision, separator);
    return {};
}

} // namespace cadhost

using namespace cadhost;

extern "C" {

int acedGetVar(const char* name, resbuf* result) {
    SessionState& s = sessionState();
    if (!result)
        return RTERROR;
    const VarDef* def = s.table.find(name ? name : "");
    if (!def)
        return RTERROR;
    if (def->isDrawingVariable() && !s.current)
        return RTERROR;
    if (!valueToResbuf(s.valueOf(*def, s.current), *result))
        return RTERROR;
    return RTNORM;
}

int acedSetVar(const char* name, const resbuf* value) {
    SessionState& s = sessionState();
    const VarDef* def = s.table.find(name ? name : "");
    std::string message;
    if (!def) {
        message = "Unknown variable name: " + upperName(name);
    } else if (def->isReadOnly()) {
        message = "Variable " + def->name + " is read-only.";
    } else {
        VarValue v;
        if (!value)
            message = def->name + " needs a value.";
        else if (valueFromResbuf(*def, *value, v, message))
            message = s.setValue(*def, v);
    }
    if (message.empty())
        return RTNORM;
    s.print(message + "\n");
    return RTERROR;
}

int acedGetSysvarList(const char* pattern, resbuf** names) {
    SessionState& s = sessionState();
    if (!names)
        return RTERROR;
    *names = nullptr;
    const char* p = pattern && *pattern ? pattern : "*";
    resbuf* tail = nullptr;
    for (const VarDef& def : s.table.definitions()) {
        if (!acutWcMatchEx(def.name.c_str(), p, true))
            continue;
        resbuf* rb = textResult(def.name);
        if (!rb) {
            acutRelRb(*names);
            *names = nullptr;
            return RTERROR;
        }
        (tail ? tail->rbnext : *names) = rb;
        tail = rb;
    }
    return *names ? RTNORM : RTERROR;
}

} // extern "C"
