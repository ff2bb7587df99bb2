#include "framework/report.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "abi/spark_abi.h"

void message_pause(unsigned seconds) {
    double factor = 1.0;
    if (const char* env = std::getenv("PANEBURST_MESSAGE_PAUSE")) {
        char* end = nullptr;
        const double v = std::strtod(env, &end);
        if (end != env && v >= 0.0) factor = v;
    }
    const double total = seconds * factor;
    if (total > 0.0) std::this_thread::sleep_for(std::chrono::duration<double>(total));
}

int PrintError(const char* text) {
    sparkMessage(text);
    message_pause(2);
    return std::fprintf(stderr, "SPARK_MESSAGE::\t%s\n", text);
}
