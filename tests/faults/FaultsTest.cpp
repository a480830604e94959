// Faults of the file system and of the host while the command runs: what the user is shown, and
// that the ini file, the error log and the drawing file already on disk survive the fault.
#include "../frame/TestHost.h"

#include <QApplication>
#include <QDialog>

#include <sys/resource.h>

#include <csignal>
#include <map>

namespace fs = std::filesystem;

namespace {

using testhost::readFile;

// Answers every question No, and closes the main dialog as soon as it has opened (its load step
// has run by then).
class ClosingScript : public testhost::RecordingScript {
public:
    std::string takeAnswer(const std::string&) override { return "no"; }
    int driveModal(QDialog& dialog) override {
        dialog.show();
        QCoreApplication::processEvents();
        dialog.close();
        return dialog.result();
    }
};

// The settings record of the working database, key to value; empty when there is none.
std::map<std::string, std::string> storedSettings() {
    std::map<std::string, std::string> values;
    const auto record = testhost::storedRecord("KOVA_VARDESKVARDESK", "SETTINGS");
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

// VarDesk.so in a host with the shipped variable table and an AVL file with one good record, one
// bad line, and (against the host's table) many host variables it does not describe: the load
// keeps a record and has a log to write.
class Faults : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        host.setUiServices(&services);
        static const bool tableLoaded = host.loadVariableTable(VARDESK_SOURCE_DIR "/data/hostvars.tsv").ok;
        ASSERT_TRUE(tableLoaded);
        iniFile = folder / "VarDesk.ini";
        logFile = folder / "VarDesk.err";
        avlFile = folder / "Liste.avl";
        writeFile(avlFile, "0#Zeichnung#1\n1#LUPREC#+-#Genauigkeit\n1#KAPUTT\n");
        ASSERT_TRUE(host.loadModule(VARDESK_STAGE_DIR "/share/vardesk/VarDesk.so"));
    }
    void TearDown() override {
        for (AcApDocument* doc : host.documents())
            host.closeDocument(doc);
        host.unloadModules();
        host.setUiServices(&testhost::capture().services);
        HostTest::TearDown();
    }

    static void writeFile(const fs::path& path, const std::string& text) {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    }
    // An ini file naming the AVL file of the test and one setting of its own.
    void writeIni(int mainPosX) {
        writeFile(iniFile, "[Settings]\nMainPosX=" + std::to_string(mainPosX) +
                               "\nAutoCADVarList=" + avlFile.string() + "\n");
    }
    std::string boxes() const {
        std::string all;
        for (const std::string& line : script.lines)
            all += line + "\n";
        return all;
    }

    ClosingScript script;
    kova::ScriptedUiServices services{script};
    fs::path iniFile, logFile, avlFile;
};

const char* const kShowLogQuestion = "BOX question: RT·VarDesk - Rückfrage: Beim Einlesen der Variablen sind "
                                     "Fehler aufgetaucht. Soll das Fehlerprotokoll angezeigt werden?";

// A profile folder that cannot be made: see the scenario settings_no_profile_folder.
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
    EXPECT_NE(boxes().find(kShowLogQuestion), std::string::npos) << boxes();
    EXPECT_NE(
        boxes().find("BOX error: RT·VarDesk - Fehler: " + logFile.string() + " kann nicht geladen werden!\n"),
        std::string::npos)
        << boxes();
    for (const auto& entry : fs::directory_iterator(folder))
        EXPECT_TRUE(entry.path() == iniFile || entry.path() == logFile || entry.path() == avlFile)
            << "no scrap file is left: " << entry.path();
}

// A save on a full disk: the host's message, and the old file as it was.
TEST_F(Faults, FailedSaveKeepsTheOldDrawing) {
    writeIni(20);
    const std::string drawing = (folder / "Plan.dwg").string();
    AcApDocument* doc = host.newDocument(drawing);
    ASSERT_NE(doc, nullptr);
    ASSERT_TRUE(host.runCommand("KOVA_VARDESK"));
    ASSERT_TRUE(host.saveDocument(doc));
    const std::string savedDrawing = readFile(drawing);
    EXPECT_NE(savedDrawing.find("MAINPOSY"), std::string::npos) << "the settings went into the file";
    {
        DiskFull full;
        ASSERT_TRUE(full.active());
        cadhost::HostResult failed = host.saveDocument(doc);
        EXPECT_FALSE(failed.ok);
        EXPECT_EQ(failed.message.rfind("Cannot save drawing to " + drawing, 0), 0u) << failed.message;
    }
    EXPECT_EQ(readFile(drawing), savedDrawing);
    for (const auto& entry : fs::directory_iterator(folder))
        EXPECT_FALSE(entry.path().filename().string().starts_with("Plan.dwg."))
            << "left beside: " << entry.path();
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
    testhost::capture().printed.clear();
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
