// Benchmarks of the dialogs: the host's start up to the shown main dialog, the list orders, the search.
#include "BenchHost.h"
#include "Benchmarks.h"

#include "dialogs/DlgFind2.h"
#include "dialogs/ListOrderTable.h"
#include "dialogs/main/cDlgVarDesk.h"
#include "frame/cDocCntx.h"

#include <hostsession.h>

#include <benchmark/benchmark.h>

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QDialog>
#include <QProcess>

#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

const std::string kDataDir = VARDESK_STAGE_DIR "/share/vardesk";
const std::string kModulePath = kDataDir + "/VarDesk.so";
constexpr int kMainTemplate = 1000;
constexpr int kStarts = 3;
constexpr int kChildTimeoutMs = 120000;
const QString kStartOnceOption = QStringLiteral("--start-once");
const char* const kListId = "9002";

std::string nameOf(const char* measure, int size) {
    return std::string(measure) + "/" + std::to_string(size);
}

// What one start in a new process found, printed as "start=S command=S run=S rows=N".
struct StartFigures {
    double startSeconds = 0;   // from the host's start to the dialog shown
    double commandSeconds = 0; // from the command typed to the dialog shown
    double runSeconds = 0;     // from the command typed to its end: shown, closed, settings stored
    int rows = -1;             // rows of the main dialog's list
    std::string failure;       // empty when the dialog was shown

    std::string print() const {
        std::ostringstream out;
        out.precision(9);
        out << "start=" << startSeconds << " command=" << commandSeconds << " run=" << runSeconds
            << " rows=" << rows;
        return out.str();
    }
    bool parse(const std::string& text) {
        return std::sscanf(text.c_str(), "start=%lf command=%lf run=%lf rows=%d", &startSeconds,
                           &commandSeconds, &runSeconds, &rows) == 4;
    }
};

// Which time of a start a benchmark takes.
enum class StartClock { FromHost, FromCommand, WholeCommand };

int listRows(const QDialog& dialog) {
    const auto* list = dialog.findChild<QAbstractItemView*>(kListId);
    return list && list->model() ? list->model()->rowCount() : -1;
}

// One start in this process, which must be fresh: the module stays mapped when the host
// unloads it, and a second start in the same process would find its document contexts of the
// first. From the host's start (profile folder and table set, the module loaded, a drawing made,
// in the order cadhost starts) to the main dialog on the screen with its list filled; the clock
// stops when the dialog has been shown and its first events handled. Closing it and saving the
// settings are not counted.
StartFigures startOnce(const std::string& profile, const std::string& table) {
    cadhost::HostSession& host = cadhost::HostSession::instance();
    StartFigures figures;
    Clock::time_point shown{};
    bool mainDialog = false;
    script().onModal = [&](QDialog& dialog) {
        dialog.show();
        QCoreApplication::processEvents();
        shown = Clock::now();
        mainDialog = dialog.property("templateId").toInt() == kMainTemplate;
        figures.rows = listRows(dialog);
        dialog.close();
        return 0;
    };

    const Clock::time_point start = Clock::now();
    host.setOutput([](const std::string&) {});
    host.setUiServices(&uiServices());
    host.setProfileDir(profile);
    host.loadVariableTable(table);
    host.setSupportPath({kDataDir, profile});
    const cadhost::HostResult loaded = host.loadModule(kModulePath);
    if (loaded)
        host.newDocument();
    const Clock::time_point command = Clock::now();
    const cadhost::HostResult ran = loaded ? host.runCommand("KOVA_VARDESK") : loaded;
    const Clock::time_point ended = Clock::now();
    script().onModal = nullptr;
    if (!ran)
        figures.failure = ran.message;
    else if (!mainDialog)
        figures.failure = "the command showed no main dialog";
    figures.startSeconds = std::chrono::duration<double>(shown - start).count();
    figures.commandSeconds = std::chrono::duration<double>(shown - command).count();
    figures.runSeconds = std::chrono::duration<double>(ended - command).count();
    host.shutdown();
    return figures;
}

// One start of this program anew with --start-once on profile and table; false with the reason.
bool startChild(const std::string& profile, const std::string& table, StartFigures& figures,
                std::string& why) {
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                {kStartOnceOption, QString::fromStdString(profile), QString::fromStdString(table)});
    const bool finished = child.waitForFinished(kChildTimeoutMs);
    const QString said = QString::fromUtf8(child.readAllStandardOutput()).trimmed();
    if (finished && child.exitCode() == 0 && figures.parse(said.toStdString()))
        return true;
    why = "the start in a new process failed: " +
          QString::fromUtf8(child.readAllStandardError()).trimmed().toStdString();
    return false;
}

double secondsOf(const StartFigures& figures, StartClock clock) {
    switch (clock) {
    case StartClock::FromHost:
        return figures.startSeconds;
    case StartClock::FromCommand:
        return figures.commandSeconds;
    default:
        return figures.runSeconds;
    }
}

bool moduleBuilt(benchmark::State& state) {
    if (std::filesystem::exists(kModulePath))
        return true;
    state.SkipWithError(("the module is not built: " + kModulePath).c_str());
    return false;
}

