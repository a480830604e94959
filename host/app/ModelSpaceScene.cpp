// What a drawing's model space shows: its curves and texts in world coordinates with their
// colours, built once from the drawing's DXF tags for a view to paint.
#include "ModelSpaceScene.h"

#include "acdocman.h"
#include "DrawingDatabase.h"
#include "DxfDrawing.h"
#include "SceneBuilder.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace cadhost {

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
           arc.radius <= ModelSpaceScene::kMaxCoordinate && modelspace::inRange(arc.cx, arc.cy);
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
        if (ch == '\t') {
            out += ' ';
            continue;
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
