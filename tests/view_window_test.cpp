// paneburst-view end to end: the real window under Xvfb with Mesa's
// software OpenGL, driven by its script steps, checked through the state it
// writes, its screenshots, and frames paneburst-render writes for the same
// controls and keys.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include "tests/view_support.h"

namespace {

using view_support::pixels;
using view_support::read_state;
using view_support::State;
using view_support::TempDir;
using view_support::view;

// Handles dragged in the viewer at 1:1 on the 720 x 486 test card: the light
// crosshair, the wind source crosshair, a wind cone tip and the wind line's
// midpoint, each from where the overlay drew it.
TEST(ViewHandles, DraggingAHandleWritesItsControls) {
    struct Case {
        const char* name;
        const char* setup;  // after "zoom 1"
        float from_x, from_y, to_x, to_y;
        std::vector<std::pair<int, double>> expected;
    };
    // Defaults: Light 20/80 % -> (144, 388.8); Wind Source 90/40 % ->
    // (648, 194.4), Target 10/40 % -> (72, 194.4), the line's midpoint
    // (360, 194.4); Wind Spread 10 puts the lower tip 5 degrees off the wind
    // direction, 576 from the source: (74.19, 244.60).
    const Case cases[] = {
        {"light", "set \"Use Light\" on\n", 144, 389, 360, 243, {{36, 50}, {37, 50}}},
        {"wind source", "set \"Use Wind\" on\n", 648, 194, 540, 243, {{65, 75}, {66, 50}, {67, 10}, {68, 40}}},
        // At right angles to the wind from the source: the cone opens to 180.
        {"cone tip", "set \"Use Wind\" on\n", 74.5f, 244.5f, 648, 294.4f, {{70, 180}, {65, 90}, {67, 10}}},
        // The line moves with its midpoint: both ends shift by (0, +48.6).
        {"wind line", "set \"Use Wind\" on\n", 360, 194.4f, 360, 243, {{65, 90}, {66, 50}, {67, 10}, {68, 50}}},
        // At zoom 2 the viewer's pixels are half an image pixel: the light
        // still lands where the pointer is, in image pixels.
        {"light at zoom 2", "zoom 2\nset \"Use Light\" on\n", 144, 389, 300, 300, {{36, 41.6667}, {37, 61.7284}}},
    };
    for (const Case& c : cases) {
        TempDir dir;
        const std::string script = std::string("zoom 1\nset \"Auto Preview\" off\n") + c.setup + "hover " +
                                   std::to_string(c.from_x) + " " + std::to_string(c.from_y) + "\nstate hover.txt\n" +
                                   "press " + std::to_string(c.from_x) + " " + std::to_string(c.from_y) +
                                   "\nstate press.txt\ndrag " + std::to_string(c.to_x) + " " + std::to_string(c.to_y) +
                                   "\nrelease\nstate after.txt\n";
        const auto run = view(dir, script);
        ASSERT_EQ(run.status, 0) << c.name << ": " << run.err;
        const State hover = read_state(dir.path("hover.txt")), press = read_state(dir.path("press.txt")),
                    after = read_state(dir.path("after.txt"));
        EXPECT_EQ(hover.field("cursor"), 20) << c.name << ": the handle under the pointer";
        EXPECT_EQ(press.field("cursor"), 14) << c.name << ": the handle grabbed";
        EXPECT_EQ(after.field("cursor"), 1) << c.name;
        for (const auto& e : c.expected) EXPECT_NEAR(after[e.first], e.second, 0.02) << c.name << " control " << e.first;
        EXPECT_GT(after.field("redraws"), press.field("redraws")) << c.name << ": a drag redraws the viewer";
        EXPECT_EQ(after.field("processed"), press.field("processed")) << c.name << ": Auto Preview is off";
    }
}

// A control changed on its page: with Auto Preview the plug-in processes the
// frame at once; without, it only asks for a redraw. A handle released with
// Auto Preview on processes the frame too.
TEST(ViewAutoPreview, OnReprocessesOffOnlyRedraws) {
    TempDir dir;
    const auto run = view(dir,
                          "state 0.txt\nset \"Z Speed\" 12\nstate on.txt\nset \"Auto Preview\" off\nstate off0.txt\n"
                          "set \"Z Speed\" 20\nstate off.txt\nset \"Auto Preview\" on\nset \"Use Light\" on\n"
                          "zoom 1\nstate 1.txt\npress 144 389\ndrag 200 300\nrelease\nstate released.txt\n");
    ASSERT_EQ(run.status, 0) << run.err;
    const State s0 = read_state(dir.path("0.txt")), on = read_state(dir.path("on.txt")),
                off0 = read_state(dir.path("off0.txt")), off = read_state(dir.path("off.txt")),
                s1 = read_state(dir.path("1.txt")), released = read_state(dir.path("released.txt"));
    EXPECT_EQ(s0.field("processed"), 1);
    EXPECT_EQ(on.field("processed"), 2);
    EXPECT_EQ(on[15], 12);
    EXPECT_EQ(off.field("processed"), off0.field("processed"));
    EXPECT_EQ(off.field("redraws"), off0.field("redraws") + 1);
    EXPECT_EQ(off[15], 20);
    EXPECT_EQ(off[63], 0) << "the three Auto Preview copies follow";
    EXPECT_EQ(released.field("processed"), s1.field("processed") + 1);
}

// Reset asks first; "no" changes nothing, "yes" puts the page's defaults back.
TEST(ViewReset, AsksAndNoChangesNothing) {
    for (const bool yes : {false, true}) {
        TempDir dir;
        const auto run = view(dir, std::string("set \"Use Light\" on\nset \"Light X\" 33\nset \"Gloss\" 500\n"
                                               "set \"Z Speed\" 7\nstate before.txt\nclick-button 61\n"
                                               "state asking.txt\nscreenshot question.png\nanswer ") +
                                       (yes ? "yes" : "no") + "\nstate after.txt\n");
        ASSERT_EQ(run.status, 0) << run.err;
        const State before = read_state(dir.path("before.txt")), asking = read_state(dir.path("asking.txt")),
                    after = read_state(dir.path("after.txt"));
        EXPECT_EQ(asking.field("question"), 1);
        EXPECT_EQ(after.field("question"), 0);
        bool asked = false;
        for (const std::string& line : asking.log)
            asked |= line.find("Are you sure you want to reset the current settings to default values?") !=
                     std::string::npos;
        EXPECT_TRUE(asked);
        if (!yes) {
            EXPECT_EQ(after.values, before.values);
        } else {
            EXPECT_EQ(after[35], 0);
            EXPECT_EQ(after[36], 20);
            EXPECT_EQ(after[40], 44);
            EXPECT_EQ(after[15], 7) << "page 1's reset leaves page 0 alone";
        }
    }
}

// Master checkboxes show and hide their controls as the plug-in rules; a
// hidden control cannot be set from its page.
TEST(ViewVisibility, MastersShowAndHideTheirControls) {
    struct Case {
        const char* steps;
        std::vector<int> shown, hidden;
    };
    const Case cases[] = {
        {"", {35, 64, 71, 75, 78, 82, 49, 51}, {36, 37, 38, 39, 40, 42, 43, 46, 47, 50, 52, 65, 69, 70, 72, 74, 76, 79, 83}},
        {"set \"Use Light\" on\n", {36, 37, 38, 39, 40, 42, 43, 44, 45, 46}, {47}},
        {"set \"Use Light\" on\nset \"Lit Background\" on\n", {47}, {}},
        {"set \"Use Light\" on\nset \"Lit Background\" on\nset \"Use Light\" off\n", {35}, {36, 46, 47}},
        {"set \"Use Wind\" on\nset \"Use Gravity\" on\n", {65, 66, 67, 68, 69, 70, 76, 77}, {72, 83}},
        {"set \"Use Attraction\" on\nset \"Use 2D Matte\" on\n", {79, 80, 81, 50}, {52}},
    };
    for (const Case& c : cases) {
        TempDir dir;
        const auto run = view(dir, std::string(c.steps) + "state s.txt\n");
        ASSERT_EQ(run.status, 0) << c.steps << run.err;
        const State s = read_state(dir.path("s.txt"));
        for (int n : c.shown) EXPECT_EQ(s.hidden.count(n), 0u) << c.steps << " shows " << n;
        for (int n : c.hidden) EXPECT_EQ(s.hidden.count(n), 1u) << c.steps << " hides " << n;
    }
    TempDir dir;
    const auto run = view(dir, "set \"Gloss\" 100\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("\"Gloss\" is hidden"), std::string::npos) << run.err;
}

