#include "tools/view/log_panel.h"

#include <imgui.h>

namespace view {

namespace {
ImVec4 colour(LogPanel::Level level) {
    switch (level) {
        case LogPanel::Warning: return ImVec4(1.0f, 0.8f, 0.3f, 1.0f);
        case LogPanel::Error: return ImVec4(1.0f, 0.4f, 0.4f, 1.0f);
        default: return ImVec4(0.85f, 0.85f, 0.85f, 1.0f);
    }
}
}  // namespace

void LogPanel::add(Level level, const std::string& text) {
    lines_.push_back({level, text});
    if (level == Error) ++errors_;
}

void LogPanel::collect(const sparkhost::Host& host) {
    for (; host_seen_ < host.messages.size(); ++host_seen_) {
        const sparkhost::Message& m = host.messages[host_seen_];
        switch (m.kind) {
            case sparkhost::Message::Error: add(Error, "plug-in error: " + m.text); break;
            case sparkhost::Message::Confirm: add(Note, "plug-in asks: " + m.text); break;
            default: add(Note, "plug-in: " + m.text); break;
        }
    }
}

void LogPanel::draw_status_line() const {
    if (lines_.empty()) {
        ImGui::TextDisabled("Ready.");
        return;
    }
    ImGui::TextColored(colour(lines_.back().first), "%s", lines_.back().second.c_str());
}

void LogPanel::draw() {
    for (const auto& line : lines_) ImGui::TextColored(colour(line.first), "%s", line.second.c_str());
    // Follows new lines.
    if (drawn_ != lines_.size()) ImGui::SetScrollHereY(1.0f);
    drawn_ = lines_.size();
}

}  // namespace view
