#include "host/binding.h"

#include "effect/paneburst.h"
#include "host/descriptors.h"

namespace {

// A row of the table: the object is reached through an accessor, so that the
// descriptor side is constant data, readable before Instance is constructed.
struct BindingSpec {
    ControlQ7& (*object)(PaneburstInfo&);
    BoundKind kind;
    int id;
    void* descriptor;
    void* aux;
    void* extra[3];
};

#define OBJECT(name) [](PaneburstInfo& in) -> ControlQ7& { return in.name; }
using K = BoundKind;

constexpr BindingSpec kSpecs[kBoundControls] = {
    {OBJECT(demos_ctl), K::List, 19, &SparkPup19, &AuxQ7List19, {}},
    {OBJECT(restart_ctl[0]), K::Button, 29, &SparkPush29, nullptr, {}},
    {OBJECT(restart_ctl[1]), K::Button, 58, &SparkPush58, nullptr, {}},
    {OBJECT(restart_ctl[2]), K::Button, 87, &SparkPush87, nullptr, {}},
    {OBJECT(x_elements_ctl), K::Integer, 6, &SparkInt6, &AuxQ7Integer6, {}},
    {OBJECT(y_elements_ctl), K::Integer, 7, &SparkInt7, &AuxQ7Integer7, {}},
    {OBJECT(foreground_z_ctl), K::Float, 8, &SparkFloat8, &AuxQ7Float8, {}},
    {OBJECT(maximum_z_ctl), K::Float, 9, &SparkFloat9, &AuxQ7Float9, {}},
    {OBJECT(z_pop_off_ctl), K::Checkbox, 10, &SparkBoolean10, &AuxQ7Checkbox10, {}},
    {OBJECT(omni_z_ctl), K::Checkbox, 11, &SparkBoolean11, &AuxQ7Checkbox11, {}},
    {OBJECT(render_quality_ctl), K::List, 30, &SparkPup30, &AuxQ7List30, {}},
    {OBJECT(z_sort_ctl), K::Checkbox, 12, &SparkBoolean12, &AuxQ7Checkbox12, {}},
    {OBJECT(seed_ctl), K::Integer, 26, &SparkInt26, &AuxQ7Integer26, {}},
    {OBJECT(speed_x_ctl), K::Float, 13, &SparkFloat13, &AuxQ7Float13, {}},
    {OBJECT(speed_y_ctl), K::Float, 14, &SparkFloat14, &AuxQ7Float14, {}},
    {OBJECT(speed_z_ctl), K::Float, 15, &SparkFloat15, &AuxQ7Float15, {}},
    {OBJECT(speed_var_x_ctl), K::Float, 16, &SparkFloat16, &AuxQ7Float16, {}},
    {OBJECT(speed_var_y_ctl), K::Float, 17, &SparkFloat17, &AuxQ7Float17, {}},
    {OBJECT(speed_var_z_ctl), K::Float, 18, &SparkFloat18, &AuxQ7Float18, {}},
    {OBJECT(rot_speed_x_ctl), K::Float, 20, &SparkFloat20, &AuxQ7Float20, {}},
    {OBJECT(rot_speed_y_ctl), K::Float, 21, &SparkFloat21, &AuxQ7Float21, {}},
    {OBJECT(rot_speed_z_ctl), K::Float, 22, &SparkFloat22, &AuxQ7Float22, {}},
    {OBJECT(rot_var_x_ctl), K::Float, 23, &SparkFloat23, &AuxQ7Float23, {}},
    {OBJECT(rot_var_y_ctl), K::Float, 24, &SparkFloat24, &AuxQ7Float24, {}},
    {OBJECT(rot_var_z_ctl), K::Float, 25, &SparkFloat25, &AuxQ7Float25, {}},
    {OBJECT(use_light_ctl), K::Checkbox, 35, &SparkBoolean35, &AuxQ7Checkbox35, {}},
    {OBJECT(light_pos_ctl), K::Position, 36, &SparkFloat36, &AuxQ7Position36, {&SparkFloat37}},
    {OBJECT(light_z_ctl), K::Float, 38, &SparkFloat38, &AuxQ7Float38, {}},
    {OBJECT(light_brightness_ctl), K::Float, 39, &SparkFloat39, &AuxQ7Float39, {}},
    {OBJECT(gloss_ctl), K::Float, 40, &SparkFloat40, &AuxQ7Float40, {}},
    {OBJECT(light_colour_ctl), K::Colour, 42, &SparkColor42, &AuxQ7Colour42,
     {&SparkFloat43, &SparkFloat44, &SparkFloat45}},
    {OBJECT(lit_background_ctl), K::Checkbox, 46, &SparkBoolean46, &AuxQ7Checkbox46, {}},
    {OBJECT(background_z_ctl), K::Float, 47, &SparkFloat47, &AuxQ7Float47, {}},
    {OBJECT(use_matte_2d_ctl), K::Checkbox, 49, &SparkBoolean49, &AuxQ7Checkbox49, {}},
    {OBJECT(invert_matte_2d_ctl), K::Checkbox, 50, &SparkBoolean50, &AuxQ7Checkbox50, {}},
    {OBJECT(use_matte_3d_ctl), K::Checkbox, 51, &SparkBoolean51, &AuxQ7Checkbox51, {}},
    {OBJECT(invert_matte_3d_ctl), K::Checkbox, 52, &SparkBoolean52, &AuxQ7Checkbox52, {}},
    {OBJECT(use_wind_ctl), K::Checkbox, 64, &SparkBoolean64, &AuxQ7Checkbox64, {}},
    {OBJECT(wind_source_ctl), K::Position, 65, &SparkFloat65, &AuxQ7Position65, {&SparkFloat66}},
    {OBJECT(wind_target_ctl), K::Position, 67, &SparkFloat67, &AuxQ7Position67, {&SparkFloat68}},
    {OBJECT(wind_speed_ctl), K::Float, 69, &SparkFloat69, &AuxQ7Float69, {}},
    {OBJECT(wind_spread_ctl), K::Angle, 70, &SparkFloat70, &AuxQ7Angle70, {}},
    {OBJECT(use_repulsion_ctl), K::Checkbox, 71, &SparkBoolean71, &AuxQ7Checkbox71, {}},
    {OBJECT(repulsion_ctl), K::Position, 72, &SparkFloat72, &AuxQ7Position72, {&SparkFloat73}},
    {OBJECT(repulsion_strength_ctl), K::Float, 74, &SparkFloat74, &AuxQ7Float74, {}},
    {OBJECT(use_gravity_ctl), K::Checkbox, 75, &SparkBoolean75, &AuxQ7Checkbox75, {}},
    {OBJECT(gravity_ctl), K::Float, 76, &SparkFloat76, &AuxQ7Float76, {}},
    {OBJECT(gravity_angle_ctl), K::Angle, 77, &SparkFloat77, &AuxQ7Angle77, {}},
    {OBJECT(use_attraction_ctl), K::Checkbox, 78, &SparkBoolean78, &AuxQ7Checkbox78, {}},
    {OBJECT(attraction_ctl), K::Position, 79, &SparkFloat79, &AuxQ7Position79, {&SparkFloat80}},
    {OBJECT(attraction_strength_ctl), K::Float, 81, &SparkFloat81, &AuxQ7Float81, {}},
    {OBJECT(use_swirl_ctl), K::Checkbox, 82, &SparkBoolean82, &AuxQ7Checkbox82, {}},
    {OBJECT(swirl_density_ctl), K::Float, 83, &SparkFloat83, &AuxQ7Float83, {}},
    {OBJECT(swirl_magnitude_ctl), K::Float, 84, &SparkFloat84, &AuxQ7Float84, {}},
};

#undef OBJECT

}  // namespace

