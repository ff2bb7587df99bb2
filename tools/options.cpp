#include "tools/options.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "tools/output_writer.h"
#include "tools/shared_options.h"

namespace tools {

namespace {

// The same file as the folder tree names it ("./a/../o.png" is "o.png").
std::string same_file_key(const std::string& path) {
    std::error_code ec;
    const std::filesystem::path key = std::filesystem::weakly_canonical(std::filesystem::absolute(path, ec), ec);
    return ec ? path : key.string();
}

// Output names that cannot work are refused before anything is loaded.
Status check_output_names(const Options& o) {
    if (!o.out.empty()) {
        const FramePattern out(o.out);
        if (const std::string problem = out.output_problem(); !problem.empty())
            return usage_error("--out " + o.out + ": " + problem);
        if (Status s = check_image_format("--out", out.at(o.frames.first)); !s.ok()) return s;
    }
    if (!o.contact_sheet.empty())
        if (Status s = check_image_format("--contact-sheet", o.contact_sheet); !s.ok()) return s;
    // Two outputs in one file would overwrite each other.
    const FramePattern frames(o.out.empty() ? std::string() : same_file_key(o.out));
    const std::string sheet = o.contact_sheet.empty() ? "" : same_file_key(o.contact_sheet);
    const std::string setup = o.save_setup.empty() ? "" : same_file_key(o.save_setup);
    auto is_frame = [&](const std::string& key) {
        int f = -1;
        if (key.empty() || frames.empty()) return false;
        if (!frames.is_sequence()) return key == frames.text();
        return frames.frame_of(key, f) && f >= o.frames.first && f <= o.frames.last;
    };
    if (is_frame(sheet) || is_frame(setup))
        return usage_error((is_frame(sheet) ? "--contact-sheet " + o.contact_sheet : "--save-setup " + o.save_setup) +
                           " is also a frame of --out " + o.out + ": give it another name");
    if (!setup.empty() && setup == sheet)
        return usage_error("--save-setup " + o.save_setup + " is also the --contact-sheet: give it another name");
    return ok_status();
}

}  // namespace

Status parse_options(int argc, char** argv, Options& o, bool& exit_now,
                     const std::function<void(CLI::App&)>& extend) {
    exit_now = false;
    CLI::App app{
        "paneburst-render: renders the Paneburst effect on image sequences through the stand-in host.\n"
        "With no --front it renders a generated test card over a gradient."};
    app.get_formatter()->column_width(34);

    SharedOptionText text;
    add_input_options(app, o, text);
    add_frame_option(app, text, "to render");
    std::string shot_start, contact_every;
    app.add_option("--shot-start", shot_start,
                   "first frame of the shot: frames before --frames are simulated, not written")
        ->group("Frames");

    app.add_option("--out", o.out, "output pattern, format from the extension: out/shot.%04d.png")->group("Output");
    app.add_flag("--overwrite", o.overwrite, "replace existing output frames")->group("Output");
    app.add_option("--contact-sheet", o.contact_sheet, "one picture with a thumbnail of every rendered frame")
        ->group("Output");
    app.add_option("--contact-every", contact_every, "thumbnail of every Nth frame (default 1)")->group("Output");
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

    if (extend) extend(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
        exit_now = true;
        return ok_status();
    } catch (const CLI::ParseError& e) {
        std::string text = e.what();
        while (!text.empty() && text.back() == '\n') text.pop_back();
        return usage_error(text + " (see --help)");
    }

    if (Status s = finish_shared_options(o, text); !s.ok()) return s;
    if (!shot_start.empty())
        if (Status s = parse_frame_number("--shot-start", shot_start, o.shot_start); !s.ok()) return s;
    if (!contact_every.empty() && (contact_every.size() > 9 || contact_every.find_first_not_of("0123456789") !=
                                   std::string::npos || (o.contact_every = std::atoi(contact_every.c_str())) < 1))
        return usage_error("--contact-every " + contact_every + ": give a whole number of 1 or more");
    if (o.shot_start >= 0 && o.shot_start > o.frames.first)
        return usage_error("--shot-start " + std::to_string(o.shot_start) + " comes after the first frame " +
                           std::to_string(o.frames.first));
    if (!o.list_controls && o.out.empty() && o.contact_sheet.empty() && o.save_setup.empty())
        return usage_error("nothing to write: give --out, --contact-sheet or --save-setup");
    if (!o.out.empty() && o.frames.count() > 1 && !FramePattern(o.out).is_sequence())
        return usage_error("--out " + o.out + ": several frames need a frame number in the name (%04d or ####)");
    return o.list_controls ? ok_status() : check_output_names(o);
}

}  // namespace tools
