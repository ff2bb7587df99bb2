// In-place normalisation of a three-float vector, as the motion code's
// vecnorm: three Newton steps for the length instead of a square root.
//
// The renderer keeps its own inline copy so that the light factors, which run
// per pixel inside the bands, do not depend on where the motion code puts its
// function; both must stay the same algorithm.
#pragma once

#include <cmath>

namespace render {

inline double vecnorm3(float* v) {
    const double ax = std::fabs(static_cast<double>(v[0]));
    const double ay = std::fabs(static_cast<double>(v[1]));
    const double az = std::fabs(static_cast<double>(v[2]));
    double m = ax > ay ? ax : ay;
    if (az > m) m = az;
    if (m < 1e-10) {
        v[0] = v[1] = v[2] = 0.0f;
        return 0.0;
    }
    const double s = static_cast<double>(v[0]) * v[0] + static_cast<double>(v[1]) * v[1] +
                     static_cast<double>(v[2]) * v[2];
    // The Newton estimate is slightly long for vectors off the axes, so the
    // result comes out a little shorter than unit length; that is kept.
    const double l1 = (m + s / m) / 2.0;
    const double l2 = (l1 + s / l1) / 2.0;
    const double l3 = (l2 + s / l2) / 2.0;
    const double inv = 1.0 / l3;
    v[0] = static_cast<float>(v[0] * inv);
    v[1] = static_cast<float>(v[1] * inv);
    v[2] = static_cast<float>(v[2] * inv);
    return l3;
}

}  // namespace render
