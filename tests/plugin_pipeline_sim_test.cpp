// The simulation as the frame pipeline drives it, through the loaded plug-in:
// one step per processed frame, the rebuild triggers and the clamp at a tiny
// preview. (Band counts and repeated runs are covered by the frame-reuse and
// digest tests.)
#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "tests/pipeline_rig.h"

using namespace pipeline_rig;

namespace {

// A rebuild puts the elements back at Foreground Z unturned; each step moves them.
bool rebuilt(Paneburst& fx) { return fx.polygons[0].z == fx.info.foreground_z && fx.polygons[0].angle_x == 0.0f; }

}  // namespace

// Without variation every element is alike: step k raises z by Z Speed and
// each angle by its Rot. Speed, whatever the frame numbers (repeated ones too).
TEST(PipelineSteps, OneStepPerProcessedFrameWhateverItsNumber) {
    Host& host = begin(720, 486);
    testing_support::fill_inputs(host, 23);
    for (int c : {18, 23, 24, 25}) set(host, c, 0);
    Paneburst& fx = effect(host);
    const std::uint32_t numbers[] = {4, 5, 5, 3, 100, 0};
    for (int k = 0; k < 6; ++k) {
        ASSERT_NE(host.process(numbers[k]), nullptr);
        EXPECT_EQ(fx.info.frame, static_cast<int>(numbers[k]));
        EXPECT_EQ(fx.polygons[33].z, -192.0f + 5.0f * k) << k;
        EXPECT_EQ(fx.polygons[33].angle_x, 60.0f * k) << k;
    }
    // Host frame numbers are unsigned; past the int range the frame (and the
    // swirl's time axis) reads INT_MIN rather than an undefined conversion.
    set(host, 82, 1);
    const int at_int_max = host.process(2147483647u) ? fx.info.frame : 0;
    ASSERT_NE(host.process(3000000000u), nullptr);
    EXPECT_EQ((std::array<int, 2>{at_int_max, fx.info.frame}), (std::array<int, 2>{INT_MAX, INT_MIN}));
}

// A restart button of any page or a change of tile size rebuilds at the next frame only.
TEST(PipelineSteps, RebuildTriggers) {
    Host& host = begin(720, 486);
    testing_support::fill_inputs(host, 24);
    Paneburst& fx = effect(host);
    ASSERT_TRUE(run(host, 2));
    for (int button : {29, 58, 87}) {
        host.call_callback(button, 0);
        EXPECT_FALSE(rebuilt(fx)) << "nothing happens before the frame";
        ASSERT_NE(host.process(7), nullptr);
        EXPECT_TRUE(rebuilt(fx) && host.buffer(kResult).bytes == host.buffer(kFront).bytes) << button;
        ASSERT_NE(host.process(7), nullptr);
        EXPECT_FALSE(rebuilt(fx)) << button;
    }
    // Quality, Seed, speeds, forces and light act on the running simulation.
    const double others[][2] = {{30, kHigh}, {30, kLow}, {26, 115}, {15, 9}, {21, -30}, {75, 1}, {35, 1}, {8, -300}};
    for (const auto& v : others) {
        set(host, static_cast<int>(v[0]), v[1]);
        ASSERT_NE(host.process(3), nullptr);
        EXPECT_FALSE(rebuilt(fx)) << "control " << v[0];
    }
    // 12 -> 7 across: 102-pixel tiles with an edge on the centre column 360.
    set(host, 6, 7);
    ASSERT_NE(host.process(4), nullptr);
    EXPECT_TRUE(rebuilt(fx));
    EXPECT_EQ((std::array<int, 4>{fx.info.tile_width, fx.info.columns, fx.polygons[0].src_left, fx.polygons[7].src_left}),
              (std::array<int, 4>{102, 8, -48, 666}));
    // 99 and 100 both give 7-pixel tiles on 720: the second is no rebuild.
    set(host, 6, 99);
    ASSERT_TRUE(run(host, 2, 5));
    set(host, 6, 100);
    ASSERT_NE(host.process(7), nullptr);
    EXPECT_FALSE(rebuilt(fx));
    EXPECT_EQ(fx.info.columns, 104);
    // A 1/32 preview is 22 x 16: 100 elements across do not fit, the control
    // is set back to 22 once and the grid rebuilt once, with 1-pixel tiles.
    const int updates = host.update_count(6);
    set(host, 33, 8);
    ASSERT_NE(host.process(8), nullptr);
    EXPECT_TRUE(rebuilt(fx));
    EXPECT_EQ((std::array<int, 2>{fx.image_width, fx.info.tile_width}), (std::array<int, 2>{22, 1}));
    EXPECT_EQ(fx.info.foreground_z, -9.375f);  // -300 / 32
    ASSERT_TRUE(run(host, 2, 9));
    EXPECT_FALSE(rebuilt(fx));
    EXPECT_EQ(host.control(6)->value(), 22.0);
    EXPECT_EQ(host.update_count(6), updates + 1);
}
