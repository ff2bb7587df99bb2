// Per-element geometry used pixel by pixel by the rasteriser: the outline's
// inside test and edge coverage, and the element's plane in screen space.
// Everything that depends only on the element is computed once in setup();
// the per-pixel functions then run the same operations as the formulas
// written out in full, so the results do not depend on the hoisting.
#pragma once

#include <cmath>

#include "effect/records.h"
#include "effect/vecnorm.h"

namespace render {

// The renderer's clamp: low if value < low, else the smaller of
// value and high. A NaN value compares false both times and becomes high,
// which keeps a degenerate mapping inside the image.
inline float clamp_value(float value, float low, float high) {
    if (value < low) return low;
    return value < high ? value : high;
}

struct ElementEdges {
    float slope[4];
    float intercept[4];
    // Which side of each edge the element's centre lies on.
    bool centre_nonneg[4];
    bool centre_neg[4];
    // Whether an edge is flatter than 45 degrees (coverage measured vertically).
    bool flat[4];

    void setup(const tagPOLYGON* poly) {
        const double sum_x = static_cast<double>(poly->corners[0][0]) + poly->corners[1][0] + poly->corners[2][0] +
                             poly->corners[3][0];
        const double sum_y = static_cast<double>(poly->corners[0][1]) + poly->corners[1][1] + poly->corners[2][1] +
                             poly->corners[3][1];
        const float cx = static_cast<float>(0.25 * sum_x);
        const float cy = static_cast<float>(0.25 * sum_y);
        for (int k = 0; k < 4; ++k) {
            slope[k] = poly->edges[k][0];
            intercept[k] = poly->edges[k][1];
            const double c = static_cast<double>(cy) - static_cast<double>(slope[k]) * cx - intercept[k];
            centre_nonneg[k] = c >= 0.0;
            centre_neg[k] = c < 0.0;
            const float* a = poly->corners[k];
            const float* b = poly->corners[(k + 1) & 3];
            flat[k] = std::fabs(a[0] - b[0]) > std::fabs(a[1] - b[1]);
        }
    }

    // Inside when the pixel lies on the centre's side of every edge; exactly
    // on an edge counts as the non-negative side.
    bool inside(int x, int y) const {
        const double fx = x, fy = y;
        for (int k = 0; k < 4; ++k) {
            const double s = fy - slope[k] * fx - intercept[k];
            if ((s < 0.0 && centre_nonneg[k]) || (s >= 0.0 && centre_neg[k])) return false;
        }
        return true;
    }

    // Anti-aliased coverage of a pixel already known to be inside: a ramp of
    // one pixel from the nearest edge inwards, 0 on the edge, 32767 a pixel in.
    float high_quality_coverage(int x, int y) const {
        const double fx = x, fy = y;
        int nearest = 0;
        double best = 0.0;
        for (int k = 0; k < 4; ++k) {
            const double e = fy - slope[k] * fx - intercept[k];
            const double d2 = std::fabs(e * e / (1.0 + static_cast<double>(slope[k]) * slope[k]));
            // Strict comparison: on equal distances the lower edge wins.
            if (k == 0 || d2 < best) {
                best = d2;
                nearest = k;
            }
        }
        double dist;
        if (flat[nearest]) {
            dist = std::fabs(slope[nearest] * fx + intercept[nearest] - fy);  // vertical distance
        } else {
            dist = std::fabs((fy - intercept[nearest]) / slope[nearest] - fx);  // horizontal distance
        }
        return clamp_value(static_cast<float>(dist), 0.0f, 1.0f) * 32767.0f;
    }
};

// The element's plane through corners 0, 1 and 2 in (screen x, screen y,
// projected depth). The projected depth is affine in screen position, so the
// plane is exact for a flat element.
// A double rounded to float, the rounding kept whatever the optimiser does.
//
// GCC 12 at -O2 packs A and B into one vector, narrows it to float for the
// stores and widens it again for the normal; a later value-numbering pass
// then takes the widened vector to be the unrounded one and drops both
// conversions, so the normal is built from the unrounded doubles. The empty
// asm makes the rounded value opaque, so the widening cannot be folded away.
inline float stored_float(double v) {
    float f = static_cast<float>(v);
    __asm__("" : "+m"(f));
    return f;
}

struct ElementPlane {
    float a, b, c;    // A, B, C as in A x + B y + C d = const
    float c_guarded;  // C, replaced by 1e-10 for an element seen edge-on
    double k;         // A x0 + B y0 + C d0, the constant part of the depth

    void setup(const tagPOLYGON* poly) {
        const double x0 = poly->corners[0][0], y0 = poly->corners[0][1], d0 = poly->corners[0][2];
        const double x1 = poly->corners[1][0], y1 = poly->corners[1][1], d1 = poly->corners[1][2];
        const double x2 = poly->corners[2][0], y2 = poly->corners[2][1], d2 = poly->corners[2][2];
        a = stored_float(y0 * (d1 - d2) + y1 * (d2 - d0) + y2 * (d0 - d1));
        b = stored_float(d0 * (x1 - x2) + d1 * (x2 - x0) + d2 * (x0 - x1));
        c = stored_float(x0 * (y1 - y2) + x1 * (y2 - y0) + x2 * (y0 - y1));
        c_guarded = std::fabs(static_cast<double>(c)) < 1e-10 ? 1e-10f : c;
        k = static_cast<double>(a) * x0 + static_cast<double>(b) * y0 + static_cast<double>(c_guarded) * d0;
    }

    // Projected depth of the pixel on the plane.
    float depth(float x, float y) const {
        return static_cast<float>((k - static_cast<double>(a) * x - static_cast<double>(b) * y) / c_guarded);
    }
};

// The element's light: its normal in screen space, turned toward the viewer
// so both faces light alike.
struct ElementLight {
    float n[3];

    void setup(const ElementPlane& plane) {
        n[0] = plane.a;
        n[1] = plane.b;
        n[2] = plane.c;
        vecnorm(n);
        if (n[2] < 0.0f) {
            n[0] = -n[0];
            n[1] = -n[1];
            n[2] = -n[2];
        }
    }

    // Light factor at screen pixel (x, y) with projected depth d; never negative.
    float factor(const tagINFO* info, float x, float y, float d) const {
        float l[3] = {info->light_x - x, info->light_y - y, info->light_z - d};
        vecnorm(l);
        const float dot = static_cast<float>(static_cast<double>(n[0]) * l[0] + static_cast<double>(n[1]) * l[1] +
                                             static_cast<double>(n[2]) * l[2]);
        return dot > 0.0f ? dot : 0.0f;
    }
};

}  // namespace render
