// Setups as a readable text file: one line per descriptor,
//   <number> <kind> <value>
// with strings written to the end of the line. Lines starting with '#' are comments.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

#include "sparkhost/host.h"

namespace sparkhost {

std::string Host::setup_text() const {
    std::ostringstream out;
    out << "# paneburst setup: control kind value\n";
    for (const auto& kv : controls_) {
        const Control& c = kv.second;
        if (c.kind == ControlKind::Push) continue;
        out << c.number << ' ' << kind_name(c.kind) << ' ';
        if (c.kind == ControlKind::String) {
            out << static_cast<const SparkStringDesc*>(c.descriptor)->text;
        } else if (c.kind == ControlKind::Color) {
            char hex[16];
            std::snprintf(hex, sizeof hex, "0x%08X", static_cast<const SparkColorDesc*>(c.descriptor)->value);
            out << hex;
        } else {
            char num[64];
            std::snprintf(num, sizeof num, "%.9g", c.value());
            out << num;
        }
        out << '\n';
    }
    return out.str();
}

bool Host::save_setup(const std::string& path, std::string& error) const {
    const std::string temp = path + ".tmp";
    const std::string text = setup_text();
    std::FILE* f = std::fopen(temp.c_str(), "wb");
    int failed = f ? 0 : errno;
    if (f && (std::fwrite(text.data(), 1, text.size(), f) != text.size() || std::fflush(f) != 0)) failed = errno;
    if (f && std::fclose(f) != 0 && !failed) failed = errno;
    if (!failed && std::rename(temp.c_str(), path.c_str()) != 0) failed = errno;
    if (!failed) return true;
    error = "cannot write setup " + path + ": " + std::strerror(failed);
    std::remove(temp.c_str());
    return false;
}

bool Host::load_setup(const std::string& path, std::string& error, const SetupCheck& check) {
    std::ifstream in(path);
    if (!in) {
        error = "cannot read setup " + path;
        return false;
    }
    std::string line;
    int line_number = 0;
    while (std::getline(in, line)) {
        ++line_number;
        const std::string where = path + ":" + std::to_string(line_number) + ": ";
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        int number;
        std::string kind;
        if (!(fields >> number >> kind)) {
            error = where + "not a setup line";
            return false;
        }
        Control* c = control(number);
        if (!c) continue;  // a control this plug-in no longer has
        std::string rest;
        std::getline(fields, rest);
        if (!rest.empty() && rest[0] == ' ') rest.erase(0, 1);
        const bool same_kind = kind == kind_name(c->kind);
        if (c->kind == ControlKind::String && same_kind) {
            auto* d = static_cast<SparkStringDesc*>(c->descriptor);
            std::strncpy(d->text, rest.c_str(), kStringTextSize - 1);
            d->text[kStringTextSize - 1] = '\0';
            continue;
        }
        double v = 0;
        if (check) {
            if (!check(*c, line_number, kind, rest, v, error)) return false;
        } else {
            if (!same_kind) continue;
            char* end = nullptr;
            v = std::strtod(rest.c_str(), &end);
            if (end == rest.c_str()) {
                error = where + "not a number";
                return false;
            }
        }
        c->set_value(v);
    }
    return true;
}

}  // namespace sparkhost
