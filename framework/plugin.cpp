#include "framework/plugin.h"

#include <cstdint>
#include <cstdio>

#include "framework/convert.h"
#include "abi/spark_abi.h"

Band band_of(long k, long lines, long processors) {
    const long per = lines / processors;
    const long first = k * per;
    // The last band takes the remainder.
    const long last = (k < processors - 1) ? first + per - 1 : lines - 1;
    return {first, last};
}

namespace {
// Which band the calling processor runs: the integer quotient of the pair
// the host reports for it.
long current_band() {
    unsigned long a = 0, b = 1;
    sparkMpInfo(&a, &b);
    return b ? static_cast<long>(a / b) : 0;
}
}  // namespace

// The per-processor trampolines handed to the host's fork. Every argument is
// a pointer-sized value.
extern "C" void process_func(void* func, void* object, std::intptr_t lines, std::intptr_t processors) {
    const Band band = band_of(current_band(), lines, processors);
    PluginQ7* plugin = static_cast<PluginQ7*>(object);
    (plugin->*(*static_cast<PluginQ7::MpFunc*>(func)))(band.first, band.last);
}

extern "C" void process_func_img(void* func, void* object, std::intptr_t lines, std::intptr_t processors) {
    const Band band = band_of(current_band(), lines, processors);
    ImageQ7* image = static_cast<ImageQ7*>(object);
    (image->*(*static_cast<ImageQ7::MpFunc*>(func)))(band.first, band.last);
}

extern "C" void process_func_job(void* worker, void* job, std::intptr_t lines, std::intptr_t processors) {
    const Band band = band_of(current_band(), lines, processors);
    (*static_cast<BandWorker*>(worker))(job, band.first, band.last);
}

int run_in_bands(BandWorker worker, void* job, long lines) {
    BandWorker local = worker;
    const int processors = DLnumProc < 1 ? 1 : DLnumProc;
    return sparkMpFork(reinterpret_cast<void (*)()>(&process_func_job), 4, static_cast<void*>(&local), job,
                       static_cast<std::intptr_t>(lines), static_cast<std::intptr_t>(processors));
}

int PluginQ7::MultiProcess(MpFunc func, long lines) {
    MpFunc local = func;
    return sparkMpFork(reinterpret_cast<void (*)()>(&process_func), 4, static_cast<void*>(&local),
                       static_cast<void*>(this), static_cast<std::intptr_t>(lines),
                       static_cast<std::intptr_t>(DLnumProc));
}

int ImageQ7::MultiProcess(MpFunc func, long lines) {
    MpFunc local = func;
    return sparkMpFork(reinterpret_cast<void (*)()>(&process_func_img), 4, static_cast<void*>(&local),
                       static_cast<void*>(this), static_cast<std::intptr_t>(lines),
                       static_cast<std::intptr_t>(DLnumProc));
}

void PluginQ7::execute_library_mp_func(long first, long last) {
    lib_func(lib_arg, static_cast<int>(first), static_cast<int>(last));
}

int lib_mp_exec(void* plugin, PluginQ7::LibFunc func, int lines, void* argument) {
    PluginQ7* p = static_cast<PluginQ7*>(plugin);
    p->lib_func = func;
    p->lib_arg = argument;
    return p->MultiProcess(&PluginQ7::execute_library_mp_func, lines);
}

int lib_abort_render(void* plugin) { return static_cast<PluginQ7*>(plugin)->AbortRender(); }

float* PluginQ7::GetTrackData(SourceQ7* source, double at_frame) {
    const long w = source->image->width;
    const long h = source->image->height;
    ImageQ7* scratch = new ImageQ7(w, h);
    float* data = new float[w * h * 2];
    source->GetValue(2.0 * at_frame, scratch);
    track_data = data;
    track_image = scratch;
    MultiProcess(&PluginQ7::mp_ImgToTV, h);
    delete scratch;
    track_image = nullptr;
    return data;
}

void PluginQ7::mp_ImgToTV(long first, long last) {
    const long w = track_image->width;
    for (long y = first; y <= last; ++y) {
        const PixelQ7* row = track_image->rows[y];
        for (long x = 0; x < w; ++x) {
            const PixelQ7& p = row[x];
            const auto u = static_cast<std::int16_t>(static_cast<std::uint16_t>((p.r >> 7) | (p.g << 1)));
            const auto v = static_cast<std::int16_t>(static_cast<std::uint16_t>((p.b >> 7) | (p.a << 1)));
            track_data[(y * w + x) * 2] = u * 0.00390625f;
            track_data[(y * w + x) * 2 + 1] = v * 0.00390625f;
        }
    }
}

void SourceQ7::GetValue(double at_frame, ImageQ7*& target) {
    const int w = DLwidth;
    const int h = DLheight;
    const int s = DLscalesr;
    const float aspect = static_cast<float>(target->aspect);
    if (!temp_buffer) {
        static const char kText[] =
            "Random Frame Access requested via GetValue(), but no temp buf allocated. (DLRandom in .plugin?)\n";
        PrintError(kText);
        return;
    }
    const int f = static_cast<int>(at_frame + 0.5);
    sparkGetFrame(clip, f, host_buffer->pixels);
    target = deep ? ConvertFromDLImage12(host_buffer->pixels, w, h, aspect, s, target, 1)
                  : ConvertFromDLImage8(host_buffer->pixels, w, h, aspect, s, target, 1);
}
