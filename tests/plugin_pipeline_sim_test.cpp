// The simulation as the frame pipeline drives it, through the loaded plug-in:
// reproducibility over band counts and runs, one step per processed frame,
// the rebuild triggers, the clamp at a tiny preview, and the Explosion look.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/pipeline_rig.h"

using namespace pipeline_rig;

namespace {

// The frames of a run from a rebuild, as the host received them.
std::vector<std::vector<std::uint8_t>> frames_of_run(Host& host, int count) {
    std::vector<std::vector<std::uint8_t>> frames;
    host.call_callback(29, 0);
    for (int i = 1; i <= count; ++i) {
        if (host.process(static_cast<std::uint32_t>(i)) == nullptr) return {};
        frames.push_back(host.buffer(kResult).bytes);
    }
    return frames;
}

// Lights, sorting and forces, so that every band worker and every force is
// part of the run.
void busy_settings(Host& host) {
    for (const auto& v : std::vector<std::pair<int, double>>{
             {12, 1}, {35, 1}, {46, 1}, {64, 1}, {71, 1}, {75, 1}, {78, 1}, {82, 1}, {13, 1.5}, {16, 40}})
        set(host, v.first, v.second);
}

// A rebuild puts every element back at Foreground Z; a step moves it (the
// default Z Speed 5 with Z Speed Var 10 moves every element by 4 to 5).
bool rebuilt(Paneburst& fx) { return fx.polygons[0].z == fx.info.foreground_z && fx.polygons[0].angle_x == 0.0f; }

}  // namespace

TEST(PipelineRuns, BandCountsGiveIdenticalFramesInMedAndLow) {
    for (int quality : {kMed, kLow}) {
        std::vector<std::vector<std::uint8_t>> reference;
        for (int bands : {1, 2, 7}) {
            Host& host = begin(720, 486, 8, bands);
            testing_support::fill_inputs(host, 21);
            busy_settings(host);
            set(host, 30, quality);
            const auto frames = frames_of_run(host, 6);
            ASSERT_EQ(frames.size(), 6u);
            if (reference.empty()) reference = frames;
            for (std::size_t i = 0; i < frames.size(); ++i)
                EXPECT_TRUE(frames[i] == reference[i]) << "quality " << quality << ", " << bands << " bands, frame " << i;
        }
    }
}

TEST(PipelineRuns, OneSeedRepeatsInEveryQuality) {
    Host& host = begin(720, 486, 8, 3);
    testing_support::fill_inputs(host, 22);
    busy_settings(host);
    for (int quality : {kHigh, kMed, kLow, kWireframe}) {
        set(host, 30, quality);
        const auto first = frames_of_run(host, 5);
        const auto second = frames_of_run(host, 5);
        ASSERT_EQ(first.size(), 5u);
        EXPECT_TRUE(first == second) << quality;
    }
    // A different Seed gives a different run from its rebuild on.
    set(host, 30, kMed);
    const auto seed_200 = frames_of_run(host, 3);
    set(host, 26, 217);
    const auto seed_217 = frames_of_run(host, 3);
    EXPECT_TRUE(seed_200[0] == seed_217[0]);  // the intact front
    EXPECT_FALSE(seed_200[2] == seed_217[2]);
}

TEST(PipelineSteps, OneStepPerProcessedFrameWhateverItsNumber) {
    Host& host = begin(720, 486);
    testing_support::fill_inputs(host, 23);
    for (int c : {18, 23, 24, 25}) set(host, c, 0);  // no variation: every element alike
    Paneburst& fx = effect(host);
    const std::uint32_t numbers[] = {4, 5, 5, 3, 100, 0};
    std::vector<std::uint8_t> previous;
    for (int k = 0; k < 6; ++k) {
        ASSERT_NE(host.process(numbers[k]), nullptr);
        EXPECT_EQ(fx.info.frame, static_cast<int>(numbers[k]));
        // Step k (the first frame is the rebuild): z rises by Z Speed, each
        // angle by its Rot. Speed.
        EXPECT_EQ(fx.polygons[33].z, -192.0f + 5.0f * k) << k;
        EXPECT_EQ(fx.polygons[33].angle_x, 60.0f * k) << k;
        EXPECT_EQ(fx.polygons[33].angle_z, 60.0f * k) << k;
        if (k == 1) previous = host.buffer(kResult).bytes;
        if (k == 2) {
            EXPECT_NE(host.buffer(kResult).bytes, previous) << "frame 5 again is a new step";
        }
    }
}

TEST(PipelineSteps, RestartButtonsRebuildAtTheNextFrameOnly) {
    Host& host = begin(720, 486);
    testing_support::fill_inputs(host, 24);
    Paneburst& fx = effect(host);
    ASSERT_TRUE(run(host, 3));
    for (int button : {29, 58, 87}) {
        ASSERT_FALSE(rebuilt(fx));
        const float z = fx.polygons[0].z;
        host.call_callback(button, 0);
        EXPECT_EQ(fx.restart, 1) << button;
        EXPECT_EQ(fx.polygons[0].z, z) << "nothing happens before the frame";
        ASSERT_NE(host.process(7), nullptr);
        EXPECT_TRUE(rebuilt(fx)) << button;
        EXPECT_EQ(host.buffer(kResult).bytes, host.buffer(kFront).bytes);
        ASSERT_NE(host.process(7), nullptr);
        EXPECT_FALSE(rebuilt(fx)) << button;
    }
}

