// Control objects: typed wrappers of the host's control descriptors.
//
// An object is bound to the descriptor of its host control number and caches
// that control's value in the framework's units (Sync). It writes a value back
// and makes the host redraw the control (SetValue), reads the animated value at
// any frame (GetValue), hides or shows the control (Hide) and greys it out by
// freezing its range (Disable). SetValue and GetValue are not virtual: each
// class has its own, with its own argument types.
//
// The classes live in:
//   framework/control.h           the base and the auxiliary records
//   framework/slider_controls.h   integer, float, angle, size, position
//   framework/choice_controls.h   checkbox, list
//   framework/colour_control.h    colour
//   framework/text_controls.h     text, file, button
#pragma once

#include <cstdint>

// Auxiliary records. Every bound control but a push button keeps one, an
// exported data object next to its descriptor; they hold what an object needs
// to undo a Disable (the range it was defined with) and a little more.

// Integer slider: the range the control is defined with.
struct IntegerRangeQ7 {
    int minimum;
    int maximum;
};

// Float, angle and size sliders: the range the control is defined with.
struct FloatRangeQ7 {
    float minimum;
    float maximum;
};

// Position: the defined ranges of the x and the y control.
struct PositionRangeQ7 {
    float x_minimum;
    float x_maximum;
    float y_minimum;
    float y_maximum;
};

// List: the default entry, the defined entry count, and the entry names
// without the control's prefix.
constexpr int kListNames = 4;
struct ListInfoQ7 {
    int default_entry;
    int entry_count;
    const char* names[kListNames];
};

// Checkbox: an exclusive group. Switching a member on switches the other
// members off. `count` members at most kGroupMembers.
constexpr int kGroupMembers = 124;
struct CheckboxGroupQ7 {
    int count;
    int members[kGroupMembers];             // control numbers
    unsigned char* values[kGroupMembers];  // the members' host value bytes
};

// Colour: receives the descriptor's colour word on every Disable, so that a
// click on the greyed-out colour can be undone.
struct ColourSaveQ7 {
    std::uint32_t saved;
};

class ControlQ7 {
public:
    ControlQ7() = default;
    ControlQ7(const ControlQ7&) = delete;
    ControlQ7& operator=(const ControlQ7&) = delete;

    virtual void Sync() {}
    virtual void Disable(bool off) { disabled = off; }
    virtual void Hide(bool hide) { hidden = hide; }
    virtual void ResetKeyframes() {}
    virtual void EnableKeyframes() {}
    virtual ~ControlQ7() = default;

    int id = 0;                   // the host control number
    void* descriptor = nullptr;   // the host descriptor of control `id`
    bool disabled = false;
    bool hidden = false;
    // The host callbacks pass a change on to the effect only while this is
    // true (and the control is not disabled).
    bool notify = true;

protected:
    // Shows or hides one host control and nothing else.
    static void show_control(int control, bool hide);
};
