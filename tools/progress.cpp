#include "tools/progress.h"

#include <unistd.h>

#include <cstdio>

namespace tools {

namespace {
// The bar currently drawn on the terminal, which a warning must first clear.
bool g_bar_shown = false;

void clear_bar() {
    if (!g_bar_shown) return;
    std::fputs("\r\033[K", stderr);
    g_bar_shown = false;
}

std::string clock_text(double seconds) {
    if (seconds < 0) seconds = 0;
    const long s = static_cast<long>(seconds + 0.5);
    char text[32];
    if (s >= 3600)
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", s / 3600, s / 60 % 60, s % 60);
    else
        std::snprintf(text, sizeof text, "%ld:%02ld", s / 60, s % 60);
    return text;
}
}  // namespace

namespace {
std::function<void(const std::string&)> g_warning_sink;
}

void set_warning_sink(std::function<void(const std::string&)> sink) { g_warning_sink = std::move(sink); }

void warn(const std::string& text) {
    if (g_warning_sink) return g_warning_sink(text);
    clear_bar();
    std::fprintf(stderr, "paneburst-render: warning: %s\n", text.c_str());
    std::fflush(stderr);
}

Progress::Progress(int total, int preroll, bool quiet)
    : total_(total), preroll_(preroll), quiet_(quiet), terminal_(isatty(STDERR_FILENO) != 0),
      start_(std::chrono::steady_clock::now()) {}

Progress::~Progress() { clear_bar(); }

void Progress::draw(const std::string& what) {
    const int steps = preroll_ + total_;
    const int finished = preroll_done_ + done_;
    const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    const double fps = elapsed > 0 ? finished / elapsed : 0.0;
    const double left = fps > 0 ? (steps - finished) / fps : 0.0;
    if (terminal_) {
        constexpr int kWidth = 30;
        const int filled = steps > 0 ? finished * kWidth / steps : kWidth;
        std::string bar(static_cast<std::size_t>(filled), '#');
        bar.resize(kWidth, '.');
        std::fprintf(stderr, "\r\033[K[%s] %s  %.1f fps  %s left", bar.c_str(), what.c_str(), fps,
                     clock_text(left).c_str());
        g_bar_shown = true;
    } else {
        std::fprintf(stderr, "%s  (%.1f fps, %s left)\n", what.c_str(), fps, clock_text(left).c_str());
    }
    std::fflush(stderr);
}

void Progress::preroll_done(int frame) {
    ++preroll_done_;
    if (quiet_) return;
    // Off a terminal a chunk's run-up would flood the log: report its end only.
    if (!terminal_ && preroll_done_ != preroll_) return;
    draw("simulating frame " + std::to_string(frame) + " (" + std::to_string(preroll_done_) + "/" +
         std::to_string(preroll_) + ")");
}

void Progress::frame_done(int frame, const std::string& written) {
    ++done_;
    if (quiet_) return;
    std::string what = "frame " + std::to_string(frame) + " (" + std::to_string(done_) + "/" +
                       std::to_string(total_) + ")";
    if (!written.empty() && !terminal_) what += " -> " + written;
    draw(what);
}

void Progress::finish() {
    if (quiet_) return;
    clear_bar();
    const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    std::fprintf(stderr, "paneburst-render: %d frame%s rendered in %s\n", done_, done_ == 1 ? "" : "s",
                 clock_text(elapsed).c_str());
}

}  // namespace tools