// Each iteration starts this program anew with --start-once and takes the figures it prints.
void hostStart(benchmark::State& state, int size, StartClock clock) {
    if (!moduleBuilt(state))
        return;
    const DataSet* data = nullptr;
    try {
        data = &dataSet(size);
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
        return;
    }
    int rows = -1;
    for (auto _ : state) {
        const std::string profile = freshFolder("start");
        if (size != kShipped) // the shipped file is found beside the module, as installed
            std::ofstream(profile + "/VarDesk.ini") << "[Settings]\nAutoCADVarList=" << data->avlPath << "\n";
        StartFigures figures;
        std::string why;
        if (!startChild(profile, data->tablePath, figures, why)) {
            state.SkipWithError(why.c_str());
            break;
        }
        rows = figures.rows;
        state.SetIterationTime(secondsOf(figures, clock));
    }
    state.counters["rows"] = rows;
}

// One run of the command, the main dialog opened and closed, with the shipped description file
// and an ini file of megabytes MB. first: the ini file does not hold the module's keys yet, so
// storing the settings adds each; else an untimed run has stored them, and the timed one finds
// them there.
void hugeIniRun(benchmark::State& state, int megabytes, bool first) {
    if (!moduleBuilt(state))
        return;
    std::string ini;
    try {
        ini = hugeIni(megabytes);
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
        return;
    }
    const std::string table = dataSet(kShipped).tablePath;
    for (auto _ : state) {
        const std::string profile = freshFolder("huge-ini");
        std::filesystem::copy_file(ini, profile + "/VarDesk.ini");
        StartFigures figures;
        std::string why;
        if ((!first && !startChild(profile, table, figures, why)) ||
            !startChild(profile, table, figures, why)) {
            state.SkipWithError(why.c_str());
            break;
        }
        state.SetIterationTime(figures.runSeconds);
        std::filesystem::remove_all(profile);
    }
}

// FillList in one order over every record, on the shown main dialog: the rows built, the model
// reset, the selection carried over and the list painted.
void fillList(benchmark::State& state, int size, ListOrder order) {
    Workspace* w = workspaceFor(state, size);
    if (!w)
        return;
    cDlgVarDesk& dialog = w->shownDialog();
    cDocCntx& context = *w->context;
    context.view = ListView::All;
    context.compareMode = CompareMode::Off;
    context.viewOrder = order;
    for (auto _ : state)
        dialog.FillList();
    state.counters["rows"] = dialog.findChild<QAbstractItemView*>(kListId)->model()->rowCount();
    context.viewOrder = ListOrder::Letter;
}

// The search dialog's Search over every record with all four fields, pattern "LIM" (matched as
// "*LIM*", case ignored); no owner list follows it.
void search(benchmark::State& state, int size) {
    Workspace* w = workspaceFor(state, size);
    if (!w)
        return;
    cDocCntx& context = *w->context;
    context.searchPattern = "LIM";
    context.searchCheck =
        DlgFind2::kMaskName | DlgFind2::kMaskDescription | DlgFind2::kMaskCurrent | DlgFind2::kMaskNew;
    DlgFind2 find(context);
    find.show();
    QCoreApplication::processEvents();
    for (auto _ : state) {
        find.OnSearch();
        state.PauseTiming();
        context.varList.clearAllSelected();
        state.ResumeTiming();
    }
    state.counters["hits"] = static_cast<double>(find.hits().size());
    find.close();
}

} // namespace

int runStartOnce(const std::string& profile, const std::string& table) {
    const StartFigures figures = startOnce(profile, table);
    if (!figures.failure.empty()) {
        std::fprintf(stderr, "%s\n", figures.failure.c_str());
        return 1;
    }
    std::printf("%s\n", figures.print().c_str());
    return 0;
}

void registerDialogBenchmarks(int size) {
    // A few starts each: every one is a new process.
    benchmark::RegisterBenchmark(nameOf("HostStartToDialog", size).c_str(), hostStart, size,
                                 StartClock::FromHost)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(kStarts);
    benchmark::RegisterBenchmark(nameOf("CommandToDialog", size).c_str(), hostStart, size,
                                 StartClock::FromCommand)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(kStarts);
    int position = 0;
    for (const ListOrderEntry& order : listOrderTable())
        benchmark::RegisterBenchmark(
            nameOf(("FillListOrder" + std::to_string(position++)).c_str(), size).c_str(), fillList, size,
            order.order)
            ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(nameOf("Search", size).c_str(), search, size)->Unit(benchmark::kMillisecond);
}

} // namespace bench

namespace bench {

void registerHugeFileBenchmarks(int megabytes) {
    benchmark::RegisterBenchmark(nameOf("HugeIniFirstRun", megabytes).c_str(), hugeIniRun, megabytes, true)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(kStarts);
    benchmark::RegisterBenchmark(nameOf("HugeIniRun", megabytes).c_str(), hugeIniRun, megabytes, false)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(kStarts);
    registerCatalogBenchmark(megabytes);
}

} // namespace bench
