// Tests of the info dialog: the template layout for short texts, widening for a long one.
#include "dialogs/cDlgInfo.h"

#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>

namespace {

QLabel* label(cDlgInfo& dialog, int id) {
    return dialog.findChild<QLabel*>(QString::number(id));
}

} // namespace

TEST(cDlgInfo, ShortTextsKeepTheTemplateLayout) {
    cDlgInfo dialog("A", "B", "C", "D");
    const QSize before = dialog.size();
    const QRect okBefore = dialog.findChild<QPushButton*>("1")->geometry();
    const QRect titleBefore = label(dialog, 1201)->geometry();
    dialog.show();
    EXPECT_EQ(dialog.size(), before);
    EXPECT_EQ(dialog.findChild<QPushButton*>("1")->geometry(), okBefore);
    EXPECT_EQ(label(dialog, 1201)->geometry(), titleBefore);
    EXPECT_EQ(label(dialog, 1201)->text(), "A");
    EXPECT_EQ(label(dialog, 1200)->text(), "D");
    EXPECT_EQ(dialog.property("templateId").toInt(), 1097);
    EXPECT_FALSE(label(dialog, 1204)->pixmap().isNull());
}

TEST(cDlgInfo, LongCopyrightWidensTheDialogAndCentresOk) {
    const std::string copyright = "Copyright (C) a rather long line of holders, years and places";
    cDlgInfo dialog("VarDesk", "Version: 1.1", "KOVA_VARDESK", copyright);
    const int heightBefore = dialog.height();
    const QRect okBefore = dialog.findChild<QPushButton*>("1")->geometry();
    dialog.show();
    const int L = label(dialog, 1201)->fontMetrics().horizontalAdvance(QString::fromStdString(copyright));
    ASSERT_GT(L, 80);
    EXPECT_EQ(dialog.frameGeometry().width(), L + 88);
    EXPECT_EQ(dialog.height(), heightBefore);
    const QRect ok = dialog.findChild<QPushButton*>("1")->geometry();
    EXPECT_EQ(ok.x(), (L - ok.width() + 88) / 2);
    EXPECT_EQ(ok.y(), okBefore.y());
    EXPECT_EQ(ok.size(), okBefore.size());
    for (int id : {1201, 1202, 1203, 1200}) {
        EXPECT_EQ(label(dialog, id)->x(), 78) << "static " << id;
        EXPECT_EQ(label(dialog, id)->width(), L) << "static " << id;
    }
}

TEST(cDlgInfo, OkEndsTheDialog) {
    cDlgInfo dialog("VarDesk", cDlgInfo::versionLineText(), cDlgInfo::commandLineText(),
                    cDlgInfo::copyrightLineText());
    dialog.show();
    dialog.findChild<QPushButton*>("1")->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(label(dialog, 1202)->text(), "Version: 1.1");
    EXPECT_EQ(label(dialog, 1203)->text(), "KOVA_VARDESK");
}
