#include "tools/control_settings.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "tools/progress.h"

namespace tools {

namespace {

using sparkhost::Control;
using sparkhost::ControlKind;

// The three page copies of each common control.
const int kCommonCopies[][3] = {{28, 57, 86}, {33, 62, 91}, {34, 63, 92}};

const int* copies_of(int number) {
    for (const auto& group : kCommonCopies)
        for (int n : group)
            if (n == number) return group;
    return nullptr;
}

std::string normalise(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (std::isspace(static_cast<unsigned char>(c))) {
            if (!out.empty() && out.back() != ' ') out += ' ';
        } else {
            out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    while (!out.empty() && out.back() == ' ') out.pop_back();
    return out;
}

std::string display_name(const Control& c) {
    if (c.number == 33 || c.number == 62 || c.number == 91) return "Resolution";
    const std::string label = c.label();
    return label.empty() ? std::string() : label;
}

std::size_t edit_distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t up = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = up;
        }
    }
    return row[b.size()];
}

bool parse_number(const std::string& text, double& value) {
    const char* s = text.c_str();
    char* end = nullptr;
    value = std::strtod(s, &end);
    if (end == s) return false;
    while (*end && std::isspace(static_cast<unsigned char>(*end))) ++end;
    return *end == '\0' && std::isfinite(value);
}

std::string number_text(double v) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", v);
    return text;
}

}  // namespace

