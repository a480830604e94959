// Faults of the file system and of the host while the command runs: what the user is shown, and
// that the ini file, the error log and the drawing file already on disk survive the fault.
#include "../frame/TestHost.h"

#include <QApplication>
#include <QDialog>

#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

using testhost::readFile;

const std::string kModulePath = VARDESK_STAGE_DIR "/share/vardesk/VarDesk.so";
const std::string kDictionary = "KOVA_VARDESKVARDESK";
// A folder below a regular file: no one, root included, can create or write anything there.
const std::string kUnwritableDir = "/etc/passwd/vardesk";

// An AVL file with one good record, one bad line, and (against the host's table) many host
// variables it does not describe: the load keeps a record and has a log to write.
const char* const kAvl = "0#Zeichnung#1\n1#LUPREC#+-#Genauigkeit\n1#KAPUTT\n";

// Prints what the scripted services print, answers every question No, and closes the main
// dialog as soon as it has opened (its load step has run by then).
class RecordingScript : public kova::ScriptHost {
public:
    void printLine(const std::string& text) override { lines.push_back(text); }
    std::string takeAnswer(const std::string&) override { return "no"; }
    int driveModal(QDialog& dialog) override {
        dialog.show();
        QCoreApplication::processEvents();
        dialog.close();
        return dialog.result();
    }
    std::vector<std::string> lines;
};

struct Capture {
    RecordingScript script;
    kova::ScriptedUiServices services{script};
    std::string printed;
};

Capture& capture() {
    static Capture* made = [] {
        auto* c = new Capture;
        cadhost::HostSession& host = cadhost::HostSession::instance();
        host.setUiServices(&c->services);
        host.setOutput([c](const std::string& text) { c->printed += text; });
        return c;
    }();
    return *made;
}

