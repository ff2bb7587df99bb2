// paneburst-view: the Paneburst effect in a window, driven through the
// stand-in host exactly as paneburst-render drives it, with the plug-in's
// pages, its overlay and handles in the viewer, a transport, keys and the
// channel tree. With no --front it shows the generated test card.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "tools/shared_options.h"
#include "tools/view/app.h"

namespace {

namespace fs = std::filesystem;

// The plug-in's Help opens paneburst.htm under "$DIR_7/dl/help". Unless the
// user set DIR_7, it points at the pages installed beside the program, or
// else at the ones in the source tree the program was built from.
void point_install_root() {
    if (std::getenv("DIR_7")) return;
    std::error_code ec;
    const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    const fs::path installed = exe.parent_path().parent_path() / "share" / "paneburst";
    const fs::path root = !ec && fs::exists(installed / "dl" / "help" / "paneburst.htm", ec)
                              ? installed
                              : fs::path(PANEBURST_SOURCE_INSTALL_ROOT);
    setenv("DIR_7", root.string().c_str(), 1);
}

int parse(int argc, char** argv, view::ViewOptions& o, bool& exit_now) {
    CLI::App app{
        "paneburst-view: the Paneburst effect in a window, with its pages of controls, its handles in the\n"
        "viewer, a transport and keys. With no --front it shows a generated test card over a gradient."};
    app.get_formatter()->column_width(34);
    tools::SharedOptionText text;
    text.frames = "1-100";
    add_input_options(app, o.shot, text);
    add_frame_option(app, text, "of the shot, played in a loop (default 1-100)");
    app.add_option("--depth", o.shot.depth, "host buffer depth 8 or 12 (default: 12 when a source has more than 8 bits)")
        ->check(CLI::IsMember({8, 12}))
        ->group("Inputs");
    add_control_options(app, o.shot);
    add_machine_options(app, o.shot);
    std::string window;
    app.add_option("--window", window, "window size WIDTHxHEIGHT (default 1400x900)")->group("Viewer");
    app.add_option("--script", o.script, "run the steps of a script file (see the README), then close")->group("Viewer");
    exit_now = false;
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
        exit_now = true;
        return 0;
    } catch (const CLI::ParseError& e) {
        std::fprintf(stderr, "paneburst-view: %s (see --help)\n", e.what());
        return tools::kExitUsage;
    }
    if (tools::Status s = tools::finish_shared_options(o.shot, text); !s.ok()) {
        std::fprintf(stderr, "paneburst-view: %s\n", s.message.c_str());
        return s.code;
    }
    if (!window.empty() && (std::sscanf(window.c_str(), "%dx%d", &o.window_width, &o.window_height) != 2 ||
                            o.window_width < 640 || o.window_height < 480)) {
        std::fprintf(stderr, "paneburst-view: --window %s: use WIDTHxHEIGHT, at least 640x480\n", window.c_str());
        return tools::kExitUsage;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    view::ViewOptions options;
    bool exit_now = false;
    if (const int status = parse(argc, argv, options, exit_now); status != 0 || exit_now) return status;
    point_install_root();
    // The plug-in pauses after a message so that it can be read; here every
    // message stays in the log panel, and the window must not freeze.
    setenv("PANEBURST_MESSAGE_PAUSE", "0", 0);
    view::App app(options);
    return app.run();
}
