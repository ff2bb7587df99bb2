// The frame cycle end to end through the real plug-in file: loading,
// start-up report, buffer handling, working resolution, Blend and bit depth.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "effect/paneburst.h"
#include "tests/plugin_fixture.h"

using sparkhost::FrameBuffer;
using sparkhost::Host;
using testing_support::fill_inputs;
using testing_support::plugin_host;
using testing_support::start;

namespace {

int& global(Host& host, const char* name) { return *static_cast<int*>(host.symbol(name)); }

void set_blend(Host& host, float percent) { host.control(27)->set_value(percent); }
void set_resolution(Host& host, int popup) { host.control(33)->set_value(popup); }

// Index of the source pixel a reduced image's column (or row) samples: the
// centre of its block, or the last sampled one for the extra column that
// rounding the size up to even adds.
int sampled_source(int index, int full, int s) {
    int samples = 0;
    for (int p = s / 2; p < full; p += s) ++samples;
    if (index > samples - 1) index = samples - 1;
    return index * s + s / 2;
}

int reduced(int full, int s) {
    const int q = full / s;
    return q % 2 ? q + 1 : q;
}

// What `run` prints on standard output (the start-up report).
template <typename F>
std::string stdout_of(F run) {
    testing::internal::CaptureStdout();
    run();
    return testing::internal::GetCapturedStdout();
}

// Starts the plug-in quietly, with Blend at 100 so that the result is the front.
void quiet_start(Host& host, int width, int height, int depth_bits = 8) {
    stdout_of([&] { start(host, width, height, depth_bits, 1); });
    set_blend(host, 100);
}

}  // namespace

// The exported names themselves are checked on the file by check-plugin-file.sh.
TEST(SpineExports, InternalsHiddenAndFixedReturnValues) {
    Host& host = plugin_host();
    EXPECT_EQ(host.symbol("show_version4"), nullptr);
    EXPECT_EQ(host.symbol("_Z13show_version415HostFrameRecordPKciiS1_i"), nullptr);
    EXPECT_EQ(host.clips(), 4);
    EXPECT_EQ(host.entry.process_start(), 1);
}

TEST(SpineStartup, EightBitReportAndTitles) {
    Host& host = plugin_host();
    host.settings.free_buffers = 16;
    const std::string out = stdout_of([&] { start(host, 720, 486, 8, 1); });
    const std::string eq(51, '='), plus(51, '+');
    const std::regex report(eq +
                            "\nCorvane MP-V5\\.0\\.7 Brumble 7-Paneburst for Discreet  \n"
                            "    UCAPI  Built [A-Z][a-z]{2} [ 1-3][0-9] [0-9]{4} at [0-9]{2}:[0-9]{2}:[0-9]{2}\n" +
                            eq + "\n\\.\\.\\. 8-10 bit mode selected\\.\nAvailable buffers = 16\n\\" + plus + "\n\n");
    EXPECT_TRUE(std::regex_search(out, report)) << out;
    EXPECT_EQ(out.find("ERROR"), std::string::npos);
    EXPECT_EQ(host.page_titles, (std::vector<std::string>{"Paneburst", "Light", "Forces", "Import AIFF"}));
    EXPECT_EQ(host.clip_titles, (std::vector<std::string>{"FlyAway", "Back", "2DMatte", ""}));
    EXPECT_EQ(global(host, "DL_Sync_Ctrl"), 1);
    EXPECT_TRUE(host.messages.empty());
}

TEST(SpineStartup, TwelveBitForDepths48And64Only) {
    Host& host = plugin_host();
    for (int depth : {48, 64, 24, 30, 32}) {
        host.settings.depth_code = depth;
        const std::string out = stdout_of([&] { host.initialise(); });
        const bool deep = depth == 48 || depth == 64;
        EXPECT_NE(out.find(deep ? "... 12 bit mode selected.\n" : "... 8-10 bit mode selected.\n"), std::string::npos)
            << depth;
    }
    host.settings.depth_code = 0;
}

TEST(SpineStartup, TooFewBuffersTurnsProcessingOff) {
    Host& host = plugin_host();
    stdout_of([&] { start(host, 64, 48, 8, 1); });
    host.messages.clear();
    host.settings.free_buffers = 1;
    const std::string out = stdout_of([&] { host.initialise(); });
    EXPECT_NE(out.find("Available buffers = 1\n" + std::string(51, '+') +
                       "\n\nERROR: we need 2 image buffers, but we only got 1.\n... Processing will be turned off ...\n"),
              std::string::npos)
        << out;
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].text, "Insufficient image buffers available! Giving up!");
    for (std::uint32_t f = 1; f <= 3; ++f) {
        EXPECT_EQ(host.process(f), nullptr);
        EXPECT_EQ(host.messages.back().text, " Q7-Paneburst cannot run due to insufficient buffers.");
    }
    EXPECT_EQ(host.messages.size(), 4u);

    // Enough buffers at the next initialisation: processing is back.
    host.settings.free_buffers = 2;
    stdout_of([&] { host.initialise(); });
    EXPECT_NE(host.process(4), nullptr);
}

TEST(SpineStartup, ApiVersionCheck) {
    Host& host = plugin_host();
    stdout_of([&] { start(host, 64, 48, 8, 1); });
    EXPECT_TRUE(host.messages.empty());
    host.settings.api_version = 3.9;
    stdout_of([&] { host.initialise(); });
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].kind, sparkhost::Message::Error);
    EXPECT_EQ(host.messages[0].text,
              "This version of \"7-Paneburst\" needs IFFFS 7.0/4.0 (sparks API 4.0) or higher.");
}

