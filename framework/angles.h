// Degrees to radians, as the effect has always converted them: 3.141592654 / 180,
// a little above the full-precision pi / 180. Every angle of the system goes
// through this one constant, so that the overlay, the simulation and the
// renderer agree to the last bit.
#pragma once

constexpr double kDegreesToRadians = 0.017453292522222223;
// The same value in single precision, for the overlay's float arithmetic.
constexpr float kDegreesToRadiansF = static_cast<float>(kDegreesToRadians);