// The viewer's image area at 1:1, with the overlay cleared, is exactly the
// frame paneburst-render writes for the same controls and frame, also after
// going back in the shot. 12-bit buffers are shown on an 8-bit screen: within
// one step of the rendered 16-bit values.
TEST(ViewFrames, ScreenshotEqualsTheRenderedFrame) {
    for (const char* depth : {"8", "12"}) {
        TempDir dir;
        const auto run = view(dir,
                              "zoom 1\nset \"Clear Overlay\" on\nset \"Z Speed\" 9\nset \"Use Light\" on\nrefresh\n"
                              "step 5\nscreenshot-image six.png\ngoto 3\nscreenshot-image three.png\nstate s.txt\n",
                              {"--frames", "1-10", "--depth", depth});
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(read_state(dir.path("s.txt")).field("frame"), 3);
        const auto render = dir.render({"--set", "Z Speed=9", "--set", "Use Light=on", "--shot-start", "1", "--frames",
                                        "3-6", "--depth", depth, "--out", "r.####.png", "-q"});
        ASSERT_EQ(render.status, 0) << render.err;
        for (const auto& pair : {std::make_pair("six.png", "r.0006.png"), std::make_pair("three.png", "r.0003.png")}) {
            const auto shown = pixels(dir.path(pair.first)), rendered = pixels(dir.path(pair.second));
            ASSERT_EQ(shown.size(), 720u * 486 * 3) << pair.first;
            ASSERT_EQ(shown.size(), rendered.size()) << pair.first;
            if (std::string(depth) == "8") {
                EXPECT_TRUE(shown == rendered) << pair.first << " differs from " << pair.second;
                continue;
            }
            std::size_t off = 0;
            for (std::size_t i = 0; i < shown.size(); ++i)
                off += std::abs(static_cast<int>(shown[i] / 257) - static_cast<int>((rendered[i] + 128) / 257)) > 1;
            EXPECT_EQ(off, 0u) << pair.first << " (12-bit)";
        }
    }
}

