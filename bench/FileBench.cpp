// Benchmarks: the load step on the shipped and on a large description file, user list read and write.
#include "acedads.h"
#include "frame/cContext.h"
#include "frame/cDocCntx.h"
#include "hostsession.h"
#include "vars/LoadStep.h"
#include "vars/TextHelpers.h"
#include "vars/cSysVarList.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <memory>

namespace {

namespace fs = std::filesystem;

const fs::path& scratch()
{
    static const fs::path dir = [] {
        fs::path made = fs::temp_directory_path() / "vardesk-bench";
        fs::create_directories(made);
        return made;
    }();
    return dir;
}

// The host with its table and one drawing, made once; no UI services, so no box waits.
cadhost::HostSession& host()
{
    static cadhost::HostSession* session = [] {
        auto* made = &cadhost::HostSession::instance();
        made->setOutput([](const std::string&) {});
        made->loadVariableTable(VARDESK_SOURCE_DIR "/data/hostvars.tsv");
        made->setProfileDir(scratch().string());
        made->newDocument();
        gContext.moduleBaseName = "VarDesk";
        gContext.userIniFile = (scratch() / "VarDesk.ini").string();
        return made;
    }();
    return *session;
}

// A description file of count variables: every host variable, the rest names the host lacks.
std::string syntheticAvl(int count)
{
    const fs::path path = scratch() / ("synthetic-" + std::to_string(count) + ".avl");
    std::ofstream out(path);
    out << "; synthetische Beschreibung\n";
    for (int theme = 1; theme <= 20; ++theme)
        out << "0#Thema " << theme << "#" << theme << "\n";
    int written = 0;
    resbuf* names = nullptr;
    acedGetSysvarList("*", &names);
    for (const resbuf* rb = names; rb && written < count; rb = rb->rbnext, ++written)
        out << (written % 20 + 1) << "#" << rb->resval.rstring << "#+-#Variable der Anwendung\n";
    acutRelRb(names);
    for (; written < count; ++written)
        out << (written % 20 + 1) << "#SYNTH" << written << "#++#Eine erfundene Variable Nr. "
            << written << "\n";
    return path.string();
}

void runLoad(benchmark::State& state, const std::string& avlPath)
{
    host();
    auto context = std::make_unique<cDocCntx>(host().currentDocument());
    context->avlFilePath = avlPath;
    std::size_t records = 0;
    for (auto _ : state) {
        context->varList.clearAll();
        context->errorCount = 0;
        ReportList errorLines;
        int runCode = runcode::idle;
        runLoadStep(*context, errorLines, runCode);
        records = 0;
        for (const cSysVar* v = context->varList.first; v; v = v->next)
            ++records;
    }
    state.counters["records"] = static_cast<double>(records);
}

void BM_LoadStepShippedFile(benchmark::State& state)
{
    runLoad(state, VARDESK_SOURCE_DIR "/data/VarDesk.avl");
}
BENCHMARK(BM_LoadStepShippedFile)->Unit(benchmark::kMillisecond);

void BM_LoadStepSynthetic10000(benchmark::State& state)
{
    host();
    runLoad(state, syntheticAvl(10000));
}
BENCHMARK(BM_LoadStepSynthetic10000)->Unit(benchmark::kMillisecond);

// 1,000 records of every kind, all in the user list with a new value.
std::unique_ptr<cSysVarList> userList()
{
    auto list = std::make_unique<cSysVarList>();
    const int types[] = {5001, 5002, 5003, 5005, 5009, 5010};
    const char* values[] = {"2.5", "1 2", "42", "Text mit Leerzeichen", "1 2 3", "123456"};
    for (int i = 0; i < 1000; ++i) {
        const std::string name = formatText("VAR%04d", i);
        list->addVariable("1", name, "+-", "", i + 1);
        cSysVar* v = list->findName(name);
        v->valueType = types[i % 6];
        v->applyEditText(values[i % 6]);
    }
    list->userDirectory = scratch().string() + "/";
    list->userFileName = "bench.var";
    return list;
}

void BM_WriteUserList1000(benchmark::State& state)
{
    auto list = userList();
    for (auto _ : state)
        benchmark::DoNotOptimize(list->writeUserFile(list->userDirectory, list->userFileName, false));
}
BENCHMARK(BM_WriteUserList1000)->Unit(benchmark::kMicrosecond);

void BM_ReadUserList1000(benchmark::State& state)
{
    auto list = userList();
    list->writeUserFile(list->userDirectory, list->userFileName, false);
    for (auto _ : state) {
        list->clearAllNewValues();
        ReportList report;
        benchmark::DoNotOptimize(list->readUserFile(report));
    }
}
BENCHMARK(BM_ReadUserList1000)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
