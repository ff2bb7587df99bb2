// The seeded generator, the two tables built from it and the counter draws.
// Expected values come from an independent model: Park-Miller states by
// 64-bit modular multiplication, with the Bays-Durham shuffle applied on top.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>

#include "effect/paneburst.h"
#include "framework/ran1f.h"
#include "sparkhost/host.h"

namespace {

std::int64_t park_miller(std::int64_t s) { return s * 16807 % 2147483647; }

// The shuffled generator, on 64-bit integers, with its own table.
struct Model {
    std::int64_t iv[32] = {}, iy = 0;
    float draw(std::int64_t& s) {
        if (s <= 0 || iy == 0) {
            s = std::max<std::int64_t>(-s, 1);
            for (int j = 39; j >= 0; --j)
                if ((s = park_miller(s)), j < 32) iv[j] = s;
            iy = iv[0];
        }
        s = park_miller(s);
        const std::int64_t j = iy / 67108864;  // NDIV = 1 + (2^31 - 2) / 32
        iy = iv[j];
        iv[j] = s;
        return std::min(static_cast<float>(iy) / 2147483648.0f, 0.99999988f);
    }
};

}  // namespace

TEST(Ran1f, FollowsTheShuffledMinimalStandardSequenceInsideTheUnitInterval) {
    // The model's own check: 16807 first, 1043618065 as the 10,000th state.
    std::int64_t states[41] = {1}, s;
    for (int n = 1; n <= 40; ++n) states[n] = park_miller(states[n - 1]);
    for (int n = (s = states[40], 41); n <= 10000; ++n) s = park_miller(s);
    EXPECT_TRUE(states[1] == 16807 && s == 1043618065) << states[1] << " " << s;
    // After initialisation iv[j] holds state 40 - j and iy state 40: the first draw is iv[state40 / NDIV].
    long state = -1;
    EXPECT_EQ(ran1fQ7(&state), static_cast<float>(states[40 - states[40] / 67108864]) / 2147483648.0f);
    // 40 steps fill the table, then one per draw: after 9,960 draws the word is the 10,000th state.
    Model model;
    state = s = -1;
    for (int n = 0; n < 9960; ++n) {  // never 0, never above RNMX
        const float v = ran1fQ7(&state);
        ASSERT_TRUE(v == model.draw(s) && v > 0.0f && v <= 0.99999988f) << n << ": " << v;
    }
    EXPECT_EQ(state, 1043618065);
}

TEST(Ran1f, SeedsMinusOneAndZeroAgreeAPositiveWordContinuesAndCallersShareTheTable) {
    long a = -1, b = 0, again = -1;
    float first[20];
    for (float& v : first) v = ran1fQ7(&a);
    for (int n = 0; n < 20; ++n) EXPECT_EQ(ran1fQ7(&b), first[n]) << n;
    for (int n = 0; n < 20; ++n) EXPECT_EQ(ran1fQ7(&again), first[n]) << n;  // the word is positive after a draw
    // Caller A's fourth value with B restarting before it: the model with one table for both agrees.
    Model model;
    std::int64_t ma = a = -7, mb = b = -9;
    for (int n = 0; n < 3; ++n) ran1fQ7(&a), model.draw(ma);
    ran1fQ7(&b), model.draw(mb);
    EXPECT_EQ(ran1fQ7(&a), model.draw(ma));
}

TEST(RandomTable, SeededAndConstructionTablesFollowTheModel) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    Model model, g;
    std::int64_t s = -567, gs = -665;  // the constructor's fixed seeds
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(fx->random_table[i], model.draw(s)) << i;
    g.draw(gs);  // gradients after one discarded value: z = 1 - 2 r from the first draw of each pair
    for (int i = 0; i < 256; ++i, g.draw(gs))
        ASSERT_EQ(fx->gradient_table[i][2], static_cast<float>(1.0 - 2.0 * g.draw(gs))) << i;
    fx->build_random_table(s = -200);
    for (int i = 0; i < kRandomTableSize; ++i) ASSERT_EQ(fx->random_table[i], model.draw(s)) << i;
    EXPECT_EQ(fx->table_seed, s);
}

TEST(PartRand, CounterReadsTheNextEntryWrapsCapsAndReportsDrawsInABandRun) {
    sparkhost::Host host;
    std::unique_ptr<Paneburst> fx(new Paneburst);
    for (int i = 0; i < kRandomTableSize; ++i) fx->random_table[i] = static_cast<float>(i % 1000 + 1) / 1024.0f;
    int counter = 0;
    EXPECT_EQ(fx->part_rand_01(&counter), 2.0f / 1024.0f);  // entry 1
    EXPECT_EQ(fx->part_rand_11(&counter), 2.0f * (3.0f / 1024.0f) - 1.0f);  // entry 2
    counter = kRandomTableSize - 1;  // next is 262,144: entry 0
    EXPECT_EQ(fx->part_rand_01(&counter), 1.0f / 1024.0f);
    counter = 999999999;  // 1,000,000,000 mod 262,144 = 182,784
    EXPECT_EQ(fx->part_rand_01(&counter), static_cast<float>(182784 % 1000 + 1) / 1024.0f);
    EXPECT_EQ(fx->part_rand_01(&counter), 1.0f / 1024.0f);  // 1,000,000,001 is not below the bound: entry 0
    EXPECT_TRUE(counter == 0 && host.messages.empty());  // outside a band run nothing is reported

    fx->random_table[1] = fx->random_table[2] = 0.99999988f;
    fx->in_mp = 1;  // inside one the draw is reported and still made
    EXPECT_EQ(fx->part_rand_01(&counter), 0.99999899f);  // capped at 0.999999
    EXPECT_EQ(fx->part_rand_11(&counter), 0.99999976f);  // 2 x 0.99999988 - 1, unclamped
    ASSERT_EQ(host.messages.size(), 2u);
    EXPECT_EQ(host.messages[0].text + host.messages[1].text,
              "part_rand_01() called with MP region!\npart_rand_11() called with MP region!\n");
}
