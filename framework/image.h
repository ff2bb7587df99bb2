// The framework's image: four 16-bit channels per pixel holding 15-bit values
// (0 ... 32767), reached through a table of row pointers.
#pragma once

#include <cstdint>

struct renderop_tag;

struct PixelQ7 {
    std::uint16_t r, g, b, a;
};
static_assert(sizeof(PixelQ7) == 8, "PixelQ7 is four packed 16-bit channels");

constexpr std::uint16_t kChannelMax = 32767;

class ImageQ7 {
public:
    typedef void (ImageQ7::*MpFunc)(long first, long last);

    // The float argument is accepted for compatibility and not used.
    ImageQ7(long width, long height, float unused = 0.0f, PixelQ7* buffer = nullptr,
            renderop_tag* renderop = nullptr);
    ImageQ7(const ImageQ7& other);
    ImageQ7& operator=(const ImageQ7&) = delete;
    virtual ~ImageQ7();

    PixelQ7& at(long x, long y) { return rows[y][x]; }
    const PixelQ7& at(long x, long y) const { return rows[y][x]; }

    void CopyAlpha(ImageQ7* source);
    void mp_copy_alpha(long first, long last);
    void CopyValues(ImageQ7* source, float fr, float fg, float fb, float fa);
    void InBlend(float t, ImageQ7* other);

    int MultiProcess(MpFunc func, long lines);
    int AbortRender() { return 0; }

    PixelQ7* buffer = nullptr;
    int owns_buffer = 0;
    ImageQ7* mp_source = nullptr;
    PixelQ7** rows = nullptr;
    long width = 0;
    long height = 0;
    double aspect = 1.0;
    float scale = 1.0f;
    renderop_tag* renderop = nullptr;
    unsigned char* aux_buffer = nullptr;  // only operations outside this system attach one
};
