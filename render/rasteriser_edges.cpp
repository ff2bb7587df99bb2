// The element outline as four edge lines: the inside test and the
// anti-aliased coverage of a pixel.
#include "effect/paneburst.h"
#include "render/element_geometry.h"

void Paneburst::find_line_coeffs(tagPOLYGON* poly) {
    for (int k = 0; k < 4; ++k) {
        const float* a = poly->corners[k];
        const float* b = poly->corners[(k + 1) & 3];
        const double dx = static_cast<double>(b[0]) - a[0];
        // A vertical edge gets a huge slope instead of a division by zero; a
        // NaN difference is "not zero" and divides.
        const float slope = dx != 0.0 ? static_cast<float>((static_cast<double>(b[1]) - a[1]) / dx) : 1e10f;
        poly->edges[k][0] = slope;
        poly->edges[k][1] = static_cast<float>(a[1] - static_cast<double>(slope) * a[0]);
    }
}

int Paneburst::inside_polygon_test(tagPOLYGON* poly, int x, int y) {
    render::ElementEdges edges;
    edges.setup(poly);
    return edges.inside(x, y) ? 1 : 0;
}

float Paneburst::edge_antialiased_alpha(tagINFO* info, tagPOLYGON* poly, int x, int y) {
    render::ElementEdges edges;
    edges.setup(poly);
    if (!edges.inside(x, y)) return 0.0f;
    if (info->render_mode != 0) return 32767.0f;
    return edges.high_quality_coverage(x, y);
}
