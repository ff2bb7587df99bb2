// In-place normalisation of a three-float vector, shared by the motion and
// the lighting (which runs it per pixel, hence inline).
#pragma once

#include <cmath>

// Divides v by its length and returns the length. A vector whose largest
// component is below 1e-10 becomes (0, 0, 0) and gives 0.
//
// The length is three Newton steps for sqrt(S) from the largest component,
// not an exact root: a vector far from an axis comes out slightly shorter than
// unit length ((1, 1, 1) gives length 1.7321429 and a result of length
// 0.99995). That error is part of every result built on it. The arithmetic
// runs in double; the components are stored back as floats.
inline double vecnorm(float* v) {
    const double ax = std::fabs(static_cast<double>(v[0]));
    const double ay = std::fabs(static_cast<double>(v[1]));
    const double az = std::fabs(static_cast<double>(v[2]));
    double m = ax > ay ? ax : ay;
    if (az > m) m = az;
    if (m < 1e-10) {
        v[0] = v[1] = v[2] = 0.0f;
        return 0.0;
    }
    const double s =
        static_cast<double>(v[0]) * v[0] + static_cast<double>(v[1]) * v[1] + static_cast<double>(v[2]) * v[2];
    const double l1 = (m + s / m) / 2.0;
    const double l2 = (l1 + s / l1) / 2.0;
    const double l3 = (l2 + s / l2) / 2.0;
    const double inverse = 1.0 / l3;
    v[0] = static_cast<float>(v[0] * inverse);
    v[1] = static_cast<float>(v[1] * inverse);
    v[2] = static_cast<float>(v[2] * inverse);
    return l3;
}