// A look built in the viewer (controls, keys), saved, and rendered from the
// saved setup and keys gives the frames the viewer showed.
TEST(ViewFrames, SavedLookRendersWhatTheViewerShowed) {
    TempDir dir;
    const auto run = view(dir,
                          "zoom 1\nset \"Clear Overlay\" on\nset \"Auto Preview\" off\nset \"X Elements\" 20\n"
                          "set \"Use Wind\" on\nset \"Wind Speed\" 30\nset \"Z Speed\" 2\nkey \"Z Speed\"\n"
                          "goto 4\nset \"Z Speed\" 14\nkey \"Z Speed\"\nset \"Use Light\" on\nset \"Light X\" 70\n"
                          "save-setup look.setup\nsave-keys look.keys\nstate saved.txt\ngoto 1\n"
                          "screenshot-image v1.png\nstep\nscreenshot-image v2.png\nstep\nscreenshot-image v3.png\n"
                          "step\nscreenshot-image v4.png\nstep\nscreenshot-image v5.png\n",
                          {"--frames", "1-5"});
    ASSERT_EQ(run.status, 0) << run.err;
    const State saved = read_state(dir.path("saved.txt"));
    EXPECT_EQ(saved.field("unsaved"), 0);
    EXPECT_EQ(saved.keys.at(15), (std::map<double, double>{{1, 2}, {4, 14}}));
    const auto render = dir.render({"--setup", "look.setup", "--keys", "look.keys", "--frames", "1-5", "--out",
                                    "r.####.png", "-q"});
    ASSERT_EQ(render.status, 0) << render.err;
    for (int f = 1; f <= 5; ++f) {
        const auto shown = pixels(dir.path("v" + std::to_string(f) + ".png"));
        const auto rendered = pixels(dir.path("r.000" + std::to_string(f) + ".png"));
        ASSERT_EQ(shown.size(), rendered.size()) << f;
        EXPECT_TRUE(shown == rendered) << "frame " << f;
    }
}