void writeFile(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

// The settings record of the working database, key to value; empty when there is none.
std::map<std::string, std::string> storedSettings() {
    std::map<std::string, std::string> values;
    const auto record = testhost::storedRecord(kDictionary, "SETTINGS");
    for (std::size_t i = 0; i + 1 < record.size(); i += 2)
        values[record[i].second] = record[i + 1].first == 1 ? record[i + 1].second : "?";
    return values;
}

// Files may not grow while this lives: every write that would add a byte fails, as on a full
// disk. The limit holds for root too.
class DiskFull {
public:
    DiskFull() {
        std::signal(SIGXFSZ, SIG_IGN); // the write fails with EFBIG instead of ending the program
        getrlimit(RLIMIT_FSIZE, &m_old);
        rlimit none = m_old;
        none.rlim_cur = 0;
        m_ok = setrlimit(RLIMIT_FSIZE, &none) == 0;
    }
    ~DiskFull() { setrlimit(RLIMIT_FSIZE, &m_old); }
    bool active() const { return m_ok; }

private:
    rlimit m_old{};
    bool m_ok = false;
};

// VarDesk.so in a host with the shipped variable table, a fresh profile folder per test, and
// the printed lines and boxes captured.
class Faults : public ::testing::Test {
protected:
    void SetUp() override {
        capture().printed.clear();
        capture().script.lines.clear();
        static const bool tableLoaded = host.loadVariableTable(VARDESK_SOURCE_DIR "/data/hostvars.tsv").ok;
        ASSERT_TRUE(tableLoaded);
        char pattern[] = "/tmp/vardesk-faults-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder = pattern;
        ASSERT_TRUE(host.setProfileDir(folder.string()));
        iniFile = folder / "VarDesk.ini";
        logFile = folder / "VarDesk.err";
        avlFile = folder / "Liste.avl";
        writeFile(avlFile, kAvl);
        ASSERT_TRUE(host.loadModule(kModulePath)) << kModulePath;
    }

    void TearDown() override {
        host.setWorkingDatabaseAvailable(true);
        host.setDocumentLockRefused(false);
        for (AcApDocument* doc : host.documents())
            host.closeDocument(doc);
        host.unloadModules();
        EXPECT_EQ(host.openObjectCount(), 0) << "every opened database object is closed once";
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    // An ini file naming the AVL file of the test and one setting of its own.
    void writeIni(int mainPosX) {
        writeFile(iniFile, "[Settings]\nMainPosX=" + std::to_string(mainPosX) +
                               "\nAutoCADVarList=" + avlFile.string() + "\n");
    }

    // A drawing file whose stored settings name the AVL file of the test.
    fs::path writeDrawing(const std::string& name, int mainPosX) {
        const fs::path path = folder / name;
        writeFile(path,
                  "{\"cadhostDrawing\": 1, \"namedObjects\": {\"" + kDictionary +
                      "\": {\"dictionary\": {\"SETTINGS\": {\"xrecord\": [[1, \"AUTOCADVARLIST\"], [1, \"" +
                      avlFile.string() + "\"], [1, \"MAINPOSX\"], [1, \"" + std::to_string(mainPosX) +
                      "\"]]}}}}}\n");
        return path;
    }

    bool boxShown(const std::string& kind, const std::string& part) const {
        for (const std::string& line : capture().script.lines)
            if (line.rfind("BOX " + kind + ":", 0) == 0 && line.find(part) != std::string::npos)
                return true;
        return false;
    }
    std::string boxes() const {
        std::string all;
        for (const std::string& line : capture().script.lines)
            all += line + "\n";
        return all;
    }
    const std::string& printed() const { return capture().printed; }

    cadhost::HostSession& host = cadhost::HostSession::instance();
    fs::path folder, iniFile, logFile, avlFile;
};

const char* const kLogFailure = "VarDesk.err kann nicht geladen werden!";
const char* const kShowLogQuestion = "Soll das Fehlerprotokoll angezeigt werden?";

// A profile folder that cannot be made: see the scenario settings_x_bad_profile.
TEST_F(Faults, FullDiskKeepsTheOldIniFileAndTheOldLog) {
    writeIni(77);
    writeFile(logFile, "altes Protokoll\n");
    const std::string oldIni = readFile(iniFile);
    ASSERT_NE(host.newDocument(), nullptr);
    {
        DiskFull full;
        ASSERT_TRUE(full.active());
        ASSERT_TRUE(host.runCommand("KOVA_VARDESK"));
    }
    EXPECT_EQ(readFile(iniFile), oldIni) << "a failed rewrite leaves the ini file whole";
    EXPECT_EQ(readFile(logFile), "altes Protokoll\n") << "a failed rewrite leaves the old log whole";
    const auto stored = storedSettings();
    EXPECT_EQ(stored.at("MAINPOSX"), "77") << "read from the old ini file";
    EXPECT_TRUE(boxShown("question", kShowLogQuestion)) << boxes();
    EXPECT_TRUE(boxShown("error", kLogFailure)) << boxes();
    for (const auto& entry : fs::directory_iterator(folder))
        EXPECT_TRUE(entry.path() == iniFile || entry.path() == logFile || entry.path() == avlFile)
            << "no scrap file is left: " << entry.path();
}

TEST_F(Faults, GoodLoadLeavesTheOldLogAndAFailedSaveTheOldDrawing) {
    // The reference run: the log is written, the drawing saved.
    writeIni(20);
    const fs::path drawing = writeDrawing("Plan.dwg", 44);
    AcApDocument* doc = host.openDocument(drawing.string());
    ASSERT_NE(doc, nullptr);
    ASSERT_TRUE(host.runCommand("KOVA_VARDESK"));
    const std::string log = readFile(logFile);
    EXPECT_NE(log.find("Fehler beim Laden von Liste.avl"), std::string::npos) << log;
    ASSERT_TRUE(host.saveDocument(doc));
    const std::string savedDrawing = readFile(drawing);
    EXPECT_NE(savedDrawing.find("MAINPOSY"), std::string::npos) << "the settings went into the file";

    // A save on a full disk, and one to a folder that cannot be made: the host's message, and the
    // old file as it was.
    {
        DiskFull full;
        ASSERT_TRUE(full.active());
        cadhost::HostResult failed = host.saveDocument(doc);
        EXPECT_FALSE(failed.ok);
        EXPECT_EQ(failed.message.rfind("Cannot save drawing to " + drawing.string(), 0), 0u)
            << failed.message;
    }
    EXPECT_EQ(readFile(drawing), savedDrawing);
    EXPECT_FALSE(fs::exists(drawing.string() + ".new"));
    cadhost::HostResult elsewhere = host.saveDocument(doc, kUnwritableDir + "/Plan.dwg");
    EXPECT_FALSE(elsewhere.ok);
    EXPECT_FALSE(elsewhere.message.empty());

    // A second run in the same drawing reads no file, so finds no error: the old log stays.
    ASSERT_TRUE(host.runCommand("KOVA_VARDESK"));
    EXPECT_EQ(readFile(logFile), log);
}

TEST_F(Faults, RefusedDocumentLockIsPrintedAndTheSettingsAreStillStored) {
    writeIni(61);
    ASSERT_NE(host.newDocument(), nullptr);
    host.setDocumentLockRefused(true);
    ASSERT_TRUE(host.runCommand("KOVA_VARDESK"));
    EXPECT_NE(printed().find("Die Zeichnung kann nicht gesperrt werden.\n"), std::string::npos) << printed();
    EXPECT_EQ(printed().find("Ausnahmefehler"), std::string::npos) << printed();
    const auto stored = storedSettings();
    EXPECT_EQ(stored.size(), 26u) << "the writer goes on without the lock";
    EXPECT_EQ(stored.count("MAINPOSX") ? stored.at("MAINPOSX") : "", "61");
}

TEST_F(Faults, MissingWorkingDatabaseIsPrintedAndLosesNoStoredSettings) {
    writeIni(20);
    ASSERT_NE(host.newDocument(), nullptr);
    ASSERT_TRUE(host.runCommand("KOVA_VARDESK"));
    ASSERT_EQ(storedSettings().at("MAINPOSX"), "20");

    writeIni(55);
    capture().printed.clear();
    host.setWorkingDatabaseAvailable(false);
    ASSERT_TRUE(host.runCommand("KOVA_VARDESK"));
    host.setWorkingDatabaseAvailable(true);
    EXPECT_NE(printed().find("DwgIni Ausnahmefehler 3705\n"), std::string::npos) << printed();
    EXPECT_NE(readFile(iniFile).find("MainPosX=55"), std::string::npos)
        << "the ini file is written before the drawing";
    const auto stored = storedSettings();
    EXPECT_EQ(stored.size(), 26u);
    EXPECT_EQ(stored.count("MAINPOSX") ? stored.at("MAINPOSX") : "", "20") << "the drawing keeps its record";
}

} // namespace
