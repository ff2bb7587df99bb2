// Host buffer <-> framework image conversion: exact channel mappings, the
// reduced working resolution and its enlargement back.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "framework/convert.h"

namespace {

std::vector<std::uint8_t> host8(int w, int h) {
    std::vector<std::uint8_t> b(static_cast<std::size_t>(w) * h * 3);
    for (std::size_t i = 0; i < b.size(); ++i) b[i] = static_cast<std::uint8_t>(i * 7 + i / 3);
    return b;
}

// Host pixel index that encodes its position, to check which sample landed where.
std::vector<std::uint16_t> host12_positions(int w, int h) {
    std::vector<std::uint16_t> b(static_cast<std::size_t>(w) * h * 3);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            b[(y * w + x) * 3 + 0] = static_cast<std::uint16_t>(x << 4);
            b[(y * w + x) * 3 + 1] = static_cast<std::uint16_t>(y << 4);
            b[(y * w + x) * 3 + 2] = 0x000F;
        }
    return b;
}

}  // namespace

TEST(ChannelMapping, EightBitBothWays) {
    EXPECT_EQ(from_host8(0), 0);
    EXPECT_EQ(from_host8(1), 128);
    EXPECT_EQ(from_host8(128), 16448);
    EXPECT_EQ(from_host8(255), 32767);
    EXPECT_EQ(to_host8(32767), 255);
    EXPECT_EQ(to_host8(16448), 128);
    EXPECT_EQ(to_host8(127), 0);
    EXPECT_EQ(to_host8(65535), 255);  // out-of-range channels clamp
    for (int v = 0; v < 256; ++v) EXPECT_EQ(to_host8(from_host8(static_cast<std::uint8_t>(v))), v);
}

TEST(ChannelMapping, TwelveBitBothWays) {
    EXPECT_EQ(from_host12(0xFFF0), 32767);
    EXPECT_EQ(from_host12(0x0010), 8);
    EXPECT_EQ(from_host12(0x001F), 8);  // the low 4 bits carry no data
    EXPECT_EQ(to_host12(0x0005, 32767), 0xFFF5);
    EXPECT_EQ(to_host12(0xFFFA, 0), 0x000A);
    for (unsigned t = 0; t < 4096; ++t) {
        const auto word = static_cast<std::uint16_t>((t << 4) | (t & 15));
        EXPECT_EQ(to_host12(word, from_host12(word)), word);
    }
}

TEST(ConvertFull, RoundTripsEightBit) {
    const int w = 37, h = 11;
    auto in = host8(w, h);
    std::unique_ptr<ImageQ7> img(ConvertFromDLImage8(in.data(), w, h, 1.5, 1, nullptr, 1));
    ASSERT_TRUE(img);
    EXPECT_EQ(img->width, w);
    EXPECT_EQ(img->aspect, 1.5);
    EXPECT_EQ(img->scale, 1.0f);
    EXPECT_EQ(img->at(5, 3).a, 32767);
    std::vector<std::uint8_t> out(in.size(), 0xAB);
    ConvertToDLImage8(img.get(), out.data(), w, h, 1);
    EXPECT_EQ(out, in);
}

TEST(ConvertFull, TwelveBitKeepsLowBitsOfTheTarget) {
    const int w = 4, h = 2;
    auto in = host12_positions(w, h);
    std::unique_ptr<ImageQ7> img(ConvertFromDLImage12(in.data(), w, h, 1.0, 1, nullptr, 1));
    std::vector<std::uint16_t> out(in.size(), 0x0003);
    ConvertToDLImage12(img.get(), out.data(), w, h, 1);
    for (std::size_t i = 0; i < in.size(); ++i) {
        EXPECT_EQ(out[i] >> 4, in[i] >> 4);
        EXPECT_EQ(out[i] & 15, 3);
    }
}

TEST(ConvertFull, NullBufferAndNoCopy) {
    EXPECT_EQ(ConvertFromDLImage8(nullptr, 10, 10, 1.0, 1, nullptr, 1), nullptr);
    ImageQ7 img(2, 2);
    ConvertToDLImage8(&img, nullptr, 2, 2, 1);  // does nothing, must not crash
    std::vector<std::uint8_t> in(12, 255);
    ImageQ7 target(2, 2);
    target.at(0, 0) = {1, 2, 3, 4};
    EXPECT_EQ(ConvertFromDLImage8(in.data(), 2, 2, 1.0, 1, &target, 0), &target);
    EXPECT_EQ(target.at(0, 0).r, 1);  // copying off reads no pixels
}

