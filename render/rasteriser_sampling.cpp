// The rasteriser's filtered reads of the front clip and the 3D matte.
#include "effect/paneburst.h"
#include "render/sampling.h"

PixelQ7 Paneburst::dotval(ImageQ7* image, int width, int height, float ua, float va, float ub, float vb) {
    return render::filtered_pixel<false>(image, width, height, ua, va, ub, vb);
}

PixelQ7 Paneburst::dotval_matte(ImageQ7* image, int width, int height, float ua, float va, float ub, float vb) {
    return render::filtered_pixel<true>(image, width, height, ua, va, ub, vb);
}

float Paneburst::clamp(float value, float low, float high) { return render::clamp_value(value, low, high); }
