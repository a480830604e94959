// Tests of the search dialog: layout at its limits, matching, the hit steps and what it stores.
#include "dialogs/DlgFind2.h"
#include "dialogs/CEditEx.h"
#include "frame/cDocCntx.h"
#include "settings/cMsgCatalog.h"

#include "platform/ScriptedUiServices.h"

#include <hostsession.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <string>
#include <vector>

namespace {

class FakeScript : public kova::ScriptHost {
public:
    void printLine(const std::string& text) override { lines.push_back(text); }
    std::string takeAnswer(const std::string&) override { return "no"; }
    int driveModal(QDialog& dialog) override { return dialog.result(); }
    std::vector<std::string> lines;
};

FakeScript& script() {
    static FakeScript instance;
    return instance;
}

kova::ScriptedUiServices& services() {
    static kova::ScriptedUiServices instance(script());
    return instance;
}

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

class DlgFind2Test : public ::testing::Test {
protected:
    void SetUp() override {
        host.setUiServices(&services());
        host.setOutput([](const std::string&) {});
        context = std::make_unique<cDocCntx>(host.newDocument());
        cSysVarList& list = context->varList;
        list.themes.addTheme(1, "Zeichnung");
        struct Row {
            const char* name;
            const char* marks;
            const char* description;
            const char* current;
            const char* newText;
        };
        const Row rows[] = {{"CLAYER", "++", "Aktueller Layer", "\"0\"", ""},
                            {"DIMDSEP", "++", "Dezimaltrenner", "\",\"", ""},
                            {"LUPREC", "++", "Nachkommastellen", "4", "6"},
                            {"OSMODE", "+-", "Objektfang", "4133", ""},
                            {"VIEWCTR", "-+", "Mitte der Ansicht", "0 0 0", ""}};
        int line = 1;
        for (const Row& r : rows) {
            ASSERT_TRUE(list.addVariable("1", r.name, r.marks, r.description, line++)) << r.name;
            cSysVar* record = list.findName(r.name);
            record->currentText = r.current;
            record->newText = r.newText;
        }
        list.findName("LUPREC")->setInUserList();
        context->searchPosX = 20;
        context->searchPosY = 20;
        context->searchSizeX = 200;
        context->searchSizeY = 120;
        context->searchCheck = 15;
        script().lines.clear();
    }

    void TearDown() override {
        context.reset();
        host.shutdown();
    }

    template <typename T> static T* control(QWidget& d, int id) {
        return d.findChild<T*>(QString::number(id));
    }

    static void setMask(DlgFind2& d, int mask) {
        control<QCheckBox>(d, DlgFind2::kIdCheckVariable)->setChecked(mask & DlgFind2::kMaskName);
        control<QCheckBox>(d, DlgFind2::kIdCheckDescription)->setChecked(mask & DlgFind2::kMaskDescription);
        control<QCheckBox>(d, DlgFind2::kIdCheckValueOld)->setChecked(mask & DlgFind2::kMaskCurrent);
        control<QCheckBox>(d, DlgFind2::kIdCheckValueNew)->setChecked(mask & DlgFind2::kMaskNew);
    }

    // "next previous all" enabled states as three letters: e for enabled, d for disabled.
    static std::string buttonStates(DlgFind2& d) {
        std::string s;
        for (int id : {DlgFind2::kIdNext, DlgFind2::kIdPrevious, DlgFind2::kIdAll})
            s += control<QPushButton>(d, id)->isEnabled() ? 'e' : 'd';
        return s;
    }

    cadhost::HostSession& host = cadhost::HostSession::instance();
    std::unique_ptr<cDocCntx> context;
};

} // namespace

TEST_F(DlgFind2Test, StartsFromTheStoredMaskAndPatternWithTheHitButtonsDisabled) {
    context->searchCheck = DlgFind2::kMaskName | DlgFind2::kMaskNew;
    context->searchPattern = "LU";
    DlgFind2 d(*context);
    d.show();
    EXPECT_EQ(d.windowTitle().toStdString(), gMsg.TiSearch);
    EXPECT_EQ(d.property("templateId").toInt(), 1121);
    EXPECT_TRUE(control<QCheckBox>(d, DlgFind2::kIdCheckVariable)->isChecked());
    EXPECT_FALSE(control<QCheckBox>(d, DlgFind2::kIdCheckDescription)->isChecked());
    EXPECT_FALSE(control<QCheckBox>(d, DlgFind2::kIdCheckValueOld)->isChecked());
    EXPECT_TRUE(control<QCheckBox>(d, DlgFind2::kIdCheckValueNew)->isChecked());
    EXPECT_EQ(control<CEditEx>(d, DlgFind2::kIdPattern)->text(), "LU");
    EXPECT_EQ(control<QPushButton>(d, DlgFind2::kIdNext)->text().toStdString(), gMsg.RsBtnNext);
    EXPECT_EQ(control<QGroupBox>(d, DlgFind2::kIdOptions)->title().toStdString(), gMsg.RsStcSearchOptions);
    EXPECT_EQ(buttonStates(d), "ddd");
}

