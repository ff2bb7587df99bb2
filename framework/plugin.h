// The plug-in base: per-frame hooks, the clip records, and the band driver
// that runs a member function over horizontal bands of lines on every
// processor the host offers.
#pragma once

#include <cstdio>

#include "framework/image.h"
#include "framework/report.h"

struct HostBufferRecord;

// Host-derived globals, published by the entry points before each frame.
extern "C" {
extern int DLwidth;
extern int DLheight;
extern int DLscalesr;
extern int DLnumProc;
}

class SourceQ7 {
public:
    void GetValue(double frame, ImageQ7*& image);

    void* temp_buffer = nullptr;
    HostBufferRecord* host_buffer = nullptr;
    ImageQ7* image = nullptr;
    int clip = 0;
    unsigned char deep = 0;
};

class ResultQ7 {
public:
    ImageQ7* image = nullptr;
};

class PluginQ7 {
public:
    typedef void (PluginQ7::*MpFunc)(long first, long last);
    typedef void (*LibFunc)(void* argument, int first, int last);

    PluginQ7() = default;
    virtual ~PluginQ7() = default;
    virtual void ProcessFrame() {}
    virtual void ProcessFrameOGL(int, int, double, double, double, double) {}
    virtual void SyncControls() {}
    virtual void Load(FILE*, long) {}
    virtual void Save(FILE*) {}
    virtual void LoadPrivate() {}
    virtual void SavePrivate() {}
    virtual void Reset(int) {}
    virtual void FrameChange(double) {}

    int MultiProcess(MpFunc func, long lines);
    // Lets a derived class hand its own band workers to the driver.
    template <class Derived>
    int MultiProcess(void (Derived::*func)(long, long), long lines) {
        return MultiProcess(static_cast<MpFunc>(func), lines);
    }

    void execute_library_mp_func(long first, long last);
    int AbortRender() { return 0; }
    void LoadPrivateData(void*, int*, char*) {}
    void SavePrivateData(void*, int, char*) {}
    float* GetTrackData(SourceQ7* source, double frame);
    void mp_ImgToTV(long first, long last);

    double frame = 0.0;
    unsigned char render_alpha = 0;
    LibFunc lib_func = nullptr;
    void* lib_arg = nullptr;
    float* track_data = nullptr;
    ImageQ7* track_image = nullptr;
};

int lib_mp_exec(void* plugin, PluginQ7::LibFunc func, int lines, void* argument);
int lib_abort_render(void* plugin);

// The inclusive line range of band k out of `processors` over `lines` lines:
// equal bands, the last one taking the remainder. Empty bands have last < first.
struct Band {
    long first;
    long last;
};
Band band_of(long k, long lines, long processors);

// Runs a plain band worker over `lines` lines on all processors through the
// host's fork, with the band rule above: worker(job, first, last) once per
// band. For framework work that belongs to no plug-in or image object (the
// conversions in and out of host buffers, clearing per-pixel maps).
typedef void (*BandWorker)(void* job, long first, long last);
int run_in_bands(BandWorker worker, void* job, long lines);
