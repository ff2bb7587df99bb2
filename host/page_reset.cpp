// The Reset button of each page: after the user confirms, every control of
// that page with a control object goes back to its load-time value; the
// objects of the other pages are only refreshed.
//
// A reset calls none of the per-control handlers of the effect; visibility is
// brought up to date once, by SyncControls, at the end.
#include "effect/paneburst.h"
#include "host/binding.h"
#include "host/callbacks.h"
#include "host/load_defaults.h"
#include "host/spark_export.h"

namespace {

int page_of(int control) { return (control - 6) / 29; }

// Writes the default of one descriptor and has the host redraw it.
void restore(int control, void* descriptor) {
    if (restore_load_value(control, descriptor)) sparkControlUpdate(control);
}

void restore_row(const BindingRow& row) {
    restore(row.id, row.descriptor);
    if (row.kind == BoundKind::Position) restore(row.id + 1, row.extra[0]);  // x, then y
    if (row.kind == BoundKind::Colour)
        for (int i = 0; i < 3; ++i) restore(row.id + 1 + i, row.extra[i]);  // pot, then R, G, B
}

unsigned long* reset_page(int page, int argument, const HostFrameRecord& record) {
    if (!sparkMessageConfirm("Are you sure you want to reset the current settings to default values?"))
        return DefaultCB(argument, record);
    // In binding order. The Restart buttons have no value to reset.
    for (const BindingRow& row : binding_table(Instance)) {
        if (row.kind != BoundKind::Button && page_of(row.id) == page) restore_row(row);
        row.object->Sync();
    }
    Instance.SyncControls();
    return DefaultCB(argument, record);
}

}  // namespace

extern "C" {

SPARK_EXPORT unsigned long* Reset1CB(int argument, HostFrameRecord record) { return reset_page(0, argument, record); }
SPARK_EXPORT unsigned long* Reset2CB(int argument, HostFrameRecord record) { return reset_page(1, argument, record); }
SPARK_EXPORT unsigned long* Reset3CB(int argument, HostFrameRecord record) { return reset_page(2, argument, record); }

}  // extern "C"
