// The inverse mapping of a run of pixels of one row: for each pixel its
// projected depth on the element's plane, then the seven matrices of the
// inverse chain, giving the front-image position it shows.
//
// The pixels of a run are independent, so they are mapped several at a time
// in vector lanes. Each lane runs exactly the operations of the one-pixel
// path (ElementPlane::depth, then apply_matrix seven times: the same double
// products and sums in the same order, the same roundings to float), and
// IEEE arithmetic is lane by lane: the positions are bit-identical to the
// one-pixel path on every vector width. The widest unit the processor has is
// chosen once at load; PANEBURST_SIMD=baseline keeps the baseline x86-64 one
// (for checking that both give the same frames).
#pragma once

#include "render/element_geometry.h"
#include "render/inverse_chain.h"

namespace render {

// Maps pixels x0 ... x0 + n - 1 of row y into u[0 .. n-1], v[0 .. n-1].
void map_row(const ElementPlane& plane, const InverseChain& chain, int y, int x0, int n, float* u, float* v);

// The vector unit map_row uses: "avx2" or "baseline".
const char* map_row_unit();

// Every unit this processor can run, for comparing them: their count, the
// name of one, and map_row on that one.
int map_row_unit_count();
const char* map_row_unit_name(int unit);
void map_row_on(int unit, const ElementPlane& plane, const InverseChain& chain, int y, int x0, int n, float* u,
                float* v);

}  // namespace render
