// The data sets the benchmarks run on: the shipped description file, and synthetic ones of a given size.
#include "BenchData.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace bench {

namespace {

namespace fs = std::filesystem;

const std::string kShippedAvl = VARDESK_SOURCE_DIR "/data/VarDesk.avl";
const std::string kShippedTable = VARDESK_SOURCE_DIR "/data/hostvars.tsv";
const std::string kShippedCatalog = VARDESK_SOURCE_DIR "/data/VarDesk.msg";
const std::string kCatalogSection = "[VarDesk]";

// Theme of the host variables that the shipped file does not describe.
constexpr int kProgramTheme = 17;

// One variable of the host table, as far as the description file needs it.
struct HostVariable {
    std::string name;
    bool changeable = true;
    bool drawing = true;
};

std::string readWholeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot read " + path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

// The next blank-separated word from at; a word in double quotes runs to its closing quote,
// with \" and \\ inside.
std::string nextWord(const std::string& line, std::size_t& at) {
    while (at < line.size() && (line[at] == ' ' || line[at] == '\t'))
        ++at;
    const std::size_t start = at;
    if (at < line.size() && line[at] == '"') {
        for (++at; at < line.size() && line[at] != '"'; ++at)
            if (line[at] == '\\')
                ++at;
        ++at;
    } else {
        while (at < line.size() && line[at] != ' ' && line[at] != '\t')
            ++at;
    }
    return line.substr(start, at - start);
}

std::vector<HostVariable> readHostTable(const std::string& text) {
    std::vector<HostVariable> variables;
    for (const std::string& line : linesOf(text)) {
        std::size_t at = 0;
        const std::string name = nextWord(line, at);
        if (name.empty() || name[0] == ';')
            continue;
        nextWord(line, at); // type
        nextWord(line, at); // default
        HostVariable v;
        v.name = name;
        v.changeable = nextWord(line, at) == "rw";
        v.drawing = nextWord(line, at) == "drawing";
        variables.push_back(v);
    }
    return variables;
}

// The shipped description file: its theme lines, and each variable's line by name.
struct ShippedAvl {
    std::vector<std::string> themeLines;
    std::map<std::string, std::pair<int, std::string>> variables; // name: theme, line
};

ShippedAvl readShippedAvl(const std::string& text) {
    ShippedAvl avl;
    for (const std::string& line : linesOf(text)) {
        if (line.empty() || line[0] == ';')
            continue;
        const std::size_t first = line.find('#');
        const std::size_t second = first == std::string::npos ? first : line.find('#', first + 1);
        if (second == std::string::npos)
            continue;
        const int theme = std::atoi(line.substr(0, first).c_str());
        if (theme == 0)
            avl.themeLines.push_back(line);
        else
            avl.variables[line.substr(first + 1, second - first - 1)] = {theme, line};
    }
    return avl;
}

// Invented names look like the host's own: a familiar stem and three letters.
const char* const kStems[] = {"ANNO",   "BLOCK", "CURSOR", "DIM",   "EDGE", "FACET", "GRID", "HATCH", "ISO",
                              "JOIN",   "KEY",   "LIM",    "LAYER", "MESH", "NAV",   "OBJ",  "PLOT",  "QUICK",
                              "RENDER", "SNAP",  "TEXT",   "UCS",   "VIEW", "WIPE",  "XREF", "YEAR",  "ZOOM"};

const char* const kSubjects[] = {"Größe",      "Abstand",          "Farbe",        "Obere Grenze (Limit)",
                                 "Modus",      "Anzahl",           "Faktor",       "Winkel",
                                 "Stil",       "Name der Vorlage", "Sichtbarkeit", "Untere Grenze",
                                 "Genauigkeit"};
const char* const kQualifiers[] = {"der Anzeige",  "beim Einfügen", "in neuen Objekten", "im Ansichtsfenster",
                                   "beim Plotten", "der Auswahl",   "beim Bearbeiten"};
const char* const kObjects[] = {"Bemaßungen",  "Texte",         "Schraffuren", "Layouts", "Blöcke",
                                "Griffe",      "Linien",        "Polylinien",  "Bilder",  "Tabellen",
                                "Attribute",   "Felder",        "Netze",       "Flächen", "Xrefs",
                                "Punktwolken", "Beschriftungen"};

template <typename T, std::size_t N> constexpr int countOf(const T (&)[N]) {
    return static_cast<int>(N);
}

std::string inventedDescription(int i) {
    return std::string(kSubjects[i % countOf(kSubjects)]) + " " +
           kQualifiers[(i / countOf(kSubjects)) % countOf(kQualifiers)] + " für " +
           kObjects[(i / 7) % countOf(kObjects)] + " (Variante " + std::to_string(i) + ")";
}

// The host table's line of invented variable i; the kinds come in about the shares of the
// shipped table.
std::string inventedTableLine(const std::string& name, int i, bool changeable, bool drawing) {
    std::string type, value, rule;
    switch (i % 20) {
    case 12:
    case 13:
    case 14:
        type = "real", value = "1.5", rule = "min 0";
        break;
    case 15:
    case 16:
        type = "string", value = "\"Wert " + std::to_string(i) + "\"";
        break;
    case 17:
        type = "point2", value = "0,0";
        break;
    case 18:
        type = "point3", value = "0,0,0";
        break;
    case 19:
        type = "long", value = "1000", rule = "range 0 1000000";
        break;
    default:
        type = "int", value = std::to_string(i % 50), rule = "range 0 100";
        break;
    }
    return name + " " + type + " " + value + " " + (changeable ? "rw" : "ro") + " " +
           (drawing ? "drawing" : "global") + (rule.empty() ? "" : " " + rule);
}

// Every variable of the host table described (with the shipped line where there is one), then
// invented ones up to size; the table gets the invented ones too.
DataSet makeSynthetic(int size) {
    const std::string tableText = readWholeFile(kShippedTable);
    const std::vector<HostVariable> host = readHostTable(tableText);
    const ShippedAvl shipped = readShippedAvl(readWholeFile(kShippedAvl));
    const int themeCount = static_cast<int>(shipped.themeLines.size());

    std::map<int, std::vector<std::string>> byTheme; // the file keeps the lines grouped by theme
    std::set<std::string> names;
    for (const HostVariable& v : host) {
        names.insert(v.name);
        const auto found = shipped.variables.find(v.name);
        if (found != shipped.variables.end()) {
            byTheme[found->second.first].push_back(found->second.second);
            continue;
        }
        byTheme[kProgramTheme].push_back(std::to_string(kProgramTheme) + "#" + v.name + "#" +
                                         (v.changeable ? "+" : "-") + (v.drawing ? "+" : "-") +
                                         "#Variable des Hosts");
    }

    std::ostringstream table;
    table << tableText << "\n; ---- erfundene Variablen ----\n";
    int counter = 0;
    for (int i = 0; static_cast<int>(host.size()) + i < size; ++i) {
        std::string name;
        do {
            const int stem = counter % countOf(kStems);
            int rest = counter / countOf(kStems);
            name = kStems[stem];
            for (int letter = 0; letter < 3; ++letter, rest /= 26)
                name += static_cast<char>('A' + rest % 26);
            ++counter;
        } while (!names.insert(name).second);
        const bool changeable = i % 7 != 0;
        const bool drawing = (i / 3) % 2 == 0;
        table << inventedTableLine(name, i, changeable, drawing) << "\n";
        const int theme = 1 + i % themeCount;
        byTheme[theme].push_back(std::to_string(theme) + "#" + name + "#" + (changeable ? "+" : "-") +
                                 (drawing ? "+" : "-") + "#" + inventedDescription(i));
    }

    DataSet set;
    set.size = size;
    const std::string stem = scratchFolder() + "/synthetic-" + std::to_string(size);
    set.avlPath = stem + ".avl";
    set.tablePath = stem + ".tsv";
    std::ofstream(set.tablePath, std::ios::binary) << table.str();
    std::ofstream avl(set.avlPath, std::ios::binary);
    avl << "; Synthetische Beschreibung mit " << size << " Variablen\n";
    for (const std::string& line : shipped.themeLines)
        avl << line << "\n";
    for (const auto& [theme, lines] : byTheme)
        for (const std::string& line : lines)
            avl << line << "\n";
    return set;
}

// Lines "UnusedNNNNNNN=..." until text has grown by about megabytes MB.
void appendUnusedKeys(std::string& text, int megabytes) {
    const std::size_t target = text.size() + static_cast<std::size_t>(megabytes) * 1024 * 1024;
    for (int i = 0; text.size() < target; ++i)
        text += "Unused" + std::to_string(1000000 + i) +
                "=Wert einer alten Einstellung, die niemand mehr liest\n";
}

std::string writeScratchFile(const std::string& name, const std::string& text) {
    const std::string path = scratchFolder() + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

} // namespace

const std::string& hugeIni(int megabytes) {
    static std::map<int, std::string> made;
    std::string& path = made[megabytes];
    if (path.empty()) {
        std::string text = "[Settings]\n";
        appendUnusedKeys(text, megabytes);
        path = writeScratchFile("huge-" + std::to_string(megabytes) + ".ini", text);
    }
    return path;
}

const std::string& hugeCatalog(int megabytes) {
    static std::map<int, std::string> made;
    std::string& path = made[megabytes];
    if (path.empty()) {
        std::string text = readWholeFile(kShippedCatalog);
        const std::size_t section = text.find(kCatalogSection);
        if (section == std::string::npos)
            throw std::runtime_error("no section " + kCatalogSection + " in " + kShippedCatalog);
        const std::size_t keys = text.find('\n', section) + 1;
        std::string unused;
        appendUnusedKeys(unused, megabytes);
        text.insert(keys, unused);
        path = writeScratchFile("huge-" + std::to_string(megabytes) + ".msg", text);
    }
    return path;
}

const DataSet& dataSet(int size) {
    static std::map<int, std::unique_ptr<DataSet>> made;
    std::unique_ptr<DataSet>& set = made[size];
    if (!set) {
        if (size == kShipped)
            set = std::make_unique<DataSet>(DataSet{kShipped, kShippedAvl, kShippedTable});
        else
            set = std::make_unique<DataSet>(makeSynthetic(size));
    }
    return *set;
}

const std::string& scratchFolder() {
    static const std::string folder = [] {
        std::string pattern = (fs::temp_directory_path() / "vardesk-bench-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error("cannot make a folder in " + fs::temp_directory_path().string());
        return pattern;
    }();
    return folder;
}

std::string freshFolder(const std::string& purpose) {
    static int serial = 0;
    const std::string folder = scratchFolder() + "/" + purpose + "-" + std::to_string(++serial);
    fs::create_directories(folder);
    return folder;
}

void removeScratch() {
    std::error_code ignored;
    fs::remove_all(scratchFolder(), ignored);
}

} // namespace bench
