// SceneBuilder: the drawing of each kind of entity: lines, polylines, arcs, texts, ellipses, solids.
#include "SceneBuilder.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace cadhost {

using namespace modelspace;

void SceneBuilder::drawLine(const Groups& g, const Context& context) {
    std::optional<SceneColour> colour = colourOf(g, context);
    if (!colour)
        return;
    bool ok = true;
    m_points = {{g.real(10, 0, ok), g.real(20, 0, ok), 0}, {g.real(11, 0, ok), g.real(21, 0, ok), 0}};
    if (!ok) {
        ++m_scene.m_skipped;
        return;
    }
    addPolyline(*colour, false, context.transform);
}

void SceneBuilder::drawLwPolyline(const Groups& g, const Context& context) {
    std::optional<SceneColour> colour = colourOf(g, context);
    if (!colour)
        return;
    m_points.clear();
    bool ok = true;
    for (const Tag& t : g.tags()) {
        double v = 0;
        if (t.code != 10 && t.code != 20 && t.code != 42)
            continue;
        if (!toDouble(t.value, v)) {
            ok = false;
            break;
        }
        if (t.code == 10)
            m_points.push_back({v, 0, 0});
        else if (m_points.empty()) // a y or a bulge before any x
            ok = false;
        else if (t.code == 20)
            m_points.back().y = v;
        else
            m_points.back().bulge = v;
    }
    if (!ok || m_points.empty()) {
        ++m_scene.m_skipped;
        return;
    }
    addPolyline(*colour, g.integer(70, 0) & 1, objectSystem(g, context));
}

void SceneBuilder::drawPolyline(const Groups& g, const std::vector<std::span<const Tag>>& vertices,
                                const Context& context) {
    std::optional<SceneColour> colour = colourOf(g, context);
    if (!colour)
        return;
    const long flags = g.integer(70, 0);
    constexpr long kMesh = 16, kPolyface = 64, kSplineFrame = 16, kFaceRecord = 128;
    if (flags & (kMesh | kPolyface))
        return;
    m_points.clear();
    for (std::span<const Tag> vertex : vertices) {
        Groups v(entityGroups(vertex));
        if (v.integer(70, 0) & (kSplineFrame | kFaceRecord))
            continue;
        bool ok = true;
        m_points.push_back({v.real(10, 0, ok), v.real(20, 0, ok), v.real(42, 0, ok)});
        if (!ok) {
            ++m_scene.m_skipped;
            return;
        }
    }
    if (m_points.empty()) {
        ++m_scene.m_skipped;
        return;
    }
    addPolyline(*colour, flags & 1, (flags & 8) ? context.transform : objectSystem(g, context));
}

void SceneBuilder::drawArc(const Groups& g, const Context& context, bool circle) {
    std::optional<SceneColour> colour = colourOf(g, context);
    if (!colour)
        return;
    bool ok = true;
    const double cx = g.real(10, 0, ok), cy = g.real(20, 0, ok), r = g.real(40, 0, ok);
    double start = circle ? 0 : g.real(50, 0, ok), end = circle ? 360 : g.real(51, 360, ok);
    if (!ok || !(r > 0) || r > ModelSpaceScene::kMaxCoordinate || std::abs(start) > 1e6 ||
        std::abs(end) > 1e6) {
        ++m_scene.m_skipped;
        return;
    }
    double sweep = std::fmod(end - start, 360.0);
    if (sweep <= 0)
        sweep += 360;
    // Pieces of at most a quarter circle keep every bulge small.
    const int pieces = std::max(1, int(std::ceil(sweep / 90.0 - 1e-9)));
    const double step = sweep / pieces * kPi / 180;
    const double bulge = std::tan(step / 4);
    m_points.clear();
    for (int k = 0; k <= pieces; ++k) {
        if (circle && k == pieces)
            break;
        const double a = start * kPi / 180 + k * step;
        m_points.push_back({cx + r * std::cos(a), cy + r * std::sin(a), k < pieces ? bulge : 0});
    }
    addPolyline(*colour, circle, objectSystem(g, context));
}

void SceneBuilder::drawText(const Groups& g, const Context& context, int vAlignCode) {
    std::optional<SceneColour> colour = colourOf(g, context);
    if (!colour)
        return;
    const Tag* value = g.find(1);
    if (!value)
        return;
    bool ok = true;
    SceneText text;
    text.colour = *colour;
    text.x = g.real(10, 0, ok);
    text.y = g.real(20, 0, ok);
    text.height = g.real(40, 1, ok);
    text.rotation = g.real(50, 0, ok) * kPi / 180;
    text.widthFactor = g.real(41, 1, ok);
    const long h = g.integer(72, 0), v = g.integer(vAlignCode, 0);
    if ((h != 0 || v != 0) && h != 3 && h != 5 && g.find(11)) { // aligned and fit texts keep 10
        text.x = g.real(11, text.x, ok);
        text.y = g.real(21, text.y, ok);
        text.hAlign = h == 2 ? TextHAlign::Right : (h == 1 || h == 4) ? TextHAlign::Center : TextHAlign::Left;
        text.vAlign = h == 4   ? TextVAlign::Middle
                      : v == 1 ? TextVAlign::Bottom
                      : v == 2 ? TextVAlign::Middle
                      : v == 3 ? TextVAlign::Top
                               : TextVAlign::Baseline;
    }
    text.text = plainText(m_drawing.text(value->value));
    if (!ok) {
        ++m_scene.m_skipped;
        return;
    }
    addText(std::move(text), objectSystem(g, context));
}

