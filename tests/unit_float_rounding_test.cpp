// The light normal must be built from the plane coefficients as stored in
// single precision. GCC 12 at -O2 can lose that rounding: when the SLP
// vectoriser packs two double -> float conversions whose results are widened
// back to double, a later value-numbering pass folds the narrowing and the
// widening away, and the widened values are the unrounded doubles. The
// smallest program that shows it is kept here, next to the check that the
// renderer's guard keeps the rounding.
#include <gtest/gtest.h>

#include <cstdio>

#include "render/element_geometry.h"

namespace {

struct Stored {
    float a, b, c;
};

float plain_float(double v) { return static_cast<float>(v); }

// Two coefficients in double, stored as floats, then scaled as floats by
// the inverse of their squared length.
template <float (*Round)(double)>
__attribute__((noinline)) void store_and_normalise(const double* x, Stored* kept, float* out) {
    Stored s;
    s.a = Round(x[0] * x[1] - x[2]);
    s.b = Round(x[3] * x[4] - x[5]);
    s.c = Round(x[6]);
    *kept = s;
    const double inverse = 1.0 / (static_cast<double>(s.a) * s.a + static_cast<double>(s.b) * s.b +
                                  static_cast<double>(s.c) * s.c);
    out[0] = static_cast<float>(s.a * inverse);
    out[1] = static_cast<float>(s.b * inverse);
    out[2] = static_cast<float>(s.c * inverse);
}

template <float (*Round)(double)>
bool keeps_rounding(const double* x) {
    Stored kept;
    float n[3];
    store_and_normalise<Round>(x, &kept, n);
    volatile float a = kept.a, b = kept.b, c = kept.c;  // read back as stored
    const double inverse = 1.0 / (static_cast<double>(a) * a + static_cast<double>(b) * b + static_cast<double>(c) * c);
    return n[0] == static_cast<float>(a * inverse) && n[1] == static_cast<float>(b * inverse) &&
           n[2] == static_cast<float>(c * inverse);
}

}  // namespace

TEST(FloatRounding, StoredPlaneCoefficientsKeepTheirRoundingUnderTheOptimiser) {
    volatile double one = 1.0;  // the inputs stay unknown to the optimiser
    const double x[7] = {0.1 * one, 0.7, 0.3, 0.11 * one, 0.13, 0.17, 1.0};
    EXPECT_TRUE(keeps_rounding<render::stored_float>(x));
    if (!keeps_rounding<plain_float>(x))
        std::printf("note: this compiler drops a stored float's rounding; stored_float guards against it\n");
}
