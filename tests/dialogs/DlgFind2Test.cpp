// Tests of the search dialog: layout at its limits, matching, the hit steps and what it stores.
#include "CommandsTestKit.h"

#include "dialogs/CEditEx.h"
#include "dialogs/DlgFind2.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QPushButton>

namespace {

using namespace commandstest;

// An owner that rebuilds nothing: it notes each notification with the names that were selected
// at that moment, and clears the flags as a rebuild would.
class RecordingOwner : public FindOwner {
public:
    explicit RecordingOwner(cSysVarList& list) : m_list(list) {}
    void onFindNotify(const FindNotification& n) override {
        Step step{n.value, n.code, n.sender, {}};
        for (cSysVar* r = m_list.first; r; r = r->next)
            if (r->isSelected()) {
                step.selected += (step.selected.empty() ? "" : " ") + r->name;
                r->clearSelected();
            }
        steps.push_back(step);
    }
    struct Step {
        std::int32_t value;
        std::int32_t code;
        QWidget* sender;
        std::string selected;
    };
    std::vector<Step> steps;

private:
    cSysVarList& m_list;
};

class DlgFind2Test : public HostTest {
protected:
    void prepareContext() override {
        context->varList.themes.addTheme(1, "Zeichnung");
        addRecord("1", "CLAYER", "++", "\"0\"", "", "Aktueller Layer");
        addRecord("1", "DIMDSEP", "++", "\",\"", "", "Dezimaltrenner");
        addRecord("1", "LUPREC", "++", "4", "6", "Nachkommastellen");
        addRecord("1", "OSMODE", "+-", "4133", "", "Objektfang");
        addRecord("1", "VIEWCTR", "-+", "0 0 0", "", "Mitte der Ansicht");
        context->varList.findName("LUPREC")->setInUserList();
        context->searchPosX = 20;
        context->searchPosY = 20;
        context->searchSizeX = 200;
        context->searchSizeY = 120;
        context->searchCheck = 15;
    }

    static void setMask(DlgFind2& d, int mask) {
        control<QCheckBox>(d, DlgFind2::kIdCheckVariable)->setChecked(mask & DlgFind2::kMaskName);
        control<QCheckBox>(d, DlgFind2::kIdCheckDescription)->setChecked(mask & DlgFind2::kMaskDescription);
        control<QCheckBox>(d, DlgFind2::kIdCheckValueOld)->setChecked(mask & DlgFind2::kMaskCurrent);
        control<QCheckBox>(d, DlgFind2::kIdCheckValueNew)->setChecked(mask & DlgFind2::kMaskNew);
    }
    // The dialog shown at the stored size.
    std::unique_ptr<DlgFind2> openAt(const QSize& stored) {
        context->searchSizeX = stored.width();
        context->searchSizeY = stored.height();
        auto d = std::make_unique<DlgFind2>(*context);
        d->show();
        QCoreApplication::processEvents();
        return d;
    }
    // "next previous all" enabled states as three letters: e for enabled, d for disabled.
    static std::string buttonStates(DlgFind2& d) {
        std::string s;
        for (int id : {DlgFind2::kIdNext, DlgFind2::kIdPrevious, DlgFind2::kIdAll})
            s += control<QPushButton>(d, id)->isEnabled() ? 'e' : 'd';
        return s;
    }
};

} // namespace

// The outer size never falls below 275 wide and is always 235 high.
TEST_F(DlgFind2Test, OuterSizeKeepsItsLimits) {
    const QSize cases[][2] = {{{200, 120}, {275, 235}}, {{100, 900}, {275, 235}}, {{640, 300}, {640, 235}}};
    for (const auto& [stored, expected] : cases) {
        auto d = openAt(stored);
        EXPECT_EQ(d->frameGeometry().size(), expected)
            << "stored " << stored.width() << "x" << stored.height();
    }
}

