// Benchmarks of the variable list: the load step, Set all, and user list files written and read.
#include "BenchHost.h"
#include "Benchmarks.h"

#include "dialogs/main/LoadStep.h"
#include "frame/cContext.h"
#include "frame/cDocCntx.h"
#include "settings/cMsgCatalog.h"

#include <arxheaders.h>
#include <hostsession.h>

#include <benchmark/benchmark.h>

#include <exception>
#include <memory>
#include <string>

namespace bench {

namespace {

std::string nameOf(const char* measure, int size) {
    return std::string(measure) + "/" + std::to_string(size);
}

// One of two new values (round 0 or 1) that the host takes for most records of its kind; the
// rest are refused, as some typed values are. The rounds differ, so that each Set all changes
// what it sets; a string keeps its text.
std::string newValueText(const cSysVar& record, int round) {
    switch (record.valueType) {
    case ValueType::Real:
        return round ? "1.5" : "2.5";
    case ValueType::Point2d:
        return round ? "2 1" : "1 2";
    case ValueType::Point3d:
        return round ? "3 2 1" : "1 2 3";
    case ValueType::LongInt:
        return round ? "2000" : "1000";
    case ValueType::String: {
        std::string text;
        record.editText(text);
        return text;
    }
    default:
        return round ? "0" : "1";
    }
}

// Every changeable record gets a new value; all are put in the user list and marked to set.
void giveNewValues(cSysVarList& list, int round) {
    for (cSysVar* v = list.first; v; v = v->next) {
        if (!v->isReadOnly())
            v->applyEditText(newValueText(*v, round));
        v->setInUserList();
        v->setMarkedToSet();
    }
}

void forgetNewValues(cSysVarList& list) {
    for (cSysVar* v = list.first; v; v = v->next) {
        v->clearMarkedToSet();
        v->clearSetSucceeded();
        v->clearSetFailed();
    }
    list.clearAllNewValues();
}

// The load step on an empty list: the file read, the first read and probe of every value, the
// checks against the host and the error log when there is something to log.
void loadStep(benchmark::State& state, int size) {
    std::unique_ptr<cDocCntx> context;
    try {
        workspace(size); // the host with the table and a drawing
        context = std::make_unique<cDocCntx>(cadhost::HostSession::instance().currentDocument());
        context->avlFilePath = dataSet(size).avlPath;
        context->CaptureNumberFormat(acdbHostApplicationServices()->workingDatabase());
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
        return;
    }
    int records = 0, logged = 0;
    for (auto _ : state) {
        state.PauseTiming();
        context->varList.clearAll();
        context->errorCount = 0;
        context->unaccountedVars.clear();
        ReportList errorLines;
        RunCode runCode = RunCode::Idle;
        state.ResumeTiming();
        runLoadStep(*context, errorLines, runCode);
        logged = context->errorCount;
    }
    for (const cSysVar* v = context->varList.first; v; v = v->next)
        ++records;
    state.counters["records"] = records;
    state.counters["logged"] = logged;
}

// Set all: every marked record written to the host, then every record read back. Each round
// sets other values than the last, as a user's new values differ from the drawing's.
void setAll(benchmark::State& state, int size) {
    Workspace* w = workspaceFor(state, size);
    if (!w)
        return;
    cSysVarList& list = w->context->varList;
    static int round = 0; // goes on across runs: a repeated run must not set what the last one did
    for (auto _ : state) {
        state.PauseTiming();
        giveNewValues(list, round);
        round = 1 - round;
        state.ResumeTiming();
        list.writeMarkedToHost();
        list.readAllFromHost();
    }
    int taken = 0, refused = 0;
    for (const cSysVar* v = list.first; v; v = v->next) {
        taken += v->setSucceeded();
        refused += v->setFailed();
    }
    state.counters["taken"] = taken;
    state.counters["refused"] = refused;
    forgetNewValues(list);
}

void writeUserList(benchmark::State& state, int size) {
    Workspace* w = workspaceFor(state, size);
    if (!w)
        return;
    cSysVarList& list = w->context->varList;
    giveNewValues(list, 0);
    const std::string folder = w->profile + "/";
    bool written = true;
    for (auto _ : state)
        written = list.writeUserFile(folder, "bench.var", false) && written;
    if (!written)
        state.SkipWithError("the user list file could not be written");
    state.counters["entries"] = w->recordCount();
    forgetNewValues(list);
}

void readUserList(benchmark::State& state, int size) {
    Workspace* w = workspaceFor(state, size);
    if (!w)
        return;
    cSysVarList& list = w->context->varList;
    giveNewValues(list, 0);
    list.userDirectory = w->profile + "/";
    list.userFileName = "bench-read.var";
    if (!list.writeUserFile(list.userDirectory, list.userFileName, false)) {
        state.SkipWithError("the user list file could not be written");
        return;
    }
    UserListRead result;
    for (auto _ : state) {
        state.PauseTiming();
        list.clearAllNewValues();
        ReportList report;
        state.ResumeTiming();
        result = list.readUserFile(report);
    }
    int entries = 0;
    for (const cSysVar* v = list.first; v; v = v->next)
        entries += v->inUserList();
    if (!result.isRead() || result.unknownNames != 0)
        state.SkipWithError("the user list file was not read back whole");
    state.counters["entries"] = entries;
    forgetNewValues(list);
}

// The catalog loaded from a file of about megabytes MB whose section holds unused keys ahead of
// the texts; the texts are the shipped ones, so the catalog holds what it held before.
void catalogLoad(benchmark::State& state, int megabytes) {
    std::string path;
    try {
        path = hugeCatalog(megabytes);
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
        return;
    }
    const std::string section = gContext.moduleBaseName;
    gContext.moduleBaseName = "VarDesk";
    bool complete = true;
    for (auto _ : state)
        complete = gMsg.Load(path) && gMsg.missingCount == 0 && complete;
    gMsg.Load(VARDESK_SOURCE_DIR "/data/VarDesk.msg");
    gContext.moduleBaseName = section;
    if (!complete)
        state.SkipWithError("the huge catalog lacked texts");
}

} // namespace

void registerCatalogBenchmark(int megabytes) {
    benchmark::RegisterBenchmark(nameOf("HugeCatalogLoad", megabytes).c_str(), catalogLoad, megabytes)
        ->Unit(benchmark::kMillisecond);
}

void registerFileBenchmarks(int size) {
    benchmark::RegisterBenchmark(nameOf("LoadStep", size).c_str(), loadStep, size)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(nameOf("SetAll", size).c_str(), setAll, size)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(nameOf("WriteUserList", size).c_str(), writeUserList, size)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(nameOf("ReadUserList", size).c_str(), readUserList, size)
        ->Unit(benchmark::kMillisecond);
}

} // namespace bench
