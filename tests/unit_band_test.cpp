// The band driver: how lines are split over processors, the trampolines run
// through the host's fork, the plain-function adapter, and random frame access.
#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

#include "framework/convert.h"
#include "framework/plugin.h"
#include "sparkhost/host.h"

namespace {

struct Recorder : PluginQ7 {
    std::mutex lock;
    std::vector<std::pair<long, long>> bands;
    void record(long first, long last) {
        std::lock_guard<std::mutex> g(lock);
        bands.emplace_back(first, last);
    }
    std::vector<std::pair<long, long>> sorted() {
        auto b = bands;
        std::sort(b.begin(), b.end(), [](auto& l, auto& r) { return l.first != r.first ? l.first < r.first : l.second < r.second; });
        return b;
    }
};

std::vector<std::pair<long, long>> split(long lines, long processors) {
    std::vector<std::pair<long, long>> v;
    for (long k = 0; k < processors; ++k) {
        Band b = band_of(k, lines, processors);
        v.emplace_back(b.first, b.last);
    }
    return v;
}

using Bands = std::vector<std::pair<long, long>>;

}  // namespace

TEST(BandSplit, LastBandTakesTheRemainder) {
    EXPECT_EQ(split(10, 4), (Bands{{0, 1}, {2, 3}, {4, 5}, {6, 9}}));
    EXPECT_EQ(split(486, 1), (Bands{{0, 485}}));
}

TEST(BandSplit, FewerLinesThanProcessors) {
    EXPECT_EQ(split(3, 4), (Bands{{0, -1}, {0, -1}, {0, -1}, {0, 2}}));
    EXPECT_EQ(split(0, 3), (Bands{{0, -1}, {0, -1}, {0, -1}}));
}

TEST(MultiProcess, RunsEveryBandOnceThroughTheHost) {
    sparkhost::Host host;
    host.settings.bands = 4;
    host.settings.threads = 2;
    DLnumProc = 4;
    Recorder r;
    const int calls = r.MultiProcess(&Recorder::record, 10);
    EXPECT_EQ(calls, 4);
    EXPECT_EQ(r.sorted(), (Bands{{0, 1}, {2, 3}, {4, 5}, {6, 9}}));
    DLnumProc = 1;
}

namespace {
struct LibCall {
    std::mutex lock;
    std::vector<std::pair<int, int>> bands;
    int tag = 0;
};
void lib_worker(void* arg, int first, int last) {
    auto* c = static_cast<LibCall*>(arg);
    std::lock_guard<std::mutex> g(c->lock);
    c->bands.emplace_back(first + c->tag, last + c->tag);
}
}  // namespace

TEST(MultiProcess, LibraryAdapterPassesTheArgument) {
    sparkhost::Host host;
    host.settings.bands = 3;
    DLnumProc = 3;
    PluginQ7 plugin;
    LibCall call;
    call.tag = 1000;
    EXPECT_EQ(lib_mp_exec(&plugin, &lib_worker, 9, &call), 3);
    std::sort(call.bands.begin(), call.bands.end());
    EXPECT_EQ(call.bands, (std::vector<std::pair<int, int>>{{1000, 1002}, {1003, 1005}, {1006, 1008}}));
    EXPECT_EQ(plugin.lib_arg, &call);
    EXPECT_EQ(lib_abort_render(&plugin), 0);
    DLnumProc = 1;
}

TEST(RandomFrameAccess, WithoutTempBufferOnlyReports) {
    sparkhost::Host host;
    host.echo_messages = false;
    SourceQ7 source;
    ImageQ7* img = new ImageQ7(4, 4);
    ImageQ7* before = img;
    testing::internal::CaptureStderr();
    source.GetValue(3.0, img);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(img, before);
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].text,
              "Random Frame Access requested via GetValue(), but no temp buf allocated. (DLRandom in .plugin?)\n");
    EXPECT_EQ(err, "SPARK_MESSAGE::\tRandom Frame Access requested via GetValue(), but no temp buf allocated. "
                   "(DLRandom in .plugin?)\n\n");
    EXPECT_TRUE(host.frame_requests.empty());
    delete img;
}

TEST(RandomFrameAccess, RoundsTheFrameAndTrackDataDoublesIt) {
    sparkhost::Host host;
    host.settings.width = 4;
    host.settings.height = 2;
    host.buffer(2).resize(4, 2, false);
    host.buffer(2).set(1, 0, 0, 0x34);  // R: low byte
    host.buffer(2).set(1, 0, 1, 0x12);  // G: high byte
    HostBufferRecord record{};
    std::vector<std::uint8_t> temp(4 * 2 * 3);
    record.pixels = temp.data();
    DLwidth = 4;
    DLheight = 2;
    DLscalesr = 1;
    DLnumProc = 1;

    SourceQ7 source;
    source.clip = 0;
    source.temp_buffer = temp.data();
    source.host_buffer = &record;
    source.image = new ImageQ7(4, 2);
    ImageQ7* target = source.image;
    source.GetValue(4.49, target);
    source.GetValue(4.5, target);
    EXPECT_EQ(host.frame_requests, (std::vector<int>{4, 5}));

    PluginQ7 plugin;
    float* data = plugin.GetTrackData(&source, 3.0);
    EXPECT_EQ(host.frame_requests.back(), 6);
    // 8.8 fixed point from the 15-bit channels: R 0x34 -> 0x1A1A, G 0x12 -> 0x0909;
    // (0x1A1A >> 7) | (0x0909 << 1) = 0x1236. B 0, A 32767: 0xFFFE reads as -2.
    EXPECT_EQ(data[(0 * 4 + 1) * 2], 4662.0f / 256.0f);
    EXPECT_EQ(data[(0 * 4 + 1) * 2 + 1], -2.0f / 256.0f);
    delete[] data;
    delete source.image;
}
