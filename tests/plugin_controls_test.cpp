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
    const char* title;  // popups: the title of the default entry
    double value, min, max, step;
    int flags;
    const char* callback;  // null: none
};

constexpr ControlKind F = ControlKind::Float, I = ControlKind::Int, B = ControlKind::Boolean,
                      P = ControlKind::Push, U = ControlKind::Pup, C = ControlKind::Color,
                      S = ControlKind::String, UF = ControlKind::UserFloat;

// The complete descriptor set, as the pages are designed.
const Expected kTable[] = {
    {0, S, "1: Disintegrate", 0, 0, 0, 0, 16, nullptr},
    {1, S, "2: Background", 0, 0, 0, 0, 16, nullptr},
    {2, S, "3: 2D Matte", 0, 0, 0, 0, 16, nullptr},
    {3, S, "4: 3D Matte", 0, 0, 0, 0, 16, nullptr},
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
    {28, B, "Clear Overlay", 0, 0, 0, 0, 0, "Overlay1CB"},
    {29, P, "Restart Paneburst   ", 0, 0, 0, 0, 0, "dlcb_29"},
    {30, U, "Render Quality: Med Quality  ", 1, 0, 0, 0, 0, "dlcb_30"},
    {31, P, "Help", 0, 0, 0, 0, 0, "HelpCB"},
    {32, P, "Reset", 0, 0, 0, 0, 0, "Reset1CB"},
    {33, U, "FULL", 0, 0, 0, 0, 0, "SetRes1CB"},
    {34, B, "Auto Preview", 1, 0, 0, 0, 0, "Auto1CB"},
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
    {57, B, "Clear Overlay", 0, 0, 0, 0, 0, "Overlay2CB"},
    {58, P, "Restart Paneburst   ", 0, 0, 0, 0, 0, "dlcb_58"},
    {60, P, "Help", 0, 0, 0, 0, 0, "HelpCB"},
    {61, P, "Reset", 0, 0, 0, 0, 0, "Reset2CB"},
    {62, U, "FULL", 0, 0, 0, 0, 0, "SetRes2CB"},
    {63, B, "Auto Preview", 1, 0, 0, 0, 0, "Auto2CB"},
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
    {86, B, "Clear Overlay", 0, 0, 0, 0, 0, "Overlay3CB"},
    {87, P, "Restart Paneburst   ", 0, 0, 0, 0, 0, "dlcb_87"},
    {89, P, "Help", 0, 0, 0, 0, 0, "HelpCB"},
    {90, P, "Reset", 0, 0, 0, 0, 0, "Reset3CB"},
    {91, U, "FULL", 0, 0, 0, 0, 0, "SetRes3CB"},
    {92, B, "Auto Preview", 1, 0, 0, 0, 0, "Auto3CB"},
    {93, UF, "Amplitude Import: %.1f", 0, -1000, 1000, 0.001, 0, nullptr},
    {114, P, "Import Amplitude File", 0, 0, 0, 0, 0, "import_aiff_CB"},
};

int slider_flags(const Control& c) {
    if (c.kind == ControlKind::Int) return static_cast<SparkIntDesc*>(c.descriptor)->flags;
    if (c.kind == ControlKind::String) return static_cast<SparkStringDesc*>(c.descriptor)->flags;
    return static_cast<SparkFloatDesc*>(c.descriptor)->flags;
}

