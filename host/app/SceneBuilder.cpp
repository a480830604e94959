// SceneBuilder: the walk through the entities and blocks, and the polylines and texts it adds.
#include "SceneBuilder.h"

#include "DxfTags.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cadhost {

namespace modelspace {

bool toDouble(std::string_view v, double& out) {
    double d = 0;
    if (!dxf::parseReal(v, d) || !std::isfinite(d))
        return false;
    out = d;
    return true;
}

bool toInt(std::string_view v, long& out) {
    long long n = 0;
    if (!dxf::parseInteger(v, n) || n < std::numeric_limits<long>::min() ||
        n > std::numeric_limits<long>::max())
        return false;
    out = static_cast<long>(n);
    return true;
}

std::string upperKey(std::string_view v) {
    std::string key(dxf::trimmed(v));
    for (char& c : key)
        if (c >= 'a' && c <= 'z')
            c = char(c - 'a' + 'A');
    return key;
}

bool inRange(double x, double y) {
    return std::abs(x) <= ModelSpaceScene::kMaxCoordinate && std::abs(y) <= ModelSpaceScene::kMaxCoordinate;
}

// The entity's tags without "0 TYPE" and without extended data (from 1001 on).
std::span<const Tag> entityGroups(std::span<const Tag> entity) {
    size_t end = 1;
    while (end < entity.size() && entity[end].code != 1001)
        ++end;
    return entity.subspan(1, end - 1);
}

// "%%d" and the other control codes of single-line text.
std::string plainText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && text[i + 1] == '%') {
            const char code = char(std::tolower(static_cast<unsigned char>(text[i + 2])));
            const char* replacement = nullptr;
            switch (code) {
            case 'd':
                replacement = "\u00B0";
                break;
            case 'p':
                replacement = "\u00B1";
                break;
            case 'c':
                replacement = "\u2300";
                break;
            case '%':
                replacement = "%";
                break;
            case 'u':
            case 'o':
            case 'k':
                replacement = "";
                break;
            default:
                break;
            }
            if (replacement) {
                out += replacement;
                i += 2;
                continue;
            }
        }
        out += text[i];
    }
    return out;
}

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (;;) {
        const size_t nl = text.find('\n', start);
        lines.push_back(text.substr(start, nl == std::string::npos ? std::string::npos : nl - start));
        if (nl == std::string::npos)
            return lines;
        start = nl + 1;
    }
}

} // namespace modelspace

using namespace modelspace;

void SceneBuilder::readLayers() {
    std::span<const Tag> tables = m_drawing.section("TABLES");
    for (size_t i = 0; i < tables.size(); ++i) {
        if (tables[i].code != 0 || dxf::trimmed(tables[i].value) != "LAYER")
            continue;
        size_t end = i + 1;
        while (end < tables.size() && tables[end].code != 0)
            ++end;
        Groups g(entityGroups(tables.subspan(i, end - i)));
        if (const Tag* name = g.find(2)) {
            Layer layer;
            const long aci = g.integer(62, kAciForeground);
            layer.visible = aci >= 0 && !(g.integer(70, 0) & 1); // off, or frozen
            layer.colour = aciColour(int(std::min(std::abs(aci), 1000L)));
            long rgb = 0;
            if (const Tag* tc = g.find(420); tc && toInt(tc->value, rgb))
                layer.colour = SceneColour(rgb) & 0xFFFFFF;
            m_layers[upperKey(name->value)] = layer;
        }
        i = end - 1;
    }
}

void SceneBuilder::readBlocks() {
    std::span<const Tag> blocks = m_drawing.section("BLOCKS");
    size_t i = 0;
    while (i < blocks.size()) {
        if (blocks[i].code != 0 || dxf::trimmed(blocks[i].value) != "BLOCK") {
            ++i;
            continue;
        }
        size_t headerEnd = i + 1;
        while (headerEnd < blocks.size() && blocks[headerEnd].code != 0)
            ++headerEnd;
        size_t end = headerEnd;
        while (end < blocks.size() && !(blocks[end].code == 0 && dxf::trimmed(blocks[end].value) == "ENDBLK"))
            ++end;
        Groups g(entityGroups(blocks.subspan(i, headerEnd - i)));
        BlockDef def;
        g.real(10, def.baseX);
        g.real(20, def.baseY);
        def.entities = blocks.subspan(headerEnd, end - headerEnd);
        if (const Tag* name = g.find(2))
            m_blocks.emplace(upperKey(name->value), def);
        i = end;
    }
}

