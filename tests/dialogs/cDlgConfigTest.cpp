// Tests of the configuration dialog: layout, the path fields, browsing, and the OK step's question.
#include "dialogs/cDlgConfig.h"
#include "dialogs/CEditEx.h"
#include "frame/cDocCntx.h"
#include "settings/cMsgCatalog.h"

#include "platform/ScriptedUiServices.h"

#include <hostsession.h>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <deque>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

// Answers come from a queue; an empty queue cancels.
class FakeScript : public kova::ScriptHost {
public:
    void printLine(const std::string& text) override { lines.push_back(text); }
    std::string takeAnswer(const std::string& verb) override {
        verbs.push_back(verb);
        if (answers.empty())
            return "cancel";
        std::string answer = answers.front();
        answers.pop_front();
        return answer;
    }
    int driveModal(QDialog& dialog) override { return dialog.result(); }
    std::vector<std::string> lines;
    std::vector<std::string> verbs;
    std::deque<std::string> answers;
};

FakeScript& script() {
    static FakeScript instance;
    return instance;
}

kova::ScriptedUiServices& services() {
    static kova::ScriptedUiServices instance(script());
    return instance;
}

class ConfigDialog : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/vardesk-config-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder = pattern;
        oldAvl = (folder / "old.avl").string();
        newAvl = (folder / "new.avl").string();
        oldEditor = (folder / "oldeditor").string();
        newEditor = (folder / "neweditor").string();
        for (const std::string& path : {oldAvl, newAvl, oldEditor, newEditor})
            std::ofstream(path) << "x\n";
        missingAvl = (folder / "missing.avl").string();
        missingEditor = (folder / "missing-editor").string();

        host.setUiServices(&services());
        host.setOutput([](const std::string&) {});
        context = std::make_unique<cDocCntx>(host.newDocument());
        context->avlFilePath = oldAvl;
        context->editorPath = oldEditor;
        context->configPosX = 60;
        context->configPosY = 70;
        context->configSizeX = 500;
        context->configSizeY = 140;
        script().lines.clear();
        script().verbs.clear();
        script().answers.clear();
    }

    void TearDown() override {
        context.reset();
        host.shutdown();
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    std::unique_ptr<cDlgConfig> open() {
        auto d = std::make_unique<cDlgConfig>(*context);
        d->show();
        d->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(d.get()));
        return d;
    }

    template <typename T> static T* control(QWidget& d, int id) {
        return d.findChild<T*>(QString::number(id));
    }

    // Types text into a field as a user does: focus, select all, type.
    static void type(cDlgConfig& d, int id, const std::string& text) {
        auto* field = control<CEditEx>(d, id);
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, QString::fromStdString(text));
    }

    cadhost::HostSession& host = cadhost::HostSession::instance();
    std::filesystem::path folder;
    std::string oldAvl, newAvl, oldEditor, newEditor, missingAvl, missingEditor;
    std::unique_ptr<cDocCntx> context;
};

} // namespace

TEST_F(ConfigDialog, StartsWithTheContextsPathsAndItsTexts) {
    auto d = open();
    EXPECT_EQ(d->windowTitle().toStdString(), gMsg.TiConfig);
    EXPECT_EQ(d->property("templateId").toInt(), 1118);
    EXPECT_EQ(control<CEditEx>(*d, cDlgConfig::kIdAvlPath)->text().toStdString(), oldAvl);
    EXPECT_EQ(control<CEditEx>(*d, cDlgConfig::kIdEditorPath)->text().toStdString(), oldEditor);
    EXPECT_EQ(control<QLabel>(*d, cDlgConfig::kIdAvlLabel)->text().toStdString(), gMsg.RsStcAVL);
    EXPECT_EQ(control<QLabel>(*d, cDlgConfig::kIdEditorLabel)->text().toStdString(), gMsg.RsStcEditor);
    EXPECT_EQ(control<QPushButton>(*d, cDlgConfig::kIdOk)->text().toStdString(), gMsg.RsBtnOk);
    EXPECT_EQ(control<QPushButton>(*d, cDlgConfig::kIdCancel)->text().toStdString(), gMsg.RsBtnCancel);
    EXPECT_EQ(control<QPushButton>(*d, cDlgConfig::kIdHelp)->text().toStdString(), gMsg.RsBtnHelp);
}

