#include "framework/colour_control.h"

namespace {
unsigned channel8(std::uint32_t word, int index) { return (word >> (8 * index)) & 0xFFu; }
}  // namespace

void ColourControlQ7::Sync() {
    if (!desc()) return;
    const std::uint32_t word = desc()->value;
    value.r = expand8(channel8(word, 0));
    value.g = expand8(channel8(word, 1));
    value.b = expand8(channel8(word, 2));
    value.a = kChannelMax;
}

void ColourControlQ7::SetValue(double, std::uint16_t r, std::uint16_t g, std::uint16_t b, std::uint16_t) {
    if (!desc()) return;
    // Channels are 15-bit; the masks only keep a stray 16-bit value from
    // spilling into the neighbouring channel.
    const std::uint32_t r8 = (r >> 7) & 0xFFu;
    const std::uint32_t g8 = (g >> 7) & 0xFFu;
    const std::uint32_t b8 = (b >> 7) & 0xFFu;
    desc()->value = r8 | (g8 << 8) | (b8 << 16) | 0xFF000000u;
    if (has_sliders) {
        const std::uint32_t channels[3] = {r8, g8, b8};
        for (int i = 0; i < 3; ++i) {
            if (!sliders[i]) continue;
            sliders[i]->value = static_cast<float>(channels[i] / 2.55);
            sparkControlUpdate(id + 1 + i);
        }
    }
    Sync();
}

void ColourControlQ7::GetValue(double, std::uint16_t& r, std::uint16_t& g, std::uint16_t& b,
                               std::uint16_t& a) {
    const std::uint32_t word = desc() ? desc()->value : 0u;
    r = static_cast<std::uint16_t>(channel8(word, 0) << 7);
    g = static_cast<std::uint16_t>(channel8(word, 1) << 7);
    b = static_cast<std::uint16_t>(channel8(word, 2) << 7);
    a = kChannelMax;
}

void ColourControlQ7::Hide(bool hide) {
    if (desc()) {
        show_control(id, hide);
        if (has_sliders)
            for (int i = 1; i <= 3; ++i) show_control(id + i, hide);
    }
    hidden = hide;
}

void ColourControlQ7::Disable(bool off) {
    if (!desc()) {
        disabled = off;
        return;
    }
    if (disabled != off && has_sliders) {
        for (int i = 0; i < 3; ++i) {
            SparkFloatDesc* s = sliders[i];
            if (!s) continue;
            if (off) {
                s->min = s->max = s->value;
            } else {
                s->min = 0.0f;
                s->max = 100.0f;
            }
            sparkControlUpdate(id + 1 + i);
        }
    }
    if (aux) aux->saved = desc()->value;
    sparkControlUpdate(id);
    disabled = off;
}
