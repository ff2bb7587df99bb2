#include "tools/render_job.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>

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

}  // namespace

Status run_render(const Options& o) {
    install_interrupt_cleanup();
    // Messages pause so that an artist can read them in the host; here they
    // are printed, and a farm must not sleep.
    setenv("PANEBURST_MESSAGE_PAUSE", "0", 0);

    Inputs inputs(o);
    int width = 0, height = 0, bits = 8;
    if (!o.list_controls)
        if (Status s = inputs.probe(o, width, height, bits); !s.ok()) return s;
    if (!o.list_controls && !o.save_setup.empty())
        if (Status s = prepare_folder(o.save_setup); !s.ok()) return s;

    std::unique_ptr<Host> host;
    if (Status s = o.list_controls ? load_plugin(o, o.card_width, o.card_height, 8, host)
                                   : load_plugin(o, width, height, bits, host);
        !s.ok())
        return s;
    std::string error;
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

    inputs.fill_defaults(*host);
    // The chunk's first inputs are checked before any simulation time is spent.
    if (Status s = inputs.load(*host, o.frames.first); !s.ok()) return s;

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
    for (int f = o.frames.first; f <= o.frames.last; ++f) {
        if (Status s = inputs.load(*host, f); !s.ok()) return s;
        const bool processed = host->process(static_cast<std::uint32_t>(f)) != nullptr;
        relay.flush();
        if (!processed) return failure("frame " + std::to_string(f) + ": the plug-in returned no result");
        std::string written;
        if (!o.out.empty()) {
            written = out.at(f);
            if (Status s = write_frame(host->buffer(1), written); !s.ok()) return s;
        }
        if (!o.contact_sheet.empty()) sheet.add(f, host->buffer(1));
        progress.frame_done(f, written);
    }
    if (!o.contact_sheet.empty())
        if (Status s = sheet.write(o.contact_sheet); !s.ok()) return s;
    progress.finish();
    auto_preview.restore();
    host->uninitialise();
    relay.flush();
    return ok_status();
}

}  // namespace tools
