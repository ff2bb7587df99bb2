#include "tools/session.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>

#include "sparkhost/plugin_path.h"
#include "tools/keys_file.h"
#include "tools/progress.h"
#include "tools/test_card.h"

namespace tools {

using sparkhost::Host;

Status Inputs::probe(const Options& o, int& width, int& height, int& bits) {
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
                               (clips[0].given() ? "front" : "test card") + " is " + std::to_string(width) + "x" +
                               std::to_string(height) + ": all inputs must have the front's size");
        }
        bits = std::max(bits, info.bits);
    }
    return ok_status();
}

Status Inputs::load(sparkhost::FrameBuffer* const buffers[4], int frame) {
    if (!clips[0].given()) draw_test_card(*buffers[0], frame);
    for (int i = 0; i < 4; ++i) {
        if (!clips[i].given()) continue;
        bool clipped = false;
        if (Status s = clips[i].load(frame, *buffers[i], clipped); !s.ok()) return s;
        if (clipped && !clipped_warned->exchange(true))
            warn(clips[i].role() + " " + clips[i].pattern().at(frame) +
                 ": values outside 0..1 clipped (shown once for the whole render)");
    }
    return ok_status();
}

Status Inputs::load(Host& host, int frame) {
    sparkhost::FrameBuffer* const buffers[4] = {&host.buffer(2), &host.buffer(3), &host.buffer(4), &host.buffer(5)};
    return load(buffers, frame);
}

void Inputs::fill_defaults(sparkhost::FrameBuffer* const buffers[4]) {
    if (!clips[1].given()) {
        if (clips[0].given())
            fill_buffer(*buffers[1], 0);
        else
            draw_gradient(*buffers[1]);
    }
    for (int i = 2; i < 4; ++i)
        if (!clips[i].given()) fill_buffer(*buffers[i], 255);
}

void Inputs::fill_defaults(Host& host) {
    sparkhost::FrameBuffer* const buffers[4] = {&host.buffer(2), &host.buffer(3), &host.buffer(4), &host.buffer(5)};
    fill_defaults(buffers);
}

BannerToStderr::BannerToStderr(bool quiet) {
    std::fflush(stdout);
    saved_ = dup(STDOUT_FILENO);
    const int target = quiet ? open("/dev/null", O_WRONLY) : dup(STDERR_FILENO);
    if (target >= 0) {
        dup2(target, STDOUT_FILENO);
        close(target);
    }
}

BannerToStderr::~BannerToStderr() {
    std::fflush(stdout);
    if (saved_ >= 0) {
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
    }
}

Status load_plugin(const Options& o, int width, int height, int bits, std::unique_ptr<Host>& host) {
    const std::string plugin = o.plugin.empty() ? sparkhost::default_plugin_path() : o.plugin;
    std::string error;
    host = Host::load(plugin, error);
    if (!host) return failure(error);
    host->echo_messages = false;
    host->settings.width = width;
    host->settings.height = height;
    host->settings.depth_bits = o.depth ? o.depth : (bits > 8 ? 12 : 8);
    host->settings.bands = o.bands;
    host->settings.threads = o.threads;
    return ok_status();
}

Status apply_controls(Host& host, const Options& o, AutoPreviewOff& auto_preview) {
    if (!o.preset.empty()) apply_preset(host, o.preset);
    for (const std::string& s : o.sets)
        if (Status st = apply_setting(host, s, "--set", &auto_preview); !st.ok()) return st;
    if (!o.quality.empty()) {
        if (host.control(kQualityControl)) {
            if (Status s = apply_setting(host, std::to_string(kQualityControl) + "=" + o.quality, "--quality");
                !s.ok())
                return s;
        } else {
            warn("--quality " + o.quality + ": this plug-in has no Render Quality control (" +
                 std::to_string(kQualityControl) + "); ignored");
        }
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

Status set_up_controls(Host& host, const Options& o, AutoPreviewOff& auto_preview) {
    std::string error;
    if (!o.setup.empty()) {
        if (!std::ifstream(o.setup)) return failure("--setup " + o.setup + ": cannot read the file");
        if (!host.load_setup(o.setup, error, setup_value_check(o.setup))) return usage_error(error);
    }
    if (Status s = apply_controls(host, o, auto_preview); !s.ok()) return s;
    int key_count = 0;
    if (!o.keys.empty())
        if (Status s = load_keys(host, o.keys, key_count); !s.ok()) return s;
    return ok_status();
}

// Runs the frames before the chunk as cheaply as the entry points allow:
// Low Quality runs the same element steps, depth rule and sort as every
// other quality and skips the per-pixel texture mapping; nothing is written
// and no input is read (the simulation depends on the controls and the frame
// size, never on pixel values). The working resolution stays the render's:
// another resolution would change the tile size and rebuild the grid.
Status simulate_run_up(Host& host, int from, int to, const std::function<void(int)>& after_frame) {
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
    for (int f = from; f < to && status.ok(); ++f) {
        if (!host.process(static_cast<std::uint32_t>(f)))
            status = failure("frame " + std::to_string(f) + " (run-up): the plug-in returned no result");
        if (after_frame) after_frame(f);
    }
    if (quality) {
        quality->set_value(saved_value);
        for (const auto& key : saved_keys) host.set_key(kQualityControl, key.first, key.second);
    }
    return status;
}

}  // namespace tools
