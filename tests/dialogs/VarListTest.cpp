// Tests of the variable list's rows, their painted look, and the list view's keys, clicks and selection.
#include "dialogs/main/VarListDelegate.h"
#include "dialogs/main/VarListModel.h"
#include "dialogs/main/VarListView.h"
#include "settings/cMsgCatalog.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <string>
#include <vector>

namespace {

// Themes "Anzeige" (2) and "Einheiten" (1); FILEDIA names theme 9, which the list lacks; 3DOSMODE
// does not begin with a letter.
struct Fixture {
    cSysVarList list;
    Fixture() {
        list.themes.addTheme(1, "Einheiten");
        list.themes.addTheme(2, "Anzeige");
        add("1", "LUPREC", "++");
        add("1", "AUNITS", "++");
        add("2", "OSMODE", "+-");
        add("9", "FILEDIA", "+-");
        add("2", "3DOSMODE", "+-");
        add("2", "VIEWCTR", "-+");
    }
    void add(const char* theme, const char* name, const char* marks) {
        EXPECT_TRUE(list.addVariable(theme, name, marks, "Beschreibung", 1)) << name;
    }
    cSysVar& at(const char* name) { return *list.findName(name); }
};

// A row as "<level> <name>" for a record, "<level> [<title>]" for a header, then the image.
std::string render(const ListRow& row) {
    const size_t blanks = row.text.find_first_not_of(' ');
    std::string level = std::to_string(blanks / 7 - 1);
    if (blanks % 7 != 0)
        level = "bad indent " + std::to_string(blanks);
    std::string text = row.text.substr(blanks == std::string::npos ? 0 : blanks);
    if (row.record && row.record->name != text)
        text = "record " + row.record->name + " under text " + text;
    return level + " " + (row.record ? text : "[" + text + "]") + " " + std::to_string(row.image);
}

std::vector<std::string> render(const std::vector<ListRow>& rows) {
    std::vector<std::string> out;
    for (const ListRow& row : rows)
        out.push_back(render(row));
    return out;
}

struct OrderCase {
    const char* name;
    int order;
    RowFilter filter;
    std::vector<std::string> rows;
};

// Every order with its headers and indents is checked through the main dialog (MainDialogTest).
TEST(VarListRows, FilterOfViewAndCompareModeLeavesOutEmptyGroups) {
    Fixture f;
    f.at("LUPREC").setInUserList();
    f.at("LUPREC").currentText = "4";
    f.at("LUPREC").newText = "4";
    f.at("VIEWCTR").setInUserList();
    f.at("VIEWCTR").currentText = "0,0,0";
    f.at("OSMODE").currentText = "1"; // differs, but is not in the user list
    f.at("OSMODE").newText = "2";
    const std::string drawing = "[" + gMsg.TxDrawSpecific + "] 0";
    const std::vector<OrderCase> cases = {
        {"user list, drawing scope first",
         3,
         {1, 0},
         {"0 " + drawing, "1 [Anzeige] 5", "2 VIEWCTR 0", "1 [Einheiten] 5", "2 LUPREC 0"}},
        {"compare narrows the user list; an empty new text differs", 0, {1, 1}, {"0 [V] 4", "1 VIEWCTR 0"}},
        {"compare narrows view 0 too", 1, {0, 1}, {"0 [Anzeige] 5", "1 VIEWCTR 0"}},
    };
    for (const OrderCase& c : cases)
        EXPECT_EQ(render(buildListRows(f.list, c.order, c.filter)), c.rows) << c.name;

    f.at("VIEWCTR").clearInUserList();
    EXPECT_TRUE(buildListRows(f.list, 0, {0, 1}).empty()) << "all new values equal the current ones";
    f.at("LUPREC").clearInUserList();
    EXPECT_TRUE(buildListRows(f.list, 2, {1, 0}).empty()) << "an empty user list";
}

TEST(VarListRows, WithoutThemesOnlyTheDefaultGroupsStand) {
    cSysVarList list;
    ASSERT_TRUE(list.addVariable("3", "OSMODE", "+-", "", 1));
    ASSERT_TRUE(list.addVariable("3", "LUPREC", "++", "", 2));
    const std::string other = "[" + gMsg.TxDefaultTheme + "] 5";
    EXPECT_EQ(render(buildListRows(list, 1, {})),
              (std::vector<std::string>{"0 " + other, "1 LUPREC 0", "1 OSMODE 1"}));
    EXPECT_EQ(render(buildListRows(list, 3, {})),
              (std::vector<std::string>{"0 [" + gMsg.TxGlobal + "] 1", "1 " + other, "2 OSMODE 1",
                                        "0 [" + gMsg.TxDrawSpecific + "] 0", "1 " + other, "2 LUPREC 0"}));
    EXPECT_TRUE(buildListRows(cSysVarList(), 3, {}).empty()) << "no records, no header";
    EXPECT_TRUE(buildListRows(list, 4, {}).empty()) << "no such order";
}

// ---- the painted look ----

const RowPalette kPalette{Qt::white, Qt::black, Qt::darkBlue, Qt::yellow};

// The colours of each kind of row are checked through the main dialog (MainDialogTest).

TEST(VarListLook, ImageIndentByOrderAndKind) {
    Fixture f;
    struct Case {
        int order;
        bool record;
        int image;
        int indent;
    };
    const Case cases[] = {
        {0, true, 0, 20}, {1, true, 1, 20},  {2, true, 0, 40},  {3, true, 1, 40}, {0, false, 4, 0},
        {1, false, 5, 0}, {2, false, 4, 20}, {3, false, 5, 20}, {2, false, 1, 0}, {3, false, 0, 0},
    };
    for (const Case& c : cases)
        EXPECT_EQ(lookOfRow("x", c.image, c.record ? &f.at("LUPREC") : nullptr, c.order, false, kPalette)
                      .imageIndent,
                  c.indent)
            << "order " << c.order << (c.record ? " record" : " header") << " image " << c.image;
}

TEST(VarListLook, ColumnZeroIsCutAt255Characters) {
    const QString name = QString(14, ' ') + QString(300, QChar(0x00C4)); // "Ä", two bytes in UTF-8
    const RowLook look = lookOfRow(name, 0, nullptr, 0, false, kPalette);
    EXPECT_EQ(look.texts[0].size(), 255);
    EXPECT_TRUE(look.texts[0].startsWith(QString(14, ' ')));
    EXPECT_EQ(lookOfRow("short", 0, nullptr, 0, false, kPalette).texts[0], "short");
}

// ---- the view ----

TEST(VarListWidths, ClampedOnTheWayInAndOut) {
    struct In {
        int column;
        std::int32_t width, clamped;
    };
    for (const In& c : {In{0, 10, 46}, In{0, 46, 46}, In{0, 5000, 1200}, In{1, 10, 20}, In{2, 1201, 1200},
                        In{1, 300, 300}, In{2, -5, 20}})
        EXPECT_EQ(VarListView::clampedStartWidth(c.column, c.width), c.clamped)
            << "column " << c.column << " width " << c.width;
    std::int32_t stored = 77;
    EXPECT_FALSE(VarListView::storedWidth(0, stored));
    EXPECT_EQ(stored, 77) << "a width of 0 is never stored";
    for (const auto& [width, clamped] : {std::pair{5, 20}, {2000, 1200}, {150, 150}}) {
        EXPECT_TRUE(VarListView::storedWidth(width, stored));
        EXPECT_EQ(stored, clamped) << "width " << width;
    }
}

class VarListViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        view.setModel(&model);
        view.resize(400, 400);
        view.show();
        model.setRows(buildListRows(f.list, 0, {}));
    }
    int current() const { return view.currentIndex().row(); }
    void key(Qt::Key k, Qt::KeyboardModifiers mods = Qt::NoModifier) { QTest::keyClick(&view, k, mods); }
    QPoint centreOfRow(int row) { return view.visualRect(model.index(row, 0)).center(); }

    Fixture f;
    VarListModel model{3};
    VarListView view;
};

