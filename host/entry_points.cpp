// The entry points the host calls: set-up, tear-down and the frame cycle.
#include <cstdint>
#include <cstdio>

#include "effect/paneburst.h"
#include "framework/convert.h"
#include "framework/frame_pool.h"
#include "framework/report.h"
#include "host/binding.h"
#include "host/channel_editor.h"
#include "host/descriptors.h"
#include "host/globals.h"
#include "host/spark_export.h"

extern "C" {
SPARK_EXPORT int DLwidth = 0;
SPARK_EXPORT int DLheight = 0;
SPARK_EXPORT int DLscalesr = 1;
SPARK_EXPORT int DLnumProc = 1;
SPARK_EXPORT int DL_Sync_Ctrl = 1;
}

int deep12 = 0;
int no_buffers = 0;

HostBufferRecord ResultBufOutput;
HostBufferRecord SourceBufInput;
HostBufferRecord SourceBufInput2;
HostBufferRecord SourceBufInput3;
HostBufferRecord SourceBufInput4;

namespace {

int reduction_factor(int popup_value) {
    static const int kFactors[] = {1, 2, 3, 4, 6, 8, 12, 16, 32};
    const unsigned v = static_cast<unsigned>(popup_value);
    return v < 9 ? kFactors[v] : 1;
}

// Converts a host buffer into `image`, or into a new image of the working
// size when it is null; copy = 0 sets the image up without reading pixels.
ImageQ7* convert_in(void* pixels, const HostFrameRecord& info, double aspect, int s, int copy,
                    ImageQ7* image = nullptr) {
    const long w = frame_get<std::int32_t>(info, frame_field::frame_width);
    const long h = frame_get<std::int32_t>(info, frame_field::frame_height);
    if (!pixels) return nullptr;
    // The frame's images live in blocks kept from frame to frame.
    const int r = s < 1 ? 1 : s;
    if (!image) image = frame_pool_image(r == 1 ? w : reduced_size(w, r), r == 1 ? h : reduced_size(h, r));
    return deep12 ? ConvertFromDLImage12(pixels, w, h, aspect, s, image, copy)
                  : ConvertFromDLImage8(pixels, w, h, aspect, s, image, copy);
}

bool checkbox_on(CheckboxControlQ7& c) {
    long v = 0;
    c.GetValue(-1.0, v);
    return v != 0;
}

// Drops the images a frame made so far. Used on the early returns, so that a
// host that cannot hand over a buffer does not cost a frame's worth of memory.
void release_frame_images() {
    SourceQ7* inputs[] = {&Instance.front_clip, &Instance.back_clip, &Instance.matte_2d_clip,
                          &Instance.matte_3d_clip};
    for (SourceQ7* s : inputs) {
        frame_pool_drop(s->image);
        s->image = nullptr;
    }
    frame_pool_drop(Instance.result_clip.image);
    Instance.result_clip.image = nullptr;
}

}  // namespace

