// What a frame shows, end to end through the loaded plug-in on 720 x 486:
// the intact front on a rebuild frame, Wireframe, the mattes, Blend, and the
// three software qualities.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/pipeline_rig.h"

using namespace pipeline_rig;

namespace {

// Elements that neither move nor turn: they stay unrotated at Foreground Z
// on the tile the grid gave them.
void hold_still(Host& host) {
    for (int c : {13, 14, 15, 20, 21, 22}) set(host, c, 0);
}

bool between(unsigned v, unsigned a, unsigned b) { return v >= std::min(a, b) && v <= std::max(a, b); }

}  // namespace

TEST(PipelineFrame, RebuildFrameShowsTheFrontIntactThenTheElementsMove) {
    Host& host = begin(720, 486);
    fill_noise(host.buffer(kFront), 1, 0, 255);
    fill_noise(host.buffer(kBack), 2, 0, 255);
    Paneburst& fx = effect(host);
    EXPECT_EQ(fx.restart, 1);
    ASSERT_NE(host.process(1), nullptr);
    EXPECT_EQ(fx.restart, 0);
    EXPECT_EQ(host.buffer(kResult).bytes, host.buffer(kFront).bytes);
    // 12 x 9 on 720 x 486: 60 x 54 tiles with an edge on the centre row 243,
    // so part tiles of 27 rows at the top and bottom.
    EXPECT_EQ(fx.info.tile_width, 60);
    EXPECT_EQ(fx.info.tile_height, 54);
    EXPECT_EQ(fx.info.grid_x0, 0);
    EXPECT_EQ(fx.info.grid_y0, -27);
    EXPECT_EQ(fx.info.columns, 12);
    EXPECT_EQ(fx.info.rows, 10);
    EXPECT_EQ(fx.info.element_count, 120);

    // The first movement is on the next frame: turning tiles open gaps onto
    // the back and show their texture at other places.
    ASSERT_TRUE(run(host, 3, 2));
    const FrameBuffer& out = host.buffer(kResult);
    EXPECT_LT(same_pixels(out, host.buffer(kFront)), pixel_count(out) * 9 / 10);
    EXPECT_GT(same_pixels(out, host.buffer(kBack)), 1000);
}

TEST(PipelineFrame, WireframeShowsTheBackWhileTheSimulationSteps) {
    Host& host = begin(720, 486);
    fill_noise(host.buffer(kFront), 3, 0, 255);
    fill_noise(host.buffer(kBack), 4, 0, 255);
    set(host, 30, kWireframe);
    Paneburst& fx = effect(host);
    float z = 0;
    for (std::uint32_t f = 1; f <= 4; ++f) {
        ASSERT_NE(host.process(f), nullptr);
        EXPECT_EQ(host.buffer(kResult).bytes, host.buffer(kBack).bytes) << f;
        if (f == 1) {
            EXPECT_EQ(fx.polygons[0].z, -192.0f);
        } else {
            EXPECT_GT(fx.polygons[0].z, z) << f;
        }
        z = fx.polygons[0].z;
    }
    // Leaving Wireframe shows the elements where the simulation took them:
    // no rebuild, the step goes on.
    set(host, 30, kMed);
    ASSERT_NE(host.process(5), nullptr);
    EXPECT_GT(fx.polygons[0].z, z);
    EXPECT_NE(host.buffer(kResult).bytes, host.buffer(kFront).bytes);
    EXPECT_NE(host.buffer(kResult).bytes, host.buffer(kBack).bytes);
}

TEST(PipelineFrame, BlackTwoDMatteShowsOnlyTheBackground) {
    Host& host = begin(720, 486);
    fill_noise(host.buffer(kFront), 5, 0, 255);
    fill_noise(host.buffer(kBack), 6, 0, 255);
    fill_flat(host.buffer(kMatte2D), {0, 0, 0});
    set(host, 49, 1);
    for (std::uint32_t f = 1; f <= 4; ++f) {
        ASSERT_NE(host.process(f), nullptr);
        EXPECT_EQ(host.buffer(kResult).bytes, host.buffer(kBack).bytes) << f;
    }
    // Inverted, the black matte lets the whole canvas through: the intact
    // front on a rebuild frame.
    set(host, 50, 1);
    host.call_callback(29, 0);
    ASSERT_NE(host.process(5), nullptr);
    EXPECT_EQ(host.buffer(kResult).bytes, host.buffer(kFront).bytes);
}

