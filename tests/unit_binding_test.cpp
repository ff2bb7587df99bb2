// The effect's control objects bound to the real descriptors: binding order
// and the visibility rules.
#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "effect/paneburst.h"
#include "host/binding.h"
#include "host/descriptors.h"
#include "sparkhost/host.h"

namespace {

SparkBooleanDesc* const kMasters[] = {&SparkBoolean35, &SparkBoolean46, &SparkBoolean49, &SparkBoolean51, &SparkBoolean64,
                                      &SparkBoolean71, &SparkBoolean75, &SparkBoolean78, &SparkBoolean82};

TEST(BoundInstance, BindingOrderAndPointersFollowTheTable) {
    sparkhost::Host host;
    bind_controls(Instance);
    std::vector<int> order;
    for (const BindingRow& row : binding_table(Instance)) order.push_back(row.id);
    EXPECT_EQ(order, (std::vector<int>{19, 29, 58, 87, 6,  7,  8,  9,  10, 11, 30, 12, 26, 13, 14, 15, 16, 17, 18,
                                       20, 21, 22, 23, 24, 25, 35, 36, 38, 39, 40, 42, 46, 47, 49, 50, 51, 52, 64,
                                       65, 67, 69, 70, 71, 72, 74, 75, 76, 77, 78, 79, 81, 82, 83, 84}));
    EXPECT_EQ(Instance.light_pos_ctl.id, 36);
    EXPECT_EQ(Instance.light_pos_ctl.y_descriptor, &SparkFloat37);
    EXPECT_EQ(Instance.light_colour_ctl.sliders[2], &SparkFloat45);
    EXPECT_TRUE(!Instance.spare_button_ctl.descriptor && !Instance.spare_checkbox_ctl.descriptor);  // never bound
}

TEST(BoundInstance, VisibilityHandlersActOnlyForTheirOwnMaster) {
    sparkhost::Host host;
    bind_controls(Instance);
    refresh_controls(Instance);
    Instance.CtrlUpdateCB(Instance.z_sort_ctl, -1.0);  // no master: changes nothing
    EXPECT_TRUE(host.hidden_controls().empty());
    Instance.CtrlUpdateCB(Instance.use_gravity_ctl, -1.0);
    EXPECT_EQ(host.hidden_controls(), (std::set<int>{76, 77}));
    for (SparkBooleanDesc* b : kMasters) b->value = 1;  // every master on: nothing stays hidden
    refresh_controls(Instance);
    Instance.SyncControls();
    EXPECT_TRUE(host.hidden_controls().empty());
    for (SparkBooleanDesc* b : kMasters) b->value = 0;
}

}  // namespace