TEST_F(DlgFind2Test, KeepsItsSizeLimitsAndLaysOutTheControls) {
    struct Case {
        QSize stored;
        QSize expected; // outer size
    } cases[] = {{{200, 120}, {275, 235}}, {{100, 900}, {275, 235}}, {{640, 300}, {640, 235}}};
    for (const Case& c : cases) {
        context->searchSizeX = c.stored.width();
        context->searchSizeY = c.stored.height();
        DlgFind2 d(*context);
        d.show();
        QCoreApplication::processEvents();
        const std::string name = std::to_string(c.stored.width()) + "x" + std::to_string(c.stored.height());
        EXPECT_EQ(d.frameGeometry().size(), c.expected) << name;

        const int W = d.width();
        const int H = d.height();
        auto* label = control<QLabel>(d, DlgFind2::kIdPatternLabel);
        auto* field = control<CEditEx>(d, DlgFind2::kIdPattern);
        auto* search = control<QPushButton>(d, DlgFind2::kIdSearch);
        auto* cancel = control<QPushButton>(d, DlgFind2::kIdCancel);
        auto* help = control<QPushButton>(d, DlgFind2::kIdHelp);
        auto* next = control<QPushButton>(d, DlgFind2::kIdNext);
        auto* previous = control<QPushButton>(d, DlgFind2::kIdPrevious);
        auto* all = control<QPushButton>(d, DlgFind2::kIdAll);
        auto* group = control<QGroupBox>(d, DlgFind2::kIdOptions);
        EXPECT_EQ(label->pos(), QPoint(10, 10)) << name;
        EXPECT_EQ(field->x(), label->x() + label->width() + 10) << name;
        EXPECT_EQ(field->x() + field->width(), W - 10) << name;
        // The bottom row, centred.
        const int bw = search->width();
        EXPECT_EQ(search->x(), (W - 3 * bw - 40) / 2 + 10) << name;
        EXPECT_EQ(cancel->x(), search->x() + bw + 10) << name;
        EXPECT_EQ(help->x(), cancel->x() + bw + 10) << name;
        for (QPushButton* b : {search, cancel, help})
            EXPECT_EQ(b->y() + b->height(), H - 10) << name;
        // Previous, next, all from the top, at the right.
        EXPECT_EQ(previous->y(), field->y() + field->height() + 10) << name;
        EXPECT_EQ(next->y(), previous->y() + previous->height() + 5) << name;
        EXPECT_EQ(all->y(), next->y() + next->height() + 5) << name;
        for (QPushButton* b : {previous, next, all})
            EXPECT_EQ(b->x() + b->width(), W - 10) << name;
        EXPECT_EQ(group->x(), 10) << name;
        EXPECT_EQ(group->y(), label->y() + label->height() + 10) << name;
        EXPECT_EQ(group->y() + group->height(), search->y() - 10) << name;
        int top = group->y() + 15;
        for (int id : {DlgFind2::kIdCheckVariable, DlgFind2::kIdCheckDescription, DlgFind2::kIdCheckValueOld,
                       DlgFind2::kIdCheckValueNew}) {
            auto* box = control<QCheckBox>(d, id);
            EXPECT_EQ(box->geometry(), QRect(20, top, group->x() + group->width() - 10 - 20, box->height()))
                << name << " box " << id;
            top += box->height() + 5;
        }
        d.reject();
    }
}

TEST_F(DlgFind2Test, SearchSelectsTheRecordsWhoseJoinedTextsMatch) {
    struct Case {
        const char* pattern;
        int mask;
        bool limit;
        const char* hits;
    } cases[] = {
        {"lay", DlgFind2::kMaskName, false, "CLAYER"},                              // case ignored
        {"6", DlgFind2::kMaskNew, false, "LUPREC"},                                 // new value
        {"4133", DlgFind2::kMaskCurrent, false, "OSMODE"},                          // current value
        {"4133", DlgFind2::kMaskName, false, ""},                                   // unchecked field
        {"gOS", DlgFind2::kMaskName | DlgFind2::kMaskDescription, false, "OSMODE"}, // across the border
        {"gOS", DlgFind2::kMaskName, false, ""},
        {"", 15, false, ""},                                    // an empty pattern matches only an empty text
        {"", 0, false, "CLAYER DIMDSEP LUPREC OSMODE VIEWCTR"}, // empty texts are matched too
        {"*", 15, false, "CLAYER DIMDSEP LUPREC OSMODE VIEWCTR"},
        {"", 0, true, "LUPREC"},              // limited to the user list
        {"O", DlgFind2::kMaskName, true, ""}, // OSMODE is outside the user list
    };
    for (const Case& c : cases) {
        DlgFind2 d(*context);
        RecordingOwner owner(context->varList);
        d.setOwner(&owner);
        d.setLimitToUserList(c.limit);
        d.show();
        setMask(d, c.mask);
        control<CEditEx>(d, DlgFind2::kIdPattern)->setText(c.pattern);
        d.OnSearch();
        const std::string name = std::string("'") + c.pattern + "' mask " + std::to_string(c.mask);
        ASSERT_EQ(owner.steps.size(), 1u) << name;
        EXPECT_EQ(owner.steps[0].selected, c.hits) << name;
        EXPECT_EQ(owner.steps[0].value, -static_cast<int>(d.hits().size())) << name;
        EXPECT_EQ(owner.steps[0].code, 1024) << name;
        EXPECT_EQ(owner.steps[0].sender, &d) << name;
        EXPECT_EQ(d.currentHit(), 0) << name;
        d.reject();
    }
}

