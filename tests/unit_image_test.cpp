// The framework image: construction, copies and the pixel operations.
#include <gtest/gtest.h>

#include <cstdlib>

#include "framework/image.h"
#include "sparkhost/host.h"

namespace {
void fill(ImageQ7& img, PixelQ7 p) { std::fill(img.buffer, img.buffer + img.width * img.height, p); }
bool equal(PixelQ7 a, PixelQ7 b) { return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a; }
}  // namespace

TEST(Image, ScaleFollowsWidthCallersBufferIsLeftAloneAndCopiesAreDeep) {
    EXPECT_TRUE(ImageQ7(720, 2).scale == 1.0f && ImageQ7(1920, 2).scale == 0.375f);
    auto* pixels = static_cast<PixelQ7*>(std::malloc(sizeof(PixelQ7) * 6));
    pixels[5] = {1, 2, 3, 4};
    {
        ImageQ7 img(3, 2, 0.0f, pixels);
        img.aspect = 2.0;
        ImageQ7 copy(img);
        img.at(2, 1).r = 999;
        EXPECT_TRUE(copy.buffer != img.buffer && copy.aspect == 2.0 && equal(copy.at(2, 1), {1, 2, 3, 4}));
    }
    EXPECT_TRUE(equal(pixels[5], {999, 2, 3, 4}));  // still ours, still intact
    std::free(pixels);
}

TEST(Image, CopyValuesInBlendAndCopyAlphaOnEveryBand) {
    ImageQ7 src(3, 2), dst(3, 2), a(2, 2), b(2, 2);
    fill(src, {20000, 3, 0, 32767});
    const struct { float f; PixelQ7 expected; } cases[] = {
        {1.0f, {20000, 3, 0, 32767}}, {2.0f, {32767, 6, 0, 32767}}, {0.5f, {10000, 1, 0, 16383}}, {-1.0f, {0, 0, 0, 0}}};
    for (const auto& c : cases)
        EXPECT_TRUE(equal((dst.CopyValues(&src, c.f, c.f, c.f, c.f), dst.at(2, 1)), c.expected)) << c.f;

    fill(a, {0, 100, 32767, 7});
    fill(b, {32767, 200, 0, 7});
    ImageQ7 keep(a);
    a.InBlend(0.0f, &b);
    EXPECT_EQ(a.at(1, 1).g, 100);
    a.InBlend(0.5f, &b);
    EXPECT_TRUE(equal(a.at(0, 0), {16383, 150, 16383, 7}));
    keep.InBlend(1.0f, &b);
    EXPECT_TRUE(equal(keep.at(1, 0), b.at(1, 0)));

    sparkhost::Host host;
    host.settings.bands = 3, host.settings.threads = 2;
    ImageQ7 c(5, 7), d(5, 7);
    fill(c, {1, 2, 3, 4});
    fill(d, {9, 9, 9, 1234});
    c.CopyAlpha(&d);
    for (long i = 0; i < 35; ++i) ASSERT_TRUE(equal(c.buffer[i], {1, 2, 3, 1234})) << i;
}