TEST(PipelineFrame, FullBlendGivesTheFrontOnAMovingFrame) {
    Host& host = begin(720, 486);
    fill_noise(host.buffer(kFront), 7, 0, 255);
    fill_noise(host.buffer(kBack), 8, 0, 255);
    ASSERT_TRUE(run(host, 4));
    EXPECT_NE(host.buffer(kResult).bytes, host.buffer(kFront).bytes);
    set(host, 27, 100);
    ASSERT_NE(host.process(5), nullptr);
    EXPECT_EQ(host.buffer(kResult).bytes, host.buffer(kFront).bytes);
}

TEST(PipelineFrame, StillElementsShowTheirOwnPixelsInMedAndLow) {
    Host& host = begin(720, 486);
    fill_noise(host.buffer(kFront), 9, 0, 255);
    fill_noise(host.buffer(kBack), 10, 0, 255);
    hold_still(host);
    Paneburst& fx = effect(host);
    for (int quality : {kMed, kLow}) {
        set(host, 30, quality);
        host.call_callback(29, 0);
        for (std::uint32_t f = 1; f <= 3; ++f) {
            ASSERT_NE(host.process(f), nullptr);
            // Texture-mapped or not, an unmoved element shows exactly its
            // own tile, and the tiles cover the frame.
            EXPECT_EQ(host.buffer(kResult).bytes, host.buffer(kFront).bytes) << quality << " frame " << f;
        }
        EXPECT_EQ(fx.polygons[57].z, -192.0f);
        EXPECT_EQ(fx.polygons[57].angle_y, 0.0f);
    }
}

TEST(PipelineFrame, LowQualityShowsTheFrontAtTheElementsCurrentPlace) {
    Host& host = begin(720, 486);
    fill_noise(host.buffer(kFront), 11, 0, 255);
    fill_noise(host.buffer(kBack), 12, 0, 255);
    set(host, 30, kLow);
    ASSERT_TRUE(run(host, 8));
    const FrameBuffer &out = host.buffer(kResult), &front = host.buffer(kFront), &back = host.buffer(kBack);
    long on_front = 0, on_back = 0, other = 0;
    for (int y = 0; y < out.height; ++y)
        for (int x = 0; x < out.width; ++x) {
            const Rgb p = pixel(out, x, y);
            if (p == pixel(front, x, y)) ++on_front;
            else if (p == pixel(back, x, y)) ++on_back;
            else ++other;
        }
    EXPECT_EQ(other, 0);
    EXPECT_GT(on_back, 10000);  // the turned tiles open gaps
    EXPECT_GT(on_front, 10000);

    // The same simulation in Med maps each element's own tile onto it: much
    // of the frame then shows neither picture at its place.
    set(host, 30, kMed);
    host.call_callback(29, 0);
    ASSERT_TRUE(run(host, 8));
    long moved = 0;
    for (int y = 0; y < out.height; ++y)
        for (int x = 0; x < out.width; ++x) {
            const Rgb p = pixel(out, x, y);
            moved += p != pixel(front, x, y) && p != pixel(back, x, y);
        }
    EXPECT_GT(moved, 10000);
}

