// The VenetianV look measured against its geometry, worked out here from the
// scene rather than from the renderer: ten full-height columns of 72 pixels,
// each turning about its own vertical axis at depth -192, seen in perspective
// from the origin with the focal distance 192.
//
// A point (u, v) of a column (u, v from its centre) turned by a about the
// vertical axis lies at x = u cos a, depth z = -192 - u sin a, and shows at
// u cos a * 192 / (192 + u sin a) across and v * 192 / (192 + u sin a) down
// from the column's centre. The column's two vertical edges (u = -36 and
// +36) stay vertical, so each column is seen as a trapezoid; for 0 < a < 90
// degrees its left edge comes nearer and shows taller.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/pipeline_rig.h"

using namespace pipeline_rig;

namespace {

constexpr double kDegToRad = 0.017453292522222223;
constexpr int kW = 720, kH = 486;

struct Pt {
    double x, y;
};

// One column's outline on screen at angle a (degrees): the edge of u = -36
// first (top, bottom), then that of u = +36 (bottom, top).
struct Column {
    double x_left_edge, half_left;    // edge u = -36
    double x_right_edge, half_right;  // edge u = +36
};

Column column_at(int k, double degrees) {
    const double a = degrees * kDegToRad, s = std::sin(a), c = std::cos(a);
    const double centre = 36 + 72 * k;
    const double g_minus = 192 / (192 - 36 * s), g_plus = 192 / (192 + 36 * s);
    return {centre - 36 * c * g_minus, 243 * g_minus, centre + 36 * c * g_plus, 243 * g_plus};
}

std::vector<Pt> outline(const Column& col) {
    return {{col.x_left_edge, 243 - col.half_left},
            {col.x_left_edge, 243 + col.half_left},
            {col.x_right_edge, 243 + col.half_right},
            {col.x_right_edge, 243 - col.half_right}};
}

// Sutherland-Hodgman: the part of a convex polygon on the side inside(p) of
// one straight border, with cross(p, q) the crossing point of segment p-q.
template <class Inside, class Cross>
std::vector<Pt> clip(const std::vector<Pt>& poly, Inside inside, Cross cross) {
    std::vector<Pt> out;
    for (std::size_t i = 0; i < poly.size(); ++i) {
        const Pt &p = poly[i], &q = poly[(i + 1) % poly.size()];
        if (inside(p)) out.push_back(p);
        if (inside(p) != inside(q)) out.push_back(cross(p, q));
    }
    return out;
}

// Area of the polygon inside the frame, the frame being the pixels' unit
// squares around their centres 0 ... W - 1, 0 ... H - 1.
double area_in_frame(std::vector<Pt> poly) {
    const double x0 = -0.5, x1 = kW - 0.5, y0 = -0.5, y1 = kH - 0.5;
    auto at_x = [](double x) {
        return [x](const Pt& p, const Pt& q) { return Pt{x, p.y + (q.y - p.y) * (x - p.x) / (q.x - p.x)}; };
    };
    auto at_y = [](double y) {
        return [y](const Pt& p, const Pt& q) { return Pt{p.x + (q.x - p.x) * (y - p.y) / (q.y - p.y), y}; };
    };
    poly = clip(poly, [&](const Pt& p) { return p.x >= x0; }, at_x(x0));
    poly = clip(poly, [&](const Pt& p) { return p.x <= x1; }, at_x(x1));
    poly = clip(poly, [&](const Pt& p) { return p.y >= y0; }, at_y(y0));
    poly = clip(poly, [&](const Pt& p) { return p.y <= y1; }, at_y(y1));
    double twice = 0;
    for (std::size_t i = 0; i < poly.size(); ++i) {
        const Pt &p = poly[i], &q = poly[(i + 1) % poly.size()];
        twice += p.x * q.y - q.x * p.y;
    }
    return std::fabs(twice) / 2;
}

// The number of pixel centres of the frame inside a column's outline.
long pixel_centres_inside(const Column& col) {
    const double lo = std::min(col.x_left_edge, col.x_right_edge);
    const double hi = std::max(col.x_left_edge, col.x_right_edge);
    long n = 0;
    for (int x = std::max(0, static_cast<int>(std::ceil(lo))); x <= std::min(kW - 1.0, std::floor(hi)); ++x) {
        const double t = (x - col.x_left_edge) / (col.x_right_edge - col.x_left_edge);
        const double half = col.half_left + t * (col.half_right - col.half_left);
        for (int y = 0; y < kH; ++y) n += std::fabs(y - 243) <= half;
    }
    return n;
}

bool is_back(const FrameBuffer& b, int x, int y) { return pixel(b, x, y) == Rgb{0, 0, 0}; }

}  // namespace

