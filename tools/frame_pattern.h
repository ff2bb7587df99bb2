// File names of image sequences: "shot.%04d.exr", "shot.####.dpx" or a still
// used for every frame; and frame ranges ("1-100", "7").
#pragma once
#include <string>

#include "tools/status.h"

namespace tools {

class FramePattern {
public:
    FramePattern() = default;
    explicit FramePattern(std::string text);

    const std::string& text() const { return text_; }
    bool empty() const { return text_.empty(); }
    // True when the name holds a frame number ("%d", "%04d" or a run of '#').
    bool is_sequence() const { return token_length_ > 0; }
    // The file name of a frame; a still gives its own name for every frame.
    std::string at(int frame) const;
    // Why the name cannot name output files (a second frame number, or one
    // in a folder name); empty when it can.
    std::string output_problem() const;
    // The frame whose file name is `name`, when it is one of the sequence.
    bool frame_of(const std::string& name, int& frame) const;

private:
    std::string text_;
    std::size_t token_start_ = 0;
    std::size_t token_length_ = 0;  // 0: a still
    int digits_ = 0;                // zero-padded width; 0 or 1: no padding
};

struct FrameRange {
    int first = 1;
    int last = 1;
    int count() const { return last - first + 1; }
};

// The highest frame number accepted. The host's animation channels hold
// frames as single-precision floats, exact only up to 2^24; a round decimal
// limit below that keeps every key on its frame.
constexpr int kMaxFrame = 9999999;

// "A-B" or "A"; frames are whole numbers 0 ... kMaxFrame (the host's frame
// numbers are unsigned). An empty or backwards range is a usage error.
Status parse_frame_range(const std::string& text, FrameRange& range);
// One frame number given to `option` ("--shot-start").
Status parse_frame_number(const std::string& option, const std::string& text, int& frame);

}  // namespace tools
