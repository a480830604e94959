// Tests of the model space scene: which entities a drawing shows and in which colour, the
// geometry of polylines, arcs, texts and block references, the extents, and broken values.
#include "ModelSpaceScene.h"
#include "DxfDrawing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

using namespace cadhost;

namespace {

using Lines = std::vector<std::string>;

// Groups as "code value" apart by '|', as the code and value lines of a file.
Lines g(const std::string& groups) {
    Lines out;
    for (size_t start = 0; start <= groups.size();) {
        const size_t end = std::min(groups.find('|', start), groups.size());
        const size_t blank = groups.find(' ', start);
        out.push_back(groups.substr(start, blank - start));
        out.push_back(groups.substr(blank + 1, end - blank - 1));
        start = end + 1;
    }
    return out;
}

Lines operator+(Lines a, const Lines& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// A drawing of the given version with the layers WALLS (red), HIDDEN (off), FROZEN (frozen), the
// blocks and the entities given as code/value lines.
std::string drawingText(const Lines& entities, const Lines& blocks = {},
                        const std::string& version = "AC1015") {
    const Lines all = g("0 SECTION|2 HEADER|9 $ACADVER|1 " + version +
                        "|0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|"
                        "2 LAYER|0 LAYER|2 Walls|70 0|62 1|0 LAYER|2 HIDDEN|70 0|62 -3|0 LAYER|2 FROZEN|70 1|"
                        "62 5|0 ENDTAB|0 ENDSEC|0 SECTION|2 BLOCKS") +
                      blocks + g("0 ENDSEC|0 SECTION|2 ENTITIES") + entities + g("0 ENDSEC|0 EOF");
    std::string text;
    for (const std::string& l : all)
        text += l + "\n";
    return text;
}

Lines line(const Lines& extra, double x1 = 0, double y1 = 0, double x2 = 10, double y2 = 0) {
    Lines l = {"0", "LINE"};
    l.insert(l.end(), extra.begin(), extra.end());
    l.insert(l.end(), {"10", std::to_string(x1), "20", std::to_string(y1), "11", std::to_string(x2), "21",
                       std::to_string(y2)});
    return l;
}

class SceneTest : public ::testing::Test {
protected:
    const ModelSpaceScene& build(const Lines& entities, const Lines& blocks = {},
                                 const std::string& version = "AC1015") {
        std::string message;
        EXPECT_TRUE(m_drawing.parse(drawingText(entities, blocks, version), message)) << message;
        m_scene = ModelSpaceScene::build(m_drawing);
        return m_scene;
    }
    std::vector<SceneVertex> vertices(size_t polyline) const {
        const ScenePolyline& p = m_scene.polylines().at(polyline);
        return {m_scene.vertices().begin() + p.first, m_scene.vertices().begin() + p.first + p.count};
    }

    dxf::Drawing m_drawing;
    ModelSpaceScene m_scene;
};

// A vertex at (x, y); a failure names the point that was expected.
void expectAt(const SceneVertex& v, double x, double y) {
    EXPECT_NEAR(v.x, x, 1e-9) << "x of the vertex expected at " << x << "," << y;
    EXPECT_NEAR(v.y, y, 1e-9) << "y of the vertex expected at " << x << "," << y;
}

// Colours 1 and 3 as red and green: see the scene's colour tests.
TEST(AciColour, BlueWhiteAndGreyAreTheStandardOnes) {
    EXPECT_EQ(aciColour(5), 0x0000FFu);
    EXPECT_EQ(aciColour(7), kForeground);
    EXPECT_EQ(aciColour(8), 0x808080u);
}

TEST(AciColour, TheLastSixAreGreysGrowingLighter) {
    for (int grey = 250; grey < 255; ++grey) {
        const SceneColour c = aciColour(grey), next = aciColour(grey + 1);
        EXPECT_EQ(c & 0xFF, c >> 16) << grey;
        EXPECT_EQ(c & 0xFF, (c >> 8) & 0xFF) << grey;
        EXPECT_LT(c & 0xFF, next & 0xFF) << grey;
    }
}

TEST(AciColour, TheHueRingStartsAtRedPassesBlueAndHasPaleAndDarkShades) {
    EXPECT_EQ(aciColour(10), 0xFF0000u);
    EXPECT_EQ(aciColour(170), 0x0000FFu);
    EXPECT_EQ(aciColour(11) >> 16, 0xFFu);
    EXPECT_GT(aciColour(11) & 0xFF, 0u);
    EXPECT_LT(aciColour(18) >> 16, 0x80u);
}

TEST(AciColour, AnIndexOutsideTheTableIsTheForeground) {
    for (int bad : {0, -1, 256, 1000})
        EXPECT_EQ(aciColour(bad), kForeground) << bad;
}

TEST_F(SceneTest, ColoursComeFromTheEntityOrItsLayerAndLayersOffOrFrozenHideTheirEntities) {
    const ModelSpaceScene& scene =
        build(line(g("8 WALLS")) + line(g("8 walls|62 3")) + line(g("8 Walls|62 256")) + line(g("8 HIDDEN")) +
              line(g("8 FROZEN|62 2")) + line(g("8 NOSUCH")) + line(g("8 WALLS|62 0")) +
              line(g("8 WALLS|420 1193046")) + line({}));
    std::vector<SceneColour> colours;
    for (const ScenePolyline& p : scene.polylines())
        colours.push_back(p.colour);
    EXPECT_EQ(colours, (std::vector<SceneColour>{0xFF0000, 0x00FF00, 0xFF0000, kForeground, kForeground,
                                                 0x123456, kForeground}));
    EXPECT_EQ(scene.skipped(), 0u);
}

TEST_F(SceneTest, PaperSpaceAndInvisibleEntitiesAreLeftOut) {
    const ModelSpaceScene& scene =
        build(line(g("67 1"), 100, 100, 200, 200) + line(g("67 0")) + line(g("60 1"), 100, 100, 200, 200));
    ASSERT_EQ(scene.polylines().size(), 1u);
    EXPECT_DOUBLE_EQ(scene.extents().maxX, 10);
    EXPECT_DOUBLE_EQ(scene.extents().maxY, 0);
}

TEST_F(SceneTest, LightweightPolylineKeepsItsClosedFlagAndBulgesWithinItsExtents) {
    // A 10 x 4 rectangle whose top edge bulges up into a half circle of radius 5.
    const ModelSpaceScene& scene =
        build(g("0 LWPOLYLINE|8 WALLS|90 4|70 1|10 0|20 0|10 10|20 0|10 10|20 4|42 1|10 0|20 4|"
                "0 LWPOLYLINE|70 0|10 20|20 0|10 30|20 0"));
    ASSERT_EQ(scene.polylines().size(), 2u);
    EXPECT_TRUE(scene.polylines()[0].closed);
    EXPECT_FALSE(scene.polylines()[1].closed);
    const std::vector<SceneVertex> v = vertices(0);
    ASSERT_EQ(v.size(), 4u);
    EXPECT_DOUBLE_EQ(v[2].bulge, 1);
    BulgeArc arc;
    ASSERT_TRUE(bulgeArc(v[2], v[3], arc));
    EXPECT_NEAR(arc.cx, 5, 1e-9);
    EXPECT_NEAR(arc.cy, 4, 1e-9);
    EXPECT_NEAR(arc.radius, 5, 1e-9);
    EXPECT_NEAR(arc.sweep, M_PI, 1e-9);
    EXPECT_NEAR(scene.extents().maxY, 9, 1e-9);
    EXPECT_DOUBLE_EQ(scene.extents().maxX, 30);
}

TEST_F(SceneTest, ArcsRunCounterClockwiseFromStartToEndAngle) {
    // From 90 degrees round through 180 and 270 to 0: three quarters of a circle.
    const ModelSpaceScene& scene = build(g("0 ARC|10 10|20 0|40 5|50 90|51 0|0 CIRCLE|10 100|20 100|40 1"));
    ASSERT_EQ(scene.polylines().size(), 2u);
    const std::vector<SceneVertex> arc = vertices(0);
    ASSERT_GE(arc.size(), 2u);
    expectAt(arc.front(), 10, 5);
    expectAt(arc.back(), 15, 0);
    double sweep = 0;
    for (size_t i = 0; i + 1 < arc.size(); ++i) {
        BulgeArc piece;
        ASSERT_TRUE(bulgeArc(arc[i], arc[i + 1], piece));
        EXPECT_NEAR(piece.radius, 5, 1e-9);
        sweep += piece.sweep;
    }
    EXPECT_NEAR(sweep, 1.5 * M_PI, 1e-9);
    EXPECT_TRUE(scene.polylines()[1].closed);
    const SceneExtents& e = scene.extents();
    EXPECT_NEAR(e.minX, 5, 1e-9);
    EXPECT_NEAR(e.minY, -5, 1e-9);
    EXPECT_NEAR(e.maxX, 101, 1e-9);
    EXPECT_NEAR(e.maxY, 101, 1e-9);
}

// An extrusion pointing down, as mirrored drawings have, mirrors x; the arc still ends where it
// ends, about the same centre, turning the other way.
TEST_F(SceneTest, ArcsSeenFromBelowAreMirrored) {
    build(g("0 ARC|10 10|20 0|40 5|50 0|51 90|210 0|220 0|230 -1"));
    const std::vector<SceneVertex> arc = vertices(0);
    ASSERT_EQ(arc.size(), 2u);
    EXPECT_NEAR(arc[0].x, -15, 1e-9);
    expectAt(arc[1], -10, 5);
    BulgeArc piece;
    ASSERT_TRUE(bulgeArc(arc[0], arc[1], piece));
    EXPECT_NEAR(piece.cx, -10, 1e-9);
    EXPECT_NEAR(piece.cy, 0, 1e-9);
    EXPECT_NEAR(piece.sweep, -M_PI / 2, 1e-9);
}

TEST_F(SceneTest, TextsKeepPointHeightRotationAlignmentAndDecodedCharacters) {
    const ModelSpaceScene& scene =
        build(g("0 TEXT|8 WALLS|10 1|20 2|40 2.5|50 90|1 %%d W\xE4nde|"
                "0 TEXT|10 0|20 0|11 50|21 60|72 1|73 2|1 centred|0 MTEXT|10 0|20 100|40 2|71 1") +
              Lines{"1", "{\\fArial|b1;Ab}\\PCd\\P\\S1^2;"});
    ASSERT_EQ(scene.texts().size(), 5u);
    const SceneText& first = scene.texts()[0];
    EXPECT_EQ(first.text, "\u00B0 W\u00E4nde");
    EXPECT_EQ(first.colour, 0xFF0000u);
    EXPECT_DOUBLE_EQ(first.x, 1);
    EXPECT_DOUBLE_EQ(first.height, 2.5);
    EXPECT_NEAR(first.rotation, M_PI / 2, 1e-12);
    const SceneText& centred = scene.texts()[1];
    EXPECT_DOUBLE_EQ(centred.x, 50);
    EXPECT_EQ(centred.hAlign, TextHAlign::Center);
    EXPECT_EQ(centred.vAlign, TextVAlign::Middle);
    EXPECT_EQ(scene.texts()[2].text, "Ab");
    EXPECT_EQ(scene.texts()[3].text, "Cd");
    EXPECT_EQ(scene.texts()[4].text, "1/2");
    EXPECT_LT(scene.texts()[3].y, scene.texts()[2].y); // lines go down
    // The MTEXT's first line hangs from its point; the rotated text's top is to the left of its own.
    EXPECT_DOUBLE_EQ(scene.extents().maxY, 100);
    EXPECT_DOUBLE_EQ(scene.extents().minX, -1.5);
}

TEST_F(SceneTest, BlockReferencesAreMovedScaledRotatedAndTakeTheirColourIntoByBlock) {
    const Lines blocks = g("0 BLOCK|2 Door|70 0|10 1|20 0|0 LINE|8 0|62 0|10 1|20 0|11 2|21 0|"
                           "0 CIRCLE|8 0|10 1|20 0|40 1|0 ENDBLK");
    const ModelSpaceScene& scene =
        build(g("0 INSERT|8 WALLS|2 DOOR|10 10|20 10|41 2|42 2|50 90|62 3|"
                "0 INSERT|2 door|10 0|20 0|41 1|42 3|0 INSERT|8 HIDDEN|2 door|0 INSERT|2 missing"),
              blocks);
    ASSERT_EQ(scene.polylines().size(), 4u);
    const std::vector<SceneVertex> door = vertices(0);
    expectAt(door[0], 10, 10);
    expectAt(door[1], 10, 12);
    EXPECT_EQ(scene.polylines()[0].colour, 0x00FF00u); // BYBLOCK: the reference's own colour
    EXPECT_EQ(scene.polylines()[1].colour, 0xFF0000u); // layer 0 in a block: the reference's layer
    for (const SceneVertex& v : vertices(1))
        EXPECT_NEAR(std::hypot(v.x - 10, v.y - 10), 2, 1e-9);
    // Stretched unevenly the circle becomes an ellipse of straight pieces.
    const std::vector<SceneVertex> ellipse = vertices(3);
    ASSERT_GT(ellipse.size(), 16u);
    for (const SceneVertex& v : ellipse) {
        EXPECT_EQ(v.bulge, 0);
        EXPECT_NEAR(v.x * v.x + v.y * v.y / 9, 1, 1e-9);
    }
    EXPECT_FALSE(scene.isTruncated());
}

// A full ellipse with axes 10 and 5, and the half from parameter 0 to pi.
TEST_F(SceneTest, EllipsesFollowTheirAxesFromStartToEndParameter) {
    const ModelSpaceScene& scene =
        build(g("0 ELLIPSE|10 0|20 0|11 10|21 0|40 0.5|41 0|42 6.283185307179586|"
                "0 ELLIPSE|10 0|20 0|11 10|21 0|40 0.5|41 0|42 3.141592653589793"));
    ASSERT_EQ(scene.polylines().size(), 2u);
    EXPECT_TRUE(scene.polylines()[0].closed);
    for (const SceneVertex& v : vertices(0))
        EXPECT_NEAR(v.x * v.x / 100 + v.y * v.y / 25, 1, 1e-9);
    EXPECT_FALSE(scene.polylines()[1].closed);
    const std::vector<SceneVertex> half = vertices(1);
    EXPECT_NEAR(half.back().x, -10, 1e-9);
    for (const SceneVertex& v : half)
        EXPECT_GE(v.y, -1e-9);
    EXPECT_DOUBLE_EQ(scene.extents().minY, -5);
}

// The third and fourth corners of a SOLID stand crosswise: the outline goes 1, 2, 4, 3.
TEST_F(SceneTest, SolidsAreOutlinedWithTheirLastTwoCornersSwapped) {
    const ModelSpaceScene& scene = build(g("0 SOLID|10 0|20 0|11 4|21 0|12 0|22 3|13 4|23 3"));
    ASSERT_EQ(scene.polylines().size(), 1u);
    const std::vector<SceneVertex> solid = vertices(0);
    ASSERT_EQ(solid.size(), 4u);
    EXPECT_DOUBLE_EQ(solid[2].x, 4);
    EXPECT_DOUBLE_EQ(solid[2].y, 3);
    EXPECT_DOUBLE_EQ(solid[3].x, 0);
}

TEST_F(SceneTest, DimensionsDrawTheirPictureBlockInTheirOwnColour) {
    const Lines blocks = g("0 BLOCK|2 *D1|70 1|10 0|20 0|0 LINE|8 0|62 0|10 50|20 50|11 60|21 50|0 ENDBLK");
    const ModelSpaceScene& scene = build(g("0 DIMENSION|2 *D1|62 3|10 50|20 50"), blocks);
    ASSERT_EQ(scene.polylines().size(), 1u);
    EXPECT_EQ(scene.polylines()[0].colour, 0x00FF00u);
    EXPECT_DOUBLE_EQ(scene.extents().maxX, 60);
}

TEST_F(SceneTest, BlocksThatReferThemselvesStop) {
    const Lines blocks =
        g("0 BLOCK|2 A|10 0|20 0|0 LINE|10 0|20 0|11 1|21 0|0 INSERT|2 B|10 1|20 0|0 INSERT|2 A|"
          "0 ENDBLK|0 BLOCK|2 B|10 0|20 0|0 INSERT|2 A|0 INSERT|2 B|0 INSERT|2 A|0 ENDBLK");
    const ModelSpaceScene& scene = build(g("0 INSERT|2 A|10 0|20 0"), blocks);
    EXPECT_TRUE(scene.isTruncated());
    EXPECT_EQ(scene.polylines().size(), 1u);
}

// Broken values leave their entity out and nothing else.
TEST_F(SceneTest, BrokenValuesLeaveTheirEntityOut) {
    const char* broken[] = {"0 LINE|10 abc|20 0|11 1|21 1",
                            "0 LINE|10 nan|20 0|11 1|21 1",
                            "0 LINE|10 1e300|20 0|11 1|21 1",
                            "0 LINE|10 1e999|20 0",
                            "0 CIRCLE|10 0|20 0|40 -1",
                            "0 CIRCLE|10 0|20 0",
                            "0 ARC|10 0|20 0|40 1|50 inf",
                            "0 LWPOLYLINE|20 1|10 0",
                            "0 LWPOLYLINE|70 1",
                            "0 TEXT|10 0|20 0|40 0|1 x",
                            "0 TEXT|10 0|20 0|40 -inf|1 x",
                            "0 INSERT|2 B|10 0|20 0|41 0",
                            "0 POLYLINE|70 0|0 VERTEX|10 x|20 0|0 SEQEND"};
    const Lines blocks = g("0 BLOCK|2 B|0 LINE|11 1|21 1|0 ENDBLK");
    for (const char* shown : broken) {
        const ModelSpaceScene& scene = build(g(shown) + line({}, 0, 0, 3, 4), blocks);
        EXPECT_EQ(scene.polylines().size() + scene.texts().size(), 1u) << shown;
        EXPECT_EQ(scene.skipped(), 1u) << shown;
        EXPECT_DOUBLE_EQ(scene.extents().maxY, 4) << shown;
    }
}

TEST_F(SceneTest, OldStylePolylinesKeepTheirVerticesAndClosedFlag) {
    const ModelSpaceScene& scene =
        build(g("0 POLYLINE|66 1|70 1|10 0|20 0|0 VERTEX|10 0|20 0|42 0|0 VERTEX|10 4|20 0|"
                "0 VERTEX|10 4|20 3|0 SEQEND|0 LINE|10 0|20 0|11 1|21 1"),
              {}, "AC1009");
    ASSERT_EQ(scene.polylines().size(), 2u);
    EXPECT_TRUE(scene.polylines()[0].closed);
    EXPECT_EQ(scene.polylines()[0].count, 3u);
    EXPECT_DOUBLE_EQ(scene.extents().maxX, 4);
}

TEST_F(SceneTest, EmptyModelSpaceHasEmptyExtents) {
    const ModelSpaceScene& empty = build(g("0 LINE|67 1"));
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_TRUE(empty.extents().empty);
}

TEST(PlainMText, FormattingCodesGoAndLineBreaksStay) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"plain", "plain"},
        {"one\\Ptwo", "one\ntwo"},
        {"{\\H2.5x;\\C1;big} red", "big red"},
        {"\\A1;\\LUnder\\l \\Oover\\o", "Under over"},
        {"a\\~b \\\\ \\{x\\}", "a b \\ {x}"},
        {"\\S3#4;", "3/4"},
        {"\\fArial", ""},
        {"end\\", "end\\"},
        {"line\nnext\tend", "line\nnext end"},
        {"a^Jb", "a^Jb"}}; // a caret the file escaped ("^ J") is text
    for (const auto& [raw, plain] : cases)
        EXPECT_EQ(plainMText(raw), plain) << raw;
}

} // namespace
