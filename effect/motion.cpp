// One simulation step: every element's velocity is rebuilt from its speeds,
// the forces and the swirl field, then it moves and turns. A force therefore
// sets a speed, not an acceleration.
#include <algorithm>
#include <cmath>

#include "effect/element_array.h"
#include "effect/paneburst.h"
#include "effect/vecnorm.h"

namespace {

// A swirl sample point moved by a constant offset: the sum is formed in
// double and rounded to float once.
inline float swirl_offset(float at, double offset) {
    return static_cast<float>(static_cast<double>(at) + offset);
}

// The in-plane push of attraction, repulsion and wind on an element at
// (x, y). All forces act in the image plane.
void plane_forces(const tagINFO& info, float x, float y, float* fx, float* fy) {
    // Repulsion: the same strength at every distance, away from the point.
    // An element exactly on the point gets a zero direction.
    float r[3] = {x - info.repulsion_x, y - info.repulsion_y, 0.0f};
    vecnorm(r);

    // Attraction grows with the distance along each axis, relative to the
    // frame size; level with the point on one axis there is no pull along it.
    float a[3] = {info.attraction_x - x, info.attraction_y - y, 0.0f};
    const float kx = std::fabs(a[0]) / static_cast<float>(info.width);
    const float ky = std::fabs(a[1]) / static_cast<float>(info.height);
    vecnorm(a);

    *fx = 0.0f;
    *fy = 0.0f;
    if (info.use_attraction) {
        *fx = info.attraction_strength * (a[0] * kx);
        *fy = info.attraction_strength * (a[1] * ky);
    }
    if (info.use_repulsion) {
        *fx += info.repulsion_strength * r[0];
        *fy += info.repulsion_strength * r[1];
    }

    if (info.wind_speed > 0.0001f && info.use_wind) {
        // The direction from the source, divided by its exact (float) length,
        // not by vecnorm's estimate: an element on the source has no
        // direction and is not pushed.
        float ux = x - info.wind_source_x;
        float uy = y - info.wind_source_y;
        const float length = std::sqrt(ux * ux + uy * uy);
        if (length > 0.0f) {
            ux /= length;
            uy /= length;
        }
        // Cosine of the angle between the wind axis and the element.
        const float h = ux * info.wind_dir_x + uy * info.wind_dir_y;
        if (h > info.wind_spread_cos) {
            // 0 at the edge of the cone, largest on its axis; a zero spread
            // (cos 1) never gets here, the floor only guards the division.
            const float q = (h - info.wind_spread_cos) / std::max(1.0f - info.wind_spread_cos, 0.000001f);
            *fx += info.wind_speed * q * h * info.wind_dir_x;
            *fy += info.wind_speed * q * h * info.wind_dir_y;
        }
    }
}

}  // namespace

void Paneburst::update_polygons(tagINFO* info, tagPOLYGON* polygons) {
    const int count = elements_in_reach(*this, polygons, info);
    const bool swirl = info->swirl_density > 0.01f && info->use_swirl;
    // The noise's time axis: one unit every 25 host frames, times the density.
    const float swirl_t = static_cast<float>(static_cast<double>(info->swirl_density) * info->frame / 25.0);
    const float omni = static_cast<float>(info->omni_z);
    const float next_grav_x = info->use_gravity ? info->gravity * info->gravity_cos : 0.0f;
    const float next_grav_y = info->use_gravity ? info->gravity * info->gravity_sin : 0.0f;

    for (int row = 0; row < info->rows; ++row) {
        for (int column = 0; column < info->columns; ++column) {
            const int index = row * info->columns + column;
            if (index >= count) return;
            tagPOLYGON& p = polygons[index];

            float fx, fy;
            plane_forces(*info, p.x, p.y, &fx, &fy);

            // x and y speeds enter twice, as (2 + factor) x speed; z enters as
            // (1 + omni_z + factor) x speed. The gravity term is the one
            // stored by the previous step (or the rebuild): one step late.
            p.vel_x = info->speed_x + (1.0f + p.var_x) * info->speed_x + p.grav_x + fx;
            p.vel_y = info->speed_y + (1.0f + p.var_y) * info->speed_y + p.grav_y + fy;
            p.vel_z = info->speed_z + (omni + p.var_z) * info->speed_z;

            if (swirl) {
                // Two samples of one scalar field, offset from each other,
                // give the x and y parts of a smooth vector field. The sample
                // point is formed in double and rounded to float. The offsets
                // are double constants: the second point is the float sample
                // plus the offset in double, rounded to float once (a float
                // sum would land one float step away for some positions).
                const float px = static_cast<float>(static_cast<double>(info->swirl_density) * p.x / info->width);
                const float py = static_cast<float>(static_cast<double>(info->swirl_density) * p.y / info->height);
                p.vel_x += info->swirl_magnitude * gnoise(&gradient_table[0][0], px, py, swirl_t);
                p.vel_y += info->swirl_magnitude * gnoise(&gradient_table[0][0], swirl_offset(px, 3.14),
                                                          swirl_offset(py, 2.71), swirl_offset(swirl_t, 4.35));
            }

            p.x += p.vel_x;
            p.y += p.vel_y;
            p.z += p.vel_z;

            // Angles accumulate without wrapping.
            p.spin_x = (1.0f + p.spin_var_x) * info->rot_speed_x;
            p.spin_y = (1.0f + p.spin_var_y) * info->rot_speed_y;
            p.spin_z = (1.0f + p.spin_var_z) * info->rot_speed_z;
            p.angle_x += p.spin_x;
            p.angle_y += p.spin_y;
            p.angle_z += p.spin_z;

            p.grav_x = next_grav_x;
            p.grav_y = next_grav_y;
        }
    }
}
