// Window lines against a real dialog: the dump's form, and each verb's effect on the controls.
#include "UiAutomation.h"
#include "TestDialog.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QStyledItemDelegate>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using cadhost::UiAutomation;

namespace {

// A delegate that paints the value column in its own colour and reports it.
class ReportingDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    Q_INVOKABLE QVariantMap automationCell(const QModelIndex& index) const {
        QVariantMap cell;
        if (index.column() == 1)
            cell["foreground"] = QColor(0, 0, 255);
        if (index.row() == 0 && index.column() == 0)
            cell["background"] = QColor(0xC0, 0xC0, 0xC0);
        return cell;
    }
};

class UiAutomationTest : public ::testing::Test {
protected:
    void SetUp() override {
        dialog.move(10, 20);
        dialog.resize(400, 500);
        dialog.show();
        QApplication::processEvents();
    }

    // Applies one window line given as its words; fails the test when it stops.
    void apply(const std::vector<std::string>& words) {
        auto outcome =
            UiAutomation::apply(dialog, words, [this](const std::string& l) { printed.push_back(l); });
        ASSERT_TRUE(outcome.ok) << words[0] << ": " << outcome.message;
    }

    std::vector<std::string> linesStarting(const std::string& prefix) const {
        std::vector<std::string> out;
        for (const auto& l : UiAutomation::dump(const_cast<TestDialog&>(dialog)))
            if (l.rfind(prefix, 0) == 0)
                out.push_back(l);
        return out;
    }

    TestDialog dialog;
    std::vector<std::string> printed;
};

TEST_F(UiAutomationTest, DumpShowsEveryControlInItsForm) {
    const QRect frame = dialog.frameGeometry();
    const std::string row0 = "ROW 1004 0 -1 - \"LUPREC\" \"4\" \"Integer\" ";
    const std::vector<std::string> expected = {
        "WINDOW 1000 \"Variablen \\\"Werkhalle\\\"\" " + std::to_string(frame.x()) + " " +
            std::to_string(frame.y()) + " " + std::to_string(frame.width()) + " " +
            std::to_string(frame.height()),
        "FIELD 1001 \"alt\" writable",
        "FIELD 1002 \"C:\\\\pfad \\\"x\\\"\" readonly",
        "FIELD 1003 \"Beschreibung\" readonly",
        "STATUS \"Bereit\" \"3 Variablen\"",
        "MENU 8027 checked -",
        "MENU 8028 - grayed",
        "TOOL 7000 enabled",
        "TOOL 7001 pressed",
        "TOOL 7002 indeterminate",
        "TOOL 7003 disabled",
        "COLUMN 1004 0 \"Name\" 120",
        "COLUMN 1004 1 \"Wert\" 80",
        "COLUMN 1004 2 \"Typ\" " + std::to_string(dialog.list->columnWidth(2)),
        row0 + "#FFFFFF #000000 #000000 #000000",
        "ROW 1004 1 2 - \"       ANGBASE\" \"0\" \"Real\" #FFFFC0 #000000 #FF0000 #000000",
        "ROW 1004 2 5 - \"CLAYER\" \"A-WAND\" \"String\" #FFFFFF #000000 #000000 #000000"};
    EXPECT_EQ(UiAutomation::dump(dialog), expected);

    dialog.edit->setEnabled(false);
    EXPECT_EQ(linesStarting("FIELD 1001"), (std::vector<std::string>{"FIELD 1001 \"alt\" readonly"}));
    dialog.list->setItemDelegate(new ReportingDelegate(dialog.list));
    EXPECT_EQ(linesStarting("ROW 1004 0")[0], row0 + "#C0C0C0 #000000 #0000FF #000000")
        << "a delegate reports the colours it paints";
}

TEST_F(UiAutomationTest, TextSelectAndCmdWorkOnTheControls) {
    apply({"text", "1001", "neu \"wert\""});
    EXPECT_EQ(dialog.edit->text().toStdString(), "neu \"wert\"");
    apply({"text", "1001", ""});
    EXPECT_EQ(dialog.edit->text().toStdString(), "");
    apply({"text", "1002", "x"});
    EXPECT_EQ(dialog.readOnly->text().toStdString(), "C:\\pfad \"x\"") << "a read-only field takes nothing";

    apply({"select", "1004", "ANGBASE"}); // by the name without its indent
    EXPECT_EQ(linesStarting("ROW 1004 1")[0].substr(0, 22), "ROW 1004 1 2 selected ");
    apply({"select", "1004", "#0", "CLAYER"});
    const auto rows = linesStarting("ROW");
    EXPECT_NE(rows[0].find(" selected "), std::string::npos) << rows[0];
    EXPECT_EQ(rows[1].find(" selected "), std::string::npos) << "a new plain click clears: " << rows[1];
    EXPECT_NE(rows[2].find(" selected "), std::string::npos) << rows[2];

    apply({"cmd", "7000"});
    apply({"cmd", "7003"}); // disabled: nothing happens, as on a gray button
    EXPECT_EQ(dialog.events, (std::vector<std::string>{"edited neu \"wert\"", "edited ", "tool 0"}));
    apply({"cmd", "1"});
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(UiAutomationTest, KeysReachTheFieldThenTheDialog) {
    dialog.edit->clear();
    apply({"key", "1001", "Q"});
    EXPECT_EQ(dialog.edit->text().toStdString(), "q") << "a letter is typed";
    apply({"key", "1001", "Escape"});
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    dialog.show();
    apply({"key", "1001", "Return"});
    EXPECT_EQ(dialog.events, (std::vector<std::string>{"edited q", "return"}));
    EXPECT_FALSE(dialog.isVisible()) << "Return in the field ends the dialog by its default button";
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(UiAutomationTest, ShotResizeMoveAndClose) {
    QTemporaryDir dir;
    const std::string path = QDir(dir.path()).filePath("fenster.png").toStdString();
    apply({"shot", path});
    QImage image(QString::fromStdString(path));
    EXPECT_EQ(image.size(), dialog.size());
    apply({"resize", "640", "480"});
    apply({"move", "30", "40"});
    EXPECT_EQ(dialog.frameGeometry(), QRect(30, 40, 640, 480));
    apply({"close"});
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

TEST_F(UiAutomationTest, BadLinesStopWithReason) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"click", "9999"}, "no control 9999"},
        {{"cmd", "8099"}, "no command 8099"},
        {{"text", "1001"}, "usage"},
        {{"key", "1001", "F5"}, "unknown key"},
        {{"select", "1004", "NOSUCH"}, "no row \"NOSUCH\""},
        {{"select", "1004", "#7"}, "no row #7"},
        {{"select", "1001", "x"}, "is no list"},
        {{"answer", "yes"}, "no message box"},
        {{"file", "x.var"}, "no file dialog"},
        {{"wave"}, "unknown window line"},
        {{"resize", "a", "b"}, "whole numbers"},
    };
    for (const auto& [words, reason] : cases) {
        auto outcome = UiAutomation::apply(dialog, words, [](const std::string&) {});
        EXPECT_FALSE(outcome.ok) << words[0];
        EXPECT_NE(outcome.message.find(reason), std::string::npos)
            << words[0] << ": \"" << outcome.message << "\" lacks \"" << reason << "\"";
    }
    EXPECT_TRUE(dialog.isVisible());
}

} // namespace

#include "UiAutomationTest.moc"
