#include "tools/shared_options.h"

#include <cstdio>
#include <filesystem>
#include <utility>

namespace tools {

namespace {

Status parse_size(const std::string& text, int& width, int& height) {
    char x = 0;
    char rest = 0;
    if (std::sscanf(text.c_str(), "%d%c%d%c", &width, &x, &height, &rest) != 3 || (x != 'x' && x != 'X') ||
        width < 1 || height < 1 || width > 16384 || height > 16384)
        return usage_error("--size " + text + ": not a frame size (use WIDTHxHEIGHT, e.g. 1920x1080)");
    return ok_status();
}

}  // namespace

void add_input_options(CLI::App& app, Options& o, SharedOptionText& text) {
    app.add_option("--front", o.front, "front clip: shot.%04d.exr, shot.####.dpx, or a still")->group("Inputs");
    app.add_option("--back", o.back, "back clip (default: black; the test card's gradient with no --front)")
        ->group("Inputs");
    app.add_option("--matte2d", o.matte_2d, "2D matte (default: white)")->group("Inputs");
    app.add_option("--matte3d", o.matte_3d, "3D matte (default: white)")->group("Inputs");
    app.add_option("--size", text.size, "test card size WIDTHxHEIGHT (default 720x486)")->group("Inputs");
}

void add_frame_option(CLI::App& app, SharedOptionText& text, const std::string& what) {
    app.add_option("--frames", text.frames, "frames " + what + ", FIRST-LAST (default 1)")->group("Frames");
}

void add_control_options(CLI::App& app, Options& o) {
    app.add_option("--preset", o.preset, "demo preset: explosion|confetti|venetianv|venetianh")
        ->check(CLI::IsMember({"explosion", "confetti", "venetianv", "venetianh"}, CLI::ignore_case))
        ->group("Controls");
    app.add_option("--set", o.sets, "set a control by title or number: --set \"Z Speed=6\" --set 15=6")
        ->allow_extra_args(false)
        ->group("Controls");
    app.add_option("--quality", o.quality, "render quality: high|med|low|wireframe")
        ->check(CLI::IsMember({"high", "med", "low", "wireframe"}, CLI::ignore_case))
        ->group("Controls");
    app.add_option("--resolution", o.resolution, "working resolution: FULL, 1/2, 1/3, 1/4, 1/6, 1/8, 1/12, 1/16, 1/32")
        ->group("Controls");
    app.add_option("--blend", o.blend, "blend with the front, 0..100")->group("Controls");
    app.add_option("--keys", o.keys, "key file animating controls (see README)")->group("Controls");
    app.add_option("--setup", o.setup, "load a saved setup before the other controls")->group("Controls");
}

void add_machine_options(CLI::App& app, Options& o) {
    app.add_option("--bands", o.bands, "bands a frame is split into, the processor count reported (default 16)")
        ->check(CLI::Range(1, 127))
        ->group("Machine");
    app.add_option("--threads", o.threads, "worker threads running the bands (default: every core)")
        ->check(CLI::Range(0, 1024))
        ->group("Machine");
    app.add_option("--plugin", o.plugin, "plug-in file (default: beside the program, or $PANEBURST_PLUGIN)")
        ->group("Machine");
}

Status finish_shared_options(Options& o, const SharedOptionText& text) {
    if (Status s = parse_frame_range(text.frames, o.frames); !s.ok()) return s;
    if (!text.size.empty()) {
        if (!o.front.empty()) return usage_error("--size sets the test card's size; it cannot be used with --front");
        if (Status s = parse_size(text.size, o.card_width, o.card_height); !s.ok()) return s;
        o.card_size_given = true;
    }
    // A folder opens like an empty file: it would be read as one with no lines.
    for (const auto& [option, name] : {std::pair<const char*, const std::string&>{"--setup", o.setup}, {"--keys", o.keys}})
        if (std::error_code ec; !name.empty() && std::filesystem::is_directory(name, ec))
            return usage_error(std::string(option) + " " + name + ": a folder, not a file");
    return ok_status();
}

}  // namespace tools
