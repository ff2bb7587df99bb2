// The frame cycle through the real plug-in file: start-up report, buffers, working resolution, bit depth.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "tests/plugin_fixture.h"

using namespace testing_support;
using sparkhost::FrameBuffer;
using sparkhost::Host;

namespace {

int& global(Host& host, const char* name) { return *static_cast<int*>(host.symbol(name)); }

// What `run` prints on standard output (the start-up report).
template <typename F> std::string stdout_of(F run) {
    testing::internal::CaptureStdout();
    run();
    return testing::internal::GetCapturedStdout();
}

// How many channel values of the frame `wrong` finds wrong.
template <typename F> int count_values(const FrameBuffer& b, F wrong) {
    int n = 0;
    for (int i = 0; i < b.width * b.height * 3; ++i) n += wrong(i / 3 % b.width, i / 3 / b.width, i % 3);
    return n;
}

// Starts the plug-in quietly, with Blend at 100 so that the result is the front.
Host& quiet_start(int width, int height, int depth_bits = 8) {
    Host& host = plugin_host();
    stdout_of([&] { start(host, width, height, depth_bits, 1); });
    host.control(27)->set_value(100);
    return host;
}

}  // namespace

TEST(SpineStartup, EightBitReportTitlesFixedReturnsAndTwelveBitForDepths48And64Only) {
    Host& host = plugin_host();
    EXPECT_TRUE(host.clips() == 4 && host.entry.process_start() == 1);
    const std::string out = stdout_of([&] { start(host, 720, 486, 8, 1); }), eq(51, '=');
    const std::regex report(eq + "\nCorvane MP-V5\\.0\\.7 Brumble 7-Paneburst for Discreet  \n"
                                 "    UCAPI  Built [A-Z][a-z]{2} [ 1-3][0-9] [0-9]{4} at [0-9]{2}:[0-9]{2}:[0-9]{2}\n" +
                            eq + "\n\\.\\.\\. 8-10 bit mode selected\\.\nAvailable buffers = 16\n\\" +
                            std::string(51, '+') + "\n\n");
    EXPECT_TRUE(std::regex_search(out, report) && out.find("ERROR") == std::string::npos) << out;
    EXPECT_EQ(host.page_titles, (std::vector<std::string>{"Paneburst", "Light", "Forces", "Import AIFF"}));
    EXPECT_EQ(host.clip_titles, (std::vector<std::string>{"FlyAway", "Back", "2DMatte", ""}));
    EXPECT_EQ(global(host, "DL_Sync_Ctrl"), 1);
    EXPECT_TRUE(host.messages.empty());  // API 4.0 exactly: no message
    for (int depth : {48, 64, 24, 30, 32}) {
        host.settings.depth_code = depth;
        const char* mode = depth == 48 || depth == 64 ? "... 12 bit mode selected.\n" : "... 8-10 bit mode selected.\n";
        EXPECT_NE(stdout_of([&] { host.initialise(); }).find(mode), std::string::npos) << depth;
    }
    host.settings.depth_code = 0;
    host.settings.api_version = 3.9;
    stdout_of([&] { host.initialise(); });
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].kind, sparkhost::Message::Error);
    EXPECT_EQ(host.messages[0].text, "This version of \"7-Paneburst\" needs IFFFS 7.0/4.0 (sparks API 4.0) or higher.");
}

TEST(SpineStartup, TooFewBuffersTurnsProcessingOff) {
    Host& host = plugin_host();
    stdout_of([&] { start(host, 64, 48, 8, 1); });
    host.settings.free_buffers = 1;
    const std::string out = stdout_of([&] { host.initialise(); });
    EXPECT_NE(out.find("Available buffers = 1\n" + std::string(51, '+') + "\n\nERROR: we need 2 image buffers, " +
                       "but we only got 1.\n... Processing will be turned off ...\n"), std::string::npos) << out;
    for (std::uint32_t f = 1; f <= 3; ++f) EXPECT_EQ(host.process(f), nullptr);
    ASSERT_EQ(host.messages.size(), 4u);  // one at start-up, one a frame
    EXPECT_EQ(host.messages[0].text + "|" + host.messages[3].text,
              "Insufficient image buffers available! Giving up!| Q7-Paneburst cannot run due to insufficient buffers.");
    host.settings.free_buffers = 2;  // enough at the next initialisation: processing is back
    stdout_of([&] { host.initialise(); });
    EXPECT_NE(host.process(4), nullptr);
}

TEST(SpineFrame, TwelveBitKeepsTheResultsLowBits) {
    Host& host = quiet_start(720, 486, 12);
    fill_inputs(host);
    FrameBuffer &out = host.buffer(1), &front = host.buffer(2);
    count_values(out, [&](int x, int y, int c) { return out.set(x, y, c, (x + y + c) & 15), false; });
    ASSERT_NE(host.process(1), nullptr);
    EXPECT_EQ(count_values(out, [&](int x, int y, int c) {
                  return out.get(x, y, c) != ((front.get(x, y, c) & 0xFFF0u) | ((x + y + c) & 15u));
              }), 0);
}

// A reduced image samples the centre of each s x s block and has an even
// size, rounded up: at 1/32 it has 16 rows but only 15 sample rows, so the
// last repeats its neighbour, and the 16 frame columns past 22 x 32 repeat
// the last image column. Popup values outside the menu are full resolution.
TEST(SpineFrame, ReducedResolutionsReplicateTheSamples) {
    Host& host = quiet_start(720, 486);
    fill_inputs(host);
    auto source = [](int frame_index, int full, int s) {
        const int q = full / s, size = q % 2 ? q + 1 : q, samples = (full - s / 2 + s - 1) / s;
        return std::min(std::min(frame_index / s, size - 1), samples - 1) * s + s / 2;
    };
    const struct { int popup, s; } cases[] = {{1, 2}, {2, 3}, {8, 32}, {6, 12}, {9, 1}, {-1, 1}};
    FrameBuffer &front = host.buffer(2), &out = host.buffer(1);
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "popup " << c.popup);
        host.control(33)->set_value(c.popup);
        ASSERT_EQ(static_cast<void*>(host.process(1)), out.data());
        EXPECT_EQ(global(host, "DLscalesr"), c.s);
        EXPECT_EQ(count_values(out, [&](int x, int y, int ch) {
                      return out.get(x, y, ch) != front.get(source(x, 720, c.s), source(y, 486, c.s), ch);
                  }), 0);
    }
    host.control(33)->set_value(0);
}

// A missing buffer gives null without writing; a host that reports no
// processors still gets its frame, on one band.
TEST(SpineFrame, MissingBufferReturnsNullAndNoProcessorsRunOneBand) {
    Host& host = quiet_start(64, 48);
    fill_inputs(host, 3);
    for (int id : {1, 2, 5}) {
        host.failing_buffers = {id};
        std::fill(host.buffer(1).bytes.begin(), host.buffer(1).bytes.end(), 0x5A);
        EXPECT_EQ(host.process(1), nullptr) << id;
        EXPECT_TRUE(host.buffer(1).bytes[100] == 0x5A && host.messages.empty()) << id;
    }
    host.failing_buffers.clear();
    ASSERT_NE(host.process(1), nullptr);
    const std::vector<std::uint8_t> reference = host.buffer(1).bytes;
    for (int bands : {0, -3}) {
        host.settings.bands = bands;
        ASSERT_NE(host.process(1), nullptr) << bands;
        EXPECT_TRUE(global(host, "DLnumProc") == 1 && host.buffer(1).bytes == reference) << bands;
    }
}
