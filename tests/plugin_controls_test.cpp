// The plug-in's controls as the host sees them: the descriptor set, which
// controls SyncControls hides, and the channel editor.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "tests/plugin_fixture.h"

namespace {

using sparkhost::Control;
using sparkhost::ControlKind;

struct Expected {
    int number;
    sparkhost::ControlKind kind;
    std::string title;  // popups: the title of the default entry
    double value = 0, min = 0, max = 0, step = 0;
    int flags = 0;
    std::string callback = "*";  // "*": "dlcb_<number>"; "": none
};

constexpr ControlKind F = ControlKind::Float, I = ControlKind::Int, B = ControlKind::Boolean, P = ControlKind::Push,
                      U = ControlKind::Pup, C = ControlKind::Color, S = ControlKind::String;

// The descriptor set as the pages are designed, but for the common controls
// that every page repeats (see all_controls). The colour pot starts at -1: white.
const Expected kTable[] = {
    {0, S, "1: Disintegrate", 0, 0, 0, 0, 16, ""}, {1, S, "2: Background", 0, 0, 0, 0, 16, ""},
    {2, S, "3: 2D Matte", 0, 0, 0, 0, 16, ""}, {3, S, "4: 3D Matte", 0, 0, 0, 0, 16, ""},
    {6, I, "X Elements: %d", 12, 1, 100, 1, 8}, {7, I, "Y Elements: %d", 9, 1, 100, 1, 8},
    {8, F, "Foreground Z: %.2f", -192, -4000, -1, 1}, {9, F, "Maximum Z: %.2f", -12, -4000, -1, 1},
    {10, B, "Z Pop Off   "}, {11, B, "Omni Z Direction   "}, {12, B, "Z Sort   "}, {35, B, "Use Light   "},
    {46, B, "Lit Background   "}, {49, B, "Use 2D Matte   "}, {50, B, "Invert 2D Matte   "}, {51, B, "Use 3D Matte   "},
    {52, B, "Invert 3D Matte   "}, {64, B, "Use Wind   "}, {71, B, "Use Repulsion   "}, {75, B, "Use Gravity   "},
    {78, B, "Use Attraction   "}, {82, B, "Use Swirling   "}, {13, F, "X Speed: %.2f", 0, -100, 100, 0.5},
    {14, F, "Y Speed: %.2f", 0, -100, 100, 0.5}, {15, F, "Z Speed: %.2f", 5, -100, 100, 0.5},
    {16, F, "X Speed Var: %.2f", 0, 0, 100, 0.5}, {17, F, "Y Speed Var: %.2f", 0, 0, 100, 0.5},
    {18, F, "Z Speed Var: %.2f", 10, 0, 100, 0.5}, {19, U, "Demos: Explosion  "},
    {30, U, "Render Quality: Med Quality  ", 1}, {20, F, "X Rot. Speed: %.2f", 60, -360, 360, 0.5},
    {21, F, "Y Rot. Speed: %.2f", 60, -360, 360, 0.5}, {22, F, "Z Rot. Speed: %.2f", 60, -360, 360, 0.5},
    {23, F, "X Rot. Speed Var: %.2f", 100, 0, 100, 0.5}, {24, F, "Y Rot. Speed Var: %.2f", 100, 0, 100, 0.5},
    {25, F, "Z Rot. Speed Var: %.2f", 100, 0, 100, 0.5}, {26, I, "Seed: %d", 200, 1, 999, 17},
    {27, F, "Blend: %.2f", 0, 0, 100, 0.1, 0, "Blend1CB"}, {36, F, "Light X: %.2f", 20, -500, 500, 0.05},
    {37, F, "Light Y: %.2f", 80, -500, 500, 0.05, 0, "dlcb_36"}, {38, F, "LightZ: %.3f", 0.2, -5, 5, 0.005},
    {39, F, "Light Brightness: %.2f", 1, 0, 2, 0.01}, {40, F, "Gloss: %.2f", 44, 1, 1000, 1}, {42, C, ""},
    {43, F, "Light Colour R: %.2f", 100, 0, 100, 0.2, 0, "SetLightColourCB"},
    {44, F, "Light Colour G: %.2f", 100, 0, 100, 0.2, 0, "SetLightColourCB"},
    {45, F, "Light Colour B: %.2f", 100, 0, 100, 0.2, 0, "SetLightColourCB"},
    {47, F, "Background Z: %.3f", -0.9, -5, -0.0001, 0.001}, {65, F, "Wind Source X: %.2f", 90, -500, 500, 0.05},
    {66, F, "Wind Source Y: %.2f", 40, -500, 500, 0.05, 0, "dlcb_65"},
    {67, F, "Wind Target X: %.2f", 10, -500, 500, 0.05},
    {68, F, "Wind Target Y: %.2f", 40, -500, 500, 0.05, 0, "dlcb_67"}, {69, F, "Wind Speed: %.2f", 5, 0, 180, 0.05},
    {70, F, "Wind Spread: %.2f", 10, 0, 180, 0.01}, {72, F, "Repulsion X: %.2f", 40, -500, 500, 0.05},
    {73, F, "Repulsion Y: %.2f", 30, -500, 500, 0.05, 0, "dlcb_72"}, {74, F, "Rep. Strength: %.2f", 10, 0, 100, 0.5},
    {76, F, "Gravity: %.3f", 1, 0, 30, 0.05}, {77, F, "Gravity Angle: %.2f", 270, 0, 360, 0.005},
    {81, F, "Attr. Strength: %.2f", 10, 0, 100, 0.5}, {79, F, "Attraction X: %.2f", 80, -500, 500, 0.05},
    {80, F, "Attraction Y: %.2f", 80, -500, 500, 0.05, 0, "dlcb_79"}, {83, F, "Swirl Density: %.2f", 6, 0, 100, 0.5},
    {84, F, "Swirl Magnitude: %.2f", 2, 0, 100, 0.5},
    {93, ControlKind::UserFloat, "Amplitude Import: %.1f", 0, -1000, 1000, 0.001, 0, ""},
    {114, P, "Import Amplitude File", 0, 0, 0, 0, 0, "import_aiff_CB"},
};

std::vector<Expected> all_controls() {
    std::vector<Expected> all(std::begin(kTable), std::end(kTable));
    for (int page = 1, base = 28; page <= 3; ++page, base += 29) {
        const std::string n = std::to_string(page);
        all.insert(all.end(), {{base, B, "Clear Overlay", 0, 0, 0, 0, 0, "Overlay" + n + "CB"},
                               {base + 1, P, "Restart Paneburst   "}, {base + 3, P, "Help", 0, 0, 0, 0, 0, "HelpCB"},
                               {base + 4, P, "Reset", 0, 0, 0, 0, 0, "Reset" + n + "CB"},
                               {base + 5, U, "FULL", 0, 0, 0, 0, 0, "SetRes" + n + "CB"},
                               {base + 6, B, "Auto Preview", 1, 0, 0, 0, 0, "Auto" + n + "CB"}});
    }
    return all;
}

int flags(const Control& c) {
    if (c.kind == I) return static_cast<SparkIntDesc*>(c.descriptor)->flags;
    if (c.kind == S) return static_cast<SparkStringDesc*>(c.descriptor)->flags;
    return c.kind == F || c.kind == ControlKind::UserFloat ? static_cast<SparkFloatDesc*>(c.descriptor)->flags : 0;
}

TEST(PluginControls, DescriptorSetIsExactlyTheTable) {
    sparkhost::Host& host = testing_support::plugin_host();
    std::set<int> expected_numbers, exported;
    for (const Expected& e : all_controls()) {
        SCOPED_TRACE(e.number);
        expected_numbers.insert(e.number);
        Control* c = host.control(e.number);
        ASSERT_NE(c, nullptr);
        EXPECT_EQ(c->kind, e.kind);
        EXPECT_EQ(c->title(), e.title);
        const std::string cb = e.callback == "*" ? "dlcb_" + std::to_string(e.number) : e.callback;
        const auto wanted = cb.empty() ? nullptr : reinterpret_cast<SparkCallback>(host.symbol(cb.c_str()));
        EXPECT_TRUE((cb.empty() || wanted) && c->callback() == wanted) << cb;
        EXPECT_EQ(flags(*c), e.flags);
        if (e.kind == S) EXPECT_STREQ(static_cast<SparkStringDesc*>(c->descriptor)->title, "%s");
        else if (e.kind == C) EXPECT_EQ(static_cast<SparkColorDesc*>(c->descriptor)->value, 0xFFFFFFFFu);
        else EXPECT_EQ(c->value(), static_cast<float>(e.value));
        const bool ranged = e.kind == F || e.kind == I || e.kind == ControlKind::UserFloat;
        EXPECT_TRUE(!ranged ||
                    (c->minimum() == float(e.min) && c->maximum() == float(e.max) && c->increment() == float(e.step)))
            << c->minimum() << " ... " << c->maximum() << " by " << c->increment();
    }
    for (const auto& kv : host.controls()) exported.insert(kv.first);
    EXPECT_EQ(exported, expected_numbers);
}

// Every popup's entry count equals its non-null titles (4, 4, 9, 9, 9).
TEST(PluginControls, PopupEntriesAreExactAndCounted) {
    sparkhost::Host& host = testing_support::plugin_host();
    const std::vector<std::string> res = {"FULL", "1/2", "1/3", "1/4", "1/6", "1/8", "1/12", "1/16", "1/32"};
    const std::pair<int, std::vector<std::string>> popups[] = {
        {19, {"Demos: Explosion  ", "Demos: Confetti  ", "Demos: VenetianV  ", "Demos:  VenetianH  "}},
        {30, {"Render Quality: High Quality  ", "Render Quality: Med Quality  ", "Render Quality: Low Quality  ",
              "Render Quality: Wireframe  "}},
        {33, res}, {62, res}, {91, res}};
    for (const auto& p : popups) {
        const auto* d = static_cast<const SparkPupDesc*>(host.control(p.first)->descriptor);
        std::vector<std::string> titles;
        for (int i = 0; i < kPupMaxEntries; ++i)
            if (d->titles[i]) titles.push_back(d->titles[i]);
        EXPECT_TRUE(titles == p.second && d->entry_count == static_cast<int>(titles.size())) << p.first;
    }
}

TEST(PluginControls, FirstFrameHidesEveryDependentControl) {
    sparkhost::Host& host = testing_support::plugin_host();
    testing_support::start(host, 32, 24, 8, 1);
    ASSERT_NE(host.process(0), nullptr);
    // Everything that depends on a switched-off checkbox: the light controls
    // but Use Light, Background Z, both invert checkboxes, every force value.
    EXPECT_EQ(host.hidden_controls(), (std::set<int>{36, 37, 38, 39, 40, 42, 43, 44, 45, 46, 47, 50, 52, 65, 66,
                                                     67, 68, 69, 70, 72, 73, 74, 76, 77, 79, 80, 81, 83, 84}));
    // Use Light shows Lit Background; Background Z needs both, and goes with the light.
    host.change_control(35, 1);
    EXPECT_TRUE(!host.hidden(36) && !host.hidden(45) && !host.hidden(46) && host.hidden(47));
    host.change_control(46, 1);
    EXPECT_FALSE(host.hidden(47));
    host.change_control(35, 0);
    EXPECT_TRUE(host.hidden(47) && host.hidden(46));
}

// 11 folders, 42 entries; all but the Common folder's two are named after
// their slider title without the value format ("LightZ" from "LightZ: %.3f").
TEST(PluginControls, ChannelEditorTree) {
    sparkhost::Host& host = testing_support::plugin_host();
    host.editor_calls.clear();
    testing_support::start(host, 32, 24, 8, 1);  // names the channels
    host.build_channel_editor();
    const std::vector<sparkhost::EditorFolder> tree = host.channel_editor_tree();
    const std::pair<const char*, std::vector<int>> expected[] = {
        {"Depth", {8, 9}}, {"Style", {26}}, {"Speed", {13, 14, 15, 16, 17, 18}}, {"Rotation", {20, 21, 22, 23, 24, 25}},
        {"Light", {36, 37, 38, 39, 40, 43, 44, 45, 47}}, {"Wind", {65, 66, 67, 68, 69, 70}}, {"Repel", {72, 73, 74}},
        {"Gravity", {76, 77}}, {"Attract", {79, 80, 81}}, {"Swirl", {83, 84}}, {"Common", {27, 93}}};
    ASSERT_EQ(tree.size(), 11u);
    std::vector<std::pair<int, std::string>> names;
    for (std::size_t f = 0; f < tree.size(); ++f) {
        SCOPED_TRACE(expected[f].first);
        EXPECT_EQ(std::make_pair(tree[f].name, tree[f].first), std::make_pair(std::string(expected[f].first), 1));
        std::vector<int> controls;
        for (const sparkhost::EditorEntry& e : tree[f].entries) {
            controls.push_back(e.control);
            EXPECT_EQ(std::make_pair(e.first, e.second), std::make_pair(2, e.control == 93 ? 0 : 1));
        }
        EXPECT_EQ(controls, expected[f].second);
        for (int n : controls)
            for (const Expected& e : kTable)
                if (e.number == n && n != 27 && n != 93) names.emplace_back(n, e.title.substr(0, e.title.find(':')));
    }
    ASSERT_EQ(names.size(), 40u);
    std::vector<std::pair<int, std::string>> given;
    for (const sparkhost::EditorCall& call : host.editor_calls)
        if (call.kind == sparkhost::EditorCall::Name) given.emplace_back(call.second, call.name);
    EXPECT_EQ(given, names);
}

}  // namespace
