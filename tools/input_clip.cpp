#include "tools/input_clip.h"

#include <OpenImageIO/imageio.h>

#include <cmath>
#include <memory>
#include <vector>

#include "tools/open_image.h"

namespace tools {

namespace {

bool is_float(const OIIO::TypeDesc& t) {
    return t.basetype == OIIO::TypeDesc::HALF || t.basetype == OIIO::TypeDesc::FLOAT ||
           t.basetype == OIIO::TypeDesc::DOUBLE;
}

std::string frame_text(const FramePattern& p, int frame) {
    return p.is_sequence() ? " (frame " + std::to_string(frame) + ")" : std::string();
}

Status open_failure(const std::string& role, const std::string& path, const FramePattern& p, int frame,
                    std::string why) {
    if (FILE* f = std::fopen(path.c_str(), "rb")) {
        std::fclose(f);
        if (why.empty()) why = "unreadable or corrupt image";
        // OIIO's messages can span lines; the tool reports on one.
        for (char& c : why)
            if (c == '\n') c = ' ';
        return failure(role + " " + path + frame_text(p, frame) + ": cannot read: " + why);
    }
    return failure(role + " " + path + frame_text(p, frame) + ": missing file");
}

}  // namespace

unsigned host_value_from16(unsigned v16, bool deep) {
    if (!deep) return (v16 * 255u + 32767u) / 65535u;
    return ((v16 * 4095u + 32767u) / 65535u) << 4;
}

unsigned host_value_from_float(float f, bool deep, bool& clipped) {
    // NaN counts as out of range, as black.
    if (!(f >= 0.0f)) {
        clipped = true;
        f = 0.0f;
    } else if (f > 1.0f) {
        clipped = true;
        f = 1.0f;
    }
    const double top = deep ? 4095.0 : 255.0;
    const auto v = static_cast<unsigned>(static_cast<double>(f) * top + 0.5);
    return deep ? v << 4 : v;
}

void fill_buffer(sparkhost::FrameBuffer& b, unsigned level8) {
    const unsigned v = b.deep ? (level8 * 4095u / 255u) << 4 : level8;
    for (int y = 0; y < b.height; ++y)
        for (int x = 0; x < b.width; ++x)
            for (int c = 0; c < 3; ++c) b.set(x, y, c, v);
}

Status InputClip::probe(int frame, ImageInfo& info) const {
    const std::string path = pattern_.at(frame);
    OIIO::ImageSpec header;
    std::string error;
    auto in = open_image(path, header, error);
    if (!in) return open_failure(role_, path, pattern_, frame, error);
    info.width = header.width;
    info.height = header.height;
    if (is_float(header.format)) {
        info.bits = 32;
    } else {
        const int stored = static_cast<int>(header.format.size()) * 8;
        const int bits = header.get_int_attribute("oiio:BitsPerSample", 0);
        info.bits = bits > 0 ? bits : stored;
    }
    return ok_status();
}

Status InputClip::load(int frame, sparkhost::FrameBuffer& buffer, bool& clipped) {
    const std::string path = pattern_.at(frame);
    if (path == loaded_) return ok_status();
    loaded_.clear();
    OIIO::ImageSpec header;
    std::string error;
    auto in = open_image(path, header, error);
    if (!in) return open_failure(role_, path, pattern_, frame, error);
    if (header.width != buffer.width || header.height != buffer.height)
        return usage_error(role_ + " " + path + frame_text(pattern_, frame) + " is " + std::to_string(header.width) +
                           "x" + std::to_string(header.height) + ", the front is " + std::to_string(buffer.width) +
                           "x" + std::to_string(buffer.height) + ": all inputs must have the front's size");
    const int channels = header.nchannels;
    if (channels < 1) return failure(role_ + " " + path + ": the image has no channels");
    // Grey images (mattes) fill R, G and B; a fourth channel (alpha) is not used.
    const int rgb[3] = {0, channels >= 3 ? 1 : 0, channels >= 3 ? 2 : 0};
    const std::size_t count = static_cast<std::size_t>(header.width) * header.height * channels;
    const bool floating = is_float(header.format);
    std::vector<float> floats;
    std::vector<std::uint16_t> ints;
    bool read_ok;
    if (floating) {
        floats.resize(count);
        read_ok = in->read_image(0, 0, 0, channels, OIIO::TypeDesc::FLOAT, floats.data());
    } else {
        // Integer sources are read as 16 bits and rounded to the buffer's
        // depth in integers: no float step that could tip a rounding.
        ints.resize(count);
        read_ok = in->read_image(0, 0, 0, channels, OIIO::TypeDesc::UINT16, ints.data());
    }
    if (!read_ok) {
        std::string why = in->geterror();
        for (char& c : why)
            if (c == '\n') c = ' ';
        return failure(role_ + " " + path + frame_text(pattern_, frame) + ": cannot read: " +
                       (why.empty() ? "corrupt image" : why));
    }
    for (int y = 0; y < header.height; ++y) {
        for (int x = 0; x < header.width; ++x) {
            const std::size_t base = (static_cast<std::size_t>(y) * header.width + x) * channels;
            for (int c = 0; c < 3; ++c) {
                const std::size_t i = base + rgb[c];
                const unsigned v = floating ? host_value_from_float(floats[i], buffer.deep, clipped)
                                            : host_value_from16(ints[i], buffer.deep);
                buffer.set(x, y, c, v);
            }
        }
    }
    loaded_ = path;
    return ok_status();
}

}  // namespace tools
