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
    // --resolution and --blend after --quality are applied too.
    ToolRun r = dir.render({"--front", "front.png", "--frames", "1-3", "--quality", "low", "--resolution", "1/2",
                            "--blend", "100", "--save-setup", "setups/look.txt", "--out", "a/o.%04d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    r = dir.render({"--front", "front.png", "--frames", "1-3", "--setup", "setups/look.txt", "--out",
                    "b/o.%04d.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    expect_same_files(dir, "a", "b", 3);
    expect_picture8(dir.path("b/o.0002.png"), half_resolution(front));
    // The setup keeps the user's Auto Preview, which the render turns off.
    const std::string setup = file_bytes(dir.path("setups/look.txt"));
    for (const char* line : {"\n34 boolean 1\n", "\n30 popup 2\n", "\n33 popup 1\n", "\n27 float 100\n"})
        EXPECT_NE(setup.find(line), std::string::npos) << line;
}

// Out-of-range setup values are clamped with the warning --set gives, and
// what is saved again is what was applied.
TEST_F(ToolControls, SetupValuesOutOfRangeAreClampedAsSetClampsThem) {
    write_text(dir.path("wild.txt"), "# edited by hand\n6 int -5\n9 float 1e300\n30 popup 7\n42 colour 0xFF102030\n");
    const ToolRun r = dir.render({"--setup", "wild.txt", "--save-setup", "tame.txt"});
    ASSERT_EQ(r.status, 0) << r.err;
    for (const char* warning : {"wild.txt:2: \"X Elements\" -5 is outside 1 ... 100, using 1",
                                "wild.txt:3: \"Maximum Z\" 1e+300 is outside -4000 ... -1, using -1",
                                "wild.txt:4: \"Render Quality\" 7 is outside 0 ... 3, using 3"})
        EXPECT_NE(r.err.find(warning), std::string::npos) << r.err;
    const std::string saved = file_bytes(dir.path("tame.txt"));
    for (const char* line : {"\n6 int 1\n", "\n9 float -1\n", "\n30 popup 3\n", "\n42 colour 0xFF102030\n"})
        EXPECT_NE(saved.find(line), std::string::npos) << line;
}

// The colour pot has no title in its descriptor: the tool names it, sets it
// from #RRGGBB through its callback (which sets the three sliders in
// percent) and lists it as #RRGGBB.
TEST_F(ToolControls, LightColourIsSetAndListedByName) {
    ToolRun r = dir.render({"--set", "light colour=#FF8000", "--save-setup", "s.txt"});
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string saved = file_bytes(dir.path("s.txt"));
    for (const char* line : {"\n42 colour 0xFF0080FF\n", "\n43 float 100\n", "\n44 float 50\n", "\n45 float 0\n"})
        EXPECT_NE(saved.find(line), std::string::npos) << line << saved;
    r = dir.render({"--setup", "s.txt", "--list-controls"});
    ASSERT_EQ(r.status, 0) << r.err;
    const auto at = r.out.find("\n1    42   colour   Light Colour");
    ASSERT_NE(at, std::string::npos) << r.out;
    const std::string line = r.out.substr(at + 1, r.out.find('\n', at + 1) - at - 1);
    EXPECT_NE(line.find("#RRGGBB                #FFFFFF    #FF8000"), std::string::npos) << line;
}

// Labels of long frame numbers stay under their own thumbnails: the lit
// columns of the label rows form one group per thumbnail.
TEST_F(ToolControls, LongFrameNumbersFitUnderTheirThumbnails) {
    const ToolRun r = dir.render({"--front", "front.png", "--frames", "9999997-9999999", "--thumb-width", "16",
                                  "--contact-sheet", "sheet.png", "-q"});
    ASSERT_EQ(r.status, 0) << r.err;
    const Picture p = read_picture(dir.path("sheet.png"));
    OIIO::ImageSpec header;
    std::string error;
    ASSERT_TRUE(tools::open_image(dir.path("sheet.png"), header, error)) << error;
    const int w = header.width;
    std::vector<bool> lit(static_cast<std::size_t>(w));
    for (int y = 4 + kH; y < header.height; ++y)  // below the thumbnails (16 x 8, at 4 from the top)
        for (int x = 0; x < w; ++x) lit[x] = lit[x] || p.ints[(static_cast<std::size_t>(y) * w + x) * 3] == 235 * 257;
    int groups = 0, blank = 3;
    for (int x = 0; x < w; ++x) {
        if (lit[x] && blank >= 3) ++groups;
        blank = lit[x] ? 0 : blank + 1;
    }
    EXPECT_EQ(groups, 3);
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
