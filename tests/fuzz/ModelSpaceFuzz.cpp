// Fuzz target: any bytes as a DXF drawing, read and turned into the scene the main window's view
// paints. Every coordinate of the scene is finite and within the scene's bounds.
#include "DxfDrawing.h"
#include "ModelSpaceScene.h"

#include <cmath>
#include <cstdint>
#include <string>

namespace {

bool isPlaceable(double x, double y) {
    return std::isfinite(x) && std::isfinite(y) && std::abs(x) <= cadhost::ModelSpaceScene::kMaxCoordinate &&
           std::abs(y) <= cadhost::ModelSpaceScene::kMaxCoordinate;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    cadhost::dxf::Drawing drawing;
    std::string message;
    if (!drawing.parse(std::string(reinterpret_cast<const char*>(data), size), message))
        return 0;
    const cadhost::ModelSpaceScene scene = cadhost::ModelSpaceScene::build(drawing);
    for (const cadhost::SceneVertex& v : scene.vertices())
        if (!isPlaceable(v.x, v.y) || !std::isfinite(v.bulge))
            __builtin_trap();
    for (const cadhost::SceneText& t : scene.texts())
        if (!isPlaceable(t.x, t.y) || !(t.height > 0) || !std::isfinite(t.height) ||
            !std::isfinite(t.rotation))
            __builtin_trap();
    const cadhost::SceneExtents& e = scene.extents();
    if (scene.isEmpty() != e.empty ||
        (!e.empty && !(isPlaceable(e.minX, e.minY) && isPlaceable(e.maxX, e.maxY))))
        __builtin_trap();
    return 0;
}
