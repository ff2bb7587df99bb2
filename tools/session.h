// What every tool does before its first frame: the four inputs read into the
// host's buffers, the plug-in loaded and initialised at the inputs' size, and
// its controls set from a setup, a preset, --set assignments and key files.
#pragma once
#include <atomic>
#include <functional>
#include <memory>

#include "sparkhost/host.h"
#include "tools/control_settings.h"
#include "tools/input_clip.h"
#include "tools/options.h"
#include "tools/status.h"

namespace tools {

// The four inputs with their host buffers (2 front, 3 back, 4 and 5 mattes).
struct Inputs {
    InputClip clips[4];
    // Whether clipped values were reported; shared by the sets of inputs of
    // one render, which may read frames on other threads.
    std::shared_ptr<std::atomic<bool>> clipped_warned;

    explicit Inputs(const Options& o, std::shared_ptr<std::atomic<bool>> warned = nullptr)
        : clips{{"front", o.front}, {"back", o.back}, {"2D matte", o.matte_2d}, {"3D matte", o.matte_3d}},
          clipped_warned(warned ? std::move(warned) : std::make_shared<std::atomic<bool>>(false)) {}

    // The frame size and the depth the sources need.
    Status probe(const Options& o, int& width, int& height, int& bits);
    // Reads the inputs of a frame (the test card is drawn for it) into four
    // buffers (front, back, 2D and 3D matte), or into the host's.
    Status load(sparkhost::FrameBuffer* const buffers[4], int frame);
    Status load(sparkhost::Host& host, int frame);
    // What stands in for the inputs not given.
    void fill_defaults(sparkhost::FrameBuffer* const buffers[4]);
    void fill_defaults(sparkhost::Host& host);
};

// The plug-in prints its start-up banner on standard output. A tool keeps
// standard output for what it was asked to print, so the banner goes to
// standard error, or nowhere when `quiet`.
class BannerToStderr {
public:
    explicit BannerToStderr(bool quiet);
    ~BannerToStderr();
    BannerToStderr(const BannerToStderr&) = delete;
    BannerToStderr& operator=(const BannerToStderr&) = delete;

private:
    int saved_ = -1;
};

// Loads the plug-in file of the options (or the default one) into a host set
// to the frame size, depth, bands and threads. Messages are kept, not printed.
Status load_plugin(const Options& o, int width, int height, int bits, std::unique_ptr<sparkhost::Host>& host);

// The preset, --set, --quality, --resolution and --blend, in that order.
Status apply_controls(sparkhost::Host& host, const Options& o, AutoPreviewOff& auto_preview);

// The setup, then apply_controls, then the key file.
Status set_up_controls(sparkhost::Host& host, const Options& o, AutoPreviewOff& auto_preview);

// Runs frames `from` ... `to` - 1 of the shot for their simulation only;
// `after_frame` is called after each.
Status simulate_run_up(sparkhost::Host& host, int from, int to, const std::function<void(int)>& after_frame);

}  // namespace tools
