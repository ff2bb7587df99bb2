// Element outlines: the forward chain from an element's tile to its four
// screen corners, the nearest-depth rule, the sort key, and the inverse chain
// for one point.
#include "effect/paneburst.h"
#include "render/inverse_chain.h"
#include "render/matrix.h"

void Paneburst::generate_polygon_vertices(tagINFO* info, tagPOLYGON* poly, float* near_z, float* far_z) {
    float near_depth = -100000.0f;
    float far_depth = 0.0f;
    const float cx = static_cast<float>(poly->src_left + 0.5 * info->tile_width);
    const float cy = static_cast<float>(poly->src_top + 0.5 * info->tile_height);

    // Corner order is fixed: the rasteriser's edges and plane depend on it.
    const int tile_x[4] = {poly->src_left, poly->src_left, poly->src_right, poly->src_right};
    const int tile_y[4] = {poly->src_bottom, poly->src_top, poly->src_top, poly->src_bottom};

    // The same matrices serve all four corners; built once per element.
    float to_centre[16], rot_z[16], rot_y[16], rot_x[16], to_depth[16], c, s;
    render::set_translation(to_centre, -cx, -cy, 0.0f);
    render::angle_cos_sin(poly->angle_z, &c, &s);
    render::set_rotation_z(rot_z, c, s);
    render::angle_cos_sin(poly->angle_y, &c, &s);
    render::set_rotation_y(rot_y, c, s);
    render::angle_cos_sin(poly->angle_x, &c, &s);
    render::set_rotation_x(rot_x, c, s);
    render::set_translation(to_depth, 0.0f, 0.0f, poly->z);

    float p[4][3];
    for (int k = 0; k < 4; ++k) {
        p[k][0] = static_cast<float>(tile_x[k]);
        p[k][1] = static_cast<float>(tile_y[k]);
        p[k][2] = 0.0f;
        render::apply_matrix(to_centre, p[k]);
        render::apply_matrix(rot_z, p[k]);
        render::apply_matrix(rot_y, p[k]);
        render::apply_matrix(rot_x, p[k]);
        render::apply_matrix(to_depth, p[k]);
        if (p[k][2] > near_depth) near_depth = p[k][2];
        if (p[k][2] < far_depth) far_depth = p[k][2];
    }

    // Nearest-depth rule. Depths are negative; nearer is larger.
    if (near_depth > info->maximum_z) {
        if (info->z_pop_off == 0) {
            if (info->stack_at_max_z != 0 && poly->parked == 0) {
                // Parked elements stack: each later arrival gets a key a
                // little farther away, so the first to arrive stays on top.
                poly->parked = 1;
                info->max_z_count += 1;
                poly->depth_key = static_cast<float>(info->maximum_z - info->max_z_count * 0.001);
            }
            // Hold the element with its nearest corner exactly at maximum_z.
            // Its z is written back, so it stays until its motion takes it away.
            const float e = near_depth - info->maximum_z;
            poly->z -= e;
            for (int k = 0; k < 4; ++k) p[k][2] -= e;
            near_depth -= e;
            far_depth -= e;
        } else {
            poly->drawn = 0;
        }
    } else if (info->z_pop_off != 0) {
        poly->drawn = 1;
    }

    // Project about the element's own centre, then place the centre on
    // screen: depth scales an element without moving it.
    float project[16], to_screen[16];
    render::set_perspective(project, render::guarded_focal_depth(info->foreground_z), near_depth, far_depth);
    render::set_translation(to_screen, poly->x, poly->y, 0.0f);
    for (int k = 0; k < 4; ++k) {
        render::apply_matrix(project, p[k]);
        render::apply_matrix(to_screen, p[k]);
        poly->corners[k][0] = p[k][0];
        poly->corners[k][1] = p[k][1];
        poly->corners[k][2] = p[k][2];
    }

    // A parked element keeps the key it got when it was parked.
    if (poly->parked == 0) {
        const double sum = static_cast<double>(p[0][2]) + p[1][2] + p[2][2] + p[3][2];
        poly->depth_key = static_cast<float>(0.25 * sum);
    }

    *near_z = near_depth;
    *far_z = far_depth;
}

void Paneburst::inverse_transform_point(tagINFO* info, tagPOLYGON* poly, float* p, float n, float f) {
    render::InverseChain chain;
    chain.build(info, poly, n, f);
    chain.apply(p);
}
