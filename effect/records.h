// The effect's per-frame parameter and state record, and the element record.
#pragma once

#include <cstdint>

#include "framework/image.h"

// Parameters and state of one frame. Rebuilt from the controls at the start
// of every frame except the fields marked "state".
struct tagINFO {
    ImageQ7* front;
    ImageQ7* back;
    ImageQ7* matte_2d;
    ImageQ7* matte_3d;
    ImageQ7* result;
    ImageQ7* lit_back;  // the canvas the elements are drawn into; per frame
    float* map_u;       // per-pixel maps of the rasteriser, W x H each; per frame
    float* map_v;
    float* map_coverage;
    std::int32_t width, height;
    std::int32_t grid_x0, grid_y0;  // both <= 0
    std::int32_t columns, rows;
    std::int32_t tile_width, tile_height;
    std::int32_t last_cell_w, last_cell_h;  // state: W / X Elements, H / Y Elements of the frame before
    float foreground_z;
    float maximum_z;
    float speed_x, speed_y, speed_z;
    float speed_var_x, speed_var_y, speed_var_z;
    float rot_speed_x, rot_speed_y, rot_speed_z;
    float rot_var_x, rot_var_y, rot_var_z;
    float repulsion_x, repulsion_y;
    float repulsion_strength;
    float attraction_x, attraction_y;
    float attraction_strength;
    float gravity;
    float gravity_cos, gravity_sin;
    float swirl_density;
    float swirl_magnitude;
    std::int32_t use_light;
    float light_x, light_y;
    float light_z;
    float light_brightness;
    float gloss;
    std::int32_t light_r, light_g, light_b;
    std::int32_t use_matte_2d, invert_matte_2d, use_matte_3d, invert_matte_3d;
    std::int32_t use_gravity, use_wind, use_repulsion, use_attraction, use_swirl;
    std::int32_t omni_z;
    std::int32_t z_sort;
    std::int32_t z_pop_off;
    std::int32_t stack_at_max_z;
    std::int32_t max_z_count;  // state: elements parked at maximum_z since the last rebuild
    std::int32_t element_count;
    float wind_source_x, wind_source_y;
    float wind_dir_x, wind_dir_y;
    float wind_spread_cos;
    float wind_speed;
    std::int32_t frame;
    std::int32_t render_mode;  // 0 High, 1 Med, 2 Low Quality, 3 Wireframe
    std::int32_t lit_background;
    float background_z;
};

// One element: a tile of the front image flying as a rigid plate.
struct tagPOLYGON {
    float corners[4][3];  // projected corners: screen x, screen y, projected depth
    float edges[4][2];    // slope and intercept of each outline edge
    std::int32_t src_left;
    std::int32_t src_right;
    std::int32_t src_bottom;
    std::int32_t src_top;
    float x, y;
    float z;
    float angle_x, angle_y, angle_z;
    float vel_x, vel_y, vel_z;
    float var_x, var_y, var_z;
    float spin_x, spin_y, spin_z;
    float spin_var_x, spin_var_y, spin_var_z;
    float grav_x, grav_y;
    float depth_key;
    float z_near, z_far;
    std::int32_t drawn;
    std::int32_t parked;
};

constexpr int kElementCapacity = 14400;
constexpr int kRandomTableSize = 262144;
