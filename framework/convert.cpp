#include "framework/convert.h"

#include <cstdint>

long reduced_size(long full, int s) {
    const long q = full / s;
    return (q % 2 == 0) ? q : q + 1;
}

namespace {

struct Host8 {
    typedef std::uint8_t Word;
    static std::uint16_t in(Word w) { return from_host8(w); }
    static Word out(Word, std::uint16_t c) { return to_host8(c); }
};
struct Host12 {
    typedef std::uint16_t Word;
    static std::uint16_t in(Word w) { return from_host12(w); }
    static Word out(Word old, std::uint16_t c) { return to_host12(old, c); }
};

template <class Fmt>
inline void read_pixel(const typename Fmt::Word* src, PixelQ7& p) {
    p.r = Fmt::in(src[0]);
    p.g = Fmt::in(src[1]);
    p.b = Fmt::in(src[2]);
    p.a = kChannelMax;
}

template <class Fmt>
inline void write_pixel(const PixelQ7& p, typename Fmt::Word* dst) {
    dst[0] = Fmt::out(dst[0], p.r);
    dst[1] = Fmt::out(dst[1], p.g);
    dst[2] = Fmt::out(dst[2], p.b);
}

template <class Fmt>
ImageQ7* convert_from(void* host_buffer, long w, long h, double aspect, int s, ImageQ7* image, int copy) {
    if (!host_buffer) return nullptr;
    if (s < 1) s = 1;
    const auto* src = static_cast<const typename Fmt::Word*>(host_buffer);

    if (s == 1) {
        if (!image) image = new ImageQ7(w, h);
        image->aspect = aspect;
        image->scale = 1.0f;
        if (copy) {
            for (long y = 0; y < image->height; ++y) {
                PixelQ7* row = image->rows[y];
                const typename Fmt::Word* in = src + y * w * 3;
                for (long x = 0; x < image->width; ++x) read_pixel<Fmt>(in + x * 3, row[x]);
            }
        }
        return image;
    }

    const long W = reduced_size(w, s);
    const long H = reduced_size(h, s);
    if (!image) image = new ImageQ7(W, H);
    image->aspect = aspect;
    image->scale = static_cast<float>(s);
    if (!copy) return image;

    // Point samples at the centre of each s x s block.
    long ty = 0, sampled_rows = 0, sampled_cols = 0;
    for (long y = s / 2; y < h && ty < H; y += s, ++ty) {
        PixelQ7* row = image->rows[ty];
        const typename Fmt::Word* in = src + y * w * 3;
        long tx = 0;
        for (long x = s / 2; x < w && tx < W; x += s, ++tx) read_pixel<Fmt>(in + x * 3, row[tx]);
        sampled_cols = tx;
    }
    sampled_rows = ty;

    // Rounding the size up to even can leave one row or column with no sample
    // position (h = 486 at s = 4: 122 rows, 121 samples). It repeats its
    // neighbour, so that the enlarged result never shows uninitialised memory.
    if (sampled_cols > 0) {
        for (long y = 0; y < sampled_rows; ++y)
            for (long x = sampled_cols; x < W; ++x) image->rows[y][x] = image->rows[y][sampled_cols - 1];
    }
    if (sampled_rows > 0) {
        for (long y = sampled_rows; y < H; ++y)
            for (long x = 0; x < W; ++x) image->rows[y][x] = image->rows[sampled_rows - 1][x];
    }
    return image;
}

template <class Fmt>
void convert_to(ImageQ7* image, void* host_buffer, int w, int h, int s) {
    if (!host_buffer) return;
    if (s < 1) s = 1;
    auto* dst = static_cast<typename Fmt::Word*>(host_buffer);

    if (s == 1) {
        for (long y = 0; y < image->height; ++y) {
            const PixelQ7* row = image->rows[y];
            typename Fmt::Word* out = dst + y * image->width * 3;
            for (long x = 0; x < image->width; ++x) write_pixel<Fmt>(row[x], out + x * 3);
        }
        return;
    }

    // A frame smaller than one block has an empty working image: nothing to enlarge.
    if (image->width <= 0 || image->height <= 0) return;
    for (long y = 0; y < h; ++y) {
        long iy = y / s;
        if (iy > image->height - 1) iy = image->height - 1;
        const PixelQ7* row = image->rows[iy];
        typename Fmt::Word* out = dst + static_cast<long>(y) * w * 3;
        for (long x = 0; x < w; ++x) {
            long ix = x / s;
            if (ix > image->width - 1) ix = image->width - 1;
            write_pixel<Fmt>(row[ix], out + x * 3);
        }
    }
}

}  // namespace

ImageQ7* ConvertFromDLImage8(void* host_buffer, long w, long h, double aspect, int s, ImageQ7* image, int copy) {
    return convert_from<Host8>(host_buffer, w, h, aspect, s, image, copy);
}

ImageQ7* ConvertFromDLImage12(void* host_buffer, long w, long h, double aspect, int s, ImageQ7* image,
                              int copy) {
    return convert_from<Host12>(host_buffer, w, h, aspect, s, image, copy);
}

void ConvertToDLImage8(ImageQ7* image, void* host_buffer, int w, int h, int s) {
    convert_to<Host8>(image, host_buffer, w, h, s);
}

void ConvertToDLImage12(ImageQ7* image, void* host_buffer, int w, int h, int s) {
    convert_to<Host12>(image, host_buffer, w, h, s);
}
