// Slider controls: integer, float, angle, size and position. A disabled
// slider keeps its value and has its range frozen at it; enabling it again
// restores the range from the auxiliary record.
//
// Every operation on an object that was never bound only keeps its flags.
#pragma once

#include "framework/control.h"
#include "abi/spark_abi.h"

class IntegerControlQ7 : public ControlQ7 {
public:
    void Sync() override;
    void SetValue(double frame, long v);
    // At a frame >= 0 the animated value there, truncated toward zero; at a
    // frame < 0 the value of the last Sync.
    void GetValue(double frame, long& v);
    void Hide(bool hide) override;
    void Disable(bool off) override;

    SparkIntDesc* desc() const { return static_cast<SparkIntDesc*>(descriptor); }

    IntegerRangeQ7* aux = nullptr;
    long value = 0;
};

class FloatControlQ7 : public ControlQ7 {
public:
    void Sync() override;
    void SetValue(double frame, double v);
    // At a frame >= 0 the animated value there; at a frame < 0 the value of
    // the last Sync.
    void GetValue(double frame, double& v);
    void Hide(bool hide) override;
    void Disable(bool off) override;

    SparkFloatDesc* desc() const { return static_cast<SparkFloatDesc*>(descriptor); }

    FloatRangeQ7* aux = nullptr;
    double value = 0.0;
};

// An angle in degrees, held as the host holds it (converted by its users).
class AngleControlQ7 : public FloatControlQ7 {};

// The host holds 100 x the framework value.
class SizeControlQ7 : public FloatControlQ7 {
public:
    void Sync() override;
    void SetValue(double frame, double v);
    void GetValue(double frame, double& v);
};

// A point of two float controls, x at `id` and y at `id` + 1; the host holds
// 100 x each coordinate. Sync does nothing: the entry points write the
// cached pair themselves before every frame and every overlay redraw.
class PositionControlQ7 : public ControlQ7 {
public:
    void SetValue(double frame, double new_x, double new_y);
    void GetValue(double frame, double& out_x, double& out_y);
    void Hide(bool hide) override;
    void Disable(bool off) override;

    SparkFloatDesc* desc() const { return static_cast<SparkFloatDesc*>(descriptor); }
    // Writes the cached pair from the two descriptors (host value / 100).
    void refresh();

    SparkFloatDesc* y_descriptor = nullptr;
    PositionRangeQ7* aux = nullptr;
    double x = 0.0;
    double y = 0.0;
};
