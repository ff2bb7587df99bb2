#pragma once
#include "sparkhost/host.h"

namespace tools {
// A generated test card (colour bars over a grid, the frame number, and a
// strip whose lit cell moves with the frame)
// written into a host buffer.
void draw_test_card(sparkhost::FrameBuffer& buffer, int frame);
// A vertical gradient from dark blue to orange.
void draw_gradient(sparkhost::FrameBuffer& buffer);
}  // namespace tools
