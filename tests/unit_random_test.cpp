// The seeded generator, the two tables built from it and the counter draws.
// Expected values come from an independent model: Park-Miller states by
// 64-bit modular multiplication, with the Bays-Durham shuffle applied on top.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "effect/paneburst.h"
#include "framework/ran1f.h"
#include "sparkhost/host.h"

namespace {

constexpr std::int64_t kModulus = 2147483647;
constexpr std::int64_t kDivisor = 67108864;  // 1 + (2^31 - 2) / 32

std::int64_t park_miller(std::int64_t s) { return s * 16807 % kModulus; }

// The shuffled generator, on 64-bit integers, with its own table.
struct Model {
    std::int64_t iv[32] = {};
    std::int64_t iy = 0;

    float draw(std::int64_t& s) {
        if (s <= 0 || iy == 0) {
            s = std::max<std::int64_t>(-s, 1);
            for (int j = 39; j >= 0; --j) {
                s = park_miller(s);
                if (j < 32) iv[j] = s;
            }
            iy = iv[0];
        }
        s = park_miller(s);
        const std::int64_t j = iy / kDivisor;
        iy = iv[j];
        iv[j] = s;
        return std::min(static_cast<float>(iy) / 2147483648.0f, 0.99999988f);
    }
};

}  // namespace

TEST(ParkMiller, PublishedMinimalStandardSequence) {
    // The model's own check: 16807 first, 1043618065 as the 10,000th state.
    std::int64_t s = park_miller(1);
    EXPECT_EQ(s, 16807);
    for (int n = 2; n <= 10000; ++n) s = park_miller(s);
    EXPECT_EQ(s, 1043618065);
}

TEST(Ran1f, FollowsTheShuffledMinimalStandardSequenceInsideTheUnitInterval) {
    long state = -1;
    std::int64_t model_state = -1;
    Model model;
    // 40 steps fill the table, then one step per draw: after 9,960 draws the
    // caller's word is the 10,000th Park-Miller state.
    for (int n = 0; n < 9960; ++n) {
        const float v = ran1fQ7(&state);
        ASSERT_EQ(v, model.draw(model_state)) << "draw " << n;
        ASSERT_EQ(state, model_state);
        ASSERT_TRUE(v > 0.0f && v <= 0.99999988f) << n << ": " << v;  // never 0, never above RNMX
    }
    EXPECT_EQ(state, 1043618065);
}

TEST(Ran1f, FirstDrawIsTheShuffledEntryPickedByTheLastTableState) {
    // After initialisation iv[j] holds state 40 - j and iy state 40; the
    // first draw returns iv[state40 / NDIV].
    std::int64_t states[41] = {1};
    for (int n = 1; n <= 40; ++n) states[n] = park_miller(states[n - 1]);
    const std::int64_t j = states[40] / kDivisor;
    long state = -1;
    EXPECT_EQ(ran1fQ7(&state), static_cast<float>(states[40 - j]) / 2147483648.0f);
    EXPECT_EQ(state, park_miller(states[40]));
}

TEST(Ran1f, SeedWordsMinusOneAndZeroAgreeAndAPositiveWordContinues) {
    long a = -1, b = 0;
    float first[20];
    for (float& v : first) v = ran1fQ7(&a);
    for (int n = 0; n < 20; ++n) EXPECT_EQ(ran1fQ7(&b), first[n]) << n;
    EXPECT_EQ(a, b);
    // Restart, take ten, then go on through a copy of the positive word.
    long again = -1;
    for (int n = 0; n < 10; ++n) ran1fQ7(&again);
    long copy = again;
    ASSERT_GT(copy, 0);
    for (int n = 10; n < 20; ++n) EXPECT_EQ(ran1fQ7(&copy), first[n]) << n;
}

TEST(Ran1f, CallersShareOneShuffleTable) {
    // Caller A's fourth value, alone and with B restarting before it; the
    // model with one table for both callers agrees.
    Model model;
    std::int64_t ma = -7, mb = -9;
    for (int with_b = 0; with_b < 2; ++with_b) {
        long a = -7, b = -9;
        for (int n = 0; n < 3; ++n) {
            ran1fQ7(&a);
            model.draw(ma);
        }
        if (with_b) {
            ran1fQ7(&b);
            model.draw(mb);
        }
        EXPECT_EQ(ran1fQ7(&a), model.draw(ma)) << with_b;
        ma = -7;
    }
}

