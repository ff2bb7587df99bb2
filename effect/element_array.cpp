// The element array grows to fit the grid: every grid keeps its exact
// geometry, and small frames with many elements (360 x 288 at 100 x 100 needs
// 17,280) simply get a larger array. It never shrinks.
#include "effect/element_array.h"

#include <cstdlib>
#include <cstring>

#include "effect/paneburst.h"
#include "framework/report.h"

tagPOLYGON* Paneburst::ensure_element_capacity(int count) {
    if (count <= element_capacity) return polygons;
    // Zeroed like the array made at construction; records already there keep
    // their state (an element step may run before the next rebuild).
    auto* grown = static_cast<tagPOLYGON*>(std::calloc(static_cast<std::size_t>(count), sizeof(tagPOLYGON)));
    if (grown == nullptr) {
        PrintError("Not enough memory for the elements of this grid\n");
        return polygons;
    }
    if (polygons != nullptr && element_capacity > 0)
        std::memcpy(grown, polygons, static_cast<std::size_t>(element_capacity) * sizeof(tagPOLYGON));
    std::free(polygons);
    polygons = grown;
    element_capacity = count;
    return polygons;
}

int elements_in_reach(Paneburst& effect, tagPOLYGON*& polygons, tagINFO* info) {
    if (info->element_count < 0) info->element_count = 0;
    if (polygons != effect.polygons) return info->element_count;
    polygons = effect.ensure_element_capacity(info->element_count);
    if (info->element_count > effect.element_capacity) info->element_count = effect.element_capacity;
    return info->element_count;
}