TEST(PipelineSteps, TileSizeChangesRebuildOtherChangesDoNot) {
    Host& host = begin(720, 486);
    testing_support::fill_inputs(host, 25);
    Paneburst& fx = effect(host);
    ASSERT_TRUE(run(host, 2));
    ASSERT_FALSE(rebuilt(fx));

    // Quality, Seed, speeds, forces and light act on the running simulation.
    for (const auto& v : std::vector<std::pair<int, double>>{
             {30, kHigh}, {30, kLow}, {26, 115}, {15, 9}, {21, -30}, {75, 1}, {35, 1}, {8, -300}}) {
        set(host, v.first, v.second);
        ASSERT_NE(host.process(3), nullptr);
        EXPECT_FALSE(rebuilt(fx)) << "control " << v.first;
    }

    // 12 -> 7 across: 102-pixel tiles, an edge on the centre column 360.
    set(host, 6, 7);
    ASSERT_NE(host.process(4), nullptr);
    EXPECT_TRUE(rebuilt(fx));
    EXPECT_EQ(fx.info.tile_width, 102);
    EXPECT_EQ(fx.info.grid_x0, -48);
    EXPECT_EQ(fx.info.columns, 8);
    EXPECT_EQ(fx.polygons[7].src_left, 666);
    EXPECT_EQ(fx.polygons[0].src_left, -48);

    // 99 and 100 both give 7-pixel tiles on 720: the second is no rebuild.
    set(host, 6, 99);
    set(host, 7, 100);
    ASSERT_NE(host.process(5), nullptr);
    EXPECT_TRUE(rebuilt(fx));
    ASSERT_NE(host.process(6), nullptr);
    set(host, 6, 100);
    ASSERT_NE(host.process(7), nullptr);
    EXPECT_FALSE(rebuilt(fx));
    EXPECT_EQ(fx.info.columns, 104);
    EXPECT_EQ(fx.info.rows, 122);
    EXPECT_EQ(fx.info.element_count, 12688);
}

// At a 1/32 preview of 720 x 486 the image is 22 x 16: 100 elements across
// do not fit, the control is set back to 22 once, and the grid is rebuilt
// once.
TEST(PipelineSteps, TinyPreviewClampsXElementsOnce) {
    Host& host = begin(720, 486);
    testing_support::fill_inputs(host, 26);
    Paneburst& fx = effect(host);
    set(host, 6, 100);
    ASSERT_TRUE(run(host, 2));
    ASSERT_FALSE(rebuilt(fx));
    const int updates = host.update_count(6);

    set(host, 33, 8);  // 1/32
    ASSERT_NE(host.process(3), nullptr);
    EXPECT_EQ(fx.image_width, 22);
    EXPECT_EQ(fx.image_height, 16);
    EXPECT_TRUE(rebuilt(fx));
    EXPECT_EQ(host.control(6)->value(), 22.0);
    EXPECT_EQ(host.update_count(6), updates + 1);
    EXPECT_EQ(fx.info.tile_width, 1);
    EXPECT_EQ(fx.info.grid_x0, 0);
    EXPECT_EQ(fx.info.columns, 22);
    EXPECT_EQ(fx.info.foreground_z, -6.0f);  // -192 / 32

    for (std::uint32_t f = 4; f <= 5; ++f) {
        ASSERT_NE(host.process(f), nullptr);
        EXPECT_FALSE(rebuilt(fx)) << f;
    }
    EXPECT_EQ(host.control(6)->value(), 22.0);
    EXPECT_EQ(host.update_count(6), updates + 1);

    // Back at full resolution 22 elements make 32-pixel tiles: a rebuild.
    set(host, 33, 0);
    ASSERT_NE(host.process(6), nullptr);
    EXPECT_TRUE(rebuilt(fx));
    EXPECT_EQ(fx.info.tile_width, 32);
}

TEST(PipelineRuns, ExplosionRendersCleanlyAtFullAndHalfResolution) {
    for (int bits : {8, 12})
        for (int popup : {0, 1}) {
            Host& host = begin(720, 486, bits, 2);
            testing_support::fill_inputs(host, 27);
            set(host, 19, 0);  // Explosion
            host.call_callback(19, 0);
            set(host, 33, popup);
            Paneburst& fx = effect(host);
            EXPECT_EQ(host.control(26)->value(), 9999.0);
            testing::internal::CaptureStderr();
            bool all = true;
            for (std::uint32_t f = 1; f <= 30; ++f) all = all && host.process(f) != nullptr;
            const std::string errors = testing::internal::GetCapturedStderr();
            EXPECT_TRUE(all) << bits << "-bit, popup " << popup;
            EXPECT_EQ(errors, "");
            EXPECT_TRUE(host.messages.empty());
            EXPECT_EQ(fx.info.columns, 10);
            EXPECT_EQ(fx.image_width, popup ? 360 : 720);
            // Thirty steps toward the viewer: the burst has opened onto the
            // back, and nothing is left at the start depth.
            EXPECT_GT(same_pixels(host.buffer(kResult), host.buffer(kBack)), 1000);
            for (int i = 0; i < fx.info.element_count; ++i)
                EXPECT_GT(fx.polygons[i].z, fx.info.foreground_z - 0.001f) << i;
        }
}

// Host frame numbers are unsigned 32-bit; past the int range the swirl's time
// axis gets INT_MIN instead of an undefined conversion.
TEST(PipelineSteps, FrameNumbersBeyondTheIntRange) {
    Host& host = begin(64, 48);
    set(host, 82, 1);
    Paneburst& fx = effect(host);
    ASSERT_NE(host.process(2147483647u), nullptr);
    EXPECT_EQ(fx.info.frame, 2147483647);
    ASSERT_NE(host.process(3000000000u), nullptr);
    EXPECT_EQ(fx.info.frame, INT32_MIN);
}
