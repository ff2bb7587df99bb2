#include "tools/render_job.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <map>
#include <memory>
#include <new>
#include <utility>

#include "sparkhost/host.h"
#include "tools/contact_sheet.h"
#include "tools/control_settings.h"
#include "tools/output_writer.h"
#include "tools/progress.h"
#include "tools/session.h"

namespace tools {

namespace {

using sparkhost::Host;

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

// The frames of the range that already exist, found with one listing of the
// output folder (a check per frame would take minutes on long ranges).
Status check_existing_frames(const Options& o) {
    const auto slash = o.out.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : o.out.substr(0, slash + 1);
    const FramePattern name(slash == std::string::npos ? o.out : o.out.substr(slash + 1));
    int first_found = -1;
    if (DIR* dir = opendir(folder.c_str())) {
        while (const dirent* entry = readdir(dir)) {
            int f = -1;
            if (name.frame_of(entry->d_name, f) && f >= o.frames.first && f <= o.frames.last &&
                (first_found < 0 || f < first_found))
                first_found = f;
        }
        closedir(dir);
    }
    if (first_found < 0) return ok_status();
    const FramePattern out(o.out);
    return usage_error(out.at(first_found) + " exists (frame " + std::to_string(first_found) +
                       "); use --overwrite to replace it");
}

}  // namespace

Status check_outputs(const Options& o) {
    if (!o.out.empty()) {
        const FramePattern out(o.out);
        if (!o.overwrite && !out.is_sequence() && exists(o.out))
            return usage_error(o.out + " exists; use --overwrite to replace it");
        if (!o.overwrite && out.is_sequence())
            if (Status s = check_existing_frames(o); !s.ok()) return s;
        if (Status s = prepare_folder(out.at(o.frames.first)); !s.ok()) return s;
    }
    if (!o.contact_sheet.empty()) {
        if (!o.overwrite && exists(o.contact_sheet))
            return usage_error(o.contact_sheet + " exists; use --overwrite to replace it");
        if (Status s = prepare_folder(o.contact_sheet); !s.ok()) return s;
    }
    return ok_status();
}

Status probe_frame_format(const Options& o, int& width, int& height, int& depth_bits) {
    int bits = 8;
    if (Status s = Inputs(o).probe(o, width, height, bits); !s.ok()) return s;
    depth_bits = o.depth ? o.depth : (bits > 8 ? 12 : 8);
    return ok_status();
}

namespace {

// A matte given while its Use control stays off all shot long is not used.
void warn_unused_mattes(Host& host, const Options& o) {
    const std::pair<int, const std::string*> mattes[] = {{kUse2DMatteControl, &o.matte_2d},
                                                         {kUse3DMatteControl, &o.matte_3d}};
    for (const auto& [number, file] : mattes) {
        const sparkhost::Control* use = host.control(number);
        if (file->empty() || !use) continue;
        bool off = use->value() == 0;
        if (host.animated(number)) {
            off = true;
            for (const auto& key : host.curves().at(number)) off = off && key.second == 0;
        }
        if (off)
            warn(std::string(number == kUse2DMatteControl ? "--matte2d " : "--matte3d ") + *file + ": \"" +
                 use->label() + "\" is off, so the matte is not used (--set \"" + use->label() + "=on\")");
    }
}

// The memory a frame of the render needs, for the check before the first
// frame and the message when it runs out.
struct FrameMemory {
    // Besides the host's five buffers, at most: the plug-in's images of the
    // four inputs, the result and its canvas (8 bytes a pixel each) and its
    // three per-pixel maps (4 bytes each), or room to read or write one file.
    static constexpr double kWorkBytesPerPixel = 72;
    int width = 0, height = 0;
    bool deep = false;
    int frame = -1;  // the frame being worked on; -1 before the first

    double host_bytes() const { return 5.0 * width * height * (deep ? 6 : 3); }
    double work_bytes() const { return kWorkBytesPerPixel * width * height + (64 << 20); }
    std::string needs() const {
        char gib[32];
        std::snprintf(gib, sizeof gib, "%.1f", (host_bytes() + work_bytes()) / (1 << 30));
        return "a " + std::to_string(width) + "x" + std::to_string(height) + " frame needs about " + gib +
               " GiB of memory";
    }
    // The plug-in stops the process when an image cannot be allocated: the
    // room for a frame's work is claimed once before anything is written.
    Status reserve() const {
        void* volatile room = std::malloc(static_cast<std::size_t>(work_bytes()));  // not optimised away
        std::free(room);
        return room ? ok_status() : failure("not enough memory: " + needs());
    }
};

// The inputs of one frame: four buffers of the host's size and depth and the
// clips that fill them (each set keeps its own stills). Two sets take turns:
// one is read while the plug-in renders from the other.
struct InputSet {
    Inputs inputs;
    sparkhost::FrameBuffer buffers[4];
    sparkhost::FrameBuffer* targets[4] = {&buffers[0], &buffers[1], &buffers[2], &buffers[3]};