TEST(PluginControls, DescriptorSetIsExactlyTheTable) {
    sparkhost::Host& host = testing_support::plugin_host();
    std::set<int> expected_numbers;
    for (const Expected& e : kTable) {
        SCOPED_TRACE(e.number);
        expected_numbers.insert(e.number);
        Control* c = host.control(e.number);
        ASSERT_NE(c, nullptr);
        EXPECT_EQ(c->kind, e.kind);
        EXPECT_EQ(c->title(), e.title);
        const SparkCallback wanted =
            e.callback ? reinterpret_cast<SparkCallback>(host.symbol(e.callback)) : nullptr;
        if (e.callback) {
            EXPECT_NE(wanted, nullptr) << e.callback;
        }
        EXPECT_EQ(c->callback(), wanted);
        switch (e.kind) {
            case ControlKind::Float:
            case ControlKind::UserFloat:
                EXPECT_EQ(c->value(), static_cast<float>(e.value));
                EXPECT_EQ(c->minimum(), static_cast<float>(e.min));
                EXPECT_EQ(c->maximum(), static_cast<float>(e.max));
                EXPECT_EQ(c->increment(), static_cast<float>(e.step));
                EXPECT_EQ(slider_flags(*c), e.flags);
                break;
            case ControlKind::Int:
                EXPECT_EQ(c->value(), e.value);
                EXPECT_EQ(c->minimum(), e.min);
                EXPECT_EQ(c->maximum(), e.max);
                EXPECT_EQ(c->increment(), e.step);
                EXPECT_EQ(slider_flags(*c), e.flags);
                break;
            case ControlKind::String:
                EXPECT_STREQ(static_cast<SparkStringDesc*>(c->descriptor)->title, "%s");
                EXPECT_EQ(slider_flags(*c), e.flags);
                break;
            case ControlKind::Color:
                EXPECT_EQ(static_cast<SparkColorDesc*>(c->descriptor)->value, 0xFFFFFFFFu);
                break;
            default:
                EXPECT_EQ(c->value(), e.value);
                break;
        }
    }
    std::set<int> exported;
    for (const auto& kv : host.controls()) exported.insert(kv.first);
    EXPECT_EQ(exported, expected_numbers);
}

