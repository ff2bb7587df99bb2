// The simulation alone: a rebuild of a 100 x 100 grid on a 1920 x 1080 frame
// and 50 element steps with every force and the swirl on.
#include <benchmark/benchmark.h>

#include <memory>

#include "effect/grid.h"
#include "effect/paneburst.h"
#include "sparkhost/host.h"

namespace {

void set_up(Paneburst& fx) {
    tagINFO& info = fx.info;
    info.width = 1920;
    info.height = 1080;
    apply_grid(&info, compute_grid(1920, 1080, 100, 100));
    fx.ensure_element_capacity(info.element_count);
    info.foreground_z = -192.0f;
    info.speed_x = 1.0f;
    info.speed_y = -1.0f;
    info.speed_z = 5.0f;
    info.speed_var_x = info.speed_var_y = 0.2f;
    info.speed_var_z = 0.1f;
    info.rot_speed_x = info.rot_speed_y = info.rot_speed_z = 60.0f;
    info.rot_var_x = info.rot_var_y = info.rot_var_z = 1.0f;
    info.use_attraction = info.use_repulsion = info.use_wind = info.use_gravity = info.use_swirl = 1;
    info.attraction_x = 0.8f * 1920;
    info.attraction_y = 0.8f * 1080;
    info.attraction_strength = 3.0f;
    info.repulsion_x = 0.4f * 1920;
    info.repulsion_y = 0.3f * 1080;
    info.repulsion_strength = 3.0f;
    info.gravity = 1.0f;
    info.gravity_cos = 0.0f;
    info.gravity_sin = -1.0f;
    info.wind_source_x = 0.9f * 1920;
    info.wind_source_y = 0.4f * 1080;
    info.wind_dir_x = -1.0f;
    info.wind_dir_y = 0.0f;
    info.wind_spread_cos = 0.0f;  // 180 degrees: everything in front is pushed
    info.wind_speed = 5.0f;
    info.swirl_density = 6.0f;
    info.swirl_magnitude = 2.0f;
    fx.build_random_table(-200);
    fx.gradientTabInit(-200);
}

void BM_Simulation(benchmark::State& state) {
    sparkhost::Host host;
    host.echo_messages = false;
    std::unique_ptr<Paneburst> fx(new Paneburst);
    set_up(*fx);
    for (auto _ : state) {
        fx->initialise_polygons(&fx->info, fx->polygons);
        for (int n = 0; n < 50; ++n) {
            fx->info.frame = n;
            fx->update_polygons(&fx->info, fx->polygons);
        }
        benchmark::DoNotOptimize(fx->polygons[0].x);
    }
    state.SetItemsProcessed(state.iterations() * 50 * fx->info.element_count);
}
BENCHMARK(BM_Simulation)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
