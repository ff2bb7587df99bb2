// The 4x4 matrices of the transform chain and their application to a point.
//
// Every transform of an element is one matrix applied to one point. The
// builders here are shared by the public transform operations and by the
// rasteriser's per-pixel inverse mapping, so that both run exactly the same
// float operations: the rasteriser only builds an element's matrices once
// instead of once per pixel.
//
// Precision: matrix coefficients and points are floats. Inside one matrix
// application the products, sums and the division by w are carried in double
// and the point is rounded back to float at the end (the wider intermediate
// arithmetic of the platforms this effect comes from).
#pragma once

#include <cmath>

#include "framework/angles.h"

namespace render {

// Matrices are column-major: element (row r, column c) at index 4c + r.
inline void set_identity(float* m) {
    for (int i = 0; i < 16; ++i) m[i] = 0.0f;
    m[0] = m[5] = m[10] = m[15] = 1.0f;
}

inline void apply_matrix(const float* m, float* p) {
    const double x = p[0], y = p[1], z = p[2];
    const double xp = m[0] * x + m[4] * y + m[8] * z + m[12];
    const double yp = m[1] * x + m[5] * y + m[9] * z + m[13];
    const double zp = m[2] * x + m[6] * y + m[10] * z + m[14];
    const double wp = m[3] * x + m[7] * y + m[11] * z + m[15];
    if (wp == 1.0) {
        // Dividing by exactly 1 changes nothing; skipping it is the common
        // case of translations and rotations.
        p[0] = static_cast<float>(xp);
        p[1] = static_cast<float>(yp);
        p[2] = static_cast<float>(zp);
    } else {
        p[0] = static_cast<float>(xp / wp);
        p[1] = static_cast<float>(yp / wp);
        p[2] = static_cast<float>(zp / wp);
    }
}

inline void set_translation(float* m, float tx, float ty, float tz) {
    set_identity(m);
    m[12] = tx;
    m[13] = ty;
    m[14] = tz;
}

// Cosine and sine of an angle in degrees: the radian value is formed in
// double with the effect's constant, then both are taken in single precision.
inline void angle_cos_sin(float degrees, float* c, float* s) {
    const float a = static_cast<float>(degrees * kDegreesToRadians);
    *c = std::cos(a);
    *s = std::sin(a);
}

inline void set_rotation_x(float* m, float c, float s) {
    set_identity(m);
    m[5] = c;
    m[9] = -s;
    m[6] = s;
    m[10] = c;
}

inline void set_rotation_y(float* m, float c, float s) {
    set_identity(m);
    m[0] = c;
    m[8] = s;
    m[2] = -s;
    m[10] = c;
}

inline void set_rotation_z(float* m, float c, float s) {
    set_identity(m);
    m[0] = c;
    m[4] = -s;
    m[1] = s;
    m[5] = c;
}

// The focal depth of the forward projection. A focal depth of (almost) zero
// would divide by zero; it becomes +1e-6 whatever its sign, so a tiny
// negative foreground depth flips the picture rather than blowing it up.
// The guard compares in double, as the literal is written.
inline float guarded_focal_depth(float foreground_z) {
    return std::fabs(static_cast<double>(foreground_z)) < 1e-6 ? 1e-6f : foreground_z;
}

// Forward projection with near and far depths n and f; d already guarded.
// Rows (1,0,0,0), (0,1,0,0), (0,0,(n+f)/d,-nf/d), (0,0,1/d,0), the three
// coefficients rounded to float.
inline void set_perspective(float* m, float d, float n, float f) {
    set_identity(m);
    m[10] = static_cast<float>((static_cast<double>(n) + f) / d);
    m[14] = static_cast<float>(-static_cast<double>(n) * f / d);
    m[11] = static_cast<float>(1.0 / d);
    m[15] = 0.0f;
}

// The exact inverse of set_perspective for |n f| >= 1e-6. d is the unguarded
// foreground depth. Rows (1,0,0,0), (0,1,0,0), (0,0,0,d), (0,0,-d/q,(n+f)d/q).
inline void set_inverse_perspective(float* m, float d, float n, float f) {
    float q = static_cast<float>(static_cast<double>(n) * f);
    if (std::fabs(static_cast<double>(q)) < 1e-6) q = 1e-6f;
    set_identity(m);
    m[10] = 0.0f;
    m[14] = d;
    m[11] = static_cast<float>(-static_cast<double>(d) / q);
    m[15] = static_cast<float>((static_cast<double>(n) + f) * d / q);
}

}  // namespace render
