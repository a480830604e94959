// The in-process host the benchmarks run against, and a loaded variable list kept between them.
#pragma once
#include "BenchData.h"

#include "ScriptedUiServices.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>
#include <string>

class QDialog;
class cDlgVarDesk;
class cDocCntx;

namespace bench {

// Answers every question box with No (so no log is opened), and hands each modal dialog to
// onModal; without it a dialog is closed unseen.
class BenchScript : public kova::ScriptHost {
public:
    void printLine(const std::string&) override {}
    std::string takeAnswer(const std::string&) override { return "no"; }
    int driveModal(QDialog& dialog) override;

    std::function<int(QDialog&)> onModal;
};

BenchScript& script();
kova::ScriptedUiServices& uiServices();

// Starts the host anew: quiet output, the scripted services, the table of data, an empty
// profile folder (returned) and one new drawing. Ends any workspace first.
std::string restartHost(const DataSet& data);

// A document context with data loaded by the load step, as the main dialog leaves it after its
// start, and the main dialog itself once asked for. Kept while benchmarks ask for the same data
// set; asking for another, or restarting the host, ends it.
struct Workspace {
    ~Workspace();
    int size = kShipped;
    std::string profile;
    std::unique_ptr<cDocCntx> context;
    std::unique_ptr<cDlgVarDesk> dialog;

    // The main dialog for the context, shown (its start sequence has run).
    cDlgVarDesk& shownDialog();
    int recordCount() const;
};

Workspace& workspace(int size);
// The workspace of that size, or null when it cannot be made: the benchmark is then skipped
// with the reason.
Workspace* workspaceFor(benchmark::State& state, int size);
void endWorkspace();

} // namespace bench