TEST(PluginControls, PopupEntriesAreExactAndCounted) {
    sparkhost::Host& host = testing_support::plugin_host();
    const std::vector<std::string> resolution = {"FULL", "1/2", "1/3", "1/4", "1/6", "1/8", "1/12", "1/16", "1/32"};
    const std::vector<std::pair<int, std::vector<std::string>>> popups = {
        {19, {"Demos: Explosion  ", "Demos: Confetti  ", "Demos: VenetianV  ", "Demos:  VenetianH  "}},
        {30,
         {"Render Quality: High Quality  ", "Render Quality: Med Quality  ", "Render Quality: Low Quality  ",
          "Render Quality: Wireframe  "}},
        {33, resolution},
        {62, resolution},
        {91, resolution},
    };
    for (const auto& p : popups) {
        SCOPED_TRACE(p.first);
        const Control* c = host.control(p.first);
        ASSERT_NE(c, nullptr);
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
    const auto* bz = static_cast<const float*>(host.symbol("AuxQ7Float47"));
    ASSERT_NE(bz, nullptr);
    EXPECT_EQ(bz[0], -5.0f);
    EXPECT_EQ(bz[1], -0.0001f);
    const auto* seed = static_cast<const int*>(host.symbol("AuxQ7Integer26"));
    ASSERT_NE(seed, nullptr);
    EXPECT_EQ(seed[0], 1);
    EXPECT_EQ(seed[1], 999);
    const auto* spread = static_cast<const float*>(host.symbol("AuxQ7Angle70"));
    ASSERT_NE(spread, nullptr);
    EXPECT_EQ(spread[1], 180.0f);
    const auto* wind = static_cast<const float*>(host.symbol("AuxQ7Position65"));
    ASSERT_NE(wind, nullptr);
    EXPECT_EQ(wind[0], -500.0f);
    EXPECT_EQ(wind[1], 500.0f);
    EXPECT_EQ(wind[2], -500.0f);
    EXPECT_EQ(wind[3], 500.0f);
    const auto* colour = static_cast<const std::uint32_t*>(host.symbol("AuxQ7Colour42"));
    ASSERT_NE(colour, nullptr);
    EXPECT_EQ(colour[0], 0xFFFFFFFFu);
    // Lists: the default entry, the count, the names without their prefix.
    struct List {
        int default_entry;
        int count;
        const char* names[4];
    };
    const auto* demos = static_cast<const List*>(host.symbol("AuxQ7List19"));
    ASSERT_NE(demos, nullptr);
    EXPECT_EQ(demos->default_entry, 0);
    EXPECT_EQ(demos->count, 4);
    EXPECT_STREQ(demos->names[3], " VenetianH  ");
    const auto* quality = static_cast<const List*>(host.symbol("AuxQ7List30"));
    ASSERT_NE(quality, nullptr);
    EXPECT_EQ(quality->default_entry, 1);
    EXPECT_STREQ(quality->names[0], "High Quality  ");
    // A checkbox's exclusive group is empty.
    const auto* group = static_cast<const int*>(host.symbol("AuxQ7Checkbox35"));
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group[0], 0);
    // Push buttons, popups without an object and position y controls have none.
    EXPECT_EQ(host.symbol("AuxQ7Float37"), nullptr);
    EXPECT_EQ(host.symbol("AuxQ7Float27"), nullptr);
    EXPECT_EQ(host.symbol("AuxQ7List33"), nullptr);
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
    EXPECT_FALSE(host.hidden(36));
    EXPECT_FALSE(host.hidden(45));
    EXPECT_FALSE(host.hidden(46));
    EXPECT_TRUE(host.hidden(47));
    host.change_control(46, 1);
    EXPECT_FALSE(host.hidden(47));
    host.change_control(35, 0);
    EXPECT_TRUE(host.hidden(47));
    EXPECT_TRUE(host.hidden(46));

    host.change_control(49, 1);
    EXPECT_FALSE(host.hidden(50));
    host.change_control(78, 1);
    EXPECT_FALSE(host.hidden(79));
    EXPECT_FALSE(host.hidden(80));
    EXPECT_FALSE(host.hidden(81));
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
        {"Depth", {8, 9}},
        {"Style", {26}},
        {"Speed", {13, 14, 15, 16, 17, 18}},
        {"Rotation", {20, 21, 22, 23, 24, 25}},
        {"Light", {36, 37, 38, 39, 40, 43, 44, 45, 47}},
        {"Wind", {65, 66, 67, 68, 69, 70}},
        {"Repel", {72, 73, 74}},
        {"Gravity", {76, 77}},
        {"Attract", {79, 80, 81}},
        {"Swirl", {83, 84}},
        {"Common", {27, 93}},
    };
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

    // The names, in the order they were given.
    const std::vector<std::pair<int, std::string>> names = {
        {8, "Foreground Z"},      {9, "Maximum Z"},         {26, "Seed"},
        {13, "X Speed"},          {14, "Y Speed"},          {15, "Z Speed"},
        {16, "X Speed Var"},      {17, "Y Speed Var"},      {18, "Z Speed Var"},
        {20, "X Rot. Speed"},     {21, "Y Rot. Speed"},     {22, "Z Rot. Speed"},
        {23, "X Rot. Speed Var"}, {24, "Y Rot. Speed Var"}, {25, "Z Rot. Speed Var"},
        {36, "Light X"},          {37, "Light Y"},          {38, "LightZ"},
        {39, "Light Brightness"}, {40, "Gloss"},            {43, "Light Colour R"},
        {44, "Light Colour G"},   {45, "Light Colour B"},   {47, "Background Z"},
        {65, "Wind Source X"},    {66, "Wind Source Y"},    {67, "Wind Target X"},
        {68, "Wind Target Y"},    {69, "Wind Speed"},       {70, "Wind Spread"},
        {72, "Repulsion X"},      {73, "Repulsion Y"},      {74, "Rep. Strength"},
        {76, "Gravity"},          {77, "Gravity Angle"},    {79, "Attraction X"},
        {80, "Attraction Y"},     {81, "Attr. Strength"},   {83, "Swirl Density"},
        {84, "Swirl Magnitude"},
    };
    std::vector<std::pair<int, std::string>> given;
    for (const sparkhost::EditorCall& call : host.editor_calls)
        if (call.kind == sparkhost::EditorCall::Name) {
            EXPECT_EQ(call.first, 1);
            given.emplace_back(call.second, call.name);
        }
    EXPECT_EQ(given, names);
}

}  // namespace
