// SceneBuilder: walks a drawing's ENTITIES section (and the blocks its references name) and fills
// a ModelSpaceScene; with the reading of DXF groups that it needs. Internal to ModelSpaceScene.
#pragma once
#include "DxfDrawing.h"
#include "ModelSpaceScene.h"

#include <cmath>
#include <numbers>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cadhost {

namespace modelspace {

using dxf::Tag;

inline constexpr double kPi = std::numbers::pi;
inline constexpr int kByBlock = 0;
inline constexpr int kByLayer = 256;
inline constexpr int kAciForeground = 7;
// Nested block references expanded in all: a block that holds many references of one that holds
// many more grows without a bound otherwise.
inline constexpr std::size_t kMaxExpansions = 200'000;
// A DXF text's height is that of its capital letters; its width is guessed from its length.
inline constexpr double kTextWidthPerChar = 0.7;
inline constexpr double kMTextLineSpacing = 5.0 / 3.0;

// Numbers as the DXF reader takes them, finite only.
bool toDouble(std::string_view v, double& out);
bool toInt(std::string_view v, long& out);
// A table or block name as the drawing's lookups compare it: trimmed, upper case.
std::string upperKey(std::string_view v);
// Both coordinates within ModelSpaceScene::kMaxCoordinate.
bool inRange(double x, double y);

// The tags of one entity after its "0 TYPE" up to its extended data, looked up by code.
class Groups {
public:
    explicit Groups(std::span<const Tag> tags) : m_tags(tags) {}

    std::span<const Tag> tags() const { return m_tags; }
    const Tag* find(int code) const {
        for (const Tag& t : m_tags)
            if (t.code == code)
                return &t;
        return nullptr;
    }
    bool real(int code, double& out) const {
        const Tag* t = find(code);
        return t && toDouble(t->value, out);
    }
    double real(int code, double fallback, bool& ok) const {
        const Tag* t = find(code);
        double v = fallback;
        if (t && !toDouble(t->value, v))
            ok = false;
        return v;
    }
    long integer(int code, long fallback) const {
        const Tag* t = find(code);
        long v = fallback;
        if (t && !toInt(t->value, v))
            return fallback;
        return v;
    }

private:
    std::span<const Tag> m_tags;
};

struct Layer {
    SceneColour colour = kForeground;
    bool visible = true;
};

// x' = a x + c y + tx, y' = b x + d y + ty
struct Transform {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

    void apply(double& x, double& y) const {
        const double nx = a * x + c * y + tx;
        y = b * x + d * y + ty;
        x = nx;
    }
    // this after inner
    Transform operator*(const Transform& inner) const {
        Transform r;
        r.a = a * inner.a + c * inner.b;
        r.b = b * inner.a + d * inner.b;
        r.c = a * inner.c + c * inner.d;
        r.d = b * inner.c + d * inner.d;
        r.tx = a * inner.tx + c * inner.ty + tx;
        r.ty = b * inner.tx + d * inner.ty + ty;
        return r;
    }
    bool isMirrored() const { return a * d - b * c < 0; }
    // Circles stay circles: the columns are as long as each other and at right angles.
    bool keepsCircles() const {
        const double lx = std::hypot(a, b), ly = std::hypot(c, d);
        const double tolerance = 1e-9 * std::max(lx, ly);
        return std::abs(lx - ly) <= tolerance && std::abs(a * c + b * d) <= tolerance * std::max(lx, ly);
    }
    bool isIdentity() const { return a == 1 && b == 0 && c == 0 && d == 1 && tx == 0 && ty == 0; }
};

struct BlockDef {
    double baseX = 0, baseY = 0;
    std::span<const Tag> entities;
};

// Where entities are drawn: the transform of the block references around them, the colour that
// BYBLOCK takes, and the layer that layer "0" inside a block stands for.
struct Context {
    Transform transform;
    SceneColour byBlock = kForeground;
    const Layer* layerZero = nullptr;
    int depth = 0;
};

// The entity's tags without "0 TYPE" and without extended data (from 1001 on).
std::span<const Tag> entityGroups(std::span<const Tag> entity);
// "%%d" and the other control codes of single-line text.
std::string plainText(std::string_view text);
std::vector<std::string> splitLines(const std::string& text);

} // namespace modelspace

// Walks the ENTITIES section (and the blocks its references name) and fills a scene. The drawing
// of each kind of entity is in SceneEntities.cpp.
class SceneBuilder {
public:
    SceneBuilder(const dxf::Drawing& drawing, ModelSpaceScene& scene) : m_drawing(drawing), m_scene(scene) {}

    void run() {
        readLayers();
        readBlocks();
        drawEntities(m_drawing.section("ENTITIES"), Context{});
    }

private:
    using BlockDef = modelspace::BlockDef;
    using Context = modelspace::Context;
    using Groups = modelspace::Groups;
    using Layer = modelspace::Layer;
    using Tag = modelspace::Tag;
    using Transform = modelspace::Transform;

    void readLayers();
    void readBlocks();
    void drawEntities(std::span<const Tag> tags, const Context& context);
    // The entity's colour; none when it is not drawn (paper space, invisible, layer off). layerOut,
    // when given, gets the layer it is drawn on.
    std::optional<SceneColour> colourOf(const Groups& g, const Context& context,
                                        const Layer** layerOut = nullptr);
    // Entities whose points are in their object coordinate system: an extrusion pointing down
    // mirrors x. Other tilted systems are drawn as if seen along their own axis.
    static Transform objectSystem(const Groups& g, const Context& context);
    void drawEntity(std::string_view type, const Groups& g, const Context& context);
    void drawLine(const Groups& g, const Context& context);
    void drawLwPolyline(const Groups& g, const Context& context);
    void drawPolyline(const Groups& g, const std::vector<std::span<const Tag>>& vertices,
                      const Context& context);
    void drawArc(const Groups& g, const Context& context, bool circle);
    void drawText(const Groups& g, const Context& context, int vAlignCode);
    void drawMText(const Groups& g, const Context& context);
    void drawInsert(const Groups& g, const Context& context);
    // A dimension's picture is an anonymous block drawn where it stands.
    void drawDimension(const Groups& g, const Context& context);
    // The block that group 2 names, unless it is unknown or expanding it would go too far.
    const BlockDef* blockToExpand(const Groups& g, const Context& context);
    void expandBlock(const BlockDef& block, const Transform& transform, SceneColour colour,
                     const Layer* layer, const Context& context);
    void drawEllipse(const Groups& g, const Context& context);
    // The outline of a filled triangle or quadrilateral: its third and fourth corners are crossed.
    void drawSolid(const Groups& g, const Context& context);
    // Adds m_points through the transform; arcs that the transform would turn into ellipses are
    // drawn as short straight segments.
    void addPolyline(SceneColour colour, bool closed, const Transform& transform);
    void flattenArcs(bool closed);
    void addText(SceneText text, const Transform& transform);

    const dxf::Drawing& m_drawing;
    ModelSpaceScene& m_scene;
    std::unordered_map<std::string, Layer> m_layers;
    std::unordered_map<std::string, BlockDef> m_blocks;
    Layer m_defaultLayer;
    std::vector<SceneVertex> m_points; // the polyline being added
    std::vector<const BlockDef*> m_expanding;
    std::size_t m_expansions = 0;
};

} // namespace cadhost
