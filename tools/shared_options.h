// The options paneburst-render and paneburst-view share: the inputs, the
// frames, and the controls (preset, --set, setup, keys), defined once on a
// CLI11 parser and checked once after parsing.
#pragma once
#include <CLI/CLI.hpp>
#include <string>

#include "tools/options.h"
#include "tools/status.h"

namespace tools {

// Texts the shared options are read into before they are checked.
struct SharedOptionText {
    std::string frames = "1";
    std::string size;
};

void add_input_options(CLI::App& app, Options& o, SharedOptionText& text);
// --frames; `what` says what the tool does with them ("to render").
void add_frame_option(CLI::App& app, SharedOptionText& text, const std::string& what);
void add_control_options(CLI::App& app, Options& o);
// --bands, --threads, --plugin.
void add_machine_options(CLI::App& app, Options& o);

// Parses the frame range and the test card's size; refuses a setup or key
// file that is a folder.
Status finish_shared_options(Options& o, const SharedOptionText& text);

}  // namespace tools