extern "C" {

SPARK_EXPORT unsigned int SparkInitialise(HostFrameRecord info) {
    if (sparkAPIVersionInfo() < 4.0)
        sparkError("This version of \"7-Paneburst\" needs IFFFS 7.0/4.0 (sparks API 4.0) or higher.");
    const std::int32_t depth = frame_get<std::int32_t>(info, frame_field::frame_depth);
    deep12 = (depth == 48 || depth == 64) ? 1 : 0;
    sparkLoadSetup(&info);
    show_version4(info, "7-Paneburst", 2, 2, "7", 1);
    bind_controls(Instance);
    sparkControlTitle(3, "Import AIFF");
    sparkControlTitle(0, "Paneburst");
    sparkControlTitle(1, "Light");
    sparkControlTitle(2, "Forces");
    sparkClipControlTitle(0, "FlyAway");
    sparkClipControlTitle(1, "Back");
    sparkClipControlTitle(2, "2DMatte");
    DL_Sync_Ctrl = 1;
    RenameChannelEditorEntries();
    return 2;
}

SPARK_EXPORT void SparkUnInitialise(HostFrameRecord info) {
    sparkSaveSetup(&info);
    frame_pool_release();
}

SPARK_EXPORT int SparkProcessStart(void) { return 1; }

SPARK_EXPORT int SparkClips(void) { return 4; }

SPARK_EXPORT void SparkMemoryTempBuffers(void) {}

SPARK_EXPORT unsigned long* SparkProcess(HostFrameRecord info) {
    sparkCursorBusy();
    if (no_buffers) {
        sparkMessage(" Q7-Paneburst cannot run due to insufficient buffers.");
        message_pause(5);
        return nullptr;
    }
    const int s = reduction_factor(SparkPup33.value);
    HostGraphRecord graph{};
    sparkGraphSetup(&graph);
    const double aspect = graph.pixel_aspect;

    const int width = frame_get<std::int32_t>(info, frame_field::frame_width);
    const int height = frame_get<std::int32_t>(info, frame_field::frame_height);
    DLheight = height;
    DLwidth = width;
    DLscalesr = s;
    DLnumProc = frame_get<std::int8_t>(info, frame_field::processor_count);
    // The band split divides by the processor count: a host that reports none
    // still has the calling thread.
    if (DLnumProc < 1) DLnumProc = 1;
    frame_pool_size(width, height, s);
    Instance.frame = static_cast<double>(frame_get<std::uint32_t>(info, frame_field::frame_number));
    Instance.render_alpha = 0;

    struct Input {
        int id;
        HostBufferRecord* record;
        SourceQ7* source;
    };
    const Input inputs[] = {{SourceIDInput, &SourceBufInput, &Instance.front_clip},
                            {SourceIDInput2, &SourceBufInput2, &Instance.back_clip},
                            {SourceIDInput3, &SourceBufInput3, &Instance.matte_2d_clip},
                            {SourceIDInput4, &SourceBufInput4, &Instance.matte_3d_clip}};
    // The front and back are read by every frame; a matte only while its
    // checkbox is on, so its pixels are converted below once the controls
    // are known.
    int copy = 1;
    for (const Input& in : inputs) {
        if (!sparkMemGetBuffer(in.id, in.record)) {
            release_frame_images();
            return nullptr;
        }
        in.source->clip = in.id - 2;
        in.source->deep = static_cast<unsigned char>(deep12);
        in.source->image = convert_in(in.record->pixels, info, aspect, s, copy);
        if (in.source == &Instance.back_clip) copy = 0;
        if (!in.source->image) {  // a buffer record without pixel memory
            release_frame_images();
            return nullptr;
        }
        in.source->temp_buffer = nullptr;
        in.source->host_buffer = nullptr;
    }
    if (!sparkMemGetBuffer(ResultIDOutput, &ResultBufOutput)) {
        release_frame_images();
        return nullptr;
    }
    Instance.result_clip.image = convert_in(ResultBufOutput.pixels, info, aspect, s, 0);
    if (!Instance.result_clip.image) {
        release_frame_images();
        return nullptr;
    }

    refresh_controls(Instance);
    if (DL_Sync_Ctrl == 1) {
        Instance.SyncControls();
        DL_Sync_Ctrl = 0;
    }
    if (checkbox_on(Instance.use_matte_2d_ctl))
        convert_in(SourceBufInput3.pixels, info, aspect, s, 1, Instance.matte_2d_clip.image);
    if (checkbox_on(Instance.use_matte_3d_ctl))
        convert_in(SourceBufInput4.pixels, info, aspect, s, 1, Instance.matte_3d_clip.image);
    Instance.ProcessFrame();

    const float blend = SparkFloat27.value / 100.0f;
    if (blend > 0.0f) Instance.result_clip.image->InBlend(blend, Instance.front_clip.image);

    ImageQ7* result = Instance.result_clip.image;
    if (deep12)
        ConvertToDLImage12(result, ResultBufOutput.pixels, width, height, s);
    else
        ConvertToDLImage8(result, ResultBufOutput.pixels, width, height, s);
    release_frame_images();

    sparkViewingCursor(1);
    return static_cast<unsigned long*>(ResultBufOutput.pixels);
}

}  // extern "C"
