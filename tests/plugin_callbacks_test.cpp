// The control callbacks through the loaded plug-in, called as the host calls
// them, with the viewer redraws and frames they cause.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "effect/paneburst.h"
#include "tests/plugin_fixture.h"

using sparkhost::Host;
using sparkhost::Message;

namespace {

// The plug-in's effect object, for reading and setting plain fields (the
// test does not link the plug-in's code, so it calls none of its functions).
Paneburst& effect(Host& host) { return *static_cast<Paneburst*>(host.symbol("Instance")); }

constexpr double kBlack = static_cast<double>(0xFF000000u), kWhite = static_cast<double>(0xFFFFFFFFu);

// A host with a small frame, patterned inputs, one frame processed (so that
// the pages are synchronised) and a counter of viewer redraws.
struct Session {
    Host& host;
    int draws = 0;
    explicit Session(int depth_bits = 8) : host(testing_support::plugin_host()) {
        testing_support::start(host, 48, 32, depth_bits, 2);
        testing_support::fill_inputs(host);
        host.confirm_policy = nullptr;  // yes
        host.on_viewing_draw = [this] { ++draws; };
        EXPECT_NE(host.process(0), nullptr);
    }
    ~Session() { host.on_viewing_draw = nullptr; }
    unsigned long* frame() { return static_cast<unsigned long*>(host.buffer(1).data()); }
    std::vector<std::uint8_t>& result() { return host.buffer(1).bytes; }
    // Marks the result buffer so that a later frame written into it shows.
    void mark_result() { std::fill(result().begin(), result().end(), std::uint8_t{0xA5}); }
    bool result_marked() {
        return std::all_of(result().begin(), result().end(), [](std::uint8_t b) { return b == 0xA5; });
    }
    double value(int control) { return host.control(control)->value(); }
    void set(int control, double v) { host.control(control)->set_value(v); }
    // The controls redrawn since `mark` (an earlier size of the update log).
    std::vector<int> updates_since(std::size_t mark) {
        return std::vector<int>(host.update_log().begin() + static_cast<long>(mark), host.update_log().end());
    }
    void auto_preview(bool on) { for (int c : {34, 63, 92}) set(c, on ? 1 : 0); }  // all copies, no callbacks
};

// The load-time value of every control a page reset writes, by page, in the
// order of the binding table.
struct Default { int control; double value; };
const std::vector<Default> kPageDefaults[3] = {
    {{19, 0}, {6, 12}, {7, 9}, {8, -192}, {9, -12}, {10, 0}, {11, 0}, {30, 1}, {12, 0}, {26, 200}, {13, 0},
     {14, 0}, {15, 5}, {16, 0}, {17, 0}, {18, 10}, {20, 60}, {21, 60}, {22, 60}, {23, 100}, {24, 100}, {25, 100}},
    {{35, 0}, {36, 20}, {37, 80}, {38, 0.2f}, {39, 1}, {40, 44}, {43, 100}, {44, 100}, {45, 100}, {46, 0},
     {47, -0.9f}, {49, 0}, {50, 0}, {51, 0}, {52, 0}},
    {{64, 0}, {65, 90}, {66, 40}, {67, 10}, {68, 40}, {69, 5}, {70, 10}, {71, 0}, {72, 40}, {73, 30}, {74, 10},
     {75, 0}, {76, 1}, {77, 270}, {78, 0}, {79, 80}, {80, 80}, {81, 10}, {82, 0}, {83, 6}, {84, 2}},
};
constexpr int kResetButton[3] = {32, 61, 90};

// A value away from the default within the control's range: one up, or one
// down at the top of the range.
double scrambled(Session& s, const Default& d) {
    return d.value + 1 <= s.host.control(d.control)->maximum() ? d.value + 1 : d.value - 1;
}

// Every control of every page away from its default, the colour pot black.
void scramble_all(Session& s) {
    for (const auto& page : kPageDefaults)
        for (const Default& d : page) s.set(d.control, scrambled(s, d));
    s.set(42, kBlack);
}

void expect_page(Session& s, int page, bool reset) {
    SCOPED_TRACE(::testing::Message() << "page " << page << (reset ? " reset" : " scrambled"));
    for (const Default& d : kPageDefaults[page])
        EXPECT_EQ(s.value(d.control), static_cast<float>(reset ? d.value : scrambled(s, d))) << d.control;
}

std::string file_text(const std::string& path) { return (std::stringstream() << std::ifstream(path).rdbuf()).str(); }

long confirmations(const Host& host) {
    return std::count_if(host.messages.begin(), host.messages.end(), [](const Message& m) {
        return m.kind == Message::Confirm &&
               m.text == "Are you sure you want to reset the current settings to default values?";
    });
}

}  // namespace

