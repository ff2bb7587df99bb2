// dlcb_N: the callback of every control bound to a control object. Each one
// refreshes its object, undoes the click on a disabled checkbox or colour,
// passes the change to the effect's handler, and lets the effect update which
// controls are shown where that can change.
//
// The position pairs share the callback of their x control (37 calls dlcb_36).
//
// Every member runs the same steps, some of them left out by its kind:
// refresh, (checkboxes) redraw, disabled test, handler, notify test,
// (checkboxes and lists) SyncControls, DefaultCB.
#include "host/callbacks.h"

#include <cstdint>

#include "effect/paneburst.h"
#include "host/binding.h"
#include "host/descriptors.h"
#include "host/light_colour.h"
#include "host/spark_export.h"

namespace {

enum class Handler { None, CtrlUpdate, Use2DMatte, Use3DMatte, UseAttraction, Restart, Demos, LightColour };

// Undoes a change the user made on a disabled control: its saved value goes
// back into the descriptor. Sliders, lists and buttons cannot be changed while
// disabled (their range is frozen), so they need nothing.
void undo_disabled_change(const BindingRow& row) {
    if (row.kind == BoundKind::Checkbox) {
        auto* box = static_cast<CheckboxControlQ7*>(row.object);
        *box->value_byte() = static_cast<unsigned char>(box->saved);
        sparkControlUpdate(row.id);
    } else if (row.kind == BoundKind::Colour) {
        auto* colour = static_cast<ColourControlQ7*>(row.object);
        if (colour->aux) colour->desc()->value = colour->aux->saved;
        sparkControlUpdate(row.id);
    }
}

unsigned long* route(int control, Handler handler, bool sync_controls, int argument, const HostFrameRecord& record) {
    const BindingRow* row = bound_control(control);
    if (!row) return nullptr;
    ControlQ7& object = *row->object;
    // A push button has no value to refresh.
    if (row->kind != BoundKind::Button) object.Sync();
    if (row->kind == BoundKind::Checkbox) sparkControlUpdate(control);
    if (object.disabled) {
        undo_disabled_change(*row);
        return nullptr;
    }

    const double frame = static_cast<double>(frame_get<std::uint32_t>(record, frame_field::frame_number));
    switch (handler) {
        case Handler::None: break;
        case Handler::CtrlUpdate: Instance.CtrlUpdateCB(object, frame); break;
        case Handler::Use2DMatte: Instance.Use2DMatteCB(object, frame); break;
        case Handler::Use3DMatte: Instance.Use3DMatteCB(object, frame); break;
        case Handler::UseAttraction: Instance.UseAttractionCB(object, frame); break;
        case Handler::Restart: Instance.RestartCB(object, frame); break;
        case Handler::Demos: Instance.DemosCB(object, frame); break;
        case Handler::LightColour:
            // The sliders follow the pot, as GetLightColourCB moves them but
            // without its tail: the member's own tail follows.
            if (argument == 1) light_colour_pot_to_sliders(record);
            break;
    }

    if (!object.notify) return nullptr;
    if (sync_controls) Instance.SyncControls();
    return DefaultCB(argument, record);
}

}  // namespace

#define MEMBER(n, handler, sync_controls)                                         \
    SPARK_EXPORT unsigned long* dlcb_##n(int argument, HostFrameRecord record) {  \
        return route(n, Handler::handler, sync_controls, argument, record);     \
    }

extern "C" {

// Integer, float, angle and position sliders: refresh only.
MEMBER(6, None, false)
MEMBER(7, None, false)
MEMBER(26, None, false)
MEMBER(8, None, false)
MEMBER(9, None, false)
MEMBER(13, None, false)
MEMBER(14, None, false)
MEMBER(15, None, false)
MEMBER(16, None, false)
MEMBER(17, None, false)
MEMBER(18, None, false)
MEMBER(20, None, false)
MEMBER(21, None, false)
MEMBER(22, None, false)
MEMBER(23, None, false)
MEMBER(24, None, false)
MEMBER(25, None, false)
MEMBER(38, None, false)
MEMBER(39, None, false)
MEMBER(40, None, false)
MEMBER(47, None, false)
MEMBER(69, None, false)
MEMBER(74, None, false)
MEMBER(76, None, false)
MEMBER(81, None, false)
MEMBER(83, None, false)
MEMBER(84, None, false)
MEMBER(70, None, false)
MEMBER(77, None, false)
MEMBER(36, None, false)
MEMBER(65, None, false)
MEMBER(67, None, false)
MEMBER(72, None, false)
MEMBER(79, None, false)

// Checkboxes without a rule of their own.
MEMBER(10, None, true)
MEMBER(11, None, true)
MEMBER(12, None, true)
MEMBER(50, None, true)
MEMBER(52, None, true)

// The master checkboxes of the visibility rules.
MEMBER(35, CtrlUpdate, true)
MEMBER(46, CtrlUpdate, true)
MEMBER(64, CtrlUpdate, true)
MEMBER(71, CtrlUpdate, true)
MEMBER(75, CtrlUpdate, true)
MEMBER(82, CtrlUpdate, true)
MEMBER(49, Use2DMatte, true)
MEMBER(51, Use3DMatte, true)
MEMBER(78, UseAttraction, true)

// Lists.
MEMBER(30, None, true)
MEMBER(19, Demos, true)

// The Restart button of each page.
MEMBER(29, Restart, false)
MEMBER(58, Restart, false)
MEMBER(87, Restart, false)

// The light colour pot.
MEMBER(42, LightColour, false)

}  // extern "C"
