// The framework image: construction, copies and the pixel operations.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "framework/image.h"
#include "sparkhost/host.h"

namespace {
void fill(ImageQ7& img, std::uint16_t r, std::uint16_t g, std::uint16_t b, std::uint16_t a) {
    for (long y = 0; y < img.height; ++y)
        for (long x = 0; x < img.width; ++x) img.at(x, y) = {r, g, b, a};
}
}  // namespace

TEST(Image, ScaleFollowsWidth) {
    EXPECT_EQ(ImageQ7(720, 2).scale, 1.0f);
    EXPECT_EQ(ImageQ7(1920, 2).scale, 0.375f);
}

TEST(Image, CallersBufferIsLeftAloneAndCopiesAreDeep) {
    auto* pixels = static_cast<PixelQ7*>(std::malloc(sizeof(PixelQ7) * 6));
    pixels[5] = {1, 2, 3, 4};
    {
        ImageQ7 img(3, 2, 0.0f, pixels);
        EXPECT_EQ(img.at(2, 1).b, 3);
        img.aspect = 2.0;
        img.scale = 6.0f;
        ImageQ7 copy(img);
        EXPECT_NE(copy.buffer, img.buffer);
        EXPECT_EQ(copy.aspect, 2.0);
        EXPECT_EQ(copy.scale, 6.0f);
        img.at(2, 1).r = 999;
        EXPECT_EQ(copy.at(2, 1).r, 1);
    }
    EXPECT_EQ(pixels[5].a, 4);  // still ours, still intact
    std::free(pixels);
}

TEST(Image, CopyValuesScalesAndClamps) {
    ImageQ7 src(3, 2), dst(3, 2);
    fill(src, 20000, 3, 0, 32767);
    const struct { float f; PixelQ7 expected; } cases[] = {
        {1.0f, {20000, 3, 0, 32767}}, {2.0f, {32767, 6, 0, 32767}}, {0.5f, {10000, 1, 0, 16383}}, {-1.0f, {0, 0, 0, 0}}};
    for (const auto& c : cases) {
        dst.CopyValues(&src, c.f, c.f, c.f, c.f);
        const PixelQ7 p = dst.at(2, 1);
        EXPECT_EQ(p.r, c.expected.r) << c.f;
        EXPECT_EQ(p.g, c.expected.g) << c.f;
        EXPECT_EQ(p.a, c.expected.a) << c.f;
    }
}

TEST(Image, InBlend) {
    ImageQ7 a(2, 2), b(2, 2);
    fill(a, 0, 100, 32767, 7);
    fill(b, 32767, 200, 0, 7);
    ImageQ7 keep(a);
    a.InBlend(0.0f, &b);
    EXPECT_EQ(a.at(1, 1).g, 100);
    a.InBlend(0.5f, &b);
    EXPECT_EQ(a.at(0, 0).r, 16383);
    EXPECT_EQ(a.at(0, 0).b, 16383);
    EXPECT_EQ(a.at(0, 0).g, 150);
    keep.InBlend(1.0f, &b);
    EXPECT_EQ(keep.at(1, 0).r, 32767);
    EXPECT_EQ(keep.at(1, 0).g, 200);
}

TEST(Image, CopyAlphaOnEveryBand) {
    sparkhost::Host host;
    host.settings.bands = 3;
    host.settings.threads = 2;
    ImageQ7 a(5, 7), b(5, 7);
    fill(a, 1, 2, 3, 4);
    fill(b, 9, 9, 9, 1234);
    a.CopyAlpha(&b);
    int wrong = 0;
    for (long y = 0; y < 7; ++y)
        for (long x = 0; x < 5; ++x) wrong += a.at(x, y).a != 1234 || a.at(x, y).r != 1 || a.at(x, y).b != 3;
    EXPECT_EQ(wrong, 0);
}
