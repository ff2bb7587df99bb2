// The tails every callback ends in: re-process the frame at once (Auto
// Preview) or let the viewer redraw what it has.
#include "host/callbacks.h"
#include "host/descriptors.h"
#include "host/entry_points.h"

unsigned long* DefaultCB(int argument, HostFrameRecord record) {
    // Only the page-0 copy of Auto Preview is read; its callbacks keep the
    // other two equal to it. Any argument but 1 means the host does not want
    // a frame now.
    const unsigned char auto_preview = *reinterpret_cast<const unsigned char*>(&SparkBoolean34.value);
    if (auto_preview && argument == 1) return SparkProcess(record);
    sparkViewingDraw();
    return nullptr;
}

unsigned long* OverlayCB(int, HostFrameRecord) {
    sparkViewingDraw();
    return nullptr;
}
