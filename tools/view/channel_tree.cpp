#include "tools/view/channel_tree.h"

#include <imgui.h>

namespace view {

void ChannelTree::build(sparkhost::Host& host) {
    host.editor_calls.clear();
    host.build_channel_editor();
    folders_ = host.channel_editor_tree();
}

void ChannelTree::draw(sparkhost::Host& host, int frame) {
    if (folders_.empty()) {
        ImGui::TextDisabled("The plug-in lists no channels.");
        return;
    }
    for (const sparkhost::EditorFolder& folder : folders_) {
        if (!ImGui::TreeNodeEx(folder.name.c_str(), ImGuiTreeNodeFlags_DefaultOpen)) continue;
        for (const sparkhost::EditorEntry& entry : folder.entries) {
            sparkhost::Control* c = host.control(entry.control);
            // A channel the plug-in did not name shows its control's title.
            const std::string name = !entry.name.empty() ? entry.name : c ? c->label() : std::to_string(entry.control);
            const float value = host.curve_value(entry.control, static_cast<float>(frame));
            const auto curve = host.curves().find(entry.control);
            const std::size_t keys = curve == host.curves().end() ? 0 : curve->second.size();
            ImGui::BulletText("%s", name.c_str());
            ImGui::SameLine(200);
            if (keys)
                ImGui::TextColored(ImVec4(1, 0.8f, 0.2f, 1), "%.3f  (%zu key%s)", value, keys, keys == 1 ? "" : "s");
            else
                ImGui::TextDisabled("%.3f", value);
        }
        ImGui::TreePop();
    }
}

}  // namespace view
