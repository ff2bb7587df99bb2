// The plug-in's controls as the host sees them: the descriptor set, the
// auxiliary records, which controls SyncControls hides, and the channel editor.
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
    ControlKind kind;
    std::string title;  // popups: the title of the default entry
    double value, min, max, step;
    int flags;
    std::string callback;  // empty: none
};

constexpr ControlKind F = ControlKind::Float, I = ControlKind::Int, B = ControlKind::Boolean,
                      P = ControlKind::Push, U = ControlKind::Pup, C = ControlKind::Color,
                      S = ControlKind::String, UF = ControlKind::UserFloat;

// The descriptor set, as the pages are designed, but for the common controls
// that every effect page repeats (see all_controls).
const Expected kTable[] = {
    {0, S, "1: Disintegrate", 0, 0, 0, 0, 16, ""},
    {1, S, "2: Background", 0, 0, 0, 0, 16, ""},
    {2, S, "3: 2D Matte", 0, 0, 0, 0, 16, ""},
    {3, S, "4: 3D Matte", 0, 0, 0, 0, 16, ""},
    {6, I, "X Elements: %d", 12, 1, 100, 1, 8, "dlcb_6"},
    {7, I, "Y Elements: %d", 9, 1, 100, 1, 8, "dlcb_7"},
    {8, F, "Foreground Z: %.2f", -192, -4000, -1, 1, 0, "dlcb_8"},
    {9, F, "Maximum Z: %.2f", -12, -4000, -1, 1, 0, "dlcb_9"},
    {10, B, "Z Pop Off   ", 0, 0, 0, 0, 0, "dlcb_10"},
    {11, B, "Omni Z Direction   ", 0, 0, 0, 0, 0, "dlcb_11"},
    {12, B, "Z Sort   ", 0, 0, 0, 0, 0, "dlcb_12"},
    {13, F, "X Speed: %.2f", 0, -100, 100, 0.5, 0, "dlcb_13"},
    {14, F, "Y Speed: %.2f", 0, -100, 100, 0.5, 0, "dlcb_14"},
    {15, F, "Z Speed: %.2f", 5, -100, 100, 0.5, 0, "dlcb_15"},
    {16, F, "X Speed Var: %.2f", 0, 0, 100, 0.5, 0, "dlcb_16"},
    {17, F, "Y Speed Var: %.2f", 0, 0, 100, 0.5, 0, "dlcb_17"},
    {18, F, "Z Speed Var: %.2f", 10, 0, 100, 0.5, 0, "dlcb_18"},
    {19, U, "Demos: Explosion  ", 0, 0, 0, 0, 0, "dlcb_19"},
    {20, F, "X Rot. Speed: %.2f", 60, -360, 360, 0.5, 0, "dlcb_20"},
    {21, F, "Y Rot. Speed: %.2f", 60, -360, 360, 0.5, 0, "dlcb_21"},
    {22, F, "Z Rot. Speed: %.2f", 60, -360, 360, 0.5, 0, "dlcb_22"},
    {23, F, "X Rot. Speed Var: %.2f", 100, 0, 100, 0.5, 0, "dlcb_23"},
    {24, F, "Y Rot. Speed Var: %.2f", 100, 0, 100, 0.5, 0, "dlcb_24"},
    {25, F, "Z Rot. Speed Var: %.2f", 100, 0, 100, 0.5, 0, "dlcb_25"},
    {26, I, "Seed: %d", 200, 1, 999, 17, 0, "dlcb_26"},
    {27, F, "Blend: %.2f", 0, 0, 100, 0.1, 0, "Blend1CB"},
    {30, U, "Render Quality: Med Quality  ", 1, 0, 0, 0, 0, "dlcb_30"},
    {35, B, "Use Light   ", 0, 0, 0, 0, 0, "dlcb_35"},
    {36, F, "Light X: %.2f", 20, -500, 500, 0.05, 0, "dlcb_36"},
    {37, F, "Light Y: %.2f", 80, -500, 500, 0.05, 0, "dlcb_36"},
    {38, F, "LightZ: %.3f", 0.2, -5, 5, 0.005, 0, "dlcb_38"},
    {39, F, "Light Brightness: %.2f", 1, 0, 2, 0.01, 0, "dlcb_39"},
    {40, F, "Gloss: %.2f", 44, 1, 1000, 1, 0, "dlcb_40"},
    {42, C, "", -1, 0, 0, 0, 0, "dlcb_42"},
    {43, F, "Light Colour R: %.2f", 100, 0, 100, 0.2, 0, "SetLightColourCB"},
    {44, F, "Light Colour G: %.2f", 100, 0, 100, 0.2, 0, "SetLightColourCB"},
    {45, F, "Light Colour B: %.2f", 100, 0, 100, 0.2, 0, "SetLightColourCB"},
    {46, B, "Lit Background   ", 0, 0, 0, 0, 0, "dlcb_46"},
    {47, F, "Background Z: %.3f", -0.9, -5, -0.0001, 0.001, 0, "dlcb_47"},
    {49, B, "Use 2D Matte   ", 0, 0, 0, 0, 0, "dlcb_49"},
    {50, B, "Invert 2D Matte   ", 0, 0, 0, 0, 0, "dlcb_50"},
    {51, B, "Use 3D Matte   ", 0, 0, 0, 0, 0, "dlcb_51"},
    {52, B, "Invert 3D Matte   ", 0, 0, 0, 0, 0, "dlcb_52"},
    {64, B, "Use Wind   ", 0, 0, 0, 0, 0, "dlcb_64"},
    {65, F, "Wind Source X: %.2f", 90, -500, 500, 0.05, 0, "dlcb_65"},
    {66, F, "Wind Source Y: %.2f", 40, -500, 500, 0.05, 0, "dlcb_65"},
    {67, F, "Wind Target X: %.2f", 10, -500, 500, 0.05, 0, "dlcb_67"},
    {68, F, "Wind Target Y: %.2f", 40, -500, 500, 0.05, 0, "dlcb_67"},
    {69, F, "Wind Speed: %.2f", 5, 0, 180, 0.05, 0, "dlcb_69"},
    {70, F, "Wind Spread: %.2f", 10, 0, 180, 0.01, 0, "dlcb_70"},
    {71, B, "Use Repulsion   ", 0, 0, 0, 0, 0, "dlcb_71"},
    {72, F, "Repulsion X: %.2f", 40, -500, 500, 0.05, 0, "dlcb_72"},
    {73, F, "Repulsion Y: %.2f", 30, -500, 500, 0.05, 0, "dlcb_72"},
    {74, F, "Rep. Strength: %.2f", 10, 0, 100, 0.5, 0, "dlcb_74"},
    {75, B, "Use Gravity   ", 0, 0, 0, 0, 0, "dlcb_75"},
    {76, F, "Gravity: %.3f", 1, 0, 30, 0.05, 0, "dlcb_76"},
    {77, F, "Gravity Angle: %.2f", 270, 0, 360, 0.005, 0, "dlcb_77"},
    {78, B, "Use Attraction   ", 0, 0, 0, 0, 0, "dlcb_78"},
    {79, F, "Attraction X: %.2f", 80, -500, 500, 0.05, 0, "dlcb_79"},
    {80, F, "Attraction Y: %.2f", 80, -500, 500, 0.05, 0, "dlcb_79"},
    {81, F, "Attr. Strength: %.2f", 10, 0, 100, 0.5, 0, "dlcb_81"},
    {82, B, "Use Swirling   ", 0, 0, 0, 0, 0, "dlcb_82"},
    {83, F, "Swirl Density: %.2f", 6, 0, 100, 0.5, 0, "dlcb_83"},
    {84, F, "Swirl Magnitude: %.2f", 2, 0, 100, 0.5, 0, "dlcb_84"},
    {93, UF, "Amplitude Import: %.1f", 0, -1000, 1000, 0.001, 0, ""},
    {114, P, "Import Amplitude File", 0, 0, 0, 0, 0, "import_aiff_CB"},
};

