// Everything the viewer and the plug-in report: the plug-in's messages,
// errors and questions, the tools' warnings and the viewer's own notes, in
// a status line (the latest) and a log panel (all, in order).
#pragma once
#include <string>
#include <vector>

#include "sparkhost/host.h"

namespace view {

class LogPanel {
public:
    enum Level { Note, Warning, Error };
    void add(Level level, const std::string& text);
    // Takes the host's messages that arrived since the last call.
    void collect(const sparkhost::Host& host);
    void draw_status_line() const;
    void draw();
    const std::vector<std::pair<Level, std::string>>& lines() const { return lines_; }
    int errors() const { return errors_; }

private:
    std::vector<std::pair<Level, std::string>> lines_;
    std::size_t host_seen_ = 0;
    std::size_t drawn_ = 0;
    int errors_ = 0;
};

}  // namespace view
