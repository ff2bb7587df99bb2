// The scripted mode (--script FILE): a list of steps that drive the viewer as
// a user would, one step a drawn frame, so that every step is seen in the
// window. One step a line, words separated by blanks, "quoted" words may
// hold blanks, '#' starts a comment:
//
//   set "Z Speed" 12          a control changed on its page (title or number)
//   click-button "Reset"      a push button (title or number)
//   key "Z Speed"             a key at the current frame; unkey removes it
//   press X Y | drag X Y | release | hover X Y
//                             the pointer in the viewer, in image pixels
//   step N | goto F | restart | refresh
//   play N                    plays N frames as the Play button does
//   answer yes|no             the open question
//   choose-file PATH          the open file dialog (empty "" cancels)
//   zoom fit|S | pan DX DY | show result|front|back|matte2d|matte3d
//   screenshot FILE           the whole window; screenshot-image FILE the image area
//   save-setup F | load-setup F | save-keys F | load-keys F | open-input N F
//   state FILE                the viewer's state as "name value" lines
//   wait N                    N frames drawn with nothing done
//   wait-for FILE             frames drawn until FILE exists (another program's signal)
//   quit                      closes, asking about unsaved changes
#pragma once
#include <chrono>
#include <string>
#include <vector>

#include "tools/status.h"

namespace view {

class App;

class Script {
public:
    tools::Status load(const std::string& path);
    bool finished() const { return next_ >= steps_.size() && waiting_ == 0 && wait_file_.empty(); }
    // Runs the next step (or one frame of a wait). Errors go to the log and
    // make the program end with a failure status.
    void run_one(App& app);
    int failures() const { return failures_; }

private:
    struct Step {
        int line = 0;
        std::vector<std::string> words;
    };
    tools::Status run(App& app, const Step& step);

    std::string path_;
    std::vector<Step> steps_;
    std::size_t next_ = 0;
    int waiting_ = 0;
    int failures_ = 0;
    bool pause_after_wait_ = false;
    std::string wait_file_;  // wait-for: drawing on until the file exists
    std::chrono::steady_clock::time_point wait_until_;
    float last_x_ = 0, last_y_ = 0;  // where the pointer was last put
};

// Splits a line into words; "quoted text" is one word.
std::vector<std::string> split_words(const std::string& line);

}  // namespace view
