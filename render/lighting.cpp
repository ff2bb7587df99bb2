// The two light factors: one for a (possibly tilted) element, one for a flat
// plane facing the viewer. Both are taken in screen space (pixel x, pixel y,
// projected depth).
#include "effect/paneburst.h"
#include "render/element_geometry.h"
#include "render/light_term.h"

float Paneburst::add_light(tagINFO* info, tagPOLYGON* poly, float x, float y) {
    render::ElementPlane plane;
    plane.setup(poly);
    render::ElementLight light;
    light.setup(plane);
    return light.factor(info, x, y, plane.depth(x, y));
}

float Paneburst::add_background_light(tagINFO* info, int x, int y, int use_background_z) {
    return render::background_factor(info, x, y, use_background_z != 0 ? info->background_z : info->foreground_z);
}
