// Frames through the loaded plug-in with its frame memory kept from frame to
// frame and its per-pixel work split in bands: Med and Low do not depend on
// the band count at any size, depth, working resolution or matte, whatever
// an earlier frame left in the kept memory; and once a size has been
// rendered, further frames fault in no new memory.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <string>
#include <vector>

#include "tests/pipeline_rig.h"

using namespace pipeline_rig;

namespace {

struct Look {
    const char* name;
    int width, height, depth, resolution;  // resolution: the popup entry (0 full, 1 1/2, 2 1/3, 3 1/4)
    std::vector<std::pair<int, double>> controls;
};

// Three frames of a look: the rebuild and two steps, every result buffer.
std::vector<std::vector<std::uint8_t>> frames_of(const Look& look, int bands) {
    Host& host = begin(look.width, look.height, look.depth, bands);
    fill_noise(host, 7);
    fill(host.buffer(kMatte2D), [](int x, int, int) { return (x * 37) % 256; });
    fill(host.buffer(kMatte3D), [](int x, int y, int) { return ((x / 9 + y / 5) % 3) * 127; });
    set(host, 33, look.resolution);
    for (const auto& c : look.controls) set(host, c.first, c.second);
    host.call_callback(29, 0);
    std::vector<std::vector<std::uint8_t>> out;
    for (std::uint32_t f = 1; f <= 3; ++f) {
        EXPECT_NE(host.process(f), nullptr) << look.name;
        out.push_back(host.buffer(kResult).bytes);
    }
    return out;
}

TEST(FrameReuse, MedAndLowFramesDoNotDependOnBandsSizesOrWhatTheLastFrameLeft) {
    const std::vector<std::pair<int, double>> fly = {{15, 40}, {20, 90}, {21, 70}, {6, 31}, {7, 23}};
    auto with = [&](std::vector<std::pair<int, double>> extra) {
        extra.insert(extra.begin(), fly.begin(), fly.end());
        return extra;
    };
    const Look looks[] = {
        {"med 8-bit", 720, 486, 8, 0, with({{30, kMed}})},
        {"low 12-bit", 720, 486, 12, 0, with({{30, kLow}})},
        {"med odd size half res", 725, 487, 8, 1, with({{30, kMed}})},
        {"low odd size third res 12-bit", 725, 487, 12, 2, with({{30, kLow}})},
        {"med quarter res (a row without samples)", 720, 486, 8, 3, with({{30, kMed}})},
        {"med 2D matte", 720, 486, 8, 0, with({{30, kMed}, {49, 1}})},
        {"low inverted mattes lit back", 720, 486, 12, 0,
         with({{30, kLow}, {49, 1}, {50, 1}, {51, 1}, {52, 1}, {35, 1}, {46, 1}})},
        {"med 3D matte blend 25", 640, 360, 8, 0, with({{30, kMed}, {51, 1}, {27, 25}})},
        {"wireframe", 720, 486, 8, 1, with({{30, kWireframe}})},
        {"fewer lines than bands", 37, 5, 8, 0, with({{30, kMed}})},
    };
    for (const Look& look : looks) {
        const auto one_band = frames_of(look, 1);
        for (int bands : {3, 16}) {
            const auto banded = frames_of(look, bands);
            for (std::size_t f = 0; f < one_band.size(); ++f)
                EXPECT_TRUE(banded[f] == one_band[f]) << look.name << ", " << bands << " bands, frame " << f + 1;
        }
    }
}

long minor_faults() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_minflt;
}

TEST(FrameReuse, AfterTheFirstFramesAtASizeNoFrameFaultsInNewMemory) {
    struct Case {
        const char* name;
        int depth;
        std::vector<std::pair<int, double>> controls;
    };
    const Case cases[] = {
        {"med", 8, {{30, kMed}}},
        {"high 12-bit", 12, {{30, kHigh}}},
        {"low with both mattes", 8, {{30, kLow}, {49, 1}, {51, 1}}},
    };
    for (const Case& c : cases) {
        Host& host = begin(720, 486, c.depth, 16);
        fill_noise(host, 3);
        for (const auto& v : c.controls) set(host, v.first, v.second);
        std::uint32_t f = 1;
        for (; f <= 3; ++f) host.process(f);
        const long before = minor_faults();
        for (; f <= 23; ++f) ASSERT_NE(host.process(f), nullptr);
        // One frame's own blocks (five images and three maps at 720 x 486)
        // are some 4,500 pages: twenty frames together fault in less than
        // that (what remains is the host's threads).
        EXPECT_LT(minor_faults() - before, 4500) << c.name;
    }
}

}  // namespace