void SceneBuilder::drawMText(const Groups& g, const Context& context) {
    std::optional<SceneColour> colour = colourOf(g, context);
    if (!colour)
        return;
    std::string raw;
    for (const Tag& t : g.tags())
        if (t.code == 3 || t.code == 1)
            raw += t.value;
    bool ok = true;
    const double x = g.real(10, 0, ok), y = g.real(20, 0, ok), height = g.real(40, 1, ok);
    double rotation = g.real(50, 0, ok) * kPi / 180;
    double dx = 0, dy = 0;
    if (g.real(11, dx) && g.real(21, dy) && (dx != 0 || dy != 0))
        rotation = std::atan2(dy, dx);
    const double spacing = height * kMTextLineSpacing * g.real(44, 1, ok);
    if (!ok) {
        ++m_scene.m_skipped;
        return;
    }
    const long attachment = std::clamp(g.integer(71, 1), 1L, 9L);
    const std::vector<std::string> lines = splitLines(plainMText(m_drawing.text(raw)));
    // The attachment point is at the top, middle or bottom of the whole block of lines.
    const double blockHeight = height + spacing * double(lines.size() - 1);
    double firstTop = 0; // distance along the text's up direction from the point to line one's top
    if (attachment >= 4 && attachment <= 6)
        firstTop = blockHeight / 2;
    else if (attachment >= 7)
        firstTop = blockHeight;
    const double upX = -std::sin(rotation), upY = std::cos(rotation);
    for (size_t n = 0; n < lines.size(); ++n) {
        if (lines[n].empty())
            continue;
        SceneText text;
        text.colour = *colour;
        const double offset = firstTop - double(n) * spacing;
        text.x = x + upX * offset;
        text.y = y + upY * offset;
        text.height = height;
        text.rotation = rotation;
        text.vAlign = TextVAlign::Top;
        const long column = (attachment - 1) % 3;
        text.hAlign = column == 0 ? TextHAlign::Left : column == 1 ? TextHAlign::Center : TextHAlign::Right;
        text.text = lines[n];
        addText(std::move(text), context.transform);
    }
}

void SceneBuilder::drawEllipse(const Groups& g, const Context& context) {
    std::optional<SceneColour> colour = colourOf(g, context);
    if (!colour)
        return;
    bool ok = true;
    const double cx = g.real(10, 0, ok), cy = g.real(20, 0, ok);
    const double mx = g.real(11, 0, ok), my = g.real(21, 0, ok), ratio = g.real(40, 1, ok);
    const double start = g.real(41, 0, ok), end = g.real(42, 2 * kPi, ok);
    const double major = std::hypot(mx, my);
    if (!ok || !(major > 0) || major > ModelSpaceScene::kMaxCoordinate || !(ratio > 0) || ratio > 1 ||
        std::abs(start) > 1e6 || std::abs(end) > 1e6) {
        ++m_scene.m_skipped;
        return;
    }
    double sweep = std::fmod(end - start, 2 * kPi);
    if (sweep <= 1e-12)
        sweep += 2 * kPi;
    // The minor axis is the major one turned a quarter about the extrusion.
    double z = 1;
    const double turn = g.real(230, z) && z < 0 ? -1 : 1;
    const double nx = -my * ratio * turn, ny = mx * ratio * turn;
    constexpr int kSegmentsPerTurn = 64;
    const int segments = std::max(4, int(std::ceil(sweep / (2 * kPi) * kSegmentsPerTurn)));
    const bool closed = sweep >= 2 * kPi - 1e-9;
    m_points.clear();
    for (int k = 0; k <= segments; ++k) {
        if (closed && k == segments)
            break;
        const double t = start + sweep * k / segments;
        m_points.push_back(
            {cx + mx * std::cos(t) + nx * std::sin(t), cy + my * std::cos(t) + ny * std::sin(t), 0});
    }
    addPolyline(*colour, closed, context.transform);
}

// The outline of a filled triangle or quadrilateral: its third and fourth corners are crossed.
void SceneBuilder::drawSolid(const Groups& g, const Context& context) {
    std::optional<SceneColour> colour = colourOf(g, context);
    if (!colour)
        return;
    bool ok = true;
    const double x3 = g.real(12, 0, ok), y3 = g.real(22, 0, ok);
    m_points = {{g.real(10, 0, ok), g.real(20, 0, ok), 0},
                {g.real(11, 0, ok), g.real(21, 0, ok), 0},
                {g.real(13, x3, ok), g.real(23, y3, ok), 0},
                {x3, y3, 0}};
    if (!ok) {
        ++m_scene.m_skipped;
        return;
    }
    addPolyline(*colour, true, objectSystem(g, context));
}

} // namespace cadhost
