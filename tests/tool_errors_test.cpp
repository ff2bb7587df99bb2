// Bad input: one line naming the file, frame or control; exit status 2 for a
// usage error, 1 for a failure; the frames before a failure left intact.
#include <gtest/gtest.h>
#include <unistd.h>

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
    write_text(dir.path("keys3.txt"), "-5 Blend = 100\n");
    write_text(dir.path("nan.txt"), "27 float 50\n15 float nan\n");
    write_text(dir.path("inf.txt"), "15 float -inf\n");
    write_text(dir.path("kind.txt"), "15 int 5\n");
    write_text(dir.path("whole.txt"), "6 int 2.5\n");
    write_text(dir.path("colour.txt"), "42 colour 0xFFFFFFFFFF\n");
    std::filesystem::create_directory(dir.path("folder"));
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
        {{"--front", "shot.1.png", "--keys", "keys3.txt", "--out", "o.png"}, 2,
         "keys3.txt:1: frame -5 is outside 0 ... 9999999"},
        {{"--front", "shot.1.png", "--set", "Z Speed=0x10", "--out", "o.png"}, 2, "\"0x10\" is not a number"},
        {{"--front", "shot.1.png", "--set", "Light Colour=#12345", "--out", "o.png"}, 2,
         "\"#12345\" is not a colour (control \"Light Colour\"; use #RRGGBB)"},
        // Options after --quality are applied, and checked.
        {{"--front", "shot.1.png", "--quality", "high", "--resolution", "1/5", "--out", "o.png"}, 2,
         "\"1/5\" is not a number (control \"Resolution\")"},
        {{"--front", "shot.1.png", "--quality", "low", "--blend", "banana", "--out", "o.png"}, 2,
         "\"banana\" is not a number (control \"Blend\")"},
        // Setup values are checked as --set checks them.
        {{"--front", "shot.1.png", "--setup", "nan.txt", "--out", "o.png"}, 2,
         "nan.txt:2: \"nan\" is not a number (control \"Z Speed\")"},
        {{"--front", "shot.1.png", "--setup", "inf.txt", "--out", "o.png"}, 2, "inf.txt:1: \"-inf\" is not a number"},
        {{"--front", "shot.1.png", "--setup", "kind.txt", "--out", "o.png"}, 2,
         "kind.txt:1: control \"Z Speed\" (15) is float, not int"},
        {{"--front", "shot.1.png", "--setup", "whole.txt", "--out", "o.png"}, 2,
         "whole.txt:1: \"2.5\" is not a whole number (control \"X Elements\" (6))"},
        {{"--front", "shot.1.png", "--setup", "colour.txt", "--out", "o.png"}, 2, "colour.txt:1: \"0xFFFFFFFFFF\""},
        {{"--front", "shot.1.png", "--setup", "folder", "--out", "o.png"}, 2, "--setup folder: a folder, not a file"},
        {{"--front", "shot.1.png", "--keys", "folder", "--out", "o.png"}, 2, "--keys folder: a folder, not a file"},
        // Output names that cannot work, refused before anything is read.
        {{"--frames", "1-2", "--out", "a.%04d.%04d.png"}, 2, "--out a.%04d.%04d.png: more than one frame number"},
        {{"--frames", "1-2", "--out", "d%02d/o.%04d.png"}, 2, "--out d%02d/o.%04d.png: the frame number is in a folder"},
        {{"--out", "o.png", "--contact-sheet", "./o.png"}, 2, "--contact-sheet ./o.png is also a frame of --out o.png"},
        {{"--frames", "1-3", "--out", "f/o.%d.png", "--save-setup", "f/../f/o.2.png"}, 2,
         "--save-setup f/../f/o.2.png is also a frame of --out f/o.%d.png"},
        {{"--out", "o.xyz"}, 2, "--out o.xyz: no image format has the extension \".xyz\""},
        {{"--out", "o.png", "--contact-sheet", "sheet"}, 2, "--contact-sheet sheet: the name has no extension"},
        {{"--frames", "1-100000000", "--out", "o.%d.png"}, 2, "frames are whole numbers from 0 to 9999999"},
        {{"--frames", "1", "--shot-start", "-1", "--out", "o.png"}, 2, "--shot-start -1: frames are whole numbers from 0"},
        {{"--contact-every", "0", "--contact-sheet", "s.png"}, 2, "--contact-every 0: give a whole number of 1 or more"},
        {{"--frames", "", "--out", "o.%d.png"}, 2, "empty frame range"},
        {{"--frames", "9-3", "--out", "o.%d.png"}, 2, "backwards frame range"},
        {{"--frames", "3-a", "--out", "o.%d.png"}, 2, "3-a"},
        {{"--frames", "5-9", "--shot-start", "6", "--out", "o.%d.png"}, 2, "--shot-start 6 comes after the first frame 5"},
        {{"--frames", "1-2", "--out", "o.png"}, 2, "several frames need a frame number"},
        {{"--front", "shot.%d.png", "--frames", "2-3", "--out", "o.%d.png"}, 2,
         "o.2.png exists (frame 2); use --overwrite"},
        {{"--frames", "0-9999999", "--out", "o.%d.png"}, 2, "o.2.png exists (frame 2); use --overwrite"},
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