// Closing with unsaved changes asks; "no" keeps the window open.
TEST(ViewClose, UnsavedChangesAskBeforeClosing) {
    TempDir dir;
    const auto run = view(dir, "set \"Z Speed\" 3\nquit\nanswer no\nstate kept.txt\nquit\nanswer yes\n");
    ASSERT_EQ(run.status, 0) << run.err;
    const State kept = read_state(dir.path("kept.txt"));
    EXPECT_EQ(kept.field("unsaved"), 1);
    EXPECT_EQ(kept[15], 3);
}

// The plug-in's channel tree, the amplitude import through the viewer's file
// dialog, and Help opening the page shipped under the install root.
TEST(ViewHostServices, ChannelTreeAmplitudeImportAndHelp) {
    TempDir dir;
    tool_support::write_text(dir.path("amp.txt"),
                             "Channel Amplitude 1:\n\tSize 2\n\tKey 1\n\t\tFrame 1\n\t\tValue 2.5\n\t\tEnd\n"
                             "\tKey 7\n\t\tFrame 7\n\t\tValue -4\n\t\tEnd\n");
    tool_support::write_text(dir.path("browser.sh"), "#!/bin/sh\necho \"$@\" > \"$(dirname \"$0\")/help-args.txt\"\n");
    std::system(("chmod +x " + tool_support::quote(dir.path("browser.sh"))).c_str());
    const auto run = view(dir,
                          "click-button \"Import Amplitude File\"\nstate dialog.txt\nchoose-file amp.txt\n"
                          "click-button Help\nwait 5\nstate s.txt\n",
                          {}, "Q7_HELP_BROWSER=" + tool_support::quote(dir.path("browser.sh")));
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(read_state(dir.path("dialog.txt")).field("file-dialog"), 1);
    const State s = read_state(dir.path("s.txt"));
    EXPECT_EQ(s.keys.at(93), (std::map<double, double>{{1, 2.5}, {7, -4}}));
    EXPECT_EQ(s.folders, (std::vector<std::string>{"Depth", "Style", "Speed", "Rotation", "Light", "Wind",
                                                   "Repel", "Gravity", "Attract", "Swirl", "Common"}));
    // -geometry +50+50 file:ROOT/dl/help/paneburst.htm, ROOT pointed at the shipped pages.
    std::string args = tool_support::file_bytes(dir.path("help-args.txt"));
    for (int i = 0; i < 50 && args.empty(); ++i) {
        usleep(100000);
        args = tool_support::file_bytes(dir.path("help-args.txt"));
    }
    const auto at = args.find("file:");
    ASSERT_NE(at, std::string::npos) << args;
    std::string page = args.substr(at + 5);
    while (!page.empty() && page.back() == '\n') page.pop_back();
    EXPECT_EQ(args.substr(0, at), "-geometry +50+50 ");
    EXPECT_TRUE(std::filesystem::exists(page)) << page;
    EXPECT_NE(page.find("/dl/help/paneburst.htm"), std::string::npos) << page;
}

}  // namespace

