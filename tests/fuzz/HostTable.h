// The host's variable table of data/, loaded once for the fuzz targets that read host files.
#pragma once
#include "VariableTable.h"

#include <string>

inline const cadhost::VariableTable& hostTable() {
    static const cadhost::VariableTable* loaded = [] {
        auto* made = new cadhost::VariableTable;
        std::string report;
        made->load(VARDESK_SOURCE_DIR "/data/hostvars.tsv", report);
        return made;
    }();
    return *loaded;
}
