// The control callbacks through the loaded plug-in, called as the host calls
// them: Auto Preview and the viewer redraw, the copies of the common controls,
// the page resets, disabled controls, restart, the light colour pair, Blend,
// Help and the demo presets, and frames processed from inside a callback.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "effect/paneburst.h"
#include "tests/plugin_fixture.h"

using sparkhost::Host;
using sparkhost::Message;
using testing_support::fill_inputs;
using testing_support::plugin_host;
using testing_support::start;

namespace {

const char kResetQuestion[] = "Are you sure you want to reset the current settings to default values?";

// The plug-in's effect object, for reading and setting plain fields (the
// test does not link the plug-in's code, so it calls none of its functions).
Paneburst& effect(Host& host) { return *static_cast<Paneburst*>(host.symbol("Instance")); }

// A host with a small frame, patterned inputs, one frame processed (so that
// the pages are synchronised) and a counter of viewer redraws.
struct Session {
    Host& host;
    int draws = 0;

    explicit Session(int depth_bits = 8, int width = 48, int height = 32) : host(plugin_host()) {
        start(host, width, height, depth_bits, 2);
        fill_inputs(host);
        host.confirm_policy = nullptr;  // yes
        host.on_viewing_draw = [this] { ++draws; };
        EXPECT_NE(host.process(0), nullptr);
    }
    ~Session() { host.on_viewing_draw = nullptr; }

    unsigned long* result_pixels() { return static_cast<unsigned long*>(host.buffer(1).data()); }
    std::vector<std::uint8_t>& result_bytes() { return host.buffer(1).bytes; }
    // Marks the result buffer so that a later frame written into it shows.
    void mark_result() { std::fill(result_bytes().begin(), result_bytes().end(), std::uint8_t{0xA5}); }
    bool result_marked() {
        for (std::uint8_t b : result_bytes())
            if (b != 0xA5) return false;
        return true;
    }
    double value(int control) { return host.control(control)->value(); }
    void set(int control, double v) { host.control(control)->set_value(v); }
    // The controls redrawn since `mark` (an earlier size of the update log).
    std::vector<int> updates_since(std::size_t mark) {
        const std::vector<int>& log = host.update_log();
        return std::vector<int>(log.begin() + static_cast<long>(mark), log.end());
    }
    // All three copies, without callbacks.
    void auto_preview(bool on) {
        for (int control : {34, 63, 92}) set(control, on ? 1 : 0);
    }
};

// The load-time value of every control a page reset writes, by page.
struct Default {
    int control;
    double value;
};
const std::vector<Default> kPage0Defaults = {
    {19, 0},   {6, 12},   {7, 9},   {8, -192}, {9, -12},  {10, 0},   {11, 0},   {30, 1},
    {12, 0},   {26, 200}, {13, 0},  {14, 0},   {15, 5},   {16, 0},   {17, 0},   {18, 10},
    {20, 60},  {21, 60},  {22, 60}, {23, 100}, {24, 100}, {25, 100},
};
const std::vector<Default> kPage1Defaults = {
    {35, 0},  {36, 20}, {37, 80}, {38, 0.2f}, {39, 1}, {40, 44}, {43, 100}, {44, 100},
    {45, 100}, {46, 0}, {47, -0.9f}, {49, 0}, {50, 0}, {51, 0}, {52, 0},
};
const std::vector<Default> kPage2Defaults = {
    {64, 0},  {65, 90}, {66, 40}, {67, 10}, {68, 40}, {69, 5},  {70, 10}, {71, 0}, {72, 40},
    {73, 30}, {74, 10}, {75, 0},  {76, 1},  {77, 270}, {78, 0}, {79, 80}, {80, 80}, {81, 10},
    {82, 0},  {83, 6},  {84, 2},
};

// A value away from the default within the control's range: one up (a
// checkbox on, a list one entry on), or one down at the top of the range.
double scrambled(Session& s, const Default& d) {
    return d.value + 1 <= s.host.control(d.control)->maximum() ? d.value + 1 : d.value - 1;
}

// Moves every control of a page away from its default, without callbacks
// (the colour pot, on page 1, to black).
void scramble(Session& s, const std::vector<Default>& page) {
    for (const Default& d : page) s.set(d.control, scrambled(s, d));
    s.set(42, static_cast<double>(0xFF000000u));
}

void expect_defaults(Session& s, const std::vector<Default>& page) {
    for (const Default& d : page) EXPECT_EQ(s.value(d.control), static_cast<float>(d.value)) << d.control;
}

void expect_scrambled(Session& s, const std::vector<Default>& page) {
    for (const Default& d : page)
        EXPECT_EQ(s.value(d.control), static_cast<float>(scrambled(s, d))) << d.control;
}

int confirmations(const Host& host) {
    int n = 0;
    for (const Message& m : host.messages)
        if (m.kind == Message::Confirm) {
            EXPECT_EQ(m.text, kResetQuestion);
            ++n;
        }
    return n;
}

}  // namespace

