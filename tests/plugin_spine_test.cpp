#include <gtest/gtest.h>
#include "tests/plugin_fixture.h"
TEST(Spine, Loads) { EXPECT_EQ(testing_support::plugin_host().clips(), 4); }
