// The shot the viewer works on: the loaded plug-in with its inputs, the
// frame range, and the simulation's place in it. Every frame is processed
// once, in order from the shot's start, as paneburst-render processes it; a
// jump back, or any change of controls or keys since the last frame, replays
// the simulation from the start so that the frame shown is the frame the
// renderer writes.
#pragma once
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "sparkhost/host.h"
#include "tools/options.h"
#include "tools/session.h"
#include "tools/status.h"

namespace view {

class Shot {
public:
    explicit Shot(const tools::Options& options) : options_(options), inputs_(options) {}

    // Loads the plug-in, initialises it at the inputs' size, sets the controls
    // from the options and processes the first frame.
    tools::Status open();
    sparkhost::Host& host() { return *host_; }
    const tools::Options& options() const { return options_; }

    int first() const { return options_.frames.first; }
    int last() const { return options_.frames.last; }
    int frame() const { return frame_; }

    // Shows frame f: the next frame is processed on; any other frame, or any
    // frame after a change, is reached by replaying from the shot's start.
    tools::Status go_to(int f);
    tools::Status step() { return go_to(frame_ >= last() ? first() : frame_ + 1); }
    // Replays the current frame (after changes made with Auto Preview off).
    tools::Status refresh() { return replay_to(frame_); }
    // The simulation rebuilt and the shot shown from its first frame.
    tools::Status restart() { return replay_to(first()); }
    // Replaces one input (0 front, 1 back, 2 and 3 mattes) by a file or
    // sequence of the shot's size, then replays the current frame.
    tools::Status set_input(int index, const std::string& pattern);

    // A control changed as on its page: the descriptor written, then its
    // callback with argument 1 and the current frame record. Returns true when
    // the callback processed the frame (Auto Preview).
    bool change_control(int number, double value);
    bool press_button(int number);
    // Notes that the plug-in processed the frame on its own (a callback or a
    // handle released with Auto Preview on): the simulation took a step that
    // a render would not take.
    void note_preview() { ++processed_; diverged_ = true; }

    // Keys at the current frame.
    void set_key(int number);
    void delete_key(int number);

    tools::Status save_setup(const std::string& path);
    tools::Status load_setup(const std::string& path);
    tools::Status save_keys(const std::string& path);
    tools::Status load_keys(const std::string& path);
    bool unsaved() const;

    // What the plug-in printed while it started.
    const std::vector<std::string>& startup_lines() const { return startup_lines_; }
    // Frames processed by the plug-in so far, by the viewer or by callbacks.
    long processed() const { return processed_; }

private:
    tools::Status process(int f);
    tools::Status replay_to(int f);
    std::map<int, double> values() const;
    bool changed_since_frame() const;
    void mark_saved();

    tools::Options options_;
    tools::Inputs inputs_;
    std::vector<std::string> startup_lines_;
    std::unique_ptr<sparkhost::Host> host_;
    int frame_ = 0;
    long processed_ = 0;
    bool diverged_ = false;
    // Controls and keys as of the last processed frame and the last save.
    std::map<int, double> frame_values_, saved_values_;
    std::map<int, std::map<float, float>> frame_keys_, saved_keys_;
};

}  // namespace view
