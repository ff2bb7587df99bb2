#include "tests/plugin_fixture.h"

#include <cstdlib>

namespace testing_support {

sparkhost::Host& plugin_host() {
    static std::unique_ptr<sparkhost::Host> host;
    if (!host) {
        std::string error;
        host = sparkhost::Host::load(PANEBURST_PLUGIN_FILE, error);
        if (!host) {
            ADD_FAILURE() << error;
            std::abort();
        }
        host->echo_messages = false;
    }
    return *host;
}

void fill_inputs(sparkhost::Host& host, unsigned seed) {
    for (int id = 2; id <= 5; ++id) {
        sparkhost::FrameBuffer& b = host.buffer(id);
        unsigned state = seed * 2654435761u + static_cast<unsigned>(id) * 40503u;
        for (int y = 0; y < b.height; ++y)
            for (int x = 0; x < b.width; ++x)
                for (int c = 0; c < 3; ++c) {
                    state = state * 1664525u + 1013904223u;
                    b.set(x, y, c, b.deep ? (state >> 16) : (state >> 24));
                }
    }
}

void start(sparkhost::Host& host, int width, int height, int depth_bits, int bands) {
    // A healthy host with nothing said yet, whatever an earlier test in the
    // same process left behind.
    host.messages.clear();
    host.failing_buffers.clear();
    host.settings.free_buffers = 16;
    host.settings.api_version = 4.0;
    host.settings.width = width;
    host.settings.height = height;
    host.settings.depth_bits = depth_bits;
    host.settings.bands = bands;
    host.initialise();
}

}  // namespace testing_support