std::vector<Expected> all_controls() {
    std::vector<Expected> all(std::begin(kTable), std::end(kTable));
    for (int page = 1; page <= 3; ++page) {
        const int base = 28 + 29 * (page - 1);
        const std::string n = std::to_string(page);
        const std::string restart = "dlcb_" + std::to_string(base + 1);
        for (const Expected& e : std::vector<Expected>{
                 {base, B, "Clear Overlay", 0, 0, 0, 0, 0, "Overlay" + n + "CB"},
                 {base + 1, P, "Restart Paneburst   ", 0, 0, 0, 0, 0, restart},
                 {base + 3, P, "Help", 0, 0, 0, 0, 0, "HelpCB"},
                 {base + 4, P, "Reset", 0, 0, 0, 0, 0, "Reset" + n + "CB"},
                 {base + 5, U, "FULL", 0, 0, 0, 0, 0, "SetRes" + n + "CB"},
                 {base + 6, B, "Auto Preview", 1, 0, 0, 0, 0, "Auto" + n + "CB"}})
            all.push_back(e);
    }
    return all;
}

int flags(const Control& c) {
    if (c.kind == ControlKind::Int) return static_cast<SparkIntDesc*>(c.descriptor)->flags;
    if (c.kind == ControlKind::String) return static_cast<SparkStringDesc*>(c.descriptor)->flags;
    if (c.kind == ControlKind::Float || c.kind == ControlKind::UserFloat)
        return static_cast<SparkFloatDesc*>(c.descriptor)->flags;
    return 0;
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
        const auto wanted = e.callback.empty() ? nullptr : reinterpret_cast<SparkCallback>(host.symbol(e.callback.c_str()));
        EXPECT_TRUE(e.callback.empty() || wanted) << e.callback;
        EXPECT_EQ(c->callback(), wanted);
        EXPECT_EQ(flags(*c), e.flags);
        if (e.kind == ControlKind::String) {
            EXPECT_STREQ(static_cast<SparkStringDesc*>(c->descriptor)->title, "%s");
        } else if (e.kind == ControlKind::Color) {  // -1: white
            EXPECT_EQ(static_cast<SparkColorDesc*>(c->descriptor)->value, 0xFFFFFFFFu);
        } else {
            EXPECT_EQ(c->value(), static_cast<float>(e.value));
            if (e.kind == F || e.kind == UF || e.kind == I) {
                EXPECT_EQ(c->minimum(), static_cast<float>(e.min));
                EXPECT_EQ(c->maximum(), static_cast<float>(e.max));
                EXPECT_EQ(c->increment(), static_cast<float>(e.step));
            }
        }
    }
    for (const auto& kv : host.controls()) exported.insert(kv.first);
    EXPECT_EQ(exported, expected_numbers);
}

