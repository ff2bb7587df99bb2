// The framework's seeded uniform generator: the Park-Miller minimal standard
// generator behind a Bays-Durham shuffle table.
#pragma once

// Returns a float in (0, 0.99999988]. A state <= 0 (re)starts the sequence
// from max(-state, 1); afterwards the caller keeps passing the same word,
// which the generator advances.
//
// The shuffle table and the last output are shared by every caller (static
// storage): restarting one state restarts the common table, and the values a
// caller receives depend on the calls others made in between. Call it only
// from one thread, in a fixed order.
float ran1fQ7(long* seed);
