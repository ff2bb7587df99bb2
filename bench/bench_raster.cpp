// Rasteriser time: render_polygons on a 1920 x 1080 frame cut by a 100 x 100
// element grid, each element turned and moved by hand (no simulation), in
// High, Med and Low Quality on 1 and 2 threads.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <vector>

#include "effect/paneburst.h"
#include "framework/plugin.h"
#include "sparkhost/host.h"

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

struct Frame {
    std::unique_ptr<Paneburst> fx{new Paneburst};
    ImageQ7 front{kWidth, kHeight}, matte{kWidth, kHeight}, canvas{kWidth, kHeight};
    std::vector<float> map_u, map_v, map_cov;

    Frame() {
        for (long y = 0; y < kHeight; ++y)
            for (long x = 0; x < kWidth; ++x) {
                const auto v = static_cast<std::uint16_t>((x * 37 + y * 101) & 32767);
                front.at(x, y) = PixelQ7{v, static_cast<std::uint16_t>(32767 - v), 16000, 32767};
                matte.at(x, y) = PixelQ7{32767, 32767, 32767, 32767};
            }
        const size_t n = static_cast<size_t>(kWidth) * kHeight;
        map_u.assign(n, 0.0f);
        map_v.assign(n, 0.0f);
        map_cov.assign(n, 0.0f);
        tagINFO& in = fx->info;
        std::memset(&in, 0, sizeof in);
        in.front = &front;
        in.matte_3d = &matte;
        in.lit_back = &canvas;
        in.map_u = map_u.data();
        in.map_v = map_v.data();
        in.map_coverage = map_cov.data();
        in.width = kWidth;
        in.height = kHeight;
        in.foreground_z = -192.0f;
        in.maximum_z = -12.0f;
        in.z_sort = 1;
        in.stack_at_max_z = 1;
        // The pipeline's grid for 100 x 100 elements: tiles of 19 x 10, a
        // tile edge on the image centre, part tiles at the borders.
        in.tile_width = kWidth / 100;
        in.tile_height = kHeight / 100;
        in.grid_x0 = kWidth / 2;
        while (in.grid_x0 > 0) in.grid_x0 -= in.tile_width;
        in.grid_y0 = kHeight / 2;
        while (in.grid_y0 > 0) in.grid_y0 -= in.tile_height;
        in.columns = (kWidth - in.grid_x0 + in.tile_width - 1) / in.tile_width;
        in.rows = (kHeight - in.grid_y0 + in.tile_height - 1) / in.tile_height;
        in.element_count = in.columns * in.rows;
        fx->image_width = kWidth;
        fx->image_height = kHeight;
        for (int r = 0; r < in.rows; ++r)
            for (int c = 0; c < in.columns; ++c) {
                const int i = r * in.columns + c;
                tagPOLYGON& p = fx->polygons[i];
                std::memset(&p, 0, sizeof p);
                p.src_left = in.grid_x0 + c * in.tile_width;
                p.src_right = p.src_left + in.tile_width;
                p.src_top = in.grid_y0 + r * in.tile_height;
                p.src_bottom = p.src_top + in.tile_height;
                p.x = p.src_left + 0.5f * in.tile_width + static_cast<float>((i * 7) % 11 - 5);
                p.y = p.src_top + 0.5f * in.tile_height + static_cast<float>((i * 5) % 9 - 4);
                p.z = -192.0f + static_cast<float>((i * 13) % 40);
                p.angle_x = static_cast<float>((i * 17) % 90) - 45.0f;
                p.angle_y = static_cast<float>((i * 29) % 90) - 45.0f;
                p.angle_z = static_cast<float>((i * 31) % 360);
                p.drawn = 1;
            }
    }
};

void BM_RenderPolygons(benchmark::State& state) {
    const int mode = static_cast<int>(state.range(0));
    const int threads = static_cast<int>(state.range(1));
    sparkhost::Host host;
    host.settings.bands = threads;
    host.settings.threads = threads;
    DLnumProc = threads;
    static Frame* frame = new Frame;  // built once: it is large
    frame->fx->info.render_mode = mode;
    for (auto _ : state) {
        frame->fx->render_polygons(&frame->fx->info, frame->fx->polygons);
        benchmark::DoNotOptimize(frame->canvas.buffer);
    }
    state.SetLabel(mode == 0 ? "High" : mode == 1 ? "Med" : "Low");
    DLnumProc = 1;
}

}  // namespace

BENCHMARK(BM_RenderPolygons)
    ->ArgsProduct({{0, 1, 2}, {1, 2}})
    ->ArgNames({"quality", "threads"})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

BENCHMARK_MAIN();
