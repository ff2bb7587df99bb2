// Drawing one element into its clipped box of the canvas, in two passes.
//
// Pass 1 finds for every pixel of the box whether the element covers it, how
// much (coverage, anti-aliased in High Quality) and which front-image
// position it shows. Pass 2 samples the front clip and the 3D matte there,
// lights the colour and blends it over the canvas. Coverage and positions go
// through the frame's shared maps, which pass 2 also reads just right of and
// below the pixel to size its footprint in the front image.
//
// Quality, matte and light are fixed per frame; each combination gets its own
// instantiation of the loops, chosen once per element.
#include <cstdint>

#include "effect/paneburst.h"
#include "render/element_geometry.h"
#include "render/inverse_chain.h"
#include "render/light_term.h"
#include "render/row_mapping.h"
#include "render/sampling.h"

namespace {

enum class Quality { High, Med, Low };
enum class Matte { Off, On, Inverted };

// Everything about one element that the pixel loops need, computed once.
struct ElementRaster {
    const tagINFO* info;
    render::ElementEdges edges;
    render::ElementPlane plane;
    render::InverseChain chain;
    render::ElementLight light;
};

template <Quality Q>
void first_pass(const ElementRaster& e, int x0, int y0, int x1, int y1) {
    const tagINFO* info = e.info;
    const long width = info->width;
    for (int y = y0; y <= y1; ++y) {
        float* map_u = info->map_u + y * width;
        float* map_v = info->map_v + y * width;
        float* coverage = info->map_coverage + y * width;
        // Each edge test is monotone along a row (its arithmetic only rounds
        // monotonically in x), so the covered pixels of a row form one run:
        // find its ends with the exact test, then fill the run untested.
        int xl = x0;
        while (xl <= x1 && !e.edges.inside(xl, y)) coverage[xl++] = 0.0f;
        int xr = x1;
        while (xr >= xl && !e.edges.inside(xr, y)) coverage[xr--] = 0.0f;
        if (Q == Quality::Low) {
            // Not texture-mapped: the element shows the front image at the
            // place it currently covers.
            for (int x = xl; x <= xr; ++x) {
                map_u[x] = static_cast<float>(x);
                map_v[x] = static_cast<float>(y);
            }
        } else if (xr >= xl) {
            render::map_row(e.plane, e.chain, y, xl, xr - xl + 1, map_u + xl, map_v + xl);
        }
        for (int x = xl; x <= xr; ++x)
            coverage[x] = Q == Quality::High ? e.edges.high_quality_coverage(x, y) : 32767.0f;
    }
}

inline float min4(float a, float b, float c, float d) {
    float m = a < b ? a : b;
    m = m < c ? m : c;
    return m < d ? m : d;
}

inline float max4(float a, float b, float c, float d) {
    float m = a > b ? a : b;
    m = m > c ? m : c;
    return m > d ? m : d;
}

// canvas = (source t + canvas (32767 - t)) / 32767, formed in double.
inline std::uint16_t blend_channel(unsigned source, unsigned canvas, float t) {
    const double v = (static_cast<double>(source) * t + static_cast<double>(canvas) * (32767.0 - t)) / 32767.0;
    return render::to_channel(static_cast<long>(v));
}

template <Quality Q, Matte M, bool Lit>
void second_pass(const ElementRaster& e, int x0, int y0, int x1, int y1, int last) {
    const tagINFO* info = e.info;
    const int width = info->width;
    const int height = info->height;
    const float* map_u = info->map_u;
    const float* map_v = info->map_v;
    const float* coverage = info->map_coverage;
    for (int y = y0; y <= y1; ++y) {
        PixelQ7* canvas = info->lit_back->rows[y];
        // The row below belongs to this band only up to its last line.
        const bool below_ok = y < last;
        for (int x = x0; x <= x1; ++x) {
            const long i = static_cast<long>(y) * width + x;
            const float a = coverage[i];
            if (a == 0.0f) continue;
            const float u = map_u[i];
            const float v = map_v[i];

            float ua = u, va = v, ub = u, vb = v;
            if (Q == Quality::High) {
                const bool right_ok = x < width - 1;
                const bool diag_ok = below_ok && right_ok;
                const float below = below_ok ? coverage[i + width] : a;
                const float right = right_ok ? coverage[i + 1] : a;
                const float diag = diag_ok ? coverage[i + width + 1] : a;
                if (below != 0.0f && right != 0.0f && diag != 0.0f) {
                    // Interior: the footprint spans this pixel's position and
                    // those of its right, lower and diagonal neighbours.
                    const float ud = below_ok ? map_u[i + width] : u;
                    const float vd = below_ok ? map_v[i + width] : v;
                    const float ur = right_ok ? map_u[i + 1] : u;
                    const float vr = right_ok ? map_v[i + 1] : v;
                    const float ug = diag_ok ? map_u[i + width + 1] : u;
                    const float vg = diag_ok ? map_v[i + width + 1] : v;
                    ua = min4(u, ud, ur, ug);
                    ub = max4(u, ud, ur, ug);
                    va = min4(v, vd, vr, vg);
                    vb = max4(v, vd, vr, vg);
                } else {
                    // Edge: a unit footprint at the pixel's own position.
                    ub = u + 1.0f;
                    vb = v + 1.0f;
                }
            }

            int m = 32767;
            if (M != Matte::Off) {
                if (Q == Quality::High) {
                    m = render::filtered_pixel<true>(info->matte_3d, width, height, ua, va, ub, vb).r;
                } else {
                    m = info->matte_3d->rows[render::nearest_index(v, height)][render::nearest_index(u, width)].r;
                }
                if (M == Matte::Inverted) m = 32767 - m;
            }

            PixelQ7 s;
            if (Q == Quality::High) {
                s = render::filtered_pixel<false>(info->front, width, height, ua, va, ub, vb);
            } else {
                s = info->front->rows[render::nearest_index(v, height)][render::nearest_index(u, width)];
            }

            if (Lit) {
                const float fx = static_cast<float>(x);
                const float fy = static_cast<float>(y);
                const float f = e.light.factor(info, fx, fy, e.plane.depth(fx, fy));
                render::light_pixel(info, render::light_strength(info, f), &s.r, &s.g, &s.b);
            }

            const float t = static_cast<float>(static_cast<double>(a) * m / 32767.0);
            PixelQ7& c = canvas[x];
            if (t == 32767.0f) {
                // Full weight: (s 32767 + c 0) / 32767 is s exactly.
                c.r = render::to_channel(s.r);
                c.g = render::to_channel(s.g);
                c.b = render::to_channel(s.b);
                continue;
            }
            c.r = blend_channel(s.r, c.r, t);
            c.g = blend_channel(s.g, c.g, t);
            c.b = blend_channel(s.b, c.b, t);
        }
    }
}

template <Quality Q, Matte M, bool Lit>
void render_element(const ElementRaster& e, int x0, int y0, int x1, int y1, int last) {
    first_pass<Q>(e, x0, y0, x1, y1);
    second_pass<Q, M, Lit>(e, x0, y0, x1, y1, last);
}

typedef void (*ElementRenderer)(const ElementRaster&, int, int, int, int, int);

template <Quality Q, Matte M>
ElementRenderer pick_light(bool lit) {
    return lit ? &render_element<Q, M, true> : &render_element<Q, M, false>;
}

template <Quality Q>
ElementRenderer pick_matte(const tagINFO* info, bool lit) {
    if (info->use_matte_3d == 0) return pick_light<Q, Matte::Off>(lit);
    if (info->invert_matte_3d == 0) return pick_light<Q, Matte::On>(lit);
    return pick_light<Q, Matte::Inverted>(lit);
}

// 0 High, 2 Low; every other mode draws as Med Quality.
Quality quality_of(const tagINFO* info) {
    if (info->render_mode == 0) return Quality::High;
    if (info->render_mode == 2) return Quality::Low;
    return Quality::Med;
}

}  // namespace

void Paneburst::polygon_render(tagINFO* in, tagPOLYGON* poly, int x0, int y0, int x1, int y1, int last) {
    const Quality quality = quality_of(in);
    const bool lit = in->use_light != 0 && in->light_brightness > 0.0f;

    ElementRaster e;
    e.info = in;
    e.edges.setup(poly);
    if (quality != Quality::Low || lit) e.plane.setup(poly);
    if (quality != Quality::Low) e.chain.build(in, poly, poly->z_near, poly->z_far);
    if (lit) e.light.setup(e.plane);

    ElementRenderer draw = nullptr;
    switch (quality) {
        case Quality::High: draw = pick_matte<Quality::High>(in, lit); break;
        case Quality::Med: draw = pick_matte<Quality::Med>(in, lit); break;
        case Quality::Low: draw = pick_matte<Quality::Low>(in, lit); break;
    }
    draw(e, x0, y0, x1, y1, last);
}
