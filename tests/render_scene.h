// A small hand-built scene for the renderer's unit tests: an effect object
// with its record filled directly, images of its own, and elements placed
// without the simulation.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "effect/paneburst.h"
#include "framework/plugin.h"
#include "sparkhost/host.h"

namespace scene {

inline std::uint16_t pattern(int x, int y, int c) {
    return static_cast<std::uint16_t>((x * 977 + y * 3119 + c * 7001 + 13) % 32768);
}

inline void fill_pattern(ImageQ7* img, int salt) {
    for (long y = 0; y < img->height; ++y)
        for (long x = 0; x < img->width; ++x) {
            PixelQ7& p = img->at(x, y);
            p.r = pattern(x, y, 0 + salt);
            p.g = pattern(x, y, 1 + salt);
            p.b = pattern(x, y, 2 + salt);
            p.a = pattern(x, y, 3 + salt);
        }
}

inline void fill(ImageQ7* img, std::uint16_t v) {
    for (long y = 0; y < img->height; ++y)
        for (long x = 0; x < img->width; ++x) img->at(x, y) = PixelQ7{v, v, v, v};
}

// Owns the images and maps of a frame and the effect object drawing it.
struct Scene {
    sparkhost::Host host;
    std::unique_ptr<Paneburst> fx{new Paneburst};
    std::unique_ptr<ImageQ7> front, back, matte2, matte3, result, canvas;
    std::vector<float> map_u, map_v, map_cov;
    int w, h;

    Scene(int width, int height, int bands = 1) : w(width), h(height) {
        set_bands(bands);
        front.reset(new ImageQ7(w, h));
        back.reset(new ImageQ7(w, h));
        matte2.reset(new ImageQ7(w, h));
        matte3.reset(new ImageQ7(w, h));
        result.reset(new ImageQ7(w, h));
        canvas.reset(new ImageQ7(w, h));
        fill_pattern(front.get(), 0);
        fill_pattern(back.get(), 5);
        fill(matte2.get(), 0);
        fill(matte3.get(), 32767);
        fill(result.get(), 0);
        tagINFO& in = fx->info;
        std::memset(&in, 0, sizeof in);
        in.front = front.get();
        in.back = back.get();
        in.matte_2d = matte2.get();
        in.matte_3d = matte3.get();
        in.result = result.get();
        in.lit_back = canvas.get();
        in.width = w;
        in.height = h;
        in.foreground_z = -192.0f;
        in.maximum_z = -12.0f;
        in.render_mode = 1;
        in.gloss = 1.0f;
        fx->image_width = w;
        fx->image_height = h;
        reset_maps();
        copy_back_to_canvas();
    }
    ~Scene() { DLnumProc = 1; }

    void set_bands(int bands) {
        host.settings.bands = bands;
        DLnumProc = bands;
    }

    void reset_maps() {
        map_u.assign(static_cast<size_t>(w) * h, 0.0f);
        map_v.assign(static_cast<size_t>(w) * h, 0.0f);
        map_cov.assign(static_cast<size_t>(w) * h, 0.0f);
        fx->info.map_u = map_u.data();
        fx->info.map_v = map_v.data();
        fx->info.map_coverage = map_cov.data();
    }

    void copy_back_to_canvas() {
        for (long y = 0; y < h; ++y)
            for (long x = 0; x < w; ++x) canvas->at(x, y) = back->at(x, y);
    }

    // A grid of tiles of tw x th starting at (0, 0), each element at rest on
    // its own tile at the foreground depth.
    void grid(int tw, int th) {
        tagINFO& in = fx->info;
        in.tile_width = tw;
        in.tile_height = th;
        in.columns = (w + tw - 1) / tw;
        in.rows = (h + th - 1) / th;
        in.element_count = in.columns * in.rows;
        for (int r = 0; r < in.rows; ++r)
            for (int c = 0; c < in.columns; ++c) place(r * in.columns + c, c * tw, r * th);
    }

    tagPOLYGON& place(int index, int left, int top) {
        tagINFO& in = fx->info;
        tagPOLYGON& p = fx->polygons[index];
        std::memset(&p, 0, sizeof p);
        p.src_left = left;
        p.src_right = left + in.tile_width;
        p.src_top = top;
        p.src_bottom = top + in.tile_height;
        p.x = static_cast<float>(left + 0.5 * in.tile_width);
        p.y = static_cast<float>(top + 0.5 * in.tile_height);
        p.z = in.foreground_z;
        p.drawn = 1;
        return p;
    }

    void render() { fx->render_polygons(&fx->info, fx->polygons); }

    std::vector<PixelQ7> canvas_pixels() const {
        return std::vector<PixelQ7>(canvas->buffer, canvas->buffer + static_cast<size_t>(w) * h);
    }
};

inline bool same(const PixelQ7& a, const PixelQ7& b) { return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a; }

}  // namespace scene
