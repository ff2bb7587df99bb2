// Host buffer <-> framework image conversion: exact channel mappings, the
// reduced size, and the edge cases of the converters. The sampling and
// replication of reduced resolutions are checked end to end in the plug-in
// tests, where the whole frame is compared.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "framework/convert.h"

TEST(ChannelMapping, EightBitBothWays) {
    const struct { int host, image; } in[] = {{0, 0}, {1, 128}, {128, 16448}, {255, 32767}};
    for (const auto& c : in) EXPECT_EQ(from_host8(static_cast<std::uint8_t>(c.host)), c.image) << c.host;
    const struct { int image, host; } out[] = {{32767, 255}, {16448, 128}, {127, 0}, {65535, 255}};
    for (const auto& c : out) EXPECT_EQ(to_host8(static_cast<std::uint16_t>(c.image)), c.host) << c.image;
    for (int v = 0; v < 256; ++v) EXPECT_EQ(to_host8(from_host8(static_cast<std::uint8_t>(v))), v);
}

TEST(ChannelMapping, TwelveBitIgnoresAndKeepsTheLowFourBits) {
    EXPECT_EQ(from_host12(0xFFF0), 32767);
    EXPECT_EQ(from_host12(0x0010), 8);
    EXPECT_EQ(from_host12(0x001F), 8);
    EXPECT_EQ(to_host12(0x0005, 32767), 0xFFF5);
    EXPECT_EQ(to_host12(0xFFFA, 0), 0x000A);
    for (unsigned t = 0; t < 4096; ++t) {
        const auto word = static_cast<std::uint16_t>((t << 4) | (t & 15));
        EXPECT_EQ(to_host12(word, from_host12(word)), word);
    }
}

TEST(ReducedSize, RoundsUpToEven) {
    const struct { int full, s, expected; } cases[] = {
        {720, 2, 360}, {720, 3, 240}, {725, 5, 146}, {486, 4, 122}, {486, 32, 16}};
    for (const auto& c : cases) EXPECT_EQ(reduced_size(c.full, c.s), c.expected) << c.full << " / " << c.s;
}

TEST(ConvertFrom, HeaderScaleAndOpaqueAlpha) {
    std::vector<std::uint8_t> in(6 * 4 * 3, 9);
    std::unique_ptr<ImageQ7> half(ConvertFromDLImage8(in.data(), 6, 4, 1.5, 2, nullptr, 1));
    EXPECT_EQ(half->width, 4);  // 3 rounded up to even
    EXPECT_EQ(half->scale, 2.0f);
    // A factor of 0 or below is full resolution.
    for (int s : {1, 0, -3}) {
        std::unique_ptr<ImageQ7> img(ConvertFromDLImage8(in.data(), 6, 4, 1.5, s, nullptr, 1));
        ASSERT_TRUE(img) << s;
        EXPECT_EQ(img->width, 6);
        EXPECT_EQ(img->height, 4);
        EXPECT_EQ(img->aspect, 1.5);
        EXPECT_EQ(img->scale, 1.0f);
        EXPECT_EQ(img->at(5, 3).a, 32767);
    }
}

TEST(ConvertFrom, NullBufferAndNoCopy) {
    EXPECT_EQ(ConvertFromDLImage8(nullptr, 10, 10, 1.0, 1, nullptr, 1), nullptr);
    ImageQ7 img(2, 2);
    ConvertToDLImage8(&img, nullptr, 2, 2, 1);  // does nothing, must not crash
    std::vector<std::uint8_t> in(12, 255);
    img.at(0, 0) = {1, 2, 3, 4};
    EXPECT_EQ(ConvertFromDLImage8(in.data(), 2, 2, 1.0, 1, &img, 0), &img);
    EXPECT_EQ(img.at(0, 0).r, 1);  // copying off reads no pixels
}
