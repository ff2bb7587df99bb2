#include <cstring>

#include "sparkhost/host.h"

namespace sparkhost {

const char* kind_name(ControlKind kind) {
    switch (kind) {
        case ControlKind::Float: return "float";
        case ControlKind::UserFloat: return "userfloat";
        case ControlKind::Int: return "int";
        case ControlKind::Boolean: return "boolean";
        case ControlKind::Push: return "push";
        case ControlKind::Pup: return "popup";
        case ControlKind::Color: return "colour";
        case ControlKind::String: return "string";
    }
    return "?";
}

namespace {
const char* or_empty(const char* s) { return s ? s : ""; }
}  // namespace

std::string Control::title() const {
    switch (kind) {
        case ControlKind::Float:
        case ControlKind::UserFloat: return or_empty(static_cast<SparkFloatDesc*>(descriptor)->title);
        case ControlKind::Int: return or_empty(static_cast<SparkIntDesc*>(descriptor)->title);
        case ControlKind::Boolean: return or_empty(static_cast<SparkBooleanDesc*>(descriptor)->title);
        case ControlKind::Push: return or_empty(static_cast<SparkPushDesc*>(descriptor)->title);
        case ControlKind::Pup: return entry_title(static_cast<SparkPupDesc*>(descriptor)->value);
        case ControlKind::Color: return "";
        case ControlKind::String: return static_cast<SparkStringDesc*>(descriptor)->text;
    }
    return "";
}

std::string Control::label() const {
    std::string t = title();
    if (kind == ControlKind::Pup) {
        // "Render Quality: Med Quality  " names the control "Render Quality";
        // a popup of bare entries ("FULL", "1/2") is named by its number.
        const auto colon = t.find(':');
        t = colon == std::string::npos ? std::string() : t.substr(0, colon);
    } else {
        const auto pct = t.find('%');
        if (pct != std::string::npos) t = t.substr(0, pct);
        while (!t.empty() && (t.back() == ' ' || t.back() == ':')) t.pop_back();
    }
    while (!t.empty() && t.back() == ' ') t.pop_back();
    while (!t.empty() && t.front() == ' ') t.erase(t.begin());
    return t;
}

double Control::value() const {
    switch (kind) {
        case ControlKind::Float:
        case ControlKind::UserFloat: return static_cast<SparkFloatDesc*>(descriptor)->value;
        case ControlKind::Int: return static_cast<SparkIntDesc*>(descriptor)->value;
        case ControlKind::Boolean: return *static_cast<unsigned char*>(descriptor);
        case ControlKind::Pup: return static_cast<SparkPupDesc*>(descriptor)->value;
        case ControlKind::Color: return static_cast<SparkColorDesc*>(descriptor)->value;
        case ControlKind::Push:
        case ControlKind::String: return 0.0;
    }
    return 0.0;
}

void Control::set_value(double v) {
    switch (kind) {
        case ControlKind::Float:
        case ControlKind::UserFloat: static_cast<SparkFloatDesc*>(descriptor)->value = static_cast<float>(v); break;
        case ControlKind::Int: static_cast<SparkIntDesc*>(descriptor)->value = static_cast<int>(v); break;
        case ControlKind::Boolean: static_cast<SparkBooleanDesc*>(descriptor)->value = v != 0.0 ? 1 : 0; break;
        case ControlKind::Pup: static_cast<SparkPupDesc*>(descriptor)->value = static_cast<int>(v); break;
        case ControlKind::Color:
            static_cast<SparkColorDesc*>(descriptor)->value = static_cast<std::uint32_t>(static_cast<std::int64_t>(v));
            break;
        case ControlKind::Push:
        case ControlKind::String: break;
    }
}

double Control::minimum() const {
    if (kind == ControlKind::Float || kind == ControlKind::UserFloat)
        return static_cast<SparkFloatDesc*>(descriptor)->min;
    if (kind == ControlKind::Int) return static_cast<SparkIntDesc*>(descriptor)->min;
    if (kind == ControlKind::Pup) return 0;
    return 0;
}

double Control::maximum() const {
    if (kind == ControlKind::Float || kind == ControlKind::UserFloat)
        return static_cast<SparkFloatDesc*>(descriptor)->max;
    if (kind == ControlKind::Int) return static_cast<SparkIntDesc*>(descriptor)->max;
    if (kind == ControlKind::Pup) return entry_count() - 1;
    if (kind == ControlKind::Boolean) return 1;
    return 0;
}

double Control::increment() const {
    if (kind == ControlKind::Float || kind == ControlKind::UserFloat)
        return static_cast<SparkFloatDesc*>(descriptor)->increment;
    if (kind == ControlKind::Int) return static_cast<SparkIntDesc*>(descriptor)->increment;
    return 1;
}

SparkCallback Control::callback() const {
    switch (kind) {
        case ControlKind::Float:
        case ControlKind::UserFloat: return static_cast<SparkFloatDesc*>(descriptor)->callback;
        case ControlKind::Int: return static_cast<SparkIntDesc*>(descriptor)->callback;
        case ControlKind::Boolean: return static_cast<SparkBooleanDesc*>(descriptor)->callback;
        case ControlKind::Push: return static_cast<SparkPushDesc*>(descriptor)->callback;
        case ControlKind::Pup: return static_cast<SparkPupDesc*>(descriptor)->callback;
        case ControlKind::Color: return static_cast<SparkColorDesc*>(descriptor)->callback;
        case ControlKind::String: return static_cast<SparkStringDesc*>(descriptor)->callback;
    }
    return nullptr;
}

int Control::entry_count() const {
    return kind == ControlKind::Pup ? static_cast<SparkPupDesc*>(descriptor)->entry_count : 0;
}

std::string Control::entry_title(int index) const {
    if (kind != ControlKind::Pup || index < 0 || index >= kPupMaxEntries) return "";
    return or_empty(static_cast<SparkPupDesc*>(descriptor)->titles[index]);
}

}  // namespace sparkhost