TEST(CallbackAutoPreview, OnProcessesTheFrameOffOnlyRedraws) {
    Session s;
    // On (the default), argument 1: the member re-processes and returns the
    // result buffer, freshly written.
    s.mark_result();
    EXPECT_EQ(s.host.change_control(13, 2.0), s.result_pixels());
    EXPECT_FALSE(s.result_marked());
    EXPECT_EQ(s.draws, 0);
    // Any other argument: a redraw only.
    s.mark_result();
    EXPECT_EQ(s.host.call_callback(13, 0), nullptr);
    EXPECT_EQ(s.draws, 1);
    EXPECT_TRUE(s.result_marked());

    // Switched off on page 0: the other copies follow, and the switch itself
    // ends in a redraw.
    EXPECT_EQ(s.host.change_control(34, 0), nullptr);
    EXPECT_EQ(s.value(63), 0);
    EXPECT_EQ(s.value(92), 0);
    EXPECT_EQ(s.draws, 2);
    // Off: every kind of member ends in a redraw and returns null.
    for (int control : {13, 6, 36, 70, 35, 30, 42}) {
        SCOPED_TRACE(control);
        EXPECT_EQ(s.host.call_callback(control), nullptr);
    }
    EXPECT_EQ(s.draws, 9);
    EXPECT_TRUE(s.result_marked());

    // Switched on again from page 2: all copies on, and that callback already
    // shows the frame.
    EXPECT_EQ(s.host.change_control(92, 1), s.result_pixels());
    EXPECT_EQ(s.value(34), 1);
    EXPECT_EQ(s.value(63), 1);
    EXPECT_FALSE(s.result_marked());
}

TEST(CallbackAutoPreview, FramesFromCallbacksMatchFramesFromTheHost) {
    Session s;
    // The host's own frames after a restart.
    s.auto_preview(false);
    s.host.call_callback(29);
    std::vector<std::vector<std::uint8_t>> by_host;
    for (int i = 0; i < 3; ++i) {
        ASSERT_NE(s.host.process(0), nullptr);
        by_host.push_back(s.result_bytes());
    }
    EXPECT_NE(by_host[1], by_host[2]);  // the elements move

    // The same steps, each processed from inside a callback.
    s.auto_preview(true);
    std::vector<std::vector<std::uint8_t>> by_callback;
    ASSERT_EQ(s.host.call_callback(29), s.result_pixels());  // restart and show
    by_callback.push_back(s.result_bytes());
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(s.host.change_control(13, 0.0), s.result_pixels());  // X Speed left as it was
        by_callback.push_back(s.result_bytes());
    }
    EXPECT_EQ(by_callback, by_host);
    // And the host's next frame carries on from there.
    ASSERT_NE(s.host.process(0), nullptr);
    EXPECT_NE(s.result_bytes(), by_callback.back());
}