TEST_F(DlgFind2Test, SearchTellsTheCountAndSetsTheButtons) {
    struct Case {
        const char* pattern;
        std::string message;
        const char* states;
    } cases[] = {{"XYZ", gMsg.TxVarNotFound, "ddd"},
                 {"LAY", gMsg.TxOneVarFound, "ddd"},
                 {"C", "3 " + gMsg.TxVarFound, "eed"}};
    for (const Case& c : cases) {
        DlgFind2 d(*context);
        d.show();
        setMask(d, DlgFind2::kMaskName);
        control<CEditEx>(d, DlgFind2::kIdPattern)->setText(c.pattern);
        script().lines.clear();
        d.OnSearch();
        ASSERT_EQ(script().lines.size(), 1u) << c.pattern;
        EXPECT_EQ(script().lines[0], "BOX info: " + gMsg.TiMsgBoxInfo + ": " + c.message) << c.pattern;
        EXPECT_EQ(buttonStates(d), c.states) << c.pattern;
        d.reject();
        context->varList.clearAllSelected();
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

TEST_F(DlgFind2Test, EnterInThePatternSearchesAndEscapeGoesToCancel) {
    DlgFind2 d(*context);
    RecordingOwner owner(context->varList);
    d.setOwner(&owner);
    d.show();
    d.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&d));
    setMask(d, DlgFind2::kMaskName);
    auto* field = control<CEditEx>(d, DlgFind2::kIdPattern);
    field->setFocus();
    field->setText("OS");
    QTest::keyClick(field, Qt::Key_Return);
    ASSERT_EQ(owner.steps.size(), 1u);
    EXPECT_EQ(owner.steps[0].selected, "OSMODE");
    EXPECT_TRUE(d.isVisible());

    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(d.isVisible());
    auto* cancel = control<QPushButton>(d, DlgFind2::kIdCancel);
    EXPECT_EQ(d.focusWidget(), cancel);
    QTest::keyClick(cancel, Qt::Key_Escape);
    EXPECT_FALSE(d.isVisible());
    EXPECT_EQ(d.result(), QDialog::Rejected);
}

TEST_F(DlgFind2Test, EveryWayOutStoresRectangleMaskAndPattern) {
    const char* ways[] = {"cancel button", "close box", "escape"};
    int mask = 1;
    for (const char* way : ways) {
        DlgFind2 d(*context);
        d.show();
        QCoreApplication::processEvents();
        setMask(d, mask);
        control<CEditEx>(d, DlgFind2::kIdPattern)->setText(way);
        d.move(40 + mask, 50);
        QCoreApplication::processEvents();
        const std::string w = way;
        if (w == "cancel button")
            QTest::mouseClick(control<QPushButton>(d, DlgFind2::kIdCancel), Qt::LeftButton);
        else if (w == "close box")
            d.close();
        else
            QTest::keyClick(&d, Qt::Key_Escape);
        EXPECT_FALSE(d.isVisible()) << way;
        EXPECT_EQ(context->searchCheck, mask) << way;
        EXPECT_EQ(context->searchPattern, way) << way;
        EXPECT_EQ(QRect(context->searchPosX, context->searchPosY, context->searchSizeX, context->searchSizeY),
                  d.frameGeometry())
            << way;
        EXPECT_EQ(context->searchPosX, 40 + mask) << way;
        mask <<= 1;
    }
}

TEST(DlgFind2RowToShow, PicksTheRowAnOwnerScrollsTo) {
    struct Case {
        QList<int> selected;
        int value;
        int row;
    } cases[] = {
        {{3, 5, 9}, -3, 3},               // after a search: the first of all hits
        {{3, 5, 9}, -1, 5},               // all hits with the index at 1
        {{3, 5, 9}, 0, 3},   {{7}, 2, 7}, // next hit: the one selected row
        {{3, 5, 9}, -5, -1}, {{3, 5, 9}, 2, -1}, {{}, -1, -1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(DlgFind2::rowToShow(c.selected, c.value), c.row)
            << c.selected.size() << " rows, value " << c.value;
}
