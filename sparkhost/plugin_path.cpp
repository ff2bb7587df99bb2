#include "sparkhost/plugin_path.h"

#include <unistd.h>

#include <cstdlib>

namespace sparkhost {

std::string default_plugin_path() {
    if (const char* env = std::getenv("PANEBURST_PLUGIN")) return env;
    char exe[4096];
    const ssize_t n = readlink("/proc/self/exe", exe, sizeof exe - 1);
    if (n <= 0) return "paneburst.spark";
    std::string dir(exe, static_cast<std::size_t>(n));
    dir = dir.substr(0, dir.rfind('/'));
    // Tools and tests live in subfolders of the build tree; the plug-in at its top.
    for (int up = 0; up < 3; ++up) {
        const std::string candidate = dir + "/paneburst.spark";
        if (access(candidate.c_str(), R_OK) == 0) return candidate;
        const auto slash = dir.rfind('/');
        if (slash == std::string::npos || slash == 0) break;
        dir = dir.substr(0, slash);
    }
    return "paneburst.spark";
}

}  // namespace sparkhost
