#include "render/row_mapping.h"

#include <cstdlib>
#include <cstring>

namespace render {

namespace {

typedef double Lanes __attribute__((vector_size(32)));  // 4 doubles
typedef float FloatLanes __attribute__((vector_size(16)));
typedef long long Mask __attribute__((vector_size(32)));

// One pixel the one-pixel way: the tail of a run and the reference for the lanes.
inline void map_one(const ElementPlane& plane, const InverseChain& chain, float fx, float fy, float* u, float* v) {
    float p[3] = {fx, fy, plane.depth(fx, fy)};
    chain.apply(p);
    *u = p[0];
    *v = p[1];
}

// apply_matrix on four points at once.
__attribute__((always_inline)) inline void apply_lanes(const float* m, FloatLanes& px, FloatLanes& py,
                                                       FloatLanes& pz) {
    const Lanes x = __builtin_convertvector(px, Lanes);
    const Lanes y = __builtin_convertvector(py, Lanes);
    const Lanes z = __builtin_convertvector(pz, Lanes);
    const double m0 = m[0], m1 = m[1], m2 = m[2], m3 = m[3], m4 = m[4], m5 = m[5], m6 = m[6], m7 = m[7];
    const double m8 = m[8], m9 = m[9], m10 = m[10], m11 = m[11], m12 = m[12], m13 = m[13], m14 = m[14],
                 m15 = m[15];
    const Lanes xp = m0 * x + m4 * y + m8 * z + m12;
    const Lanes yp = m1 * x + m5 * y + m9 * z + m13;
    const Lanes zp = m2 * x + m6 * y + m10 * z + m14;
    const Lanes wp = m3 * x + m7 * y + m11 * z + m15;
    const Mask one = wp == 1.0;
    if (one[0] & one[1] & one[2] & one[3]) {
        px = __builtin_convertvector(xp, FloatLanes);
        py = __builtin_convertvector(yp, FloatLanes);
        pz = __builtin_convertvector(zp, FloatLanes);
    } else {
        // The one-pixel path skips the division where w is exactly 1; a
        // division by exactly 1 gives its dividend unchanged, so dividing
        // every lane is the same.
        px = __builtin_convertvector(xp / wp, FloatLanes);
        py = __builtin_convertvector(yp / wp, FloatLanes);
        pz = __builtin_convertvector(zp / wp, FloatLanes);
    }
}

__attribute__((always_inline)) inline void map_row_lanes(const ElementPlane& plane, const InverseChain& chain,
                                                         int y, int x0, int n, float* u, float* v) {
    const float fy = static_cast<float>(y);
    const double a = plane.a, b = plane.b, c = plane.c_guarded, k = plane.k;
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        const int x = x0 + i;
        FloatLanes px = {static_cast<float>(x), static_cast<float>(x + 1), static_cast<float>(x + 2),
                         static_cast<float>(x + 3)};
        FloatLanes py = {fy, fy, fy, fy};
        const Lanes dx = __builtin_convertvector(px, Lanes);
        const Lanes dy = __builtin_convertvector(py, Lanes);
        FloatLanes pz = __builtin_convertvector((k - a * dx - b * dy) / c, FloatLanes);
        for (int j = 0; j < 7; ++j) apply_lanes(chain.m[j], px, py, pz);
        std::memcpy(u + i, &px, sizeof px);
        std::memcpy(v + i, &py, sizeof py);
    }
    for (; i < n; ++i) map_one(plane, chain, static_cast<float>(x0 + i), fy, u + i, v + i);
}

void map_row_baseline(const ElementPlane& plane, const InverseChain& chain, int y, int x0, int n, float* u,
                      float* v) {
    map_row_lanes(plane, chain, y, x0, n, u, v);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void map_row_avx2(const ElementPlane& plane, const InverseChain& chain, int y,
                                                  int x0, int n, float* u, float* v) {
    map_row_lanes(plane, chain, y, x0, n, u, v);
}
#endif

typedef void (*RowMapper)(const ElementPlane&, const InverseChain&, int, int, int, float*, float*);

struct Unit {
    RowMapper mapper;
    const char* name;
};

Unit pick_unit() {
    const char* wanted = std::getenv("PANEBURST_SIMD");
    const bool baseline_only = wanted && std::strcmp(wanted, "baseline") == 0;
#if defined(__x86_64__)
    if (!baseline_only && __builtin_cpu_supports("avx2")) return {&map_row_avx2, "avx2"};
#endif
    (void)baseline_only;
    return {&map_row_baseline, "baseline"};
}

const Unit& unit() {
    static const Unit u = pick_unit();
    return u;
}

}  // namespace

void map_row(const ElementPlane& plane, const InverseChain& chain, int y, int x0, int n, float* u, float* v) {
    unit().mapper(plane, chain, y, x0, n, u, v);
}

const char* map_row_unit() { return unit().name; }

}  // namespace render
