// Shared set-up of the frame pipeline tests: the loaded plug-in on a known
// set of control values, input buffers of chosen content, and pixel access.
// The effect's state is read through its fields only; no member function of
// the plug-in is called from here.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>

#include "effect/paneburst.h"
#include "tests/plugin_fixture.h"

namespace pipeline_rig {

using sparkhost::FrameBuffer;
using sparkhost::Host;

// Host buffer ids.
constexpr int kResult = 1, kFront = 2, kBack = 3, kMatte2D = 4, kMatte3D = 5;

// Render Quality popup values as the host stores them.
constexpr int kHigh = 0, kMed = 1, kLow = 2, kWireframe = 3;

using Rgb = std::array<unsigned, 3>;

inline Paneburst& effect(Host& host) { return *static_cast<Paneburst*>(host.symbol("Instance")); }

inline void set(Host& host, int control, double value) { host.control(control)->set_value(value); }

// Every control the pipeline reads, at the value the pages start with, except
// that Auto Preview is off so that a callback never processes a frame of its
// own: every frame in these tests is one the test asks for.
inline void set_defaults(Host& host) {
    const std::pair<int, double> values[] = {
        {6, 12},  {7, 9},    {8, -192},  {9, -12},   {10, 0},  {11, 0},  {12, 0},  {13, 0},  {14, 0},
        {15, 5},  {16, 0},   {17, 0},    {18, 10},   {20, 60}, {21, 60}, {22, 60}, {23, 100}, {24, 100},
        {25, 100}, {26, 200}, {27, 0},   {30, kMed}, {33, 0},  {34, 0},  {35, 0},  {46, 0},  {49, 0},
        {50, 0},  {51, 0},   {52, 0},    {64, 0},    {71, 0},  {75, 0},  {78, 0},  {82, 0}};
    for (const auto& v : values) set(host, v.first, v.second);
}

// Loads (once) and initialises the plug-in for frames of the given size and
// depth, with the default controls. The next processed frame rebuilds the
// grid.
inline Host& begin(int width, int height, int depth_bits = 8, int bands = 1) {
    Host& host = testing_support::plugin_host();
    host.settings.free_buffers = 16;
    host.settings.threads = 2;
    host.failing_buffers.clear();
    testing::internal::CaptureStdout();
    testing_support::start(host, width, height, depth_bits, bands);
    testing::internal::GetCapturedStdout();
    host.messages.clear();
    set_defaults(host);
    host.call_callback(29, 0);  // Restart
    return host;
}

inline Rgb pixel(const FrameBuffer& b, int x, int y) { return {b.get(x, y, 0), b.get(x, y, 1), b.get(x, y, 2)}; }

// The 12-bit value of a channel (the host word's bits 4 ... 15); the 8-bit
// value unchanged.
inline unsigned value(const FrameBuffer& b, int x, int y, int c) {
    return b.deep ? b.get(x, y, c) >> 4 : b.get(x, y, c);
}

// Fills a buffer from f(x, y, channel), given in the buffer's own range (0 ...
// 255 or 0 ... 4095).
inline void fill(FrameBuffer& b, const std::function<unsigned(int, int, int)>& f) {
    for (int y = 0; y < b.height; ++y)
        for (int x = 0; x < b.width; ++x)
            for (int c = 0; c < 3; ++c) b.set(x, y, c, b.deep ? f(x, y, c) << 4 : f(x, y, c));
}

inline void fill_flat(FrameBuffer& b, Rgb colour) {
    fill(b, [&](int, int, int c) { return colour[static_cast<std::size_t>(c)]; });
}

// A reproducible noisy picture whose channels lie in [low, high].
inline void fill_noise(FrameBuffer& b, unsigned seed, unsigned low, unsigned high) {
    std::uint32_t state = seed * 2654435761u + 12345u;
    fill(b, [&](int, int, int) {
        state = state * 1664525u + 1013904223u;
        return low + (state >> 8) % (high - low + 1);
    });
}

// The number of pixels of `a` whose colour equals that of the same pixel of
// `b` (compared in the host's value range, ignoring 12-bit low bits).
inline long same_pixels(const FrameBuffer& a, const FrameBuffer& b) {
    long n = 0;
    for (int y = 0; y < a.height; ++y)
        for (int x = 0; x < a.width; ++x) {
            bool same = true;
            for (int c = 0; c < 3; ++c) same = same && value(a, x, y, c) == value(b, x, y, c);
            n += same;
        }
    return n;
}

inline long pixel_count(const FrameBuffer& b) { return static_cast<long>(b.width) * b.height; }

// Processes `count` frames numbered first, first + 1, ...; false when one of
// them gave no result.
inline bool run(Host& host, int count, std::uint32_t first = 1) {
    for (int i = 0; i < count; ++i)
        if (host.process(first + static_cast<std::uint32_t>(i)) == nullptr) return false;
    return true;
}

}  // namespace pipeline_rig