namespace {

// A tmpfs of `size` mounted on a folder for the life of the object (root only).
class SmallDisk {
public:
    SmallDisk(const TempDir& dir, const std::string& size) : path_(dir.path("disk")) {
        std::filesystem::create_directories(path_);
        mounted_ = std::system(("mount -t tmpfs -o size=" + size + " tmpfs " + quote(path_)).c_str()) == 0;
    }
    ~SmallDisk() {
        if (mounted_) {
            EXPECT_EQ(std::system(("umount " + quote(path_)).c_str()), 0);
        }
    }
    bool mounted() const { return mounted_; }
    void fill() const {
        std::ofstream out(path_ + "/filler", std::ios::binary);
        const std::string block(4096, 'x');
        for (int i = 0; i < 100000 && out.write(block.data(), block.size()) && out.flush(); ++i) {}
    }

private:
    std::string path_;
    bool mounted_ = false;
};

// Bytes that no image format compresses much.
std::vector<std::uint8_t> noise8(std::size_t n) {
    std::vector<std::uint8_t> px(n);
    std::uint32_t state = 12345;
    for (auto& v : px) v = static_cast<std::uint8_t>((state = state * 1103515245u + 12345u) >> 23);
    return px;
}

}  // namespace

// Frames fill the disk until one no longer fits: that one is named, its
// temporary removed, the frames before it kept whole. A file that finds the
// disk full at once leaves nothing.
TEST_F(ToolErrors, FullDiskFailsNamingTheFileAndKeepsTheFramesBefore) {
    if (geteuid() != 0) GTEST_SKIP() << "mounting a small tmpfs needs root";
    const std::vector<std::uint8_t> front = noise8(48 * 48 * 3);
    write_picture(dir.path("noise.png"), 48, 48, 3, "uint8", front.data());
    const std::vector<std::string> render = {"--front", "noise.png", "--frames", "1-30", "--blend", "100", "-q"};
    const struct { std::vector<std::string> args; bool full; const char* ext; std::string failing; } cases[] = {
        {{"--out", "disk/o.%d.png"}, false, ".png", ""},
        {{"--out", "disk/o.%d.jpg"}, false, ".jpg", ""},
        {{"--contact-sheet", "disk/sheet.png"}, true, "", "disk/sheet.png"},
        {{"--save-setup", "disk/look.txt"}, true, "", "disk/look.txt"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args[1]);
        const SmallDisk disk(dir, "64k");
        ASSERT_TRUE(disk.mounted());
        if (c.full) disk.fill();
        std::vector<std::string> args = render;
        args.insert(args.end(), c.args.begin(), c.args.end());
        const ToolRun r = dir.render(args);
        EXPECT_EQ(r.status, 1);
        std::vector<std::string> kept = dir.files("disk");
        kept.erase(std::remove(kept.begin(), kept.end(), "filler"), kept.end());
        std::string failing = c.failing;
        if (failing.empty()) {  // frames 1 to N written whole, N + 1 failed
            ASSERT_GE(kept.size(), 1u);
            ASSERT_LT(kept.size(), 30u);
            for (std::size_t f = 1; f <= kept.size(); ++f) {
                const std::string name = "o." + std::to_string(f) + c.ext;
                EXPECT_EQ(std::count(kept.begin(), kept.end(), name), 1) << name;
                if (std::string(c.ext) == ".png") expect_picture8(dir.path("disk/" + name), front);
            }
            failing = "disk/o." + std::to_string(kept.size() + 1) + c.ext;
        } else {
            EXPECT_TRUE(kept.empty()) << kept.front();
        }
        expect_one_line_error(r, "cannot write " + failing + ": No space left on device");
    }
}

// The frame's memory is claimed before anything is written; under an
// address-space limit the tool stops with the size it needed.
TEST_F(ToolErrors, NotEnoughMemoryNamesTheFrameSizeAndWritesNothing) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "AddressSanitizer's shadow memory does not run under an address-space limit";
#endif
    const std::vector<std::string> before = dir.files();
    const struct { const char* size; std::string message; } cases[] = {
        // The host's own buffers do not fit, then the plug-in's work space.
        {"16384x16384", "not enough memory: a 16384x16384 frame needs about 21.8 GiB of memory"},
        {"4096x4096", "not enough memory: a 4096x4096 frame needs about 1.4 GiB of memory"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.size);
        const ToolRun r = dir.render({"--size", c.size, "--out", "big.png", "--save-setup", "big.txt", "-q"},
                                     "ulimit -v 1200000");
        EXPECT_EQ(r.status, 1);
        expect_one_line_error(r, c.message);
        EXPECT_EQ(dir.files(), before);
    }
}
