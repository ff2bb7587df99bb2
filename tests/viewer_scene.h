// The scene shared by the viewer tests: the real plug-in loaded through the
// stand-in host, a small frame, and a still grid (no motion, no forces) that
// a test sets in motion when it needs to.
#pragma once

#include <gtest/gtest.h>

#include "tests/plugin_fixture.h"
#include "tests/viewer_calls.h"

namespace viewer {

// Frame 120 x 90 with the default 12 x 9 elements: 10-pixel tiles, columns
// starting at x = 0 and rows at y = -5 (a tile edge on the centre row 45).
constexpr int kFrameW = 120;
constexpr int kFrameH = 90;

inline sparkhost::Host& start_scene(int width = kFrameW, int height = kFrameH) {
    sparkhost::Host& host = testing_support::plugin_host();
    testing_support::start(host, width, height, 8, 1);
    testing_support::fill_inputs(host);
    // Nothing moves or turns until a test says so.
    for (int n : {13, 14, 15, 16, 17, 18, 20, 21, 22}) set(host, n, 0.0);
    return host;
}

// Expected values of the tests are computed in double from the formulas;
// the plug-in computes in single precision.
constexpr float kTol = 1e-3f;

}  // namespace viewer
