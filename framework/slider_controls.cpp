#include "framework/slider_controls.h"

// ---- IntegerControlQ7 ----

void IntegerControlQ7::Sync() {
    if (desc()) value = desc()->value;
}

void IntegerControlQ7::SetValue(double, long v) {
    if (!desc()) return;
    desc()->value = static_cast<int>(v);
    sparkControlUpdate(id);
    Sync();
}

void IntegerControlQ7::GetValue(double frame, long& v) {
    if (frame >= 0.0 && desc())
        v = static_cast<long>(sparkGetCurveValuef(1, id, static_cast<float>(frame)));
    else
        v = value;
}

void IntegerControlQ7::Hide(bool hide) {
    if (desc()) show_control(id, hide);
    hidden = hide;
}

namespace {
// Greys a slider out by freezing its range at its value, or frees it again
// with the range it was defined with.
template <class Descriptor, class Range>
void freeze_range(Descriptor* d, const Range* aux, bool off) {
    if (off) {
        d->min = d->value;
        d->max = d->value;
    } else if (aux) {
        d->min = aux->minimum;
        d->max = aux->maximum;
    }
}
}  // namespace

void IntegerControlQ7::Disable(bool off) {
    if (disabled == off) return;
    if (desc()) {
        freeze_range(desc(), aux, off);
        sparkControlUpdate(id);
    }
    disabled = off;
}

// ---- FloatControlQ7 ----

void FloatControlQ7::Sync() {
    if (desc()) value = desc()->value;
}

void FloatControlQ7::SetValue(double, double v) {
    if (!desc()) return;
    desc()->value = static_cast<float>(v);
    sparkControlUpdate(id);
    Sync();
}

void FloatControlQ7::GetValue(double frame, double& v) {
    if (frame >= 0.0 && desc())
        v = sparkGetCurveValuef(1, id, static_cast<float>(frame));
    else
        v = value;
}

void FloatControlQ7::Hide(bool hide) {
    if (desc()) show_control(id, hide);
    hidden = hide;
}

void FloatControlQ7::Disable(bool off) {
    if (disabled == off) return;
    if (desc()) {
        freeze_range(desc(), aux, off);
        sparkControlUpdate(id);
    }
    disabled = off;
}

// ---- SizeControlQ7 ----
// The divisions by 100 are done in double, on the float widened first.

void SizeControlQ7::Sync() {
    if (desc()) value = static_cast<double>(desc()->value) / 100.0;
}

void SizeControlQ7::SetValue(double, double v) {
    if (!desc()) return;
    desc()->value = static_cast<float>(100.0 * v);
    sparkControlUpdate(id);
    Sync();
}

void SizeControlQ7::GetValue(double frame, double& v) {
    if (frame >= 0.0 && desc())
        v = static_cast<double>(sparkGetCurveValuef(1, id, static_cast<float>(frame))) / 100.0;
    else
        v = value;
}

// ---- PositionControlQ7 ----

void PositionControlQ7::refresh() {
    if (!desc() || !y_descriptor) return;
    x = static_cast<double>(desc()->value) / 100.0;
    y = static_cast<double>(y_descriptor->value) / 100.0;
}

void PositionControlQ7::SetValue(double, double new_x, double new_y) {
    if (!desc() || !y_descriptor) return;
    desc()->value = static_cast<float>(100.0 * new_x);
    y_descriptor->value = static_cast<float>(100.0 * new_y);
    sparkControlUpdate(id);
    sparkControlUpdate(id + 1);
    // Sync leaves the pair alone: it follows at the next refresh.
    Sync();
}

void PositionControlQ7::GetValue(double frame, double& out_x, double& out_y) {
    if (frame >= 0.0 && desc()) {
        const float f = static_cast<float>(frame);
        out_x = static_cast<double>(sparkGetCurveValuef(1, id, f)) / 100.0;
        out_y = static_cast<double>(sparkGetCurveValuef(1, id + 1, f)) / 100.0;
    } else {
        out_x = x;
        out_y = y;
    }
}

void PositionControlQ7::Hide(bool hide) {
    if (desc()) {
        show_control(id, hide);
        show_control(id + 1, hide);
    }
    hidden = hide;
}

void PositionControlQ7::Disable(bool off) {
    if (disabled == off) return;
    if (desc() && y_descriptor) {
        if (off) {
            desc()->min = desc()->max = desc()->value;
            y_descriptor->min = y_descriptor->max = y_descriptor->value;
        } else if (aux) {
            desc()->min = aux->x_minimum;
            desc()->max = aux->x_maximum;
            y_descriptor->min = aux->y_minimum;
            y_descriptor->max = aux->y_maximum;
        }
        sparkControlUpdate(id);
        sparkControlUpdate(id + 1);
    }
    disabled = off;
}
