#include "tools/view/file_dialog.h"

#include <imgui.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace view {

void FileDialog::open(const std::string& title, const std::string& folder, bool saving,
                      std::function<void(const std::string&)> done) {
    title_ = title;
    std::error_code ec;
    folder_ = folder.empty() || !fs::is_directory(folder, ec) ? fs::current_path(ec).string() : folder;
    saving_ = saving;
    name_[0] = '\0';
    done_ = std::move(done);
    open_ = opening_ = true;
    list();
}

void FileDialog::list() {
    entries_.clear();
    error_.clear();
    std::error_code ec;
    for (fs::directory_iterator it(folder_, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (name.empty() || name[0] == '.') continue;
        entries_.push_back({name, it->is_directory(ec)});
    }
    if (ec) error_ = "cannot list " + folder_ + ": " + ec.message();
    std::sort(entries_.begin(), entries_.end(), [](const auto& a, const auto& b) {
        return a.second != b.second ? a.second : a.first < b.first;
    });
}

void FileDialog::choose(const std::string& path) {
    open_ = false;
    std::string chosen = path;
    if (!chosen.empty() && fs::path(chosen).is_relative()) chosen = (fs::path(folder_) / chosen).string();
    auto done = std::move(done_);
    done_ = nullptr;
    if (done) done(chosen);
}

void FileDialog::draw() {
    if (!open_) return;
    const std::string id = title_ + "##file";
    if (opening_) {
        ImGui::OpenPopup(id.c_str());
        opening_ = false;
    }
    ImGui::SetNextWindowSize(ImVec2(560, 420), ImGuiCond_Appearing);
    if (!ImGui::BeginPopupModal(id.c_str(), nullptr)) return;
    ImGui::TextWrapped("%s", folder_.c_str());
    if (ImGui::Button("Up")) {
        folder_ = fs::path(folder_).parent_path().string();
        list();
    }
    if (!error_.empty()) ImGui::TextColored(ImVec4(1, 0.4f, 0.4f, 1), "%s", error_.c_str());
    ImGui::BeginChild("entries", ImVec2(0, -ImGui::GetFrameHeightWithSpacing() * 2), true);
    std::string enter;
    for (const auto& entry : entries_) {
        const std::string label = entry.second ? entry.first + "/" : entry.first;
        if (ImGui::Selectable(label.c_str(), std::strcmp(name_, entry.first.c_str()) == 0,
                              ImGuiSelectableFlags_AllowDoubleClick)) {
            if (entry.second)
                enter = entry.first;
            else
                std::snprintf(name_, sizeof name_, "%s", entry.first.c_str());
        }
    }
    ImGui::EndChild();
    if (!enter.empty()) {
        folder_ = (fs::path(folder_) / enter).string();
        list();
    }
    ImGui::SetNextItemWidth(-140);
    const bool typed_enter = ImGui::InputText("##name", name_, sizeof name_, ImGuiInputTextFlags_EnterReturnsTrue);
    ImGui::SameLine();
    const bool ok = ImGui::Button(saving_ ? "Save" : "Open") || typed_enter;
    ImGui::SameLine();
    const bool cancel = ImGui::Button("Cancel");
    if ((ok && name_[0]) || cancel) {
        ImGui::CloseCurrentPopup();
        ImGui::EndPopup();
        choose(cancel ? std::string() : std::string(name_));
        return;
    }
    ImGui::EndPopup();
}

}  // namespace view
