// Registration of the benchmarks of each file, for one data set size at a time.
#pragma once
#include <string>

namespace bench {

// Each registers its benchmarks as "<Measure>/<size>", size 0 being the shipped file.
void registerFileBenchmarks(int size);
void registerDialogBenchmarks(int size);
// The benchmarks of files of about megabytes MB, named "<Measure>/<megabytes>": a command run
// with a huge ini file, and the catalog loaded from a huge file.
void registerHugeFileBenchmarks(int megabytes);
void registerCatalogBenchmark(int megabytes);

// The child's side of the start benchmarks (option --start-once PROFILE TABLE): one start of the
// host in this fresh process up to the shown main dialog; prints its figures and returns 0, or
// says why on stderr and returns 1.
int runStartOnce(const std::string& profile, const std::string& table);

} // namespace bench