TEST_F(ConfigDialog, FieldsStartBehindTheWiderLabelAndButtonsFollowTheWidth) {
    auto d = open();
    auto* avlLabel = control<QLabel>(*d, cDlgConfig::kIdAvlLabel);
    auto* editorLabel = control<QLabel>(*d, cDlgConfig::kIdEditorLabel);
    auto* avlField = control<CEditEx>(*d, cDlgConfig::kIdAvlPath);
    auto* editorField = control<CEditEx>(*d, cDlgConfig::kIdEditorPath);
    auto* avlBrowse = control<QPushButton>(*d, cDlgConfig::kIdAvlBrowse);
    auto* editorBrowse = control<QPushButton>(*d, cDlgConfig::kIdEditorBrowse);
    auto* ok = control<QPushButton>(*d, cDlgConfig::kIdOk);
    auto* cancel = control<QPushButton>(*d, cDlgConfig::kIdCancel);
    auto* help = control<QPushButton>(*d, cDlgConfig::kIdHelp);

    // The two texts differ in length; both fields start at the same x, behind the wider text.
    const QFontMetrics metrics(avlLabel->font());
    ASSERT_GT(metrics.horizontalAdvance(avlLabel->text()), metrics.horizontalAdvance(editorLabel->text()));
    EXPECT_GE(d->labelWidth, 10 + metrics.horizontalAdvance(avlLabel->text()));
    const int h = avlLabel->height();
    EXPECT_EQ(avlLabel->geometry(), QRect(10, 10, d->labelWidth - 10, h));
    EXPECT_EQ(editorLabel->geometry(), QRect(10, h + 20, d->labelWidth - 10, h));

    const int bw = ok->width();
    const int bh = ok->height();
    struct Case {
        const char* name;
        int clientWidth;
        bool wide;
    } cases[] = {{"wide", 3 * bw + 41 + 200, true}, {"narrow", 3 * bw + 40, false}};
    for (const Case& c : cases) {
        d->resize(c.clientWidth, d->height());
        QCoreApplication::processEvents();
        ASSERT_EQ(d->width(), c.clientWidth) << c.name;
        const int rowTop = editorLabel->y() + editorLabel->height() + 10;
        EXPECT_EQ(ok->geometry(), QRect(10, rowTop, bw, bh)) << c.name;
        EXPECT_EQ(cancel->geometry(), QRect(bw + 20, rowTop, bw, bh)) << c.name;
        const int helpX = c.wide ? c.clientWidth - 10 - bw : cancel->x() + bw + 10;
        EXPECT_EQ(help->geometry(), QRect(helpX, rowTop, bw, bh)) << c.name;
        for (auto [browse, label, field] : {std::tuple{avlBrowse, avlLabel, avlField},
                                            std::tuple{editorBrowse, editorLabel, editorField}}) {
            EXPECT_EQ(browse->x() + browse->width(), help->x() + bw) << c.name;
            EXPECT_EQ(browse->y(), label->y()) << c.name;
            EXPECT_EQ(browse->height(), label->height()) << c.name;
            EXPECT_EQ(field->geometry(),
                      QRect(d->labelWidth, label->y(), browse->x() - 10 - d->labelWidth, label->height()))
                << c.name;
        }
    }
}

TEST_F(ConfigDialog, OkStoresExistingPathsAndAsksAboutMissingOnes) {
    struct Case {
        const char* name;
        std::string avl, editor;
        const char* answer;
        std::string question; // empty: no question
        std::string storedAvl, storedEditor;
    } cases[] = {
        {"both exist", newAvl, newEditor, "", "", newAvl, newEditor},
        {"avl missing, no", missingAvl, newEditor, "no",
         missingAvl + " " + gMsg.TxDoesNotExist + " " + gMsg.TxAssume, oldAvl, newEditor},
        {"editor missing, no", newAvl, missingEditor, "no",
         missingEditor + " " + gMsg.TxDoesNotExist + " " + gMsg.TxAssume, newAvl, oldEditor},
        {"avl missing, yes", missingAvl, newEditor, "yes",
         missingAvl + " " + gMsg.TxDoesNotExist + " " + gMsg.TxAssume, missingAvl, newEditor},
        {"both missing, no", missingAvl, missingEditor, "no",
         missingAvl + " " + gMsg.Tx_and + " " + missingEditor + " " + gMsg.TxDoNotExist + " " + gMsg.TxAssume,
         oldAvl, oldEditor},
        {"both missing, yes", missingAvl, missingEditor, "yes",
         missingAvl + " " + gMsg.Tx_and + " " + missingEditor + " " + gMsg.TxDoNotExist + " " + gMsg.TxAssume,
         missingAvl, missingEditor},
        {"avl empty, yes", "", oldEditor, "yes", std::string(" ") + gMsg.TxDoesNotExist + " " + gMsg.TxAssume,
         "", oldEditor},
    };
    for (const Case& c : cases) {
        context->avlFilePath = oldAvl;
        context->editorPath = oldEditor;
        script().lines.clear();
        script().answers = {c.answer};
        auto d = open();
        // The AVL path is confirmed by Enter; the editor path is left in its field with the focus.
        type(*d, cDlgConfig::kIdAvlPath, c.avl);
        QTest::keyClick(control<CEditEx>(*d, cDlgConfig::kIdAvlPath), Qt::Key_Return);
        EXPECT_EQ(d->focusWidget(), control<QPushButton>(*d, cDlgConfig::kIdOk)) << c.name;
        EXPECT_TRUE(d->isVisible()) << c.name;
        type(*d, cDlgConfig::kIdEditorPath, c.editor);
        QTest::mouseClick(control<QPushButton>(*d, cDlgConfig::kIdOk), Qt::LeftButton);

        EXPECT_FALSE(d->isVisible()) << c.name;
        EXPECT_EQ(d->result(), QDialog::Accepted) << c.name;
        if (c.question.empty())
            EXPECT_TRUE(script().lines.empty()) << c.name;
        else
            EXPECT_EQ(script().lines,
                      std::vector<std::string>{"BOX question: " + gMsg.TiMsgBoxQuestion + ": " + c.question})
                << c.name;
        EXPECT_EQ(context->avlFilePath, c.storedAvl) << c.name;
        EXPECT_EQ(context->editorPath, c.storedEditor) << c.name;
        EXPECT_EQ(QRect(context->configPosX, context->configPosY, context->configSizeX, context->configSizeY),
                  d->frameGeometry())
            << c.name;
    }
}

