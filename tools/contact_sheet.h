// A contact sheet: one picture with a thumbnail of every rendered frame (or
// every Nth), each labelled with its frame number, in rows under each other.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "sparkhost/host.h"
#include "tools/status.h"

namespace tools {

class ContactSheet {
public:
    ContactSheet(int thumb_width, int every) : thumb_width_(thumb_width), every_(every < 1 ? 1 : every) {}

    // Called for every rendered frame in order; keeps a thumbnail of every Nth.
    void add(int frame, const sparkhost::FrameBuffer& result);
    int thumbnails() const { return static_cast<int>(thumbs_.size()); }
    Status write(const std::string& path) const;

    // The sheet's pixels (8-bit RGB) and size, as write() stores them.
    std::vector<std::uint8_t> compose(int& width, int& height) const;

private:
    struct Thumb {
        int frame;
        std::vector<std::uint8_t> rgb;
    };
    int thumb_width_, every_;
    int thumb_height_ = 0;
    int seen_ = 0;
    std::vector<Thumb> thumbs_;
};

}  // namespace tools
