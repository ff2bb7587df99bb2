#pragma once
#include "sparkhost/host.h"

namespace tools {
// A generated test card (colour bars over a grid, with a frame counter strip)
// written into a host buffer.
void draw_test_card(sparkhost::FrameBuffer& buffer, int frame);
// A vertical gradient from dark blue to orange.
void draw_gradient(sparkhost::FrameBuffer& buffer);
}  // namespace tools
