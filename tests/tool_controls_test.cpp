// Controls from the command line: by title or number with the host's
// clamping, key files animating them, presets, setups saved and reloaded.
#include <gtest/gtest.h>

#include "tests/tool_support.h"

using namespace tool_support;

namespace {

constexpr int kW = 16, kH = 8;

// The front at 1/2 resolution: the converter samples the centre of every
// 2 x 2 block (odd columns and rows) and the output replicates it.
std::vector<std::uint8_t> half_resolution(const std::vector<std::uint8_t>& front) {
    std::vector<std::uint8_t> out(front.size());
    for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x)
            for (int c = 0; c < 3; ++c)
                out[(y * kW + x) * 3 + c] = front[((y / 2 * 2 + 1) * kW + (x / 2 * 2 + 1)) * 3 + c];
    return out;
}

class ToolControls : public ::testing::Test {
protected:
    void SetUp() override {
        front = pattern8(kW, kH, 4);
        write_picture(dir.path("front.png"), kW, kH, 3, "uint8", front.data());
    }
    TempDir dir;
    std::vector<std::uint8_t> front;
};

}  // namespace

// Titles in any case, popup entries by title, checkbox words, numbers; values
// outside the range are clamped with a warning.
TEST_F(ToolControls, SetByTitleOrNumberClampsWithAWarning) {
    const ToolRun r = dir.render({"--front", "front.png", "--set", "blend=250", "--set", "Resolution=1/2", "--set",
                                  "Use Wind=on", "--set", "X Elements=1000", "--set", "15=6", "--out", "o.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.err.find("warning: --set \"blend=250\": \"Blend\" 250 is outside 0 ... 100, using 100"),
              std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("\"X Elements\" 1000 is outside 1 ... 100, using 100"), std::string::npos) << r.err;
    expect_picture8(dir.path("o.png"), half_resolution(front));
}

TEST_F(ToolControls, KeysAnimateAControlFrameByFrame) {
    // Resolution FULL up to frame 2, 1/2 from frame 3 on (held after the last key).
    write_text(dir.path("keys.txt"),
               "# frame control = value\n"
               "1  Resolution = 0\n"
               "2  33 = 0\n"
               "\n"
               "3  resolution = 1\n");
    const ToolRun r = dir.render({"--front", "front.png", "--frames", "1-4", "--blend", "100", "--keys",
                                  "keys.txt", "--out", "o.%d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    for (int f = 1; f <= 4; ++f)
        expect_picture8(dir.path("o." + std::to_string(f) + ".png"), f < 3 ? front : half_resolution(front));
}

TEST_F(ToolControls, BadKeyFilesNameTheLine) {
    write_text(dir.path("keys.txt"), "1 Blend = 100\n2 Blnd = 3\n");
    ToolRun r = dir.render({"--front", "front.png", "--keys", "keys.txt", "--out", "o.png"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("keys.txt:2: unknown control \"Blnd\" (did you mean \"Blend\""), std::string::npos) << r.err;
    write_text(dir.path("keys.txt"), "Blend = 100\n");
    r = dir.render({"--front", "front.png", "--keys", "keys.txt", "--out", "o.png"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("keys.txt:1: not a key"), std::string::npos) << r.err;
    EXPECT_EQ(dir.files(), (std::vector<std::string>{"front.png", "keys.txt"}));
}

TEST_F(ToolControls, SavedSetupReloadedGivesIdenticalFrames) {
    ToolRun r = dir.render({"--front", "front.png", "--frames", "1-3", "--blend", "100", "--resolution", "1/2",
                            "--save-setup", "setups/look.txt", "--out", "a/o.%04d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    r = dir.render({"--front", "front.png", "--frames", "1-3", "--setup", "setups/look.txt", "--out",
                    "b/o.%04d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    for (int f = 1; f <= 3; ++f) {
        const std::string name = "/o.000" + std::to_string(f) + ".png";
        EXPECT_EQ(file_bytes(dir.path("a") + name), file_bytes(dir.path("b") + name)) << name;
    }
    expect_picture8(dir.path("b/o.0002.png"), half_resolution(front));
    // The setup keeps the user's Auto Preview, which the render turns off.
    const std::string setup = file_bytes(dir.path("setups/look.txt"));
    EXPECT_NE(setup.find("\n34 boolean 1\n"), std::string::npos) << setup;
}

TEST_F(ToolControls, ListControlsShowsRangeAndDefault) {
    const ToolRun r = dir.render({"--list-controls", "--set", "Blend=40"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("27   float    Blend                      0 ... 100              0          40"),
              std::string::npos)
        << r.out;
    EXPECT_NE(r.out.find("8: 1/32"), std::string::npos);
    EXPECT_EQ(r.out.find("Paneburst for"), std::string::npos) << "the start-up banner goes to standard error";
}

TEST_F(ToolControls, PresetsRenderThroughTheDemosCallback) {
    for (const char* preset : {"explosion", "confetti", "venetianv", "venetianh"}) {
        const std::string out = std::string(preset) + "/o.%04d.png";
        const ToolRun r = dir.render({"--front", "front.png", "--frames", "1-4", "--preset", preset, "--out", out, "-q"});
        ASSERT_EQ(r.status, 0) << preset << ": " << r.err;
        EXPECT_EQ(r.err.find("warning"), std::string::npos) << r.err;
        EXPECT_EQ(dir.files(preset).size(), 4u) << preset;
    }
}