// The bottom row of three is centred; the pattern field and next, previous and all end at the
// right margin; the check boxes end inside the group box, which ends above the row.
TEST_F(DlgFind2Test, LaysOutTheControlsAtEachWidth) {
    for (const int width : {275, 640}) {
        SCOPED_TRACE("width " + std::to_string(width));
        auto d = openAt({width, 235});
        const int W = d->width();
        auto* search = control<QPushButton>(*d, DlgFind2::kIdSearch);
        const QRect help = control<QPushButton>(*d, DlgFind2::kIdHelp)->geometry();
        const QRect group = control<QGroupBox>(*d, DlgFind2::kIdOptions)->geometry();
        EXPECT_EQ(control<CEditEx>(*d, DlgFind2::kIdPattern)->geometry().right(), W - 11);
        EXPECT_EQ(control<QPushButton>(*d, DlgFind2::kIdAll)->geometry().right(), W - 11);
        EXPECT_EQ(search->x(), (W - 3 * search->width() - 40) / 2 + 10);
        EXPECT_EQ(help.topLeft(),
                  QPoint(search->x() + 2 * (search->width() + 10), d->height() - 10 - help.height()));
        EXPECT_EQ(group.bottom(), search->y() - 11);
        EXPECT_EQ(control<QCheckBox>(*d, DlgFind2::kIdCheckValueNew)->geometry().right(), group.right() - 10);
    }
}

// With the desktop's fonts, wider than the template's: the row stays inside the dialog, each
// caption fits its button, and the group box ends before the hit buttons.
TEST_F(DlgFind2Test, AtTheLeastWidthCaptionsFitAndNothingOverlaps) {
    auto d = openAt({275, 235});
    const QRect search = control<QPushButton>(*d, DlgFind2::kIdSearch)->geometry();
    const QRect help = control<QPushButton>(*d, DlgFind2::kIdHelp)->geometry();
    EXPECT_GE(search.x(), 0);
    EXPECT_LE(help.right(), d->width() - 1);
    for (int id : {DlgFind2::kIdSearch, DlgFind2::kIdCancel, DlgFind2::kIdHelp}) {
        const QPushButton* b = control<QPushButton>(*d, id);
        EXPECT_LE(b->fontMetrics().horizontalAdvance(b->text()) + 8, b->width()) << b->text().toStdString();
    }
    EXPECT_LT(control<QGroupBox>(*d, DlgFind2::kIdOptions)->geometry().right(),
              control<QPushButton>(*d, DlgFind2::kIdAll)->x());
}

// Each search selects its hits and tells the owner how many, once.
TEST_F(DlgFind2Test, SearchSelectsTheRecordsWhoseJoinedTextsMatch) {
    struct Case {
        const char* pattern;
        int mask;
        bool limit;
        const char* hits;
    } cases[] = {
        {"lay", DlgFind2::kMaskName, false, "CLAYER"},                              // case ignored
        {"6", DlgFind2::kMaskNew, false, "LUPREC"},                                 // new value
        {"4133", DlgFind2::kMaskName, false, ""},                                   // unchecked field
        {"gOS", DlgFind2::kMaskName | DlgFind2::kMaskDescription, false, "OSMODE"}, // across the border
        {"C", DlgFind2::kMaskName, false, "CLAYER LUPREC VIEWCTR"},
        {"", 15, false, ""},                                    // an empty pattern matches only an empty text
        {"", 0, false, "CLAYER DIMDSEP LUPREC OSMODE VIEWCTR"}, // empty texts are matched too
        {"", 0, true, "LUPREC"},                                // limited to the user list
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string("'") + c.pattern + "' mask " + std::to_string(c.mask));
        DlgFind2 d(*context);
        RecordingOwner owner(context->varList);
        d.setOwner(&owner);
        d.setLimitToUserList(c.limit);
        d.show();
        setMask(d, c.mask);
        control<CEditEx>(d, DlgFind2::kIdPattern)->setText(c.pattern);
        d.OnSearch();
        ASSERT_EQ(owner.steps.size(), 1u);
        EXPECT_EQ(owner.steps[0].selected, c.hits);
        const std::string hits = c.hits;
        const int n = hits.empty() ? 0 : 1 + static_cast<int>(std::count(hits.begin(), hits.end(), ' '));
        EXPECT_EQ(owner.steps[0].value, -n);
        EXPECT_EQ(owner.steps[0].code, 1024);
        EXPECT_EQ(owner.steps[0].sender, &d);
        d.reject();
    }
}

