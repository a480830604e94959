// cadhost: the CAD host stand-in, with its main window or, with --batch, its batch console, or
// with --apply, one user list laid over many drawings.
#include "ApplyRun.h"
#include "BatchConsole.h"
#include "ConsoleOutput.h"
#include "hostsession.h"
#include "HostStartup.h"
#include "MainWindow.h"
#include "QtUiServices.h"
#include "ScreenReport.h"
#include "ScriptedUiServices.h"
#include "ToolkitMessages.h"

#include <QApplication>
#include <QDir>

#include <cstdio>
#include <cstdlib>

namespace {

int runBatch(cadhost::HostSession& host, const cadhost::Options& options, const std::string& dataDir) {
    cadhost::ConsoleOutput output;
    host.setOutput([&output](const std::string& text) { output.write(text); });
    cadhost::BatchConsole console(host, output);
    std::string error;
    if (!console.loadScript(options.batchScript, error)) {
        std::fprintf(stderr, "cadhost: %s\n", error.c_str());
        return cadhost::BatchExit::Unreadable;
    }
    kova::ScriptedUiServices services(console, options.execForReal);
    host.setUiServices(&services);
    cadhost::startHost(host, options, dataDir, [&output](const std::string& text) { output.line(text); });
    const int code = console.run();
    host.shutdown();
    host.setUiServices(nullptr);
    return code;
}

int runApply(cadhost::HostSession& host, const cadhost::Options& options, const std::string& dataDir) {
    cadhost::ConsoleOutput output;
    cadhost::ApplyRun apply(host, output);
    std::string error;
    if (!apply.setList(options.applyList, error)) {
        std::fprintf(stderr, "cadhost: %s\n", error.c_str());
        return cadhost::ApplyExit::ListUnreadable;
    }
    cadhost::Options start = options;
    start.drawings.clear(); // opened one by one by the run
    cadhost::startHost(host, start, dataDir, [&output](const std::string& text) { output.line(text); });
    const int code = apply.run(options.drawings);
    host.shutdown();
    return code;
}

int runWindow(QApplication& app, cadhost::HostSession& host, const cadhost::Options& options,
              const std::string& dataDir) {
    kova::QtUiServices services;
    host.setUiServices(&services);
    const std::string profile =
        options.profileDir.empty() ? cadhost::defaultProfileDir() : options.profileDir;
    cadhost::MainWindow window(host, QDir(QString::fromStdString(profile)).filePath("cadhost.conf"));
    services.setParentWidget(&window);
    host.setMainFrame(&window);
    host.setOutput([&window](const std::string& text) { window.appendOutput(QString::fromStdString(text)); });
    cadhost::startHost(host, options, dataDir, [&window](const std::string& text) {
        window.appendOutput(QString::fromStdString(text) + "\n");
    });
    if (host.documents().empty())
        host.newDocument();
    window.refresh();
    window.show();
    cadhost::ScreenReport::startIfAsked(&window);
    const int code = app.exec();
    host.shutdown();
    host.setMainFrame(nullptr);
    host.setOutput({});
    host.setUiServices(nullptr);
    return code;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    cadhost::Options options;
    std::string error;
    if (!cadhost::parseOptions(args, options, error)) {
        std::fprintf(stderr, "cadhost: %s\n%s", error.c_str(), cadhost::usageText().c_str());
        return cadhost::usageExit(args);
    }
    if (options.help) {
        std::fputs(cadhost::usageText().c_str(), stdout);
        return 0;
    }
    const bool apply = !options.applyList.empty();
    const bool batch = !options.batchScript.empty() || apply;
    if (batch && !std::getenv("QT_QPA_PLATFORM"))
        setenv("QT_QPA_PLATFORM", "offscreen", 1);

    cadhost::quietToolkitMessages();
    QApplication app(argc, argv);
    QApplication::setApplicationName("cadhost");
    QApplication::setDesktopFileName("cadhost");
    const std::string dataDir = cadhost::moduleDataDir(QCoreApplication::applicationDirPath().toStdString());
    cadhost::HostSession& host = cadhost::HostSession::instance();
    if (batch) {
        QApplication::setQuitOnLastWindowClosed(false);
        return apply ? runApply(host, options, dataDir) : runBatch(host, options, dataDir);
    }
    return runWindow(app, host, options, dataDir);
}
