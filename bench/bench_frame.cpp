// Frame time through the loaded plug-in, with the Explosion look in flight:
//   - 1920 x 1080 cut into 100 x 100 elements in High, Med and Low Quality, on
//     one and two worker threads, with 8-bit and 12-bit host buffers;
//   - 1280 x 720 and 3840 x 2160 (cost should follow the pixels) and 10 x 10
//     and 120 x 120 elements (and not the element count), in Med Quality;
//   - in the same run, a plain copy of the bytes a frame must touch (the
//     five host buffers read, the result written) at each frame size, depth
//     and thread count, through the same host fork.
// At the end a table prints each case's frame time as a multiple of that
// copy: how far it is from what the memory alone allows. The frame is always
// split into 16 bands, so the results do not depend on the thread count.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "sparkhost/host.h"
#include "sparkhost/plugin_path.h"

namespace {

struct Shape {
    int width, height, depth, elements;
    bool operator!=(const Shape& o) const {
        return std::tie(width, height, depth, elements) != std::tie(o.width, o.height, o.depth, o.elements);
    }
};

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
        host->settings.bands = 16;
    }
    return *host;
}

// Sets the host up for a frame shape: buffers of that size and depth filled
// with reproducible texture, the Explosion look on that many elements.
sparkhost::Host& host_for(const Shape& shape) {
    static Shape current{0, 0, 0, 0};
    sparkhost::Host& host = loaded_host();
    if (!(shape != current)) return host;
    current = shape;
    host.settings.width = shape.width;
    host.settings.height = shape.height;
    host.settings.depth_bits = shape.depth;
    host.initialise();
    for (int id = 2; id <= 5; ++id) {
        sparkhost::FrameBuffer& b = host.buffer(id);
        std::uint32_t state = 977u * static_cast<std::uint32_t>(id);
        for (int y = 0; y < b.height; ++y)
            for (int x = 0; x < b.width; ++x)
                for (int c = 0; c < 3; ++c) {
                    state = state * 1664525u + 1013904223u;
                    b.set(x, y, c, shape.depth == 12 ? (state >> 16) & 0xFFF0u : state >> 24);
                }
    }
    host.control(34)->set_value(0);  // Auto Preview off: only the frames asked for
    host.control(19)->set_value(0);  // Explosion ...
    host.call_callback(19, 0);
    host.control(6)->set_value(shape.elements);  // ... on that many elements
    host.control(7)->set_value(shape.elements);
    return host;
}

// Rebuilds the grid and steps a few frames, so that the timed frames show
// elements that have moved and turned.
constexpr int kWarmUpSteps = 3;
constexpr int kTimedSteps = 9;

void restart_in_flight(sparkhost::Host& host, std::uint32_t& frame) {
    host.call_callback(29, 0);
    for (int i = 0; i <= kWarmUpSteps; ++i) host.process(frame++);
}

const char* quality_name(long q) { return q == 0 ? "High" : q == 1 ? "Med" : "Low"; }

std::string shape_key(long width, long height, long depth, long threads) {
    return std::to_string(width) + "x" + std::to_string(height) + " " + std::to_string(depth) + "-bit " +
           std::to_string(threads) + "t";
}

// Arguments: width, height, quality (0 High, 1 Med, 2 Low), threads, depth, elements.
void BM_Frame(benchmark::State& state) {
    const Shape shape{static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                      static_cast<int>(state.range(4)), static_cast<int>(state.range(5))};
    sparkhost::Host& host = host_for(shape);
    host.settings.threads = static_cast<int>(state.range(3));
    host.control(30)->set_value(static_cast<double>(state.range(2)));
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
    state.SetLabel(std::string(quality_name(state.range(2))) + " " + std::to_string(shape.elements) + "x" +
                   std::to_string(shape.elements) + " " +
                   shape_key(shape.width, shape.height, shape.depth, state.range(3)));
}

// The plain copy: each of the five host buffers (four inputs and the result)
// read and written once, in bands on the host's threads.
struct CopyJob {
    std::vector<std::vector<std::uint8_t>>* from;
    std::vector<std::vector<std::uint8_t>>* to;
    long bands;
};
CopyJob g_copy;

