// Tests of the description and value fields: showing a record, applying typed text, the focus rules.
#include "dialogs/main/ValueEditing.h"

#include <hostsession.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QVBoxLayout>

namespace {

class ValueEditingTest : public ::testing::Test {
protected:
    void SetUp() override {
        host.setOutput([](const std::string&) {});
        ASSERT_TRUE(host.loadVariableTable(VARDESK_SOURCE_DIR "/data/hostvars.tsv"));
        ASSERT_NE(host.newDocument(), nullptr);
        for (const char* name : {"LUPREC", "VIEWCTR", "INSBASE", "CLAYER"})
            ASSERT_TRUE(list.addVariable("1", name, name == std::string("VIEWCTR") ? "-+" : "++", "Text", 1));
        list.readAllFromHost();

        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&view);
        layout->addWidget(&description);
        layout->addWidget(&value);
        view.setModel(&model);
        model.setRows(buildListRows(list, 0, {}));
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        view.setFocus();
        QCoreApplication::processEvents();
    }
    void TearDown() override { host.shutdown(); }

    cSysVar& at(const char* name) { return *list.findName(name); }
    QString column2(const char* name) { return model.cellText(model.rowOf(&at(name)), 2); }

    cadhost::HostSession& host = cadhost::HostSession::instance();
    cSysVarList list;
    VarListModel model{3};
    QWidget window;
    VarListView view;
    QPlainTextEdit description;
    QLineEdit value;
    cSysVar* currentVar = nullptr;
    std::int32_t visibleLines = 3;
    ValueEditing editing{view, description, value, currentVar, visibleLines};
};

// Tab, Enter and Escape through the fields of the real dialog are in MainDialogTest.
TEST_F(ValueEditingTest, ShowsARecordOrEmptiesTheFieldsAndEscapeForgetsTheTypedText) {
    value.setFocus();
    editing.showVariable(&at("LUPREC"));
    EXPECT_EQ(currentVar, &at("LUPREC"));
    EXPECT_EQ(value.text(), "4");
    EXPECT_FALSE(value.isReadOnly());
    EXPECT_EQ(description.toPlainText(), "Text");
    EXPECT_TRUE(value.hasFocus()) << "the focus stays where it is";

    value.setText("7");
    editing.cancel();
    EXPECT_EQ(currentVar, nullptr);
    EXPECT_EQ(value.text(), "7") << "Escape leaves the typed text";
    EXPECT_FALSE(value.isReadOnly());
    EXPECT_TRUE(view.hasFocus());
    value.setFocus();
    view.setFocus();
    EXPECT_TRUE(at("LUPREC").newText.empty()) << "leaving the field after Escape applies nothing";
    editing.showVariable(&at("LUPREC"));
    EXPECT_EQ(value.text(), "4") << "showing the record again brings its value back";

    editing.showVariable(&at("VIEWCTR"));
    EXPECT_TRUE(value.isReadOnly());
    EXPECT_FALSE(value.text().isEmpty());
    editing.applyValueEdit();
    EXPECT_TRUE(at("VIEWCTR").newText.empty()) << "a read-only record takes nothing";

    value.setReadOnly(false);
    value.setText("12");
    editing.showVariable(nullptr);
    EXPECT_EQ(currentVar, nullptr);
    EXPECT_TRUE(view.hasFocus());
    EXPECT_TRUE(value.text().isEmpty());
    EXPECT_TRUE(description.toPlainText().isEmpty());
    EXPECT_TRUE(value.isReadOnly());
    EXPECT_TRUE(at("VIEWCTR").newText.empty()) << "leaving the field applied nothing";
    value.setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(view.hasFocus()) << "with no record the value field hands on to the list";
}

TEST_F(ValueEditingTest, AppliedTextLandsInColumnTwo) {
    struct Case {
        const char* name;
        const char* typed;
        bool taken;
        const char* newText;
    };
    const Case cases[] = {
        {"LUPREC", "6", true, "6"},
        {"LUPREC", "abc", true, "6"}, // no number: the former new value stays
        {"INSBASE", "1", false, ""},  // one coordinate of a 3D point
        {"INSBASE", "1 2 3", true, nullptr},
        {"CLAYER", "\"Wand\"", true, "\"Wand\""},
        {"LUPREC", "", true, ""},
    };
    for (const Case& c : cases) {
        editing.showVariable(&at(c.name));
        value.setFocus();
        value.setText(c.typed);
        const QString before = column2(c.name);
        editing.applyValueEdit();
        EXPECT_TRUE(view.hasFocus()) << c.name << " " << c.typed;
        EXPECT_EQ(value.text(), c.typed) << "the field keeps what was typed";
        if (!c.taken) {
            EXPECT_EQ(column2(c.name), before) << c.name << " " << c.typed;
            continue;
        }
        EXPECT_EQ(column2(c.name).toStdString(), at(c.name).newText) << c.name << " " << c.typed;
        if (c.newText) {
            EXPECT_EQ(at(c.name).newText, c.newText) << c.name << " " << c.typed;
        }
    }
    EXPECT_TRUE(at("LUPREC").inUserList()) << "emptying keeps the record in the user list";
    EXPECT_FALSE(at("INSBASE").newText.empty());
}

TEST_F(ValueEditingTest, PassingThroughTheFieldAppliesItsText) {
    editing.showVariable(&at("LUPREC"));
    description.setFocus(Qt::MouseFocusReason);
    EXPECT_TRUE(value.hasFocus()) << "the description hands the focus on";
    EXPECT_FALSE(value.hasSelectedText()) << "the select-all is posted";
    view.setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(at("LUPREC").newText, "4");
    EXPECT_EQ(at("LUPREC").compareColour, kColourEqual);
    EXPECT_EQ(column2("LUPREC"), "4");
}

TEST_F(ValueEditingTest, ScrollBarShowsForMoreLinesThanVisible) {
    struct Case {
        int visible;
        const char* text;
        bool bar;
    };
    const Case cases[] = {{3, "a\nb\nc", false}, {3, "a\nb\nc\nd", true}, {1, "a\nb", true}, {1, "a", false}};
    for (const Case& c : cases) {
        visibleLines = c.visible;
        at("LUPREC").description = c.text;
        editing.showVariable(&at("LUPREC"));
        EXPECT_EQ(description.verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOn, c.bar)
            << c.visible << " visible, text " << c.text;
    }
}

} // namespace
