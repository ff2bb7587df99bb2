#include "host/amplitude_import.h"

#include <cstdio>

#include "framework/report.h"
#include "host/spark_export.h"

namespace {
constexpr int kAmplitudeChannel = 93;
}

void aiff_file_CB(const char* path) {
    FILE* file = path ? std::fopen(path, "r") : nullptr;
    if (!file) {
        sparkMessage("Unable to open file");
        message_pause(2);
        return;
    }
    int channel = 0, size = 0;
    if (std::fscanf(file, "Channel Amplitude %d:\n\tSize %d\n", &channel, &size) < 2) {
        sparkMessage("Not a valid control file");
        message_pause(2);
        std::fclose(file);
        return;
    }
    // A negative Size reads records until one does not scan. The count is
    // wide so that counting down from any int never overflows.
    long long count = size;
    while (count-- != 0) {
        int key = 0, frame = 0;
        float value = 0.0f;
        if (std::fscanf(file, "\tKey %d\n\t\tFrame %d\n\t\tValue %f\n\t\tEnd\n", &key, &frame, &value) < 3) break;
        // The record's key number positions the key; its frame number is
        // read and not used.
        sparkSetCurveKey(0, kAmplitudeChannel, key, value);
    }
    std::fclose(file);
}

extern "C" SPARK_EXPORT unsigned long* import_aiff_CB(int, HostFrameRecord) {
    char directory[256] = {};
    sparkWorkingDir(directory);
    directory[sizeof directory - 1] = '\0';
    sparkFileBrowserDisplay(directory, "", aiff_file_CB);
    return nullptr;
}
