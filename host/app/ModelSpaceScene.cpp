// What a drawing's model space shows: its curves and texts in world coordinates with their
// colours, built once from the drawing's DXF tags for a view to paint.
#include "ModelSpaceScene.h"

#include "acdocman.h"
#include "DrawingDatabase.h"
#include "DxfDrawing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>
#include <span>
#include <unordered_map>

namespace cadhost {

namespace {

using dxf::Tag;

constexpr double kPi = std::numbers::pi;
constexpr int kByBlock = 0;
constexpr int kByLayer = 256;
constexpr int kAciForeground = 7;
// Nested block references expanded in all: a block that holds many references of one that holds
// many more grows without a bound otherwise.
constexpr std::size_t kMaxExpansions = 200'000;
// A DXF text's height is that of its capital letters; its width is guessed from its length.
constexpr double kTextWidthPerChar = 0.7;
constexpr double kMTextLineSpacing = 5.0 / 3.0;

using dxf::trimmed;

// Coordinates and sizes: finite numbers only.
bool toDouble(std::string_view v, double& out) {
    double d = 0;
    if (!dxf::parseReal(v, d) || !std::isfinite(d))
        return false;
    out = d;
    return true;
}

bool toInt(std::string_view v, long& out) {
    long long n = 0;
    if (!dxf::parseInteger(v, n) || n < std::numeric_limits<long>::min() || n > std::numeric_limits<long>::max())
        return false;
    out = static_cast<long>(n);
    return true;
}

std::string upperKey(std::string_view v) {
    std::string key(trimmed(v));
    for (char& c : key)
        if (c >= 'a' && c <= 'z')
            c = char(c - 'a' + 'A');
    return key;
}

bool inRange(double x, double y) {
    return std::abs(x) <= ModelSpaceScene::kMaxCoordinate && std::abs(y) <= ModelSpaceScene::kMaxCoordinate;
}

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

} // namespace

SceneColour aciColour(int index) {
    static constexpr std::array<SceneColour, 10> kFirst = {kForeground, 0xFF0000, 0xFFFF00, 0x00FF00,
                                                           0x00FFFF,    0x0000FF, 0xFF00FF, kForeground,
                                                           0x808080,    0xC0C0C0};
    static constexpr std::array<SceneColour, 6> kGreys = {0x333333, 0x505050, 0x696969,
                                                          0x828282, 0xBEBEBE, 0xFFFFFF};
    if (index >= 1 && index <= 9)
        return kFirst[size_t(index)];
    if (index >= 250 && index <= 255)
        return kGreys[size_t(index - 250)];
    if (index < 10 || index > 255)
        return kForeground;
    // 10..249: 24 hues 15 degrees apart, each in five shades, full and pale.
    const double hue = (index / 10 - 1) * 15.0;
    const int shade = index % 10;
    static constexpr std::array<double, 5> kValues = {1.0, 0.65, 0.5, 0.3, 0.15};
    const double value = kValues[size_t(shade / 2)];
    const double saturation = shade % 2 ? 0.5 : 1.0;
    const double h = hue / 60.0;
    const double chroma = value * saturation;
    const double x = chroma * (1 - std::abs(std::fmod(h, 2.0) - 1));
    double r = 0, g = 0, b = 0;
    switch (int(h)) {
    case 0:
        r = chroma, g = x;
        break;
    case 1:
        r = x, g = chroma;
        break;
    case 2:
        g = chroma, b = x;
        break;
    case 3:
        g = x, b = chroma;
        break;
    case 4:
        r = x, b = chroma;
        break;
    default:
        r = chroma, b = x;
        break;
    }
    const double m = value - chroma;
    auto byte = [m](double v) { return SceneColour(std::lround((v + m) * 255)); };
    return byte(r) << 16 | byte(g) << 8 | byte(b);
}

bool bulgeArc(const SceneVertex& from, const SceneVertex& to, BulgeArc& arc) {
    const double b = from.bulge;
    const double ux = to.x - from.x, uy = to.y - from.y;
    const double chord = std::hypot(ux, uy);
    if (b == 0 || !std::isfinite(b) || chord == 0)
        return false;
    const double k = (1 - b * b) / (4 * b);
    arc.cx = (from.x + to.x) / 2 - uy * k;
    arc.cy = (from.y + to.y) / 2 + ux * k;
    arc.radius = chord * (1 + b * b) / (4 * std::abs(b));
    arc.start = std::atan2(from.y - arc.cy, from.x - arc.cx);
    arc.sweep = 4 * std::atan(b);
    return std::isfinite(arc.cx) && std::isfinite(arc.cy) && std::isfinite(arc.radius) &&
           arc.radius <= ModelSpaceScene::kMaxCoordinate && inRange(arc.cx, arc.cy);
}

void SceneExtents::add(double x, double y) {
    if (empty) {
        minX = maxX = x;
        minY = maxY = y;
        empty = false;
        return;
    }
    minX = std::min(minX, x);
    maxX = std::max(maxX, x);
    minY = std::min(minY, y);
    maxY = std::max(maxY, y);
}

std::string plainMText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const char ch = text[i];
        if (ch == '{' || ch == '}')
            continue;
        if (ch == '^' && i + 1 < text.size()) { // caret escapes: ^J line break, ^I tab
            const char next = text[i + 1];
            if (next == 'J' || next == 'I') {
                out += next == 'J' ? '\n' : ' ';
                ++i;
                continue;
            }
        }
        if (ch != '\\' || i + 1 >= text.size()) {
            out += ch;
            continue;
        }
        const char code = text[++i];
        switch (code) {
        case 'P':
        case 'X':
            out += '\n';
            break;
        case '~':
            out += ' ';
            break;
        case '\\':
        case '{':
        case '}':
            out += code;
            break;
        case 'L':
        case 'l':
        case 'O':
        case 'o':
        case 'K':
        case 'k':
            break;
        case 'S': { // stacked text "\S1^2;": shown as 1/2
            const size_t end = text.find(';', i + 1);
            std::string_view stacked = text.substr(i + 1, end == std::string_view::npos ? end : end - i - 1);
            for (char s : stacked)
                out += (s == '^' || s == '#') ? '/' : s;
            i = end == std::string_view::npos ? text.size() : end;
            break;
        }
        case 'A':
        case 'C':
        case 'c':
        case 'F':
        case 'f':
        case 'H':
        case 'Q':
        case 'T':
        case 'W':
        case 'p': { // a format with a value up to ';'
            const size_t end = text.find(';', i + 1);
            i = end == std::string_view::npos ? text.size() : end;
            break;
        }
        default:
            out += code;
            break;
        }
    }
    return out;
}

