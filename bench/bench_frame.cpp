// Frame time through the loaded plug-in: 1920 x 1080 cut into 100 x 100
// elements in flight (the Explosion look), in High, Med and Low Quality, on
// one and two worker threads. The frame is always split into 16 bands, so the
// results do not depend on the thread count.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "sparkhost/host.h"
#include "sparkhost/plugin_path.h"

namespace {

sparkhost::Host& loaded_host() {
    static std::unique_ptr<sparkhost::Host> host;
    if (!host) {
        std::string error;
        host = sparkhost::Host::load(sparkhost::default_plugin_path(), error);
        if (!host) {
            std::fprintf(stderr, "%s\n", error.c_str());
            std::exit(1);
        }
        host->echo_messages = false;
        host->settings.width = 1920;
        host->settings.height = 1080;
        host->settings.bands = 16;
        host->initialise();
        // Reproducible inputs of some texture.
        for (int id = 2; id <= 5; ++id) {
            sparkhost::FrameBuffer& b = host->buffer(id);
            std::uint32_t state = 977u * static_cast<std::uint32_t>(id);
            for (int y = 0; y < b.height; ++y)
                for (int x = 0; x < b.width; ++x)
                    for (int c = 0; c < 3; ++c) {
                        state = state * 1664525u + 1013904223u;
                        b.set(x, y, c, state >> 24);
                    }
        }
        host->control(34)->set_value(0);  // Auto Preview off: only the frames asked for
        host->control(19)->set_value(0);  // Explosion ...
        host->call_callback(19, 0);
        host->control(6)->set_value(100);  // ... on 100 x 100 elements
        host->control(7)->set_value(100);
    }
    return *host;
}

// Rebuilds the grid and steps a few frames, so that the timed frames show
// elements that have moved and turned.
constexpr int kWarmUpSteps = 3;
constexpr int kTimedSteps = 9;

void restart_in_flight(sparkhost::Host& host, std::uint32_t& frame) {
    host.call_callback(29, 0);
    for (int i = 0; i <= kWarmUpSteps; ++i) host.process(frame++);
}

void BM_Frame(benchmark::State& state) {
    sparkhost::Host& host = loaded_host();
    host.settings.threads = static_cast<int>(state.range(1));
    host.control(30)->set_value(static_cast<double>(state.range(0)));  // 0 High, 1 Med, 2 Low
    std::uint32_t frame = 1;
    restart_in_flight(host, frame);
    int steps = 0;
    for (auto _ : state) {
        if (steps == kTimedSteps) {
            // Explosion elements keep flying toward the viewer: start again
            // before they leave, so every timed frame is alike.
            state.PauseTiming();
            restart_in_flight(host, frame);
            steps = 0;
            state.ResumeTiming();
        }
        benchmark::DoNotOptimize(host.process(frame++));
        ++steps;
    }
    state.SetLabel(state.range(0) == 0 ? "High" : state.range(0) == 1 ? "Med" : "Low");
}
BENCHMARK(BM_Frame)
    ->ArgNames({"quality", "threads"})
    ->ArgsProduct({{0, 1, 2}, {1, 2}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
