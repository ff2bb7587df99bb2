// Bad input: one line naming the file, frame or control; exit status 2 for a
// usage error, 1 for a failure; no partial output file, and the frames
// written before the failure left intact.
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
        EXPECT_EQ(count(r.err, "paneburst-render: "), count(r.err, "paneburst-render: warning:") + 1) << r.err;
        const auto at = r.err.rfind("paneburst-render: ");
        ASSERT_NE(at, std::string::npos) << r.err;
        const std::string line = r.err.substr(at);
        EXPECT_EQ(line.find('\n'), line.size() - 1) << r.err;
        EXPECT_NE(line.find(part), std::string::npos) << "expected \"" << part << "\" in: " << line;
    }
    TempDir dir;
};

}  // namespace

TEST_F(ToolErrors, MissingFrameStopsAfterTheFramesBeforeIt) {
    std::remove(dir.path("shot.3.png").c_str());
    const ToolRun r = dir.render({"--front", "shot.%d.png", "--frames", "1-4", "--blend", "100", "--out",
                                  "out/o.%d.png", "-q"});
    EXPECT_EQ(r.status, 1);
    expect_one_line_error(r, "front shot.3.png (frame 3): missing file");
    EXPECT_EQ(dir.files("out"), (std::vector<std::string>{"o.1.png", "o.2.png"}));
    const Picture p = read_picture(dir.path("out/o.2.png"));
    const auto expect = pattern8(kW, kH, 2);
    for (std::size_t i = 0; i < expect.size(); ++i) ASSERT_EQ(p.ints[i], expect[i] * 257u);
}

TEST_F(ToolErrors, MissingFirstFrameIsFoundBeforeAnythingIsWritten) {
    const ToolRun r = dir.render({"--front", "shot.%d.png", "--frames", "5-6", "--out", "out/o.%d.png"});
    EXPECT_EQ(r.status, 1);
    expect_one_line_error(r, "shot.5.png (frame 5): missing file");
    EXPECT_TRUE(dir.files("out").empty());
}

TEST_F(ToolErrors, CorruptFileIsNamed) {
    write_text(dir.path("shot.2.png"), std::string("\x89PNG\r\n\x1a\n", 8) + "this is not the rest of a picture");
    ToolRun r = dir.render({"--front", "shot.%d.png", "--frames", "1-3", "--out", "o.%d.png", "-q"});
    EXPECT_EQ(r.status, 1);
    expect_one_line_error(r, "front shot.2.png (frame 2): cannot read");
    EXPECT_EQ(dir.files().size(), 4u) << "only o.1.png is written";
    write_text(dir.path("matte.tif"), "II*\0 garbage");
    r = dir.render({"--front", "shot.1.png", "--matte2d", "matte.tif", "--out", "m.png"});
    EXPECT_EQ(r.status, 1);
    expect_one_line_error(r, "2D matte matte.tif: cannot read");
}

TEST_F(ToolErrors, InputsOfAnotherSizeAreRefused) {
    write_picture(dir.path("back.png"), kW + 1, kH, 3, "uint8", pattern8(kW + 1, kH, 0).data());
    const ToolRun r = dir.render({"--front", "shot.%d.png", "--back", "back.png", "--frames", "1-2", "--out", "o.%d.png"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "back back.png is 13x6, the front is 12x6");
    EXPECT_EQ(dir.files().size(), 4u);
}

TEST_F(ToolErrors, UnknownControlSuggestsTheClosestTitles) {
    const ToolRun r = dir.render({"--front", "shot.1.png", "--set", "Blnd=10", "--out", "o.png"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "unknown control \"Blnd\" (did you mean \"Blend\"");
    const ToolRun n = dir.render({"--front", "shot.1.png", "--set", "999=1", "--out", "o.png"});
    EXPECT_EQ(n.status, 2);
    expect_one_line_error(n, "unknown control number 999");
}

TEST_F(ToolErrors, ValueThatIsNotANumber) {
    ToolRun r = dir.render({"--front", "shot.1.png", "--set", "Blend=lots", "--out", "o.png"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "\"lots\" is not a number (control \"Blend\")");
    r = dir.render({"--front", "shot.1.png", "--blend", "12x", "--out", "o.png"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "\"12x\" is not a number");
    EXPECT_EQ(dir.files().size(), 3u);
}

TEST_F(ToolErrors, EmptyOrBackwardsFrameRange) {
    ToolRun r = dir.render({"--frames", "", "--out", "o.%d.png"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "empty frame range");
    r = dir.render({"--frames", "9-3", "--out", "o.%d.png"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "backwards frame range");
    r = dir.render({"--frames", "3-a", "--out", "o.%d.png"});
    EXPECT_EQ(r.status, 2);
    r = dir.render({"--frames", "5-9", "--shot-start", "6", "--out", "o.%d.png"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "--shot-start 6 comes after the first frame 5");
    r = dir.render({"--frames", "1-2", "--out", "o.png"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "several frames need a frame number");
    EXPECT_EQ(dir.files().size(), 3u);
}

TEST_F(ToolErrors, OutputFolderThatCannotBeWritten) {
    write_text(dir.path("blocker"), "a file where a folder should be");
    ToolRun r = dir.render({"--front", "shot.1.png", "--out", "blocker/frames/o.%d.png"});
    EXPECT_EQ(r.status, 1);
    expect_one_line_error(r, "cannot create folder blocker/frames");
    r = dir.render({"--front", "shot.1.png", "--contact-sheet", "blocker/sheet.png"});
    EXPECT_EQ(r.status, 1);
    expect_one_line_error(r, "blocker");
}

TEST_F(ToolErrors, ExistingFramesAreKeptWithoutOverwrite) {
    ToolRun r = dir.render({"--front", "shot.%d.png", "--frames", "1-2", "--out", "o.%d.png", "--blend", "100", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string before = file_bytes(dir.path("o.2.png"));
    r = dir.render({"--front", "shot.%d.png", "--frames", "2-3", "--out", "o.%d.png", "--blend", "50", "-q"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "o.2.png exists (frame 2); use --overwrite");
    EXPECT_EQ(file_bytes(dir.path("o.2.png")), before);
    EXPECT_EQ(dir.files(), (std::vector<std::string>{"o.1.png", "o.2.png", "shot.1.png", "shot.2.png", "shot.3.png"}))
        << "frame 3 is not rendered either";
    r = dir.render({"--front", "shot.%d.png", "--frames", "2-3", "--out", "o.%d.png", "--overwrite", "-q"});
    EXPECT_EQ(r.status, 0) << r.err;
    for (const std::string& name : dir.files()) EXPECT_EQ(name.find(".part"), std::string::npos) << name;
}

TEST_F(ToolErrors, UnknownOptionAndNothingToWrite) {
    ToolRun r = dir.render({"--frobnicate"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "--frobnicate");
    r = dir.render({"--front", "shot.1.png"});
    EXPECT_EQ(r.status, 2);
    expect_one_line_error(r, "nothing to write");
    r = dir.render({"--plugin", dir.path("none.spark"), "--out", "o.png"});
    EXPECT_EQ(r.status, 1);
    expect_one_line_error(r, "none.spark");
}