TEST(CallbackCommonControls, ResolutionReprocessesAndCopiesEvenWithAutoPreviewOff) {
    Session s;
    s.auto_preview(false);
    const int& scale = *static_cast<int*>(s.host.symbol("DLscalesr"));
    for (int control : {62, 91, 33}) {
        SCOPED_TRACE(control);
        const int popup = control == 33 ? 0 : control == 62 ? 1 : 2;
        const std::size_t mark = s.host.update_log().size();
        s.mark_result();
        EXPECT_EQ(s.host.change_control(control, popup), s.result_pixels());
        EXPECT_FALSE(s.result_marked());
        EXPECT_EQ(s.value(33), popup);
        EXPECT_EQ(s.value(62), popup);
        EXPECT_EQ(s.value(91), popup);
        EXPECT_EQ(scale, popup + 1);  // FULL, 1/2, 1/3
        // Only the popup the user changed is redrawn.
        EXPECT_EQ(s.updates_since(mark), std::vector<int>{control});
    }
    EXPECT_EQ(s.draws, 0);
}

TEST(CallbackCommonControls, ClearOverlayCopiesStayEqualAndOnlyRedraw) {
    Session s;
    s.mark_result();
    EXPECT_EQ(s.host.change_control(57, 1), nullptr);
    EXPECT_EQ(s.value(28), 1);
    EXPECT_EQ(s.value(86), 1);
    EXPECT_EQ(s.draws, 1);
    EXPECT_EQ(s.host.change_control(86, 0), nullptr);
    EXPECT_EQ(s.value(28), 0);
    EXPECT_EQ(s.value(57), 0);
    EXPECT_EQ(s.host.change_control(28, 1), nullptr);
    EXPECT_EQ(s.value(57), 1);
    EXPECT_EQ(s.value(86), 1);
    EXPECT_EQ(s.draws, 3);
    EXPECT_TRUE(s.result_marked());  // never a frame, Auto Preview or not
    EXPECT_EQ(s.host.update_count(28), 1);
    EXPECT_EQ(s.host.update_count(57), 1);
}

TEST(CallbackCommonControls, BlendReprocessesOnlyInModeOne) {
    Session s;
    s.host.mode_flag = 0;
    s.mark_result();
    EXPECT_EQ(s.host.change_control(27, 50), nullptr);
    EXPECT_EQ(s.draws, 1);
    EXPECT_EQ(s.host.update_count(27), 0);
    EXPECT_TRUE(s.result_marked());

    s.host.mode_flag = 1;
    EXPECT_EQ(s.host.call_callback(27, 0), nullptr);  // argument other than 1
    EXPECT_EQ(s.draws, 2);
    EXPECT_EQ(s.host.change_control(27, 40), s.result_pixels());
    EXPECT_EQ(s.draws, 3);
    EXPECT_EQ(s.host.update_count(27), 1);
    EXPECT_FALSE(s.result_marked());

    // Mode 1 with Auto Preview off: the tail redraws as well.
    s.auto_preview(false);
    EXPECT_EQ(s.host.change_control(27, 30), nullptr);
    EXPECT_EQ(s.draws, 5);
    EXPECT_EQ(s.host.update_count(27), 2);
}

TEST(CallbackReset, AnsweredNoChangesNothingButEndsInTheTail) {
    Session s;
    s.auto_preview(false);
    scramble(s, kPage0Defaults);
    scramble(s, kPage1Defaults);
    scramble(s, kPage2Defaults);
    s.host.confirm_policy = [](const std::string&) { return false; };
    const std::size_t mark = s.host.update_log().size();
    for (int control : {32, 61, 90}) EXPECT_EQ(s.host.call_callback(control), nullptr);
    EXPECT_EQ(confirmations(s.host), 3);
    EXPECT_EQ(s.draws, 3);
    EXPECT_TRUE(s.updates_since(mark).empty());
    expect_scrambled(s, kPage0Defaults);
    expect_scrambled(s, kPage1Defaults);
    expect_scrambled(s, kPage2Defaults);
    EXPECT_EQ(s.value(42), static_cast<double>(0xFF000000u));

    // With Auto Preview on, the tail shows the frame.
    s.auto_preview(true);
    EXPECT_EQ(s.host.call_callback(61), s.result_pixels());
    expect_scrambled(s, kPage1Defaults);
}

