// Pointer events through the loaded plug-in's SparkInteract: pressure to hover,
// press, drag and release, each widget kind dragged into its controls.
#include <gtest/gtest.h>

#include <vector>

#include "tests/gl_recorder.h"
#include "tests/viewer_scene.h"

namespace {

using viewer::interact;
using viewer::set;
using viewer::value;

constexpr int kDefault = 1, kGrab = 14, kOverHandle = 20;

class ViewerInteract : public ::testing::Test {
protected:
    void SetUp() override {
        host = &viewer::start_scene();
        host->on_viewing_cursor = [this](int shape) { cursors.push_back(shape); };
        host->on_viewing_draw = [this] { ++draws; };
        set(*host, 34, 0);  // Auto Preview off unless a test wants it
    }
    // Sets controls, processes a frame (caching the checkboxes) and redraws the overlay, placing the widgets.
    void show(std::initializer_list<std::pair<int, double>> controls) {
        for (const auto& c : controls) set(*host, c.first, c.second);
        ASSERT_NE(host->process(++frame), nullptr);
        glrec::reset();
        viewer::overlay(*host, 1.0f);
    }
    // Events of one pressure each at the same point; the last cursor shape.
    int events(std::initializer_list<float> pressures, float x, float y) {
        for (float p : pressures) interact(*host, p, x, y);
        return last_cursor();
    }
    int last_cursor() const { return cursors.empty() ? 0 : cursors.back(); }
    std::vector<int> updates_since(std::size_t start) const {
        return std::vector<int>(host->update_log().begin() + static_cast<long>(start), host->update_log().end());
    }
    sparkhost::Host* host = nullptr;
    std::vector<int> cursors;
    int draws = 0;
    unsigned frame = 0;
};

TEST_F(ViewerInteract, PressureStepsGiveHoverPressDragRelease) {
    show({{35, 1}});  // the light at its default (20, 80): overlay (24, 72)
    EXPECT_EQ(interact(*host, 0.0f, 24, 72), nullptr);  // hover over the handle
    EXPECT_EQ(last_cursor(), kOverHandle);
    const std::size_t before = host->update_log().size();
    EXPECT_EQ(events({0.5f}, 24, 72), kGrab);  // press
    events({0.7f}, 30, 18);                     // drag: 25 % across, 20 % down
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 36)), 100.0f * (30.0f / 120.0f));
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 37)), 100.0f * (18.0f / 90.0f));
    EXPECT_EQ(updates_since(before), (std::vector<int>{36, 37}));
    EXPECT_EQ(interact(*host, 0.0f, 30, 18), nullptr);  // release, Auto Preview off
    EXPECT_EQ(last_cursor(), kDefault);
    EXPECT_EQ(draws, 3);  // press, drag, release
    EXPECT_EQ(events({0.0f}, 60, 60), kDefault);  // after the release a move writes nothing
    EXPECT_EQ(updates_since(before).size(), 2u);
}

TEST_F(ViewerInteract, NegativePressureAfterAPositiveOneIsAHoverNotARelease) {
    show({{35, 1}});
    ASSERT_EQ(events({0.5f, 0.5f}, 24, 72), kGrab);  // press, drag
    // Neither drag nor release; then a hover again, from a negative pressure.
    EXPECT_EQ(events({-0.1f, 0.0f}, 36, 72), kDefault);
    EXPECT_EQ(draws, 2);
    EXPECT_EQ(events({0.5f}, 0, 0), kDefault);  // a fresh press, on nothing
    EXPECT_EQ(draws, 3);
}

TEST_F(ViewerInteract, ReleaseOfAGrabbedWidgetWithAutoPreviewProcessesTheFrame) {
    show({{71, 1}, {34, 1}});  // repulsion at its default (40, 30): overlay (48, 27)
    ASSERT_EQ(events({0.5f, 0.5f}, 48, 27), kGrab);
    interact(*host, 0.5f, 60, 45);
    EXPECT_EQ(static_cast<void*>(interact(*host, 0.0f, 60, 45)), host->buffer(1).data());
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 72)), 50.0f);
    EXPECT_EQ(events({0.5f}, 1, 1), kDefault);  // a press that grabbed nothing
    EXPECT_EQ(interact(*host, 0.0f, 1, 1), nullptr);
}

