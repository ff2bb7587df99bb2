// paneburst-render on real files of each format: with Blend 100 the result is
// the front image, so what comes out shows exactly how the tool maps file
// values into the host's 8- or 12-bit buffers and back out to files.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/tool_support.h"

using namespace tool_support;

namespace {

// Rounded 16-bit -> 12-bit, widened back to 16 by bit replication.
unsigned through12(unsigned v16) {
    const unsigned t = (v16 * 4095u + 32767u) / 65535u;
    return (t << 4) | (t >> 8);
}

std::vector<std::uint16_t> ramp16(std::size_t n, unsigned step) {
    std::vector<std::uint16_t> px(n);
    for (std::size_t i = 0; i < n; ++i) px[i] = static_cast<std::uint16_t>(i * step % 65536);
    return px;
}

}  // namespace

TEST(ToolFormats, Png8BitSequenceComesBackUnchangedAtBlend100) {
    TempDir dir;
    for (int f = 1; f <= 2; ++f)
        write_picture(dir.path("shot.00" + std::to_string(f) + ".png"), 24, 10, 3, "uint8", pattern8(24, 10, f).data());
    const ToolRun r = dir.render(
        {"--front", "shot.%03d.png", "--frames", "1-2", "--blend", "100", "--out", "out/res.####.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(read_picture(dir.path("out/res.0002.png")).format, "uint8");
    for (int f = 1; f <= 2; ++f) expect_picture8(dir.path("out/res.000" + std::to_string(f) + ".png"), pattern8(24, 10, f));
}

TEST(ToolFormats, Tiff16BitRendersIn12BitsAndWrites16) {
    TempDir dir;
    std::vector<std::uint16_t> px = ramp16(16 * 8 * 3, 517);
    px[0] = 0, px[1] = 65535;
    px[2] = 8;  // 8 * 4095 / 65535 = 0.4999: rounds to 0
    px[3] = 9;  // 0.56: rounds to 1
    write_picture(dir.path("front.tif"), 16, 8, 3, "uint16", px.data());
    const ToolRun r = dir.render({"--front", "front.tif", "--blend", "100", "--out", "res.tif", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    const Picture p = read_picture(dir.path("res.tif"));
    EXPECT_EQ(p.format, "uint16");
    ASSERT_EQ(p.ints.size(), px.size());
    for (std::size_t i = 0; i < px.size(); ++i) ASSERT_EQ(p.ints[i], through12(px[i])) << i;
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
    for (std::size_t i = 0; i < in.ints.size(); ++i) ASSERT_EQ(p.ints[i], through12(in.ints[i])) << i;
}

TEST(ToolFormats, MattesOfOneChannelAndAStillBackAreAccepted) {
    TempDir dir;
    const int w = 12, h = 6;
    write_picture(dir.path("front.png"), w, h, 3, "uint8", pattern8(w, h, 3).data());
    write_picture(dir.path("back.png"), w, h, 3, "uint8", pattern8(w, h, 9).data());
    const std::vector<std::uint8_t> grey(w * h, 128);
    write_picture(dir.path("m2.png"), w, h, 1, "uint8", grey.data());
    write_picture(dir.path("m3.tif"), w, h, 1, "uint8", grey.data());
    const ToolRun r = dir.render({"--front", "front.png", "--back", "back.png", "--matte2d", "m2.png", "--matte3d",
                                  "m3.tif", "--frames", "1-2", "--blend", "100", "--out", "o.%d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    expect_picture8(dir.path("o.2.png"), pattern8(w, h, 3));
}