Status find_control(sparkhost::Host& host, const std::string& name, Control*& control) {
    control = nullptr;
    const std::string wanted = normalise(name);
    double number = 0;
    if (parse_number(wanted, number) && number == std::floor(number)) {
        control = host.control(static_cast<int>(number));
        if (!control) return usage_error("unknown control number " + name + " (--list-controls shows them)");
        return ok_status();
    }
    for (const auto& kv : host.controls()) {
        const Control& c = kv.second;
        if (!display_name(c).empty() && normalise(display_name(c)) == wanted) {
            control = host.control(c.number);
            return ok_status();
        }
    }
    // The closest titles: a typo or a wrong word. Titles containing the
    // name count as close too ("Speed" suggests the speed controls).
    std::vector<std::pair<std::size_t, std::string>> scored;
    for (const auto& kv : host.controls()) {
        const std::string title = display_name(kv.second);
        if (title.empty()) continue;
        const std::string key = normalise(title);
        std::size_t d = edit_distance(wanted, key);
        if (!wanted.empty() && key.find(wanted) != std::string::npos) d = std::min<std::size_t>(d, 1);
        if (std::find_if(scored.begin(), scored.end(), [&](const auto& s) { return s.second == title; }) ==
            scored.end())
            scored.push_back({d, title});
    }
    std::stable_sort(scored.begin(), scored.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::string hint;
    const std::size_t limit = std::max<std::size_t>(3, wanted.size() / 2);
    for (std::size_t i = 0; i < scored.size() && i < 3 && scored[i].first <= limit; ++i)
        hint += (hint.empty() ? "" : ", ") + ("\"" + scored[i].second + "\"");
    return usage_error("unknown control \"" + name + "\"" + (hint.empty() ? "" : " (did you mean " + hint + "?)"));
}

Status parse_control_value(const Control& c, const std::string& raw, double& value, const std::string& context) {
    const std::string text = normalise(raw);
    const std::string name = display_name(c).empty() ? std::to_string(c.number) : display_name(c);
    if (c.kind == ControlKind::Push || c.kind == ControlKind::String)
        return usage_error(context + ": control \"" + name + "\" (" + std::to_string(c.number) +
                           ") takes no value");
    bool known = parse_number(text, value);
    if (!known && c.kind == ControlKind::Boolean) {
        if (text == "on" || text == "yes" || text == "true") value = 1, known = true;
        if (text == "off" || text == "no" || text == "false") value = 0, known = true;
    }
    if (!known && c.kind == ControlKind::Pup) {
        for (int i = 0; i < c.entry_count() && !known; ++i) {
            std::string entry = normalise(c.entry_title(i));
            const auto colon = entry.find(':');
            if (colon != std::string::npos) entry = normalise(entry.substr(colon + 1));
            if (entry == text || entry == text + " quality") value = i, known = true;
        }
    }
    if (!known && c.kind == ControlKind::Color && text.size() > 1 && text[0] == '#') {
        char* end = nullptr;
        const unsigned long rgb = std::strtoul(text.c_str() + 1, &end, 16);
        if (*end == '\0' && text.size() == 7) {
            // "#RRGGBB" into the packed word: R in bits 0-7, top byte set.
            value = static_cast<double>(0xFF000000u | ((rgb >> 16) & 0xFF) | (rgb & 0xFF00) | ((rgb & 0xFF) << 16));
            return ok_status();
        }
    }
    if (!known) return usage_error(context + ": \"" + raw + "\" is not a number (control \"" + name + "\")");
    if (c.kind == ControlKind::Color) return ok_status();
    if (c.kind != ControlKind::Float && c.kind != ControlKind::UserFloat && value != std::floor(value)) {
        const double whole = std::trunc(value);
        warn(context + ": \"" + name + "\" takes whole numbers; " + number_text(value) + " becomes " +
             number_text(whole));
        value = whole;
    }
    const double lo = c.minimum(), hi = c.maximum();
    if (value < lo || value > hi) {
        const double clamped = value < lo ? lo : hi;
        warn(context + ": \"" + name + "\" " + number_text(value) + " is outside " + number_text(lo) + " ... " +
             number_text(hi) + ", using " + number_text(clamped));
        value = clamped;
    }
    return ok_status();
}

void write_control(sparkhost::Host& host, Control& c, double value) {
    if (const int* copies = copies_of(c.number)) {
        // Their callbacks only copy the value across the pages (and the
        // resolution's re-processes the frame, which must not happen here).
        for (int i = 0; i < 3; ++i)
            if (Control* copy = host.control(copies[i])) copy->set_value(value);
        return;
    }
    c.set_value(value);
    if (!c.callback()) return;
    const double written = c.value();
    host.call_callback(c.number);
    // A disabled control's callback puts the old value back, as a click on
    // a greyed-out checkbox does nothing in the host.
    if (c.value() != written && c.kind != ControlKind::Color) {
        warn("\"" + display_name(c) + "\" (" + std::to_string(c.number) +
             ") is disabled by the other settings; it stays " + number_text(c.value()));
    }
}

Status apply_setting(sparkhost::Host& host, const std::string& assignment, const std::string& option,
                     AutoPreviewOff* auto_preview) {
    const auto eq = assignment.find('=');
    if (eq == std::string::npos)
        return usage_error(option + " \"" + assignment + "\": use NAME=VALUE, e.g. \"Z Speed=6\"");
    Control* c = nullptr;
    if (Status s = find_control(host, assignment.substr(0, eq), c); !s.ok()) return usage_error(option + ": " + s.message);
    double value = 0;
    if (Status s = parse_control_value(*c, assignment.substr(eq + 1), value, option + " \"" + assignment + "\"");
        !s.ok())
        return s;
    write_control(host, *c, value);
    if (auto_preview && copies_of(c->number) == kCommonCopies[2]) auto_preview->adopt();
    return ok_status();
}

AutoPreviewOff::AutoPreviewOff(sparkhost::Host& host) : host_(host) { suspend(); }

void AutoPreviewOff::suspend() {
    for (int n : kCommonCopies[2])
        if (Control* c = host_.control(n)) {
            if (!saved_.count(n)) saved_[n] = c->value();
            c->set_value(0);
        }
}

void AutoPreviewOff::adopt() {
    saved_.clear();
    suspend();
}

void AutoPreviewOff::restore() {
    for (const auto& kv : saved_)
        if (Control* c = host_.control(kv.first)) c->set_value(kv.second);
    saved_.clear();
}

bool apply_preset(sparkhost::Host& host, const std::string& name) {
    static const char* const kPresets[] = {"explosion", "confetti", "venetianv", "venetianh"};
    int entry = -1;
    for (int i = 0; i < 4; ++i)
        if (normalise(name) == kPresets[i]) entry = i;
    Control* demos = host.control(kDemosControl);
    if (!demos || demos->kind != ControlKind::Pup || entry < 0) {
        warn("--preset " + name + ": this plug-in has no Demos control (" + std::to_string(kDemosControl) +
             "); rendering without the preset");
        return false;
    }
    demos->set_value(entry);
    host.call_callback(kDemosControl);
    return true;
}

std::map<int, double> control_values(sparkhost::Host& host) {
    std::map<int, double> values;
    for (const auto& kv : host.controls()) values[kv.first] = kv.second.value();
    return values;
}

void list_controls(sparkhost::Host& host, const std::map<int, double>& defaults) {
    std::printf("%-4s %-4s %-8s %-26s %-22s %-10s %s\n", "page", "num", "kind", "title", "range", "default", "value");
    for (const auto& kv : host.controls()) {
        const Control& c = kv.second;
        if (c.kind == ControlKind::String) continue;  // the input names
        std::string range;
        if (c.kind == ControlKind::Float || c.kind == ControlKind::UserFloat || c.kind == ControlKind::Int)
            range = number_text(c.minimum()) + " ... " + number_text(c.maximum());
        else if (c.kind == ControlKind::Boolean)
            range = "off/on";
        else if (c.kind == ControlKind::Pup)
            range = "0 ... " + std::to_string(c.entry_count() - 1);
        auto it = defaults.find(c.number);
        const std::string def = it == defaults.end() || c.kind == ControlKind::Push ? "" : number_text(it->second);
        const std::string now = c.kind == ControlKind::Push ? "" : number_text(c.value());
        const std::string page = c.page() >= 0 ? std::to_string(c.page()) : "-";
        std::printf("%-4s %-4d %-8s %-26s %-22s %-10s %s\n", page.c_str(), c.number, sparkhost::kind_name(c.kind),
                    display_name(c).c_str(), range.c_str(), def.c_str(), now.c_str());
        if (c.kind == ControlKind::Pup)
            for (int i = 0; i < c.entry_count(); ++i)
                std::printf("%-4s %-4s %-8s   %d: %s\n", "", "", "", i, c.entry_title(i).c_str());
    }
}

}  // namespace tools
