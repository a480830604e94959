// Tests of the drawing view: what it paints (colours, background, the fit of the extents), the
// wheel zoom around the mouse, panning, zooming back to the extents, and the place it keeps for
// each drawing.
#include "DrawingView.h"
#include "DxfDrawing.h"

#include <QImage>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <memory>

using namespace cadhost;

namespace {

constexpr QSize kViewSize(400, 300);

std::shared_ptr<const ModelSpaceScene> sceneOf(const std::string& entities) {
    const std::string text = "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n0\nENDSEC\n"
                             "0\nSECTION\n2\nENTITIES\n" +
                             entities + "0\nENDSEC\n0\nEOF\n";
    dxf::Drawing drawing;
    std::string message;
    EXPECT_TRUE(drawing.parse(text, message)) << message;
    return std::make_shared<const ModelSpaceScene>(ModelSpaceScene::build(drawing));
}

// A red rectangle 100 x 50 from the origin.
std::shared_ptr<const ModelSpaceScene> redRectangle() {
    return sceneOf(
        "0\nLWPOLYLINE\n62\n1\n70\n1\n10\n0\n20\n0\n10\n100\n20\n0\n10\n100\n20\n50\n10\n0\n20\n50\n");
}

bool isRed(QRgb p) {
    return qRed(p) > 150 && qGreen(p) < qRed(p) - 80 && qBlue(p) < qRed(p) - 80;
}

// The most strongly red pixel around a point: lines are antialiased, so one pixel may be half.
QRgb reddestAround(const QImage& image, QPointF at) {
    QRgb best = qRgb(255, 255, 255);
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            const QPoint p(int(at.x()) + dx, int(at.y()) + dy);
            if (image.rect().contains(p) &&
                qRed(image.pixel(p)) - qGreen(image.pixel(p)) > qRed(best) - qGreen(best))
                best = image.pixel(p);
        }
    return best;
}

QRect redBounds(const QImage& image) {
    QRect bounds;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (isRed(image.pixel(x, y)))
                bounds |= QRect(x, y, 1, 1);
    return bounds;
}

void wheel(QWidget& w, QPointF at, int delta) {
    QWheelEvent e(at, w.mapToGlobal(at), {}, {0, delta}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                  false);
    QCoreApplication::sendEvent(&w, &e);
}

class DrawingViewTest : public ::testing::Test {
protected:
    void SetUp() override { view.resize(kViewSize); }
    QImage image() { return view.grab().toImage().convertToFormat(QImage::Format_RGB32); }

    DrawingView view;
};

TEST_F(DrawingViewTest, PaintsRedLinesOnWhiteWithTheExtentsFittedInside) {
    view.setScene(redRectangle());
    const QImage shot = image();
    ASSERT_EQ(shot.size(), kViewSize);
    EXPECT_EQ(shot.pixel(2, shot.height() - 3), qRgb(255, 255, 255));
    EXPECT_EQ(shot.pixel(200, 150), qRgb(255, 255, 255)); // inside the rectangle
    for (QPointF corner : {QPointF(0, 0), QPointF(100, 50), QPointF(50, 0), QPointF(100, 25)})
        EXPECT_TRUE(isRed(reddestAround(shot, view.worldToScreen(corner))))
            << corner.x() << "," << corner.y();
    // 2:1 in a 4:3 view: the width fills it but for a margin, the height is centred.
    const QRect red = redBounds(shot);
    EXPECT_GT(red.left(), 0);
    EXPECT_LT(red.left(), 20);
    EXPECT_GT(red.right(), 380);
    EXPECT_LT(red.right(), 400);
    EXPECT_NEAR(red.center().y(), 150, 2);
    EXPECT_NEAR(red.height(), red.width() / 2, 3);
}

// The red rectangle, painted once so that it is fitted to the view.
class FittedRectangle : public DrawingViewTest {
protected:
    void SetUp() override {
        DrawingViewTest::SetUp();
        view.setScene(redRectangle());
        image();
        fitted = view.scale();
    }
    double fitted = 0;
    const QPointF mouse{100, 80};
};

TEST_F(FittedRectangle, WheelZoomsAroundTheMouseByAQuarterStepPerNotch) {
    const QPointF world = view.screenToWorld(mouse);
    wheel(view, mouse, 120);
    EXPECT_NEAR(view.scale(), fitted * std::pow(2.0, 0.25), 1e-9);
    EXPECT_NEAR(view.worldToScreen(world).x(), mouse.x(), 1e-6);
    EXPECT_NEAR(view.worldToScreen(world).y(), mouse.y(), 1e-6);
    wheel(view, mouse, -240);
    EXPECT_NEAR(view.scale(), fitted * std::pow(2.0, -0.25), 1e-9);
    EXPECT_NEAR(view.worldToScreen(world).x(), mouse.x(), 1e-6);
}

