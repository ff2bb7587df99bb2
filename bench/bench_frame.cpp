// Frame time through the loaded plug-in.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

#include "sparkhost/host.h"
#include "sparkhost/plugin_path.h"

namespace {

sparkhost::Host& host_for(int width, int height, int threads) {
    static std::unique_ptr<sparkhost::Host> host;
    if (!host) {
        std::string error;
        host = sparkhost::Host::load(sparkhost::default_plugin_path(), error);
        if (!host) {
            std::fprintf(stderr, "%s\n", error.c_str());
            std::exit(1);
        }
        host->echo_messages = false;
    }
    host->settings.width = width;
    host->settings.height = height;
    host->settings.bands = 16;
    host->settings.threads = threads;
    host->initialise();
    return *host;
}

void BM_Frame(benchmark::State& state) {
    auto& host = host_for(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                          static_cast<int>(state.range(2)));
    std::uint32_t frame = 1;
    for (auto _ : state) benchmark::DoNotOptimize(host.process(frame++));
}
BENCHMARK(BM_Frame)->Args({1920, 1080, 1})->Args({1920, 1080, 2})->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