TEST(CallbackAutoPreview, OnWithArgumentOneProcessesTheFrameOtherwiseOnlyRedraws) {
    Session s;
    s.mark_result();
    EXPECT_EQ(s.host.change_control(13, 2.0), s.frame());  // freshly written, no redraw
    EXPECT_FALSE(s.result_marked());
    EXPECT_EQ(s.draws, 0);
    s.mark_result();
    EXPECT_EQ(s.host.call_callback(13, 0), nullptr);  // any other argument
    // Off: every kind of member ends in a redraw and returns null.
    s.auto_preview(false);
    for (int control : {13, 6, 36, 70, 35, 30, 42}) EXPECT_EQ(s.host.call_callback(control), nullptr) << control;
    EXPECT_EQ(s.draws, 8);
    EXPECT_TRUE(s.result_marked());
}

TEST(CallbackCommonControls, EachPagesCopyUpdatesItselfAndSetsTheOtherTwo) {
    Session s;
    const int& scale = *static_cast<int*>(s.host.symbol("DLscalesr"));
    // Values written on page 0, 1, 2 in turn; a processed frame returned (else
    // null); viewer redraws by the callback.
    const struct { const char* what; int copies[3]; double values[3]; bool frame[3]; int draws[3]; } families[] = {
        // Never a frame, even with Auto Preview on.
        {"Clear Overlay", {28, 57, 86}, {1, 0, 1}, {false, false, false}, {1, 1, 1}},
        // Switched off it redraws; switched on it already shows the frame.
        {"Auto Preview", {34, 63, 92}, {0, 1, 0}, {false, true, false}, {1, 0, 1}},
        // A frame even with Auto Preview off (as the row above leaves it).
        {"resolution", {33, 62, 91}, {2, 1, 0}, {true, true, true}, {0, 0, 0}},
    };
    for (const auto& f : families)
        for (int page = 0; page < 3; ++page) {
            SCOPED_TRACE(::testing::Message() << f.what << " page " << page);
            const int control = f.copies[page], draws = s.draws;
            const std::size_t mark = s.host.update_log().size();
            s.mark_result();
            EXPECT_EQ(s.host.change_control(control, f.values[page]), f.frame[page] ? s.frame() : nullptr);
            EXPECT_EQ(s.result_marked(), !f.frame[page]);
            EXPECT_EQ(s.draws - draws, f.draws[page]);
            for (int copy : f.copies) EXPECT_EQ(s.value(copy), f.values[page]) << copy;
            EXPECT_EQ(s.updates_since(mark), std::vector<int>{control});  // not the other copies
            EXPECT_TRUE(f.copies[0] != 33 || scale == f.values[page] + 1) << scale;  // FULL, 1/2, 1/3
        }
}

TEST(CallbackCommonControls, BlendReprocessesOnlyInModeOneWithArgumentOne) {
    Session s;
    s.host.mode_flag = 0;
    s.mark_result();
    EXPECT_EQ(s.host.change_control(27, 50), nullptr);
    EXPECT_EQ(s.host.update_count(27), 0);
    EXPECT_TRUE(s.result_marked());
    s.host.mode_flag = 1;
    EXPECT_EQ(s.host.call_callback(27, 0), nullptr);
    EXPECT_EQ(s.host.change_control(27, 40), s.frame());
    EXPECT_EQ(s.draws, 3);
    s.auto_preview(false);  // mode 1 with Auto Preview off: the tail redraws as well
    EXPECT_EQ(s.host.change_control(27, 30), nullptr);
    EXPECT_EQ(s.draws, 5);
    EXPECT_EQ(s.host.update_count(27), 2);
}

