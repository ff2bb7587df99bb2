#include "effect/vecnorm.h"

#include <cmath>

double vecnorm(float* v) {
    double m = std::fabs(v[0]);
    if (std::fabs(v[1]) > m) m = std::fabs(v[1]);
    if (std::fabs(v[2]) > m) m = std::fabs(v[2]);
    // The squares are summed in single precision, the Newton steps run in
    // double.
    const float sum = v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
    const double S = sum;
    if (m < 1e-10) {
        v[0] = v[1] = v[2] = 0.0f;
        return 0.0;
    }
    double L = (m + S / m) / 2.0;
    L = (L + S / L) / 2.0;
    L = (L + S / L) / 2.0;
    const double inverse = 1.0 / L;
    v[0] = static_cast<float>(v[0] * inverse);
    v[1] = static_cast<float>(v[1] * inverse);
    v[2] = static_cast<float>(v[2] * inverse);
    return L;
}
