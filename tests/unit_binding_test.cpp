// The effect's control objects bound to the real descriptors: binding order,
// the per-frame refresh, the visibility rules and the member callbacks.
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <vector>

#include "effect/paneburst.h"
#include "host/binding.h"
#include "host/callbacks.h"
#include "host/descriptors.h"
#include "sparkhost/host.h"

namespace {

HostFrameRecord record_at(std::uint32_t frame) {
    HostFrameRecord r{};
    frame_set<std::uint32_t>(r, frame_field::frame_number, frame);
    return r;
}

SparkBooleanDesc* const kMasters[] = {&SparkBoolean35, &SparkBoolean46, &SparkBoolean49,
                                     &SparkBoolean51, &SparkBoolean64, &SparkBoolean71,
                                     &SparkBoolean75, &SparkBoolean78, &SparkBoolean82};

// The descriptors and Instance are process-wide: every test binds afresh and
// puts back what it changed, so that the tests also pass in one process.
class BoundInstance : public ::testing::Test {
protected:
    void SetUp() override {
        keep(SparkFloat36, SparkFloat37, SparkFloat47, SparkFloat77, SparkInt26, SparkPup30, SparkColor42,
             AuxQ7Colour42);
        for (SparkBooleanDesc* b : kMasters) keep(*b);
        // Auto Preview off: a member callback ends in a viewer redraw rather
        // than a frame, which these tests have no buffers for.
        keep(SparkBoolean34);
        SparkBoolean34.value = 0;
        bind_controls(Instance);
    }
    void TearDown() override {
        for (auto& restore : restorers_) restore();
        for (const BindingRow& row : binding_table(Instance)) {
            row.object->disabled = false;
            row.object->hidden = false;
            row.object->notify = true;
        }
        Instance.restart = 1;
    }
    template <typename... T>
    void keep(T&... objects) {
        (restorers_.push_back([&objects, copy = objects] { objects = copy; }), ...);
    }

    sparkhost::Host host;

private:
    std::vector<std::function<void()>> restorers_;
};

TEST_F(BoundInstance, BindingOrderAndPointersFollowTheTable) {
    const std::vector<int> expected_order = {19, 29, 58, 87, 6,  7,  8,  9,  10, 11, 30, 12, 26, 13,
                                             14, 15, 16, 17, 18, 20, 21, 22, 23, 24, 25, 35, 36, 38,
                                             39, 40, 42, 46, 47, 49, 50, 51, 52, 64, 65, 67, 69, 70,
                                             71, 72, 74, 75, 76, 77, 78, 79, 81, 82, 83, 84};
    std::vector<int> order;
    for (const BindingRow& row : binding_table(Instance)) order.push_back(row.id);
    EXPECT_EQ(order, expected_order);

    EXPECT_EQ(Instance.light_pos_ctl.id, 36);
    EXPECT_EQ(Instance.light_pos_ctl.descriptor, &SparkFloat36);
    EXPECT_EQ(Instance.light_pos_ctl.y_descriptor, &SparkFloat37);
    EXPECT_EQ(Instance.light_colour_ctl.sliders[2], &SparkFloat45);
    EXPECT_EQ(Instance.wind_spread_ctl.aux, &AuxQ7Angle70);
    // The two spare objects are never bound.
    EXPECT_EQ(Instance.spare_button_ctl.descriptor, nullptr);
    EXPECT_EQ(Instance.spare_checkbox_ctl.descriptor, nullptr);
    // Binding leaves the descriptor values alone.
    EXPECT_EQ(SparkFloat36.value, 20.0f);
    EXPECT_EQ(SparkPup30.value, 1);
}

TEST_F(BoundInstance, RefreshConvertsEveryKind) {
    SparkFloat36.value = 25.0f;
    SparkFloat37.value = -50.0f;
    SparkInt26.value = 217;
    SparkPup30.value = 3;
    SparkBoolean46.value = 1;
    SparkFloat77.value = 90.5f;
    SparkColor42.value = 0xFF0080FFu;
    SparkFloat47.value = -0.9f;
    refresh_controls(Instance);
    EXPECT_EQ(Instance.light_pos_ctl.x, 0.25);
    EXPECT_EQ(Instance.light_pos_ctl.y, -0.5);
    EXPECT_EQ(Instance.seed_ctl.value, 217);
    EXPECT_EQ(Instance.render_quality_ctl.value, 4);
    EXPECT_TRUE(Instance.lit_background_ctl.value);
    EXPECT_EQ(Instance.gravity_angle_ctl.value, 90.5);
    EXPECT_EQ(Instance.background_z_ctl.value, static_cast<double>(-0.9f));
    EXPECT_EQ(Instance.light_colour_ctl.value.r, 32767);
    EXPECT_EQ(Instance.light_colour_ctl.value.g, (0x80 << 7) | 0x40);
    EXPECT_EQ(Instance.light_colour_ctl.value.b, 0);
    // Refreshing reads; it never tells the host anything.
    EXPECT_TRUE(host.hidden_controls().empty());
    EXPECT_EQ(host.update_count(42), 0);
}

// The hidden set with every master off is checked through the plug-in file.
TEST_F(BoundInstance, VisibilityHandlersActOnlyForTheirOwnMaster) {
    refresh_controls(Instance);
    // A checkbox that is no master changes nothing.
    Instance.CtrlUpdateCB(Instance.z_sort_ctl, -1.0);
    Instance.CtrlUpdateCB(Instance.use_matte_2d_ctl, -1.0);
    EXPECT_TRUE(host.hidden_controls().empty());
    Instance.CtrlUpdateCB(Instance.use_gravity_ctl, -1.0);
    EXPECT_EQ(host.hidden_controls(), (std::set<int>{76, 77}));
    // Every master on: nothing stays hidden.
    for (SparkBooleanDesc* b : kMasters) b->value = 1;
    refresh_controls(Instance);
    Instance.SyncControls();
    EXPECT_TRUE(host.hidden_controls().empty());
}

TEST_F(BoundInstance, RestartRaisesTheRequestUnlessDisabled) {
    Instance.restart = 0;
    Instance.restart_ctl[2].notify = false;  // notify does not gate the handler
    EXPECT_EQ(dlcb_87(1, record_at(3)), nullptr);
    EXPECT_EQ(Instance.restart, 1);

    Instance.restart = 0;
    Instance.restart_ctl[0].Disable(true);
    dlcb_29(1, record_at(3));
    EXPECT_EQ(Instance.restart, 0);
    dlcb_58(1, record_at(3));
    EXPECT_EQ(Instance.restart, 1);
}

TEST_F(BoundInstance, ClickOnDisabledControlIsUndone) {
    refresh_controls(Instance);
    Instance.use_light_ctl.Disable(true);  // saves the byte 0
    SparkBoolean35.value = 1;              // the user clicks
    EXPECT_EQ(dlcb_35(1, record_at(0)), nullptr);
    EXPECT_EQ(SparkBoolean35.value, 0);
    EXPECT_EQ(host.update_count(35), 3);  // disable, the click, the undo
    EXPECT_TRUE(host.hidden_controls().empty());  // neither the handler nor SyncControls ran

    SparkColor42.value = 0xFF102030u;
    Instance.light_colour_ctl.Disable(true);
    SparkColor42.value = 0xFF000000u;
    dlcb_42(1, record_at(0));
    EXPECT_EQ(SparkColor42.value, 0xFF102030u);
}

}  // namespace
