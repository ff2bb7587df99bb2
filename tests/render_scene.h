// A hand-built scene for the renderer's unit tests: the effect's record filled
// directly, images of its own, and elements placed without the simulation.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "effect/paneburst.h"
#include "framework/plugin.h"
#include "sparkhost/host.h"

namespace scene {

inline void fill_pattern(ImageQ7* img, int salt) {
    const long w = img->width;
    auto v = [w](long i, int c) { return std::uint16_t((i % w * 977 + i / w * 3119 + c * 7001 + 13) % 32768); };
    for (long i = 0; i < img->width * img->height; ++i)
        img->buffer[i] = {v(i, salt), v(i, salt + 1), v(i, salt + 2), v(i, salt + 3)};
}

inline void fill(ImageQ7* img, std::uint16_t v) {
    std::fill(img->buffer, img->buffer + img->width * img->height, PixelQ7{v, v, v, v});
}

inline bool same(const PixelQ7* a, const PixelQ7* b, size_t n = 1) { return std::memcmp(a, b, n * sizeof *a) == 0; }

// Owns the images and maps of a frame (Med Quality, no matte, no light) and
// the effect object drawing it; the canvas starts as a copy of the back.
struct Scene {
    sparkhost::Host host;
    std::unique_ptr<Paneburst> fx{new Paneburst};
    tagINFO& in = fx->info;
    std::unique_ptr<ImageQ7> front, back, matte3, result, canvas;
    std::vector<float> maps;
    int w, h;
    Scene(int width, int height, int bands = 1) : w(width), h(height) {
        host.settings.bands = DLnumProc = bands;
        for (auto* img : {&front, &back, &matte3, &result, &canvas}) img->reset(new ImageQ7(w, h));
        fill_pattern(front.get(), 0);
        fill_pattern(back.get(), 5);
        fill(matte3.get(), 32767), fill(result.get(), 0);
        std::copy(back->buffer, back->buffer + w * h, canvas->buffer);
        maps.assign(3 * static_cast<size_t>(w) * h, 0.0f);
        in.map_u = maps.data(), in.map_v = in.map_u + w * h, in.map_coverage = in.map_v + w * h;
        in.front = front.get(), in.back = back.get(), in.result = result.get(), in.lit_back = canvas.get();
        in.matte_3d = matte3.get();
        in.width = fx->image_width = w, in.height = fx->image_height = h;
        in.foreground_z = -192.0f, in.maximum_z = -12.0f, in.render_mode = 1, in.gloss = 1.0f;
    }
    ~Scene() { DLnumProc = 1; }

    void light(float x, float y, float z, float brightness, int r, int g, int b) {
        in.use_light = 1, in.light_x = x, in.light_y = y, in.light_z = z, in.light_brightness = brightness;
        in.light_r = r, in.light_g = g, in.light_b = b;
    }
    // grid() places elements of tw x th at rest on their tiles, row by row
    // from (0, 0), at the foreground depth; place() puts one on a tile.
    void grid(int tw, int th) {
        in.tile_width = tw, in.tile_height = th;
        in.columns = (w + tw - 1) / tw, in.rows = (h + th - 1) / th;
        in.element_count = in.columns * in.rows;
        for (int i = 0; i < in.element_count; ++i) place(i, i % in.columns * tw, i / in.columns * th);
    }
    tagPOLYGON& place(int index, int left, int top) {
        tagPOLYGON& p = fx->polygons[index] = tagPOLYGON{};
        p.src_left = left, p.src_right = left + in.tile_width, p.src_top = top, p.src_bottom = top + in.tile_height;
        p.x = left + 0.5f * in.tile_width, p.y = top + 0.5f * in.tile_height, p.z = in.foreground_z, p.drawn = 1;
        return p;
    }
    void render() { fx->render_polygons(&in, fx->polygons); }
};

}  // namespace scene
