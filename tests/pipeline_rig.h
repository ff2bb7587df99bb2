// Shared set-up of the frame pipeline tests: the loaded plug-in on known
// control values, input buffers of chosen content, and pixel access.
#pragma once

#include <array>
#include <functional>

#include "effect/paneburst.h"
#include "tests/plugin_fixture.h"

namespace pipeline_rig {

using sparkhost::FrameBuffer;
using sparkhost::Host;
using Rgb = std::array<unsigned, 3>;

// Host buffer ids, and the Render Quality popup values as the host stores them.
constexpr int kResult = 1, kFront = 2, kBack = 3, kMatte2D = 4, kMatte3D = 5;
constexpr int kHigh = 0, kMed = 1, kLow = 2, kWireframe = 3;

inline Paneburst& effect(Host& host) { return *static_cast<Paneburst*>(host.symbol("Instance")); }
inline void set(Host& host, int control, double value) { host.control(control)->set_value(value); }

// Initialises the plug-in for frames of the given size and depth with every
// control the pipeline reads at its page default, except Auto Preview off so
// that every frame is one the test asks for. The next frame rebuilds.
inline Host& begin(int width, int height, int depth_bits = 8, int bands = 1) {
    Host& host = testing_support::plugin_host();
    host.settings.free_buffers = 16;
    host.settings.threads = 2;
    testing_support::start(host, width, height, depth_bits, bands);
    const double defaults[][2] = {
        {6, 12}, {7, 9}, {8, -192}, {9, -12}, {10, 0}, {11, 0}, {12, 0}, {13, 0}, {14, 0}, {15, 5}, {16, 0}, {17, 0},
        {18, 10}, {20, 60}, {21, 60}, {22, 60}, {23, 100}, {24, 100}, {25, 100}, {26, 200}, {27, 0}, {30, kMed},
        {33, 0}, {34, 0}, {35, 0}, {46, 0}, {49, 0}, {50, 0}, {51, 0}, {52, 0}, {64, 0}, {71, 0}, {75, 0}, {78, 0},
        {82, 0}};
    for (const auto& v : defaults) set(host, static_cast<int>(v[0]), v[1]);
    host.call_callback(29, 0);  // Restart
    return host;
}

inline Rgb pixel(const FrameBuffer& b, int x, int y) { return {b.get(x, y, 0), b.get(x, y, 1), b.get(x, y, 2)}; }

// A channel in the buffer's own range (12-bit values are the word's bits 4 ... 15).
inline unsigned value(const FrameBuffer& b, int x, int y, int c) { return b.get(x, y, c) >> (b.deep ? 4 : 0); }

// Fills a buffer from f(x, y, channel), given in the buffer's own range.
inline void fill(FrameBuffer& b, const std::function<unsigned(int, int, int)>& f) {
    for (int y = 0; y < b.height; ++y)
        for (int x = 0; x < b.width; ++x)
            for (int c = 0; c < 3; ++c) b.set(x, y, c, b.deep ? f(x, y, c) << 4 : f(x, y, c));
}
inline void fill_flat(FrameBuffer& b, Rgb colour) { fill(b, [&](int, int, int c) { return colour[c]; }); }

// Reproducible noise over the buffer's whole range, front and back.
inline void fill_noise(Host& host, unsigned seed) {
    for (int id : {kFront, kBack}) {
        std::uint32_t state = (seed + id) * 2654435761u + 12345u;
        const unsigned range = host.buffer(id).deep ? 4096 : 256;
        fill(host.buffer(id), [&](int, int, int) { return ((state = state * 1664525u + 1013904223u) >> 8) % range; });
    }
}

// The number of pixels (x, y) of a buffer's frame for which pred holds.
inline long count(const FrameBuffer& b, const std::function<bool(int, int)>& pred) {
    long n = 0;
    for (int y = 0; y < b.height; ++y)
        for (int x = 0; x < b.width; ++x) n += pred(x, y);
    return n;
}

// The pixels of `a` whose colour equals that of `b` (12-bit low bits ignored).
inline long same_pixels(const FrameBuffer& a, const FrameBuffer& b) {
    return count(a, [&](int x, int y) {
        return value(a, x, y, 0) == value(b, x, y, 0) && value(a, x, y, 1) == value(b, x, y, 1) &&
               value(a, x, y, 2) == value(b, x, y, 2);
    });
}

// Processes frames first, first + 1, ...; false when one gave no result.
inline bool run(Host& host, int frames, std::uint32_t first = 1) {
    for (std::uint32_t f = first; f < first + static_cast<std::uint32_t>(frames); ++f)
        if (!host.process(f)) return false;
    return true;
}

}  // namespace pipeline_rig
