// What a frame shows, end to end through the loaded plug-in on 720 x 486:
// the intact front on a rebuild frame, Wireframe, the mattes, Blend, the three
// software qualities and Z Sort.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/pipeline_rig.h"

using namespace pipeline_rig;

namespace {

// Elements that neither move nor turn stay at Foreground Z on their tile.
void hold_still(Host& host) {
    for (int c : {13, 14, 15, 20, 21, 22}) set(host, c, 0);
}

bool result_is(Host& host, int id) { return host.buffer(kResult).bytes == host.buffer(id).bytes; }

}  // namespace

// The first frame shows the front intact; Wireframe the back while the elements
// step on; Blend 100 the front of a moving frame; black mattes the back.
TEST(PipelineFrame, FirstFrameIntactWireframeAndBlackMattesTheBackFullBlendTheFront) {
    Host& host = begin(720, 486);
    fill_noise(host, 1);
    Paneburst& fx = effect(host);
    ASSERT_NE(host.process(1), nullptr);
    EXPECT_TRUE(result_is(host, kFront));
    // 12 x 9 on 720 x 486: 60 x 54 tiles with an edge on the centre row 243,
    // so part tiles of 27 rows at the top and bottom.
    EXPECT_EQ((std::array<int, 5>{fx.info.tile_width, fx.info.tile_height, fx.info.grid_x0, fx.info.grid_y0,
                                  fx.info.columns * fx.info.rows}),
              (std::array<int, 5>{60, 54, 0, -27, 12 * 10}));
    set(host, 30, kWireframe);
    ASSERT_TRUE(run(host, 2, 2));
    EXPECT_TRUE(result_is(host, kBack));
    const float z = fx.polygons[0].z;
    set(host, 30, kMed);
    ASSERT_NE(host.process(4), nullptr);
    EXPECT_TRUE(fx.polygons[0].z > z && z > -192.0f && !result_is(host, kBack)) << z;
    set(host, 27, 100);
    ASSERT_NE(host.process(5), nullptr);
    EXPECT_TRUE(result_is(host, kFront));

    set(host, 27, 0);  // a black 2D matte: the back; inverted, the front of a rebuild
    fill_flat(host.buffer(kMatte2D), {0, 0, 0});
    set(host, 49, 1);
    ASSERT_TRUE(run(host, 2, 6));
    EXPECT_TRUE(result_is(host, kBack));
    set(host, 50, 1);
    host.call_callback(29, 0);
    ASSERT_NE(host.process(8), nullptr);
    EXPECT_TRUE(result_is(host, kFront));
    set(host, 49, 0);  // a black 3D matte leaves the canvas of moving frames
    fill_flat(host.buffer(kMatte3D), {0, 0, 0});
    set(host, 51, 1);
    ASSERT_TRUE(run(host, 3, 9));
    EXPECT_TRUE(result_is(host, kBack));
}

// An unmoved element shows exactly its own tile in Med and Low; a moved one
// shows the front where it now is in Low, but carries its own tile in Med.
TEST(PipelineFrame, MedAndLowAtRestExactLowShowsTheFrontWhereTheElementIs) {
    Host& host = begin(720, 486);
    fill_noise(host, 9);
    const FrameBuffer &out = host.buffer(kResult), &front = host.buffer(kFront), &back = host.buffer(kBack);
    for (int still : {0, 1})
        for (int quality : {kLow, kMed}) {
            if (still) hold_still(host);
            set(host, 30, quality);
            host.call_callback(29, 0);
            ASSERT_TRUE(run(host, 8));
            const long neither = count(out, [&](int x, int y) {
                return pixel(out, x, y) != pixel(front, x, y) && pixel(out, x, y) != pixel(back, x, y);
            });
            if (still) EXPECT_TRUE(result_is(host, kFront)) << quality;
            else EXPECT_TRUE(quality == kLow ? neither == 0 : neither > 10000) << quality << ": " << neither;
        }
}

// Tiles that recede without turning shrink about their centres: flat front
// over flat back shows the front inside, the back around, and in High Quality
// a one-pixel ramp on the outline that mixes the two; Med has hard edges.
TEST(PipelineFrame, HighQualityMixesOnlyTheEdgePixels) {
    Host& host = begin(720, 486);
    const Rgb A = {200, 40, 90}, B = {10, 220, 30};
    fill_flat(host.buffer(kFront), A);
    fill_flat(host.buffer(kBack), B);
    hold_still(host);
    set(host, 15, -20);
    set(host, 18, 0);
    // Distance from the outline of the nearest tile (centres x = 30 + 60 i,
    // y = 54 j), positive inside, after 5 steps.
    const double r = 192.0 / (192.0 + 20.0 * 5);
    auto inside_by = [&](int x, int y) {
        return std::min(30 * r - std::fabs(x - 30 - 60 * std::floor(x / 60.0)),
                        27 * r - std::fabs(y - 54 * std::floor((y + 27) / 54.0)));
    };
    for (int quality : {kHigh, kMed}) {
        set(host, 30, quality);
        host.call_callback(29, 0);
        ASSERT_TRUE(run(host, 6));
        const FrameBuffer& out = host.buffer(kResult);
        long mixed = 0;
        const long misplaced = count(out, [&](int x, int y) {
            const Rgb p = pixel(out, x, y);
            const double d = inside_by(x, y);
            if (p == A) return d < -1.0;
            if (p == B) return d > 1.0;
            ++mixed;
            for (std::size_t c = 0; c < 3; ++c)
                if (p[c] < std::min(A[c], B[c]) || p[c] > std::max(A[c], B[c])) return true;
            return std::fabs(d) > 1.5;
        });
        EXPECT_EQ(misplaced, 0) << quality;
        EXPECT_TRUE(quality == kHigh ? mixed > 120 * 100 : mixed == 0) << mixed;  // about 4 x 40 ramp pixels each
    }
}

