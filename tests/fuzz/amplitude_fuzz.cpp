// libFuzzer target: the amplitude key file reader on arbitrary bytes.
// Built by scripts/fuzz-amplitude.sh with the reader's sources and the
// minimal host below.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/amplitude_import.h"

extern "C" {
int sparkSetCurveKey(int, int control, int, float) {
    if (control != 93) std::abort();  // only the amplitude channel may be keyed
    return 1;
}
void sparkMessage(const char*) {}
void sparkWorkingDir(char* buffer) { buffer[0] = '\0'; }
void sparkFileBrowserDisplay(const char*, const char*, void (*)(const char*)) {}

int LLVMFuzzerInitialize(int*, char***) {
    setenv("PANEBURST_MESSAGE_PAUSE", "0", 1);
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path = "/tmp/paneburst-amplitude-fuzz-" + std::to_string(getpid()) + ".txt";
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return 0;
    std::fwrite(data, 1, size, f);
    std::fclose(f);
    aiff_file_CB(path.c_str());
    return 0;
}
}
