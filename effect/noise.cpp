// Gradient noise over a lattice of random unit vectors (gradient_table),
// hashed through a fixed permutation. Smooth, 0 at every lattice point and
// bounded by about +-1; the swirl force samples it.
#include "effect/paneburst.h"

namespace {

// Each value 0 ... 255 exactly once. Fixed: the swirl field of a given Seed
// must be the same on every run.
const unsigned char perm[256] = {
    225, 155, 210, 108, 175, 199, 221, 144, 203, 116, 70,  213, 69,  158, 33,  252,
    5,   82,  173, 133, 222, 139, 174, 27,  9,   71,  90,  246, 75,  130, 91,  191,
    169, 138, 2,   151, 194, 235, 81,  7,   25,  113, 228, 159, 205, 253, 134, 142,
    248, 65,  224, 217, 22,  121, 229, 63,  89,  103, 96,  104, 156, 17,  201, 129,
    36,  8,   165, 110, 237, 117, 231, 56,  132, 211, 152, 20,  181, 111, 239, 218,
    170, 163, 51,  172, 157, 47,  80,  212, 176, 250, 87,  49,  99,  242, 136, 189,
    162, 115, 44,  43,  124, 94,  150, 16,  141, 247, 32,  10,  198, 223, 255, 72,
    53,  131, 84,  57,  220, 197, 58,  50,  208, 11,  241, 28,  3,   192, 62,  202,
    18,  215, 153, 24,  76,  41,  15,  179, 39,  46,  55,  6,   128, 167, 23,  188,
    106, 34,  187, 140, 164, 73,  112, 182, 244, 195, 227, 13,  35,  77,  196, 185,
    26,  200, 226, 119, 31,  123, 168, 125, 249, 68,  183, 230, 177, 135, 160, 180,
    12,  1,   243, 148, 102, 166, 38,  238, 251, 37,  240, 126, 64,  74,  161, 40,
    184, 149, 171, 178, 101, 66,  29,  59,  146, 61,  254, 107, 42,  86,  154, 4,
    236, 232, 120, 21,  233, 209, 45,  98,  193, 114, 78,  19,  206, 14,  118, 127,
    48,  79,  147, 85,  30,  207, 219, 54,  88,  234, 190, 122, 95,  67,  143, 109,
    137, 214, 145, 93,  92,  100, 245, 0,   216, 186, 60,  83,  105, 97,  204, 52,
};

// "mod 256" keeping the low eight bits, so that negative lattice coordinates
// wrap instead of indexing before the table.
inline int wrap(int i) { return static_cast<int>(static_cast<unsigned>(i) & 255u); }

// floor for the lattice cell: truncation, minus one for negative
// non-integers.
inline int lattice_floor(float v) {
    const int t = static_cast<int>(v);
    return (v < 0.0f && static_cast<float>(t) != v) ? t - 1 : t;
}

// Coordinates this large are whole numbers in single precision and have no
// lattice cell an int can name; NaN has none at all.
inline bool outside_lattice(float v) { return !(v > -2147483648.0f && v < 2147483648.0f); }

inline float smoothstep(float t) { return t * t * (3.0f - 2.0f * t); }

}  // namespace

float Paneburst::glattice(float* table, int ix, int iy, int iz, float fx, float fy, float fz) {
    const int index = perm[wrap(ix + perm[wrap(iy + perm[wrap(iz)])])];
    const float* g = table + 3 * index;
    return g[0] * fx + g[1] * fy + g[2] * fz;
}

float Paneburst::gnoise(float* table, float x, float y, float z) {
    // An element can fly arbitrarily far; beyond the int range the field is
    // taken as 0 rather than converting an out-of-range float.
    if (outside_lattice(x) || outside_lattice(y) || outside_lattice(z)) return 0.0f;
    const int ix = lattice_floor(x);
    const int iy = lattice_floor(y);
    const int iz = lattice_floor(z);
    const float fx0 = x - static_cast<float>(ix);
    const float fy0 = y - static_cast<float>(iy);
    const float fz0 = z - static_cast<float>(iz);
    const float fx1 = fx0 - 1.0f;
    const float fy1 = fy0 - 1.0f;
    const float fz1 = fz0 - 1.0f;
    const float wx = smoothstep(fx0);
    const float wy = smoothstep(fy0);
    const float wz = smoothstep(fz0);

    float a, b, p, q;

    a = glattice(table, ix, iy, iz, fx0, fy0, fz0);
    b = glattice(table, ix + 1, iy, iz, fx1, fy0, fz0);
    p = a + wx * (b - a);
    a = glattice(table, ix, iy + 1, iz, fx0, fy1, fz0);
    b = glattice(table, ix + 1, iy + 1, iz, fx1, fy1, fz0);
    q = a + wx * (b - a);
    const float s0 = p + wy * (q - p);

    a = glattice(table, ix, iy, iz + 1, fx0, fy0, fz1);
    b = glattice(table, ix + 1, iy, iz + 1, fx1, fy0, fz1);
    p = a + wx * (b - a);
    a = glattice(table, ix, iy + 1, iz + 1, fx0, fy1, fz1);
    b = glattice(table, ix + 1, iy + 1, iz + 1, fx1, fy1, fz1);
    q = a + wx * (b - a);
    const float s1 = p + wy * (q - p);

    return s0 + wz * (s1 - s0);
}
