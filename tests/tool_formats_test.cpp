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
    for (int f : {1, 2}) expect_picture8(dir.path("out/res.000" + std::to_string(f) + ".png"), pattern8(24, 10, f));
}

TEST(ToolFormats, ExrFloatIsClippedOnceAndWrittenAsExactRatios) {
    TempDir dir;
    const std::vector<float> px = {-0.5f, 0.0f, 1.0f, 1.5f, 0.5f, 0.25f, 1e-4f, 0.9999f, 0.1f, 0.3f, 0.7f, 0.6f,
                                   0.0f,  0.0f, 0.0f, 2.0f, 0.2f, 0.4f,  0.8f,  0.05f,   0.0f, 1.0f, 0.5f, 0.5f};
    write_picture(dir.path("front.exr"), 4, 2, 3, "float", px.data());
    const ToolRun r =
        dir.render({"--front", "front.exr", "--frames", "1-3", "--blend", "100", "--out", "res.%04d.exr", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(r.err.find("clipped") != std::string::npos && r.err.find("clipped") == r.err.rfind("clipped")) << r.err;
    EXPECT_NE(r.err.find("front.exr"), std::string::npos) << r.err;
    const Picture p = read_picture(dir.path("res.0003.exr"));
    EXPECT_EQ(p.format, "float");
    ASSERT_EQ(p.floats.size(), px.size());
    for (std::size_t i = 0; i < px.size(); ++i) {
        const double clipped = px[i] < 0 ? 0.0 : px[i] > 1 ? 1.0 : px[i];
        EXPECT_EQ(p.floats[i], static_cast<float>(std::floor(clipped * 4095.0 + 0.5)) / 4095.0f) << i;
    }
}

// 16-bit TIFF and 10-bit DPX render in 12 bits (rounded) and come out as
// 16-bit TIFF and 12-bit DPX.
TEST(ToolFormats, TiffAndDpxRenderIn12Bits) {
    std::vector<std::uint16_t> tiff = ramp16(16 * 8 * 3, 517);
    tiff[0] = 0, tiff[1] = 65535;
    tiff[2] = 8;  // 8 * 4095 / 65535 = 0.4999: rounds to 0
    tiff[3] = 9;  // 0.56: rounds to 1
    const struct { const char *in, *out; int w, h; std::vector<std::uint16_t> px; int bits_in, bits_out; } cases[] = {
        {"front.tif", "res.tif", 16, 8, tiff, 0, 16},
        {"plate.0007.dpx", "res.0007.dpx", 8, 4, ramp16(8 * 4 * 3, 2731), 10, 12}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.in);
        TempDir dir;
        write_picture(dir.path(c.in), c.w, c.h, 3, "uint16", c.px.data(), c.bits_in);
        const Picture in = read_picture(dir.path(c.in));  // as the file holds them (10 bits for the DPX)
        ASSERT_EQ(in.bits, c.bits_in ? c.bits_in : 16);
        const ToolRun r = dir.render({"--front", c.in, "--frames", "7", "--blend", "100", "--out", c.out, "-q"});
        ASSERT_EQ(r.status, 0) << r.err;
        const Picture p = read_picture(dir.path(c.out));
        EXPECT_EQ(p.bits, c.bits_out);
        ASSERT_EQ(p.ints.size(), in.ints.size());
        for (std::size_t i = 0; i < in.ints.size(); ++i) ASSERT_EQ(p.ints[i], through12(in.ints[i])) << i;
    }
}

TEST(ToolFormats, MattesOfOneChannelAndAStillBackAreAccepted) {
    TempDir dir;
    const int w = 12, h = 6;
    write_picture(dir.path("front.png"), w, h, 3, "uint8", pattern8(w, h, 3).data());
    write_picture(dir.path("back.png"), w, h, 3, "uint8", pattern8(w, h, 9).data());
    const std::vector<std::uint8_t> grey(w * h, 128);
    write_picture(dir.path("m2.png"), w, h, 1, "uint8", grey.data());
    write_picture(dir.path("m3.tif"), w, h, 1, "uint8", grey.data());
    const ToolRun r =
        dir.render({"--front", "front.png", "--back", "back.png", "--matte2d", "m2.png", "--matte3d", "m3.tif",
                    "--set", "Use 3D Matte=on", "--frames", "1-2", "--blend", "100", "--out", "o.%d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    expect_picture8(dir.path("o.2.png"), pattern8(w, h, 3));
    // The 2D matte's Use control is off: it is given but not used.
    EXPECT_NE(r.err.find("--matte2d m2.png: \"Use 2D Matte\" is off, so the matte is not used"), std::string::npos)
        << r.err;
    EXPECT_EQ(r.err.find("--matte3d"), std::string::npos) << r.err;
}
