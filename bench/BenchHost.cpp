// The in-process host the benchmarks run against, and a loaded variable list kept between them.
#include "BenchHost.h"

#include "dialogs/main/cDlgVarDesk.h"
#include "dialogs/main/LoadStep.h"
#include "frame/cContext.h"
#include "frame/cDocCntx.h"

#include <arxheaders.h>
#include <hostsession.h>

#include <QCoreApplication>
#include <QDialog>

#include <stdexcept>

namespace bench {

int BenchScript::driveModal(QDialog& dialog) {
    if (onModal)
        return onModal(dialog);
    dialog.close();
    return 0;
}

BenchScript& script() {
    static BenchScript instance;
    return instance;
}

kova::ScriptedUiServices& uiServices() {
    static kova::ScriptedUiServices instance(script());
    return instance;
}

std::string restartHost(const DataSet& data) {
    endWorkspace();
    cadhost::HostSession& host = cadhost::HostSession::instance();
    host.shutdown();
    host.setOutput([](const std::string&) {});
    host.setUiServices(&uiServices());
    if (cadhost::HostResult r = host.loadVariableTable(data.tablePath); !r)
        throw std::runtime_error(r.message);
    const std::string profile = freshFolder("profile");
    host.setProfileDir(profile);
    if (!host.newDocument())
        throw std::runtime_error("the host made no drawing");
    return profile;
}

// ---- the workspace ----

namespace {

std::unique_ptr<Workspace>& current() {
    static std::unique_ptr<Workspace> instance;
    return instance;
}

} // namespace

Workspace::~Workspace() {
    dialog.reset(); // the dialog works on the context
    context.reset();
}

cDlgVarDesk& Workspace::shownDialog() {
    if (!dialog) {
        dialog = std::make_unique<cDlgVarDesk>(*context);
        dialog->show();
        QCoreApplication::processEvents();
    }
    return *dialog;
}

int Workspace::recordCount() const {
    int count = 0;
    for (const cSysVar* v = context->varList.first; v; v = v->next)
        ++count;
    return count;
}

Workspace& workspace(int size) {
    std::unique_ptr<Workspace>& made = current();
    if (made && made->size == size)
        return *made;
    endWorkspace();
    const DataSet& data = dataSet(size);
    auto fresh = std::make_unique<Workspace>();
    fresh->size = size;
    fresh->profile = restartHost(data);
    gContext.moduleBaseName = "VarDesk";
    gContext.userIniFile = fresh->profile + "/VarDesk.ini";
    fresh->context = std::make_unique<cDocCntx>(cadhost::HostSession::instance().currentDocument());
    fresh->context->LoadSettings();
    fresh->context->avlFilePath = data.avlPath;
    fresh->context->CaptureNumberFormat(acdbHostApplicationServices()->workingDatabase());
    ReportList errorLines;
    RunCode runCode = RunCode::Idle;
    runLoadStep(*fresh->context, errorLines, runCode);
    if (!fresh->context->varList.first)
        throw std::runtime_error("no variable was loaded from " + data.avlPath);
    made = std::move(fresh);
    return *made;
}

Workspace* workspaceFor(benchmark::State& state, int size) {
    try {
        return &workspace(size);
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
        return nullptr;
    }
}

void endWorkspace() {
    current().reset();
}

} // namespace bench