// The box names the count; next and previous are offered from two hits on, all hits never.
TEST_F(DlgFind2Test, SearchTellsTheCountAndOffersTheWalkFromTwoHits) {
    const struct {
        const char* pattern;
        std::string told;
        const char* states;
    } cases[] = {{"nichts", gMsg.TxVarNotFound, "ddd"},
                 {"lay", gMsg.TxOneVarFound, "ddd"},
                 {"C", "3 " + gMsg.TxVarFound, "eed"}};
    for (const auto& c : cases) {
        DlgFind2 d(*context);
        d.show();
        setMask(d, DlgFind2::kMaskName);
        control<CEditEx>(d, DlgFind2::kIdPattern)->setText(c.pattern);
        user().lines.clear();
        d.OnSearch();
        EXPECT_EQ(user().lines, std::vector<std::string>{infoBox(c.told)}) << c.pattern;
        EXPECT_EQ(buttonStates(d), c.states) << c.pattern;
        d.reject();
    }
}

TEST_F(DlgFind2Test, NextPreviousAndAllWalkTheHitsAndWrap) {
    DlgFind2 d(*context);
    RecordingOwner owner(context->varList);
    d.setOwner(&owner);
    d.show();
    setMask(d, DlgFind2::kMaskName);
    control<CEditEx>(d, DlgFind2::kIdPattern)->setText("C"); // CLAYER, LUPREC, VIEWCTR
    struct Step {
        const char* button;
        int value;
        const char* selected;
        const char* states;
        int indexAfter;
    } steps[] = {
        {"search", -3, "CLAYER LUPREC VIEWCTR", "eed", 0},
        {"next", 1, "LUPREC", "eee", 1},
        {"next", 2, "VIEWCTR", "eee", 2},
        {"next", 0, "CLAYER", "eee", 0},      // wraps after the last
        {"previous", 2, "VIEWCTR", "eee", 2}, // wraps before the first
        {"all", -2, "CLAYER LUPREC VIEWCTR", "eed", 2},
        {"previous", 1, "LUPREC", "eee", 1},
    };
    for (const Step& s : steps) {
        const std::string b = s.button;
        const int id = b == "search"     ? DlgFind2::kIdSearch
                       : b == "next"     ? DlgFind2::kIdNext
                       : b == "previous" ? DlgFind2::kIdPrevious
                                         : DlgFind2::kIdAll;
        const std::size_t before = owner.steps.size();
        QTest::mouseClick(control<QPushButton>(d, id), Qt::LeftButton);
        ASSERT_EQ(owner.steps.size(), before + 1) << b;
        EXPECT_EQ(owner.steps.back().value, s.value) << b << " after step " << before;
        EXPECT_EQ(owner.steps.back().selected, s.selected) << b << " after step " << before;
        EXPECT_EQ(buttonStates(d), s.states) << b << " after step " << before;
        EXPECT_EQ(d.currentHit(), s.indexAfter) << b << " after step " << before;
    }
}

