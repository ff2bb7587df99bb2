#include "framework/image.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "framework/plugin.h"

namespace {
// Images are sized by the host frame. No exception may cross the host boundary
// and a half-built image cannot be used, so running out of memory for one
// stops the process with a message instead of crashing later on a null row.
void* checked_malloc(std::size_t bytes) {
    void* p = std::malloc(bytes == 0 ? 1 : bytes);
    if (!p) {
        std::fprintf(stderr, "SPARK_MESSAGE::\tout of memory allocating an image of %zu bytes\n", bytes);
        std::abort();
    }
    return p;
}

PixelQ7** build_rows(PixelQ7* buffer, long width, long height) {
    auto** rows = static_cast<PixelQ7**>(checked_malloc(sizeof(PixelQ7*) * (height > 0 ? height : 0)));
    for (long y = 0; y < height; ++y) rows[y] = buffer + y * width;
    return rows;
}
}  // namespace

ImageQ7::ImageQ7(long w, long h, float, PixelQ7* buf, renderop_tag* op)
    : width(w), height(h), aspect(1.0), scale(720.0f / static_cast<float>(w)), renderop(op) {
    if (buf) {
        buffer = buf;
        owns_buffer = 0;
    } else {
        buffer = static_cast<PixelQ7*>(checked_malloc(sizeof(PixelQ7) * w * h));
        owns_buffer = 1;
    }
    rows = build_rows(buffer, width, height);
}

ImageQ7::ImageQ7(const ImageQ7& other)
    : width(other.width),
      height(other.height),
      aspect(other.aspect),
      scale(other.scale),
      renderop(other.renderop) {
    buffer = static_cast<PixelQ7*>(checked_malloc(sizeof(PixelQ7) * width * height));
    std::memcpy(buffer, other.buffer, sizeof(PixelQ7) * width * height);
    owns_buffer = 1;
    rows = build_rows(buffer, width, height);
}

ImageQ7::~ImageQ7() {
    if (buffer && owns_buffer) std::free(buffer);
    if (rows) std::free(rows);
    delete[] aux_buffer;
}

void ImageQ7::CopyAlpha(ImageQ7* source) {
    mp_source = source;
    MultiProcess(&ImageQ7::mp_copy_alpha, height);
}

void ImageQ7::mp_copy_alpha(long first, long last) {
    for (long y = first; y <= last; ++y) {
        PixelQ7* dst = rows[y];
        const PixelQ7* src = mp_source->rows[y];
        for (long x = 0; x < width; ++x) dst[x].a = src[x].a;
    }
}

namespace {
inline std::uint16_t scaled_channel(std::uint16_t v, float f) {
    long s = static_cast<long>(static_cast<float>(v) * f);  // truncates toward zero
    if (s < 0) s = 0;
    if (s > kChannelMax) s = kChannelMax;
    return static_cast<std::uint16_t>(s);
}
}  // namespace

namespace {
// The two-image operations below run in bands over this image's rows.
struct TwoImages {
    ImageQ7* target;
    const ImageQ7* source;
    long width;
    float f[4];
};

void copy_rows(void* job, long first, long last) {
    const TwoImages& j = *static_cast<const TwoImages*>(job);
    for (long y = first; y <= last; ++y) std::memcpy(j.target->rows[y], j.source->rows[y], sizeof(PixelQ7) * j.width);
}

void scale_rows(void* job, long first, long last) {
    const TwoImages& j = *static_cast<const TwoImages*>(job);
    for (long y = first; y <= last; ++y) {
        PixelQ7* dst = j.target->rows[y];
        const PixelQ7* src = j.source->rows[y];
        for (long x = 0; x < j.width; ++x) {
            dst[x].r = scaled_channel(src[x].r, j.f[0]);
            dst[x].g = scaled_channel(src[x].g, j.f[1]);
            dst[x].b = scaled_channel(src[x].b, j.f[2]);
            dst[x].a = scaled_channel(src[x].a, j.f[3]);
        }
    }
}

// own u + other t per channel, truncated; u and t in f[0] and f[1].
void blend_rows(void* job, long first, long last) {
    const TwoImages& j = *static_cast<const TwoImages*>(job);
    const float u = j.f[0], t = j.f[1];
    for (long y = first; y <= last; ++y) {
        auto* p = reinterpret_cast<std::uint16_t*>(j.target->rows[y]);
        const auto* o = reinterpret_cast<const std::uint16_t*>(j.source->rows[y]);
        for (long i = 0; i < 4 * j.width; ++i)
            p[i] = static_cast<std::uint16_t>(static_cast<long>(p[i] * u + o[i] * t));
    }
}
}  // namespace

void ImageQ7::CopyValues(ImageQ7* source, float fr, float fg, float fb, float fa) {
    TwoImages job{this, source, source->width, {fr, fg, fb, fa}};
    const bool plain = fr == 1.0f && fg == 1.0f && fb == 1.0f && fa == 1.0f;
    run_in_bands(plain ? &copy_rows : &scale_rows, &job, source->height);
}

void ImageQ7::InBlend(float t, ImageQ7* other) {
    TwoImages job{this, other, width, {1.0f - t, t, 0.0f, 0.0f}};
    run_in_bands(&blend_rows, &job, height);
}
