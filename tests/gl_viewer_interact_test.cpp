// Pointer events through the loaded plug-in's SparkInteract: pen pressure to
// hover, press, drag and release, the cursor shapes, each widget kind
// dragged end to end into its controls, and re-processing on release.
#include <gtest/gtest.h>

#include <cmath>
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
    // Switches checkboxes on or off: a frame caches them for the overlay.
    void use(std::initializer_list<std::pair<int, int>> flags) {
        for (const auto& f : flags) set(*host, f.first, f.second);
        ASSERT_NE(host->process(++frame), nullptr);
    }
    void redraw() {
        glrec::reset();
        viewer::overlay(*host, 1.0f);
    }
    int last_cursor() const { return cursors.empty() ? 0 : cursors.back(); }
    std::vector<int> updates_since(std::size_t start) const {
        const auto& log = host->update_log();
        return std::vector<int>(log.begin() + static_cast<long>(start), log.end());
    }

    sparkhost::Host* host = nullptr;
    std::vector<int> cursors;
    int draws = 0;
    unsigned frame = 0;
};

TEST_F(ViewerInteract, PressureStepsGiveHoverPressDragRelease) {
    use({{35, 1}});  // the light at its default (20, 80): overlay (24, 72)
    redraw();
    EXPECT_EQ(interact(*host, 0.0f, 24, 72), nullptr);  // hover over the handle
    EXPECT_EQ(last_cursor(), kOverHandle);
    EXPECT_EQ(draws, 0);

    const std::size_t before = host->update_log().size();
    interact(*host, 0.5f, 24, 72);  // press
    EXPECT_EQ(last_cursor(), kGrab);
    EXPECT_EQ(draws, 1);
    interact(*host, 0.7f, 30, 18);  // drag: 25 % across, 20 % down
    EXPECT_EQ(draws, 2);
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 36)), 100.0f * (30.0f / 120.0f));
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 37)), 100.0f * (18.0f / 90.0f));
    EXPECT_EQ(updates_since(before), (std::vector<int>{36, 37}));
    EXPECT_EQ(interact(*host, 0.0f, 30, 18), nullptr);  // release, Auto Preview off
    EXPECT_EQ(last_cursor(), kDefault);
    EXPECT_EQ(draws, 3);

    // After the release a drag-like move writes nothing more.
    interact(*host, 0.0f, 60, 60);
    EXPECT_EQ(last_cursor(), kDefault);
    EXPECT_EQ(updates_since(before).size(), 2u);
}

TEST_F(ViewerInteract, NegativePressureAfterAPositiveOneIsAHoverNotARelease) {
    use({{35, 1}});
    redraw();
    interact(*host, 0.5f, 24, 72);  // press, grabs the light
    ASSERT_EQ(last_cursor(), kGrab);
    interact(*host, 0.5f, 36, 72);  // drag
    EXPECT_EQ(draws, 2);
    interact(*host, -0.1f, 36, 72);  // neither drag nor release
    EXPECT_EQ(draws, 2);
    EXPECT_EQ(last_cursor(), kDefault);  // the handle was last drawn at (24, 72)
    interact(*host, 0.0f, 36, 72);  // from a negative pressure: a hover again
    EXPECT_EQ(draws, 2);
    interact(*host, 0.5f, 0, 0);  // a fresh press, on nothing
    EXPECT_EQ(draws, 3);
    EXPECT_EQ(last_cursor(), kDefault);
}

TEST_F(ViewerInteract, ViewerRatioStretchesThePointerHorizontally) {
    use({{35, 1}});
    host->viewer_ratio = 1.5f;  // overlay 180 wide: the light is at (36, 72)
    redraw();
    interact(*host, 0.0f, 24, 72);  // the host's x 24 is the overlay's 36
    EXPECT_EQ(last_cursor(), kOverHandle);
    interact(*host, 0.0f, 36, 72);
    EXPECT_EQ(last_cursor(), kDefault);
}

TEST_F(ViewerInteract, ReleaseOfAGrabbedWidgetWithAutoPreviewProcessesTheFrame) {
    use({{71, 1}});  // repulsion at its default (40, 30): overlay (48, 27)
    set(*host, 34, 1);
    redraw();
    interact(*host, 0.5f, 48, 27);
    ASSERT_EQ(last_cursor(), kGrab);
    interact(*host, 0.5f, 60, 45);
    unsigned long* result = interact(*host, 0.0f, 60, 45);
    EXPECT_NE(result, nullptr);
    EXPECT_EQ(static_cast<void*>(result), host->buffer(1).data());
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 72)), 50.0f);

    // A release after a press that grabbed nothing returns no frame.
    interact(*host, 0.5f, 1, 1);
    EXPECT_EQ(last_cursor(), kDefault);
    EXPECT_EQ(interact(*host, 0.0f, 1, 1), nullptr);
}

TEST_F(ViewerInteract, CrosshairDraggedPastTheRangeStopsAtItsEdge) {
    use({{78, 1}});  // attraction at (80, 80): overlay (96, 72)
    redraw();
    interact(*host, 0.5f, 96, 72);
    ASSERT_EQ(last_cursor(), kGrab);
    interact(*host, 0.5f, 120 * 7, -90 * 6);  // 700 %, -600 %: range -500 ... 500
    EXPECT_EQ(value(*host, 79), 500.0);
    EXPECT_EQ(value(*host, 80), -500.0);
    interact(*host, 0.0f, 120 * 7, -90 * 6);
}

