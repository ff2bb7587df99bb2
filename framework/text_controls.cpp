#include "framework/text_controls.h"

#include <cctype>
#include <cstring>

// ---- TextControlQ7 ----

void TextControlQ7::Sync() {
    if (!desc()) return;
    std::memcpy(text, desc()->text, sizeof text);
    text[sizeof text - 1] = '\0';
}

void TextControlQ7::write_text(const char* source) {
    char* target = desc()->text;
    std::strncpy(target, source ? source : "", kStringTextSize - 1);
    target[kStringTextSize - 1] = '\0';
}

void TextControlQ7::SetValue(double, const char* new_text) {
    if (!desc()) return;
    write_text(new_text);
    sparkControlUpdate(id);
    Sync();
}

void TextControlQ7::GetValue(double, char*& out) { out = desc() ? desc()->text : text; }

void TextControlQ7::Hide(bool hide) {
    if (desc()) show_control(id, hide);
    hidden = hide;
}

// ---- FileControlQ7 ----

void FileControlQ7::SetValue(double, const char* new_text) {
    if (!desc()) return;
    write_text(new_text);
    sparkControlUpdate(id + 7);
    Sync();
}

void FileControlQ7::GetValue(double, char*& out) {
    if (!desc()) {
        out = text;
        return;
    }
    char* s = desc()->text;
    char* kept = s;
    for (char* p = s; *p; ++p)
        if (!std::isspace(static_cast<unsigned char>(*p))) *kept++ = *p;
    *kept = '\0';
    out = s;
}

void FileControlQ7::Hide(bool hide) {
    if (desc()) {
        show_control(id, hide);
        show_control(id + 7, hide);
    }
    hidden = hide;
}

void FileControlQ7::Disable(bool off) {
    if (disabled == off) return;
    if (desc()) sparkControlUpdate(id);
    disabled = off;
}

// ---- ButtonControlQ7 ----

void ButtonControlQ7::Hide(bool hide) {
    if (desc()) show_control(id, hide);
    hidden = hide;
}

void ButtonControlQ7::Disable(bool off) {
    if (disabled == off) return;
    if (desc()) sparkControlUpdate(id);
    disabled = off;
}
