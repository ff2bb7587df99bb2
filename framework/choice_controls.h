// Choice controls: the checkbox and the list (popup menu).
//
// Every operation on an object that was never bound only keeps its flags.
#pragma once

#include "framework/control.h"
#include "abi/spark_abi.h"

// The host keeps a checkbox as an int of which the framework reads and
// writes only the low byte.
class CheckboxControlQ7 : public ControlQ7 {
public:
    void Sync() override;
    // Writes the value byte; switching on (v = 1) switches every other member
    // of the exclusive group off.
    void SetValue(double frame, long v);
    // The cached state as 0 or 1, whatever the frame: a checkbox is not
    // animated.
    void GetValue(double frame, long& v);
    void Hide(bool hide) override;
    // A checkbox has no range to freeze: disabling only saves the value byte,
    // which the host callback writes back when the user clicks the greyed-out
    // box.
    void Disable(bool off) override;

    SparkBooleanDesc* desc() const { return static_cast<SparkBooleanDesc*>(descriptor); }
    unsigned char* value_byte() const { return reinterpret_cast<unsigned char*>(descriptor); }

    int saved = 0;
    CheckboxGroupQ7* aux = nullptr;
    bool value = false;
};

// The host counts the entries from 0, the framework from 1.
class ListControlQ7 : public ControlQ7 {
public:
    void Sync() override;
    void SetValue(double frame, long v);
    // The host value + 1 read now (and cached), whatever the frame.
    void GetValue(double frame, long& v);
    void Hide(bool hide) override;
    // Disabled, the popup offers a single entry; enabled again, the defined
    // count from the auxiliary record.
    void Disable(bool off) override;

    SparkPupDesc* desc() const { return static_cast<SparkPupDesc*>(descriptor); }

    ListInfoQ7* aux = nullptr;
    long value = 0;
};