// Walks the ENTITIES section (and the blocks its references name) and fills a scene.
class SceneBuilder {
public:
    SceneBuilder(const dxf::Drawing& drawing, ModelSpaceScene& scene) : m_drawing(drawing), m_scene(scene) {}

    void run() {
        readLayers();
        readBlocks();
        drawEntities(m_drawing.section("ENTITIES"), Context{});
    }

private:
    void readLayers() {
        std::span<const Tag> tables = m_drawing.section("TABLES");
        for (size_t i = 0; i < tables.size(); ++i) {
            if (tables[i].code != 0 || trimmed(tables[i].value) != "LAYER")
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

    void readBlocks() {
        std::span<const Tag> blocks = m_drawing.section("BLOCKS");
        size_t i = 0;
        while (i < blocks.size()) {
            if (blocks[i].code != 0 || trimmed(blocks[i].value) != "BLOCK") {
                ++i;
                continue;
            }
            size_t headerEnd = i + 1;
            while (headerEnd < blocks.size() && blocks[headerEnd].code != 0)
                ++headerEnd;
            size_t end = headerEnd;
            while (end < blocks.size() && !(blocks[end].code == 0 && trimmed(blocks[end].value) == "ENDBLK"))
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

    void drawEntities(std::span<const Tag> tags, const Context& context) {
        size_t i = 0;
        while (i < tags.size() && tags[i].code != 0)
            ++i;
        while (i < tags.size()) {
            size_t end = i + 1;
            while (end < tags.size() && tags[end].code != 0)
                ++end;
            const std::string_view type = trimmed(tags[i].value);
            std::span<const Tag> entity = tags.subspan(i, end - i);
            if (type == "POLYLINE") {
                // Its vertices follow as entities of their own, up to SEQEND.
                std::vector<std::span<const Tag>> vertices;
                while (end < tags.size() && trimmed(tags[end].value) == "VERTEX") {
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
    std::optional<SceneColour> colourOf(const Groups& g, const Context& context, const Layer*& layerOut) {
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
        layerOut = layer;
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
    static Transform objectSystem(const Groups& g, const Context& context) {
        double z = 1;
        if (g.real(230, z) && z < 0) {
            Transform mirror;
            mirror.a = -1;
            return context.transform * mirror;
        }
        return context.transform;
    }

    void drawEntity(std::string_view type, const Groups& g, const Context& context) {
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

    void drawLine(const Groups& g, const Context& context) {
        const Layer* layer = nullptr;
        std::optional<SceneColour> colour = colourOf(g, context, layer);
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

    void drawLwPolyline(const Groups& g, const Context& context) {
        const Layer* layer = nullptr;
        std::optional<SceneColour> colour = colourOf(g, context, layer);
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

    void drawPolyline(const Groups& g, const std::vector<std::span<const Tag>>& vertices,
                      const Context& context) {
        const Layer* layer = nullptr;
        std::optional<SceneColour> colour = colourOf(g, context, layer);
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

    void drawArc(const Groups& g, const Context& context, bool circle) {
        const Layer* layer = nullptr;
        std::optional<SceneColour> colour = colourOf(g, context, layer);
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

    void drawText(const Groups& g, const Context& context, int vAlignCode) {
        const Layer* layer = nullptr;
        std::optional<SceneColour> colour = colourOf(g, context, layer);
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
            text.hAlign = h == 2               ? TextHAlign::Right
                          : (h == 1 || h == 4) ? TextHAlign::Center
                                               : TextHAlign::Left;
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

    void drawMText(const Groups& g, const Context& context) {
        const Layer* layer = nullptr;
        std::optional<SceneColour> colour = colourOf(g, context, layer);
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
            text.hAlign = column == 0   ? TextHAlign::Left
                          : column == 1 ? TextHAlign::Center
                                        : TextHAlign::Right;
            text.text = lines[n];
            addText(std::move(text), context.transform);
        }
    }

    void drawInsert(const Groups& g, const Context& context) {
        const Layer* layer = nullptr;
        std::optional<SceneColour> colour = colourOf(g, context, layer);
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
    void drawDimension(const Groups& g, const Context& context) {
        const Layer* layer = nullptr;
        std::optional<SceneColour> colour = colourOf(g, context, layer);
        if (!colour)
            return;
        if (const BlockDef* block = blockToExpand(g, context))
            expandBlock(*block, context.transform, *colour, layer, context);
    }

    // The block that group 2 names, unless it is unknown or expanding it would go too far.
    const BlockDef* blockToExpand(const Groups& g, const Context& context) {
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

    void expandBlock(const BlockDef& block, const Transform& transform, SceneColour colour,
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

    void drawEllipse(const Groups& g, const Context& context) {
        const Layer* layer = nullptr;
        std::optional<SceneColour> colour = colourOf(g, context, layer);
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
    void drawSolid(const Groups& g, const Context& context) {
        const Layer* layer = nullptr;
        std::optional<SceneColour> colour = colourOf(g, context, layer);
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

    // Adds m_points through the transform; arcs that the transform would turn into ellipses are
    // drawn as short straight segments.
    void addPolyline(SceneColour colour, bool closed, const Transform& transform) {
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
                    m_scene.m_extents.add(arc.cx + arc.radius * std::cos(a),
                                          arc.cy + arc.radius * std::sin(a));
            }
        }
        m_scene.m_vertices.insert(m_scene.m_vertices.end(), m_points.begin(), m_points.end());
        m_scene.m_polylines.push_back(polyline);
    }

    void flattenArcs(bool closed) {
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

    void addText(SceneText text, const Transform& transform) {
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
        if (!std::isfinite(text.x) || !std::isfinite(text.y) || !inRange(text.x, text.y) ||
            !(text.height > 0) || !std::isfinite(text.height)) {
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

    const dxf::Drawing& m_drawing;
    ModelSpaceScene& m_scene;
    std::unordered_map<std::string, Layer> m_layers;
    std::unordered_map<std::string, BlockDef> m_blocks;
    Layer m_defaultLayer;
    std::vector<SceneVertex> m_points; // the polyline being added
    std::vector<const BlockDef*> m_expanding;
    std::size_t m_expansions = 0;
};

ModelSpaceScene ModelSpaceScene::build(const dxf::Drawing& drawing) {
    ModelSpaceScene scene;
    SceneBuilder(drawing, scene).run();
    return scene;
}

const dxf::Drawing* ModelSpaceScene::drawingOf(AcApDocument* document) {
    auto* db = document ? static_cast<DrawingDatabase*>(document->database()) : nullptr;
    return db ? &db->file() : nullptr;
}

} // namespace cadhost
