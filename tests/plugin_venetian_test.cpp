// The VenetianV look measured against its geometry, worked out here from the
// scene rather than from the renderer: ten full-height columns of 72 pixels,
// each turning about its own vertical axis at depth -192, seen in perspective
// from the origin with the focal distance 192.
//
// A point (u, v) from a column's centre, turned by a, shows at u cos a * g
// across and v * g down from it, g = 192 / (192 + u sin a): the edges u = -36
// and +36 stay vertical, and the column is a trapezoid between them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/pipeline_rig.h"

using namespace pipeline_rig;

namespace {

// The number of frame pixel centres inside column k's trapezoid at a degrees.
long pixel_centres_inside(int k, double degrees) {
    const double a = degrees * 0.017453292522222223, s = std::sin(a), c = std::cos(a), centre = 36 + 72 * k;
    const double g0 = 192 / (192 - 36 * s), g1 = 192 / (192 + 36 * s);
    const double x0 = centre - 36 * c * g0, x1 = centre + 36 * c * g1;  // edges u = -36, +36
    long n = 0;
    for (int x = std::max(0, static_cast<int>(std::ceil(std::min(x0, x1)))); x <= std::min(719.0, std::max(x0, x1));
         ++x) {
        const double half = 243 * (g0 + (x - x0) / (x1 - x0) * (g1 - g0));
        for (int y = 0; y < 486; ++y) n += std::fabs(y - 243) <= half;
    }
    return n;
}

}  // namespace

TEST(VenetianV, ShareOfTheBackFollowsTheTurningColumns) {
    Host& host = begin(720, 486);
    // Front channels of at least 16 over a black back: a black pixel is the back.
    fill(host.buffer(kFront), [](int x, int y, int c) { return 16u + static_cast<unsigned>(x * 7 + y * 13 + c) % 240; });
    fill_flat(host.buffer(kBack), {0, 0, 0});
    set(host, 19, 2);  // VenetianV: 10 x 1 elements turning 4 degrees a step
    host.call_callback(19, 0);
    Paneburst& fx = effect(host);
    const FrameBuffer& out = host.buffer(kResult);
    int step = 0;
    for (int n : {5, 15, 22, 37}) {
        ASSERT_TRUE(run(host, n + 1 - step, static_cast<std::uint32_t>(step + 1)));
        step = n + 1;
        const double degrees = 4.0 * n;
        ASSERT_EQ((std::array<float, 3>{float(fx.info.element_count), fx.polygons[9].angle_y, fx.polygons[9].z}),
                  (std::array<float, 3>{10, static_cast<float>(degrees), -192.0f}));
        long inside = 0;
        for (int k = 0; k < 10; ++k) inside += pixel_centres_inside(k, degrees);
        const long back = count(out, [&](int x, int y) { return pixel(out, x, y) == Rgb{0, 0, 0}; });
        // A few pixels either way against the pixel centres inside the trapezoids.
        EXPECT_NEAR(static_cast<double>(back) / (720 * 486), 1.0 - inside / (720.0 * 486), 0.0002) << degrees;
    }
}
