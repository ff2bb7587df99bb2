// Text, file and push-button controls.
//
// Every operation on an object that was never bound only keeps its flags.
#pragma once

#include "framework/control.h"
#include "abi/spark_abi.h"

// A text field (SparkStringN); the cached value is a copy of its text.
class TextControlQ7 : public ControlQ7 {
public:
    void Sync() override;
    void SetValue(double frame, const char* new_text);
    // The descriptor's own text buffer, whatever the frame.
    void GetValue(double frame, char*& out);
    void Hide(bool hide) override;

    SparkStringDesc* desc() const { return static_cast<SparkStringDesc*>(descriptor); }

    char text[kStringTextSize] = {};

protected:
    // Copies `source` into the descriptor's buffer, truncated to fit and
    // always terminated.
    void write_text(const char* source);
};

// A file name: the text field shown at `id` + 7, chosen with the push button
// at `id`. `descriptor` is the text field's.
class FileControlQ7 : public TextControlQ7 {
public:
    void SetValue(double frame, const char* new_text);
    // The descriptor's text with every white-space character removed in
    // place.
    void GetValue(double frame, char*& out);
    void Hide(bool hide) override;
    void Disable(bool off) override;

    SparkPushDesc* button = nullptr;
};

// A push button: no value.
class ButtonControlQ7 : public ControlQ7 {
public:
    void Hide(bool hide) override;
    void Disable(bool off) override;

    SparkPushDesc* desc() const { return static_cast<SparkPushDesc*>(descriptor); }
};
