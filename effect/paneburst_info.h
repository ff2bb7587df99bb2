// The effect's member record: clip records, overlay widgets, control objects.
#pragma once

#include "framework/plugin.h"

class PaneburstInfo {
public:
    SourceQ7 front_clip;
    SourceQ7 back_clip;
    SourceQ7 matte_2d_clip;
    SourceQ7 matte_3d_clip;
    ResultQ7 result_clip;
};
