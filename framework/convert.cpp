#include "framework/convert.h"

#include <cstdint>

#include "framework/plugin.h"

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

// One conversion, shared by its band workers: each band converts whole rows
// of the image (on the way in) or of the host frame (on the way out), so the
// bands touch disjoint memory.
template <class Fmt>
struct Conversion {
    typename Fmt::Word* host;
    ImageQ7* image;
    long w, h;  // host frame size
    int s;
    // At reduction: image rows and columns that have a sample position; the
    // ones beyond repeat the last sampled one.
    long sampled_rows, sampled_cols;
};

// A full-resolution row in: the channel mapping with alpha opaque. Plain
// loops over arrays, written so that the compiler can vectorise them.
template <class Fmt>
inline void read_row(const typename Fmt::Word* in, PixelQ7* out, long n) {
    auto* o = reinterpret_cast<std::uint16_t*>(out);
    for (long x = 0; x < n; ++x) {
        o[4 * x] = Fmt::in(in[3 * x]);
        o[4 * x + 1] = Fmt::in(in[3 * x + 1]);
        o[4 * x + 2] = Fmt::in(in[3 * x + 2]);
        o[4 * x + 3] = kChannelMax;
    }
}

template <class Fmt>
inline void write_pixel(const PixelQ7& p, typename Fmt::Word* dst) {
    dst[0] = Fmt::out(dst[0], p.r);
    dst[1] = Fmt::out(dst[1], p.g);
    dst[2] = Fmt::out(dst[2], p.b);
}

template <class Fmt>
void convert_in_rows(void* job, long first, long last) {
    const Conversion<Fmt>& c = *static_cast<const Conversion<Fmt>*>(job);
    const typename Fmt::Word* src = c.host;
    ImageQ7* image = c.image;
    if (c.s == 1) {
        for (long y = first; y <= last; ++y) read_row<Fmt>(src + y * c.w * 3, image->rows[y], image->width);
        return;
    }
    // Point samples at the centre of each s x s block. Rounding the size up
    // to even can leave one row or column with no sample position (h = 486
    // at s = 4: 122 rows, 121 samples); it repeats its neighbour, so that the
    // enlarged result never shows uninitialised memory.
    if (c.sampled_rows == 0 || c.sampled_cols == 0) return;
    const long half = c.s / 2;
    for (long ty = first; ty <= last; ++ty) {
        const long sy = (ty < c.sampled_rows ? ty : c.sampled_rows - 1) * c.s + half;
        const typename Fmt::Word* in = src + sy * c.w * 3;
        PixelQ7* row = image->rows[ty];
        for (long tx = 0; tx < image->width; ++tx) {
            const long sx = (tx < c.sampled_cols ? tx : c.sampled_cols - 1) * c.s + half;
            row[tx].r = Fmt::in(in[sx * 3]);
            row[tx].g = Fmt::in(in[sx * 3 + 1]);
            row[tx].b = Fmt::in(in[sx * 3 + 2]);
            row[tx].a = kChannelMax;
        }
    }
}

// Sample positions s/2, s/2 + s, ... below `full`, at most `size` of them.
long sample_count(long full, int s, long size) {
    const long half = s / 2;
    const long n = full > half ? (full - half + s - 1) / s : 0;
    return n < size ? n : size;
}

template <class Fmt>
ImageQ7* convert_from(void* host_buffer, long w, long h, double aspect, int s, ImageQ7* image, int copy) {
    if (!host_buffer) return nullptr;
    if (s < 1) s = 1;
    const long W = s == 1 ? w : reduced_size(w, s);
    const long H = s == 1 ? h : reduced_size(h, s);
    if (!image) image = new ImageQ7(W, H);
    image->aspect = aspect;
    image->scale = static_cast<float>(s);
    if (!copy) return image;
    Conversion<Fmt> job{static_cast<typename Fmt::Word*>(host_buffer), image, w, h, s, 0, 0};
    if (s > 1) {
        job.sampled_rows = sample_count(h, s, H);
        job.sampled_cols = sample_count(w, s, W);
    }
    run_in_bands(&convert_in_rows<Fmt>, &job, image->height);
    return image;
}

template <class Fmt>
void convert_out_rows(void* job, long first, long last) {
    const Conversion<Fmt>& c = *static_cast<const Conversion<Fmt>*>(job);
    const ImageQ7* image = c.image;
    if (c.s == 1) {
        for (long y = first; y <= last; ++y) {
            const PixelQ7* row = image->rows[y];
            typename Fmt::Word* out = c.host + y * image->width * 3;
            for (long x = 0; x < image->width; ++x) write_pixel<Fmt>(row[x], out + x * 3);
        }
        return;
    }
    for (long y = first; y <= last; ++y) {
        long iy = y / c.s;
        if (iy > image->height - 1) iy = image->height - 1;
        const PixelQ7* row = image->rows[iy];
        typename Fmt::Word* out = c.host + y * c.w * 3;
        for (long x = 0; x < c.w; ++x) {
            long ix = x / c.s;
            if (ix > image->width - 1) ix = image->width - 1;
            write_pixel<Fmt>(row[ix], out + x * 3);
        }
    }
}

template <class Fmt>
void convert_to(ImageQ7* image, void* host_buffer, int w, int h, int s) {
    if (!host_buffer) return;
    if (s < 1) s = 1;
    // A frame smaller than one block has an empty working image: nothing to enlarge.
    if (s > 1 && (image->width <= 0 || image->height <= 0)) return;
    Conversion<Fmt> job{static_cast<typename Fmt::Word*>(host_buffer), image, w, h, s, 0, 0};
    run_in_bands(&convert_out_rows<Fmt>, &job, s == 1 ? image->height : h);
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