// Two half-frame columns flying at different z speeds overlap at the seam.
// With Z Sort the nearer one lies on top; without, the later one in the grid.
TEST(PipelineFrame, ZSortPutsTheNearerElementOnTop) {
    Host& host = begin(720, 486);
    const Rgb A = {250, 0, 0}, C = {0, 0, 250};
    fill(host.buffer(kFront), [&](int x, int, int c) { return (x < 360 ? A : C)[c]; });
    fill_flat(host.buffer(kBack), {0, 250, 0});
    hold_still(host);
    const int controls[][2] = {{6, 2}, {7, 1}, {9, -1}, {15, 10}, {18, 100}};
    for (const auto& v : controls) set(host, v[0], v[1]);
    Paneburst& fx = effect(host);
    // A Seed whose left element (z speed factor 1 + var_z) comes nearer enough to overlap.
    int seed = 0;
    for (int s = 1; s <= 999 && seed == 0; s += 17) {
        set(host, 26, s);
        host.call_callback(29, 0);
        ASSERT_NE(host.process(1), nullptr);
        const float f0 = 1 + fx.polygons[0].var_z, f1 = 1 + fx.polygons[1].var_z;
        if (f0 - f1 > 0.5f && f0 + f1 > 0.3f) seed = s;
    }
    ASSERT_NE(seed, 0);
    for (int sort : {1, 0}) {
        set(host, 12, sort);
        host.call_callback(29, 0);
        ASSERT_TRUE(run(host, 6));
        float z_left = 0, z_right = 0;
        for (int i = 0; i < 2; ++i) (fx.polygons[i].src_left == 0 ? z_left : z_right) = fx.polygons[i].z;
        ASSERT_GT(z_left, z_right);
        // Unrotated elements scale by 192 / |z| about their centres 180, 540.
        const double left_of_right = 540 - 180 * 192.0 / -z_right, right_of_left = 180 + 180 * 192.0 / -z_left;
        ASSERT_GT(right_of_left - left_of_right, 6.0);
        const int seam = static_cast<int>((left_of_right + right_of_left) / 2);
        EXPECT_EQ(pixel(host.buffer(kResult), seam, 243), sort ? A : C) << "Z Sort " << sort;
    }
}

// The copy workers of a rebuild frame shift by 15 bits while the weights sum
// to 32767: under a full matte every non-zero channel arrives one lower (seen
// at 12 bits below 512; at 8 bits only 1 becomes 0). The next frames'
// rasteriser divides by 32767 and brings the front unchanged.
TEST(PipelineFrame, FullThreeDMatteBringsTheFrontOneLowerOnTheRebuildFrame) {
    const struct { int bits, inverted; } cases[] = {{12, 0}, {12, 1}, {8, 0}};
    for (const auto& k : cases) {
        SCOPED_TRACE(testing::Message() << k.bits << "-bit, inverted " << k.inverted);
        Host& host = begin(720, 486, k.bits);
        fill_noise(host, 15);
        const unsigned full = k.inverted ? 0 : k.bits == 12 ? 4095 : 255;
        fill_flat(host.buffer(kMatte3D), {full, full, full});
        set(host, 51, 1);
        set(host, 52, k.inverted);
        hold_still(host);
        ASSERT_NE(host.process(1), nullptr);
        const FrameBuffer &out = host.buffer(kResult), &front = host.buffer(kFront);
        EXPECT_EQ(count(out, [&](int x, int y) {
                      for (int c = 0; c < 3; ++c) {
                          const unsigned t = value(front, x, y, c), q = (t << 3) | (t >> 9);  // 12 -> 15 bits
                          if (value(out, x, y, c) != (k.bits == 8 ? t - (t == 1) : ((q * 32767u) >> 15) >> 3)) return true;
                      }
                      return false;
                  }), 0);
        ASSERT_NE(host.process(2), nullptr);
        EXPECT_EQ(same_pixels(out, front), 720 * 486);
    }
}
