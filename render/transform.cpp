// 3D transforms and the perspective projection: each operation builds its
// matrix and applies it to the point in place.
#include "effect/paneburst.h"
#include "render/matrix.h"

void Paneburst::translate(float* p, float tx, float ty, float tz) {
    float m[16];
    render::set_translation(m, tx, ty, tz);
    matrix_multiply(m, p);
}

void Paneburst::inverse_translate(float* p, float tx, float ty, float tz) {
    float m[16];
    render::set_translation(m, -tx, -ty, -tz);
    matrix_multiply(m, p);
}

void Paneburst::rotate_xaxis(float angle, float* p) {
    float m[16], c, s;
    render::angle_cos_sin(angle, &c, &s);
    render::set_rotation_x(m, c, s);
    matrix_multiply(m, p);
}

void Paneburst::rotate_yaxis(float angle, float* p) {
    float m[16], c, s;
    render::angle_cos_sin(angle, &c, &s);
    render::set_rotation_y(m, c, s);
    matrix_multiply(m, p);
}

void Paneburst::rotate_zaxis(float angle, float* p) {
    float m[16], c, s;
    render::angle_cos_sin(angle, &c, &s);
    render::set_rotation_z(m, c, s);
    matrix_multiply(m, p);
}

// The inverse rotations negate the angle before it is converted to radians.
void Paneburst::inverse_rotate_xaxis(float angle, float* p) { rotate_xaxis(-angle, p); }
void Paneburst::inverse_rotate_yaxis(float angle, float* p) { rotate_yaxis(-angle, p); }
void Paneburst::inverse_rotate_zaxis(float angle, float* p) { rotate_zaxis(-angle, p); }

void Paneburst::perspective_project(tagINFO* info, float* p, float n, float f) {
    float m[16];
    render::set_perspective(m, render::guarded_focal_depth(info->foreground_z), n, f);
    matrix_multiply(m, p);
}

// No guard on the focal depth here: the forward guard only matters for a
// degenerate foreground depth, where the inverse is meaningless anyway.
void Paneburst::inverse_perspective_project(tagINFO* info, float* p, float n, float f) {
    float m[16];
    render::set_inverse_perspective(m, info->foreground_z, n, f);
    matrix_multiply(m, p);
}

float* Paneburst::matrix_multiply(float* m, float* p) {
    render::apply_matrix(m, p);
    return m;
}
