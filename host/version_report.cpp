// The start-up banner and the check that the host can provide enough buffers.
#include <cstdio>
#include <string>

#include "framework/report.h"
#include "host/globals.h"

void show_version4(HostFrameRecord, const char* name, int buffers_8bit, int buffers_12bit,
                   const char* revision, int interface_kind) {
    const char* interface_word = interface_kind == 1 ? "UCAPI" : interface_kind == 0 ? "NATIVE" : " ";
    char banner[512];
    std::snprintf(banner, sizeof banner, "Corvane MP-V%s.%s Brumble %s for Discreet %s\n    %s  Built %s at %s",
                  "5.0", revision, name, " ", interface_word, __DATE__, __TIME__);
    const std::string rule_eq(51, '=');
    std::printf("%s\n%s\n%s\n", rule_eq.c_str(), banner, rule_eq.c_str());
    std::fflush(stdout);

    std::printf("%s\n", deep12 ? "... 12 bit mode selected." : "... 8-10 bit mode selected.");
    std::fflush(stdout);

    const int available = sparkMemGetFreeMemory();
    std::printf("Available buffers = %d\n", available);
    std::fflush(stdout);

    std::printf("%s\n\n", std::string(51, '+').c_str());
    std::fflush(stdout);

    const int needed = deep12 ? buffers_12bit : buffers_8bit;
    if (available < needed) {
        std::printf("ERROR: we need %d image buffers, but we only got %d.\n", needed, available);
        std::printf("... Processing will be turned off ...\n");
        std::fflush(stdout);
        sparkMessage("Insufficient image buffers available! Giving up!");
        message_pause(5);
        no_buffers = 1;
    } else {
        no_buffers = 0;
    }
}
