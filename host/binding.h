// The binding of the effect's control objects to the host descriptors, and
// the per-frame refresh of their cached values.
#pragma once

#include <array>

#include "effect/paneburst_info.h"

enum class BoundKind { List, Button, Integer, Float, Angle, Checkbox, Position, Colour };

// One bound control object. `extra` holds the y descriptor of a position and
// the R, G, B slider descriptors of the colour.
struct BindingRow {
    ControlQ7* object;
    BoundKind kind;
    int id;
    void* descriptor;
    void* aux;
    void* extra[3];
};

constexpr int kBoundControls = 54;
using BindingTable = std::array<BindingRow, kBoundControls>;

// The binding table of `info`'s control objects, in binding order. This order
// is also the order of the per-frame refresh and of the re-synchronisation
// after a reset. The two spare objects of PaneburstInfo are not in it.
BindingTable binding_table(PaneburstInfo& info);

// The same rows without their objects (`object` is null): the descriptor side
// of the binding, constant data that may be read before Instance exists.
BindingTable binding_descriptors();

// The row of `Instance` whose object is bound to control number `id` (the x
// number of a position), or null.
const BindingRow* bound_control(int id);

// Sets every object's id, descriptor and auxiliary pointers, and its notify
// flag. Descriptor values are left alone.
void bind_controls(PaneburstInfo& info);

// Refreshes every bound object's cached value from its descriptor, in binding
// order, push buttons excepted. A position's pair is written here: the
// position class's own Sync leaves it alone.
void refresh_controls(PaneburstInfo& info);