TEST(VenetianV, ShareOfTheBackFollowsTheTurningColumns) {
    Host& host = begin(kW, kH);
    // Every front pixel has channels of at least 16: a black pixel of the
    // result is the back.
    fill_noise(host.buffer(kFront), 31, 16, 255);
    fill_flat(host.buffer(kBack), {0, 0, 0});
    set(host, 19, 2);  // VenetianV
    host.call_callback(19, 0);
    ASSERT_EQ(host.control(6)->value(), 10.0);
    ASSERT_EQ(host.control(7)->value(), 1.0);

    Paneburst& fx = effect(host);
    const FrameBuffer& out = host.buffer(kResult);
    ASSERT_NE(host.process(1), nullptr);
    EXPECT_EQ(fx.info.tile_width, 72);
    EXPECT_EQ(fx.info.grid_x0, 0);
    EXPECT_EQ(fx.info.element_count, 10);
    EXPECT_EQ(same_pixels(out, host.buffer(kBack)), 0);

    const int checked_steps[] = {3, 5, 10, 15, 22, 30, 37};
    int step = 0;
    for (int n : checked_steps) {
        for (; step < n; ++step) ASSERT_NE(host.process(static_cast<std::uint32_t>(step + 2)), nullptr);
        const double degrees = 4.0 * n;
        for (int k = 0; k < 10; ++k) {
            ASSERT_EQ(fx.polygons[k].angle_y, static_cast<float>(degrees));
            ASSERT_EQ(fx.polygons[k].angle_x, 0.0f);
            ASSERT_EQ(fx.polygons[k].x, 36.0f + 72.0f * k);
            ASSERT_EQ(fx.polygons[k].z, -192.0f);
        }

        double covered = 0;
        long centres_covered = 0;
        for (int k = 0; k < 10; ++k) {
            covered += area_in_frame(outline(column_at(k, degrees)));
            centres_covered += pixel_centres_inside(column_at(k, degrees));
        }
        long back = 0;
        for (int y = 0; y < kH; ++y)
            for (int x = 0; x < kW; ++x) back += is_back(out, x, y);
        const double measured_back = static_cast<double>(back) / (kW * kH);
        // The columns' edges all sit at the same fraction of a pixel, so the
        // whole pixels along them do not average out: up to a pixel column
        // per column either way against the area ...
        EXPECT_NEAR(measured_back, 1.0 - covered / (kW * kH), 10.0 * kH / (kW * kH)) << degrees << " degrees";
        // ... and a few pixels against the count of pixel centres inside the
        // trapezoids.
        EXPECT_NEAR(measured_back, 1.0 - static_cast<double>(centres_covered) / (kW * kH), 0.0002)
            << degrees << " degrees";

        // Each column across the middle row, and how tall it shows one pixel
        // inside each vertical edge (clipped to the frame).
        for (int k = 0; k < 10; ++k) {
            const Column col = column_at(k, degrees);
            const double lo = std::min(col.x_left_edge, col.x_right_edge);
            const double hi = std::max(col.x_left_edge, col.x_right_edge);
            const int centre = 36 + 72 * k;
            int first = centre, last = centre;
            while (first > 0 && !is_back(out, first - 1, 243)) --first;
            while (last < kW - 1 && !is_back(out, last + 1, 243)) ++last;
            EXPECT_NEAR(first, std::max(lo, 0.0), 1.0) << degrees << " degrees, column " << k;
            EXPECT_NEAR(last, std::min(hi, kW - 1.0), 1.0) << degrees << " degrees, column " << k;
            for (int side = 0; side < 2; ++side) {
                const int x = side == 0 ? first + 1 : last - 1;
                // The half-height varies linearly between the two edges.
                const double t = (x - col.x_left_edge) / (col.x_right_edge - col.x_left_edge);
                const double half = col.half_left + t * (col.half_right - col.half_left);
                int top = 243;
                while (top > 0 && !is_back(out, x, top - 1)) --top;
                EXPECT_NEAR(top, std::max(243 - half, 0.0), 1.0) << degrees << " degrees, column " << k << ", x " << x;
            }
        }
    }
}