TEST_F(VarListViewTest, LetterKeysGoToTheNextRowAndWrapOnce) {
    // Rows: A AUNITS F FILEDIA L LUPREC O OSMODE V VIEWCTR.
    key(Qt::Key_L);
    EXPECT_EQ(current(), 4) << "the letter's header comes first";
    key(Qt::Key_L);
    EXPECT_EQ(current(), 5);
    key(Qt::Key_L);
    EXPECT_EQ(current(), 4) << "wrapped to the top";
    EXPECT_EQ(view.selectedCount(), 0) << "nothing is selected by a letter";
    key(Qt::Key_Q);
    EXPECT_EQ(current(), 4) << "no row begins with Q";
    view.setCurrentIndex(model.index(9, 0));
    view.selectionModel()->clearSelection();
    key(Qt::Key_Z);
    EXPECT_EQ(current(), 9) << "Z on the last row";
    key(Qt::Key_A);
    EXPECT_EQ(current(), 9) << "no row behind the last: the search does not start";
    view.setCurrentIndex(model.index(8, 0));
    key(Qt::Key_A);
    EXPECT_EQ(current(), 0);
}

TEST_F(VarListViewTest, UpAndDownTellTheRowAboutToGetTheFocus) {
    QSignalSpy steps(&view, &VarListView::rowStepping);
    view.setCurrentIndex(model.index(0, 0));
    key(Qt::Key_Down);
    ASSERT_EQ(steps.size(), 1);
    EXPECT_EQ(steps[0][0].value<cSysVar*>(), &f.at("AUNITS"));
    EXPECT_TRUE(steps[0][1].toBool());
    EXPECT_EQ(current(), 1) << "the view still moves";
    key(Qt::Key_Up);
    ASSERT_EQ(steps.size(), 2);
    EXPECT_EQ(steps[1][0].value<cSysVar*>(), nullptr) << "a header row";
    key(Qt::Key_Up);
    EXPECT_EQ(steps.size(), 2) << "Up on the first row";
    view.setCurrentIndex(model.index(9, 0));
    key(Qt::Key_Down);
    EXPECT_EQ(steps.size(), 2) << "Down on the last row";
    view.selectionModel()->select(model.index(1, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    key(Qt::Key_Up);
    ASSERT_EQ(steps.size(), 3);
    EXPECT_FALSE(steps[2][1].toBool()) << "two rows selected";
}

TEST_F(VarListViewTest, ClickTellsTheRecordOnlyForOneSelectedRow) {
    QSignalSpy clicks(&view, &VarListView::rowClicked);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, centreOfRow(3));
    ASSERT_EQ(clicks.size(), 1);
    EXPECT_EQ(clicks[0][0].value<cSysVar*>(), &f.at("FILEDIA"));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ControlModifier, centreOfRow(5));
    ASSERT_EQ(clicks.size(), 2);
    EXPECT_EQ(clicks[1][0].value<cSysVar*>(), nullptr) << "two rows selected";
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, centreOfRow(2));
    ASSERT_EQ(clicks.size(), 3);
    EXPECT_EQ(clicks[2][0].value<cSysVar*>(), nullptr) << "a header row";
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(5, view.viewport()->height() - 3));
    ASSERT_EQ(clicks.size(), 4);
    EXPECT_EQ(clicks[3][0].value<cSysVar*>(), nullptr) << "beside the rows";
}

TEST_F(VarListViewTest, SelectionGoesIntoTheRecordsAndBack) {
    view.selectionModel()->select(model.index(0, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    view.selectionModel()->select(model.index(5, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    f.at("OSMODE").setSelected(); // not selected in the view: cleared
    view.rememberSelection();
    EXPECT_TRUE(f.at("LUPREC").isSelected());
    EXPECT_FALSE(f.at("OSMODE").isSelected());
    f.at("3DOSMODE").setSelected(); // gets no row in order 0: keeps its flag

    view.fillRows(buildListRows(f.list, 1, {}));
    EXPECT_EQ(view.selectedCount(), 2) << "LUPREC and 3DOSMODE; the header's selection is lost";
    const int row = model.rowOf(&f.at("LUPREC"));
    EXPECT_TRUE(view.selectionModel()->isSelected(model.index(row, 0)));
    EXPECT_FALSE(f.at("LUPREC").isSelected()) << "cleared once inserted selected";
    EXPECT_FALSE(f.at("3DOSMODE").isSelected()) << "order 1 shows it";
}

} // namespace
