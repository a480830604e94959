// Tests of the configuration dialog: layout, the path fields, browsing, and the OK step's question.
#include "CommandsTestKit.h"

#include "dialogs/cDlgConfig.h"
#include "dialogs/CEditEx.h"

#include <QPushButton>

namespace {

using namespace commandstest;

class ConfigDialog : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        if (HasFatalFailure())
            return;
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
            EXPECT_TRUE(user().lines.empty()) << c.name;
        else
            EXPECT_EQ(user().lines, std::vector<std::string>{question(c.question)}) << c.name;
        EXPECT_EQ(context->avlFilePath, c.storedAvl) << c.name;
        EXPECT_EQ(context->editorPath, c.storedEditor) << c.name;
        EXPECT_EQ(QRect(context->configPosX, context->configPosY, context->configSizeX, context->configSizeY),
                  d->frameGeometry())
            << c.name;
    }
}

// Escape in a field only goes to Cancel; a second one ends the dialog, storing no path.
TEST_F(ConfigDialog, CancelStoresTheRectangleButNoPath) {
    auto d = open();
    type(*d, cDlgConfig::kIdAvlPath, newAvl);
    QTest::keyClick(control<CEditEx>(*d, cDlgConfig::kIdAvlPath), Qt::Key_Return);
    d->move(80, 90);
    QCoreApplication::processEvents();
    auto* field = control<CEditEx>(*d, cDlgConfig::kIdEditorPath);
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(d->focusWidget(), control<QPushButton>(*d, cDlgConfig::kIdCancel));
    QTest::keyClick(d.get(), Qt::Key_Escape);
    EXPECT_FALSE(d->isVisible());
    EXPECT_EQ(d->result(), QDialog::Rejected);
    EXPECT_EQ(context->avlFilePath, oldAvl);
    EXPECT_EQ(QPoint(context->configPosX, context->configPosY), QPoint(80, 90));
    EXPECT_TRUE(user().lines.empty());
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
         gMsg.FiAcadVarList + " (*.avl)|*.avl|" + gMsg.FiAll + " (*.*)|*.*||", oldAvl, "cancel", oldAvl},
        {cDlgConfig::kIdEditorBrowse, cDlgConfig::kIdEditorPath,
         gMsg.FiExecutables + " (*.exe)|*.exe|" + gMsg.FiAll + " (*.*)|*.*||", oldEditor, newEditor,
         newEditor},
    };
    for (const Case& c : cases) {
        context->avlFilePath = oldAvl;
        context->editorPath = oldEditor;
        user().lines.clear();
        user().answers = {c.answer};
        auto d = open();
        QTest::mouseClick(control<QPushButton>(*d, c.button), Qt::LeftButton);
        const std::string name = std::to_string(c.button) + " " + c.answer;
        ASSERT_EQ(user().lines.size(), 1u) << name;
        EXPECT_EQ(user().lines[0], "FILEDIALOG open: " + c.filter + " | " + c.initial) << name;
        EXPECT_EQ(control<CEditEx>(*d, c.field)->text().toStdString(), c.expected) << name;
        EXPECT_EQ(c.field == cDlgConfig::kIdAvlPath ? d->avlPath : d->editorPath, c.expected) << name;
        // Only OK stores what was chosen.
        EXPECT_EQ(context->avlFilePath, oldAvl) << name;
        d->accept();
        EXPECT_EQ(c.field == cDlgConfig::kIdAvlPath ? context->avlFilePath : context->editorPath, c.expected)
            << name;
    }
}
