// paneburst-render reads the next frame and writes the last one while the
// plug-in renders: the frames of one run are byte for byte those of frames
// rendered one per run, in order, whatever the depth and format.
#include <gtest/gtest.h>

#include "tests/tool_support.h"

using namespace tool_support;

namespace {

constexpr int kW = 64, kH = 36, kFrames = 6;

TEST(ToolPipelining, ARunWritesTheFramesOfSingleFrameRunsInOrder) {
    TempDir dir;
    for (int f = 1; f <= kFrames; ++f) {
        write_picture(dir.path("front." + std::to_string(f) + ".png"), kW, kH, 3, "uint8", pattern8(kW, kH, f).data());
        write_picture(dir.path("back." + std::to_string(f) + ".png"), kW, kH, 3, "uint8",
                      pattern8(kW, kH, 40 + f).data());
    }
    struct Case {
        const char* name;
        std::vector<std::string> args;
        const char* ext;
    };
    const Case cases[] = {
        {"8-bit png", {"--quality", "med"}, "png"},
        {"12-bit png, high, light", {"--quality", "high", "--depth", "12", "--set", "Use Light=1"}, "png"},
        {"exr, low, matte", {"--quality", "low", "--matte2d", "back.3.png", "--set", "Use 2D Matte=1"}, "exr"},
    };
    for (const Case& c : cases) {
        std::vector<std::string> common = {"--front", "front.%d.png", "--back", "back.%d.png", "--shot-start", "1",
                                           "--set", "Z Speed=30", "--set", "X Rot. Speed=90", "-q"};
        common.insert(common.end(), c.args.begin(), c.args.end());
        std::vector<std::string> all = common;
        for (const char* a : {"--frames", "1-6", "--out"}) all.push_back(a);
        all.push_back(std::string("run/o.%d.") + c.ext);
        ASSERT_EQ(dir.render(all).status, 0) << c.name;
        for (int f = 1; f <= kFrames; ++f) {
            std::vector<std::string> one = common;
            one.push_back("--frames");
            one.push_back(std::to_string(f) + "-" + std::to_string(f));
            one.push_back("--out");
            one.push_back(std::string("one/o.%d.") + c.ext);
            ASSERT_EQ(dir.render(one).status, 0) << c.name << " frame " << f;
            const std::string name = "o." + std::to_string(f) + "." + c.ext;
            const std::string ran = file_bytes(dir.path("run/" + name)), alone = file_bytes(dir.path("one/" + name));
            ASSERT_FALSE(ran.empty()) << c.name << " " << name;
            if (std::string(c.ext) == "exr") {
                // OpenEXR headers carry the time of writing: compare the pixels.
                EXPECT_EQ(read_picture(dir.path("run/" + name)).floats, read_picture(dir.path("one/" + name)).floats)
                    << c.name << " " << name;
            } else {
                EXPECT_TRUE(ran == alone) << c.name << " " << name;
            }
        }
        std::filesystem::remove_all(dir.path("run"));
        std::filesystem::remove_all(dir.path("one"));
    }
}

}  // namespace
