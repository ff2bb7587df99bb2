// Bad input: one line naming the file, frame or control; exit status 2 for a
// usage error, 1 for a failure; the frames before a failure left intact.
#include <gtest/gtest.h>

#include "tests/tool_support.h"

using namespace tool_support;

namespace {

constexpr int kW = 12, kH = 6;

class ToolErrors : public ::testing::Test {
protected:
    void SetUp() override {
        for (int f = 1; f <= 3; ++f)
            write_picture(dir.path("shot." + std::to_string(f) + ".png"), kW, kH, 3, "uint8",
                          pattern8(kW, kH, f).data());
    }
    // The error is the last line of standard error, the only one starting so.
    static void expect_one_line_error(const ToolRun& r, const std::string& part) {
        auto at = r.err.find("paneburst-render: ");  // skipping the warnings, the first is the last
        while (at != std::string::npos && r.err.compare(at, 26, "paneburst-render: warning:") == 0)
            at = r.err.find("paneburst-render: ", at + 1);
        EXPECT_EQ(at, r.err.rfind("paneburst-render: ")) << r.err;
        const std::string line = r.err.substr(std::min(r.err.rfind("paneburst-render: "), r.err.size()));
        EXPECT_TRUE(line.find('\n') == line.size() - 1 && line.find(part) != std::string::npos) << r.err;
    }
    TempDir dir;
};

}  // namespace

// One case per kind of bad input; none of them writes anything.
TEST_F(ToolErrors, EachBadInputGivesOneLineAndItsStatusAndWritesNothing) {
    write_picture(dir.path("back.png"), kW + 1, kH, 3, "uint8", pattern8(kW + 1, kH, 0).data());
    write_text(dir.path("matte.tif"), "II*\0 garbage");
    write_text(dir.path("blocker"), "a file where a folder should be");
    write_text(dir.path("keys1.txt"), "1 Blend = 100\n2 Blnd = 3\n");
    write_text(dir.path("keys2.txt"), "Blend = 100\n");
    write_text(dir.path("o.2.png"), "an earlier render");
    const std::vector<std::string> before = dir.files();
    const struct { std::vector<std::string> args; int status; std::string message; } cases[] = {
        {{"--frobnicate"}, 2, "--frobnicate"},
        {{"--front", "shot.1.png"}, 2, "nothing to write"},
        {{"--front", "shot.1.png", "--set", "Blnd=10", "--out", "o.png"}, 2,
         "unknown control \"Blnd\" (did you mean \"Blend\""},
        {{"--front", "shot.1.png", "--set", "999=1", "--out", "o.png"}, 2, "unknown control number 999"},
        {{"--front", "shot.1.png", "--set", "Blend=lots", "--out", "o.png"}, 2,
         "\"lots\" is not a number (control \"Blend\")"},
        {{"--front", "shot.1.png", "--blend", "12x", "--out", "o.png"}, 2, "\"12x\" is not a number"},
        {{"--front", "shot.1.png", "--keys", "keys1.txt", "--out", "o.png"}, 2,
         "keys1.txt:2: unknown control \"Blnd\" (did you mean \"Blend\""},
        {{"--front", "shot.1.png", "--keys", "keys2.txt", "--out", "o.png"}, 2, "keys2.txt:1: not a key"},
        {{"--frames", "", "--out", "o.%d.png"}, 2, "empty frame range"},
        {{"--frames", "9-3", "--out", "o.%d.png"}, 2, "backwards frame range"},
        {{"--frames", "3-a", "--out", "o.%d.png"}, 2, "3-a"},
        {{"--frames", "5-9", "--shot-start", "6", "--out", "o.%d.png"}, 2, "--shot-start 6 comes after the first frame 5"},
        {{"--frames", "1-2", "--out", "o.png"}, 2, "several frames need a frame number"},
        {{"--front", "shot.%d.png", "--frames", "2-3", "--out", "o.%d.png"}, 2,
         "o.2.png exists (frame 2); use --overwrite"},
        {{"--front", "shot.%d.png", "--back", "back.png", "--frames", "1-2", "--out", "p.%d.png"}, 2,
         "back back.png is 13x6, the front is 12x6"},
        {{"--front", "shot.%d.png", "--frames", "5-6", "--out", "out/o.%d.png"}, 1, "shot.5.png (frame 5): missing file"},
        {{"--front", "shot.1.png", "--matte2d", "matte.tif", "--out", "m.png"}, 1, "2D matte matte.tif: cannot read"},
        {{"--front", "shot.1.png", "--out", "blocker/frames/o.%d.png"}, 1, "cannot create folder blocker/frames"},
        {{"--front", "shot.1.png", "--contact-sheet", "blocker/sheet.png"}, 1, "blocker"},
        {{"--plugin", dir.path("none.spark"), "--out", "o.png"}, 1, "none.spark"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.message);
        const ToolRun r = dir.render(c.args);
        EXPECT_EQ(r.status, c.status);
        expect_one_line_error(r, c.message);
        EXPECT_EQ(dir.files(), before);
    }
}

TEST_F(ToolErrors, MissingFrameStopsAfterTheFramesBeforeIt) {
    std::remove(dir.path("shot.3.png").c_str());
    const ToolRun r =
        dir.render({"--front", "shot.%d.png", "--frames", "1-4", "--blend", "100", "--out", "out/o.%d.png", "-q"});
    EXPECT_EQ(r.status, 1);
    expect_one_line_error(r, "front shot.3.png (frame 3): missing file");
    EXPECT_EQ(dir.files("out"), (std::vector<std::string>{"o.1.png", "o.2.png"}));
    expect_picture8(dir.path("out/o.2.png"), pattern8(kW, kH, 2));
}