TEST(CallbackReset, AnsweredYesRestoresOnlyItsOwnPage) {
    Session s;
    Paneburst& fx = effect(s.host);
    s.auto_preview(false);
    scramble(s, kPage0Defaults);
    scramble(s, kPage1Defaults);
    scramble(s, kPage2Defaults);
    // Controls without an object are no part of a reset.
    s.set(27, 25);
    s.set(28, 1);
    s.set(33, 2);
    // The light and the wind shown, as their switches now say.
    s.host.change_control(35, 1);
    s.host.change_control(64, 1);
    ASSERT_FALSE(s.host.hidden(36));
    ASSERT_FALSE(s.host.hidden(65));

    // Page 1 ("Light"): its descriptors in binding order, a position x then
    // y, the colour pot then its three sliders; nothing else is redrawn.
    const std::size_t mark = s.host.update_log().size();
    EXPECT_EQ(s.host.call_callback(61), nullptr);
    EXPECT_EQ(confirmations(s.host), 1);
    EXPECT_EQ(s.updates_since(mark),
              (std::vector<int>{35, 36, 37, 38, 39, 40, 42, 43, 44, 45, 46, 47, 49, 50, 51, 52}));
    expect_defaults(s, kPage1Defaults);
    EXPECT_EQ(s.value(42), static_cast<double>(0xFFFFFFFFu));
    expect_scrambled(s, kPage0Defaults);
    expect_scrambled(s, kPage2Defaults);
    // Every object was refreshed: the page's own from the defaults, the
    // others from the values they hold now.
    EXPECT_EQ(fx.light_colour_ctl.value.r, 32767);
    EXPECT_EQ(fx.gloss_ctl.value, 44.0);
    EXPECT_EQ(fx.speed_z_ctl.value, 6.0);
    EXPECT_EQ(fx.seed_ctl.value, 201);
    // SyncControls ran: the light is off, so its controls are hidden again.
    EXPECT_TRUE(s.host.hidden(36));
    EXPECT_TRUE(s.host.hidden(42));
    EXPECT_FALSE(s.host.hidden(65));
    EXPECT_EQ(s.draws, 3);

    EXPECT_EQ(s.host.call_callback(32), nullptr);
    expect_defaults(s, kPage0Defaults);
    expect_scrambled(s, kPage2Defaults);
    EXPECT_EQ(s.host.call_callback(90), nullptr);
    expect_defaults(s, kPage2Defaults);
    EXPECT_TRUE(s.host.hidden(65));
    EXPECT_EQ(fx.gravity_angle_ctl.value, 270.0);
    EXPECT_EQ(s.value(27), 25);
    EXPECT_EQ(s.value(28), 1);
    EXPECT_EQ(s.value(33), 2);
    EXPECT_EQ(s.value(34), 0);

    // With Auto Preview on, a reset shows the frame with the defaults.
    s.auto_preview(true);
    EXPECT_EQ(s.host.call_callback(90), s.result_pixels());
}

