// Tests of the variable list's rows, their painted look, and the list view's keys, clicks and selection.
#include "dialogs/ListOrderTable.h"
#include "dialogs/ModuleResources.h"
#include "dialogs/VarListDelegate.h"
#include "dialogs/VarListModel.h"
#include "dialogs/VarListView.h"
#include "settings/cMsgCatalog.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <set>
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
    return level + " " + (row.record ? text : "[" + text + "]") + " " +
           std::to_string(static_cast<int>(row.image));
}

std::vector<std::string> render(const std::vector<ListRow>& rows) {
    std::vector<std::string> out;
    for (const ListRow& row : rows)
        out.push_back(render(row));
    return out;
}

struct OrderCase {
    const char* name;
    ListOrder order;
    RowFilter filter;
    std::vector<std::string> rows;
};

// Every order with its headers is checked through the main dialog (MainDialogTest).
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
         ListOrder::ScopeTheme,
         {ListView::UserList, CompareMode::Off},
         {"0 " + drawing, "1 [Anzeige] 5", "2 VIEWCTR 0", "1 [Einheiten] 5", "2 LUPREC 0"}},
        {"compare narrows the user list; an empty new text differs",
         ListOrder::Letter,
         {ListView::UserList, CompareMode::On},
         {"0 [V] 4", "1 VIEWCTR 0"}},
        {"compare narrows view 0 too",
         ListOrder::Theme,
         {ListView::All, CompareMode::On},
         {"0 [Anzeige] 5", "1 VIEWCTR 0"}},
    };
    for (const OrderCase& c : cases)
        EXPECT_EQ(render(buildListRows(f.list, c.order, c.filter)), c.rows) << c.name;
}

TEST(VarListRows, NoRowAtAllWhenNoRecordPasses) {
    Fixture f;
    f.at("LUPREC").setInUserList();
    f.at("LUPREC").currentText = "4";
    f.at("LUPREC").newText = "4";
    EXPECT_TRUE(buildListRows(f.list, ListOrder::Letter, {ListView::All, CompareMode::On}).empty())
        << "all new values equal the current ones";
    f.at("LUPREC").clearInUserList();
    EXPECT_TRUE(buildListRows(f.list, ListOrder::ScopeLetter, {ListView::UserList, CompareMode::Off}).empty())
        << "an empty user list";
}

TEST(VarListRows, AnOrderOutsideTheTableGivesNoRows) {
    Fixture f;
    EXPECT_FALSE(buildListRows(f.list, ListOrder::Letter, {}).empty());
    // A value as a damaged context could hold: one past the orders of the table.
    const auto outside = static_cast<ListOrder>(listOrderTable().size());
    ASSERT_EQ(listOrderEntry(outside), nullptr);
    EXPECT_TRUE(buildListRows(f.list, outside, {}).empty());
}

// ---- the painted look ----

const RowPalette kPalette{Qt::white, Qt::black, Qt::darkBlue, Qt::yellow};

TEST(VarListLook, ImageIndentByOrderAndKind) {
    Fixture f;
    struct Case {
        ListOrder order;
        bool record;
        RowImage image;
        int indent;
    };
    // Records sit one level deeper in the scope orders; there a scope header stands at the left.
    const Case cases[] = {{ListOrder::Theme, true, RowImage::Global, 20},
                          {ListOrder::ScopeLetter, true, RowImage::Drawing, 40},
                          {ListOrder::Theme, false, RowImage::Theme, 0},
                          {ListOrder::ScopeTheme, false, RowImage::Theme, 20},
                          {ListOrder::ScopeTheme, false, RowImage::Drawing, 0}};
    for (const Case& c : cases)
        EXPECT_EQ(lookOfRow("x", c.image, c.record ? &f.at("LUPREC") : nullptr, c.order, false, kPalette)
                      .imageIndent,
                  c.indent)
            << "order " << static_cast<int>(c.order) << (c.record ? " record" : " header") << " image "
            << static_cast<int>(c.image);
}

// Each order's image is its tool button's, at a place of its own behind the two record images.
TEST(VarListLook, RowImagesHoldEachOrdersImageAtItsPlace) {
    const std::vector<QIcon> images = makeRowImages();
    auto picture = [](const QIcon& icon) { return icon.pixmap(QSize(16, 16)).toImage(); };
    std::set<RowImage> places;
    for (const ListOrderEntry& entry : listOrderTable()) {
        const auto place = static_cast<std::size_t>(entry.image);
        EXPECT_TRUE(entry.image != RowImage::Drawing && entry.image != RowImage::Global) << entry.icon;
        EXPECT_TRUE(places.insert(entry.image).second) << "two orders at place " << place;
        ASSERT_LT(place, images.size()) << entry.icon;
        EXPECT_EQ(picture(images[place]), picture(moduleIcon(entry.icon)))
            << "the image of icon " << entry.icon;
    }
}

TEST(VarListLook, ColumnZeroIsCutAt255Characters) {
    const QString name = QString(14, ' ') + QString(300, QChar(0x00C4)); // "Ä", two bytes in UTF-8
    const RowLook look = lookOfRow(name, RowImage::Drawing, nullptr, ListOrder::Letter, false, kPalette);
    EXPECT_EQ(look.texts[0].size(), 255);
    EXPECT_TRUE(look.texts[0].startsWith(QString(14, ' ')));
    EXPECT_EQ(lookOfRow("short", RowImage::Drawing, nullptr, ListOrder::Letter, false, kPalette).texts[0],
              "short");
}

// ---- the view ----

class VarListViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        view.setModel(&model);
        view.resize(400, 400);
        view.show();
        model.setRows(buildListRows(f.list, ListOrder::Letter, {}));
    }
    int current() const { return view.currentIndex().row(); }
    void key(Qt::Key k) { QTest::keyClick(&view, k); }
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

// The first Down selects the first row, as in the window system's list without a focus frame.
TEST_F(VarListViewTest, FocusAloneMakesNoRowCurrentAndTheFirstDownSelectsTheFirstRow) {
    view.setFocus();
    QCoreApplication::processEvents();
    EXPECT_EQ(current(), -1);
    key(Qt::Key_Down);
    EXPECT_EQ(current(), 0);
    EXPECT_TRUE(view.selectionModel()->isSelected(model.index(0, 0)));
}

TEST_F(VarListViewTest, EveryRowHoldsItsImageAndGridLine) {
    const std::vector<QIcon> images = makeRowImages();
    const ListOrder order = ListOrder::Letter;
    view.setItemDelegate(new VarListDelegate(view, images, order, &view));
    QCoreApplication::processEvents();
    const int height = view.visualRect(model.index(0, 0)).height();
    EXPECT_GE(height, VarListDelegate::kImageSize + VarListDelegate::kGridLine);
    EXPECT_EQ(view.visualRect(model.index(1, 0)).top(), view.visualRect(model.index(0, 0)).top() + height);
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

} // namespace
