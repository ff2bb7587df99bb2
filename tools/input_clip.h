// One input of the effect (front, back, 2D matte, 3D matte) read from image
// files through OpenImageIO into the host's frame buffer.
#pragma once
#include <string>

#include "sparkhost/host.h"
#include "tools/frame_pattern.h"
#include "tools/status.h"

namespace tools {

// What a file holds before it is loaded.
struct ImageInfo {
    int width = 0, height = 0;
    int bits = 8;  // significant bits of a channel; 32 for floating point
};

class InputClip {
public:
    InputClip(std::string role, const std::string& pattern) : role_(std::move(role)), pattern_(pattern) {}

    const std::string& role() const { return role_; }
    bool given() const { return !pattern_.empty(); }
    const FramePattern& pattern() const { return pattern_; }

    Status probe(int frame, ImageInfo& info) const;
    // Reads the frame into `buffer`, which already has the front's size and
    // the render's depth. A still is read once and kept. Float values
    // outside 0..1 are clipped; `clipped` is set when that happened.
    Status load(int frame, sparkhost::FrameBuffer& buffer, bool& clipped);

private:
    std::string role_;
    FramePattern pattern_;
    std::string loaded_;  // the file the buffer holds (stills are not read again)
};

// Fills a buffer with one grey level given in 8-bit terms (0 black, 255 white).
void fill_buffer(sparkhost::FrameBuffer& buffer, unsigned level8);

// The host buffer value of a channel read as 16-bit (an 8-bit source gives
// v * 257): rounded to the buffer's depth. 12-bit values sit in bits 4..15.
unsigned host_value_from16(unsigned v16, bool deep);
// The same for a floating-point value, clipped to 0..1 first.
unsigned host_value_from_float(float f, bool deep, bool& clipped);

}  // namespace tools