TEST(PluginControls, PopupEntriesAreExactAndCounted) {
    sparkhost::Host& host = testing_support::plugin_host();
    const std::vector<std::string> resolution = {"FULL", "1/2", "1/3", "1/4", "1/6", "1/8", "1/12", "1/16", "1/32"};
    const std::vector<std::pair<int, std::vector<std::string>>> popups = {
        {19, {"Demos: Explosion  ", "Demos: Confetti  ", "Demos: VenetianV  ", "Demos:  VenetianH  "}},
        {30, {"Render Quality: High Quality  ", "Render Quality: Med Quality  ", "Render Quality: Low Quality  ",
              "Render Quality: Wireframe  "}},
        {33, resolution}, {62, resolution}, {91, resolution}};
    for (const auto& p : popups) {
        SCOPED_TRACE(p.first);
        const Control* c = host.control(p.first);
        const auto* d = static_cast<const SparkPupDesc*>(c->descriptor);
        int titled = 0;
        while (titled < kPupMaxEntries && d->titles[titled]) ++titled;
        for (int i = titled; i < kPupMaxEntries; ++i) EXPECT_EQ(d->titles[i], nullptr);
        EXPECT_EQ(d->entry_count, static_cast<int>(p.second.size()));
        EXPECT_EQ(titled, d->entry_count);
        for (int i = 0; i < titled; ++i) EXPECT_EQ(c->entry_title(i), p.second[i]);
    }
}

TEST(PluginControls, AuxiliaryRecordsHoldTheDefinedRanges) {
    sparkhost::Host& host = testing_support::plugin_host();
    auto aux = [&](const char* name) {
        void* p = host.symbol(name);
        EXPECT_NE(p, nullptr) << name;
        return p;
    };
    const auto* bz = static_cast<const float*>(aux("AuxQ7Float47"));
    EXPECT_EQ(std::vector<float>(bz, bz + 2), (std::vector<float>{-5.0f, -0.0001f}));
    const auto* seed = static_cast<const int*>(aux("AuxQ7Integer26"));
    EXPECT_EQ(std::vector<int>(seed, seed + 2), (std::vector<int>{1, 999}));
    EXPECT_EQ(static_cast<const float*>(aux("AuxQ7Angle70"))[1], 180.0f);
    const auto* wind = static_cast<const float*>(aux("AuxQ7Position65"));
    EXPECT_EQ(std::vector<float>(wind, wind + 4), (std::vector<float>{-500.0f, 500.0f, -500.0f, 500.0f}));
    EXPECT_EQ(*static_cast<const std::uint32_t*>(aux("AuxQ7Colour42")), 0xFFFFFFFFu);
    // Lists: the default entry, the count, the names without their prefix.
    struct List {
        int default_entry, count;
        const char* names[4];
    };
    const auto* demos = static_cast<const List*>(aux("AuxQ7List19"));
    EXPECT_EQ(demos->default_entry, 0);
    EXPECT_EQ(demos->count, 4);
    EXPECT_STREQ(demos->names[3], " VenetianH  ");
    const auto* quality = static_cast<const List*>(aux("AuxQ7List30"));
    EXPECT_EQ(quality->default_entry, 1);
    EXPECT_STREQ(quality->names[0], "High Quality  ");
    EXPECT_EQ(*static_cast<const int*>(aux("AuxQ7Checkbox35")), 0);  // an empty exclusive group
    // Push buttons, popups without an object and position y controls have none.
    for (const char* none : {"AuxQ7Float37", "AuxQ7Float27", "AuxQ7List33"}) EXPECT_EQ(host.symbol(none), nullptr);
}