namespace {

// The real mouse: XTest events from xdotool on the viewer's window. The
// pointer pressed on the light's handle, dragged and released moves the
// light; the wheel over the image zooms in.
TEST(ViewMouse, RealPointerDragsTheLightAndTheWheelZooms) {
    TempDir dir;
    tool_support::write_text(dir.path("steps.txt"),
                             "zoom 1\nset \"Auto Preview\" off\nset \"Use Light\" on\nwait 3\nstate ready.txt\n"
                             "wait-for moved\nwait 3\nstate after.txt\n");
    const std::string cmd = "cd " + tool_support::quote(dir.path("")) + " && (" +
                            tool_support::quote(PANEBURST_VIEW_EXE) +
                            " --script steps.txt >.stdout 2>.stderr </dev/null; echo $? >status) &";
    ASSERT_EQ(std::system(cmd.c_str()), 0);
    for (int i = 0; i < 600 && !std::filesystem::exists(dir.path("ready.txt")); ++i) usleep(100000);
    const State ready = read_state(dir.path("ready.txt"));
    ASSERT_EQ(ready.fields.count("origin"), 1u);
    int ox = 0, oy = 0;
    ASSERT_EQ(std::sscanf(ready.fields.at("origin").c_str(), "%d %d", &ox, &oy), 2);
    // The light at (144, 388.8) of the 720 x 486 card, dragged to (360, 243).
    auto point = [&](int x, int y) { return std::to_string(ox + x) + " " + std::to_string(oy + y); };
    const std::string xdo = "xdotool search --sync --name '^paneburst-view$' windowfocus --sync"
                            " mousemove --window %1 " + point(144, 389) + " sleep 0.5 mousedown 1 sleep 0.5"
                            " mousemove --window %1 " + point(250, 320) + " sleep 0.5"
                            " mousemove --window %1 " + point(360, 243) + " sleep 0.5 mouseup 1 sleep 0.5"
                            " mousemove --window %1 " + point(300, 200) + " sleep 0.3 click 4 sleep 0.5";
    EXPECT_EQ(std::system((xdo + " && touch " + tool_support::quote(dir.path("moved"))).c_str()), 0) << xdo;
    for (int i = 0; i < 600 && !std::filesystem::exists(dir.path("status")); ++i) usleep(100000);
    EXPECT_EQ(tool_support::file_bytes(dir.path("status")), "0\n") << tool_support::file_bytes(dir.path(".stderr"));
    const State after = read_state(dir.path("after.txt"));
    EXPECT_EQ(after[36], 50);
    EXPECT_EQ(after[37], 50);
    EXPECT_DOUBLE_EQ(std::stod(after.fields.at("scale")), 1.25) << "one wheel step up";
}

}  // namespace

namespace {

// Inputs opened from the window: a front of the shot's size is shown as it
// is and replaces the test card; one of another size is refused. The shot
// loops back to its first frame after its last; keys are saved in the key
// file format.
TEST(ViewInputs, OpenedFrontLoopAndSavedKeys) {
    TempDir dir;
    const auto front = tool_support::pattern8(720, 486, 0);
    tool_support::write_picture(dir.path("front.png"), 720, 486, 3, "uint8", front.data());
    const auto small = tool_support::pattern8(64, 48, 0);
    tool_support::write_picture(dir.path("small.png"), 64, 48, 3, "uint8", small.data());
    const auto run = view(dir,
                          "zoom 1\nset \"Clear Overlay\" on\nopen-input 0 front.png\nshow front\n"
                          "screenshot-image shown.png\nstep 2\nstate last.txt\nstep\nstate looped.txt\n"
                          "set \"Gloss\" 1\nset \"Seed\" 52\nkey Seed\nsave-keys k.keys\nopen-input 1 small.png\n",
                          {"--frames", "1-3"});
    EXPECT_EQ(run.status, 1) << "the small back is refused";
    EXPECT_NE(run.err.find("small.png is 64x48, the shot is 720x486"), std::string::npos) << run.err;
    const auto shown = pixels(dir.path("shown.png"));
    ASSERT_EQ(shown.size(), front.size());
    for (std::size_t i = 0; i < front.size(); ++i) ASSERT_EQ(shown[i], front[i] * 257u) << i;
    EXPECT_EQ(read_state(dir.path("last.txt")).field("frame"), 3);
    EXPECT_EQ(read_state(dir.path("looped.txt")).field("frame"), 1);
    EXPECT_NE(run.err.find("\"Gloss\" is hidden"), std::string::npos) << "Use Light is off";
    EXPECT_EQ(tool_support::file_bytes(dir.path("k.keys")), "# paneburst keys: frame  control = value\n1      Seed = 52\n");
}

}  // namespace