TEST_F(ConfigDialog, CancelStoresTheRectangleButNoPath) {
    for (const char* way : {"cancel button", "close box", "escape"}) {
        auto d = open();
        type(*d, cDlgConfig::kIdAvlPath, newAvl);
        QTest::keyClick(control<CEditEx>(*d, cDlgConfig::kIdAvlPath), Qt::Key_Return);
        d->move(80, 90);
        QCoreApplication::processEvents();
        const std::string w = way;
        if (w == "cancel button")
            QTest::mouseClick(control<QPushButton>(*d, cDlgConfig::kIdCancel), Qt::LeftButton);
        else if (w == "close box")
            d->close();
        else
            QTest::keyClick(d.get(), Qt::Key_Escape);
        EXPECT_FALSE(d->isVisible()) << way;
        EXPECT_EQ(d->result(), QDialog::Rejected) << way;
        EXPECT_EQ(context->avlFilePath, oldAvl) << way;
        EXPECT_EQ(context->configPosX, 80) << way;
        EXPECT_EQ(context->configPosY, 90) << way;
        EXPECT_TRUE(script().lines.empty()) << way;
    }
}

TEST_F(ConfigDialog, EscapeInAFieldGoesToCancelAndKeepsTheDialogOpen) {
    auto d = open();
    auto* field = control<CEditEx>(*d, cDlgConfig::kIdEditorPath);
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(d->focusWidget(), control<QPushButton>(*d, cDlgConfig::kIdCancel));
    EXPECT_EQ(field->text().toStdString(), oldEditor);
}

TEST_F(ConfigDialog, BrowseOffersItsFilterAndTakesOnlyAConfirmedChoice) {
    struct Case {
        int button;
        int field;
        std::string filter;
        std::string initial;
        std::string answer;
        std::string expected;
    } cases[] = {
        {cDlgConfig::kIdAvlBrowse, cDlgConfig::kIdAvlPath,
         gMsg.FiAcadVarList + " (*.avl)|*.avl|" + gMsg.FiAll + " (*.*)|*.*||", oldAvl, newAvl, newAvl},
        {cDlgConfig::kIdAvlBrowse, cDlgConfig::kIdAvlPath,
         gMsg.FiAcadVarList + " (*.avl)|*.avl|" + gMsg.FiAll + " (*.*)|*.*||", oldAvl, "cancel", oldAvl},
        {cDlgConfig::kIdEditorBrowse, cDlgConfig::kIdEditorPath,
         gMsg.FiExecutables + " (*.exe)|*.exe|" + gMsg.FiAll + " (*.*)|*.*||", oldEditor, newEditor,
         newEditor},
    };
    for (const Case& c : cases) {
        context->avlFilePath = oldAvl;
        context->editorPath = oldEditor;
        script().lines.clear();
        script().answers = {c.answer};
        auto d = open();
        QTest::mouseClick(control<QPushButton>(*d, c.button), Qt::LeftButton);
        const std::string name = std::to_string(c.button) + " " + c.answer;
        ASSERT_EQ(script().lines.size(), 1u) << name;
        EXPECT_EQ(script().lines[0], "FILEDIALOG open: " + c.filter + " | " + c.initial) << name;
        EXPECT_EQ(control<CEditEx>(*d, c.field)->text().toStdString(), c.expected) << name;
        EXPECT_EQ(c.field == cDlgConfig::kIdAvlPath ? d->avlPath : d->editorPath, c.expected) << name;
        // Only OK stores what was chosen.
        EXPECT_EQ(context->avlFilePath, oldAvl) << name;
        d->accept();
        EXPECT_EQ(c.field == cDlgConfig::kIdAvlPath ? context->avlFilePath : context->editorPath, c.expected)
            << name;
    }
}