TEST_F(ViewerInteract, CrosshairDraggedPastTheRangeStopsExactlyAtItsEdge) {
    show({{78, 1}});  // attraction at (80, 80): overlay (96, 72)
    ASSERT_EQ(events({0.5f}, 96, 72), kGrab);
    events({0.5f, 0.0f}, 120 * 7, -90 * 6);  // 700 %, -600 %: range -500 ... 500
    EXPECT_EQ(value(*host, 79), 500.0);
    EXPECT_EQ(value(*host, 80), -500.0);
}

TEST_F(ViewerInteract, WindLineDraggedByItsMidpointKeepsItsLength) {
    show({{64, 1}, {65, 25}, {66, 50}, {67, 75}, {68, 50}});  // (30, 45) to (90, 45), handle at (60, 45)
    ASSERT_EQ(events({0.5f}, 60, 45), kGrab);
    const std::size_t before = host->update_log().size();
    events({0.5f, 0.0f}, 60, 27);  // midpoint to (0.5, 0.3)
    EXPECT_EQ(updates_since(before), (std::vector<int>{65, 66, 67, 68}));
    const float expected[4] = {25.0f, 100.0f * (27.0f / 90.0f), 75.0f, 100.0f * (27.0f / 90.0f)};
    for (int i = 0; i < 4; ++i) EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 65 + i)), expected[i]) << 65 + i;
}

TEST_F(ViewerInteract, ConeTipDraggedSetsWindSpreadFromItsAngle) {
    // Source (30, 45), target (90, 45), Wind Spread 90: tip 0 lies 45 degrees
    // on the negative side of the wind direction, 60 from the source.
    const float tip_x = 30.0f + 60.0f * 0.70710678f, tip_y = 45.0f - 60.0f * 0.70710678f;
    const struct { float x, y; double spread; const char* what; } cases[] = {
        {110, 45, 0, "on the wind line"},
        {30, 80, 180, "at right angles"},
        {0, 45, 360, "behind the source, past the control's maximum"},
        {30, 45, 180, "on the source: a zero vector"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        show({{64, 1}, {65, 25}, {66, 50}, {67, 75}, {68, 50}, {70, 90}});
        EXPECT_EQ(events({0.0f, 0.5f}, tip_x, tip_y), kGrab);
        const int updates = host->update_count(70);
        events({0.5f}, c.x, c.y);
        EXPECT_EQ(host->update_count(70), updates + 1);
        EXPECT_EQ(value(*host, 70), c.spread);
        events({0.0f}, c.x, c.y);
    }
    // Wind Speed 0: the tips put away, but the source crosshair is grabbed
    // where it was last drawn.
    show({{69, 0}, {70, 90}});
    EXPECT_EQ(events({0.0f, 0.5f, 0.0f}, tip_x, tip_y), kDefault);
    EXPECT_EQ(events({0.5f}, 30, 45), kGrab);
    events({0.0f}, 30, 45);
}

TEST_F(ViewerInteract, ClearOverlayAndViewerModeZeroIgnoreEveryEvent) {
    show({{35, 1}});
    for (int mode : {1, 0}) {
        SCOPED_TRACE(mode);
        cursors.clear();  // the frame set the cursor back
        draws = 0;
        set(*host, 28, mode);  // Clear Overlay in mode 1
        host->mode_flag = mode;
        EXPECT_EQ(interact(*host, 0.5f, 24, 72), nullptr);
        EXPECT_EQ(interact(*host, 0.7f, 60, 60), nullptr);
        EXPECT_TRUE(cursors.empty());
        EXPECT_EQ(draws, 0);
        EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 36)), 20.0f);  // the light did not move
        set(*host, 28, 0);
        host->mode_flag = 1;
        // The ignored events did not change the pen state: this is a press.
        EXPECT_EQ(events({0.5f, 0.0f}, 24, 72), kDefault);
        EXPECT_EQ(cursors.front(), kGrab);
    }
}

}  // namespace
