// The demo presets through the Demos control's callback: each one, chosen
// twice, replays the same simulation step for step.
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "tests/pipeline_rig.h"

using namespace pipeline_rig;

namespace {

// The simulation state of every element (not the drawing fields, which a
// rebuild frame leaves as the last drawn frame had them) after each of
// `steps` frames following the preset.
std::vector<std::vector<unsigned char>> run_preset(Host& host, int entry, int steps) {
    set(host, 19, entry);
    host.call_callback(19);
    std::vector<std::vector<unsigned char>> states;
    for (int f = 1; f <= steps; ++f) {
        EXPECT_NE(host.process(static_cast<std::uint32_t>(f)), nullptr);
        const Paneburst& e = effect(host);
        std::vector<unsigned char> state;
        for (int i = 0; i < e.info.element_count; ++i) {
            const auto* p = reinterpret_cast<const unsigned char*>(&e.polygons[i]);
            state.insert(state.end(), p + offsetof(tagPOLYGON, src_left), p + offsetof(tagPOLYGON, depth_key));
            state.insert(state.end(), p + offsetof(tagPOLYGON, drawn), p + sizeof(tagPOLYGON));
        }
        states.push_back(state);
    }
    return states;
}

}  // namespace

TEST(Presets, EachPresetChosenTwiceReplaysTheSameElements) {
    for (int entry = 0; entry < 4; ++entry) {
        SCOPED_TRACE(entry);
        Host& host = begin(96, 64);
        set(host, 30, kLow);  // the element steps, depth rule and sort run in every quality
        testing_support::fill_inputs(host);
        const auto first = run_preset(host, entry, 50);
        const auto second = run_preset(host, entry, 50);
        EXPECT_EQ(host.control(26)->value(), 9999);  // written past the Seed slider's range
        ASSERT_EQ(first.size(), second.size());
        // From the first step on: the rebuild frame leaves the per-step
        // velocity and spin fields as the frame before had them.
        for (std::size_t step = 1; step < first.size(); ++step) EXPECT_EQ(first[step], second[step]) << step;
        EXPECT_NE(first.front(), first.back());  // the preset does move the elements
    }
}

TEST(Presets, VenetianVWritesItsValuesAndSwitchesTheForcesOff) {
    Host& host = begin(96, 64);
    for (int force : {64, 71, 75, 78, 82}) set(host, force, 1);
    set(host, 69, 33);  // no preset touches Wind Speed
    set(host, 19, 2);
    host.call_callback(19);
    for (auto expected : std::vector<std::pair<int, double>>{{6, 10}, {7, 1}, {21, 4}, {26, 9999}, {30, kMed}})
        EXPECT_EQ(host.control(expected.first)->value(), expected.second) << expected.first;
    for (int force : {64, 71, 75, 78, 82}) EXPECT_EQ(host.control(force)->value(), 0) << force;
    EXPECT_EQ(host.control(69)->value(), 33);
    EXPECT_EQ(effect(host).restart, 1);
}
