// Control objects on hand-made descriptors, served by a stand-in host: value
// conversions, curve reads, Disable, and what each call tells the host.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include "framework/choice_controls.h"
#include "framework/colour_control.h"
#include "framework/slider_controls.h"
#include "framework/text_controls.h"
#include "sparkhost/host.h"

namespace {

// Every test gets its own stand-in host, which records what the controls tell it.
class Controls : public ::testing::Test {
protected:
    int total_updates() const {
        int n = 0;
        for (int c = 0; c < 256; ++c) n += host.update_count(c);
        return n;
    }
    template <typename C>
    static void bind(C& c, int id, void* descriptor) {
        c.id = id;
        c.descriptor = descriptor;
    }
    sparkhost::Host host;
};
using F4 = std::array<float, 4>;

TEST_F(Controls, SliderFrameMinusOneReadsTheCacheIntegersTruncate) {
    SparkFloatDesc d = {1.25f, -10.0f, 10.0f, 0.5f, 0, "F: %.2f", nullptr};
    FloatControlQ7 f;
    bind(f, 8, &d);
    f.SetValue(3.0, 0.1);  // the frame argument is not used
    host.set_key(8, 0.0f, 4.0f);  // the curve differs from the cache
    double v0 = 0.0, v1 = 0.0;
    f.GetValue(-1.0, v1);
    f.GetValue(0.0, v0);
    EXPECT_EQ((std::array<double, 3>{f.value, v1, v0}), (std::array<double, 3>{0.1f, 0.1f, 4.0}));  // widened float

    SparkIntDesc di = {12, 1, 100, 1, 8, "I: %d", nullptr};
    IntegerControlQ7 i;
    bind(i, 6, &di);
    i.Sync();
    host.set_key(6, 0.0f, 7.9f);
    host.set_key(6, 1.0f, -2.5f);
    const double cases[][2] = {{0.0, 7}, {1.0, -2}, {-1.0, 12}};
    for (const auto& k : cases) {
        long n = 0;
        EXPECT_EQ((i.GetValue(k[0], n), n), k[1]) << "frame " << k[0];
    }
}

TEST_F(Controls, DisableFreezesRangeRestoresItFromTheRecordOnceFileNameLosesWhiteSpace) {
    SparkFloatDesc d = {5.0f, -100.0f, 100.0f, 0.5f, 0, "F: %.2f", nullptr};
    FloatRangeQ7 range = {-100.0f, 100.0f};
    FloatControlQ7 c;
    bind(c, 13, &d);
    c.aux = &range;
    SparkStringDesc text = {};
    std::strcpy(text.text, " my file\t.txt \n");
    SparkPushDesc push = {"Go", nullptr};
    FileControlQ7 file;
    ButtonControlQ7 button;
    bind(file, 100, &text);
    bind(button, 29, &push);
    c.Disable(false);  // enabling an enabled slider, button or file calls nothing
    button.Disable(false);
    file.Disable(false);
    EXPECT_EQ(total_updates(), 0);
    char* name = nullptr;  // a file name loses its white space in place
    file.GetValue(0.0, name);
    EXPECT_TRUE(name == text.text && std::string(name) == "myfile.txt") << name;
    c.Disable(true);
    c.Disable(true);  // must not overwrite the record with the frozen range
    EXPECT_EQ((F4{d.min, d.max, range.minimum, range.maximum}), (F4{5.0f, 5.0f, -100.0f, 100.0f}));
    c.Disable(false);
    EXPECT_EQ((F4{d.min, d.max, d.value, float(host.update_count(13))}), (F4{-100.0f, 100.0f, 5.0f, 2}));
}

TEST_F(Controls, ChoicesCheckboxLowByteEmptyGroupListCountsFromOne) {
    SparkBooleanDesc d = {0x100, "Box   ", nullptr};
    CheckboxGroupQ7 empty = {};  // every checkbox of the plug-in has an empty group
    CheckboxControlQ7 c;
    bind(c, 10, &d);
    c.aux = &empty;
    long v = 7;
    c.GetValue(0.0, v);
    EXPECT_EQ(v, 0);
    c.SetValue(-1.0, 1);
    c.Disable(false);  // while enabled: calls nothing but still saves the byte
    EXPECT_EQ(c.saved, 1);
    EXPECT_EQ(total_updates(), 1);  // an empty group touches no other control

    SparkPupDesc pup = {1, 4, nullptr, {"a", "b", "c", "d"}};
    ListControlQ7 list;
    bind(list, 30, &pup);
    list.SetValue(-1.0, 1);
    EXPECT_EQ(pup.value, 0);
    pup.value = 3;  // read from the host, no Sync needed
    list.GetValue(-1.0, v);
    EXPECT_EQ(v, 4);
    list.Disable(false);  // enabled: calls nothing
    EXPECT_EQ(host.update_count(30), 1);
}

TEST_F(Controls, ColourReadsWritesTheSlidersAndSavesTheWord) {
    using Rgba = std::array<int, 4>;
    SparkColorDesc d = {0x00FF8000u, nullptr};
    SparkFloatDesc sr = {100.0f, 0.0f, 100.0f, 0.2f, 0, "R", nullptr}, sg = sr, sb = sr;
    ColourSaveQ7 save = {0xFFFFFFFFu};
    ColourControlQ7 c;
    bind(c, 42, &d);
    c.Sync();  // fills the low bits; GetValue only shifts
    std::uint16_t r = 1, g = 1, b = 1, a = 1;
    c.GetValue(0.0, r, g, b, a);
    EXPECT_EQ((Rgba{c.value.r, c.value.g, c.value.b, c.value.a}), (Rgba{0, 16448, 32767, 32767}));
    EXPECT_EQ((Rgba{r, g, b, a}), (Rgba{0, 16384, 32640, 32767}));

    c.has_sliders = 1, c.aux = &save;
    c.sliders[0] = &sr, c.sliders[1] = &sg, c.sliders[2] = &sb;
    c.SetValue(0.0, 32767, 0, 16448, 999);  // moves the sliders, not the pot
    EXPECT_EQ(d.value, 0xFF8000FFu);
    EXPECT_EQ((F4{sr.value, sg.value, sb.value, 0}), (F4{100.0f, 0.0f, static_cast<float>(128 / 2.55), 0}));
    EXPECT_EQ((Rgba{host.update_count(42), host.update_count(43), host.update_count(44), host.update_count(45)}),
              (Rgba{0, 1, 1, 1}));
    // Disable freezes the sliders and saves the word; enabling an enabled
    // colour still saves the word and redraws the pot, not the sliders.
    c.Disable(true);
    EXPECT_EQ((F4{sb.min, sb.max, 0, 0}), (F4{sb.value, sb.value, 0, 0}));
    EXPECT_EQ(save.saved, 0xFF8000FFu);
    c.Disable(false);
    d.value = 0xFF000001u;
    const int pot = host.update_count(42), slider = host.update_count(43);
    c.Disable(false);
    EXPECT_EQ(save.saved, 0xFF000001u);
    EXPECT_EQ((F4{sb.min, sb.max, float(host.update_count(42) - pot), float(host.update_count(43) - slider)}),
              (F4{0.0f, 100.0f, 1, 0}));
}

}  // namespace
