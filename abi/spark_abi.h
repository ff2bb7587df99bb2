// The binary contract between the host and the plug-in on 64-bit Linux:
// records passed by value, control descriptors, and the host functions the
// plug-in imports by name. Shared by the plug-in and any program that loads it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// The host's per-call frame record. Only a handful of fields at fixed byte
// offsets are read; the rest belongs to the host.
struct HostFrameRecord {
    unsigned char bytes[4200];
};
static_assert(sizeof(HostFrameRecord) == 4200, "frame record size");

namespace frame_field {
constexpr std::size_t viewer_origin_x = 4096;
constexpr std::size_t viewer_origin_y = 4100;
constexpr std::size_t mode_flag = 4120;
constexpr std::size_t frame_number = 4124;
constexpr std::size_t frame_width = 4132;
constexpr std::size_t frame_height = 4136;
constexpr std::size_t frame_depth = 4140;
constexpr std::size_t processor_count = 4148;
}  // namespace frame_field

// Typed access to one field of a frame record (memcpy: the record is a byte
// blob and need not be aligned for T).
template <typename T>
inline T frame_get(const HostFrameRecord& r, std::size_t offset) {
    T v;
    std::memcpy(&v, r.bytes + offset, sizeof v);
    return v;
}
template <typename T>
inline void frame_set(HostFrameRecord& r, std::size_t offset, T v) {
    std::memcpy(r.bytes + offset, &v, sizeof v);
}

struct HostBufferRecord {
    std::uint64_t host_word0;
    void* pixels;  // offset 8: the buffer's pixel memory
    unsigned char rest[80];
};
static_assert(sizeof(HostBufferRecord) == 96, "buffer record size");
static_assert(offsetof(HostBufferRecord, pixels) == 8, "buffer pixel offset");

struct HostGraphRecord {
    float pixel_aspect;  // offset 0
    unsigned char rest[60];
};
static_assert(sizeof(HostGraphRecord) == 64, "graph record size");

extern "C" {
typedef unsigned long* (*SparkCallback)(int argument, HostFrameRecord record);
}

// Control descriptors, as the host reads them by name (SparkFloat8, ...).
struct SparkFloatDesc {
    float value, min, max, increment;
    int flags;
    const char* title;
    SparkCallback callback;
};
struct SparkIntDesc {
    int value, min, max, increment;
    int flags;
    const char* title;
    SparkCallback callback;
};
struct SparkBooleanDesc {
    int value;  // the plug-in reads and writes byte 0
    const char* title;
    SparkCallback callback;
};
struct SparkPushDesc {
    const char* title;
    SparkCallback callback;
};
constexpr int kPupMaxEntries = 20;
struct SparkPupDesc {
    int value;
    int entry_count;
    SparkCallback callback;
    const char* titles[kPupMaxEntries];
};
struct SparkColorDesc {
    std::uint32_t value;  // R bits 0-7, G 8-15, B 16-23, bits 24-31 set
    SparkCallback callback;
};
constexpr int kStringTextSize = 200;
struct SparkStringDesc {
    char text[kStringTextSize];
    const char* title;
    int flags;
    SparkCallback callback;
};

static_assert(sizeof(SparkFloatDesc) == 40 && offsetof(SparkFloatDesc, title) == 24 &&
                  offsetof(SparkFloatDesc, callback) == 32,
              "float descriptor layout");
static_assert(sizeof(SparkIntDesc) == 40 && offsetof(SparkIntDesc, title) == 24, "int layout");
static_assert(sizeof(SparkBooleanDesc) == 24 && offsetof(SparkBooleanDesc, title) == 8,
              "boolean layout");
static_assert(sizeof(SparkPushDesc) == 16, "push layout");
static_assert(sizeof(SparkPupDesc) == 176 && offsetof(SparkPupDesc, titles) == 16, "pup layout");
static_assert(sizeof(SparkColorDesc) == 16 && offsetof(SparkColorDesc, callback) == 8,
              "colour layout");
static_assert(sizeof(SparkStringDesc) == 224 && offsetof(SparkStringDesc, title) == 200 &&
                  offsetof(SparkStringDesc, callback) == 216,
              "string layout");

// Host functions, resolved from the loading process at dlopen time.
extern "C" {
double sparkAPIVersionInfo(void);
void sparkError(const char* text);
void sparkMessage(const char* text);
int sparkMessageConfirm(const char* question);
int sparkLoadSetup(void* frame_record);
int sparkSaveSetup(void* frame_record);
void sparkControlTitle(int page, const char* title);
void sparkClipControlTitle(int clip, const char* title);
int sparkMemGetFreeMemory(void);
int sparkMemGetBuffer(int id, HostBufferRecord* r);
int sparkGraphSetup(HostGraphRecord* g);
int sparkGetFrame(int clip, int frame, void* pixels);
int sparkMpFork(void (*fn)(), int nargs, ...);
void sparkMpInfo(unsigned long* a, unsigned long* b);
void sparkControlUpdate(int control);
void sparkEnableParameter(int kind, int control);
void sparkDisableParameter(int kind, int control);
float sparkGetCurveValuef(int kind, int control, float frame);
int sparkSetCurveKey(int kind, int control, int key, float value);
void sparkViewingDraw(void);
void sparkViewingCursor(int shape);
void sparkCursorBusy(void);
float sparkGetViewerRatio(void);
int sparkCeAddFolder(int first, const char* name);
int sparkCeAddControl(int first, int second, int control);
int sparkSetControlName(int first, int control, const char* name);
void sparkWorkingDir(char* buffer);
void sparkFileBrowserDisplay(const char* directory, const char* extension,
                             void (*done)(const char* path));
}
