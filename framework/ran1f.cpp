#include "framework/ran1f.h"

#include <climits>
#include <cstdint>

namespace {

constexpr long IA = 16807;
constexpr long IM = 2147483647;  // 2^31 - 1
constexpr long IQ = 127773;      // IM / IA
constexpr long IR = 2836;        // IM % IA
constexpr int NTAB = 32;
constexpr std::int32_t NDIV = 1 + (IM - 1) / NTAB;
constexpr float AM = 1.0f / IM;      // rounds to exactly 2^-31
constexpr float RNMX = 1.0f - 1.2e-7f;  // 0.99999988: never return 1

// Shared by every caller.
std::int32_t iv[NTAB];
std::int32_t iy = 0;

// One step of the minimal standard generator by Schrage's method: s * IA mod
// IM without a product wider than 32 bits.
inline void step(long* s) {
    const long k = *s / IQ;
    *s = IA * (*s - k * IQ) - IR * k;
    if (*s < 0) *s += IM;
}

// The generator's states are 1 ... IM - 1. A word outside that range (a
// caller's own large value) is reduced modulo IM first, so that the shuffle
// index below can never leave the table. A multiple of IM would reduce to 0,
// a fixed point of the step, so it becomes 1.
inline void reduce(long* s) {
    if (*s >= IM) {
        *s %= IM;
        if (*s == 0) *s = 1;
    }
}

}  // namespace

float ran1fQ7(long* seed) {
    if (*seed <= 0 || iy == 0) {
        // LONG_MIN has no positive counterpart.
        const long start = *seed == LONG_MIN ? LONG_MAX : -*seed;
        *seed = start < 1 ? 1 : start;
        reduce(seed);
        for (int j = NTAB + 7; j >= 0; --j) {
            step(seed);
            if (j < NTAB) iv[j] = static_cast<std::int32_t>(*seed);
        }
        iy = iv[0];
    }
    reduce(seed);
    step(seed);
    const int j = iy / NDIV;
    iy = iv[j];
    iv[j] = static_cast<std::int32_t>(*seed);
    const float value = AM * static_cast<float>(iy);
    return value > RNMX ? RNMX : value;
}