void SceneBuilder::drawEntities(std::span<const Tag> tags, const Context& context) {
    size_t i = 0;
    while (i < tags.size() && tags[i].code != 0)
        ++i;
    while (i < tags.size()) {
        size_t end = i + 1;
        while (end < tags.size() && tags[end].code != 0)
            ++end;
        const std::string_view type = dxf::trimmed(tags[i].value);
        std::span<const Tag> entity = tags.subspan(i, end - i);
        if (type == "POLYLINE") {
            // Its vertices follow as entities of their own, up to SEQEND.
            std::vector<std::span<const Tag>> vertices;
            while (end < tags.size() && dxf::trimmed(tags[end].value) == "VERTEX") {
                size_t vend = end + 1;
                while (vend < tags.size() && tags[vend].code != 0)
                    ++vend;
                vertices.push_back(tags.subspan(end, vend - end));
                end = vend;
            }
            drawPolyline(Groups(entityGroups(entity)), vertices, context);
        } else {
            drawEntity(type, Groups(entityGroups(entity)), context);
        }
        i = end;
    }
}

// The entity's colour; none when it is not drawn (paper space, invisible, layer off).
std::optional<SceneColour> SceneBuilder::colourOf(const Groups& g, const Context& context,
                                                  const Layer** layerOut) {
    if (g.integer(67, 0) == 1 || g.integer(60, 0) == 1)
        return std::nullopt;
    const Tag* layerName = g.find(8);
    const std::string key = layerName ? upperKey(layerName->value) : std::string("0");
    const Layer* layer = &m_defaultLayer;
    if (key == "0" && context.layerZero) {
        layer = context.layerZero;
    } else if (auto it = m_layers.find(key); it != m_layers.end()) {
        layer = &it->second;
    }
    if (layerOut)
        *layerOut = layer;
    if (!layer->visible)
        return std::nullopt;
    long rgb = 0;
    if (const Tag* tc = g.find(420); tc && toInt(tc->value, rgb))
        return SceneColour(rgb) & 0xFFFFFF;
    const long aci = g.integer(62, kByLayer);
    if (aci == kByBlock)
        return context.byBlock;
    if (aci == kByLayer || aci > kByLayer || aci < -255)
        return layer->colour;
    return aciColour(int(std::abs(aci)));
}

// Entities whose points are in their object coordinate system: an extrusion pointing down
// mirrors x. Other tilted systems are drawn as if seen along their own axis.
Transform SceneBuilder::objectSystem(const Groups& g, const Context& context) {
    double z = 1;
    if (g.real(230, z) && z < 0) {
        Transform mirror;
        mirror.a = -1;
        return context.transform * mirror;
    }
    return context.transform;
}

void SceneBuilder::drawEntity(std::string_view type, const Groups& g, const Context& context) {
    if (type == "LINE") {
        drawLine(g, context);
    } else if (type == "LWPOLYLINE") {
        drawLwPolyline(g, context);
    } else if (type == "CIRCLE" || type == "ARC") {
        drawArc(g, context, type == "CIRCLE");
    } else if (type == "TEXT" || type == "ATTRIB") {
        // An attribute is placed in the world already: it follows its reference.
        if (type == "ATTRIB" && (g.integer(70, 0) & 1))
            return;
        drawText(g, context, type == "ATTRIB" ? 74 : 73);
    } else if (type == "MTEXT") {
        drawMText(g, context);
    } else if (type == "INSERT") {
        drawInsert(g, context);
    } else if (type == "DIMENSION") {
        drawDimension(g, context);
    } else if (type == "ELLIPSE") {
        drawEllipse(g, context);
    } else if (type == "SOLID" || type == "TRACE") {
        drawSolid(g, context);
    }
}