    InputSet(const Options& o, const Host& host, std::shared_ptr<std::atomic<bool>> warned)
        : inputs(o, std::move(warned)) {
        for (auto& b : buffers) b.resize(host.settings.width, host.settings.height, host.settings.depth_bits == 12);
        inputs.fill_defaults(targets);
    }
    // Hands the buffers' pixels to the host (ids 2 to 5) or takes them back:
    // a swap of the pixel vectors, nothing is copied.
    void swap_with(Host& host) {
        for (int i = 0; i < 4; ++i) host.buffer(i + 2).bytes.swap(buffers[i].bytes);
    }
};

Status render(const Options& o, FrameMemory& memory) {
    Inputs inputs(o);
    int width = 0, height = 0, bits = o.depth ? o.depth : 8;
    if (!o.list_controls)
        if (Status s = probe_frame_format(o, width, height, bits); !s.ok()) return s;
    if (!o.list_controls && !o.save_setup.empty())
        if (Status s = prepare_folder(o.save_setup); !s.ok()) return s;

    std::unique_ptr<Host> host;
    if (Status s = o.list_controls ? load_plugin(o, o.card_width, o.card_height, 8, host)
                                   : load_plugin(o, width, height, bits, host);
        !s.ok())
        return s;
    memory.width = host->settings.width;
    memory.height = host->settings.height;
    memory.deep = host->settings.depth_bits == 12;
    MessageRelay relay(*host);

    const std::map<int, double> defaults = control_values(*host);
    {
        BannerToStderr banner(o.quiet);
        host->initialise();
    }
    relay.flush();
    AutoPreviewOff auto_preview(*host);
    if (Status s = set_up_controls(*host, o, auto_preview); !s.ok()) return s;
    relay.flush();
    if (o.list_controls) {
        list_controls(*host, defaults);
        return ok_status();
    }
    warn_unused_mattes(*host, o);
    // Refuse existing frames before anything, the setup included, is written.
    const bool rendering = !o.out.empty() || !o.contact_sheet.empty();
    if (rendering) {
        if (Status s = check_outputs(o); !s.ok()) return s;
        if (Status s = memory.reserve(); !s.ok()) return s;
    }
    if (!o.save_setup.empty()) {
        // The setup holds what the user chose, Auto Preview included; keys
        // are animation, kept in the key file, not in setups.
        auto_preview.restore();
        const std::string setup = host->setup_text();
        auto_preview.suspend();
        if (Status s = write_file(o.save_setup, setup.data(), setup.size()); !s.ok()) return s;
    }
    if (!rendering) return ok_status();

    // Frames go through three stages at once: frame n + 1 is read and
    // decoded, frame n renders, frame n - 1 is encoded and written. The
    // plug-in renders on this thread, frames strictly in order; the reading
    // and writing run on one helper thread each, on buffers of their own.
    InputSet sets[2] = {InputSet(o, *host, inputs.clipped_warned), InputSet(o, *host, inputs.clipped_warned)};
    // The chunk's first inputs are checked before any simulation time is spent.
    if (Status s = sets[o.frames.first % 2].inputs.load(sets[o.frames.first % 2].targets, o.frames.first); !s.ok())
        return s;

    const int shot_start = o.shot_start >= 0 ? o.shot_start : o.frames.first;
    Progress progress(o.frames.count(), o.frames.first - shot_start, o.quiet);
    if (Status s = simulate_run_up(*host, shot_start, o.frames.first,
                                   [&](int f) {
                                       relay.flush();
                                       progress.preroll_done(f);
                                   });
        !s.ok())
        return s;

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
        memory.frame = f;
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

}  // namespace

Status run_render(const Options& o) {
    install_interrupt_cleanup();
    // Messages pause so that an artist can read them in the host; here they
    // are printed, and a farm must not sleep.
    setenv("PANEBURST_MESSAGE_PAUSE", "0", 0);
    FrameMemory memory;
    try {
        return render(o, memory);
    } catch (const std::bad_alloc&) {
        // Whatever was being written is removed as the stack unwinds.
        return failure((memory.frame >= 0 ? "frame " + std::to_string(memory.frame) + ": " : std::string()) +
                       "not enough memory: " + (memory.width > 0 ? memory.needs() : std::string("reading the inputs")));
    }
}

}  // namespace tools
