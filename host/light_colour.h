// The light colour: the host's colour pot (control 42) and its three
// percentage sliders (43 R, 44 G, 45 B), kept in step both ways.
//
// The conversions depend on the bit depth of the record the callback
// receives (frame_depth 48 or 64: 12-bit), not on the depth decided at
// initialisation.
#pragma once

#include <cstdint>

#include "abi/spark_abi.h"

// True when the record describes 12-bit buffers.
bool record_is_deep(const HostFrameRecord& record);

// The slider percentage shown for one 8-bit channel of the pot, a whole
// number: truncate(channel / 2.55) at 8 bits, truncate(channel * 16 / 40.95)
// at 12 bits (the 12-bit scale, so white reads 99 there).
float light_slider_percent(unsigned channel8, bool deep);

// The pot word for three slider percentages, bits 24-31 set.
std::uint32_t light_pot_word(float r, float g, float b, bool deep);

// Pot to sliders: refreshes the colour object, writes the three sliders from
// the pot and has the host redraw them. No tail.
void light_colour_pot_to_sliders(const HostFrameRecord& record);
