// Keeping the element array large enough for the grid.
#pragma once

#include "effect/records.h"

class Paneburst;

// The number of elements a pass over `polygons` may touch for the grid in
// `info`. When `polygons` is the effect's own array it is grown to
// element_count first (and `polygons` follows it if it moves); if that fails,
// info->element_count is lowered to what the array holds, so that neither
// this pass nor the renderer after it goes past the end. Any other array is
// the caller's and is taken to hold element_count records.
int elements_in_reach(Paneburst& effect, tagPOLYGON*& polygons, tagINFO* info);
