#include "host/load_defaults.h"

#include <cstdint>
#include <cstring>

#include "host/binding.h"

namespace {

// Control numbers run up to 114; the bound ones stay below 85.
constexpr int kNumbers = 128;

// Every descriptor kind keeps its value in its first 32-bit word (float,
// int, the checkbox int, the popup entry, the packed colour): copying that
// word restores the value bit for bit.
struct LoadValues {
    std::uint32_t word[kNumbers] = {};
    bool captured[kNumbers] = {};

    void capture(int number, const void* descriptor) {
        if (number < 0 || number >= kNumbers || !descriptor) return;
        std::memcpy(&word[number], descriptor, sizeof word[number]);
        captured[number] = true;
    }
};

LoadValues capture_load_values() {
    LoadValues values;
    for (const BindingRow& row : binding_descriptors()) {
        if (row.kind == BoundKind::Button) continue;  // no value
        values.capture(row.id, row.descriptor);
        if (row.kind == BoundKind::Position) values.capture(row.id + 1, row.extra[0]);
        if (row.kind == BoundKind::Colour)
            for (int i = 0; i < 3; ++i) values.capture(row.id + 1 + i, row.extra[i]);
    }
    return values;
}

// The descriptors are constant-initialised data, so they already hold their
// load-time values when this dynamic initialiser runs; it runs while the
// library is being loaded, before any entry point can be called.
const LoadValues kLoadValues = capture_load_values();

}  // namespace

bool restore_load_value(int number, void* descriptor) {
    if (number < 0 || number >= kNumbers || !kLoadValues.captured[number] || !descriptor) return false;
    std::memcpy(descriptor, &kLoadValues.word[number], sizeof kLoadValues.word[number]);
    return true;
}
