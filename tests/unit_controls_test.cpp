// Control objects on hand-made descriptors, served by a stand-in host: value
// conversions, curve reads, Disable and Hide, and what each call tells the host.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "framework/choice_controls.h"
#include "framework/colour_control.h"
#include "framework/slider_controls.h"
#include "framework/text_controls.h"
#include "sparkhost/host.h"

namespace {

// Every test gets its own stand-in host, which records what the controls tell it.
class Controls : public ::testing::Test {
protected:
    // Total control updates the host has seen, over every control number.
    int total_updates() const {
        int n = 0;
        for (int c = 0; c < 256; ++c) n += host.update_count(c);
        return n;
    }
    sparkhost::Host host;
};
using SliderControl = Controls;
using PositionControl = Controls;
using CheckboxControl = Controls;
using ListControl = Controls;
using ColourControl = Controls;
using TextAndButtonControls = Controls;

template <typename C>
void bind(C& c, int id, void* descriptor) {
    c.id = id;
    c.descriptor = descriptor;
}

TEST_F(SliderControl, FloatSetWidensAndFrameMinusOneReadsTheCache) {
    SparkFloatDesc d = {1.25f, -10.0f, 10.0f, 0.5f, 0, "F: %.2f", nullptr};
    FloatControlQ7 c;
    bind(c, 8, &d);
    c.Sync();
    EXPECT_EQ(c.value, 1.25);
    c.SetValue(3.0, 0.1);  // the frame argument is not used
    EXPECT_EQ(d.value, 0.1f);
    EXPECT_EQ(c.value, static_cast<double>(0.1f));  // widened float, not 0.1
    EXPECT_EQ(host.update_count(8), 1);
    host.set_key(8, 0.0f, 4.0f);  // the curve differs from the cache
    double v = 0.0;
    c.GetValue(-1.0, v);
    EXPECT_EQ(v, static_cast<double>(0.1f));
    c.GetValue(0.0, v);
    EXPECT_EQ(v, 4.0);
}

TEST_F(SliderControl, IntegerCurveValuesTruncateTowardZero) {
    SparkIntDesc d = {12, 1, 100, 1, 8, "I: %d", nullptr};
    IntegerControlQ7 c;
    bind(c, 6, &d);
    c.Sync();
    host.set_key(6, 0.0f, 7.9f);
    host.set_key(6, 1.0f, -2.5f);
    const struct { double frame; long expected; } cases[] = {{0.0, 7}, {1.0, -2}, {-1.0, 12}};
    for (const auto& k : cases) {
        long v = 0;
        c.GetValue(k.frame, v);
        EXPECT_EQ(v, k.expected) << "frame " << k.frame;
    }
}

TEST_F(SliderControl, DisableFreezesRangeAndRestoresItFromTheRecordOnce) {
    SparkFloatDesc d = {5.0f, -100.0f, 100.0f, 0.5f, 0, "F: %.2f", nullptr};
    FloatRangeQ7 range = {-100.0f, 100.0f};
    FloatControlQ7 c;
    bind(c, 13, &d);
    c.aux = &range;
    c.Disable(false);  // enabling an enabled slider calls nothing
    EXPECT_EQ(total_updates(), 0);
    EXPECT_EQ(d.min, -100.0f);
    c.Disable(true);
    EXPECT_EQ(d.min, 5.0f);
    EXPECT_EQ(d.max, 5.0f);
    c.Disable(true);  // must not overwrite the record with the frozen range
    EXPECT_EQ(host.update_count(13), 1);
    EXPECT_EQ(range.minimum, -100.0f);
    EXPECT_EQ(range.maximum, 100.0f);
    c.Disable(false);
    EXPECT_EQ(d.min, -100.0f);
    EXPECT_EQ(d.max, 100.0f);
    EXPECT_EQ(d.value, 5.0f);
    EXPECT_EQ(host.update_count(13), 2);
}

TEST_F(SliderControl, SizeHostHoldsOneHundredTimesTheValue) {
    SparkFloatDesc d = {50.0f, 0.0f, 500.0f, 1.0f, 0, "S: %.2f", nullptr};
    SizeControlQ7 c;
    bind(c, 20, &d);
    c.Sync();
    EXPECT_EQ(c.value, 0.5);
    c.SetValue(0.0, 1.5);
    EXPECT_EQ(d.value, 150.0f);
    host.set_key(20, 0.0f, 25.0f);
    double v = 0.0;
    c.GetValue(0.0, v);
    EXPECT_EQ(v, 0.25);
}

TEST_F(PositionControl, PairComesOnlyFromTheRefresh) {
    SparkFloatDesc dx = {20.0f, -500.0f, 500.0f, 0.05f, 0, "X: %.2f", nullptr};
    SparkFloatDesc dy = {80.0f, -500.0f, 500.0f, 0.05f, 0, "Y: %.2f", nullptr};
    PositionRangeQ7 range = {-500.0f, 500.0f, -400.0f, 400.0f};
    PositionControlQ7 c;
    bind(c, 36, &dx);
    c.y_descriptor = &dy;
    c.aux = &range;
    c.Sync();  // does nothing by design
    EXPECT_EQ(c.x, 0.0);
    c.refresh();
    EXPECT_EQ(c.x, 0.2);
    EXPECT_EQ(c.y, 0.8);

    c.SetValue(-1.0, 0.5, -1.25);
    EXPECT_EQ(dx.value, 50.0f);
    EXPECT_EQ(dy.value, -125.0f);
    EXPECT_EQ(host.update_count(36) + host.update_count(37), 2);
    EXPECT_EQ(c.x, 0.2);  // still the last refresh

    host.set_key(36, 0.0f, 10.0f);
    host.set_key(37, 0.0f, -30.0f);
    double x = 0, y = 0;
    c.GetValue(0.0, x, y);
    EXPECT_EQ(x, 0.1);
    EXPECT_EQ(y, -0.3);
    c.GetValue(-1.0, x, y);
    EXPECT_EQ(y, 0.8);

    c.Hide(true);
    EXPECT_TRUE(host.hidden(36) && host.hidden(37));
    c.Disable(true);
    EXPECT_EQ(dy.min, -125.0f);
    c.Disable(false);  // each axis gets its own range back
    EXPECT_EQ(dy.min, -400.0f);
    EXPECT_EQ(dy.max, 400.0f);
    EXPECT_EQ(dx.min, -500.0f);
}

TEST_F(CheckboxControl, LowByteOnlyEmptyGroupAndSavedValue) {
    SparkBooleanDesc d = {0x100, "Box   ", nullptr};
    CheckboxGroupQ7 empty = {};
    CheckboxControlQ7 c;
    bind(c, 10, &d);
    c.aux = &empty;
    c.Sync();
    long v = 7;
    c.GetValue(0.0, v);
    EXPECT_EQ(v, 0);

    d.value = 0;
    c.SetValue(-1.0, 1);
    c.GetValue(5.0, v);
    EXPECT_EQ(v, 1);
    EXPECT_EQ(total_updates(), 1);  // an empty group touches no other control
    c.Disable(false);  // while enabled: calls nothing but still saves the byte
    EXPECT_EQ(c.saved, 1);
    EXPECT_EQ(total_updates(), 1);
}

TEST_F(CheckboxControl, SwitchingOnClearsTheOtherGroupMembers) {
    SparkBooleanDesc a = {0, "A", nullptr}, b = {1, "B", nullptr};
    CheckboxGroupQ7 group = {};
    group.count = 1;
    group.members[0] = 11;
    group.values[0] = reinterpret_cast<unsigned char*>(&b);
    CheckboxControlQ7 c;
    bind(c, 10, &a);
    c.aux = &group;
    c.SetValue(0.0, 0);
    EXPECT_EQ(b.value, 1);  // switching off leaves the group alone
    c.SetValue(0.0, 1);
    EXPECT_EQ(b.value, 0);
    EXPECT_EQ(host.update_count(11), 1);
}

TEST_F(ListControl, HostCountsFromZeroFrameworkFromOne) {
    SparkPupDesc d = {1, 4, nullptr, {"a", "b", "c", "d"}};
    ListInfoQ7 info = {1, 4, {"a", "b", "c", "d"}};
    ListControlQ7 c;
    bind(c, 30, &d);
    c.aux = &info;
    c.SetValue(-1.0, 1);
    EXPECT_EQ(d.value, 0);
    d.value = 3;  // GetValue reads the host now, no Sync needed
    long v = 0;
    c.GetValue(-1.0, v);
    EXPECT_EQ(v, 4);
    const int before = host.update_count(30);
    c.Disable(false);
    EXPECT_EQ(host.update_count(30), before);
    c.Disable(true);
    EXPECT_EQ(d.entry_count, 1);
    c.Disable(false);
    EXPECT_EQ(d.entry_count, 4);
}

TEST_F(ColourControl, SyncFillsLowBitsGetValueOnlyShifts) {
    SparkColorDesc d = {0x00FF8000u, nullptr};
    ColourControlQ7 c;
    bind(c, 42, &d);
    c.Sync();
    using Rgba = std::array<int, 4>;
    EXPECT_EQ((Rgba{c.value.r, c.value.g, c.value.b, c.value.a}), (Rgba{0, 16448, 32767, 32767}));
    std::uint16_t r = 1, g = 1, b = 1, a = 1;
    c.GetValue(0.0, r, g, b, a);
    EXPECT_EQ((Rgba{r, g, b, a}), (Rgba{0, 16384, 32640, 32767}));
    d.value = 0xFFFFFFFFu;  // the initial -1 reads as white
    c.Sync();
    EXPECT_EQ((Rgba{c.value.r, c.value.g, c.value.b, c.value.a}), (Rgba{32767, 32767, 32767, 32767}));
}

TEST_F(ColourControl, SetValueMovesTheSlidersNotThePot) {
    SparkColorDesc d = {0xFFFFFFFFu, nullptr};
    SparkFloatDesc sr = {100.0f, 0.0f, 100.0f, 0.2f, 0, "R", nullptr};
    SparkFloatDesc sg = sr, sb = sr;
    ColourSaveQ7 save = {0xFFFFFFFFu};
    ColourControlQ7 c;
    bind(c, 42, &d);
    c.has_sliders = 1;
    c.aux = &save;
    c.sliders[0] = &sr;
    c.sliders[1] = &sg;
    c.sliders[2] = &sb;

    c.SetValue(0.0, 32767, 0, 16448, 999);
    EXPECT_EQ(d.value, 0xFF8000FFu);
    EXPECT_EQ(sr.value, 100.0f);
    EXPECT_EQ(sg.value, 0.0f);
    EXPECT_EQ(sb.value, static_cast<float>(128 / 2.55));  // 50.196...
    EXPECT_EQ(host.update_count(42), 0);
    for (int n = 43; n <= 45; ++n) EXPECT_EQ(host.update_count(n), 1) << n;

    // Disable freezes the sliders and saves the word; enabling an enabled
    // colour still saves the word and redraws the pot, not the sliders.
    c.Disable(true);
    EXPECT_EQ(sb.min, sb.value);
    EXPECT_EQ(sb.max, sb.value);
    EXPECT_EQ(save.saved, 0xFF8000FFu);
    c.Disable(false);
    EXPECT_EQ(sb.min, 0.0f);
    EXPECT_EQ(sb.max, 100.0f);
    d.value = 0xFF000001u;
    const int sliders_before = host.update_count(43), pot_before = host.update_count(42);
    c.Disable(false);
    EXPECT_EQ(save.saved, 0xFF000001u);
    EXPECT_EQ(host.update_count(42), pot_before + 1);
    EXPECT_EQ(host.update_count(43), sliders_before);

    c.Hide(true);
    for (int n = 42; n <= 45; ++n) EXPECT_TRUE(host.hidden(n)) << n;
}

TEST_F(TextAndButtonControls, FileNameLosesItsWhiteSpaceInPlace) {
    SparkStringDesc d = {};
    std::strcpy(d.text, " my file\t.txt \n");
    FileControlQ7 f;
    bind(f, 100, &d);
    char* name = nullptr;
    f.GetValue(0.0, name);
    EXPECT_STREQ(name, "myfile.txt");
    EXPECT_EQ(name, d.text);
    f.SetValue(0.0, "other");
    EXPECT_STREQ(d.text, "other");
    // The text field sits at id + 7: it is what a new name redraws.
    EXPECT_EQ(host.update_count(107), 1);
    EXPECT_EQ(host.update_count(100), 0);
    f.Hide(true);
    EXPECT_TRUE(host.hidden(100) && host.hidden(107));
    f.Disable(false);
    EXPECT_EQ(total_updates(), 1);
}

TEST_F(TextAndButtonControls, ButtonAndUnboundObjectsDoNothingBeyondTheirFlags) {
    SparkPushDesc push = {"Go", nullptr};
    ButtonControlQ7 button;
    bind(button, 29, &push);
    button.Disable(false);
    EXPECT_EQ(total_updates(), 0);
    button.Disable(true);
    EXPECT_EQ(host.update_count(29), 1);

    // Objects that were never bound keep id 0 and touch no control.
    FloatControlQ7 f;
    CheckboxControlQ7 box;
    ColourControlQ7 colour;
    f.Sync();
    f.SetValue(0.0, 3.0);
    f.Hide(true);
    box.SetValue(0.0, 1);
    colour.Disable(true);
    double v = 1.0;
    f.GetValue(0.0, v);
    EXPECT_EQ(v, 0.0);
    EXPECT_TRUE(f.hidden && colour.disabled);
    EXPECT_EQ(total_updates(), 1);
    EXPECT_TRUE(host.hidden_controls().empty());
}

}  // namespace
