#include "tools/keys_file.h"

#include <cctype>
#include <cstdlib>
#include <fstream>

#include "tools/control_settings.h"
#include "tools/frame_pattern.h"

namespace tools {

namespace {
std::string trim(const std::string& s) {
    std::size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a]))) ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1]))) --b;
    return s.substr(a, b - a);
}
}  // namespace

Status load_keys(sparkhost::Host& host, const std::string& path, int& key_count) {
    key_count = 0;
    std::ifstream in(path);
    if (!in) return failure("--keys " + path + ": cannot read the file");
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        const std::string where = path + ":" + std::to_string(number);
        const std::string text = trim(line);
        if (text.empty() || text[0] == '#') continue;
        // FRAME, blanks, CONTROL = VALUE
        const std::size_t blank = text.find_first_of(" \t");
        const std::string frame_text = text.substr(0, blank);
        const std::string rest = blank == std::string::npos ? std::string() : trim(text.substr(blank));
        const auto eq = rest.find('=');
        double frame = 0;
        if (eq == std::string::npos || !parse_decimal(frame_text, frame))
            return usage_error(where + ": not a key (use FRAME CONTROL = VALUE, e.g. \"50 Z Speed = 20\")");
        if (frame < 0 || frame > kMaxFrame)
            return usage_error(where + ": frame " + frame_text + " is outside 0 ... " + std::to_string(kMaxFrame) +
                               " (frames are numbered from 0)");
        sparkhost::Control* c = nullptr;
        if (Status s = find_control(host, trim(rest.substr(0, eq)), c); !s.ok())
            return usage_error(where + ": " + s.message);
        double value = 0;
        if (Status s = parse_control_value(*c, trim(rest.substr(eq + 1)), value, where); !s.ok()) return s;
        host.set_key(c->number, static_cast<float>(frame), static_cast<float>(value));
        ++key_count;
    }
    return ok_status();
}

}  // namespace tools