BindingTable binding_table(PaneburstInfo& in) {
    BindingTable table{};
    for (int i = 0; i < kBoundControls; ++i) {
        const BindingSpec& s = kSpecs[i];
        table[i] = {&s.object(in), s.kind, s.id, s.descriptor, s.aux, {s.extra[0], s.extra[1], s.extra[2]}};
    }
    return table;
}

BindingTable binding_descriptors() {
    BindingTable table{};
    for (int i = 0; i < kBoundControls; ++i) {
        const BindingSpec& s = kSpecs[i];
        table[i] = {nullptr, s.kind, s.id, s.descriptor, s.aux, {s.extra[0], s.extra[1], s.extra[2]}};
    }
    return table;
}

const BindingRow* bound_control(int id) {
    static const BindingTable table = binding_table(Instance);
    for (const BindingRow& row : table)
        if (row.id == id) return &row;
    return nullptr;
}

namespace {

void bind(const BindingRow& row) {
    ControlQ7* c = row.object;
    c->id = row.id;
    c->descriptor = row.descriptor;
    c->notify = true;
    switch (row.kind) {
        case BoundKind::List:
            static_cast<ListControlQ7*>(c)->aux = static_cast<ListInfoQ7*>(row.aux);
            break;
        case BoundKind::Button: break;
        case BoundKind::Integer:
            static_cast<IntegerControlQ7*>(c)->aux = static_cast<IntegerRangeQ7*>(row.aux);
            break;
        case BoundKind::Float:
        case BoundKind::Angle:
            static_cast<FloatControlQ7*>(c)->aux = static_cast<FloatRangeQ7*>(row.aux);
            break;
        case BoundKind::Checkbox:
            static_cast<CheckboxControlQ7*>(c)->aux = static_cast<CheckboxGroupQ7*>(row.aux);
            break;
        case BoundKind::Position: {
            auto* p = static_cast<PositionControlQ7*>(c);
            p->y_descriptor = static_cast<SparkFloatDesc*>(row.extra[0]);
            p->aux = static_cast<PositionRangeQ7*>(row.aux);
            break;
        }
        case BoundKind::Colour: {
            auto* colour = static_cast<ColourControlQ7*>(c);
            colour->has_sliders = 1;
            colour->aux = static_cast<ColourSaveQ7*>(row.aux);
            for (int i = 0; i < 3; ++i) colour->sliders[i] = static_cast<SparkFloatDesc*>(row.extra[i]);
            break;
        }
    }
}

}  // namespace

void bind_controls(PaneburstInfo& info) {
    for (const BindingRow& row : binding_table(info)) bind(row);
}

void refresh_controls(PaneburstInfo& info) {
    for (const BindingRow& row : binding_table(info)) {
        switch (row.kind) {
            case BoundKind::Button: break;  // nothing cached
            case BoundKind::Position: static_cast<PositionControlQ7*>(row.object)->refresh(); break;
            default: row.object->Sync(); break;  // the class's own conversion
        }
    }
}
