// The colour control: the host's packed 8-bit colour word, optionally shown
// with three percentage sliders (R, G, B) at `id` + 1 ... + 3.
//
// Sync and GetValue expand the 8-bit channels differently on purpose: Sync
// fills the low bits ((v << 7) OR (v >> 1), so that 255 becomes 32767), while
// GetValue shifts only (255 becomes 32640).
#pragma once

#include <cstdint>

#include "framework/control.h"
#include "framework/image.h"
#include "abi/spark_abi.h"

class ColourControlQ7 : public ControlQ7 {
public:
    void Sync() override;
    // Packs the channels into the descriptor (alpha is ignored) and moves the
    // sliders, if any, to the matching percentages. The pot itself gets no
    // redraw call: the sliders' redraws carry the change.
    void SetValue(double frame, std::uint16_t r, std::uint16_t g, std::uint16_t b, std::uint16_t a);
    // The descriptor's channels read now, whatever the frame; alpha 32767.
    void GetValue(double frame, std::uint16_t& r, std::uint16_t& g, std::uint16_t& b, std::uint16_t& a);
    void Hide(bool hide) override;
    // Freezes or frees the sliders, and in every case saves the colour word
    // into the auxiliary record (for undoing a click on the greyed-out pot).
    void Disable(bool off) override;

    SparkColorDesc* desc() const { return static_cast<SparkColorDesc*>(descriptor); }

    // The 15-bit channel the 8-bit value v reads as through Sync.
    static std::uint16_t expand8(unsigned v) { return static_cast<std::uint16_t>((v << 7) | (v >> 1)); }

    int has_sliders = 0;
    ColourSaveQ7* aux = nullptr;
    SparkFloatDesc* sliders[3] = {nullptr, nullptr, nullptr};
    PixelQ7 value = {0, 0, 0, kChannelMax};
};
