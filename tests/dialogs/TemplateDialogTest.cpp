// Tests of the base of the template dialogs: the start from a template, the first show, the kept
// rectangle, and the modal run with and without the host's UI services.
#include "CommandsTestKit.h"

#include "dialogs/DialogRoutines.h"
#include "dialogs/TemplateDialog.h"

#include <QTimer>

#include <cstdint>

namespace {

using namespace commandstest;

constexpr int kProbeTemplate = 1118; // a resizable template with a title

// A dialog that notes what the base calls, and when.
class ProbeDialog : public TemplateDialog {
public:
    explicit ProbeDialog(bool fixed = false, bool keepsRect = true) : TemplateDialog(nullptr) {
        DialogTemplate t;
        startFromTemplate(kProbeTemplate, t, fixed ? Sizing::Fixed : Sizing::Resizable);
        if (keepsRect)
            keepRectIn(keptLeft, keptTop, keptWidth, keptHeight);
    }

    std::int32_t keptLeft = 40, keptTop = 50, keptWidth = 400, keptHeight = 300;
    int starts = 0;
    int layouts = 0;
    bool visibleAtStart = true;
    QRect keptAtSave; // the four fields as saveOnEnd found them

private:
    void OnInitDialog() override {
        ++starts;
        visibleAtStart = isVisible();
        placeAtKeptRect();
    }
    void LayoutControls() override { ++layouts; }
    void saveOnEnd() override { keptAtSave = QRect(keptLeft, keptTop, keptWidth, keptHeight); }
};

QSize templateSize() {
    DialogTemplate t;
    EXPECT_TRUE(loadDialogTemplate(kProbeTemplate, t));
    return dialogUnitsToPixels(t.size, baseUnitsOf(dialogFontOf(t)));
}

} // namespace

TEST(TemplateDialog, StartsAtTheTemplatesIdSizeAndTitle) {
    DialogTemplate t;
    ASSERT_TRUE(loadDialogTemplate(kProbeTemplate, t));
    ProbeDialog d;
    EXPECT_EQ(d.property("templateId").toInt(), kProbeTemplate);
    EXPECT_EQ(d.size(), templateSize());
    EXPECT_EQ(d.windowTitle(), t.title);
    EXPECT_EQ(d.font(), dialogFontOf(t));
    EXPECT_FALSE(d.isSizeGripEnabled());
    EXPECT_TRUE(d.windowFlags() & Qt::WindowCloseButtonHint);
}

TEST(TemplateDialog, FixedDialogKeepsTheTemplatesSize) {
    ProbeDialog fixed(true);
    EXPECT_EQ(fixed.minimumSize(), templateSize());
    EXPECT_EQ(fixed.maximumSize(), templateSize());
    ProbeDialog resizable(false);
    EXPECT_NE(resizable.maximumSize(), templateSize());
}

TEST(TemplateDialog, StartRunsOnceBeforeTheFirstShow) {
    ProbeDialog d;
    EXPECT_EQ(d.starts, 0) << "building starts nothing";
    d.show();
    EXPECT_EQ(d.starts, 1);
    EXPECT_FALSE(d.visibleAtStart);
    d.hide();
    d.show();
    EXPECT_EQ(d.starts, 1);
}

TEST(TemplateDialog, LaysOutOnResizeOnlyAfterTheStart) {
    ProbeDialog d;
    d.resize(500, 400);
    QCoreApplication::processEvents();
    EXPECT_EQ(d.layouts, 0);
    d.show();
    QCoreApplication::processEvents();
    const int afterShow = d.layouts;
    d.resize(d.width() + 30, d.height() + 20);
    QCoreApplication::processEvents();
    EXPECT_GT(d.layouts, afterShow);
}

TEST(TemplateDialog, FirstShowPlacesTheKeptRectangleWithTheModuleIcon) {
    ProbeDialog d;
    d.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(d.frameGeometry(), QRect(40, 50, 400, 300));
    EXPECT_FALSE(d.windowIcon().isNull());
}

// The rectangle is stored first, so the dialog's own saving sees it stored.
TEST(TemplateDialog, EveryWayOutStoresTheRectangleBeforeTheDialogsOwnSaving) {
    const struct {
        const char* name;
        void (*end)(QDialog&);
    } ways[] = {{"accept", [](QDialog& d) { d.accept(); }},
                {"reject", [](QDialog& d) { d.reject(); }},
                {"close box", [](QDialog& d) { d.close(); }}};
    for (const auto& way : ways) {
        ProbeDialog d;
        d.show();
        d.move(70, 80);
        QCoreApplication::processEvents();
        way.end(d);
        EXPECT_EQ(QRect(d.keptLeft, d.keptTop, d.keptWidth, d.keptHeight), d.frameGeometry()) << way.name;
        EXPECT_EQ(d.keptAtSave, d.frameGeometry()) << way.name;
        EXPECT_EQ(d.keptLeft, 70) << way.name;
    }
}

TEST(TemplateDialog, DialogWithoutAKeptRectangleEndsAndStoresNothing) {
    ProbeDialog d(false, false);
    d.show();
    d.move(70, 80);
    QCoreApplication::processEvents();
    d.reject();
    EXPECT_EQ(QRect(d.keptLeft, d.keptTop, d.keptWidth, d.keptHeight), QRect(40, 50, 400, 300));
    EXPECT_EQ(d.keptAtSave, QRect(40, 50, 400, 300)) << "its own saving still runs";
}

class RunDialog : public HostTest {};

TEST_F(RunDialog, OnlyAnAcceptedRunIsAccepted) {
    const struct {
        int code;
        DialogResult result;
    } cases[] = {{QDialog::Accepted, DialogResult::Accepted},
                 {QDialog::Rejected, DialogResult::Rejected},
                 {5, DialogResult::Rejected}};
    for (const auto& c : cases) {
        QDialog d;
        int runs = 0;
        user().modal = [&](QDialog& dialog) {
            ++runs;
            EXPECT_EQ(&dialog, &d);
            return c.code;
        };
        EXPECT_EQ(runDialog(d), c.result) << "code " << c.code;
        EXPECT_EQ(runs, 1) << "the host's UI services ran it";
    }
}

TEST_F(RunDialog, WithoutTheHostsUiServicesTheDialogRunsItsOwnLoop) {
    host.setUiServices(nullptr);
    QDialog d;
    QTimer::singleShot(0, &d, [&d] { d.accept(); });
    const DialogResult result = runDialog(d);
    host.setUiServices(&services());
    EXPECT_EQ(result, DialogResult::Accepted);
}