TEST(SpineFrame, BlendFullGivesTheFrontAtEightBit) {
    Host& host = plugin_host();
    quiet_start(host, 720, 486);
    fill_inputs(host);
    ASSERT_EQ(static_cast<void*>(host.process(7)), host.buffer(1).data());
    EXPECT_EQ(host.buffer(1).bytes, host.buffer(2).bytes);
    EXPECT_EQ(global(host, "DLwidth"), 720);
    EXPECT_EQ(global(host, "DLheight"), 486);
    EXPECT_EQ(global(host, "DLscalesr"), 1);
    EXPECT_EQ(global(host, "DL_Sync_Ctrl"), 0);
    EXPECT_EQ(static_cast<Paneburst*>(host.symbol("Instance"))->frame, 7.0);
}

TEST(SpineFrame, TwelveBitKeepsTheResultsLowBits) {
    Host& host = plugin_host();
    quiet_start(host, 720, 486, 12);
    fill_inputs(host);
    FrameBuffer& out = host.buffer(1);
    const FrameBuffer& front = host.buffer(2);
    for (int y = 0; y < out.height; ++y)
        for (int x = 0; x < out.width; ++x)
            for (int c = 0; c < 3; ++c) out.set(x, y, c, (x + y + c) & 15);
    ASSERT_NE(host.process(1), nullptr);
    int mismatches = 0;
    for (int y = 0; y < out.height; ++y)
        for (int x = 0; x < out.width; ++x)
            for (int c = 0; c < 3; ++c)
                mismatches += out.get(x, y, c) != ((front.get(x, y, c) & 0xFFF0u) | ((x + y + c) & 15u));
    EXPECT_EQ(mismatches, 0);
}

// At 1/32 the image has 16 rows but only 15 sample rows: the last repeats its
// neighbour, and the 16 frame columns past 22 x 32 repeat the last image column.
// Popup values outside the menu are full resolution.
TEST(SpineFrame, ReducedResolutionsReplicateTheSamples) {
    Host& host = plugin_host();
    quiet_start(host, 720, 486);
    fill_inputs(host);
    const struct { int popup, s; } cases[] = {{1, 2}, {2, 3}, {8, 32}, {6, 12}, {9, 1}, {-1, 1}};
    const FrameBuffer& front = host.buffer(2);
    for (const auto& c : cases) {
        set_resolution(host, c.popup);
        ASSERT_NE(host.process(1), nullptr);
        EXPECT_EQ(global(host, "DLscalesr"), c.s) << "popup " << c.popup;
        const FrameBuffer& out = host.buffer(1);
        const int W = reduced(720, c.s), H = reduced(486, c.s);
        int mismatches = 0;
        for (int y = 0; y < 486; ++y)
            for (int x = 0; x < 720; ++x) {
                const int sx = sampled_source(std::min(x / c.s, W - 1), 720, c.s);
                const int sy = sampled_source(std::min(y / c.s, H - 1), 486, c.s);
                for (int ch = 0; ch < 3; ++ch) mismatches += out.get(x, y, ch) != front.get(sx, sy, ch);
            }
        EXPECT_EQ(mismatches, 0) << "1/" << c.s;
    }
    set_resolution(host, 0);
}

TEST(SpineFrame, ProcessorCountsGiveIdenticalFrames) {
    Host& host = plugin_host();
    quiet_start(host, 720, 486);
    fill_inputs(host, 3);
    std::vector<std::uint8_t> reference;
    host.settings.threads = 2;
    for (int bands : {1, 2, 7, 0, -3}) {
        host.settings.bands = bands;
        ASSERT_NE(host.process(1), nullptr) << bands;
        // A host that reports no processors still gets its frame, on one band.
        EXPECT_EQ(global(host, "DLnumProc"), bands < 1 ? 1 : bands);
        if (reference.empty()) reference = host.buffer(1).bytes;
        EXPECT_EQ(host.buffer(1).bytes, reference) << bands;
    }
}

TEST(SpineFrame, MissingBufferReturnsNullWithoutWriting) {
    Host& host = plugin_host();
    quiet_start(host, 64, 48);
    for (int id : {1, 2, 5}) {
        host.failing_buffers = {id};
        std::fill(host.buffer(1).bytes.begin(), host.buffer(1).bytes.end(), 0x5A);
        EXPECT_EQ(host.process(1), nullptr) << id;
        EXPECT_EQ(host.buffer(1).bytes[100], 0x5A);
        EXPECT_TRUE(host.messages.empty());
    }
    host.failing_buffers.clear();
    EXPECT_NE(host.process(2), nullptr);
}

TEST(SpineSetup, UnInitialiseSavesAndInitialiseLoads) {
    Host& host = plugin_host();
    const std::string path = testing::TempDir() + "/spine_setup.txt";
    std::remove(path.c_str());
    host.setup_path = path;
    quiet_start(host, 64, 48);
    set_blend(host, 42.5f);
    host.uninitialise();
    set_blend(host, 0);
    stdout_of([&] { host.initialise(); });
    EXPECT_FLOAT_EQ(host.control(27)->value(), 42.5f);
    host.setup_path.clear();
    std::remove(path.c_str());
}
