// The Demos menu: four preset looks written into the effect's controls.
#include <cmath>
#include <limits>

#include "effect/paneburst.h"

namespace {

constexpr double kKeep = std::numeric_limits<double>::quiet_NaN();  // the preset leaves the control alone

enum class Kind { Integer, Float, Checkbox, List, Position };

// One row of the preset table: a control and its value in each preset
// (Explosion, Confetti, VenetianV, VenetianH). Positions are given as host
// values (percent of the frame) for x and y.
struct Row {
    Kind kind;
    ControlQ7& (*control)(PaneburstInfo&);
    double value[4];
    double y_value[4];
};

#define CONTROL(name) [](PaneburstInfo& info) -> ControlQ7& { return info.name; }

const Row kRows[] = {
    {Kind::Integer, CONTROL(x_elements_ctl), {10, 20, 10, 1}, {}},
    {Kind::Integer, CONTROL(y_elements_ctl), {10, 20, 1, 22}, {}},
    {Kind::Float, CONTROL(foreground_z_ctl), {-440, -192, -192, -192}, {}},
    {Kind::Float, CONTROL(maximum_z_ctl), {-27, -50, -12, -12}, {}},
    {Kind::Checkbox, CONTROL(z_pop_off_ctl), {1, 1, 0, 0}, {}},
    {Kind::Checkbox, CONTROL(omni_z_ctl), {1, 1, 0, 0}, {}},
    {Kind::List, CONTROL(render_quality_ctl), {2, 2, 2, 2}, {}},  // Med Quality
    {Kind::Checkbox, CONTROL(z_sort_ctl), {1, 1, 0, 0}, {}},
    // Above the Seed slider's own range: written straight into the control.
    {Kind::Integer, CONTROL(seed_ctl), {9999, 9999, 9999, 9999}, {}},
    {Kind::Float, CONTROL(speed_x_ctl), {0, 0, 0, 0}, {}},
    {Kind::Float, CONTROL(speed_y_ctl), {0, 0, 0, 0}, {}},
    {Kind::Float, CONTROL(speed_z_ctl), {6, 1.27, 0, 0}, {}},
    {Kind::Float, CONTROL(speed_var_x_ctl), {100, 0, 0, 0}, {}},
    {Kind::Float, CONTROL(speed_var_y_ctl), {100, 0, 0, 0}, {}},
    {Kind::Float, CONTROL(speed_var_z_ctl), {100, 100, 0, 0}, {}},
    {Kind::Float, CONTROL(rot_speed_x_ctl), {2, 2, 0, 2}, {}},
    {Kind::Float, CONTROL(rot_speed_y_ctl), {3, 5, 4, 0}, {}},
    {Kind::Float, CONTROL(rot_speed_z_ctl), {1.5, 12, 0, 0}, {}},
    {Kind::Float, CONTROL(rot_var_x_ctl), {100, 100, 0, 0}, {}},
    {Kind::Float, CONTROL(rot_var_y_ctl), {100, 100, 0, 0}, {}},
    {Kind::Float, CONTROL(rot_var_z_ctl), {100, 100, 0, 0}, {}},
    {Kind::Checkbox, CONTROL(use_light_ctl), {0, 0, 0, 0}, {}},
    {Kind::Checkbox, CONTROL(lit_background_ctl), {0, 0, 0, 0}, {}},
    {Kind::Checkbox, CONTROL(use_matte_2d_ctl), {0, 0, 0, 0}, {}},
    {Kind::Checkbox, CONTROL(invert_matte_2d_ctl), {0, 0, 0, 0}, {}},
    {Kind::Checkbox, CONTROL(use_matte_3d_ctl), {0, 0, 0, 0}, {}},
    {Kind::Checkbox, CONTROL(invert_matte_3d_ctl), {0, 0, 0, 0}, {}},
    {Kind::Checkbox, CONTROL(use_wind_ctl), {0, 0, 0, 0}, {}},
    {Kind::Checkbox, CONTROL(use_repulsion_ctl), {1, 0, 0, 0}, {}},
    {Kind::Position, CONTROL(repulsion_ctl), {48, kKeep, kKeep, kKeep}, {55, kKeep, kKeep, kKeep}},
    {Kind::Float, CONTROL(repulsion_strength_ctl), {26, kKeep, kKeep, kKeep}, {}},
    {Kind::Checkbox, CONTROL(use_gravity_ctl), {0, 1, 0, 0}, {}},
    {Kind::Float, CONTROL(gravity_ctl), {kKeep, 12, kKeep, kKeep}, {}},
    {Kind::Float, CONTROL(gravity_angle_ctl), {kKeep, 270, kKeep, kKeep}, {}},
    {Kind::Checkbox, CONTROL(use_attraction_ctl), {0, 0, 0, 0}, {}},
    {Kind::Checkbox, CONTROL(use_swirl_ctl), {0, 1, 0, 0}, {}},
    {Kind::Float, CONTROL(swirl_density_ctl), {kKeep, 40, kKeep, kKeep}, {}},
    {Kind::Float, CONTROL(swirl_magnitude_ctl), {kKeep, 18, kKeep, kKeep}, {}},
};

void apply(PaneburstInfo& info, const Row& row, int preset) {
    const double v = row.value[preset];
    if (std::isnan(v)) return;
    ControlQ7& c = row.control(info);
    switch (row.kind) {
        case Kind::Integer: static_cast<IntegerControlQ7&>(c).SetValue(-1.0, static_cast<long>(v)); break;
        case Kind::Float: static_cast<FloatControlQ7&>(c).SetValue(-1.0, v); break;
        case Kind::Checkbox: static_cast<CheckboxControlQ7&>(c).SetValue(-1.0, static_cast<long>(v)); break;
        case Kind::List: static_cast<ListControlQ7&>(c).SetValue(-1.0, static_cast<long>(v)); break;
        case Kind::Position:
            static_cast<PositionControlQ7&>(c).SetValue(-1.0, v / 100.0, row.y_value[preset] / 100.0);
            break;
    }
}

}  // namespace

void Paneburst::DemosCB(ControlQ7&, double) {
    long choice = 0;
    demos_ctl.GetValue(-1.0, choice);
    // Every choice restarts, even one that applies nothing.
    restart = 1;
    if (choice < 1 || choice > 4) return;
    for (const Row& row : kRows) apply(*this, row, static_cast<int>(choice - 1));
}
