// Loads the real plug-in file through the stand-in host.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "sparkhost/host.h"

namespace testing_support {

// The host for this test process (the plug-in's effect object is one per
// process, as in the real host). Made on first use.
sparkhost::Host& plugin_host();

// Fills the four input buffers with distinct, reproducible patterns.
void fill_inputs(sparkhost::Host& host, unsigned seed = 1);

// Sets up frame size, depth and bands, then calls SparkInitialise.
void start(sparkhost::Host& host, int width, int height, int depth_bits, int bands);

}  // namespace testing_support