void SceneBuilder::drawInsert(const Groups& g, const Context& context) {
    const Layer* layer = nullptr;
    std::optional<SceneColour> colour = colourOf(g, context, &layer);
    if (!colour)
        return;
    const BlockDef* block = blockToExpand(g, context);
    if (!block)
        return;
    bool ok = true;
    const double px = g.real(10, 0, ok), py = g.real(20, 0, ok);
    const double sx = g.real(41, 1, ok), sy = g.real(42, 1, ok);
    const double rotation = g.real(50, 0, ok) * kPi / 180;
    if (!ok || sx == 0 || sy == 0 || std::abs(sx) > 1e6 || std::abs(sy) > 1e6 || !inRange(px, py)) {
        ++m_scene.m_skipped;
        return;
    }
    Transform local;
    const double cosR = std::cos(rotation), sinR = std::sin(rotation);
    local.a = cosR * sx;
    local.b = sinR * sx;
    local.c = -sinR * sy;
    local.d = cosR * sy;
    local.tx = px - (local.a * block->baseX + local.c * block->baseY);
    local.ty = py - (local.b * block->baseX + local.d * block->baseY);
    expandBlock(*block, objectSystem(g, context) * local, *colour, layer, context);
}

// A dimension's picture is an anonymous block drawn where it stands.
void SceneBuilder::drawDimension(const Groups& g, const Context& context) {
    const Layer* layer = nullptr;
    std::optional<SceneColour> colour = colourOf(g, context, &layer);
    if (!colour)
        return;
    if (const BlockDef* block = blockToExpand(g, context))
        expandBlock(*block, context.transform, *colour, layer, context);
}

// The block that group 2 names, unless it is unknown or expanding it would go too far.
const BlockDef* SceneBuilder::blockToExpand(const Groups& g, const Context& context) {
    const Tag* name = g.find(2);
    if (!name)
        return nullptr;
    auto it = m_blocks.find(upperKey(name->value));
    if (it == m_blocks.end())
        return nullptr;
    if (context.depth >= ModelSpaceScene::kMaxBlockDepth || m_expansions >= kMaxExpansions ||
        std::find(m_expanding.begin(), m_expanding.end(), &it->second) != m_expanding.end()) {
        m_scene.m_truncated = true;
        return nullptr;
    }
    return &it->second;
}

void SceneBuilder::expandBlock(const BlockDef& block, const Transform& transform, SceneColour colour,
                               const Layer* layer, const Context& context) {
    Context inner;
    inner.transform = transform;
    inner.byBlock = colour;
    inner.layerZero = layer;
    inner.depth = context.depth + 1;
    ++m_expansions;
    m_expanding.push_back(&block);
    drawEntities(block.entities, inner);
    m_expanding.pop_back();
}

// Adds m_points through the transform; arcs that the transform would turn into ellipses are
// drawn as short straight segments.
void SceneBuilder::addPolyline(SceneColour colour, bool closed, const Transform& transform) {
    if (!transform.isIdentity() && !transform.keepsCircles())
        flattenArcs(closed);
    const bool mirrored = transform.isMirrored();
    for (SceneVertex& v : m_points) {
        transform.apply(v.x, v.y);
        if (mirrored)
            v.bulge = -v.bulge;
        if (!std::isfinite(v.x) || !std::isfinite(v.y) || !inRange(v.x, v.y)) {
            ++m_scene.m_skipped;
            return;
        }
    }
    if (m_scene.m_vertices.size() + m_points.size() > ModelSpaceScene::kMaxVertices) {
        m_scene.m_truncated = true;
        return;
    }
    ScenePolyline polyline;
    polyline.colour = colour;
    polyline.closed = closed && m_points.size() > 1;
    polyline.first = std::uint32_t(m_scene.m_vertices.size());
    polyline.count = std::uint32_t(m_points.size());
    const size_t n = m_points.size();
    for (size_t i = 0; i < n; ++i) {
        SceneVertex& v = m_points[i];
        m_scene.m_extents.add(v.x, v.y);
        const bool hasNext = i + 1 < n || polyline.closed;
        BulgeArc arc;
        if (!hasNext || !bulgeArc(v, m_points[(i + 1) % n], arc)) {
            v.bulge = 0;
            continue;
        }
        // The arc's points at 0, 90, 180 and 270 degrees that it passes.
        for (int quadrant = -8; quadrant <= 8; ++quadrant) {
            const double a = quadrant * kPi / 2;
            const double along = arc.sweep > 0 ? a - arc.start : arc.start - a;
            if (along > 0 && along < std::abs(arc.sweep))
                m_scene.m_extents.add(arc.cx + arc.radius * std::cos(a), arc.cy + arc.radius * std::sin(a));
        }
    }
    m_scene.m_vertices.insert(m_scene.m_vertices.end(), m_points.begin(), m_points.end());
    m_scene.m_polylines.push_back(polyline);
}

