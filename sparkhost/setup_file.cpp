// Setups as a readable text file: one line per descriptor,
//   <number> <kind> <value>
// with strings written to the end of the line. Lines starting with '#' are comments.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

#include "sparkhost/host.h"

namespace sparkhost {

bool Host::save_setup(const std::string& path, std::string& error) const {
    const std::string temp = path + ".tmp";
    {
        std::ofstream out(temp);
        if (!out) {
            error = "cannot write setup " + path;
            return false;
        }
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
        if (!out.flush()) {
            error = "cannot write setup " + path;
            return false;
        }
    }
    if (std::rename(temp.c_str(), path.c_str()) != 0) {
        error = "cannot write setup " + path;
        std::remove(temp.c_str());
        return false;
    }
    return true;
}

bool Host::load_setup(const std::string& path, std::string& error) {
    std::ifstream in(path);
    if (!in) {
        error = "cannot read setup " + path;
        return false;
    }
    std::string line;
    int line_number = 0;
    while (std::getline(in, line)) {
        ++line_number;
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        int number;
        std::string kind;
        if (!(fields >> number >> kind)) {
            error = path + ":" + std::to_string(line_number) + ": not a setup line";
            return false;
        }
        Control* c = control(number);
        if (!c || kind != kind_name(c->kind)) continue;  // a control this plug-in no longer has
        std::string rest;
        std::getline(fields, rest);
        if (!rest.empty() && rest[0] == ' ') rest.erase(0, 1);
        if (c->kind == ControlKind::String) {
            auto* d = static_cast<SparkStringDesc*>(c->descriptor);
            std::strncpy(d->text, rest.c_str(), kStringTextSize - 1);
            d->text[kStringTextSize - 1] = '\0';
        } else {
            char* end = nullptr;
            const double v = std::strtod(rest.c_str(), &end);
            if (end == rest.c_str()) {
                error = path + ":" + std::to_string(line_number) + ": not a number";
                return false;
            }
            c->set_value(v);
        }
    }
    return true;
}

}  // namespace sparkhost
