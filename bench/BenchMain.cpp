// The benchmark program: a Qt application on the offscreen platform, then every benchmark by data set.
#include "BenchData.h"
#include "BenchHost.h"
#include "Benchmarks.h"

#include <hostsession.h>

#include <benchmark/benchmark.h>

#include <QApplication>

#include <string>

int main(int argc, char** argv) {
    // The dialogs are made and shown, but nobody looks at them.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc == 4 && std::string(argv[1]) == "--start-once") {
        QApplication app(argc, argv);
        return bench::runStartOnce(argv[2], argv[3]);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    QApplication app(argc, argv);

    // By data set, so each set is loaded once for all the benchmarks that share it.
    for (const int size : {bench::kShipped, 1000, 10000, 50000}) {
        bench::registerDialogBenchmarks(size);
        bench::registerFileBenchmarks(size);
    }
    bench::registerHugeFileBenchmarks(bench::kHugeFileMegabytes);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    bench::endWorkspace();
    cadhost::HostSession::instance().shutdown();
    bench::removeScratch();
    return 0;
}