TEST(CallbackDisabled, ClickOnDisabledCheckboxIsUndoneWithoutTheHandler) {
    Session s;
    Paneburst& fx = effect(s.host);
    ASSERT_TRUE(s.host.hidden(36));
    fx.use_light_ctl.disabled = true;  // as Disable(true) leaves it, with
    fx.use_light_ctl.saved = 0;        // the value byte saved at 0
    const int updates = s.host.update_count(35);
    s.mark_result();
    EXPECT_EQ(s.host.change_control(35, 1), nullptr);
    EXPECT_EQ(s.value(35), 0);
    EXPECT_EQ(s.host.update_count(35), updates + 2);  // the click, the undo
    EXPECT_TRUE(s.host.hidden(36));                   // no handler, no SyncControls
    EXPECT_EQ(s.draws, 0);
    EXPECT_TRUE(s.result_marked());

    // The colour pot: the saved word goes back.
    auto* saved_colour = static_cast<std::uint32_t*>(s.host.symbol("AuxQ7Colour42"));
    *saved_colour = 0xFF336699u;
    fx.light_colour_ctl.disabled = true;
    EXPECT_EQ(s.host.change_control(42, static_cast<double>(0xFF000000u)), nullptr);
    EXPECT_EQ(s.value(42), static_cast<double>(0xFF336699u));
    EXPECT_EQ(s.value(43), 100);  // the sliders stay
    // And its sliders do not move the pot while it is disabled.
    const std::size_t mark = s.host.update_log().size();
    EXPECT_EQ(s.host.change_control(43, 0), nullptr);
    EXPECT_EQ(s.value(42), static_cast<double>(0xFF336699u));
    EXPECT_TRUE(s.updates_since(mark).empty());
    EXPECT_EQ(s.draws, 0);
}

TEST(CallbackDisabled, RestartNeedsEnabledButNotNotify) {
    Session s;
    Paneburst& fx = effect(s.host);
    s.auto_preview(false);
    for (int i = 0; i < 3; ++i) {
        const int control = i == 0 ? 29 : i == 1 ? 58 : 87;
        SCOPED_TRACE(control);
        fx.restart = 0;
        fx.restart_ctl[i].disabled = true;
        EXPECT_EQ(s.host.call_callback(control), nullptr);
        EXPECT_EQ(fx.restart, 0);
        fx.restart_ctl[i].disabled = false;

        fx.restart_ctl[i].notify = false;
        const int draws = s.draws;
        EXPECT_EQ(s.host.call_callback(control), nullptr);
        EXPECT_EQ(fx.restart, 1);
        EXPECT_EQ(s.draws, draws);  // no tail
        fx.restart_ctl[i].notify = true;

        fx.restart = 0;
        EXPECT_EQ(s.host.call_callback(control), nullptr);
        EXPECT_EQ(fx.restart, 1);
        EXPECT_EQ(s.draws, draws + 1);
    }
}

TEST(CallbackDisabled, NotifyOffStopsAfterTheHandler) {
    Session s;
    Paneburst& fx = effect(s.host);
    fx.use_wind_ctl.notify = false;
    s.mark_result();
    // The handler still shows the wind controls; no SyncControls, no tail.
    EXPECT_EQ(s.host.change_control(64, 1), nullptr);
    EXPECT_FALSE(s.host.hidden(65));
    EXPECT_EQ(s.draws, 0);
    EXPECT_TRUE(s.result_marked());
    fx.use_wind_ctl.notify = true;
}