TEST(RandomTable, HoldsSuccessiveValuesFromTheSeedAndKeepsTheState) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    fx->build_random_table(-200);
    Model model;
    std::int64_t s = -200;
    for (int i = 0; i < kRandomTableSize; ++i) ASSERT_EQ(fx->random_table[i], model.draw(s)) << i;
    EXPECT_EQ(fx->table_seed, s);
}

TEST(RandomTable, ConstructionTablesComeFromTheFixedSeeds) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    Model model;
    std::int64_t s = -567;
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(fx->random_table[i], model.draw(s)) << i;
    EXPECT_EQ(fx->info.last_cell_w, -10);  // the first frame always rebuilds
    EXPECT_EQ(fx->info.last_cell_h, -10);

    // Gradient vectors from -665 after one discarded value: z from the first
    // draw of a pair, the azimuth from the second.
    Model g;
    std::int64_t gs = -665;
    g.draw(gs);
    for (int i = 0; i < 256; ++i) {
        const double r1 = g.draw(gs), r2 = g.draw(gs);
        const float* v = fx->gradient_table[i];
        EXPECT_EQ(v[2], static_cast<float>(1.0 - 2.0 * r1)) << i;
        const double theta = r2 * 6.283185307179586, rho = std::sqrt(1.0 - static_cast<double>(v[2]) * v[2]);
        EXPECT_NEAR(v[0], rho * std::cos(theta), 2e-6) << i;
        EXPECT_NEAR(v[1], rho * std::sin(theta), 2e-6) << i;
    }
}

TEST(PartRand, CounterReadsTheNextEntryAndWraps) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    for (int i = 0; i < kRandomTableSize; ++i) fx->random_table[i] = static_cast<float>(i % 1000 + 1) / 1024.0f;
    int counter = 0;
    EXPECT_EQ(fx->part_rand_01(&counter), 2.0f / 1024.0f);  // entry 1
    EXPECT_EQ(counter, 1);
    EXPECT_EQ(fx->part_rand_11(&counter), 2.0f * (3.0f / 1024.0f) - 1.0f);  // entry 2
    EXPECT_EQ(counter, 2);

    counter = kRandomTableSize - 1;  // next is 262,144: entry 0
    EXPECT_EQ(fx->part_rand_01(&counter), 1.0f / 1024.0f);

    counter = 999999999;  // 1,000,000,000 mod 262,144 = 182,784
    EXPECT_EQ(fx->part_rand_01(&counter), static_cast<float>(182784 % 1000 + 1) / 1024.0f);
    EXPECT_EQ(counter, 1000000000);
    // 1,000,000,001 is not below the bound: back to 0, entry 0.
    EXPECT_EQ(fx->part_rand_01(&counter), 1.0f / 1024.0f);
    EXPECT_EQ(counter, 0);
}

TEST(PartRand, RangesOfBothDraws) {
    std::unique_ptr<Paneburst> fx(new Paneburst);
    const float entries[4] = {0.99999988f, 0.9999995f, 0.999999f, 0.99999988f};
    std::copy(entries, entries + 4, fx->random_table + 1);
    int counter = 0;
    for (int n = 0; n < 3; ++n) EXPECT_EQ(fx->part_rand_01(&counter), 0.99999899f) << n;  // capped at 0.999999
    EXPECT_EQ(fx->part_rand_11(&counter), 0.99999976f);  // 2 x 0.99999988 - 1, unclamped
}

TEST(PartRand, DrawInsideABandRunIsReportedAndStillMade) {
    setenv("PANEBURST_MESSAGE_PAUSE", "0", 1);
    sparkhost::Host host;
    host.echo_messages = false;
    std::unique_ptr<Paneburst> fx(new Paneburst);
    for (int i : {1, 3}) fx->random_table[i] = 0.25f, fx->random_table[i + 1] = 0.75f;
    int counter = 0;
    for (int in_mp : {1, 0}) {  // outside a band run nothing is reported
        fx->in_mp = in_mp;
        testing::internal::CaptureStderr();
        EXPECT_EQ(fx->part_rand_11(&counter), -0.5f);
        EXPECT_EQ(fx->part_rand_01(&counter), 0.75f);
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  in_mp ? "SPARK_MESSAGE::\tpart_rand_11() called with MP region!\n\n"
                          "SPARK_MESSAGE::\tpart_rand_01() called with MP region!\n\n"
                        : "");
    }
    EXPECT_EQ(counter, 4);
    ASSERT_EQ(host.messages.size(), 2u);
    EXPECT_EQ(host.messages[0].text, "part_rand_11() called with MP region!\n");
    EXPECT_EQ(host.messages[1].text, "part_rand_01() called with MP region!\n");
}