TEST(PluginControls, FirstFrameHidesEveryDependentControl) {
    sparkhost::Host& host = testing_support::plugin_host();
    testing_support::start(host, 32, 24, 8, 1);
    EXPECT_TRUE(host.hidden_controls().empty());
    ASSERT_NE(host.process(0), nullptr);
    // Everything that depends on a switched-off checkbox: the light controls
    // but Use Light, Background Z, both invert checkboxes, every force value.
    const std::set<int> expected = {36, 37, 38, 39, 40, 42, 43, 44, 45, 46, 47, 50, 52, 65, 66,
                                    67, 68, 69, 70, 72, 73, 74, 76, 77, 79, 80, 81, 83, 84};
    EXPECT_EQ(host.hidden_controls(), expected);
    // SyncControls runs once per arming only.
    host.control(35)->set_value(1);
    ASSERT_NE(host.process(1), nullptr);
    EXPECT_EQ(host.hidden_controls(), expected);

    // Use Light on: the light controls and Lit Background show, Background Z
    // stays hidden until Lit Background is on as well.
    host.change_control(35, 1);
    for (int n : {36, 45, 46}) EXPECT_FALSE(host.hidden(n)) << n;
    EXPECT_TRUE(host.hidden(47));
    host.change_control(46, 1);
    EXPECT_FALSE(host.hidden(47));
    host.change_control(35, 0);  // Background Z goes with the light
    EXPECT_TRUE(host.hidden(47) && host.hidden(46));
    host.change_control(49, 1);
    host.change_control(78, 1);
    for (int n : {50, 79, 80, 81}) EXPECT_FALSE(host.hidden(n)) << n;
}

TEST(PluginControls, ChannelEditorTree) {
    sparkhost::Host& host = testing_support::plugin_host();
    host.editor_calls.clear();
    testing_support::start(host, 32, 24, 8, 1);  // names the channels
    host.build_channel_editor();
    const std::vector<sparkhost::EditorFolder> tree = host.channel_editor_tree();

    struct Folder {
        const char* name;
        std::vector<int> controls;
    };
    const std::vector<Folder> expected = {
        {"Depth", {8, 9}}, {"Style", {26}}, {"Speed", {13, 14, 15, 16, 17, 18}},
        {"Rotation", {20, 21, 22, 23, 24, 25}}, {"Light", {36, 37, 38, 39, 40, 43, 44, 45, 47}},
        {"Wind", {65, 66, 67, 68, 69, 70}}, {"Repel", {72, 73, 74}}, {"Gravity", {76, 77}},
        {"Attract", {79, 80, 81}}, {"Swirl", {83, 84}}, {"Common", {27, 93}}};
    ASSERT_EQ(tree.size(), 11u);
    int entries = 0, named = 0;
    for (std::size_t f = 0; f < tree.size(); ++f) {
        SCOPED_TRACE(expected[f].name);
        EXPECT_EQ(tree[f].name, expected[f].name);
        EXPECT_EQ(tree[f].first, 1);
        std::vector<int> controls;
        for (const sparkhost::EditorEntry& e : tree[f].entries) {
            controls.push_back(e.control);
            EXPECT_EQ(e.first, 2);
            EXPECT_EQ(e.second, e.control == 93 ? 0 : 1);
            ++entries;
            if (!e.name.empty()) ++named;
        }
        EXPECT_EQ(controls, expected[f].controls);
    }
    EXPECT_EQ(entries, 42);
    EXPECT_EQ(named, 40);

    // Every entry but the Common folder's is named after its slider title
    // without the value format ("LightZ" from "LightZ: %.3f"), in tree order.
    std::vector<std::pair<int, std::string>> names;
    for (const Folder& f : expected)
        for (int n : f.controls)
            for (const Expected& e : kTable)
                if (e.number == n && n != 27 && n != 93) names.emplace_back(n, e.title.substr(0, e.title.find(':')));
    std::vector<std::pair<int, std::string>> given;
    for (const sparkhost::EditorCall& call : host.editor_calls)
        if (call.kind == sparkhost::EditorCall::Name) {
            EXPECT_EQ(call.first, 1);
            given.emplace_back(call.second, call.name);
        }
    EXPECT_EQ(given, names);
}

}  // namespace
