#include "tools/keys_writer.h"

#include <cstdio>
#include <fstream>

#include "tools/control_settings.h"

namespace tools {

Status save_keys(sparkhost::Host& host, const std::string& path, int& key_count) {
    key_count = 0;
    const std::string temp = path + ".tmp";
    {
        std::ofstream out(temp);
        if (!out) return failure("cannot write key file " + path);
        out << "# paneburst keys: frame  control = value\n";
        for (const auto& curve : host.curves()) {
            sparkhost::Control* c = host.control(curve.first);
            if (!c) continue;
            std::string name = c->label();
            sparkhost::Control* found = nullptr;
            if (name.empty() || !find_control(host, name, found).ok() || found != c) name = std::to_string(c->number);
            for (const auto& key : curve.second) {
                char line[256];
                // %.9g keeps every float bit, so the keys read back are the keys written.
                std::snprintf(line, sizeof line, "%-6.9g %s = %.9g\n", key.first, name.c_str(), key.second);
                out << line;
                ++key_count;
            }
        }
        if (!out.flush()) return failure("cannot write key file " + path);
    }
    if (std::rename(temp.c_str(), path.c_str()) != 0) {
        std::remove(temp.c_str());
        return failure("cannot write key file " + path);
    }
    return ok_status();
}

}  // namespace tools
