// Which controls the pages show: every dependent control is hidden while the
// checkbox it depends on is off. The checkboxes are read through GetValue at
// frame -1, i.e. as cached by the last refresh.
#include "effect/paneburst.h"

namespace {
long checkbox_state(CheckboxControlQ7& box) {
    long v = 0;
    box.GetValue(-1.0, v);
    return v;
}
}  // namespace

void Paneburst::CtrlUpdateCB(ControlQ7& control, double) {
    const bool light_off = checkbox_state(use_light_ctl) == 0;
    if (&control == &use_light_ctl) {
        light_pos_ctl.Hide(light_off);
        light_z_ctl.Hide(light_off);
        light_brightness_ctl.Hide(light_off);
        gloss_ctl.Hide(light_off);
        light_colour_ctl.Hide(light_off);
        lit_background_ctl.Hide(light_off);
    }
    if (&control == &use_light_ctl || &control == &lit_background_ctl) {
        // Background Z needs both the light and the lit background.
        background_z_ctl.Hide(light_off || checkbox_state(lit_background_ctl) == 0);
    } else if (&control == &use_wind_ctl) {
        const bool off = checkbox_state(use_wind_ctl) == 0;
        wind_source_ctl.Hide(off);
        wind_target_ctl.Hide(off);
        wind_speed_ctl.Hide(off);
        wind_spread_ctl.Hide(off);
    } else if (&control == &use_repulsion_ctl) {
        const bool off = checkbox_state(use_repulsion_ctl) == 0;
        repulsion_ctl.Hide(off);
        repulsion_strength_ctl.Hide(off);
    } else if (&control == &use_gravity_ctl) {
        const bool off = checkbox_state(use_gravity_ctl) == 0;
        gravity_ctl.Hide(off);
        gravity_angle_ctl.Hide(off);
    } else if (&control == &use_swirl_ctl) {
        const bool off = checkbox_state(use_swirl_ctl) == 0;
        swirl_density_ctl.Hide(off);
        swirl_magnitude_ctl.Hide(off);
    }
}

void Paneburst::Use2DMatteCB(ControlQ7&, double) {
    invert_matte_2d_ctl.Hide(checkbox_state(use_matte_2d_ctl) != 1);
}

void Paneburst::Use3DMatteCB(ControlQ7&, double) {
    invert_matte_3d_ctl.Hide(checkbox_state(use_matte_3d_ctl) != 1);
}

void Paneburst::UseAttractionCB(ControlQ7&, double) {
    const bool off = checkbox_state(use_attraction_ctl) == 0;
    attraction_ctl.Hide(off);
    attraction_strength_ctl.Hide(off);
}

void Paneburst::RestartCB(ControlQ7&, double) { restart = 1; }

void Paneburst::SyncControls() {
    CtrlUpdateCB(use_light_ctl, -1.0);
    CtrlUpdateCB(use_wind_ctl, -1.0);
    CtrlUpdateCB(use_repulsion_ctl, -1.0);
    CtrlUpdateCB(use_gravity_ctl, -1.0);
    UseAttractionCB(use_attraction_ctl, -1.0);
    CtrlUpdateCB(use_swirl_ctl, -1.0);
    CtrlUpdateCB(lit_background_ctl, -1.0);
    Use2DMatteCB(use_matte_2d_ctl, -1.0);
    Use3DMatteCB(use_matte_3d_ctl, -1.0);
}
