// Conversion between the host's 8-bit and 12-bit RGB frame buffers and
// framework images, reducing to the working resolution on the way in and
// enlarging back on the way out.
#pragma once

#include "framework/image.h"

// The size of an image at reduction s: w / s rounded up to even.
long reduced_size(long full, int s);

ImageQ7* ConvertFromDLImage8(void* host_buffer, long w, long h, double aspect, int s, ImageQ7* image,
                             int copy);
ImageQ7* ConvertFromDLImage12(void* host_buffer, long w, long h, double aspect, int s, ImageQ7* image,
                              int copy);
void ConvertToDLImage8(ImageQ7* image, void* host_buffer, int w, int h, int s);
void ConvertToDLImage12(ImageQ7* image, void* host_buffer, int w, int h, int s);

// Channel mappings.
inline std::uint16_t from_host8(std::uint8_t v) { return static_cast<std::uint16_t>((v << 7) | (v >> 1)); }
inline std::uint16_t from_host12(std::uint16_t word) {
    const unsigned t = word >> 4;
    return static_cast<std::uint16_t>((t << 3) | (t >> 9));
}
inline std::uint8_t to_host8(std::uint16_t c) {
    const unsigned v = c >> 7;
    return static_cast<std::uint8_t>(v > 255 ? 255 : v);
}
inline std::uint16_t to_host12(std::uint16_t old_word, std::uint16_t c) {
    unsigned v = c >> 3;
    if (v > 4095) v = 4095;
    return static_cast<std::uint16_t>((old_word & 15u) | (v << 4));
}
