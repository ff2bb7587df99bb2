// In-place normalisation of a three-float vector, shared by the motion and
// the lighting.
#pragma once

// Divides v by its length and returns the length. A vector whose largest
// component is below 1e-10 becomes (0, 0, 0) and gives 0.
//
// The length is three Newton steps for sqrt(S) from the largest component,
// not an exact root: a vector far from an axis comes out slightly shorter than
// unit length ((1, 1, 1) gives length 1.7321429 and a result of length
// 0.99995). That error is part of every result built on it.
double vecnorm(float* v);