TEST(CallbackLightColour, EightBitRoundTrips) {
    Session s(8);
    s.auto_preview(false);
    auto get_colour = reinterpret_cast<SparkCallback>(s.host.symbol("GetLightColourCB"));
    ASSERT_NE(get_colour, nullptr);

    // Pot to sliders through the pot's own callback: 255 / 2.55 = 100.
    std::size_t mark = s.host.update_log().size();
    s.set(43, 0), s.set(44, 0), s.set(45, 0);
    EXPECT_EQ(s.host.change_control(42, static_cast<double>(0xFFFFFFFFu)), nullptr);
    EXPECT_EQ(s.value(43), 100);
    EXPECT_EQ(s.value(44), 100);
    EXPECT_EQ(s.value(45), 100);
    EXPECT_EQ(s.updates_since(mark), (std::vector<int>{43, 44, 45}));
    EXPECT_EQ(s.draws, 1);
    // 0x40 = 64: 25.098 -> 25; 0xFF -> 100; 0 -> 0.
    s.set(42, static_cast<double>(0xFF00FF40u));
    EXPECT_EQ(get_colour(1, s.host.frame_record(0)), nullptr);
    EXPECT_EQ(s.value(43), 25);
    EXPECT_EQ(s.value(44), 100);
    EXPECT_EQ(s.value(45), 0);
    EXPECT_EQ(s.draws, 2);
    // Argument other than 1: the sliders stay, the tail still runs.
    s.set(42, static_cast<double>(0xFF000000u));
    EXPECT_EQ(get_colour(0, s.host.frame_record(0)), nullptr);
    EXPECT_EQ(s.host.call_callback(42, 0), nullptr);
    EXPECT_EQ(s.value(43), 25);
    EXPECT_EQ(s.draws, 4);

    // Sliders to pot: 100 x 2.551 = 255.1 -> 255 in every channel.
    s.set(43, 100), s.set(44, 100), s.set(45, 100);
    mark = s.host.update_log().size();
    EXPECT_EQ(s.host.change_control(44, 100), nullptr);
    EXPECT_EQ(s.value(42), static_cast<double>(0xFFFFFFFFu));
    EXPECT_EQ(s.updates_since(mark), (std::vector<int>{43, 44, 45}));  // not the pot
    // 33.3 x 2.551 = 84.948 -> 84 (0x54); 50 x 2.551 = 127.55 -> 127; 0 -> 0.
    s.set(43, 33.3), s.set(44, 50), s.set(45, 0);
    EXPECT_EQ(s.host.change_control(45, 0), nullptr);
    EXPECT_EQ(s.value(42), static_cast<double>(0xFF007F54u));
    // The colour object follows the pot: 0x54 reads (0x54 << 7) | (0x54 >> 1).
    EXPECT_EQ(effect(s.host).light_colour_ctl.value.r, (0x54 << 7) | (0x54 >> 1));
    EXPECT_EQ(effect(s.host).light_colour_ctl.value.b, 0);

    // With Auto Preview on both directions show the frame.
    s.auto_preview(true);
    EXPECT_EQ(s.host.change_control(43, 100), s.result_pixels());
    EXPECT_EQ(get_colour(1, s.host.frame_record(0)), s.result_pixels());
}

TEST(CallbackLightColour, TwelveBitRoundTrips) {
    Session s(12);
    s.auto_preview(false);
    auto get_colour = reinterpret_cast<SparkCallback>(s.host.symbol("GetLightColourCB"));
    ASSERT_NE(get_colour, nullptr);

    // 255 x 16 / 40.95 = 99.63 -> 99 on the 12-bit scale.
    EXPECT_EQ(s.host.change_control(42, static_cast<double>(0xFFFFFFFFu)), nullptr);
    EXPECT_EQ(s.value(43), 99);
    EXPECT_EQ(s.value(44), 99);
    EXPECT_EQ(s.value(45), 99);
    // 64 x 16 / 40.95 = 25.006 -> 25; 128 x 16 / 40.95 = 50.01 -> 50.
    s.set(42, static_cast<double>(0xFF8040FFu));
    EXPECT_EQ(get_colour(1, s.host.frame_record(0)), nullptr);
    EXPECT_EQ(s.value(43), 99);
    EXPECT_EQ(s.value(44), 25);
    EXPECT_EQ(s.value(45), 50);

    // 100 x 40.951 = 4095.1 -> 4095: 0xFF in every channel.
    s.set(43, 100), s.set(44, 100), s.set(45, 100);
    EXPECT_EQ(s.host.change_control(43, 100), nullptr);
    EXPECT_EQ(s.value(42), static_cast<double>(0xFFFFFFFFu));
    // 33.3 x 40.951 = 1363.67 -> 1363 >> 4 = 85 (0x55), one above the 8-bit
    // result; 99 x 40.951 = 4054.1 -> 4054 >> 4 = 253 (0xFD).
    s.set(43, 33.3), s.set(44, 99), s.set(45, 0);
    EXPECT_EQ(s.host.change_control(43, 33.3), nullptr);
    EXPECT_EQ(s.value(42), static_cast<double>(0xFF00FD55u));
}

