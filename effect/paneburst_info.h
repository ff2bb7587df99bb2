// The effect's member record: clip records, overlay widgets, control objects.
#pragma once

#include "framework/choice_controls.h"
#include "framework/colour_control.h"
#include "framework/plugin.h"
#include "framework/slider_controls.h"
#include "framework/text_controls.h"
#include "render/paneburst_overlay.h"

class PaneburstInfo {
public:
    SourceQ7 front_clip;
    SourceQ7 back_clip;
    SourceQ7 matte_2d_clip;
    SourceQ7 matte_3d_clip;
    ResultQ7 result_clip;

    // The viewer widgets. The viewer entry point binds them to their controls
    // before every redraw; RenderOverlay places and draws them.
    CrosshairOverlayQ7 light_crosshair;       // 36/37 Light X/Y, with diagonal arms
    CrosshairOverlayQ7 repulsion_crosshair;   // 72/73
    CrosshairOverlayQ7 attraction_crosshair;  // 79/80
    CrosshairOverlayQ7 wind_source_crosshair; // 65/66
    CrosshairOverlayQ7 wind_target_crosshair; // 67/68
    LineOverlayQ7 wind_line;                  // 65/66 to 67/68
    PaneburstOverlayQ7 wind_cone;             // 70 Wind Spread

    // Control objects, each bound to its host control at initialisation
    // (host/binding.cpp gives the numbers).
    ListControlQ7 demos_ctl;
    ButtonControlQ7 restart_ctl[3];  // one Restart button on each of the three pages
    ButtonControlQ7 spare_button_ctl;  // never bound
    IntegerControlQ7 x_elements_ctl;
    IntegerControlQ7 y_elements_ctl;
    FloatControlQ7 foreground_z_ctl;
    FloatControlQ7 maximum_z_ctl;
    CheckboxControlQ7 z_pop_off_ctl;
    CheckboxControlQ7 omni_z_ctl;
    ListControlQ7 render_quality_ctl;
    CheckboxControlQ7 spare_checkbox_ctl;  // never bound
    CheckboxControlQ7 z_sort_ctl;
    IntegerControlQ7 seed_ctl;
    FloatControlQ7 speed_x_ctl, speed_y_ctl, speed_z_ctl;
    FloatControlQ7 speed_var_x_ctl, speed_var_y_ctl, speed_var_z_ctl;
    FloatControlQ7 rot_speed_x_ctl, rot_speed_y_ctl, rot_speed_z_ctl;
    FloatControlQ7 rot_var_x_ctl, rot_var_y_ctl, rot_var_z_ctl;
    CheckboxControlQ7 use_light_ctl;
    PositionControlQ7 light_pos_ctl;
    FloatControlQ7 light_z_ctl;
    FloatControlQ7 light_brightness_ctl;
    FloatControlQ7 gloss_ctl;
    ColourControlQ7 light_colour_ctl;
    CheckboxControlQ7 lit_background_ctl;
    FloatControlQ7 background_z_ctl;
    CheckboxControlQ7 use_matte_2d_ctl;
    CheckboxControlQ7 invert_matte_2d_ctl;
    CheckboxControlQ7 use_matte_3d_ctl;
    CheckboxControlQ7 invert_matte_3d_ctl;
    CheckboxControlQ7 use_wind_ctl;
    PositionControlQ7 wind_source_ctl;
    PositionControlQ7 wind_target_ctl;
    FloatControlQ7 wind_speed_ctl;
    AngleControlQ7 wind_spread_ctl;
    CheckboxControlQ7 use_repulsion_ctl;
    PositionControlQ7 repulsion_ctl;
    FloatControlQ7 repulsion_strength_ctl;
    CheckboxControlQ7 use_gravity_ctl;
    FloatControlQ7 gravity_ctl;
    AngleControlQ7 gravity_angle_ctl;
    CheckboxControlQ7 use_attraction_ctl;
    PositionControlQ7 attraction_ctl;
    FloatControlQ7 attraction_strength_ctl;
    CheckboxControlQ7 use_swirl_ctl;
    FloatControlQ7 swirl_density_ctl;
    FloatControlQ7 swirl_magnitude_ctl;
};