TEST(CallbackReset, AnsweredNoChangesNothingAnsweredYesRestoresOnlyItsOwnPage) {
    Session s;
    Paneburst& fx = effect(s.host);
    s.auto_preview(false);
    scramble_all(s);
    for (auto c : {std::pair<int, double>{27, 25}, {28, 1}, {33, 2}}) s.set(c.first, c.second);  // no object: kept
    s.host.change_control(35, 1);  // the light and the wind shown, as their switches now say
    s.host.change_control(64, 1);
    s.host.confirm_policy = [](const std::string&) { return false; };
    s.draws = 0;
    std::size_t mark = s.host.update_log().size();
    for (int control : kResetButton) EXPECT_EQ(s.host.call_callback(control), nullptr);
    EXPECT_EQ(s.draws, 3);  // the tail still runs
    EXPECT_TRUE(s.updates_since(mark).empty());
    for (int page = 0; page < 3; ++page) expect_page(s, page, false);
    EXPECT_EQ(s.value(42), kBlack);
    s.host.confirm_policy = nullptr;
    bool reset[3] = {false, false, false};
    for (int page : {1, 0, 2}) {
        SCOPED_TRACE(page);
        // The page's descriptors redrawn in binding order, the colour pot
        // before its three sliders; nothing else.
        std::vector<int> expected;
        for (const Default& d : kPageDefaults[page]) {
            if (d.control == 43) expected.push_back(42);
            expected.push_back(d.control);
        }
        mark = s.host.update_log().size();
        const int draws = s.draws;
        EXPECT_EQ(s.host.call_callback(kResetButton[page]), nullptr);
        EXPECT_EQ(s.updates_since(mark), expected);
        EXPECT_EQ(s.draws, draws + 1);
        reset[page] = true;
        for (int p = 0; p < 3; ++p) expect_page(s, p, reset[p]);
        if (page == 1) {
            EXPECT_EQ(s.value(42), kWhite);
            // The page's objects from the defaults, the others from their values now.
            EXPECT_EQ(fx.light_colour_ctl.value.r, 32767);
            EXPECT_EQ(fx.speed_z_ctl.value, 6.0);
            EXPECT_TRUE(s.host.hidden(36));  // SyncControls ran: the light is off
            EXPECT_FALSE(s.host.hidden(65));
        }
    }
    EXPECT_EQ(confirmations(s.host), 6);
    EXPECT_TRUE(s.host.hidden(65));
    for (auto c : {std::pair<int, double>{27, 25}, {28, 1}, {33, 2}, {34, 0}}) EXPECT_EQ(s.value(c.first), c.second);
    s.auto_preview(true);  // a reset shows the frame with the defaults
    EXPECT_EQ(s.host.call_callback(90), s.frame());
}

TEST(CallbackDisabled, ClickOnDisabledCheckboxOrPotIsUndoneWithoutTheHandler) {
    Session s;
    Paneburst& fx = effect(s.host);
    fx.use_light_ctl.disabled = true, fx.use_light_ctl.saved = 0;  // as Disable(true) leaves it, value byte 0
    const int updates = s.host.update_count(35);
    s.mark_result();
    EXPECT_EQ(s.host.change_control(35, 1), nullptr);
    EXPECT_EQ(s.value(35), 0);
    EXPECT_EQ(s.host.update_count(35), updates + 2);  // the click, the undo
    EXPECT_TRUE(s.host.hidden(36));                   // no handler, no SyncControls
    EXPECT_TRUE(s.result_marked());
    // The colour pot: the saved word goes back; its sliders do not move it.
    *static_cast<std::uint32_t*>(s.host.symbol("AuxQ7Colour42")) = 0xFF336699u;
    fx.light_colour_ctl.disabled = true;
    EXPECT_EQ(s.host.change_control(42, kBlack), nullptr);
    EXPECT_EQ(s.host.change_control(43, 0), nullptr);
    EXPECT_EQ(s.value(42), static_cast<double>(0xFF336699u));
    EXPECT_EQ(s.draws, 0);
}

TEST(CallbackDisabled, RestartNeedsEnabledButNotNotify) {
    Session s;
    Paneburst& fx = effect(s.host);
    s.auto_preview(false);
    const int buttons[3] = {29, 58, 87};
    const struct { bool disabled, notify; int restart, draws; } cases[] = {
        {true, true, 0, 0}, {false, false, 1, 0}, {false, true, 1, 1}};
    for (int i = 0; i < 3; ++i)
        for (const auto& c : cases) {
            SCOPED_TRACE(::testing::Message() << buttons[i] << " disabled " << c.disabled << " notify " << c.notify);
            fx.restart = 0;
            fx.restart_ctl[i].disabled = c.disabled;
            fx.restart_ctl[i].notify = c.notify;
            const int draws = s.draws;
            EXPECT_EQ(s.host.call_callback(buttons[i]), nullptr);
            EXPECT_EQ(fx.restart, c.restart);
            EXPECT_EQ(s.draws, draws + c.draws);  // the tail only with notify
        }
}

