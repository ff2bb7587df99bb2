// The effect object. One instance lives in static storage as `Instance`.
#pragma once

#include "effect/paneburst_info.h"
#include "framework/overlay.h"
#include "framework/plugin.h"

class Paneburst : public PluginQ7, public PaneburstInfo, public OverlayQ7 {
public:
    Paneburst() = default;
    ~Paneburst() override = default;
};

extern "C" {
extern Paneburst Instance;
}