TEST_F(ViewerInteract, WindLineDraggedByItsMidpointKeepsItsLength) {
    use({{64, 1}});
    set(*host, 65, 25);
    set(*host, 66, 50);
    set(*host, 67, 75);
    set(*host, 68, 50);
    redraw();  // line from (30, 45) to (90, 45), handle at (60, 45)
    interact(*host, 0.5f, 60, 45);
    ASSERT_EQ(last_cursor(), kGrab);
    const std::size_t before = host->update_log().size();
    interact(*host, 0.5f, 60, 27);  // midpoint to (0.5, 0.3)
    EXPECT_EQ(updates_since(before), (std::vector<int>{65, 66, 67, 68}));
    const float y = 100.0f * (27.0f / 90.0f);
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 65)), 25.0f);
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 66)), y);
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 67)), 75.0f);
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 68)), y);
    interact(*host, 0.0f, 60, 27);
}

// The cone's tip 0 for source (30, 45), target (90, 45) and Wind Spread 90:
// 45 degrees on the negative side of the wind direction, 60 from the source.
constexpr float kTipX = 30.0f + 60.0f * 0.70710678f;
constexpr float kTipY = 45.0f - 60.0f * 0.70710678f;

class ConeInteract : public ViewerInteract {
protected:
    void SetUp() override {
        ViewerInteract::SetUp();
        use({{64, 1}});
        set(*host, 65, 25);
        set(*host, 66, 50);
        set(*host, 67, 75);
        set(*host, 68, 50);
        set(*host, 70, 90);
        redraw();
    }
    // Grabs tip 0, drags it to (x, y), lets go, and returns Wind Spread.
    double drag_tip_to(float x, float y) {
        interact(*host, 0.0f, kTipX, kTipY);
        EXPECT_EQ(last_cursor(), kOverHandle);
        interact(*host, 0.5f, kTipX, kTipY);
        EXPECT_EQ(last_cursor(), kGrab);
        const int updates = host->update_count(70);
        interact(*host, 0.5f, x, y);
        EXPECT_EQ(host->update_count(70), updates + 1);
        const double spread = value(*host, 70);
        interact(*host, 0.0f, x, y);
        return spread;
    }
};

TEST_F(ConeInteract, TipOnTheWindLineClosesTheCone) { EXPECT_EQ(drag_tip_to(110, 45), 0.0); }

TEST_F(ConeInteract, TipAtRightAnglesOpensItTo180) { EXPECT_EQ(drag_tip_to(30, 80), 180.0); }

TEST_F(ConeInteract, TipBehindTheSourceWrites360PastTheControlsMaximum) {
    EXPECT_EQ(drag_tip_to(0, 45), 360.0);
}

TEST_F(ConeInteract, TipOnTheSourceGives180) { EXPECT_EQ(drag_tip_to(30, 45), 180.0); }

TEST_F(ConeInteract, TipsArePutAwayWhileWindSpeedIsZeroButTheCrosshairsStillListen) {
    set(*host, 69, 0);
    redraw();  // nothing of the wind on screen now
    interact(*host, 0.0f, kTipX, kTipY);
    EXPECT_EQ(last_cursor(), kDefault);
    interact(*host, 0.5f, kTipX, kTipY);
    EXPECT_EQ(last_cursor(), kDefault);
    interact(*host, 0.0f, kTipX, kTipY);
    // The source crosshair is grabbed where it was last drawn.
    interact(*host, 0.5f, 30, 45);
    EXPECT_EQ(last_cursor(), kGrab);
    interact(*host, 0.0f, 30, 45);
}

TEST_F(ViewerInteract, ClearOverlayAndViewerModeZeroIgnoreEveryEvent) {
    use({{35, 1}});
    redraw();
    cursors.clear();  // the frame set the cursor back
    set(*host, 28, 1);  // Clear Overlay
    EXPECT_EQ(interact(*host, 0.5f, 24, 72), nullptr);
    EXPECT_EQ(interact(*host, 0.7f, 60, 60), nullptr);
    EXPECT_TRUE(cursors.empty());
    EXPECT_EQ(draws, 0);
    set(*host, 28, 0);
    // The ignored events did not change the pen state: this is a press.
    interact(*host, 0.5f, 24, 72);
    EXPECT_EQ(last_cursor(), kGrab);
    interact(*host, 0.0f, 24, 72);

    cursors.clear();
    draws = 0;
    host->mode_flag = 0;
    EXPECT_EQ(interact(*host, 0.5f, 24, 72), nullptr);
    EXPECT_EQ(interact(*host, 0.5f, 60, 60), nullptr);
    EXPECT_EQ(interact(*host, 0.0f, 60, 60), nullptr);
    EXPECT_TRUE(cursors.empty());
    EXPECT_EQ(draws, 0);
    EXPECT_FLOAT_EQ(static_cast<float>(value(*host, 36)), 20.0f);  // the light did not move
}

TEST_F(ViewerInteract, OnlyWidgetsOfForcesInUseReceiveEvents) {
    use({{78, 1}});
    redraw();  // the attraction crosshair drawn at (96, 72)
    use({{78, 0}});  // switched off, not redrawn
    interact(*host, 0.0f, 96, 72);
    EXPECT_EQ(last_cursor(), kDefault);
    interact(*host, 0.5f, 96, 72);
    EXPECT_EQ(last_cursor(), kDefault);
    interact(*host, 0.0f, 96, 72);
}

}  // namespace