// Tiles that recede without turning shrink about their centres: flat front
// over flat back shows the front colour inside, the back around, and in High
// Quality a one-pixel ramp on the outline that mixes the two.
TEST(PipelineFrame, HighQualityMixesOnlyTheEdgePixels) {
    Host& host = begin(720, 486);
    const Rgb A = {200, 40, 90}, B = {10, 220, 30};
    fill_flat(host.buffer(kFront), A);
    fill_flat(host.buffer(kBack), B);
    hold_still(host);
    set(host, 15, -20);  // away from the viewer, 20 a step
    set(host, 18, 0);
    const int steps = 5;
    const double r = 192.0 / (192.0 + 20.0 * steps);
    // Distance of (x, y) from the nearest tile centre's outline, positive
    // inside. Tile centres: x = 30 + 60 i, y = 54 j.
    auto inside_by = [&](int x, int y) {
        const double cx = 30 + 60 * std::floor(x / 60.0), cy = 54 * std::floor((y + 27) / 54.0);
        return std::min(30 * r - std::fabs(x - cx), 27 * r - std::fabs(y - cy));
    };
    for (int quality : {kHigh, kMed}) {
        set(host, 30, quality);
        host.call_callback(29, 0);
        ASSERT_TRUE(run(host, steps + 1));
        EXPECT_EQ(effect(host).polygons[0].z, static_cast<float>(-192 - 20 * steps));
        const FrameBuffer& out = host.buffer(kResult);
        long mixed = 0, misplaced = 0;
        for (int y = 0; y < out.height; ++y)
            for (int x = 0; x < out.width; ++x) {
                const Rgb p = pixel(out, x, y);
                const double d = inside_by(x, y);
                if (p == A) misplaced += d < -1.0;
                else if (p == B) misplaced += d > 1.0;
                else {
                    ++mixed;
                    bool mix = true;
                    for (std::size_t c = 0; c < 3; ++c) mix = mix && between(p[c], A[c], B[c]);
                    misplaced += !mix || std::fabs(d) > 1.5;
                }
            }
        EXPECT_EQ(misplaced, 0) << quality;
        if (quality == kHigh) {
            EXPECT_GT(mixed, 120 * 100) << "about 4 x 40 ramp pixels per element";
        } else {
            EXPECT_EQ(mixed, 0);
        }
    }
}

// Two half-frame columns flying at different z speeds overlap at the seam.
// With Z Sort the nearer one lies on top; without, the later one in the grid.
TEST(PipelineFrame, ZSortPutsTheNearerElementOnTop) {
    Host& host = begin(720, 486);
    const Rgb A = {250, 0, 0}, C = {0, 0, 250}, B = {0, 250, 0};
    fill(host.buffer(kFront), [&](int x, int, int c) { return (x < 360 ? A : C)[static_cast<std::size_t>(c)]; });
    fill_flat(host.buffer(kBack), B);
    hold_still(host);
    set(host, 6, 2);
    set(host, 7, 1);
    set(host, 9, -1);
    set(host, 15, 10);
    set(host, 18, 100);
    Paneburst& fx = effect(host);

    // A Seed whose left element comes nearer than the right one, by enough
    // for the two to overlap: z speed factors f = 1 + var_z.
    int seed = 0;
    for (int s = 1; s <= 999 && seed == 0; s += 17) {
        set(host, 26, s);
        host.call_callback(29, 0);
        ASSERT_NE(host.process(1), nullptr);
        const float f0 = 1 + fx.polygons[0].var_z, f1 = 1 + fx.polygons[1].var_z;
        if (f0 - f1 > 0.5f && f0 + f1 > 0.3f) seed = s;
    }
    ASSERT_NE(seed, 0);
    const int steps = 5;
    for (int sort : {1, 0}) {
        set(host, 12, sort);
        host.call_callback(29, 0);
        ASSERT_TRUE(run(host, steps + 1));
        float z_left = 0, z_right = 0;
        for (int i = 0; i < 2; ++i) (fx.polygons[i].src_left == 0 ? z_left : z_right) = fx.polygons[i].z;
        ASSERT_GT(z_left, z_right);
        // Unrotated elements scale by 192 / |z| about their centres 180, 540.
        const double left_edge_of_right = 540 - 180 * 192.0 / -z_right;
        const double right_edge_of_left = 180 + 180 * 192.0 / -z_left;
        ASSERT_GT(right_edge_of_left - left_edge_of_right, 6.0);
        const int seam = static_cast<int>((left_edge_of_right + right_edge_of_left) / 2);
        EXPECT_EQ(pixel(host.buffer(kResult), seam, 243), sort ? A : C) << "Z Sort " << sort;
        // Left and right of the overlap each element shows its own half.
        EXPECT_EQ(pixel(host.buffer(kResult), static_cast<int>(left_edge_of_right) - 3, 243), A);
        EXPECT_EQ(pixel(host.buffer(kResult), static_cast<int>(right_edge_of_left) + 3, 243), C);
    }
}

