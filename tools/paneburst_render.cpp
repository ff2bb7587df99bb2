// paneburst-render: loads the plug-in through the stand-in host and renders
// frames of a generated test card into image files.
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "sparkhost/host.h"
#include "sparkhost/plugin_path.h"
#include "tools/test_card.h"

namespace {

void usage() {
    std::fprintf(stderr,
                 "usage: paneburst-render [--frames N] [--out DIR] [--size WxH] [--depth 8|12]\n"
                 "                        [--bands N] [--threads N] [--blend 0-100] [--plugin FILE]\n");
}

bool parse_int(const char* text, int& out) {
    char* end = nullptr;
    errno = 0;
    const long v = std::strtol(text, &end, 10);
    if (errno || end == text || *end) return false;
    out = static_cast<int>(v);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    int frames = 3;
    int blend = -1;
    std::string out_dir = "out";
    std::string plugin = sparkhost::default_plugin_path();
    sparkhost::Settings settings;
    settings.bands = 16;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const char* value = i + 1 < argc ? argv[i + 1] : nullptr;
        auto need = [&](int& target) {
            if (!value || !parse_int(value, target)) {
                std::fprintf(stderr, "paneburst-render: %s needs a whole number\n", arg.c_str());
                std::exit(2);
            }
            ++i;
        };
        if (arg == "--frames") {
            need(frames);
        } else if (arg == "--blend") {
            need(blend);
        } else if (arg == "--depth") {
            need(settings.depth_bits);
        } else if (arg == "--bands") {
            need(settings.bands);
        } else if (arg == "--threads") {
            need(settings.threads);
        } else if (arg == "--out" && value) {
            out_dir = value;
            ++i;
        } else if (arg == "--plugin" && value) {
            plugin = value;
            ++i;
        } else if (arg == "--size" && value && std::sscanf(value, "%dx%d", &settings.width, &settings.height) == 2) {
            ++i;
        } else if (arg == "--help" || arg == "-h") {
            usage();
            return 0;
        } else {
            std::fprintf(stderr, "paneburst-render: unknown or incomplete option %s\n", arg.c_str());
            usage();
            return 2;
        }
    }
    if (frames < 1 || settings.width < 1 || settings.height < 1 ||
        (settings.depth_bits != 8 && settings.depth_bits != 12) || settings.bands < 1 || settings.bands > 127) {
        std::fprintf(stderr, "paneburst-render: a value is out of range\n");
        return 2;
    }

    std::string error;
    auto host = sparkhost::Host::load(plugin, error);
    if (!host) {
        std::fprintf(stderr, "paneburst-render: %s\n", error.c_str());
        return 1;
    }
    host->settings = settings;
    host->initialise();
    if (blend >= 0) {
        if (sparkhost::Control* c = host->control(27)) c->set_value(blend);
    }

    if (mkdir(out_dir.c_str(), 0777) != 0 && errno != EEXIST) {
        std::fprintf(stderr, "paneburst-render: cannot create %s: %s\n", out_dir.c_str(), std::strerror(errno));
        return 1;
    }
    tools::draw_gradient(host->buffer(3));
    for (int f = 1; f <= frames; ++f) {
        tools::draw_test_card(host->buffer(2), f);
        if (!host->process(static_cast<std::uint32_t>(f))) {
            std::fprintf(stderr, "paneburst-render: frame %d: the plug-in returned no result\n", f);
            return 1;
        }
        char name[64];
        std::snprintf(name, sizeof name, "/frame.%04d.ppm", f);
        const std::string path = out_dir + name;
        if (!tools::write_ppm(host->buffer(1), path)) {
            std::fprintf(stderr, "paneburst-render: cannot write %s\n", path.c_str());
            return 1;
        }
        std::printf("frame %d -> %s\n", f, path.c_str());
    }
    host->uninitialise();
    return 0;
}
