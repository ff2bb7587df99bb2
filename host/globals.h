// Process-wide state of the host interface.
#pragma once

#include "abi/spark_abi.h"

extern "C" {
extern int DLwidth;
extern int DLheight;
extern int DLscalesr;
extern int DLnumProc;
extern int DL_Sync_Ctrl;
}

// 1 when the host's buffers hold 12-bit pixels; decided once per initialisation.
extern int deep12;
// 1 when the host offered fewer image buffers than the plug-in needs.
extern int no_buffers;

// Buffer ids of the result and the four inputs, in clip order.
enum BufferId {
    ResultIDOutput = 1,
    SourceIDInput = 2,
    SourceIDInput2 = 3,
    SourceIDInput3 = 4,
    SourceIDInput4 = 5,
};

extern HostBufferRecord ResultBufOutput;
extern HostBufferRecord SourceBufInput;
extern HostBufferRecord SourceBufInput2;
extern HostBufferRecord SourceBufInput3;
extern HostBufferRecord SourceBufInput4;

void show_version4(HostFrameRecord info, const char* name, int buffers_8bit, int buffers_12bit,
                   const char* revision, int interface_kind);
