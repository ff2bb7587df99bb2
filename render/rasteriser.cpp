// The rasteriser's driver: outlines and edges of every element, the optional
// depth sort, and the band run that draws the elements into the canvas.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "effect/paneburst.h"

namespace {

// Float to int by truncation toward zero. Values outside the int range (and
// NaN) give INT_MIN, as the processor's own conversion does; such an element
// then fails the visibility tests instead of invoking undefined behaviour.
inline int truncate_to_int(float v) {
    if (!(v >= -2147483648.0f && v < 2147483648.0f)) return -2147483647 - 1;
    return static_cast<int>(v);
}

}  // namespace

// How many records of the array the loops may visit: the grid's element
// count, but never past the records the array holds.
static int usable_elements(const tagINFO* info, int capacity) {
    const int n = std::min(info->element_count, capacity);
    return n > 0 ? n : 0;
}

void Paneburst::render_polygons(tagINFO* in, tagPOLYGON* polys) {
    const int count = usable_elements(in, element_capacity);
    for (int i = 0; i < count; ++i) {
        float near_depth, far_depth;
        generate_polygon_vertices(in, &polys[i], &near_depth, &far_depth);
        polys[i].z_near = near_depth;
        polys[i].z_far = far_depth;
        find_line_coeffs(&polys[i]);
    }
    if (in->z_sort != 0) zsort_polys(in, polys);
    // The band workers read the element array and the record through the
    // object; nothing they read changes while they run.
    in_mp = 1;
    MultiProcess(&Paneburst::mp_polyrender, image_height);
    in_mp = 0;
}

void Paneburst::zsort_polys(tagINFO* in, tagPOLYGON* polys) {
    qs(polys, 0, usable_elements(in, element_capacity) - 1);
}

// Quicksort of whole records by depth_key, ascending: the farthest element
// comes first and is drawn first. Equal keys stop both scans and are
// exchanged, so their order is not kept.
void Paneburst::qs(tagPOLYGON* items, int left, int right) {
    if (left >= right) return;  // nothing to order (and no record to read)
    int i = left;
    int j = right;
    const float pivot = items[(left + right) / 2].depth_key;
    while (i <= j) {
        while (items[i].depth_key < pivot && i < right) ++i;
        while (pivot < items[j].depth_key && j > left) --j;
        if (i <= j) {
            std::swap(items[i], items[j]);
            ++i;
            --j;
        }
    }
    if (left < j) qs(items, left, j);
    if (i < right) qs(items, i, right);
}

void Paneburst::mp_polyrender(long first, long last) {
    tagINFO* in = &info;
    // The maps start the frame at zero. Each band reads and writes only its
    // own lines of them, so it clears those lines itself. Only the coverage
    // needs it: a position is read only where the coverage is non-zero, and
    // the pass that writes such a coverage writes the position with it.
    if (last >= first)
        std::memset(in->map_coverage + first * in->width, 0,
                    sizeof(float) * static_cast<std::size_t>(in->width) * static_cast<std::size_t>(last - first + 1));
    const int count = usable_elements(in, element_capacity);
    for (int i = 0; i < count; ++i) {
        tagPOLYGON* poly = &polygons[i];
        if (poly->drawn == 0) continue;
        const float(*c)[3] = poly->corners;
        const int xmin = truncate_to_int(std::min(std::min(c[0][0], c[1][0]), std::min(c[2][0], c[3][0])));
        const int xmax = truncate_to_int(std::max(std::max(c[0][0], c[1][0]), std::max(c[2][0], c[3][0])));
        const int ymin = truncate_to_int(std::min(std::min(c[0][1], c[1][1]), std::min(c[2][1], c[3][1])));
        const int ymax = truncate_to_int(std::max(std::max(c[0][1], c[1][1]), std::max(c[2][1], c[3][1])));
        // Drop elements entirely outside the image or this band before any
        // per-pixel work.
        if (xmax < 0 || xmin > in->width - 1 || ymax < 0 || ymin > in->height - 1) continue;
        if (ymax < first || ymin > last) continue;
        polygon_render(in, poly, std::max(xmin, 0), std::max<int>(ymin, static_cast<int>(first)),
                       std::min(xmax, in->width - 1), std::min<int>(ymax, static_cast<int>(last)),
                       static_cast<int>(last));
    }
}
