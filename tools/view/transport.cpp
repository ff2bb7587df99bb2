#include "tools/view/transport.h"

#include <imgui.h>

#include <functional>

namespace view {

void Transport::frame_done() {
    times_.push_back(std::chrono::steady_clock::now());
    while (times_.size() > 25) times_.pop_front();
}

double Transport::fps() const {
    if (times_.size() < 2) return 0;
    const double seconds = std::chrono::duration<double>(times_.back() - times_.front()).count();
    return seconds > 0 ? (times_.size() - 1) / seconds : 0;
}

bool Transport::tick(const std::function<void(const tools::Status&)>& shown) {
    if (!playing) return false;
    if (shot_.frame() >= shot_.last() && !loop) {
        playing = false;
        return false;
    }
    const tools::Status s = shot_.step();
    frame_done();
    shown(s);
    if (!s.ok()) playing = false;
    return true;
}

void Transport::draw(const std::function<void(const tools::Status&)>& shown) {
    if (ImGui::Button(playing ? "Pause" : "Play", ImVec2(60, 0))) {
        playing = !playing;
        times_.clear();
    }
    ImGui::SameLine();
    if (ImGui::Button("Step")) {
        playing = false;
        shown(shot_.step());
    }
    ImGui::SameLine();
    if (ImGui::Button("Restart")) {
        // From the shot's start, with a rebuilt simulation.
        shown(shot_.restart());
    }
    ImGui::SameLine();
    if (ImGui::Button("Refresh")) shown(shot_.refresh());
    if (ImGui::IsItemHovered()) ImGui::SetTooltip("Replays the shot up to this frame with the current controls");
    ImGui::SameLine();
    ImGui::Checkbox("Loop", &loop);
    ImGui::SameLine();
    ImGui::SetNextItemWidth(90);
    ImGui::InputInt("##goto", &go_to_);
    ImGui::SameLine();
    if (ImGui::Button("Go to")) {
        playing = false;
        shown(shot_.go_to(go_to_));
    }
    ImGui::SameLine();
    ImGui::Text("Frame %d  (%d-%d)", shot_.frame(), shot_.first(), shot_.last());
    ImGui::SameLine();
    if (playing)
        ImGui::Text("%.1f fps", fps());
    else
        ImGui::TextDisabled("%.1f fps", fps());
}

}  // namespace view
