#include "tools/view/pages.h"

#include <imgui.h>

#include <cmath>
#include <cstdio>
#include <vector>

namespace view {

using sparkhost::Control;
using sparkhost::ControlKind;

namespace {

constexpr int kSlots = 29;

std::string trimmed(std::string s) {
    while (!s.empty() && s.back() == ' ') s.pop_back();
    return s;
}

// The value moved to the nearest multiple of the step, within the range.
double on_step(double v, double lo, double hi, double step) {
    if (step > 0) v = std::round(v / step) * step;
    return std::fmin(std::fmax(v, lo), hi);
}

// Packed colour word (R in bits 0-7) and ImGui's 0..1 channels.
void unpack(double word, float rgb[3]) {
    const auto w = static_cast<unsigned>(static_cast<long long>(word) & 0xFFFFFFFF);
    for (int i = 0; i < 3; ++i) rgb[i] = ((w >> (8 * i)) & 0xFF) / 255.0f;
}
double pack(const float rgb[3]) {
    unsigned w = 0xFF000000u;
    for (int i = 0; i < 3; ++i) w |= static_cast<unsigned>(std::lround(rgb[i] * 255.0f)) << (8 * i);
    return static_cast<double>(w);
}

}  // namespace

bool Pages::disabled(const Control& c) {
    switch (c.kind) {
        case ControlKind::Float:
        case ControlKind::UserFloat:
        case ControlKind::Int: return c.minimum() == c.maximum();
        case ControlKind::Pup: return c.entry_count() <= 1;
        default: return false;
    }
}

std::string shown_title(const Control& c) {
    char text[256];
    const std::string format = c.title();
    if (c.kind == ControlKind::Int)
        std::snprintf(text, sizeof text, format.c_str(), static_cast<int>(c.value()));
    else if (c.kind == ControlKind::Float || c.kind == ControlKind::UserFloat)
        std::snprintf(text, sizeof text, format.c_str(), c.value());
    else
        return trimmed(format);
    return text;
}

void Pages::key_menu(Control& c) {
    if (!ImGui::BeginPopupContextItem(("keys##" + std::to_string(c.number)).c_str())) return;
    sparkhost::Host& host = shot_.host();
    const float frame = static_cast<float>(shot_.frame());
    ImGui::TextDisabled("%s (%d), frame %d", c.label().c_str(), c.number, shot_.frame());
    if (ImGui::MenuItem("Set key")) shot_.set_key(c.number);
    if (ImGui::MenuItem("Delete key", nullptr, false, host.has_key(c.number, frame))) shot_.delete_key(c.number);
    if (ImGui::MenuItem("Delete all keys", nullptr, false, host.animated(c.number))) host.clear_keys(c.number);
    ImGui::EndPopup();
}

void Pages::control(Control& c) {
    sparkhost::Host& host = shot_.host();
    const std::string id = "##c" + std::to_string(c.number);
    const bool greyed = disabled(c);
    const bool animated = host.animated(c.number);
    const bool keyed = host.has_key(c.number, static_cast<float>(shot_.frame()));
    if (greyed) ImGui::BeginDisabled();
    bool edited = false;
    double value = c.value();
    const float width = ImGui::GetContentRegionAvail().x - 28;
    switch (c.kind) {
        case ControlKind::Float:
        case ControlKind::UserFloat:
        case ControlKind::Int: {
            // The title is the slider's own format: "Z Speed: %.2f", "Seed: %d".
            ImGui::SetNextItemWidth(width);
            bool moved = false;
            double v = value;
            if (c.kind == ControlKind::Int) {
                int i = static_cast<int>(value);
                moved = ImGui::SliderInt(id.c_str(), &i, static_cast<int>(c.minimum()), static_cast<int>(c.maximum()),
                                         c.title().c_str());
                v = i;
            } else {
                float f = static_cast<float>(value);
                moved = ImGui::SliderFloat(id.c_str(), &f, static_cast<float>(c.minimum()),
                                           static_cast<float>(c.maximum()), c.title().c_str());
                v = f;
            }
            if (moved) {
                value = on_step(v, c.minimum(), c.maximum(), c.increment());
                edited = true;
            }
            break;
        }
        case ControlKind::Boolean: {
            bool v = value != 0;
            if (ImGui::Checkbox((trimmed(c.title()) + id).c_str(), &v)) value = v ? 1 : 0, edited = true;
            break;
        }
        case ControlKind::Push:
            if (ImGui::Button((trimmed(c.title()) + id).c_str(), ImVec2(width, 0)))
                changes_.push_back({c.number, 0, true});
            break;
        case ControlKind::Pup: {
            const int current = static_cast<int>(value);
            ImGui::SetNextItemWidth(width);
            if (ImGui::BeginCombo(id.c_str(), trimmed(c.entry_title(current)).c_str())) {
                for (int i = 0; i < c.entry_count(); ++i)
                    if (ImGui::Selectable((trimmed(c.entry_title(i)) + "##e" + std::to_string(i)).c_str(), i == current))
                        value = i, edited = i != current;
                ImGui::EndCombo();
            }
            break;
        }
        case ControlKind::Color: {
            float rgb[3];
            unpack(value, rgb);
            if (ImGui::ColorEdit3(("Colour" + id).c_str(), rgb, ImGuiColorEditFlags_NoInputs)) {
                value = pack(rgb);
                edited = true;
            }
            break;
        }
        case ControlKind::String: {
            // A text or file field: edited in place, passed on with Enter.
            auto* d = static_cast<SparkStringDesc*>(c.descriptor);
            ImGui::SetNextItemWidth(width);
            if (ImGui::InputText(id.c_str(), d->text, sizeof d->text, ImGuiInputTextFlags_EnterReturnsTrue))
                changes_.push_back({c.number, 0, true});
            break;
        }
    }
    if (greyed) ImGui::EndDisabled();
    if (c.kind != ControlKind::Push && c.kind != ControlKind::String) key_menu(c);
    if (animated) {
        ImGui::SameLine();
        ImGui::TextColored(keyed ? ImVec4(1, 0.8f, 0.2f, 1) : ImVec4(0.6f, 0.6f, 0.3f, 1), keyed ? "<>" : "~");
        if (ImGui::IsItemHovered()) ImGui::SetTooltip(keyed ? "key at this frame" : "animated");
    }
    if (edited) changes_.push_back({c.number, value, false});
}

void Pages::apply(const std::function<void(bool)>& changed) {
    std::vector<Change> changes;
    changes.swap(changes_);
    for (const Change& c : changes)
        changed(c.button ? shot_.press_button(c.number) : shot_.change_control(c.number, c.value));
}

void Pages::draw() {
    sparkhost::Host& host = shot_.host();
    for (int page = 0; page < 4; ++page) {
        std::string title = host.page_titles[page];
        if (title.empty()) title = "Page " + std::to_string(page + 1);
        if (!ImGui::BeginTabItem((title + "##page" + std::to_string(page)).c_str())) continue;
        // Controls in slot order; a page of this plug-in has 29 slots.
        std::vector<Control*> slots(kSlots, nullptr);
        for (auto& kv : host.controls()) {
            Control* c = host.control(kv.first);
            if (c->page() == page && c->slot() < kSlots) slots[c->slot()] = c;
        }
        for (Control* c : slots)
            if (c && !host.hidden(c->number)) control(*c);
        ImGui::EndTabItem();
    }
}

}  // namespace view
