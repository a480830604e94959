// What a drawing's model space shows: its curves and texts in world coordinates with their
// colours, built once from the drawing's DXF tags for a view to paint.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class AcApDocument;

namespace cadhost {

namespace dxf {
class Drawing;
}

// A colour as 0xRRGGBB, or kForeground: ACI 7, black on a light background and white on a dark one.
using SceneColour = std::uint32_t;
constexpr SceneColour kForeground = 0xFF000000u;

// The colour of an AutoCAD Color Index (1..255); kForeground for 7 and for anything out of range.
SceneColour aciColour(int index);

// One vertex of a polyline: bulge is the tangent of a quarter of the arc's angle to the next
// vertex (0 straight, 1 a half circle, negative clockwise).
struct SceneVertex {
    double x = 0, y = 0, bulge = 0;
};

// The arc a bulged segment from one vertex to the next describes: centre, radius, start angle
// and signed sweep in radians (counter-clockwise positive).
struct BulgeArc {
    double cx = 0, cy = 0, radius = 0, start = 0, sweep = 0;
};
// False for a straight segment (no bulge, or both vertices at one place) or an arc out of range.
bool bulgeArc(const SceneVertex& from, const SceneVertex& to, BulgeArc& arc);

// Lines, polylines, circles (two half circles, closed) and arcs (one bulged segment).
struct ScenePolyline {
    SceneColour colour = kForeground;
    bool closed = false;
    std::uint32_t first = 0; // index of the first vertex in ModelSpaceScene::vertices()
    std::uint32_t count = 0;
};

enum class TextHAlign { Left, Center, Right };
enum class TextVAlign { Baseline, Bottom, Middle, Top };

// One line of text: x, y is the point it is aligned at.
struct SceneText {
    SceneColour colour = kForeground;
    double x = 0, y = 0;
    double height = 1;   // of capital letters, in drawing units
    double rotation = 0; // radians, counter-clockwise
    double widthFactor = 1;
    TextHAlign hAlign = TextHAlign::Left;
    TextVAlign vAlign = TextVAlign::Baseline;
    std::string text; // UTF-8
};

struct SceneExtents {
    double minX = 0, minY = 0, maxX = 0, maxY = 0;
    bool empty = true;

    void add(double x, double y);
    double width() const { return maxX - minX; }
    double height() const { return maxY - minY; }
};

class ModelSpaceScene {
public:
    // Coordinates beyond this (and NaN) leave an entity out: they come from broken files.
    static constexpr double kMaxCoordinate = 1e10;
    // Block references stop expanding past this many vertices or this depth of nesting.
    static constexpr std::size_t kMaxVertices = 4'000'000;
    static constexpr int kMaxBlockDepth = 8;

    // The model space entities of the drawing: those of the ENTITIES section not in paper space,
    // on layers that are on and thawed. Never fails: what cannot be read is counted in skipped().
    static ModelSpaceScene build(const dxf::Drawing& drawing);
    // The drawing file of a document; null for none.
    static const dxf::Drawing* drawingOf(AcApDocument* document);

    const std::vector<SceneVertex>& vertices() const { return m_vertices; }
    const std::vector<ScenePolyline>& polylines() const { return m_polylines; }
    const std::vector<SceneText>& texts() const { return m_texts; }
    // Of everything drawn, texts estimated by their height and length.
    const SceneExtents& extents() const { return m_extents; }
    bool isEmpty() const { return m_polylines.empty() && m_texts.empty(); }
    // Entities left out because a value was missing, broken or out of range.
    std::size_t skipped() const { return m_skipped; }
    // Some block references were not expanded (too deep, or too many vertices).
    bool isTruncated() const { return m_truncated; }

private:
    friend class SceneBuilder;

    std::vector<SceneVertex> m_vertices;
    std::vector<ScenePolyline> m_polylines;
    std::vector<SceneText> m_texts;
    SceneExtents m_extents;
    std::size_t m_skipped = 0;
    bool m_truncated = false;
};

// Plain text of an MTEXT value as the file's text decoding gives it (caret escapes already
// resolved): formatting codes removed, "\P" as a line break, a tab as a blank.
std::string plainMText(std::string_view text);

} // namespace cadhost