TEST(ReducedSize, RoundsUpToEven) {
    EXPECT_EQ(reduced_size(720, 2), 360);
    EXPECT_EQ(reduced_size(720, 3), 240);
    EXPECT_EQ(reduced_size(725, 5), 146);
    EXPECT_EQ(reduced_size(486, 4), 122);
    EXPECT_EQ(reduced_size(486, 32), 16);
}

TEST(ConvertReduced, SamplesBlockCentres) {
    const int w = 720, h = 486;
    auto in = host12_positions(w, h);
    for (int s : {2, 3}) {
        std::unique_ptr<ImageQ7> img(ConvertFromDLImage12(in.data(), w, h, 1.0, s, nullptr, 1));
        EXPECT_EQ(img->width, 720 / s);
        EXPECT_EQ(img->scale, static_cast<float>(s));
        for (long x = 0; x < img->width; ++x) EXPECT_EQ(img->at(x, 0).r, from_host12((s / 2 + x * s) << 4));
        EXPECT_EQ(img->at(0, 0).g, from_host12((s / 2) << 4));
    }
    // s = 3: the last sampled column is 718.
    std::unique_ptr<ImageQ7> img3(ConvertFromDLImage12(in.data(), w, h, 1.0, 3, nullptr, 1));
    EXPECT_EQ(img3->at(239, 0).r, from_host12(718 << 4));
}

TEST(ConvertReduced, UnsampledEvenRowRepeatsItsNeighbour) {
    // h = 486 at s = 4: 122 rows but 121 sample positions (rows 2, 6, ..., 482).
    const int w = 40, h = 486;
    auto in = host12_positions(w, h);
    std::unique_ptr<ImageQ7> img(ConvertFromDLImage12(in.data(), w, h, 1.0, 4, nullptr, 1));
    ASSERT_EQ(img->height, 122);
    EXPECT_EQ(img->at(3, 120).g, from_host12(482 << 4));
    for (long x = 0; x < img->width; ++x) {
        EXPECT_EQ(img->at(x, 121).r, img->at(x, 120).r);
        EXPECT_EQ(img->at(x, 121).g, img->at(x, 120).g);
    }
}

TEST(ConvertReduced, NonPositiveFactorIsFullResolution) {
    const int w = 6, h = 4;
    auto in = host8(w, h);
    for (int s : {0, -3}) {
        std::unique_ptr<ImageQ7> img(ConvertFromDLImage8(in.data(), w, h, 1.0, s, nullptr, 1));
        EXPECT_EQ(img->width, w);
        EXPECT_EQ(img->height, h);
        EXPECT_EQ(img->scale, 1.0f);
    }
}

TEST(ConvertReduced, OutputReplicatesBlocksAndLastRowColumn) {
    ImageQ7 img(360, 243);
    for (long y = 0; y < img.height; ++y)
        for (long x = 0; x < img.width; ++x)
            img.at(x, y) = {static_cast<std::uint16_t>((x & 255) << 7), static_cast<std::uint16_t>((y & 255) << 7), 0, 0};
    std::vector<std::uint8_t> out(720 * 486 * 3);
    ConvertToDLImage8(&img, out.data(), 720, 486, 2);
    auto px = [&](int x, int y, int c) { return out[(y * 720 + x) * 3 + c]; };
    EXPECT_EQ(px(719, 0, 0), 359 & 255);
    EXPECT_EQ(px(0, 485, 1), 242);
    EXPECT_EQ(px(5, 7, 0), 2);
    EXPECT_EQ(px(5, 7, 1), 3);
    // A frame that does not divide evenly: the last image column fills the remainder.
    ImageQ7 small(3, 2);
    for (long y = 0; y < 2; ++y)
        for (long x = 0; x < 3; ++x) small.at(x, y) = {static_cast<std::uint16_t>(x << 7), 0, 0, 0};
    std::vector<std::uint8_t> out2(8 * 4 * 3);
    ConvertToDLImage8(&small, out2.data(), 8, 4, 2);
    EXPECT_EQ(out2[(0 * 8 + 7) * 3], 2);
    EXPECT_EQ(out2[(0 * 8 + 6) * 3], 2);
}
