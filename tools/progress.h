// Feedback while rendering: a progress bar on a terminal (frame, frames per
// second, time left), one line per frame otherwise, nothing with --quiet.
// Warnings always go to standard error, on a line of their own.
#pragma once
#include <chrono>
#include <functional>
#include <string>

namespace tools {

void warn(const std::string& text);
// Where warnings go instead of standard error (a window's log); empty: back to standard error.
void set_warning_sink(std::function<void(const std::string&)> sink);

class Progress {
public:
    // `total` frames will be reported done; `preroll` frames are simulated first.
    Progress(int total, int preroll, bool quiet);
    ~Progress();

    void preroll_done(int frame);
    void frame_done(int frame, const std::string& written);
    void finish();

private:
    void draw(const std::string& what);

    int total_, preroll_, done_ = 0, preroll_done_ = 0;
    bool quiet_, terminal_;
    std::chrono::steady_clock::time_point start_;
};

}  // namespace tools