TEST(PipelineFrame, BlackThreeDMatteLeavesTheCanvasOfAMovingFrame) {
    Host& host = begin(720, 486, 12);
    fill_noise(host.buffer(kFront), 13, 0, 4095);
    fill_noise(host.buffer(kBack), 14, 0, 4095);
    fill_flat(host.buffer(kMatte3D), {0, 0, 0});
    set(host, 51, 1);
    ASSERT_NE(host.process(1), nullptr);
    for (std::uint32_t f = 2; f <= 5; ++f) {
        ASSERT_NE(host.process(f), nullptr);
        EXPECT_EQ(same_pixels(host.buffer(kResult), host.buffer(kBack)), pixel_count(host.buffer(kBack))) << f;
    }
}

// The copy workers of a rebuild frame blend with a shift by 15 bits while the
// weights sum to 32767: under a full matte every non-zero channel arrives one
// lower than the front, which a 12-bit value below 512 shows. The rasteriser
// of the next frames divides by 32767 and brings the front unchanged.
TEST(PipelineFrame, FullThreeDMatteBringsTheFrontOneLowerOnTheRebuildFrame) {
    for (int inverted : {0, 1}) {
        Host& host = begin(720, 486, 12);
        fill_noise(host.buffer(kFront), 15, 0, 4095);
        fill_noise(host.buffer(kBack), 16, 0, 4095);
        const unsigned full = inverted ? 0 : 4095;
        fill_flat(host.buffer(kMatte3D), {full, full, full});
        set(host, 51, 1);
        set(host, 52, inverted);
        hold_still(host);
        ASSERT_NE(host.process(1), nullptr);
        const FrameBuffer &out = host.buffer(kResult), &front = host.buffer(kFront);
        long wrong = 0, lowered = 0;
        for (int y = 0; y < out.height; ++y)
            for (int x = 0; x < out.width; ++x)
                for (int c = 0; c < 3; ++c) {
                    const unsigned t = value(front, x, y, c);
                    const unsigned q = (t << 3) | (t >> 9);  // 12-bit in
                    const unsigned expected = ((q * 32767u) >> 15) >> 3;
                    wrong += value(out, x, y, c) != expected;
                    lowered += expected != t;
                }
        EXPECT_EQ(wrong, 0) << inverted;
        // Values 1 ... 511 (an eighth of the noise) lose one.
        EXPECT_GT(lowered, pixel_count(out) * 3 / 10);

        ASSERT_NE(host.process(2), nullptr);
        EXPECT_EQ(same_pixels(out, front), pixel_count(out)) << inverted;
    }
}

TEST(PipelineFrame, FullThreeDMatteAtEightBitTurnsOnlyOnesToZero) {
    Host& host = begin(720, 486, 8);
    fill(host.buffer(kFront), [](int x, int y, int c) { return static_cast<unsigned>((x + 3 * y + c) % 256); });
    fill_flat(host.buffer(kMatte3D), {255, 255, 255});
    set(host, 51, 1);
    ASSERT_NE(host.process(1), nullptr);
    const FrameBuffer &out = host.buffer(kResult), &front = host.buffer(kFront);
    long wrong = 0;
    for (int y = 0; y < out.height; ++y)
        for (int x = 0; x < out.width; ++x)
            for (int c = 0; c < 3; ++c) {
                const unsigned v = front.get(x, y, c);
                wrong += out.get(x, y, c) != (v == 1 ? 0u : v);
            }
    EXPECT_EQ(wrong, 0);
}