TEST(CallbackLightColour, PotAndSlidersRoundTripAtEightAndTwelveBits) {
    // to_pot: the sliders moved, else the pot.
    const struct { int depth; bool to_pot; std::uint32_t pot; double sliders[3]; const char* why; } cases[] = {
        {8, false, 0xFFFFFFFFu, {100, 100, 100}, "255 / 2.55"},
        {8, false, 0xFF00FF40u, {25, 100, 0}, "64 / 2.55 = 25.098"},
        {8, true, 0xFFFFFFFFu, {100, 100, 100}, "100 x 2.551 = 255.1"},
        {8, true, 0xFF007F54u, {33.3, 50, 0}, "33.3 x 2.551 = 84.948, 50 x 2.551 = 127.55"},
        {12, false, 0xFFFFFFFFu, {99, 99, 99}, "255 x 16 / 40.95 = 99.63"},
        {12, false, 0xFF8040FFu, {99, 25, 50}, "64 x 16 / 40.95 = 25.006, 128 x 16 / 40.95 = 50.01"},
        {12, true, 0xFFFFFFFFu, {100, 100, 100}, "100 x 40.951 = 4095.1, >> 4"},
        {12, true, 0xFF00FD55u, {33.3, 99, 0}, "33.3 x 40.951 = 1363.67 >> 4 = 85, 99 x 40.951 = 4054.1 >> 4"},
    };
    for (int depth : {8, 12}) {
        Session s(depth);
        s.auto_preview(false);
        auto get_colour = reinterpret_cast<SparkCallback>(s.host.symbol("GetLightColourCB"));
        ASSERT_NE(get_colour, nullptr);
        for (const auto& c : cases) {
            if (c.depth != depth) continue;
            SCOPED_TRACE(::testing::Message() << depth << " bits: " << c.why);
            for (int k = 0; k < 3; ++k) s.set(43 + k, c.to_pot ? c.sliders[k] : 0);
            const std::size_t mark = s.host.update_log().size();
            const int draws = s.draws;
            if (c.to_pot) {
                EXPECT_EQ(s.host.change_control(45, c.sliders[2]), nullptr);
                EXPECT_EQ(s.value(42), static_cast<double>(c.pot));
                // The colour object follows the pot, its 8-bit red spread to 15 bits.
                const int r8 = static_cast<int>(c.pot & 0xFF);
                EXPECT_EQ(effect(s.host).light_colour_ctl.value.r, (r8 << 7) | (r8 >> 1));
            } else {
                s.set(42, c.pot);
                EXPECT_EQ(get_colour(1, s.host.frame_record(0)), nullptr);
                for (int k = 0; k < 3; ++k) EXPECT_EQ(s.value(43 + k), c.sliders[k]) << 43 + k;
            }
            EXPECT_EQ(s.updates_since(mark), (std::vector<int>{43, 44, 45}));  // never the pot
            EXPECT_EQ(s.draws, draws + 1);
        }
        s.auto_preview(true);  // both directions show the frame
        EXPECT_EQ(s.host.change_control(43, 100), s.frame());
        EXPECT_EQ(get_colour(1, s.host.frame_record(0)), s.frame());
    }
}

TEST(CallbackHelp, OpensThePageInTheConfiguredBrowserWithoutARedraw) {
    Session s;
    // A stand-in browser that writes its arguments to a file, atomically.
    const std::string out = testing::TempDir() + "/paneburst_help_" + std::to_string(getpid()), browser = out + ".sh";
    std::ofstream(browser) << "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" << out << ".part' && mv '" << out << ".part' '"
                           << out << "'\n";
    chmod(browser.c_str(), 0700);
    setenv("Q7_HELP_BROWSER", browser.c_str(), 1), setenv("DIR_7", "/opt/fx", 1);
    EXPECT_EQ(s.host.call_callback(60), nullptr);  // the page 1 copy
    EXPECT_EQ(s.draws, 0);
    std::string written;  // the browser runs in the background
    for (int i = 0; i < 200 && (written = file_text(out)).empty(); ++i) usleep(50 * 1000);
    EXPECT_EQ(written, "-geometry\n+50+50\nfile:/opt/fx/dl/help/paneburst.htm\n");
    for (const char* v : {"Q7_HELP_BROWSER", "DIR_7"}) unsetenv(v);
    for (const std::string& f : {out, browser}) std::remove(f.c_str());
}
