// The band driver: how lines are split over processors, the trampolines run
// through the host's fork, the plain-function adapter, and random frame access.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "framework/convert.h"
#include "framework/plugin.h"
#include "sparkhost/host.h"

namespace {

using Bands = std::vector<std::pair<long, long>>;

struct Recorder : PluginQ7 {
    std::mutex lock;
    Bands bands;
    void record(long first, long last) {
        std::lock_guard<std::mutex> g(lock);
        bands.emplace_back(first, last);
    }
};

Bands split(long lines, long processors) {
    Bands v;
    for (long k = 0; k < processors; ++k) {
        const Band b = band_of(k, lines, processors);
        v.emplace_back(b.first, b.last);
    }
    return v;
}

struct LibCall {
    std::mutex lock;
    std::vector<std::pair<int, int>> bands;
};
void lib_worker(void* arg, int first, int last) {
    auto* c = static_cast<LibCall*>(arg);
    std::lock_guard<std::mutex> g(c->lock);
    c->bands.emplace_back(first, last);
}

}  // namespace

TEST(BandSplit, LastBandTakesTheRemainderAndEmptyBandsAreZeroToMinusOne) {
    EXPECT_EQ(split(10, 4), (Bands{{0, 1}, {2, 3}, {4, 5}, {6, 9}}));
    EXPECT_EQ(split(486, 1), (Bands{{0, 485}}));
    EXPECT_EQ(split(3, 4), (Bands{{0, -1}, {0, -1}, {0, -1}, {0, 2}}));
    EXPECT_EQ(split(0, 3), (Bands{{0, -1}, {0, -1}, {0, -1}}));
}

TEST(MultiProcess, MemberAndLibraryWorkersRunEveryBandOnceThroughTheHost) {
    sparkhost::Host host;
    host.settings.bands = 4;
    host.settings.threads = 2;
    DLnumProc = 4;
    Recorder r;
    EXPECT_EQ(r.MultiProcess(&Recorder::record, 10), 4);
    std::sort(r.bands.begin(), r.bands.end());
    EXPECT_EQ(r.bands, (Bands{{0, 1}, {2, 3}, {4, 5}, {6, 9}}));

    host.settings.bands = 3;
    DLnumProc = 3;
    PluginQ7 plugin;
    LibCall call;
    EXPECT_EQ(lib_mp_exec(&plugin, &lib_worker, 9, &call), 3);
    std::sort(call.bands.begin(), call.bands.end());
    EXPECT_EQ(call.bands, (std::vector<std::pair<int, int>>{{0, 2}, {3, 5}, {6, 8}}));
    EXPECT_EQ(plugin.lib_arg, &call);
    EXPECT_EQ(lib_abort_render(&plugin), 0);
    DLnumProc = 1;
}

TEST(RandomFrameAccess, WithoutTempBufferOnlyReports) {
    sparkhost::Host host;
    host.echo_messages = false;
    SourceQ7 source;
    std::unique_ptr<ImageQ7> owned(new ImageQ7(4, 4));
    ImageQ7* img = owned.get();
    testing::internal::CaptureStderr();
    source.GetValue(3.0, img);
    const std::string err = testing::internal::GetCapturedStderr();
    const std::string text =
        "Random Frame Access requested via GetValue(), but no temp buf allocated. (DLRandom in .plugin?)\n";
    EXPECT_EQ(img, owned.get());
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].text, text);
    EXPECT_EQ(err, "SPARK_MESSAGE::\t" + text + "\n");
    EXPECT_TRUE(host.frame_requests.empty());
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
    std::unique_ptr<float[]> data(plugin.GetTrackData(&source, 3.0));
    EXPECT_EQ(host.frame_requests.back(), 6);
    // 8.8 fixed point from the 15-bit channels: R 0x34 -> 0x1A1A, G 0x12 -> 0x0909;
    // (0x1A1A >> 7) | (0x0909 << 1) = 0x1236. B 0, A 32767: 0xFFFE reads as -2.
    EXPECT_EQ(data[(0 * 4 + 1) * 2], 4662.0f / 256.0f);
    EXPECT_EQ(data[(0 * 4 + 1) * 2 + 1], -2.0f / 256.0f);
    delete source.image;
}
