#include "tools/render_job.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <map>
#include <memory>

#include "sparkhost/host.h"
#include "sparkhost/plugin_path.h"
#include "tools/contact_sheet.h"
#include "tools/control_settings.h"
#include "tools/input_clip.h"
#include "tools/keys_file.h"
#include "tools/output_writer.h"
#include "tools/progress.h"
#include "tools/test_card.h"

namespace tools {

namespace {

using sparkhost::Host;

// The plug-in prints its start-up banner on standard output. The tool keeps
// standard output for what it was asked to print (--list-controls), so the
// banner goes to standard error, or nowhere with --quiet.
class BannerToStderr {
public:
    explicit BannerToStderr(bool quiet) {
        std::fflush(stdout);
        saved_ = dup(STDOUT_FILENO);
        const int target = quiet ? open("/dev/null", O_WRONLY) : dup(STDERR_FILENO);
        if (target >= 0) {
            dup2(target, STDOUT_FILENO);
            close(target);
        }
    }
    ~BannerToStderr() {
        std::fflush(stdout);
        if (saved_ >= 0) {
            dup2(saved_, STDOUT_FILENO);
            close(saved_);
        }
    }

private:
    int saved_ = -1;
};

bool exists(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0;
}

// Shows the plug-in's messages since the last call as warnings.
class MessageRelay {
public:
    explicit MessageRelay(Host& host) : host_(host) {}
    void flush() {
        for (; shown_ < host_.messages.size(); ++shown_) {
            const sparkhost::Message& m = host_.messages[shown_];
            warn(std::string(m.kind == sparkhost::Message::Error ? "plug-in error: " : "plug-in: ") + m.text);
        }
    }

private:
    Host& host_;
    std::size_t shown_ = 0;
};

// The four inputs with their host buffers (2 front, 3 back, 4 and 5 mattes).
struct Inputs {
    InputClip clips[4];
    // Shared by every set of inputs of the render.
    std::atomic<bool>* clipped_warned;

    Inputs(const Options& o, std::atomic<bool>* warned)
        : clips{{"front", o.front}, {"back", o.back}, {"2D matte", o.matte_2d}, {"3D matte", o.matte_3d}},
          clipped_warned(warned) {}

    // The frame size and the depth the sources need.
    Status probe(const Options& o, int& width, int& height, int& bits) {
        width = o.card_width;
        height = o.card_height;
        bits = 8;
        for (int i = 0; i < 4; ++i) {
            if (!clips[i].given()) continue;
            ImageInfo info;
            if (Status s = clips[i].probe(o.frames.first, info); !s.ok()) return s;
            if (i == 0) {
                width = info.width;
                height = info.height;
            } else if (info.width != width || info.height != height) {
                return usage_error(clips[i].role() + " " + clips[i].pattern().at(o.frames.first) + " is " +
                                   std::to_string(info.width) + "x" + std::to_string(info.height) + ", the " +
                                   (clips[0].given() ? "front" : "test card") + " is " + std::to_string(width) +
                                   "x" + std::to_string(height) + ": all inputs must have the front's size");
            }
            bits = std::max(bits, info.bits);
        }
        return ok_status();
    }

    // Reads frame `frame` into the four buffers (front, back, 2D and 3D matte).
    Status load(sparkhost::FrameBuffer* const buffers[4], int frame) {
        if (!clips[0].given()) draw_test_card(*buffers[0], frame);
        for (int i = 0; i < 4; ++i) {
            if (!clips[i].given()) continue;
            bool clipped = false;
            if (Status s = clips[i].load(frame, *buffers[i], clipped); !s.ok()) return s;
            if (clipped && !clipped_warned->exchange(true)) {
                warn(clips[i].role() + " " + clips[i].pattern().at(frame) +
                     ": values outside 0..1 clipped (shown once for the whole render)");
            }
        }
        return ok_status();
    }

    // What stands in for the inputs not given.
    void fill_defaults(sparkhost::FrameBuffer* const buffers[4]) {
        if (!clips[1].given()) {
            if (clips[0].given())
                fill_buffer(*buffers[1], 0);
            else
                draw_gradient(*buffers[1]);
        }
        for (int i = 2; i < 4; ++i)
            if (!clips[i].given()) fill_buffer(*buffers[i], 255);
    }
};

// The inputs of one frame: four buffers of the host's size and depth and the
// clips that fill them (each set keeps its own stills). Two sets take turns:
// one is read while the plug-in renders from the other.
struct InputSet {
    Inputs inputs;
    sparkhost::FrameBuffer buffers[4];
    sparkhost::FrameBuffer* targets[4] = {&buffers[0], &buffers[1], &buffers[2], &buffers[3]};