TEST(CallbackHelp, OpensThePageInTheConfiguredBrowser) {
    Session s;
    const std::string dir = testing::TempDir() + "/paneburst_help_" + std::to_string(getpid());
    mkdir(dir.c_str(), 0700);
    const std::string out = dir + "/arguments";
    const std::string browser = dir + "/browser.sh";
    {
        std::ofstream script(browser);
        script << "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" << out << ".part' && mv '" << out << ".part' '" << out
               << "'\n";
    }
    chmod(browser.c_str(), 0700);
    std::remove(out.c_str());
    setenv("Q7_HELP_BROWSER", browser.c_str(), 1);
    setenv("DIR_7", "/opt/fx", 1);

    // All three pages' buttons share the callback.
    EXPECT_EQ(s.host.control(60)->callback(), s.host.control(31)->callback());
    EXPECT_EQ(s.host.control(89)->callback(), s.host.control(31)->callback());
    s.mark_result();
    EXPECT_EQ(s.host.call_callback(31), nullptr);
    EXPECT_EQ(s.draws, 0);
    EXPECT_TRUE(s.result_marked());

    // The browser runs in the background: wait for what it wrote.
    std::string written;
    for (int i = 0; i < 200 && written.empty(); ++i) {
        std::ifstream in(out);
        std::stringstream text;
        text << in.rdbuf();
        written = text.str();
        if (written.empty()) usleep(50 * 1000);
    }
    EXPECT_EQ(written, "-geometry\n+50+50\nfile:/opt/fx/dl/help/paneburst.htm\n");
    for (const Message& m : s.host.messages) EXPECT_NE(m.kind, Message::Error) << m.text;
    unsetenv("Q7_HELP_BROWSER");
    unsetenv("DIR_7");
    std::remove(out.c_str());
    std::remove(browser.c_str());
    rmdir(dir.c_str());
}

TEST(CallbackDemos, VenetianVSetsItsValuesAndRepeatsExactly) {
    Session s(8, 64, 40);
    Paneburst& fx = effect(s.host);
    s.auto_preview(false);
    // Force switches on beforehand: the preset turns them off.
    for (int control : {64, 71, 75, 78, 82}) s.host.change_control(control, 1);
    const int draws = s.draws;

    fx.restart = 0;
    EXPECT_EQ(s.host.change_control(19, 2), nullptr);  // the third entry
    EXPECT_EQ(s.draws, draws + 1);
    EXPECT_EQ(fx.restart, 1);
    EXPECT_EQ(s.value(6), 10);
    EXPECT_EQ(s.value(7), 1);
    EXPECT_EQ(s.value(21), 4);
    EXPECT_EQ(s.value(26), 9999);
    for (int control : {64, 71, 75, 78, 82}) EXPECT_EQ(s.value(control), 0) << control;
    // SyncControls ran after the preset: every force parameter is hidden.
    for (int control : {65, 72, 76, 79, 83}) EXPECT_TRUE(s.host.hidden(control)) << control;

    auto run = [&s] {
        std::vector<std::vector<std::uint8_t>> frames;
        for (std::uint32_t f = 1; f <= 4; ++f) {
            EXPECT_NE(s.host.process(f), nullptr);
            frames.push_back(s.result_bytes());
        }
        return frames;
    };
    const auto first = run();
    EXPECT_NE(first[1], first[3]);  // the slats turn (a few degrees a step)

    // Change things the preset sets, and some it does not touch while their
    // switch is off, then choose it again.
    s.host.change_control(6, 5);
    s.host.change_control(21, 30);
    s.host.change_control(64, 1);
    s.host.change_control(69, 40);
    s.host.process(9);
    EXPECT_EQ(s.host.change_control(19, 2), nullptr);
    EXPECT_EQ(run(), first);
}
