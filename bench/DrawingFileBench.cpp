// Benchmarks of drawing files: opening and saving DXF drawings of 1,000 to 160,000 entities
// (about 20 MB; target drawing_bench, run by scripts/bench.sh).
#include "DrawingDatabase.h"
#include "VariableTable.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

const cadhost::VariableTable& table() {
    static const cadhost::VariableTable loaded = [] {
        cadhost::VariableTable t;
        std::string report;
        t.load(VARDESK_SOURCE_DIR "/data/hostvars.tsv", report);
        return t;
    }();
    return loaded;
}

// The template with `count` entities in model space: lines, circles and texts in turn, each on
// one of a few layers, as a plan of that size has them.
std::string drawingOf(int count) {
    std::ifstream in(VARDESK_SOURCE_DIR "/data/template/cadhost-r2018.dxf", std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), {});
    const std::string marker = "ENTITIES\n  0\nENDSEC\n";
    const size_t at = text.find(marker);
    if (at == std::string::npos)
        return {};
    std::string entities;
    char buffer[512];
    for (int i = 0; i < count; ++i) {
        const double x = (i % 1000) * 1.5, y = (i / 1000) * 2.5;
        const unsigned handle = 0x1000 + i;
        switch (i % 3) {
        case 0:
            std::snprintf(
                buffer, sizeof buffer,
                "  0\nLINE\n  5\n%X\n330\n1F\n100\nAcDbEntity\n  8\nWAND\n100\nAcDbLine\n 10\n%.3f\n"
                " 20\n%.3f\n 30\n0.0\n 11\n%.3f\n 21\n%.3f\n 31\n0.0\n",
                handle, x, y, x + 1.25, y + 0.75);
            break;
        case 1:
            std::snprintf(
                buffer, sizeof buffer,
                "  0\nCIRCLE\n  5\n%X\n330\n1F\n100\nAcDbEntity\n  8\nACHSEN\n 62\n1\n100\nAcDbCircle\n"
                " 10\n%.3f\n 20\n%.3f\n 30\n0.0\n 40\n0.5\n",
                handle, x, y);
            break;
        default:
            std::snprintf(
                buffer, sizeof buffer,
                "  0\nTEXT\n  5\n%X\n330\n1F\n100\nAcDbEntity\n  8\nTEXT\n100\nAcDbText\n 10\n%.3f\n"
                " 20\n%.3f\n 30\n0.0\n 40\n0.25\n  1\nRaum %d\n100\nAcDbText\n",
                handle, x, y, i);
            break;
        }
        entities += buffer;
    }
    text.insert(at + std::string("ENTITIES\n").size(), entities);
    return text;
}

void open(benchmark::State& state) {
    const std::string file = drawingOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::string message;
        std::vector<std::string> notes;
        auto db = cadhost::DrawingDatabase::fromFile(file, table(), message, notes);
        if (!db) {
            state.SkipWithError(message.c_str());
            return;
        }
        benchmark::DoNotOptimize(db.get());
    }
    state.counters["megabytes"] = file.size() / 1e6;
}

void save(benchmark::State& state) {
    std::string message;
    std::vector<std::string> notes;
    auto db = cadhost::DrawingDatabase::fromFile(drawingOf(static_cast<int>(state.range(0))), table(),
                                                 message, notes);
    if (!db) {
        state.SkipWithError(message.c_str());
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(db->toDxf(table(), notes));
}

// The whole of a 20 MB drawing's way through the host: read from disk, opened, saved to disk.
void openAndSaveFile(benchmark::State& state) {
    const std::string path = "/tmp/vardesk-drawing-bench.dxf";
    std::ofstream(path, std::ios::binary | std::ios::trunc) << drawingOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::ifstream in(path, std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(in)), {});
        std::string message;
        std::vector<std::string> notes;
        auto db = cadhost::DrawingDatabase::fromFile(std::move(bytes), table(), message, notes);
        if (!db) {
            state.SkipWithError(message.c_str());
            break;
        }
        std::ofstream(path + ".new", std::ios::binary | std::ios::trunc) << db->toDxf(table(), notes);
        std::rename((path + ".new").c_str(), path.c_str());
    }
    std::remove(path.c_str());
}

} // namespace

BENCHMARK(open)->Name("DxfOpen")->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(save)->Name("DxfSave")->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(openAndSaveFile)
    ->Name("DxfOpenAndSaveFile")
    ->Arg(100000)
    ->Arg(160000)
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
