// cadhost --apply end to end: the built cadhost with the staged module, run as a child process
// over drawings it made itself, so the tests hold whatever form the host's drawing files take.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

const QString kCadhost = QStringLiteral(VARDESK_STAGE_DIR "/bin/cadhost");
const QString kShippedAvl = QStringLiteral(VARDESK_STAGE_DIR "/share/vardesk/VarDesk.avl");
constexpr int kTimeoutMs = 60000;

struct ChildRun {
    int exitCode = -1;
    std::string out;
    std::string err;
};

class ApplyRun : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_dir.isValid()); }

    QString path(const QString& name) const { return m_dir.filePath(name); }

    void write(const QString& name, const QByteArray& text) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << name.toStdString();
        file.write(text);
    }

    QByteArray read(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // cadhost with args in the work folder, with the profile folder "profile" there.
    ChildRun cadhost(const QStringList& args) const {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("HOME", path("home"));
        env.remove("XDG_CONFIG_HOME");
        process.setProcessEnvironment(env);
        process.setWorkingDirectory(m_dir.path());
        process.start(kCadhost, args);
        ChildRun run;
        if (!process.waitForFinished(kTimeoutMs) || process.exitStatus() != QProcess::NormalExit)
            return run;
        run.exitCode = process.exitCode();
        run.out = process.readAllStandardOutput().toStdString();
        run.err = process.readAllStandardError().toStdString();
        return run;
    }

    ChildRun batch(const QByteArray& script) const {
        write("script.scr", script);
        return cadhost({"--batch", "script.scr", "--profile", "profile"});
    }

    QTemporaryDir m_dir;
};

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

size_t countOf(const std::string& text, const std::string& part) {
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++n;
    return n;
}

// Two drawings made by the host, each with its own LUPREC, and one file that is no drawing. The
// list sets three values and one the host refuses (LUPREC 12 is out of range); the description
// file has a name the host does not know, so each drawing's load asks whether to show the log.
TEST_F(ApplyRun, SetsAndSavesEachDrawingReportsRefusalsAndSkipsOneThatCannotBeOpened) {
    const ChildRun made = batch("NEW Halle.dxf\nSETVAR LUPREC 3\nSAVE\nCLOSE\n"
                                "NEW Plan.dxf\nSETVAR LUPREC 5\nSAVE\nCLOSE\n");
    ASSERT_EQ(made.exitCode, 0) << made.out;
    const QByteArray broken = "this is no drawing\n";
    write("Kaputt.dxf", broken);
    write("Buero.var", "CLAYER                   #\"A-WAND 24\"\n"
                       "LTSCALE                  #10\n"
                       "LUPREC                   #12\n"
                       "OSMODE                   #4133\n");
    QFile::copy(kShippedAvl, path("faulty.avl"));
    QFile avl(path("faulty.avl"));
    ASSERT_TRUE(avl.open(QIODevice::Append));
    avl.write("1#NOSUCHVAR#++#unknown to the host\n");
    avl.close();
    write("profile/VarDesk.ini", "[Settings]\nAutoCADVarList=" + path("faulty.avl").toUtf8() + "\n");

    const ChildRun run =
        cadhost({"--apply", "Buero.var", "--profile", "profile", "Halle.dxf", "Kaputt.dxf", "Plan.dxf"});
    EXPECT_EQ(run.exitCode, 1) << run.out << run.err;
    const std::string report =
        "3 Variablen wurden erfolgreich gesetzt. Eine Variable konnte nicht gesetzt werden.";
    std::vector<std::string> results;
    for (const auto& line : linesOf(run.out))
        if (line.rfind("  ", 0) != 0)
            results.push_back(line);
    ASSERT_EQ(results.size(), 4u) << run.out;
    EXPECT_EQ(results[0], "Halle.dxf: " + report + " ; refused: LUPREC");
    EXPECT_EQ(results[1].rfind("Kaputt.dxf: skipped: Cannot open drawing Kaputt.dxf", 0), 0u) << results[1];
    EXPECT_EQ(results[2], "Plan.dxf: " + report + " ; refused: LUPREC");
    EXPECT_EQ(results[3], "Summary: 2 drawings done, 1 skipped; 6 values set, 2 refused.");
    // Both loads asked for the log and got No (no editor was started); the question is told once.
    EXPECT_EQ(countOf(run.out, "(answered No)"), 1u) << run.out;
    EXPECT_EQ(run.out.find("EXEC"), std::string::npos) << run.out;
    EXPECT_EQ(read("Kaputt.dxf"), broken);

    const ChildRun check = batch("OPEN Halle.dxf\nGETVAR CLAYER\nGETVAR LTSCALE\nGETVAR LUPREC\n"
                                 "OPEN Plan.dxf\nGETVAR CLAYER\nGETVAR LUPREC\nGETVAR OSMODE\n");
    ASSERT_EQ(check.exitCode, 0) << check.out;
    const std::string expected[] = {"CLAYER = A-WAND 24", "LTSCALE = 10.000", "LUPREC = 3",
                                    "CLAYER = A-WAND 24", "LUPREC = 5",       "OSMODE = 4133"};
    std::vector<std::string> values;
    for (const auto& line : linesOf(check.out))
        if (line.rfind("Command: ", 0) != 0)
            values.push_back(line);
    EXPECT_EQ(values, std::vector<std::string>(std::begin(expected), std::end(expected))) << check.out;
}

// What stops the run before any drawing changes: each leaves the drawing's file as it was.
TEST_F(ApplyRun, StopsWithItsExitCodeOnABadCommandLineAnUnreadableListOrNoModule) {
    ASSERT_EQ(batch("NEW Halle.dxf\nSAVE\n").exitCode, 0);
    write("Buero.var", "LUPREC                   #2\n");
    const QByteArray before = read("Halle.dxf");
    QDir(m_dir.path()).mkdir("folder.var");
    struct Case {
        QStringList args;
        int exitCode;
        const char* said;
    };
    const Case cases[] = {
        {{"--apply", "missing.var", "Halle.dxf"}, 3, "Cannot read the user list \"missing.var\""},
        {{"--apply", "folder.var", "Halle.dxf"}, 3, "Cannot read the user list"},
        {{"--apply", "Buero.var"}, 2, "--apply needs at least one drawing"},
        {{"--apply"}, 2, "--apply needs a value"},
        {{"--apply", "Buero.var", "--profile", "profile", "--no-module", "Halle.dxf"},
         2,
         "the command KOVA_VARDESK is not defined"},
    };
    for (const auto& c : cases) {
        const ChildRun run = cadhost(c.args);
        const std::string args = c.args.join(' ').toStdString();
        EXPECT_EQ(run.exitCode, c.exitCode) << args << "\n" << run.out << run.err;
        EXPECT_NE((run.out + run.err).find(c.said), std::string::npos) << args << "\n" << run.out << run.err;
    }
    EXPECT_EQ(read("Halle.dxf"), before);
}

} // namespace