extern "C" void copy_band(void* job) {
    const CopyJob& j = *static_cast<const CopyJob*>(job);
    unsigned long k = 0, one = 1;
    sparkMpInfo(&k, &one);
    for (std::size_t i = 0; i < j.from->size(); ++i) {
        const std::size_t n = (*j.from)[i].size();
        const std::size_t a = n * k / j.bands, b = n * (k + 1) / j.bands;
        std::memcpy((*j.to)[i].data() + a, (*j.from)[i].data() + a, b - a);
    }
}

// Arguments: width, height, threads, depth.
void BM_PlainCopy(benchmark::State& state) {
    sparkhost::Host& host = loaded_host();
    const std::size_t bytes =
        static_cast<std::size_t>(state.range(0)) * state.range(1) * 3 * (state.range(3) == 12 ? 2 : 1);
    std::vector<std::vector<std::uint8_t>> from(5, std::vector<std::uint8_t>(bytes, 1)), to = from;
    host.settings.threads = static_cast<int>(state.range(2));
    g_copy = {&from, &to, host.settings.bands};
    for (auto _ : state) {
        sparkMpFork(reinterpret_cast<void (*)()>(&copy_band), 1, static_cast<void*>(&g_copy));
        benchmark::DoNotOptimize(to[0].data());
    }
    state.SetLabel("copy " + shape_key(state.range(0), state.range(1), state.range(3), state.range(2)));
}

void frame_cases(benchmark::internal::Benchmark* b) {
    for (int depth : {8, 12})
        for (int q : {0, 1, 2})
            for (int t : {1, 2}) b->Args({1920, 1080, q, t, depth, 100});
    for (int t : {1, 2}) {
        b->Args({1280, 720, 1, t, 8, 100});
        b->Args({3840, 2160, 1, t, 8, 100});
        b->Args({1920, 1080, 1, t, 8, 10});
        b->Args({1920, 1080, 1, t, 8, 120});
    }
}
BENCHMARK(BM_Frame)
    ->ArgNames({"w", "h", "quality", "threads", "depth", "elements"})
    ->Apply(frame_cases)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()  // CPU: the work of all threads, which a busy machine does not inflate
    ->UseRealTime();

void copy_cases(benchmark::internal::Benchmark* b) {
    for (int t : {1, 2}) {
        for (int depth : {8, 12}) b->Args({1920, 1080, t, depth});
        b->Args({1280, 720, t, 8});
        b->Args({3840, 2160, t, 8});
    }
}
BENCHMARK(BM_PlainCopy)
    ->ArgNames({"w", "h", "threads", "depth"})
    ->Apply(copy_cases)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

// Prints as usual, then each frame case as a multiple of the plain copy of
// its size, depth and thread count.
class MultipleReporter : public benchmark::ConsoleReporter {
public:
    // Colours only on a terminal, so that scripts can read the lines.
    MultipleReporter() : ConsoleReporter(isatty(STDOUT_FILENO) ? OO_Defaults : OO_None) {}
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& r : runs) {
            if (r.run_type != Run::RT_Iteration || r.iterations == 0) continue;
            const Times t{r.GetAdjustedRealTime(), r.GetAdjustedCPUTime()};
            const std::string& label = r.report_label;
            if (label.rfind("copy ", 0) == 0)
                copies_[label.substr(5)] = t;
            else
                frames_.push_back({label, t});
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        std::printf("\n%-36s %10s %10s %8s %10s %10s %8s\n", "frame", "ms", "copy ms", "x copy", "cpu ms",
                    "copy cpu", "x copy");
        for (const auto& f : frames_) {
            // The label ends with the shape key after "Quality NxN ".
            const std::string key = f.first.substr(f.first.find(' ', f.first.find(' ') + 1) + 1);
            const auto c = copies_.find(key);
            if (c == copies_.end()) continue;
            std::printf("%-36s %10.2f %10.2f %8.1f %10.2f %10.2f %8.1f\n", f.first.c_str(), f.second.real,
                        c->second.real, f.second.real / c->second.real, f.second.cpu, c->second.cpu,
                        f.second.cpu / c->second.cpu);
        }
    }

private:
    struct Times {
        double real, cpu;
    };
    std::map<std::string, Times> copies_;
    std::vector<std::pair<std::string, Times>> frames_;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    MultipleReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
