// The info dialog's picture at a scale factor of 2: drawn for the screen's pixels, not a picture
// of the logical size blown up. A test program of its own, as the factor must be set before the
// application starts.
#include "dialogs/cDlgInfo.h"

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QSvgRenderer>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace {

class ScaledApplication : public ::testing::Environment {
public:
    void SetUp() override {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        setenv("QT_SCALE_FACTOR", "2", 1);
        static int argc = 1;
        static char name[] = "vardesk_scaled_tests";
        static char* argv[] = {name, nullptr};
        m_app = std::make_unique<QApplication>(argc, argv);
    }
    void TearDown() override { m_app.reset(); }

private:
    std::unique_ptr<QApplication> m_app;
};

const auto* const kEnvironment = ::testing::AddGlobalTestEnvironment(new ScaledApplication);

// The info picture drawn into an image of the given pixels per logical pixel.
QImage drawn(const QSize& logical, int ratio) {
    QImage image(logical * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(QStringLiteral(":/vardesk/bitmaps/%1.svg").arg(cDlgInfo::kBitmapId)).render(&painter);
    painter.end();
    return image;
}

int differingPixels(const QImage& a, const QImage& b) {
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            n += a.pixel(x, y) != b.pixel(x, y);
    return n;
}

TEST(ScaledInfoDialog, PictureIsDrawnForTheScreensPixels) {
    ASSERT_DOUBLE_EQ(qGuiApp->devicePixelRatio(), 2.0) << "QT_SCALE_FACTOR did not take";
    cDlgInfo dialog("VarDesk", "Version: 1.1", "KOVA_VARDESK", "Copyright");
    dialog.show();
    const auto* picture = dialog.findChild<QLabel*>(QString::number(cDlgInfo::kIdPicture));
    ASSERT_NE(picture, nullptr);
    const QPixmap shown = picture->pixmap();
    ASSERT_FALSE(shown.isNull());
    EXPECT_DOUBLE_EQ(shown.devicePixelRatio(), 2.0);
    const QSize logical = picture->size();
    EXPECT_EQ(shown.size(), logical * 2) << "one pixel of the picture to each pixel of the screen";

    // It is the picture drawn at twice the pixels, not the one of the logical size enlarged
    // (which repeats each pixel in a 2x2 block, or blurs it when enlarged smoothly).
    const QImage shownImage = shown.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage sharp = drawn(logical, 2);
    const QImage small = drawn(logical, 1);
    const int pixels = sharp.width() * sharp.height();
    ASSERT_EQ(shownImage.size(), sharp.size());
    EXPECT_LE(differingPixels(shownImage, sharp), pixels / 100);
    for (Qt::TransformationMode mode : {Qt::FastTransformation, Qt::SmoothTransformation}) {
        const QImage enlarged = small.scaled(logical * 2, Qt::IgnoreAspectRatio, mode);
        EXPECT_GT(differingPixels(shownImage, enlarged), pixels / 100) << "the picture is an enlarged one";
    }
}

} // namespace
