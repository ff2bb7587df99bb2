// The command line of paneburst-render.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "tools/frame_pattern.h"
#include "tools/status.h"

namespace CLI {
class App;
}

namespace tools {

struct Options {
    // Inputs: sequences or stills; an empty front means the built-in test card.
    std::string front, back, matte_2d, matte_3d;
    int card_width = 720, card_height = 486;  // the test card's size
    bool card_size_given = false;

    FrameRange frames;
    int shot_start = -1;  // -1: the shot starts at the first frame rendered

    std::string out;
    bool overwrite = false;
    std::string contact_sheet;
    int contact_every = 1;
    int thumb_width = 160;

    int depth = 0;  // 0: from the sources
    int bands = 16;
    int threads = 0;  // 0: every core

    std::string preset;
    std::vector<std::string> sets;  // "NAME=VALUE" in the order given
    std::string quality, resolution, blend;
    std::string keys, setup, save_setup;
    bool list_controls = false;
    bool quiet = false;
    std::string plugin;
};

// Parses argv. On --help prints the help and sets `exit_now` with an ok status.
// A tool that takes a render's options and more (paneburst-farm) adds its own
// in `extend`, called before parsing.
Status parse_options(int argc, char** argv, Options& options, bool& exit_now,
                     const std::function<void(CLI::App&)>& extend = {});

}  // namespace tools
