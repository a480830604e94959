// Tests of the configuration dialog: layout, the path fields, browsing, and the OK step's question.
#include "CommandsTestKit.h"

#include "dialogs/cDlgConfig.h"
#include "dialogs/CEditEx.h"

#include <QPushButton>

namespace {

using namespace commandstest;

class ConfigDialog : public HostTest {
protected:
    void prepareContext() override {
        oldAvl = path("old.avl"), newAvl = path("new.avl"), missingAvl = path("missing.avl");
        oldEditor = path("oldeditor"), newEditor = path("neweditor"), missingEditor = path("missing-editor");
        for (const char* name : {"old.avl", "new.avl", "oldeditor", "neweditor"})
            writeFile(name, "x\n");
        context->avlFilePath = oldAvl;
        context->editorPath = oldEditor;
        context->configPosX = 60;
        context->configPosY = 70;
        context->configSizeX = 500;
        context->configSizeY = 140;
    }

    std::unique_ptr<cDlgConfig> open() {
        auto d = std::make_unique<cDlgConfig>(*context);
        d->show();
        d->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(d.get()));
        return d;
    }

    // Types text into a field as a user does: focus, select all, type.
    static void type(cDlgConfig& d, int id, const std::string& text) {
        auto* field = control<CEditEx>(d, id);
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, QString::fromStdString(text));
    }

    std::string oldAvl, newAvl, missingAvl, oldEditor, newEditor, missingEditor;
};

} // namespace

// Both fields start behind the wider label, and each label stands in its row.
TEST_F(ConfigDialog, FieldsStartBehindTheWiderLabel) {
    auto d = open();
    auto* avlLabel = control<QLabel>(*d, cDlgConfig::kIdAvlLabel);
    const QFontMetrics metrics(avlLabel->font());
    ASSERT_GT(metrics.horizontalAdvance(avlLabel->text()),
              metrics.horizontalAdvance(control<QLabel>(*d, cDlgConfig::kIdEditorLabel)->text()));
    EXPECT_EQ(d->labelWidth(), 10 + metrics.horizontalAdvance(avlLabel->text()));
    const int h = avlLabel->height();
    const int rows[][2] = {{cDlgConfig::kIdAvlLabel, cDlgConfig::kIdAvlPath},
                           {cDlgConfig::kIdEditorLabel, cDlgConfig::kIdEditorPath}};
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(control<QLabel>(*d, rows[i][0])->geometry(),
                  QRect(10, 10 + i * (h + 10), d->labelWidth() - 10, h))
            << "row " << i;
        EXPECT_EQ(control<CEditEx>(*d, rows[i][1])->x(), d->labelWidth()) << "row " << i;
    }
}

// The browse buttons end where Help does, which stands at the right edge when there is room and
// behind Cancel when there is not; the fields fill what is left of their rows.
TEST_F(ConfigDialog, ButtonsAndFieldsFollowTheWidth) {
    auto d = open();
    auto* ok = control<QPushButton>(*d, cDlgConfig::kIdOk);
    auto* cancel = control<QPushButton>(*d, cDlgConfig::kIdCancel);
    auto* help = control<QPushButton>(*d, cDlgConfig::kIdHelp);
    const int bw = ok->width(), h = control<QLabel>(*d, cDlgConfig::kIdAvlLabel)->height();
    for (const int width : {3 * bw + 241, 3 * bw + 40}) {
        SCOPED_TRACE("width " + std::to_string(width));
        d->resize(width, d->height());
        QCoreApplication::processEvents();
        ASSERT_EQ(d->width(), width);
        const QRect okAt(10, 2 * h + 30, bw, ok->height());
        EXPECT_EQ(ok->geometry(), okAt);
        EXPECT_EQ(cancel->geometry(), okAt.translated(bw + 10, 0));
        EXPECT_EQ(help->geometry(),
                  okAt.translated(width > 3 * bw + 40 ? width - 20 - bw : 2 * (bw + 10), 0));
        const int rows[][2] = {{cDlgConfig::kIdAvlPath, cDlgConfig::kIdAvlBrowse},
                               {cDlgConfig::kIdEditorPath, cDlgConfig::kIdEditorBrowse}};
        for (int i = 0; i < 2; ++i) {
            const int top = 10 + i * (h + 10);
            const int browseX = control<QPushButton>(*d, rows[i][1])->x();
            EXPECT_EQ(control<QPushButton>(*d, rows[i][1])->geometry(),
                      QRect(browseX, top, help->geometry().right() - browseX + 1, h));
            EXPECT_EQ(control<CEditEx>(*d, rows[i][0])->geometry(),
                      QRect(d->labelWidth(), top, browseX - 10 - d->labelWidth(), h));
        }
    }
}

