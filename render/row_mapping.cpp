#include "render/row_mapping.h"

#include <cstdlib>
#include <cstring>

namespace render {

namespace {

typedef double Lanes __attribute__((vector_size(32)));  // 4 doubles
typedef float FloatLanes __attribute__((vector_size(16)));
typedef long long Mask __attribute__((vector_size(32)));

// apply_matrix on V vectors of four points at once. Where w is exactly 1 in
// every lane the one-pixel path's division is skipped as it is there; where
// it is not, every lane is divided: a division by exactly 1 gives its
// dividend unchanged, so the lanes with w = 1 still match.
template <int V>
__attribute__((always_inline)) inline void apply_lanes(const float* m, FloatLanes* px, FloatLanes* py,
                                                       FloatLanes* pz) {
    const double m0 = m[0], m1 = m[1], m2 = m[2], m3 = m[3], m4 = m[4], m5 = m[5], m6 = m[6], m7 = m[7];
    const double m8 = m[8], m9 = m[9], m10 = m[10], m11 = m[11], m12 = m[12], m13 = m[13], m14 = m[14],
                 m15 = m[15];
    Lanes xp[V], yp[V], zp[V], wp[V];
    Mask one = {-1, -1, -1, -1};
    for (int b = 0; b < V; ++b) {
        const Lanes x = __builtin_convertvector(px[b], Lanes);
        const Lanes y = __builtin_convertvector(py[b], Lanes);
        const Lanes z = __builtin_convertvector(pz[b], Lanes);
        xp[b] = m0 * x + m4 * y + m8 * z + m12;
        yp[b] = m1 * x + m5 * y + m9 * z + m13;
        zp[b] = m2 * x + m6 * y + m10 * z + m14;
        wp[b] = m3 * x + m7 * y + m11 * z + m15;
        one &= wp[b] == 1.0;
    }
    if (one[0] & one[1] & one[2] & one[3]) {
        for (int b = 0; b < V; ++b) {
            px[b] = __builtin_convertvector(xp[b], FloatLanes);
            py[b] = __builtin_convertvector(yp[b], FloatLanes);
            pz[b] = __builtin_convertvector(zp[b], FloatLanes);
        }
    } else {
        for (int b = 0; b < V; ++b) {
            px[b] = __builtin_convertvector(xp[b] / wp[b], FloatLanes);
            py[b] = __builtin_convertvector(yp[b] / wp[b], FloatLanes);
            pz[b] = __builtin_convertvector(zp[b] / wp[b], FloatLanes);
        }
    }
}

// Groups of 4 V pixels; V vectors in flight hide the latency of the chain
// (AVX2 has the registers for four, the baseline unit for one).
// The last group is filled up with the pixels that follow the run: lanes are
// independent, so what those compute (whatever it is) changes no other lane,
// and only the run's own pixels are stored.
template <int V>
__attribute__((always_inline)) inline void map_row_lanes(const ElementPlane& plane, const InverseChain& chain,
                                                         int y, int x0, int n, float* u, float* v) {
    const float fy = static_cast<float>(y);
    const double a = plane.a, b = plane.b, c = plane.c_guarded, k = plane.k;
    for (int i = 0; i < n; i += 4 * V) {
        FloatLanes px[V], py[V], pz[V];
        for (int g = 0; g < V; ++g) {
            const int x = x0 + i + 4 * g;
            px[g] = FloatLanes{static_cast<float>(x), static_cast<float>(x + 1), static_cast<float>(x + 2),
                               static_cast<float>(x + 3)};
            py[g] = FloatLanes{fy, fy, fy, fy};
            const Lanes dx = __builtin_convertvector(px[g], Lanes);
            const Lanes dy = __builtin_convertvector(py[g], Lanes);
            pz[g] = __builtin_convertvector((k - a * dx - b * dy) / c, FloatLanes);
        }
        for (int j = 0; j < 7; ++j) apply_lanes<V>(chain.m[j], px, py, pz);
        const int left = n - i;
        if (left >= 4 * V) {
            std::memcpy(u + i, px, sizeof px);
            std::memcpy(v + i, py, sizeof py);
        } else {
            std::memcpy(u + i, px, sizeof(float) * static_cast<unsigned>(left));
            std::memcpy(v + i, py, sizeof(float) * static_cast<unsigned>(left));
        }
    }
}

void map_row_baseline(const ElementPlane& plane, const InverseChain& chain, int y, int x0, int n, float* u,
                      float* v) {
    map_row_lanes<1>(plane, chain, y, x0, n, u, v);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void map_row_avx2(const ElementPlane& plane, const InverseChain& chain, int y,
                                                  int x0, int n, float* u, float* v) {
    map_row_lanes<4>(plane, chain, y, x0, n, u, v);
}
#endif

typedef void (*RowMapper)(const ElementPlane&, const InverseChain&, int, int, int, float*, float*);

struct Unit {
    RowMapper mapper;
    const char* name;
};

// The units this processor runs, the widest first.
struct Units {
    Unit list[2];
    int count = 0;
    Units() {
#if defined(__x86_64__)
        if (__builtin_cpu_supports("avx2")) list[count++] = {&map_row_avx2, "avx2"};
#endif
        list[count++] = {&map_row_baseline, "baseline"};
    }
};

const Units& units() {
    static const Units u;
    return u;
}

const Unit& chosen() {
    static const Unit* c = [] {
        const char* wanted = std::getenv("PANEBURST_SIMD");
        const bool baseline_only = wanted && std::strcmp(wanted, "baseline") == 0;
        return baseline_only ? &units().list[units().count - 1] : &units().list[0];
    }();
    return *c;
}

}  // namespace

void map_row(const ElementPlane& plane, const InverseChain& chain, int y, int x0, int n, float* u, float* v) {
    chosen().mapper(plane, chain, y, x0, n, u, v);
}

const char* map_row_unit() { return chosen().name; }

int map_row_unit_count() { return units().count; }

const char* map_row_unit_name(int unit) { return units().list[unit].name; }

void map_row_on(int unit, const ElementPlane& plane, const InverseChain& chain, int y, int x0, int n, float* u,
                float* v) {
    units().list[unit].mapper(plane, chain, y, x0, n, u, v);
}

}  // namespace render
