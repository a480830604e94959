// The data sets the benchmarks run on: the shipped description file, and synthetic ones of a given size.
#pragma once
#include <string>

namespace bench {

// The size argument of every benchmark: 0 is the shipped file, anything else a synthetic set
// that describes that many variables.
inline constexpr int kShipped = 0;
// The size of the huge files, in MB.
inline constexpr int kHugeFileMegabytes = 50;

// A description file and the host variable table that goes with it.
struct DataSet {
    int size = kShipped;
    std::string avlPath;   // the AVL file
    std::string tablePath; // the host's variable table
    // For a synthetic set the table holds every variable the file describes and the file every
    // variable of the table, so the load step finds nothing to log. The shipped pair is used as
    // it stands, with what it logs.
};

// The data set of size, made on first use in the scratch folder and kept for the whole run.
const DataSet& dataSet(int size);

// Files of about megabytes MB, made on first use and kept for the run: an ini file whose section
// "Settings" holds unused keys ahead of the module's own (none of these), and the shipped catalog
// with unused keys ahead of its texts in its section. Both are read whole by every use.
const std::string& hugeIni(int megabytes);
const std::string& hugeCatalog(int megabytes);

// The folder every file of the run lives in; removed by removeScratch().
const std::string& scratchFolder();
// A new empty folder under the scratch folder, named after what it is for.
std::string freshFolder(const std::string& purpose);
void removeScratch();

} // namespace bench
