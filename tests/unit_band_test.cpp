// The framework's band driver (the line split, the trampolines run through
// the host's fork, the plain-function adapter), random frame access and image.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

#include "framework/convert.h"
#include "framework/image.h"
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
    Bands sorted() { return std::sort(bands.begin(), bands.end()), bands; }
};

void lib_worker(void* arg, int first, int last) { static_cast<Recorder*>(arg)->record(first, last); }
void fill(ImageQ7& img, PixelQ7 p) { std::fill(img.buffer, img.buffer + img.width * img.height, p); }
bool equal(PixelQ7 a, PixelQ7 b) { return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a; }

}  // namespace

TEST(BandSplit, LastBandTakesTheRemainderAndEmptyBandsAreZeroToMinusOne) {
    const struct { long lines, processors; Bands expected; } cases[] = {
        {10, 4, {{0, 1}, {2, 3}, {4, 5}, {6, 9}}}, {3, 4, {{0, -1}, {0, -1}, {0, -1}, {0, 2}}},
        {0, 3, {{0, -1}, {0, -1}, {0, -1}}}, {486, 1, {{0, 485}}}};
    for (const auto& c : cases) {
        Bands got;
        for (long k = 0; k < c.processors; ++k)
            got.emplace_back(band_of(k, c.lines, c.processors).first, band_of(k, c.lines, c.processors).last);
        EXPECT_EQ(got, c.expected) << c.lines << " lines on " << c.processors;
    }
}

TEST(MultiProcess, MemberAndLibraryWorkersRunEveryBandOnceThroughTheHost) {
    sparkhost::Host host;
    host.settings.bands = DLnumProc = 4;
    host.settings.threads = 2;
    Recorder r, call;
    EXPECT_EQ(r.MultiProcess(&Recorder::record, 10), 4);
    EXPECT_EQ(r.sorted(), (Bands{{0, 1}, {2, 3}, {4, 5}, {6, 9}}));
    host.settings.bands = DLnumProc = 3;
    PluginQ7 plugin;
    EXPECT_EQ(lib_mp_exec(&plugin, &lib_worker, 9, &call), 3);
    EXPECT_EQ(call.sorted(), (Bands{{0, 2}, {3, 5}, {6, 8}}));
    EXPECT_TRUE(plugin.lib_arg == &call && lib_abort_render(&plugin) == 0);
    DLnumProc = 1;
}

// Without a temporary buffer a request is only reported; with one the frame is rounded; track data doubles it.
TEST(RandomFrameAccess, ReportsWithoutTempBufferRoundsTheFrameAndTrackDataDoublesIt) {
    sparkhost::Host host;
    host.echo_messages = false;
    host.settings.width = DLwidth = 4;
    host.settings.height = DLheight = 2;
    DLscalesr = DLnumProc = 1;
    host.buffer(2).resize(4, 2, false);
    host.buffer(2).set(1, 0, 0, 0x34);  // R: low byte
    host.buffer(2).set(1, 0, 1, 0x12);  // G: high byte
    SourceQ7 source;
    ImageQ7* target = source.image = new ImageQ7(4, 2);
    source.GetValue(3.0, target);
    EXPECT_TRUE(target == source.image && host.frame_requests.empty());
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].text,
              "Random Frame Access requested via GetValue(), but no temp buf allocated. (DLRandom in .plugin?)\n");

    HostBufferRecord record{};
    std::vector<std::uint8_t> temp(4 * 2 * 3);
    record.pixels = temp.data();
    source.clip = 0, source.temp_buffer = temp.data(), source.host_buffer = &record;
    source.GetValue(4.49, target);
    source.GetValue(4.5, target);
    EXPECT_EQ(host.frame_requests, (std::vector<int>{4, 5}));
    PluginQ7 plugin;
    std::unique_ptr<float[]> data(plugin.GetTrackData(&source, 3.0));
    EXPECT_EQ(host.frame_requests.back(), 6);
    // 8.8 fixed point: R 0x34 -> 0x1A1A, G 0x12 -> 0x0909, (0x1A1A >> 7) | (0x0909 << 1) = 0x1236; A 0xFFFE is -2.
    EXPECT_TRUE(data[2] == 4662.0f / 256.0f && data[3] == -2.0f / 256.0f) << data[2] << " " << data[3];
    delete source.image;
}

TEST(Image, ScaleCallersBufferDeepCopiesCopyValuesInBlendAndCopyAlphaOnEveryBand) {
    EXPECT_TRUE(ImageQ7(720, 2).scale == 1.0f && ImageQ7(1920, 2).scale == 0.375f);
    auto* pixels = static_cast<PixelQ7*>(std::malloc(sizeof(PixelQ7) * 6));
    pixels[5] = {1, 2, 3, 4};
    {
        ImageQ7 img(3, 2, 0.0f, pixels);
        img.aspect = 2.0;
        ImageQ7 copy(img);
        img.at(2, 1).r = 999;
        EXPECT_TRUE(copy.buffer != img.buffer && copy.aspect == 2.0 && equal(copy.at(2, 1), {1, 2, 3, 4}));
    }
    EXPECT_TRUE(equal(pixels[5], {999, 2, 3, 4}));  // still ours, still intact
    std::free(pixels);

    ImageQ7 src(3, 2), dst(3, 2), a(2, 2), b(2, 2);
    fill(src, {20000, 3, 0, 32767});
    const struct { float f; PixelQ7 expected; } cases[] = {
        {1, {20000, 3, 0, 32767}}, {2, {32767, 6, 0, 32767}}, {0.5f, {10000, 1, 0, 16383}}, {-1, {0, 0, 0, 0}}};
    for (const auto& c : cases)
        EXPECT_TRUE(equal((dst.CopyValues(&src, c.f, c.f, c.f, c.f), dst.at(2, 1)), c.expected)) << c.f;

    fill(a, {0, 100, 32767, 7});
    fill(b, {32767, 200, 0, 7});
    ImageQ7 keep(a);
    a.InBlend(0.0f, &b), keep.InBlend(1.0f, &b);
    EXPECT_TRUE(equal(a.at(1, 1), {0, 100, 32767, 7}) && equal(keep.at(1, 0), b.at(1, 0)));
    a.InBlend(0.5f, &b);
    EXPECT_TRUE(equal(a.at(0, 0), {16383, 150, 16383, 7}));

    sparkhost::Host host;
    host.settings.bands = 3, host.settings.threads = 2;
    ImageQ7 c(5, 7), d(5, 7);
    fill(c, {1, 2, 3, 4});
    fill(d, {9, 9, 9, 1234});
    c.CopyAlpha(&d);
    for (long i = 0; i < 35; ++i) ASSERT_TRUE(equal(c.buffer[i], {1, 2, 3, 1234})) << i;
}