TEST_F(FittedRectangle, MiddleDragPansThePointUnderTheMouseAlong) {
    const QPointF grabbed = view.screenToWorld({200, 150});
    QTest::mousePress(&view, Qt::MiddleButton, {}, {200, 150});
    QTest::mouseMove(&view, {250, 170});
    QTest::mouseRelease(&view, Qt::MiddleButton, {}, {250, 170});
    EXPECT_NEAR(view.worldToScreen(grabbed).x(), 250, 1e-6);
    EXPECT_NEAR(view.worldToScreen(grabbed).y(), 170, 1e-6);
}

TEST_F(FittedRectangle, AResizeKeepsAChosenZoom) {
    wheel(view, mouse, -120);
    const double chosen = view.scale();
    view.resize(kViewSize + QSize(10, 10));
    image();
    EXPECT_DOUBLE_EQ(view.scale(), chosen);
}

TEST_F(FittedRectangle, DoubleClickOrHomeZoomsBackToTheExtents) {
    wheel(view, mouse, -120);
    QTest::mouseDClick(&view, Qt::LeftButton, {}, {10, 10});
    view.resize(kViewSize + QSize(10, 10));
    view.resize(kViewSize);
    image();
    EXPECT_NEAR(view.scale(), fitted, 1e-9);
    EXPECT_NEAR(view.worldToScreen({50, 25}).x(), 200, 1e-6);

    wheel(view, mouse, 1200);
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_NEAR(view.scale(), fitted, 1e-9);
}

// A storm of wheel turns neither reaches zero nor overflows.
TEST_F(FittedRectangle, ZoomStaysWithinItsBounds) {
    for (int i = 0; i < 200; ++i)
        wheel(view, mouse, -1200);
    EXPECT_GT(view.scale(), 0);
    for (int i = 0; i < 400; ++i)
        wheel(view, mouse, 1200);
    EXPECT_TRUE(std::isfinite(view.worldToScreen({50, 25}).x()));
    EXPECT_FALSE(image().isNull());
}

TEST_F(DrawingViewTest, EachSceneComesBackWhereItWasLeft) {
    auto rectangle = redRectangle();
    auto small = sceneOf("0\nLINE\n10\n0\n20\n0\n11\n1\n21\n1\n");
    view.setScene(rectangle);
    image();
    const double fitted = view.scale();
    wheel(view, {100, 100}, 240);
    const double zoomed = view.scale();
    view.setScene(small);
    image();
    EXPECT_GT(view.scale(), fitted * 50); // fitted to its own extents
    view.setScene(rectangle);
    EXPECT_DOUBLE_EQ(view.scale(), zoomed);
}

TEST_F(DrawingViewTest, AnEmptyModelSpaceOrNoDrawingShowsANote) {
    for (auto scene : {sceneOf("0\nLINE\n67\n1\n"), std::shared_ptr<const ModelSpaceScene>()}) {
        view.setScene(scene);
        const QImage shot = image();
        int dark = 0;
        for (int y = 0; y < shot.height(); ++y)
            for (int x = 0; x < shot.width(); ++x)
                dark += qGray(shot.pixel(x, y)) < 160;
        EXPECT_GT(dark, 20); // the note's letters
        wheel(view, {10, 10}, 120);
        QTest::mouseDClick(&view, Qt::LeftButton, {}, {10, 10});
    }
}

TEST_F(DrawingViewTest, ASampleDrawingFillsTheView) {
    std::ifstream in(std::string(VARDESK_SOURCE_DIR) + "/data/samples/Werkhalle.dxf", std::ios::binary);
    dxf::Drawing drawing;
    std::string message;
    ASSERT_TRUE(drawing.parse(std::string(std::istreambuf_iterator<char>(in), {}), message)) << message;
    view.setScene(std::make_shared<const ModelSpaceScene>(ModelSpaceScene::build(drawing)));
    ASSERT_GT(view.scene()->polylines().size(), 50u);
    EXPECT_GT(view.scene()->texts().size(), 10u);
    EXPECT_EQ(view.scene()->skipped(), 0u);
    const QImage shot = image();
    // Drawn pixels reach near every side of the view, none is cut off.
    QRect drawn;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width() - 120; ++x) // the button in the top right corner
            if (shot.pixel(x, y) != qRgb(255, 255, 255))
                drawn |= QRect(x, y, 1, 1);
    EXPECT_LT(drawn.left(), 30);
    EXPECT_GT(drawn.left(), 0);
    EXPECT_GT(drawn.width() + drawn.height(), 350);
}

} // namespace
