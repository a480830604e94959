// The --apply benchmark: one user list laid over 1,000 small drawings in process, as
// cadhost --apply runs it, with the time given per drawing.
#include "ApplyRun.h"
#include "ConsoleOutput.h"
#include "HostStartup.h"

#include <hostsession.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTemporaryDir>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

const std::string kDataDir = VARDESK_STAGE_DIR "/share/vardesk";
constexpr int kDrawings = 1000;
constexpr int kLuprecValues = 9; // the drawings' own LUPREC runs through 0..8

// A small office standard: three drawing values, a global one and one the host refuses (LUPREC
// takes 0 to 8), so every drawing has a set, a refusal and a host message.
const char* const kList = "CLAYER                   #\"A-WAND 24\"\n"
                          "LTSCALE                  #10\n"
                          "LUPREC                   #12\n"
                          "OSMODE                   #4133\n"
                          "TEXTSIZE                 #3.5\n";

struct Project {
    std::string list;
    std::vector<std::string> drawings;
    std::string failure; // empty when the host started and the drawings were made
};

cadhost::ConsoleOutput& quietOutput() {
    static cadhost::ConsoleOutput output{[](const std::string&) {}};
    return output;
}

// Starts the host as cadhost --apply does (profile, table, module from the stage) and makes the
// drawings with the host's own API, so they are in whatever form the host writes.
Project makeProject(const std::string& folder) {
    Project project;
    cadhost::HostSession& host = cadhost::HostSession::instance();
    if (!std::filesystem::exists(kDataDir + "/VarDesk.so")) {
        project.failure = "the module is not built in " + kDataDir;
        return project;
    }
    cadhost::Options options;
    options.profileDir = folder + "/profile";
    cadhost::ApplyRun services(host, quietOutput()); // the module's start may ask its UI
    cadhost::startHost(host, options, kDataDir, [&](const std::string& text) { project.failure = text; });
    if (!project.failure.empty())
        return project;
    project.list = folder + "/Buero.var";
    std::ofstream(project.list) << kList;
    for (int i = 0; i < kDrawings; ++i) {
        const std::string path = folder + "/drawing" + std::to_string(i) + ".dxf";
        AcApDocument* doc = host.newDocument(path);
        cadhost::HostResult made = doc ? host.setVariableText("LUPREC", std::to_string(i % kLuprecValues))
                                       : cadhost::HostResult::failure("the host made no drawing");
        if (made)
            made = host.saveDocument(doc);
        if (doc)
            host.closeDocument(doc);
        if (!made) {
            project.failure = made.message;
            return project;
        }
        project.drawings.push_back(path);
    }
    return project;
}

void applyOverDrawings(benchmark::State& state) {
    QTemporaryDir scratch;
    const Project project =
        scratch.isValid() ? makeProject(scratch.path().toStdString()) : Project{{}, {}, "no scratch folder"};
    if (!project.failure.empty()) {
        state.SkipWithError(project.failure.c_str());
        return;
    }
    cadhost::HostSession& host = cadhost::HostSession::instance();
    cadhost::ApplyRun::Totals totals;
    double cpuMs = 0;
    for (auto _ : state) {
        cadhost::ApplyRun apply(host, quietOutput());
        std::string error;
        if (!apply.setList(project.list, error)) {
            state.SkipWithError(error.c_str());
            break;
        }
        const Clock::time_point start = Clock::now();
        const std::clock_t cpuStart = std::clock();
        apply.run(project.drawings);
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        cpuMs = 1000.0 * double(std::clock() - cpuStart) / CLOCKS_PER_SEC / kDrawings;
        state.SetIterationTime(seconds / kDrawings);
        totals = apply.totals();
        if (totals.done != kDrawings) {
            state.SkipWithError("not every drawing went through");
            break;
        }
    }
    state.counters["drawings"] = totals.done;
    state.counters["taken"] = totals.set;
    state.counters["refused"] = totals.refused;
    // On a machine shared with other work the wall time waits for the processor; this does not.
    state.counters["cpu_ms_per_drawing"] = cpuMs;
    host.shutdown();
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    // One run over all drawings takes seconds: once per repetition, its time given per drawing.
    benchmark::RegisterBenchmark(("ApplyPerDrawing/" + std::to_string(kDrawings)).c_str(), applyOverDrawings)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(1);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