    InputSet(const Options& o, const Host& host, std::atomic<bool>* warned) : inputs(o, warned) {
        for (auto& b : buffers) b.resize(host.settings.width, host.settings.height, host.settings.depth_bits == 12);
        inputs.fill_defaults(targets);
    }
    // Hands the buffers' pixels to the host (ids 2 to 5) or takes them back:
    // a swap of the pixel vectors, nothing is copied.
    void swap_with(Host& host) {
        for (int i = 0; i < 4; ++i) host.buffer(i + 2).bytes.swap(buffers[i].bytes);
    }
};

Status check_outputs(const Options& o) {
    if (!o.out.empty()) {
        const FramePattern out(o.out);
        for (int f = o.frames.first; f <= o.frames.last; ++f)
            if (!o.overwrite && exists(out.at(f)))
                return usage_error(out.at(f) + " exists (frame " + std::to_string(f) +
                                   "); use --overwrite to replace it");
        if (Status s = prepare_folder(out.at(o.frames.first)); !s.ok()) return s;
    }
    if (!o.contact_sheet.empty()) {
        if (!o.overwrite && exists(o.contact_sheet))
            return usage_error(o.contact_sheet + " exists; use --overwrite to replace it");
        if (Status s = prepare_folder(o.contact_sheet); !s.ok()) return s;
    }
    return ok_status();
}

Status apply_controls(Host& host, const Options& o, AutoPreviewOff& auto_preview) {
    if (!o.preset.empty()) apply_preset(host, o.preset);
    for (const std::string& s : o.sets)
        if (Status st = apply_setting(host, s, "--set", &auto_preview); !st.ok()) return st;
    if (!o.quality.empty()) {
        if (host.control(kQualityControl))
            return apply_setting(host, std::to_string(kQualityControl) + "=" + o.quality, "--quality");
        warn("--quality " + o.quality + ": this plug-in has no Render Quality control (" +
             std::to_string(kQualityControl) + "); ignored");
    }
    if (!o.resolution.empty())
        if (Status s = apply_setting(host, std::to_string(kResolutionControl) + "=" + o.resolution, "--resolution");
            !s.ok())
            return s;
    if (!o.blend.empty())
        if (Status s = apply_setting(host, std::to_string(kBlendControl) + "=" + o.blend, "--blend"); !s.ok())
            return s;
    return ok_status();
}

// Runs the frames before the chunk as cheaply as the entry points allow:
// Low Quality runs the same element steps, depth rule and sort as every
// other quality and skips the per-pixel texture mapping; nothing is written
// and no input is read (the simulation depends on the controls and the frame
// size, never on pixel values). The working resolution stays the render's:
// another resolution would change the tile size and rebuild the grid.
Status simulate_run_up(Host& host, const Options& o, int shot_start, Progress& progress, MessageRelay& relay) {
    sparkhost::Control* quality = host.control(kQualityControl);
    double saved_value = 0;
    std::map<float, float> saved_keys;
    if (quality) {
        saved_value = quality->value();
        if (host.animated(kQualityControl)) saved_keys = host.curves().at(kQualityControl);
        host.clear_keys(kQualityControl);
        quality->set_value(kLowQuality);
    }
    Status status;
    for (int f = shot_start; f < o.frames.first && status.ok(); ++f) {
        if (!host.process(static_cast<std::uint32_t>(f)))
            status = failure("frame " + std::to_string(f) + " (run-up): the plug-in returned no result");
        relay.flush();
        progress.preroll_done(f);
    }
    if (quality) {
        quality->set_value(saved_value);
        for (const auto& key : saved_keys) host.set_key(kQualityControl, key.first, key.second);
    }
    return status;
}

}  // namespace

Status run_render(const Options& o) {
    install_interrupt_cleanup();
    // Messages pause so that an artist can read them in the host; here they
    // are printed, and a farm must not sleep.
    setenv("PANEBURST_MESSAGE_PAUSE", "0", 0);

    std::atomic<bool> clipped_warned{false};
    Inputs inputs(o, &clipped_warned);
    int width = 0, height = 0, bits = 8;
    if (!o.list_controls)
        if (Status s = inputs.probe(o, width, height, bits); !s.ok()) return s;
    if (!o.list_controls && !o.save_setup.empty())
        if (Status s = prepare_folder(o.save_setup); !s.ok()) return s;

    const std::string plugin = o.plugin.empty() ? sparkhost::default_plugin_path() : o.plugin;
    std::string error;
    std::unique_ptr<Host> host = Host::load(plugin, error);
    if (!host) return failure(error);
    host->echo_messages = false;
    host->settings.width = o.list_controls ? o.card_width : width;
    host->settings.height = o.list_controls ? o.card_height : height;
    host->settings.depth_bits = o.depth ? o.depth : (bits > 8 ? 12 : 8);
    host->settings.bands = o.bands;
    host->settings.threads = o.threads;
    MessageRelay relay(*host);

    const std::map<int, double> defaults = control_values(*host);
    {
        BannerToStderr banner(o.quiet);
        host->initialise();
    }
    relay.flush();
    if (!o.setup.empty() && !host->load_setup(o.setup, error)) return failure("--setup: " + error);
    AutoPreviewOff auto_preview(*host);
    if (Status s = apply_controls(*host, o, auto_preview); !s.ok()) return s;
    int key_count = 0;
    if (!o.keys.empty())
        if (Status s = load_keys(*host, o.keys, key_count); !s.ok()) return s;
    relay.flush();
    if (o.list_controls) {
        list_controls(*host, defaults);
        return ok_status();
    }
    // Refuse existing frames before anything, the setup included, is written.
    const bool rendering = !o.out.empty() || !o.contact_sheet.empty();
    if (rendering)
        if (Status s = check_outputs(o); !s.ok()) return s;
    if (!o.save_setup.empty()) {
        // The setup holds what the user chose, Auto Preview included; keys
        // are animation, kept in the key file, not in setups.
        auto_preview.restore();
        const bool saved = host->save_setup(o.save_setup, error);
        auto_preview.suspend();
        if (!saved) return failure("--save-setup: " + error);
    }
    if (!rendering) return ok_status();

    // Frames go through three stages at once: frame n + 1 is read and
    // decoded, frame n renders, frame n - 1 is encoded and written. The
    // plug-in renders on this thread, frames strictly in order; the reading
    // and writing run on one helper thread each, on buffers of their own.
    InputSet sets[2] = {InputSet(o, *host, &clipped_warned), InputSet(o, *host, &clipped_warned)};
    // The chunk's first inputs are checked before any simulation time is spent.
    if (Status s = sets[o.frames.first % 2].inputs.load(sets[o.frames.first % 2].targets, o.frames.first); !s.ok())
        return s;

    const int shot_start = o.shot_start >= 0 ? o.shot_start : o.frames.first;
    Progress progress(o.frames.count(), o.frames.first - shot_start, o.quiet);
    if (Status s = simulate_run_up(*host, o, shot_start, progress, relay); !s.ok()) return s;

    ContactSheet sheet(o.thumb_width, o.contact_every);
    const FramePattern out(o.out);
    // The result of the frame being written; the host's result buffer takes
    // the next frame meanwhile.
    sparkhost::FrameBuffer written_result;
    written_result.resize(host->settings.width, host->settings.height, host->settings.depth_bits == 12);
    std::future<Status> reading, writing;
    int writing_frame = 0;
    std::string writing_path;
    // Waits for the frame being written and reports it done.
    auto finish_write = [&]() -> Status {
        if (!writing.valid()) return ok_status();
        Status s = writing.get();
        if (s.ok()) progress.frame_done(writing_frame, writing_path);
        return s;
    };
    // On a failure, the work already started ends before the error is shown.
    auto stop = [&](Status error) -> Status {
        if (reading.valid()) reading.wait();
        const Status written = finish_write();
        return written.ok() ? error : written;
    };
    for (int f = o.frames.first; f <= o.frames.last; ++f) {
        InputSet& current = sets[f % 2];
        if (reading.valid())
            if (Status s = reading.get(); !s.ok()) return stop(s);
        current.swap_with(*host);
        if (f < o.frames.last) {
            InputSet& next = sets[(f + 1) % 2];
            reading = std::async(std::launch::async, [&next, f] { return next.inputs.load(next.targets, f + 1); });
        }
        const bool processed = host->process(static_cast<std::uint32_t>(f)) != nullptr;
        current.swap_with(*host);
        relay.flush();
        if (!processed) return stop(failure("frame " + std::to_string(f) + ": the plug-in returned no result"));
        if (Status s = finish_write(); !s.ok()) return stop(s);
        // The plug-in keeps bits the host buffer already held (the low bits
        // of 12-bit words); every result buffer starts at zero and only ever
        // receives results, so taking turns between two changes no byte.
        host->buffer(1).bytes.swap(written_result.bytes);
        writing_frame = f;
        writing_path = o.out.empty() ? std::string() : out.at(f);
        writing = std::async(std::launch::async, [&, f] {
            if (!writing_path.empty())
                if (Status s = write_frame(written_result, writing_path); !s.ok()) return s;
            if (!o.contact_sheet.empty()) sheet.add(f, written_result);
            return ok_status();
        });
    }
    if (Status s = finish_write(); !s.ok()) return s;
    if (!o.contact_sheet.empty())
        if (Status s = sheet.write(o.contact_sheet); !s.ok()) return s;
    progress.finish();
    auto_preview.restore();
    host->uninitialise();
    relay.flush();
    return ok_status();
}

}  // namespace tools