// The AVL path is confirmed by Enter, the editor path is left in its field with the focus: both
// are taken over.
TEST_F(ConfigDialog, OkStoresExistingPathsAndAsksAboutMissingOnes) {
    struct Case {
        const char* name;
        std::string avl, editor;
        const char* answer;
        std::string question; // the question's text after the title; empty: no question
        std::string storedAvl, storedEditor;
    } cases[] = {
        {"both exist", newAvl, newEditor, "", "", newAvl, newEditor},
        {"avl missing, no", missingAvl, newEditor, "no",
         missingAvl + " " + gMsg.TxDoesNotExist + " " + gMsg.TxAssume, oldAvl, newEditor},
        {"both missing, yes", missingAvl, missingEditor, "yes",
         missingAvl + " " + gMsg.Tx_and + " " + missingEditor + " " + gMsg.TxDoNotExist + " " + gMsg.TxAssume,
         missingAvl, missingEditor},
        {"avl empty, yes", "", oldEditor, "yes", std::string(" ") + gMsg.TxDoesNotExist + " " + gMsg.TxAssume,
         "", oldEditor},
    };
    for (const Case& c : cases) {
        context->avlFilePath = oldAvl;
        context->editorPath = oldEditor;
        user().lines.clear();
        user().answers = {c.answer};
        auto d = open();
        type(*d, cDlgConfig::kIdAvlPath, c.avl);
        QTest::keyClick(control<CEditEx>(*d, cDlgConfig::kIdAvlPath), Qt::Key_Return);
        type(*d, cDlgConfig::kIdEditorPath, c.editor);
        QTest::mouseClick(control<QPushButton>(*d, cDlgConfig::kIdOk), Qt::LeftButton);

        EXPECT_FALSE(d->isVisible()) << c.name;
        EXPECT_EQ(d->result(), QDialog::Accepted) << c.name << ": either answer ends the dialog";
        if (c.question.empty())
            EXPECT_TRUE(user().lines.empty()) << c.name;
        else
            EXPECT_EQ(user().lines,
                      std::vector<std::string>{"BOX question: " + gMsg.TiMsgBoxQuestion + ": " + c.question})
                << c.name;
        EXPECT_EQ(context->avlFilePath, c.storedAvl) << c.name;
        EXPECT_EQ(context->editorPath, c.storedEditor) << c.name;
    }
}

TEST_F(ConfigDialog, EnterInAPathFieldGoesToOkAndEndsNothing) {
    auto d = open();
    type(*d, cDlgConfig::kIdEditorPath, newEditor);
    QTest::keyClick(control<CEditEx>(*d, cDlgConfig::kIdEditorPath), Qt::Key_Return);
    EXPECT_EQ(d->focusWidget(), control<QPushButton>(*d, cDlgConfig::kIdOk));
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(context->editorPath, oldEditor);
    d->accept();
    EXPECT_EQ(context->editorPath, newEditor) << "the working path took the text over";
}

// Escape in a field only goes to Cancel, keeping what was typed; a second one ends the dialog.
TEST_F(ConfigDialog, EscapeInAPathFieldGoesToCancelAndASecondEndsTheDialog) {
    auto d = open();
    type(*d, cDlgConfig::kIdEditorPath, newEditor);
    auto* field = control<CEditEx>(*d, cDlgConfig::kIdEditorPath);
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(d->focusWidget(), control<QPushButton>(*d, cDlgConfig::kIdCancel));
    EXPECT_EQ(field->text().toStdString(), newEditor);
    QTest::keyClick(d.get(), Qt::Key_Escape);
    EXPECT_FALSE(d->isVisible());
    EXPECT_EQ(d->result(), QDialog::Rejected);
}

TEST_F(ConfigDialog, CancelStoresTheRectangleButNoPath) {
    auto d = open();
    type(*d, cDlgConfig::kIdAvlPath, newAvl);
    QTest::keyClick(control<CEditEx>(*d, cDlgConfig::kIdAvlPath), Qt::Key_Return);
    d->move(80, 90);
    QCoreApplication::processEvents();
    QTest::mouseClick(control<QPushButton>(*d, cDlgConfig::kIdCancel), Qt::LeftButton);
    EXPECT_FALSE(d->isVisible());
    EXPECT_EQ(context->avlFilePath, oldAvl);
    EXPECT_EQ(QRect(context->configPosX, context->configPosY, context->configSizeX, context->configSizeY),
              d->frameGeometry());
    EXPECT_EQ(context->configPosX, 80);
    EXPECT_TRUE(user().lines.empty());
}

TEST_F(ConfigDialog, BrowseOffersItsFilterAndTakesOnlyAConfirmedChoice) {
    struct Case {
        int button, field;
        std::string filter, initial, answer, expected;
    } cases[] = {
        {cDlgConfig::kIdAvlBrowse, cDlgConfig::kIdAvlPath,
         gMsg.FiAcadVarList + " (*.avl)|*.avl|" + gMsg.FiAll + " (*.*)|*.*||", oldAvl, "cancel", oldAvl},
        {cDlgConfig::kIdEditorBrowse, cDlgConfig::kIdEditorPath,
         gMsg.FiExecutables + " (*.exe)|*.exe|" + gMsg.FiAll + " (*.*)|*.*||", oldEditor, newEditor,
         newEditor},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.button) + " " + c.answer);
        user().lines.clear();
        user().answers = {c.answer};
        auto d = open();
        QTest::mouseClick(control<QPushButton>(*d, c.button), Qt::LeftButton);
        EXPECT_EQ(user().lines, std::vector<std::string>{"FILEDIALOG open: " + c.filter + " | " + c.initial});
        EXPECT_EQ(control<CEditEx>(*d, c.field)->text().toStdString(), c.expected);
        EXPECT_EQ(context->avlFilePath, oldAvl) << "only OK stores what was chosen";
        d->accept();
        EXPECT_EQ(c.field == cDlgConfig::kIdAvlPath ? context->avlFilePath : context->editorPath, c.expected);
    }
}
