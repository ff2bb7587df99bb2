// The effect's two seeded tables and the counter-based draws from the uniform
// one. Both tables are rebuilt from the Seed every frame; the per-element
// draws of a rebuild then depend only on the Seed and on the order of draws.
#include <cmath>

#include "effect/paneburst.h"
#include "framework/ran1f.h"
#include "framework/report.h"

namespace {

// The draw counter runs from 0 to this bound minus one and then wraps to 0.
constexpr int kCounterWrap = 1000000001;

// Advances the caller's counter and returns the table entry it now points
// at: the first draw after a counter of 0 reads entry 1.
inline float next_entry(const float* table, int* counter) {
    // Compare before adding so that no counter value can overflow.
    *counter = *counter >= kCounterWrap - 1 ? 0 : *counter + 1;
    // The table size is a power of two: keeping the low bits is "mod" for
    // every counter, including a negative one a caller might pass in.
    return table[static_cast<unsigned>(*counter) & (kRandomTableSize - 1)];
}

}  // namespace

void Paneburst::build_random_table(long seed) {
    table_seed = static_cast<std::int32_t>(seed);
    // The generator advances the state; table_seed keeps the state reached
    // after the last draw (a generator state always fits 32 bits).
    long state = table_seed;
    for (int i = 0; i < kRandomTableSize; ++i) random_table[i] = ran1fQ7(&state);
    table_seed = static_cast<std::int32_t>(state);
}

float Paneburst::part_rand_11(int* counter) {
    // Draws are made on the calling thread only; one inside a band run is a
    // misuse by new code. It is reported and the draw is still made.
    if (in_mp == 1) PrintError("part_rand_11() called with MP region!\n");
    const float r = next_entry(random_table, counter);
    return 2.0f * r - 1.0f;  // exact until the final rounding to float
}

float Paneburst::part_rand_01(int* counter) {
    if (in_mp == 1) PrintError("part_rand_01() called with MP region!\n");
    const float r = next_entry(random_table, counter);
    return r > 0.999999f ? 0.999999f : r;
}

void Paneburst::gradientTabInit(long seed) {
    long state = seed;
    ran1fQ7(&state);  // the first value of the sequence is discarded
    // Precision: z and the azimuth are formed in double and rounded to float
    // (the 2 pi constant is a double); z squared is a float product, and
    // 1 - z^2 is formed in double and rounded to float before the float root.
    // cos and sin are the single-precision functions.
    for (int i = 0; i < 256; ++i) {
        const float z = static_cast<float>(1.0 - 2.0 * ran1fQ7(&state));
        const float theta = static_cast<float>(ran1fQ7(&state) * 6.283185307179586);
        const float z2 = z * z;
        const float rho = std::sqrt(static_cast<float>(1.0 - z2));
        gradient_table[i][0] = rho * std::cos(theta);
        gradient_table[i][1] = rho * std::sin(theta);
        gradient_table[i][2] = z;
    }
}
