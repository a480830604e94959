// A view of a drawing's model space: paints a ModelSpaceScene, zooms with the wheel around the
// mouse, pans with the middle (or left) button, zooms to the extents on a double-click or Home.
#include "DrawingView.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace cadhost {

namespace {

const QColor kBackground = Qt::white;
const QColor kForegroundColour = Qt::black;
const QColor kNoteColour(0x60, 0x60, 0x60);
// The share of the view that the extents fill when zoomed to them.
constexpr double kFitShare = 0.94;
// Zoom limits, relative to the scale that fits the extents.
constexpr double kMinZoom = 1e-3, kMaxZoom = 1e7;
// One notch of the wheel (120 eighths of a degree) zooms by 2^(1/4).
constexpr double kWheelDegreesPerDoubling = 480;
// Antialiased lines cost more: used for small drawings only.
constexpr size_t kAntialiasVertices = 20'000;
// Texts smaller than this are not drawn, nor ones so large that they cover many views.
constexpr double kMinTextPixels = 3, kMaxTextPixels = 4000;
// The font's pixel size for a cap height: capitals are about 0.7 of it.
constexpr double kCapHeightShare = 0.7;
constexpr int kButtonMargin = 6;
// Colours this light (yellow, white) are darkened by this factor to be seen on the white ground.
constexpr int kLightGrey = 180, kDarkerFactor = 170;

QColor colourOf(SceneColour colour) {
    if (colour == kForeground)
        return kForegroundColour;
    const QColor c = QColor::fromRgb(QRgb(colour));
    return qGray(c.rgb()) > kLightGrey ? c.darker(kDarkerFactor) : c;
}

double degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

} // namespace

DrawingView::DrawingView(QWidget* parent) : QWidget(parent), m_zoomExtents(new QToolButton(this)) {
    setObjectName("drawingView");
    setFocusPolicy(Qt::ClickFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(120, 100);
    m_zoomExtents->setText(tr("Zoom extents"));
    m_zoomExtents->setObjectName("zoomExtents");
    m_zoomExtents->setToolTip(tr("Show the whole drawing (Home, or double-click)"));
    m_zoomExtents->setCursor(Qt::ArrowCursor);
    connect(m_zoomExtents, &QToolButton::clicked, this, [this] {
        zoomExtents();
        update();
    });
    placeButton();
}

void DrawingView::setScene(std::shared_ptr<const ModelSpaceScene> scene) {
    if (m_current)
        m_current->place = m_place;
    std::erase_if(m_paths, [](const auto& entry) { return entry.second.scene.expired(); });
    m_scene = std::move(scene);
    m_current = nullptr;
    m_place = Placement{};
    if (m_scene) {
        auto [it, added] = m_paths.try_emplace(m_scene.get());
        m_current = &it->second;
        if (added) {
            m_current->scene = m_scene;
            buildPaths(*m_current, *m_scene);
        }
        m_place = m_current->place;
    }
    m_zoomExtents->setEnabled(m_scene && !m_scene->isEmpty());
    update();
}

void DrawingView::buildPaths(Paths& paths, const ModelSpaceScene& scene) const {
    std::map<SceneColour, QPainterPath> byColour;
    const std::vector<SceneVertex>& vertices = scene.vertices();
    for (const ScenePolyline& polyline : scene.polylines()) {
        QPainterPath& path = byColour[polyline.colour];
        const SceneVertex* v = vertices.data() + polyline.first;
        const size_t n = polyline.count;
        path.moveTo(v[0].x, -v[0].y);
        if (n == 1)
            path.lineTo(v[0].x, -v[0].y);
        const size_t segments = polyline.closed ? n : n - 1;
        for (size_t i = 0; i < segments; ++i) {
            const SceneVertex& to = v[(i + 1) % n];
            BulgeArc arc;
            if (bulgeArc(v[i], to, arc)) {
                // With y pointing down, Qt's counter-clockwise angles are the world's.
                const QRectF box(arc.cx - arc.radius, -arc.cy - arc.radius, 2 * arc.radius, 2 * arc.radius);
                path.arcTo(box, degrees(arc.start), degrees(arc.sweep));
            } else {
                path.lineTo(to.x, -to.y);
            }
        }
    }
    paths.byColour.clear();
    for (auto& [colour, path] : byColour)
        paths.byColour.emplace_back(colourOf(colour), std::move(path));
}

QPointF DrawingView::worldToScreen(QPointF world) const {
    return {width() / 2.0 + (world.x() - m_place.centerX) * m_place.scale,
            height() / 2.0 - (world.y() - m_place.centerY) * m_place.scale};
}

QPointF DrawingView::screenToWorld(QPointF screen) const {
    return {m_place.centerX + (screen.x() - width() / 2.0) / m_place.scale,
            m_place.centerY - (screen.y() - height() / 2.0) / m_place.scale};
}

void DrawingView::zoomExtents() {
    m_place.fitted = true;
    m_place.moved = false;
    if (!m_scene || m_scene->extents().empty)
        return;
    const SceneExtents& e = m_scene->extents();
    m_place.centerX = e.minX + e.width() / 2;
    m_place.centerY = e.minY + e.height() / 2;
    const double w = std::max(1, width()) * kFitShare, h = std::max(1, height()) * kFitShare;
    double scale =
        std::min(e.width() > 0 ? w / e.width() : HUGE_VAL, e.height() > 0 ? h / e.height() : HUGE_VAL);
    if (!std::isfinite(scale) || scale <= 0)
        scale = 1; // a single point
    m_place.scale = scale;
}

void DrawingView::zoomAround(QPointF screen, double factor) {
    if (!m_scene || m_scene->extents().empty)
        return;
    const SceneExtents& e = m_scene->extents();
    const double size = std::max({e.width(), e.height(), 1e-9});
    const double fit = std::max(1, std::min(width(), height())) / size;
    const QPointF world = screenToWorld(screen);
    m_place.scale = std::clamp(m_place.scale * factor, fit * kMinZoom, fit * kMaxZoom);
    m_place.centerX = world.x() - (screen.x() - width() / 2.0) / m_place.scale;
    m_place.centerY = world.y() + (screen.y() - height() / 2.0) / m_place.scale;
    m_place.moved = true;
    update();
}

void DrawingView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), kBackground);
    if (!m_scene || m_scene->isEmpty()) {
        painter.setPen(kNoteColour);
        painter.drawText(rect(), Qt::AlignCenter,
                         m_scene ? tr("No entities in model space") : tr("No drawing open"));
        return;
    }
    if (!m_place.fitted)
        zoomExtents();
    const double s = m_place.scale;
    const QTransform world(s, 0, 0, s, width() / 2.0 - m_place.centerX * s,
                           height() / 2.0 + m_place.centerY * s);
    painter.setRenderHint(QPainter::Antialiasing, m_scene->vertices().size() <= kAntialiasVertices);
    painter.setTransform(world);
    QPen pen;
    pen.setCosmetic(true);
    pen.setWidth(0);
    painter.setBrush(Qt::NoBrush);
    for (const auto& [colour, path] : m_current->byColour) {
        pen.setColor(colour);
        painter.setPen(pen);
        painter.drawPath(path);
    }
    painter.resetTransform();
    paintTexts(painter, *m_scene);
}

