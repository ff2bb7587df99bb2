#include "tools/options.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "tools/shared_options.h"

namespace tools {

Status parse_options(int argc, char** argv, Options& o, bool& exit_now) {
    exit_now = false;
    CLI::App app{
        "paneburst-render: renders the Paneburst effect on image sequences through the stand-in host.\n"
        "With no --front it renders a generated test card over a gradient."};
    app.get_formatter()->column_width(34);

    SharedOptionText text;
    add_input_options(app, o, text);
    add_frame_option(app, text, "to render");
    app.add_option("--shot-start", o.shot_start,
                   "first frame of the shot: frames before --frames are simulated, not written")
        ->check(CLI::NonNegativeNumber)
        ->group("Frames");

    app.add_option("--out", o.out, "output pattern, format from the extension: out/shot.%04d.png")->group("Output");
    app.add_flag("--overwrite", o.overwrite, "replace existing output frames")->group("Output");
    app.add_option("--contact-sheet", o.contact_sheet, "one picture with a thumbnail of every rendered frame")
        ->group("Output");
    app.add_option("--contact-every", o.contact_every, "thumbnail of every Nth frame (default 1)")
        ->check(CLI::PositiveNumber)
        ->group("Output");
    app.add_option("--thumb-width", o.thumb_width, "thumbnail width in pixels (default 160)")
        ->check(CLI::Range(16, 2048))
        ->group("Output");
    app.add_option("--depth", o.depth, "host buffer depth 8 or 12 (default: 12 when a source has more than 8 bits)")
        ->check(CLI::IsMember({8, 12}))
        ->group("Output");

    add_control_options(app, o);
    app.add_option("--save-setup", o.save_setup, "save the setup the render uses")->group("Controls");
    app.add_flag("--list-controls", o.list_controls, "print every control and exit")->group("Controls");

    add_machine_options(app, o);
    app.add_flag("--quiet,-q", o.quiet, "no progress, only warnings and errors")->group("Machine");

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
        exit_now = true;
        return ok_status();
    } catch (const CLI::ParseError& e) {
        std::string message = e.what();
        while (!message.empty() && message.back() == '\n') message.pop_back();
        return usage_error(message + " (see --help)");
    }

    if (Status s = finish_shared_options(o, text); !s.ok()) return s;
    if (o.shot_start >= 0 && o.shot_start > o.frames.first)
        return usage_error("--shot-start " + std::to_string(o.shot_start) + " comes after the first frame " +
                           std::to_string(o.frames.first));
    if (!o.list_controls && o.out.empty() && o.contact_sheet.empty() && o.save_setup.empty())
        return usage_error("nothing to write: give --out, --contact-sheet or --save-setup");
    if (!o.out.empty() && o.frames.count() > 1 && !FramePattern(o.out).is_sequence())
        return usage_error("--out " + o.out + ": several frames need a frame number in the name (%04d or ####)");
    return ok_status();
}

}  // namespace tools