TEST_F(DlgFind2Test, OpensWithTheStoredMaskAndPatternAndNoWalk) {
    context->searchCheck = DlgFind2::kMaskName | DlgFind2::kMaskNew;
    context->searchPattern = "LU";
    DlgFind2 d(*context);
    d.show();
    EXPECT_TRUE(control<QCheckBox>(d, DlgFind2::kIdCheckVariable)->isChecked());
    EXPECT_TRUE(control<QCheckBox>(d, DlgFind2::kIdCheckValueNew)->isChecked());
    EXPECT_FALSE(control<QCheckBox>(d, DlgFind2::kIdCheckDescription)->isChecked());
    EXPECT_FALSE(control<QCheckBox>(d, DlgFind2::kIdCheckValueOld)->isChecked());
    EXPECT_EQ(control<CEditEx>(d, DlgFind2::kIdPattern)->text(), "LU");
    EXPECT_EQ(buttonStates(d), "ddd");
}

// Enter in the pattern searches; Escape there goes to Cancel, where a second Escape ends the
// dialog.
TEST_F(DlgFind2Test, EnterInThePatternSearchesAndEscapeGoesToCancel) {
    DlgFind2 d(*context);
    RecordingOwner owner(context->varList);
    d.setOwner(&owner);
    d.show();
    d.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&d));
    setMask(d, DlgFind2::kMaskCurrent);
    auto* field = control<CEditEx>(d, DlgFind2::kIdPattern);
    field->setFocus();
    field->setText("41"); // in the current values: OSMODE
    QTest::keyClick(field, Qt::Key_Return);
    ASSERT_EQ(owner.steps.size(), 1u);
    EXPECT_EQ(owner.steps[0].selected, "OSMODE");
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(d.isVisible());
    EXPECT_EQ(d.focusWidget(), control<QPushButton>(d, DlgFind2::kIdCancel));
    QTest::keyClick(d.focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(d.isVisible());
    EXPECT_EQ(d.result(), QDialog::Rejected);
}

// The mask as the boxes stand and the pattern as typed, not as searched; the next run seeing them
// is in the scenario dialogs_set.
TEST_F(DlgFind2Test, TheEndStoresRectangleMaskAndPattern) {
    DlgFind2 d(*context);
    d.show();
    setMask(d, DlgFind2::kMaskCurrent | DlgFind2::kMaskDescription);
    control<CEditEx>(d, DlgFind2::kIdPattern)->setText("41");
    d.move(44, 50);
    QCoreApplication::processEvents();
    d.reject();
    EXPECT_EQ(context->searchCheck, DlgFind2::kMaskCurrent | DlgFind2::kMaskDescription);
    EXPECT_EQ(context->searchPattern, "41");
    EXPECT_EQ(QRect(context->searchPosX, context->searchPosY, context->searchSizeX, context->searchSizeY),
              d.frameGeometry());
    EXPECT_EQ(context->searchPosX, 44);
}

// Rows are the ones selected after the owner's rebuild, ascending; N is the notification's value.
TEST(FoundRow, OwnersShowTheRowThatTheStepNames) {
    const struct {
        const char* name;
        QList<int> selected;
        std::int32_t value;
        int row;
        bool isEveryHit;
    } cases[] = {
        {"nothing selected", {}, -2, -1, false},
        {"a search: the first hit", {2, 5, 7}, -3, 2, true},
        {"a search of one hit", {4}, -1, 4, true},
        {"a step to the only row", {4}, 1, 4, false},
        {"a step to hit 0", {3, 6}, 0, 3, false},
        {"all hits from hit 2", {1, 3, 8}, -2, 8, false},
        {"all hits from hit 2, two rows", {1, 3}, -2, 1, true},
        {"hits without rows: a search", {2, 5}, -3, -1, false},
        {"a step past the rows", {1, 3}, 2, -1, false},
        {"the least value", {1, 3}, INT32_MIN, -1, false},
    };
    for (const auto& c : cases) {
        const FoundRow found = DlgFind2::rowToShow(c.selected, c.value);
        EXPECT_EQ(found.row, c.row) << c.name;
        EXPECT_EQ(found.isEveryHit, c.isEveryHit) << c.name;
    }
}