void DrawingView::paintTexts(QPainter& painter, const ModelSpaceScene& scene) const {
    const QRectF area = rect();
    QFont font = this->font();
    for (const SceneText& text : scene.texts()) {
        const double pixels = text.height * m_place.scale;
        if (pixels < kMinTextPixels || pixels > kMaxTextPixels)
            continue;
        const QPointF at = worldToScreen({text.x, text.y});
        // A rough reach of the text around its point: texts far outside are not laid out.
        const double reach = pixels * (double(text.text.size()) * text.widthFactor + 2);
        if (!area.adjusted(-reach, -reach, reach, reach).contains(at))
            continue;
        font.setPixelSize(std::max(1, int(std::lround(pixels / kCapHeightShare))));
        const QFontMetricsF metrics(font);
        const QString line = QString::fromStdString(text.text);
        const double width = metrics.horizontalAdvance(line);
        const double dx = text.hAlign == TextHAlign::Left     ? 0
                          : text.hAlign == TextHAlign::Center ? -width / 2
                                                              : -width;
        double dy = 0; // from the alignment point down to the baseline
        switch (text.vAlign) {
        case TextVAlign::Baseline:
            break;
        case TextVAlign::Bottom:
            dy = -metrics.descent();
            break;
        case TextVAlign::Middle:
            dy = pixels / 2;
            break;
        case TextVAlign::Top:
            dy = pixels;
            break;
        }
        painter.save();
        painter.translate(at);
        painter.rotate(-degrees(text.rotation));
        painter.scale(text.widthFactor, 1);
        painter.setFont(font);
        painter.setPen(colourOf(text.colour));
        painter.drawText(QPointF(dx, dy), line);
        painter.restore();
    }
}

void DrawingView::resizeEvent(QResizeEvent*) {
    if (!m_place.moved)
        m_place.fitted = false; // fitted again at the next paint
    placeButton();
}

void DrawingView::placeButton() {
    m_zoomExtents->adjustSize();
    m_zoomExtents->move(width() - m_zoomExtents->width() - kButtonMargin, kButtonMargin);
}

void DrawingView::wheelEvent(QWheelEvent* event) {
    const double steps = event->angleDelta().y();
    if (steps != 0)
        zoomAround(event->position(), std::pow(2.0, steps / kWheelDegreesPerDoubling));
    event->accept();
}

void DrawingView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton || event->button() == Qt::LeftButton) {
        m_dragging = true;
        m_dragFrom = event->position();
        setCursor(Qt::ClosedHandCursor);
        event->accept();
        return;
    }
    QWidget::mousePressEvent(event);
}

void DrawingView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dragging || !m_scene || m_scene->isEmpty())
        return;
    const QPointF delta = event->position() - m_dragFrom;
    m_dragFrom = event->position();
    m_place.centerX -= delta.x() / m_place.scale;
    m_place.centerY += delta.y() / m_place.scale;
    m_place.moved = true;
    update();
}

void DrawingView::mouseReleaseEvent(QMouseEvent* event) {
    if (m_dragging && !(event->buttons() & (Qt::MiddleButton | Qt::LeftButton))) {
        m_dragging = false;
        unsetCursor();
    }
}

void DrawingView::mouseDoubleClickEvent(QMouseEvent* event) {
    zoomExtents();
    update();
    event->accept();
}

void DrawingView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Home) {
        zoomExtents();
        update();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace cadhost
