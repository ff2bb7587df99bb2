#include "framework/choice_controls.h"

// ---- CheckboxControlQ7 ----

void CheckboxControlQ7::Sync() {
    if (descriptor) value = *value_byte() != 0;
}

void CheckboxControlQ7::SetValue(double, long v) {
    if (!descriptor) return;
    *value_byte() = static_cast<unsigned char>(v);
    sparkControlUpdate(id);
    Sync();
    if (v != 1 || !aux) return;
    const int n = aux->count < kGroupMembers ? aux->count : kGroupMembers;
    for (int i = 0; i < n; ++i) {
        if (aux->values[i]) *aux->values[i] = 0;
        sparkControlUpdate(aux->members[i]);
    }
}

void CheckboxControlQ7::GetValue(double, long& v) { v = value ? 1 : 0; }

void CheckboxControlQ7::Hide(bool hide) {
    if (descriptor) show_control(id, hide);
    hidden = hide;
}

void CheckboxControlQ7::Disable(bool off) {
    // The saved value is refreshed on every call, also when the state stays.
    if (descriptor) saved = *value_byte();
    if (disabled == off) return;
    if (descriptor) sparkControlUpdate(id);
    disabled = off;
}

// ---- ListControlQ7 ----

void ListControlQ7::Sync() {
    if (desc()) value = desc()->value + 1L;
}

void ListControlQ7::SetValue(double, long v) {
    if (!desc()) return;
    desc()->value = static_cast<int>(v - 1);
    sparkControlUpdate(id);
    Sync();
}

void ListControlQ7::GetValue(double, long& v) {
    Sync();
    v = value;
}

void ListControlQ7::Hide(bool hide) {
    if (desc()) show_control(id, hide);
    hidden = hide;
}

void ListControlQ7::Disable(bool off) {
    if (disabled == off) return;
    if (desc()) {
        if (off)
            desc()->entry_count = 1;
        else if (aux)
            desc()->entry_count = aux->entry_count;
        sparkControlUpdate(id);
    }
    disabled = off;
}
