// Key files, setups saved and reloaded, and a shot rendered in chunks.
#include <gtest/gtest.h>

#include "tests/tool_support.h"

using namespace tool_support;

namespace {

constexpr int kW = 16, kH = 8;

// The front at 1/2 resolution: the converter samples the centre of every
// 2 x 2 block (odd columns and rows) and the output replicates it.
std::vector<std::uint8_t> half_resolution(const std::vector<std::uint8_t>& front) {
    std::vector<std::uint8_t> out(front.size());
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = front[((i / 3 / kW / 2 * 2 + 1) * kW + (i / 3 % kW / 2 * 2 + 1)) * 3 + i % 3];
    return out;
}

class ToolControls : public ::testing::Test {
protected:
    void SetUp() override { write_picture(dir.path("front.png"), kW, kH, 3, "uint8", front.data()); }
    TempDir dir;
    std::vector<std::uint8_t> front = pattern8(kW, kH, 4);
};

void expect_same_files(const TempDir& dir, const std::string& a, const std::string& b, std::size_t n) {
    ASSERT_EQ(dir.files(a), dir.files(b));
    ASSERT_EQ(dir.files(a).size(), n);
    for (const std::string& name : dir.files(a))
        EXPECT_EQ(file_bytes(dir.path(a + "/" + name)), file_bytes(dir.path(b + "/" + name))) << name;
}

}  // namespace

TEST_F(ToolControls, KeysAnimateAControlFrameByFrame) {
    // Resolution FULL up to frame 2, 1/2 from frame 3 on (held after the last key).
    write_text(dir.path("keys.txt"), "# frame control = value\n1  Resolution = 0\n2  33 = 0\n\n3  resolution = 1\n");
    const ToolRun r = dir.render({"--front", "front.png", "--frames", "1-4", "--blend", "100", "--keys",
                                  "keys.txt", "--out", "o.%d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    for (int f = 1; f <= 4; ++f)
        expect_picture8(dir.path("o." + std::to_string(f) + ".png"), f < 3 ? front : half_resolution(front));
}

TEST_F(ToolControls, SavedSetupReloadedGivesIdenticalFrames) {
    ToolRun r = dir.render({"--front", "front.png", "--frames", "1-3", "--blend", "100", "--resolution", "1/2",
                            "--save-setup", "setups/look.txt", "--out", "a/o.%04d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    r = dir.render({"--front", "front.png", "--frames", "1-3", "--setup", "setups/look.txt", "--out",
                    "b/o.%04d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    expect_same_files(dir, "a", "b", 3);
    expect_picture8(dir.path("b/o.0002.png"), half_resolution(front));
    // The setup keeps the user's Auto Preview, which the render turns off.
    EXPECT_NE(file_bytes(dir.path("setups/look.txt")).find("\n34 boolean 1\n"), std::string::npos);
}

// A chunk that starts later in the shot first simulates the frames before it
// and must write the same files as one render of the whole shot, whatever
// the thread count.
TEST_F(ToolControls, ChunkFilesAreByteIdenticalToTheFullRender) {
    auto render = [this](std::vector<std::string> args) {
        // An animated look: with Blend 100 every frame would be the front alone.
        for (const char* a : {"--size", "96x64", "--preset", "explosion", "--quality", "high", "-q"}) args.push_back(a);
        return dir.render(args).status;
    };
    ASSERT_EQ(render({"--frames", "1-8", "--threads", "1", "--out", "full/f.%04d.png"}), 0);
    ASSERT_EQ(render({"--frames", "1-3", "--shot-start", "1", "--out", "chunks/f.%04d.png"}), 0);
    ASSERT_EQ(render({"--frames", "4-8", "--shot-start", "1", "--threads", "3", "--out", "chunks/f.%04d.png"}), 0);
    expect_same_files(dir, "full", "chunks", 8);
}

// The built-in test card with a preset, a control by title clamped to its
// range as the host's slider would, and a contact sheet beside the frames.
TEST_F(ToolControls, PresetAndTitledControlOnTheTestCardWithAContactSheet) {
    const ToolRun r = dir.render({"--size", "96x64", "--preset", "venetianv", "--set", "Z Speed=500", "--frames",
                                  "1-3", "--out", "card.%04d.png", "--contact-sheet", "sheet.png"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.err.find("Z Speed"), std::string::npos) << r.err;  // the clamp warning names the control
    EXPECT_NE(r.err.find("100"), std::string::npos) << r.err;      // and the range edge it took
    for (const char* name : {"card.0001.png", "card.0002.png", "card.0003.png", "sheet.png"})
        EXPECT_FALSE(file_bytes(dir.path(name)).empty()) << name;
}
