// Inverse texture mapping: which front-image position a screen pixel of an
// element shows.
#include "effect/paneburst.h"
#include "render/element_geometry.h"

void Paneburst::interpolate_texture_point(tagINFO* info, tagPOLYGON* poly, int x, int y, float* u, float* v, float n,
                                          float f) {
    render::ElementPlane plane;
    plane.setup(poly);
    // The pixel's integer coordinates, no half-pixel offset.
    float p[3] = {static_cast<float>(x), static_cast<float>(y), plane.depth(static_cast<float>(x), static_cast<float>(y))};
    inverse_transform_point(info, poly, p, n, f);
    *u = p[0];
    *v = p[1];
}
