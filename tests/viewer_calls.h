// Calls into the loaded plug-in's viewer entry points, as the host's viewer
// makes them, for the overlay and interaction tests.
#pragma once

#include <gtest/gtest.h>

#include "sparkhost/host.h"

namespace viewer {

using OverlayFn = void (*)(HostFrameRecord, float);
using InteractFn = unsigned long* (*)(HostFrameRecord, int, int, float, float, float);

// The host's redraw of the viewer: SparkOverlay with the current frame record.
inline void overlay(sparkhost::Host& host, float zoom = 1.0f) {
    auto fn = reinterpret_cast<OverlayFn>(host.symbol("SparkOverlay"));
    ASSERT_NE(fn, nullptr);
    fn(host.frame_record(host.current_frame), zoom);
}

// One pointer event over the viewer at (x, y) with the pen pressure.
inline unsigned long* interact(sparkhost::Host& host, float pressure, float x, float y) {
    auto fn = reinterpret_cast<InteractFn>(host.symbol("SparkInteract"));
    EXPECT_NE(fn, nullptr);
    if (fn == nullptr) return nullptr;
    return fn(host.frame_record(host.current_frame), 0, 0, pressure, x, y);
}

// Writes a control's descriptor as the host's UI does, without its callback.
inline void set(sparkhost::Host& host, int number, double value) {
    sparkhost::Control* c = host.control(number);
    ASSERT_NE(c, nullptr) << number;
    c->set_value(value);
}

inline double value(sparkhost::Host& host, int number) { return host.control(number)->value(); }

}  // namespace viewer
