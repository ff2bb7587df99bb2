// Frame digests: a 64-bit hash of the result buffer of every frame, over a
// matrix of scenarios through the loaded plug-in, compared with the digests
// committed in tests/digests/frames.txt. Any change of any output byte fails
// here. The same test runs against a plug-in built without optimisation, so
// the frames cannot depend on the optimiser either.
//
// The committed digests are the reference: they are written once, from a
// build known to be right, with PANEBURST_DIGEST_RECORD=<file> (each scenario
// appends its lines), and never rewritten to make a change pass.
#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/plugin_fixture.h"

namespace {

using sparkhost::FrameBuffer;
using sparkhost::Host;

struct Scenario {
    const char* name;
    int width = 720, height = 486, depth_bits = 8, bands = 16;
    int preset = -1;  // a Demos entry chosen before the settings, or none
    std::vector<std::pair<int, double>> settings;
    int frames = 12;
};

// Test names show the scenario's name only.
void PrintTo(const Scenario& c, std::ostream* out) { *out << c.name; }

// Render Quality entries, and the Demos entries.
constexpr int kHigh = 0, kMed = 1, kLow = 2, kWireframe = 3;
constexpr int kExplosion = 0, kConfetti = 1, kVenetianV = 2, kVenetianH = 3;

const std::vector<std::pair<int, double>> kLight = {{35, 1}, {36, 30}, {37, 70}, {38, 0.4}, {39, 1.4}, {40, 9}};
const std::vector<std::pair<int, double>> kForces = {{64, 1}, {71, 1}, {75, 1}, {78, 1}, {82, 1}, {69, 12}};

std::vector<std::pair<int, double>> with(std::vector<std::pair<int, double>> a,
                                         const std::vector<std::pair<int, double>>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

std::vector<Scenario> scenarios() {
    std::vector<Scenario> s;
    auto add = [&](const char* name, int preset, std::vector<std::pair<int, double>> settings) {
        Scenario c;
        c.name = name, c.preset = preset, c.settings = std::move(settings);
        s.push_back(c);
        return &s.back();
    };
    add("defaults", -1, {});
    add("explosion", kExplosion, {});
    add("confetti", kConfetti, {});
    add("venetian_v", kVenetianV, {});
    add("venetian_h", kVenetianH, {});
    add("high", kExplosion, {{30, kHigh}});
    add("med", kExplosion, {{30, kMed}});
    add("low", kExplosion, {{30, kLow}});
    add("wireframe", kExplosion, {{30, kWireframe}});
    add("deep12_high", kExplosion, {{30, kHigh}})->depth_bits = 12;
    add("deep12_light_mattes", kExplosion, with(kLight, {{46, 1}, {49, 1}, {51, 1}, {30, kHigh}}))->depth_bits = 12;
    add("half_resolution", kExplosion, {{33, 1}, {30, kHigh}});
    add("third_resolution", kExplosion, {{33, 2}, {30, kHigh}});
    add("light_gloss", -1, with(kLight, {{30, kHigh}}));
    add("light_lit_background", -1, with(kLight, {{46, 1}, {47, -1.5}}));
    add("light_low", kExplosion, with(kLight, {{46, 1}, {30, kLow}}));
    add("mattes_plain", kExplosion, {{49, 1}, {51, 1}, {30, kHigh}});
    add("mattes_inverted", kExplosion, {{49, 1}, {50, 1}, {51, 1}, {52, 1}, {30, kHigh}});
    add("mattes_plain_med", kExplosion, {{49, 1}, {51, 1}});
    add("forces", -1, kForces);
    add("forces_high_light", -1, with(with(kForces, kLight), {{30, kHigh}, {6, 30}, {7, 20}}));
    add("zsort", kExplosion, {{12, 1}});
    add("zsort_pop_off", kExplosion, {{12, 1}, {10, 1}, {9, -100}, {15, 20}});
    add("omni_z", -1, {{11, 1}, {15, 30}, {12, 1}});
    add("blend_25", kExplosion, {{27, 25}});
    add("confetti_rebuild_light", kConfetti, with(kLight, {{30, kHigh}, {46, 1}}))->frames = 1;
    for (int bands : {1, 2, 3}) {
        static const char* names[] = {"", "bands_1", "bands_2", "bands_3"};
        add(names[bands], kExplosion, {{30, kHigh}})->bands = bands;
    }
    Scenario* hd = add("hd_med", kExplosion, {{6, 100}, {7, 100}});
    hd->width = 1920, hd->height = 1080, hd->frames = 6;
    Scenario* hd_high = add("hd_high_light", kExplosion, with(kLight, {{30, kHigh}}));
    hd_high->width = 1920, hd_high->height = 1080, hd_high->frames = 4;
    return s;
}

// Smooth gradients with fine detail on top, so that sampling, filtering and
// the mattes all show in the result.
void fill_inputs(Host& host) {
    for (int id = 2; id <= 5; ++id) {
        FrameBuffer& b = host.buffer(id);
        const unsigned range = b.deep ? 4096 : 256;
        for (int y = 0; y < b.height; ++y)
            for (int x = 0; x < b.width; ++x)
                for (int c = 0; c < 3; ++c) {
                    unsigned v;
                    if (id >= 4) {  // mattes: a diagonal ramp with bands
                        v = (static_cast<unsigned>(x * 3 + y * 2 + id * 97) % 700) * range / 700;
                    } else {
                        const unsigned smooth = static_cast<unsigned>(x * (c + 1) + y * (3 - c) + id * 61);
                        const unsigned detail = static_cast<unsigned>((x * 7) ^ (y * 13) ^ (c * 29)) % 37;
                        v = (smooth + detail * 3) % range;
                    }
                    b.set(x, y, c, b.deep ? v << 4 : v);
                }
    }
}

std::uint64_t fnv1a64(const std::vector<std::uint8_t>& bytes) {
    std::uint64_t h = 14695981039346656037ull;
    for (std::uint8_t byte : bytes) h = (h ^ byte) * 1099511628211ull;
    return h;
}

std::string hex(std::uint64_t v) {
    char text[17];
    std::snprintf(text, sizeof text, "%016" PRIx64, v);
    return text;
}

// The committed digests: "scenario frame digest" a line.
std::map<std::string, std::string> committed() {
    std::map<std::string, std::string> digests;
    std::ifstream in(PANEBURST_DIGEST_FILE);
    std::string name, frame, digest;
    while (in >> name >> frame >> digest) digests[name + " " + frame] = digest;
    return digests;
}

// Every value control back at the value it had when the plug-in was loaded,
// so that a scenario does not inherit the settings of one run before it in
// the same process.
void restore_load_time_values(Host& host) {
    static std::map<int, double> loaded;
    static bool taken = false;
    using sparkhost::ControlKind;
    for (const auto& entry : host.controls()) {
        const ControlKind kind = entry.second.kind;
        if (kind == ControlKind::Push || kind == ControlKind::String) continue;
        if (!taken) loaded[entry.first] = entry.second.value();
        host.control(entry.first)->set_value(loaded[entry.first]);
    }
    taken = true;
}

std::vector<std::string> render(const Scenario& c) {
    Host& host = testing_support::plugin_host();
    restore_load_time_values(host);
    host.settings.threads = 2;
    testing_support::start(host, c.width, c.height, c.depth_bits, c.bands);
    fill_inputs(host);
    for (int auto_preview : {34, 63, 92}) host.control(auto_preview)->set_value(0);
    if (c.preset >= 0) {
        host.control(19)->set_value(c.preset);
        host.call_callback(19);
    }
    for (const auto& v : c.settings) host.control(v.first)->set_value(v.second);
    host.call_callback(29, 0);  // Restart: the first frame rebuilds the grid
    std::vector<std::string> digests;
    for (int f = 1; f <= c.frames; ++f) {
        EXPECT_NE(host.process(static_cast<std::uint32_t>(f)), nullptr) << f;
        digests.push_back(hex(fnv1a64(host.buffer(1).bytes)));
    }
    return digests;
}

struct Digests : ::testing::TestWithParam<Scenario> {};

TEST_P(Digests, EveryFrameMatchesTheCommittedDigest) {
    const Scenario& c = GetParam();
    const std::vector<std::string> digests = render(c);
    if (const char* record = std::getenv("PANEBURST_DIGEST_RECORD")) {
        std::ofstream out(record, std::ios::app);
        for (std::size_t f = 0; f < digests.size(); ++f) out << c.name << " " << f + 1 << " " << digests[f] << "\n";
        return;
    }
    const auto reference = committed();
    for (std::size_t f = 0; f < digests.size(); ++f) {
        const std::string key = std::string(c.name) + " " + std::to_string(f + 1);
        const auto it = reference.find(key);
        ASSERT_NE(it, reference.end()) << "no committed digest for " << key;
        EXPECT_EQ(digests[f], it->second) << c.name << " frame " << f + 1;
    }
}

INSTANTIATE_TEST_SUITE_P(Frames, Digests, ::testing::ValuesIn(scenarios()),
                         [](const ::testing::TestParamInfo<Scenario>& info) { return std::string(info.param.name); });

}  // namespace
