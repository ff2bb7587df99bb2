// paneburst-render on real files of each format: with Blend 100 the result is
// the front image, so what comes out shows exactly how the tool maps file
// values into the host's 8- or 12-bit buffers and back out to files.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/tool_support.h"

using namespace tool_support;

namespace {

// Rounded 16-bit -> 12-bit, and 12-bit widened to 16 by bit replication.
unsigned to12(unsigned v16) { return (v16 * 4095u + 32767u) / 65535u; }
unsigned widen12(unsigned t) { return (t << 4) | (t >> 8); }

std::vector<std::uint16_t> ramp16(std::size_t n, unsigned step) {
    std::vector<std::uint16_t> px(n);
    for (std::size_t i = 0; i < n; ++i) px[i] = static_cast<std::uint16_t>(i * step % 65536);
    return px;
}

}  // namespace

TEST(ToolFormats, Png8BitSequenceComesBackUnchangedAtBlend100) {
    TempDir dir;
    const int w = 24, h = 10;
    for (int f = 1; f <= 2; ++f)
        write_picture(dir.path("shot.00" + std::to_string(f) + ".png"), w, h, 3, "uint8", pattern8(w, h, f).data());
    const ToolRun r = dir.render(
        {"--front", "shot.%03d.png", "--frames", "1-2", "--blend", "100", "--out", "out/res.####.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    for (int f = 1; f <= 2; ++f) {
        EXPECT_EQ(read_picture(dir.path("out/res.000" + std::to_string(f) + ".png")).format, "uint8");
        expect_picture8(dir.path("out/res.000" + std::to_string(f) + ".png"), pattern8(w, h, f));
    }
}

TEST(ToolFormats, Tiff16BitRendersIn12BitsAndWrites16) {
    TempDir dir;
    std::vector<std::uint16_t> px = ramp16(16 * 8 * 3, 517);
    px[0] = 0;
    px[1] = 65535;
    px[2] = 8;  // 8 * 4095 / 65535 = 0.4999: rounds to 0
    px[3] = 9;  // 0.56: rounds to 1
    write_picture(dir.path("front.tif"), 16, 8, 3, "uint16", px.data());
    const ToolRun r = dir.render({"--front", "front.tif", "--blend", "100", "--out", "res.tif", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    const Picture p = read_picture(dir.path("res.tif"));
    EXPECT_EQ(p.format, "uint16");
    ASSERT_EQ(p.ints.size(), px.size());
    for (std::size_t i = 0; i < px.size(); ++i) ASSERT_EQ(p.ints[i], widen12(to12(px[i]))) << i;
}

TEST(ToolFormats, DepthEightForcesEightBitBuffersAndFiles) {
    TempDir dir;
    std::vector<std::uint16_t> px = {0, 128, 129, 32767, 65535, 257};
    write_picture(dir.path("front.tif"), 2, 1, 3, "uint16", px.data());
    const ToolRun r = dir.render({"--front", "front.tif", "--depth", "8", "--blend", "100", "--out", "res.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(read_picture(dir.path("res.png")).format, "uint8");
    // (v * 255 + 32767) / 65535: 128 -> 0 (0.498), 129 -> 1 (0.502).
    expect_picture8(dir.path("res.png"), {0, 0, 1, 127, 255, 1});
}

TEST(ToolFormats, ExrFloatIsClippedOnceAndWrittenAsExactRatios) {
    TempDir dir;
    const std::vector<float> px = {-0.5f, 0.0f, 1.0f, 1.5f, 0.5f, 0.25f, 1e-4f, 0.9999f, 0.1f, 0.3f, 0.7f, 0.6f,
                                   0.0f,  0.0f, 0.0f, 2.0f, 0.2f, 0.4f,  0.8f,  0.05f,   0.0f, 1.0f, 0.5f, 0.5f};
    write_picture(dir.path("front.exr"), 4, 2, 3, "float", px.data());
    const ToolRun r =
        dir.render({"--front", "front.exr", "--frames", "1-3", "--blend", "100", "--out", "res.%04d.exr", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(count(r.err, "clipped"), 1) << r.err;
    EXPECT_NE(r.err.find("front.exr"), std::string::npos) << r.err;
    const Picture p = read_picture(dir.path("res.0003.exr"));
    EXPECT_EQ(p.format, "float");
    ASSERT_EQ(p.floats.size(), px.size());
    for (std::size_t i = 0; i < px.size(); ++i) {
        const double clipped = px[i] < 0 ? 0.0 : px[i] > 1 ? 1.0 : px[i];
        EXPECT_EQ(p.floats[i], static_cast<float>(std::floor(clipped * 4095.0 + 0.5)) / 4095.0f) << i;
    }
}

TEST(ToolFormats, Dpx10BitInRendersIn12BitsAndWritesDpx12) {
    TempDir dir;
    const std::vector<std::uint16_t> px = ramp16(8 * 4 * 3, 2731);
    write_picture(dir.path("plate.0007.dpx"), 8, 4, 3, "uint16", px.data(), 10);
    const Picture in = read_picture(dir.path("plate.0007.dpx"));
    ASSERT_EQ(in.bits, 10);
    const ToolRun r =
        dir.render({"--front", "plate.####.dpx", "--frames", "7", "--blend", "100", "--out", "res.####.dpx", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    const Picture p = read_picture(dir.path("res.0007.dpx"));
    EXPECT_EQ(p.bits, 12);
    ASSERT_EQ(p.ints.size(), in.ints.size());
    for (std::size_t i = 0; i < in.ints.size(); ++i) ASSERT_EQ(p.ints[i], widen12(to12(in.ints[i]))) << i;
}

TEST(ToolFormats, MattesOfOneChannelAndAStillBackAreAccepted) {
    TempDir dir;
    const int w = 12, h = 6;
    write_picture(dir.path("front.png"), w, h, 3, "uint8", pattern8(w, h, 3).data());
    write_picture(dir.path("back.png"), w, h, 3, "uint8", pattern8(w, h, 9).data());
    std::vector<std::uint8_t> grey(w * h, 128);
    write_picture(dir.path("m2.png"), w, h, 1, "uint8", grey.data());
    write_picture(dir.path("m3.tif"), w, h, 1, "uint8", grey.data());
    const ToolRun r = dir.render({"--front", "front.png", "--back", "back.png", "--matte2d", "m2.png", "--matte3d",
                                  "m3.tif", "--frames", "1-2", "--blend", "100", "--out", "o.%d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    expect_picture8(dir.path("o.2.png"), pattern8(w, h, 3));
}

TEST(ToolFormats, BuiltInTestCardRendersFramesAndAContactSheet) {
    TempDir dir;
    const ToolRun r = dir.render({"--size", "64x48", "--frames", "1-5", "--contact-every", "2", "--thumb-width", "32",
                                  "--out", "out/card.%04d.png", "--contact-sheet", "out/sheet.png"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(dir.files("out"), (std::vector<std::string>{"card.0001.png", "card.0002.png", "card.0003.png",
                                                          "card.0004.png", "card.0005.png", "sheet.png"}));
    const Picture frame = read_picture(dir.path("out/card.0003.png"));
    EXPECT_EQ(frame.width, 64);
    EXPECT_EQ(frame.height, 48);
    // Frames 1, 3 and 5 in one row of 32 x 24 thumbnails with their labels.
    const Picture sheet = read_picture(dir.path("out/sheet.png"));
    EXPECT_TRUE(sheet.width > 3 * 32 && sheet.width < 4 * 32) << sheet.width;
    EXPECT_TRUE(sheet.height > 24 && sheet.height < 2 * 24) << sheet.height;
}

TEST(ToolFormats, ContactSheetThumbnailsShowTheFrames) {
    TempDir dir;
    const int w = 40, h = 20;
    std::vector<std::uint8_t> flat(w * h * 3);
    for (std::size_t i = 0; i < flat.size(); i += 3) flat[i] = 10, flat[i + 1] = 200, flat[i + 2] = 30;
    write_picture(dir.path("flat.png"), w, h, 3, "uint8", flat.data());
    const ToolRun r = dir.render({"--front", "flat.png", "--frames", "1-2", "--blend", "100", "--thumb-width", "20",
                                  "--contact-sheet", "sheet.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    const Picture sheet = read_picture(dir.path("sheet.png"));
    ASSERT_GT(sheet.height, 8);
    // The middle row of the two 20 x 10 thumbnails, side by side, is the
    // frame's colour over 40 pixels.
    auto at = [&](int x, int c) { return sheet.ints[(static_cast<std::size_t>(8) * sheet.width + x) * 3 + c] / 257; };
    int found = 0;
    for (int x = 0; x < sheet.width; ++x) found += at(x, 0) == 10 && at(x, 1) == 200 && at(x, 2) == 30;
    EXPECT_EQ(found, 40);
}
