// Callbacks of the common controls without a control object: Blend (page 0
// only) and the three copies, one per page, of Clear Overlay, the working
// resolution and Auto Preview. Each copy's callback makes the other two equal
// to it, so that the rest of the plug-in reads only the page-0 copy.
#include "host/callbacks.h"
#include "host/descriptors.h"
#include "host/entry_points.h"
#include "host/spark_export.h"

namespace {

unsigned char& value_byte(SparkBooleanDesc& box) { return *reinterpret_cast<unsigned char*>(&box.value); }

// The three copies of a checkbox: its value byte goes into the other two,
// which get no redraw call.
void copy_checkbox(SparkBooleanDesc& from, SparkBooleanDesc* const (&copies)[3]) {
    for (SparkBooleanDesc* to : copies)
        if (to != &from) value_byte(*to) = value_byte(from);
}

SparkBooleanDesc* const kOverlayCopies[3] = {&SparkBoolean28, &SparkBoolean57, &SparkBoolean86};
SparkBooleanDesc* const kAutoCopies[3] = {&SparkBoolean34, &SparkBoolean63, &SparkBoolean92};
SparkPupDesc* const kResolutionCopies[3] = {&SparkPup33, &SparkPup62, &SparkPup91};

unsigned long* overlay(int control, SparkBooleanDesc& box, int argument, const HostFrameRecord& record) {
    sparkControlUpdate(control);
    copy_checkbox(box, kOverlayCopies);
    return OverlayCB(argument, record);
}

unsigned long* auto_preview(int control, SparkBooleanDesc& box, int argument, const HostFrameRecord& record) {
    sparkControlUpdate(control);
    copy_checkbox(box, kAutoCopies);
    return DefaultCB(argument, record);
}

// A new working resolution is always shown at once, whatever Auto Preview says.
unsigned long* resolution(int control, SparkPupDesc& popup, const HostFrameRecord& record) {
    sparkControlUpdate(control);
    for (SparkPupDesc* to : kResolutionCopies)
        if (to != &popup) to->value = popup.value;
    return SparkProcess(record);
}

}  // namespace

extern "C" {

SPARK_EXPORT unsigned long* Blend1CB(int argument, HostFrameRecord record) {
    sparkViewingDraw();
    // Only with the mode flag at 1 and argument 1 is the new blend shown on
    // a processed frame; otherwise the redraw above is all.
    const unsigned char mode = frame_get<unsigned char>(record, frame_field::mode_flag);
    if (mode != 1 || argument != 1) return nullptr;
    sparkControlUpdate(27);
    return DefaultCB(1, record);
}

SPARK_EXPORT unsigned long* Overlay1CB(int argument, HostFrameRecord record) {
    return overlay(28, SparkBoolean28, argument, record);
}
SPARK_EXPORT unsigned long* Overlay2CB(int argument, HostFrameRecord record) {
    return overlay(57, SparkBoolean57, argument, record);
}
SPARK_EXPORT unsigned long* Overlay3CB(int argument, HostFrameRecord record) {
    return overlay(86, SparkBoolean86, argument, record);
}

SPARK_EXPORT unsigned long* SetRes1CB(int, HostFrameRecord record) { return resolution(33, SparkPup33, record); }
SPARK_EXPORT unsigned long* SetRes2CB(int, HostFrameRecord record) { return resolution(62, SparkPup62, record); }
SPARK_EXPORT unsigned long* SetRes3CB(int, HostFrameRecord record) { return resolution(91, SparkPup91, record); }

SPARK_EXPORT unsigned long* Auto1CB(int argument, HostFrameRecord record) {
    return auto_preview(34, SparkBoolean34, argument, record);
}
SPARK_EXPORT unsigned long* Auto2CB(int argument, HostFrameRecord record) {
    return auto_preview(63, SparkBoolean63, argument, record);
}
SPARK_EXPORT unsigned long* Auto3CB(int argument, HostFrameRecord record) {
    return auto_preview(92, SparkBoolean92, argument, record);
}

}  // extern "C"
