// The element preview in the viewer: every element's outline over the image
// and its profile in the side view below it, drawn with the overlay's OpenGL
// primitives from the simulation state of the last processed frame.
#include <algorithm>
#include <cmath>

#include "effect/paneburst.h"

namespace {

// Truncation toward zero for a bound that may lie far outside the int range
// (or be NaN for a degenerate element): such a bound is out of sight anyway.
int truncate_bound(float v) {
    if (!(v > -2147483648.0f && v < 2147483648.0f)) return v > 0.0f ? 2147483647 : -2147483647 - 1;
    return static_cast<int>(v);
}

}  // namespace

void Paneburst::render_OpenGL_polygons(tagINFO* in, tagPOLYGON* polys, float a) {
    // The viewer's aspect over the image's: the overlay may be stretched
    // horizontally by the viewer ratio. Single precision throughout.
    const float r = (static_cast<float>(OverlayQ7::width) / static_cast<float>(OverlayQ7::height)) /
                    (static_cast<float>(image_width) / static_cast<float>(image_height));
    // The same bound as the rasteriser: the grid's elements, never past the
    // records the array holds.
    const int count = std::min(in->element_count, element_capacity);
    for (int row = 0; row < in->rows; ++row) {
        for (int column = 0; column < in->columns; ++column) {
            const int index = row * in->columns + column;
            if (index >= count) return;
            OpenGL_polygon_render(in, &polys[index], a, r);
        }
    }
}

void Paneburst::OpenGL_polygon_render(tagINFO* in, tagPOLYGON* poly, float, float r) {
    // Refreshes the corners from the element's state. This also applies the
    // nearest-depth rule, as a render does; an element it has already held
    // at maximum_z is left where it is, so a redraw moves nothing.
    float near_unused, far_unused;
    generate_polygon_vertices(in, poly, &near_unused, &far_unused);
    if (poly->drawn == 0) return;

    const float s = scale;
    float min_x = poly->corners[0][0], max_x = min_x;
    float min_y = poly->corners[0][1], max_y = min_y;
    for (int k = 1; k < 4; ++k) {
        min_x = std::min(min_x, poly->corners[k][0]);
        max_x = std::max(max_x, poly->corners[k][0]);
        min_y = std::min(min_y, poly->corners[k][1]);
        max_y = std::max(max_y, poly->corners[k][1]);
    }
    const int x0 = truncate_bound(min_x), x1 = truncate_bound(max_x);
    const int y0 = truncate_bound(min_y), y1 = truncate_bound(max_y);
    // The bounds are in working pixels but the far limits are those of the
    // full-resolution frame (width x scale): at a reduced preview, elements
    // a little past the image's right and lower edges are still outlined.
    const float right = static_cast<float>(in->width) * s - 1.0f;
    const float bottom = static_cast<float>(in->height) * s - 1.0f;
    if (x1 < 0 || static_cast<float>(x0) > right) return;
    if (y1 < 0 || static_cast<float>(y0) > bottom) return;

    SetColour(65535, 39321, 65535, 65535);
    for (int k = 0; k < 4; ++k) {
        const float* p = poly->corners[k];
        const float* q = poly->corners[(k + 1) & 3];
        DrawLine(p[0] * s * r, p[1] * s, q[0] * s * r, q[1] * s);
    }

    // Side view: projected depth along x (-4000 at the frame's full width),
    // the element's height scaled like the depth, below the image.
    const float w = static_cast<float>(in->width);
    const float h = static_cast<float>(in->height);
    const float o = s * (0.5f * w * s / 4000.0f * h) + 40.0f;
    float side_x[4], side_y[4];
    for (int k = 0; k < 4; ++k) {
        side_x[k] = s * (poly->corners[k][2] * s / -4000.0f * w);
        side_y[k] = s * (poly->corners[k][1] * s / 4000.0f * h) - o;
    }
    SetColour(65535, 26214, 39321, 65535);
    for (int k = 0; k < 4; ++k) {
        const int n = (k + 1) & 3;
        DrawLine(side_x[k], side_y[k], side_x[n], side_y[n]);
    }
}
