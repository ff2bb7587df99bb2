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
    // The host's colour descriptor is a value and a callback: it has no
    // title field, and the page shows the pot beside its three sliders
    // "Light Colour R/G/B". The tool names it after them.
    if (c.number == kLightColourControl && c.kind == ControlKind::Color) return "Light Colour";
    return c.label();
}

// The name in messages: the title, or the number for a control without one.
std::string message_name(const Control& c) {
    return display_name(c).empty() ? std::to_string(c.number) : display_name(c);
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

// A packed colour word (R in bits 0-7) as "#RRGGBB".
std::string colour_text(double word) {
    const auto v = static_cast<std::uint32_t>(static_cast<std::int64_t>(word));
    char text[16];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", v & 0xFFu, (v >> 8) & 0xFFu, (v >> 16) & 0xFFu);
    return text;
}

std::string number_text(double v) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", v);
    return text;
}

}  // namespace

bool parse_decimal(const std::string& text, double& value) {
    std::size_t i = 0, digits = 0;
    auto skip_digits = [&] {
        const std::size_t from = i;
        while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) ++i;
        return i - from;
    };
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    digits = skip_digits();
    if (i < text.size() && text[i] == '.') ++i, digits += skip_digits();
    if (digits == 0) return false;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
        if (skip_digits() == 0) return false;
    }
    if (text.find_first_not_of(" \t", i) != std::string::npos) return false;
    value = std::strtod(text.c_str(), nullptr);
    return std::isfinite(value);
}

Status find_control(sparkhost::Host& host, const std::string& name, Control*& control) {
    control = nullptr;
    const std::string wanted = normalise(name);
    double number = 0;
    if (parse_decimal(wanted, number) && number == std::floor(number)) {
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
    const std::string name = message_name(c);
    if (c.kind == ControlKind::Push || c.kind == ControlKind::String)
        return usage_error(context + ": control \"" + name + "\" (" + std::to_string(c.number) +
                           ") takes no value");
    bool known = parse_decimal(text, value);
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
    if (!known && c.kind == ControlKind::Color) {
        if (text.size() != 7 || text[0] != '#' || text.find_first_not_of("0123456789abcdef", 1) != std::string::npos)
            return usage_error(context + ": \"" + raw + "\" is not a colour (control \"" + name + "\"; use #RRGGBB)");
        // "#RRGGBB" into the packed word: R in bits 0-7, top byte set.
        const unsigned long rgb = std::strtoul(text.c_str() + 1, nullptr, 16);
        value = static_cast<double>(0xFF000000u | ((rgb >> 16) & 0xFF) | (rgb & 0xFF00) | ((rgb & 0xFF) << 16));
        return ok_status();
    }
    if (!known) return usage_error(context + ": \"" + raw + "\" is not a number (control \"" + name + "\")");
    if (c.kind != ControlKind::Float && c.kind != ControlKind::UserFloat && value != std::floor(value)) {
        const double whole = std::trunc(value);
        warn(context + ": \"" + name + "\" takes whole numbers; " + number_text(value) + " becomes " +
             number_text(whole));
        value = whole;
    }
    // A colour as a number is the packed word, read signed (-1 is white, the
    // default) or unsigned.
    const double lo = c.kind == ControlKind::Color ? -2147483648.0 : c.minimum();
    const double hi = c.kind == ControlKind::Color ? 4294967295.0 : c.maximum();
    if (value < lo || value > hi) {
        const double clamped = value < lo ? lo : hi;
        warn(context + ": \"" + name + "\" " + number_text(value) + " is outside " + number_text(lo) + " ... " +
             number_text(hi) + ", using " + number_text(clamped));
        value = clamped;
    }
    return ok_status();
}

sparkhost::Host::SetupCheck setup_value_check(const std::string& path) {
    return [path](const Control& c, int line, const std::string& kind, const std::string& text, double& value,
                  std::string& error) {
        const std::string where = path + ":" + std::to_string(line);
        const std::string control = "control \"" + message_name(c) + "\" (" + std::to_string(c.number) + ")";
        if (kind != sparkhost::kind_name(c.kind)) {
            error = where + ": " + control + " is " + sparkhost::kind_name(c.kind) + ", not " + kind;
            return false;
        }
        // The colour word as setups store it.
        const std::string t = normalise(text);
        if (c.kind == ControlKind::Color && t.size() == 10 && t.compare(0, 2, "0x") == 0 &&
            t.find_first_not_of("0123456789abcdef", 2) == std::string::npos) {
            value = static_cast<double>(std::strtoul(t.c_str() + 2, nullptr, 16));
            return true;
        }
        const bool whole_kind = c.kind == ControlKind::Int || c.kind == ControlKind::Pup ||
                                c.kind == ControlKind::Boolean || c.kind == ControlKind::Color;
        double number = 0;
        if (whole_kind && parse_decimal(t, number) && number != std::floor(number)) {
            error = where + ": \"" + text + "\" is not a whole number (" + control + ")";
            return false;
        }
        const Status s = parse_control_value(c, text, value, where);
        error = s.message;
        return s.ok();
    };
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
    // --set shows the assignment as given; --blend and the like their value.
    const std::string context =
        option == "--set" ? option + " \"" + assignment + "\"" : option + " " + assignment.substr(eq + 1);
    if (Status s = parse_control_value(*c, assignment.substr(eq + 1), value, context); !s.ok()) return s;
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
        else if (c.kind == ControlKind::Color)
            range = "#RRGGBB";
        auto text = [&c](double v) { return c.kind == ControlKind::Color ? colour_text(v) : number_text(v); };
        auto it = defaults.find(c.number);
        const std::string def = it == defaults.end() || c.kind == ControlKind::Push ? "" : text(it->second);
        const std::string now = c.kind == ControlKind::Push ? "" : text(c.value());
        const std::string page = c.page() >= 0 ? std::to_string(c.page()) : "-";
        std::printf("%-4s %-4d %-8s %-26s %-22s %-10s %s\n", page.c_str(), c.number, sparkhost::kind_name(c.kind),
                    display_name(c).c_str(), range.c_str(), def.c_str(), now.c_str());
        if (c.kind == ControlKind::Pup)
            for (int i = 0; i < c.entry_count(); ++i)
                std::printf("%-4s %-4s %-8s   %d: %s\n", "", "", "", i, c.entry_title(i).c_str());
    }
}

}  // namespace tools