void SceneBuilder::flattenArcs(bool closed) {
    constexpr int kSegmentsPerTurn = 64;
    std::vector<SceneVertex> flat;
    const size_t n = m_points.size();
    for (size_t i = 0; i < n; ++i) {
        const SceneVertex v = m_points[i];
        flat.push_back({v.x, v.y, 0});
        BulgeArc arc;
        if ((i + 1 < n || closed) && bulgeArc(v, m_points[(i + 1) % n], arc)) {
            const int segments = std::max(2, int(std::abs(arc.sweep) / (2 * kPi) * kSegmentsPerTurn));
            for (int k = 1; k < segments; ++k) {
                const double a = arc.start + arc.sweep * k / segments;
                flat.push_back({arc.cx + arc.radius * std::cos(a), arc.cy + arc.radius * std::sin(a), 0});
            }
        }
    }
    m_points = std::move(flat);
}

void SceneBuilder::addText(SceneText text, const Transform& transform) {
    if (text.text.empty())
        return;
    if (!(text.height > 0) || text.height > ModelSpaceScene::kMaxCoordinate || !(text.widthFactor > 0) ||
        text.widthFactor > 100 || !inRange(text.x, text.y)) {
        ++m_scene.m_skipped;
        return;
    }
    // The text's direction and up vector through the transform give its new angle and height.
    const double upX = -std::sin(text.rotation), upY = std::cos(text.rotation);
    double dirX = std::cos(text.rotation), dirY = std::sin(text.rotation);
    double ux = upX, uy = upY;
    Transform linear = transform;
    linear.tx = linear.ty = 0;
    linear.apply(dirX, dirY);
    linear.apply(ux, uy);
    transform.apply(text.x, text.y);
    text.height *= std::hypot(ux, uy);
    text.rotation = std::atan2(dirY, dirX);
    if (!std::isfinite(text.x) || !std::isfinite(text.y) || !inRange(text.x, text.y) || !(text.height > 0) ||
        !std::isfinite(text.height)) {
        ++m_scene.m_skipped;
        return;
    }
    // Extents: the box the text covers, by a guess of its width.
    size_t characters = 0;
    for (unsigned char ch : text.text)
        characters += (ch & 0xC0) != 0x80;
    const double width = text.height * kTextWidthPerChar * text.widthFactor * double(characters);
    const double left = text.hAlign == TextHAlign::Left     ? 0
                        : text.hAlign == TextHAlign::Center ? -width / 2
                                                            : -width;
    const double bottom = text.vAlign == TextVAlign::Top      ? -text.height
                          : text.vAlign == TextVAlign::Middle ? -text.height / 2
                                                              : 0;
    const double c = std::cos(text.rotation), s = std::sin(text.rotation);
    for (double along : {left, left + width})
        for (double up : {bottom, bottom + text.height})
            m_scene.m_extents.add(text.x + along * c - up * s, text.y + along * s + up * c);
    m_scene.m_texts.push_back(std::move(text));
}

} // namespace cadhost
