// The light colour pair: GetLightColourCB (pot to sliders) and
// SetLightColourCB (sliders to pot, the callback of all three sliders).
#include "host/light_colour.h"

#include "effect/paneburst.h"
#include "host/callbacks.h"
#include "host/descriptors.h"
#include "host/spark_export.h"

bool record_is_deep(const HostFrameRecord& record) {
    const std::int32_t depth = frame_get<std::int32_t>(record, frame_field::frame_depth);
    return depth == 48 || depth == 64;
}

float light_slider_percent(unsigned channel8, bool deep) {
    // Both quotients are positive: the conversion truncates toward zero.
    const double percent = deep ? static_cast<double>(channel8 * 16u) / 40.95 : channel8 / 2.55;
    return static_cast<float>(static_cast<int>(percent));
}

std::uint32_t light_pot_word(float r, float g, float b, bool deep) {
    std::uint32_t red, green, blue;
    if (deep) {
        // A 12-bit level per channel, whose top eight bits go into the pot.
        red = (static_cast<std::uint32_t>(static_cast<int>(r * 40.951)) >> 4) & 0xFFu;
        green = (static_cast<std::uint32_t>(static_cast<int>(g * 40.951)) << 4) & 0xFF00u;
        blue = (static_cast<std::uint32_t>(static_cast<int>(b * 40.951)) << 12) & 0xFF0000u;
    } else {
        red = static_cast<std::uint32_t>(static_cast<int>(r * 2.551)) & 0xFFu;
        green = (static_cast<std::uint32_t>(static_cast<int>(g * 2.551)) & 0xFFu) << 8;
        blue = (static_cast<std::uint32_t>(static_cast<int>(b * 2.551)) & 0xFFu) << 16;
    }
    return red | green | blue | 0xFF000000u;
}

void light_colour_pot_to_sliders(const HostFrameRecord& record) {
    Instance.light_colour_ctl.Sync();
    const std::uint32_t pot = SparkColor42.value;
    const bool deep = record_is_deep(record);
    SparkFloat43.value = light_slider_percent(pot & 0xFFu, deep);
    SparkFloat44.value = light_slider_percent((pot >> 8) & 0xFFu, deep);
    SparkFloat45.value = light_slider_percent((pot >> 16) & 0xFFu, deep);
    sparkControlUpdate(43);
    sparkControlUpdate(44);
    sparkControlUpdate(45);
}

extern "C" {

SPARK_EXPORT unsigned long* GetLightColourCB(int argument, HostFrameRecord record) {
    if (argument == 1) light_colour_pot_to_sliders(record);
    return DefaultCB(argument, record);
}

SPARK_EXPORT unsigned long* SetLightColourCB(int argument, HostFrameRecord record) {
    ColourControlQ7& colour = Instance.light_colour_ctl;
    // A greyed-out colour has frozen sliders; nothing to carry over.
    if (colour.disabled) return nullptr;
    if (argument == 1) {
        SparkColor42.value =
            light_pot_word(SparkFloat43.value, SparkFloat44.value, SparkFloat45.value, record_is_deep(record));
        colour.Sync();
        // Only the sliders are redrawn here, not the pot.
        sparkControlUpdate(43);
        sparkControlUpdate(44);
        sparkControlUpdate(45);
    }
    return DefaultCB(argument, record);
}

}  // extern "C"
