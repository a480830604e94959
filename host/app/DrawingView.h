// A view of a drawing's model space: paints a ModelSpaceScene, zooms with the wheel around the
// mouse, pans with the middle (or left) button, zooms to the extents on a double-click or Home.
#pragma once
#include "ModelSpaceScene.h"

#include <QColor>
#include <QPainterPath>
#include <QPointF>
#include <QWidget>

#include <map>
#include <memory>
#include <vector>

class QToolButton;

namespace cadhost {

class DrawingView : public QWidget {
    Q_OBJECT
public:
    explicit DrawingView(QWidget* parent = nullptr);

    // The scene to show; null: no drawing is open. A scene shown before comes back where the user
    // left it, as long as the caller keeps it alive.
    void setScene(std::shared_ptr<const ModelSpaceScene> scene);
    const ModelSpaceScene* scene() const { return m_scene.get(); }

    // Fits the scene's extents into the view.
    void zoomExtents();
    // Pixels per drawing unit.
    double scale() const { return m_place.scale; }
    QPointF worldToScreen(QPointF world) const;
    QPointF screenToWorld(QPointF screen) const;

    QSize sizeHint() const override { return {500, 400}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // Where the view looks: the world point at its centre and the scale.
    struct Placement {
        double centerX = 0, centerY = 0;
        double scale = 1;
        bool fitted = false; // the view was placed at least once
        bool moved = false;  // the user zoomed or panned since: a resize keeps the place
    };
    // Paths by colour, in world coordinates with y pointing down (Qt's arcs turn that way).
    struct Paths {
        std::weak_ptr<const ModelSpaceScene> scene;
        std::vector<std::pair<QColor, QPainterPath>> byColour;
        Placement place;
    };

    void buildPaths(Paths& paths, const ModelSpaceScene& scene) const;
    void paintTexts(QPainter& painter, const ModelSpaceScene& scene) const;
    void zoomAround(QPointF screen, double factor);
    void placeButton();

    std::shared_ptr<const ModelSpaceScene> m_scene;
    std::map<const ModelSpaceScene*, Paths> m_paths;
    Paths* m_current = nullptr;
    Placement m_place;
    QToolButton* m_zoomExtents;
    QPointF m_dragFrom;
    bool m_dragging = false;
};

} // namespace cadhost
