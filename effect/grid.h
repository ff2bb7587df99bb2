// The element grid's geometry: tile size, origin and counts of a frame, and
// the clamping of X / Y Elements to the image size.
//
// The frame pipeline wires it in like this (W, H: the result image's size;
// X, Y: the X / Y Elements control values of this frame):
//
//   const GridGeometry grid = compute_grid(W, H, X, Y);
//   if (grid_cells_changed(info, grid)) restart = 1;  // before any clamping
//   ...
//   if (grid.clamp_x) x_elements_ctl.SetValue(-1.0, grid.x_elements);
//   if (grid.clamp_y) y_elements_ctl.SetValue(-1.0, grid.y_elements);
//   apply_grid(&info, grid);  // tiles, origin, counts, element_count, last cells
//   ensure_element_capacity(info.element_count);
//
// initialise_polygons and update_polygons grow the element array themselves
// if the call to ensure_element_capacity was left out, so the array is never
// overrun; the renderer relies on the pipeline having made it big enough.
#pragma once

#include "effect/records.h"

struct GridGeometry {
    // W / X Elements and H / Y Elements with the values as requested, before
    // any clamping: what the restart check compares with last_cell_w/h.
    int requested_cell_w = 0, requested_cell_h = 0;

    // Element counts after clamping to the image size. When clamp_x (clamp_y)
    // is set the control asked for more elements than the image has pixels
    // and must be set back to x_elements (y_elements).
    int x_elements = 1, y_elements = 1;
    bool clamp_x = false, clamp_y = false;

    // W / x_elements and H / y_elements after clamping: the next frame's
    // last_cell_w and last_cell_h.
    int cell_w = 0, cell_h = 0;

    int tile_width = 1, tile_height = 1;
    int grid_x0 = 0, grid_y0 = 0;  // both <= 0
    int columns = 0, rows = 0;
    int element_count = 0;  // rows x columns
};

// The geometry of a W x H frame cut into x_elements x y_elements tiles.
// Tiles are whole pixels (the size is rounded down); with more than one
// column a tile edge sits on the image centre, rounded to a whole pixel, and
// part tiles cover the borders. A single tile spanning the width (X Elements
// 1) starts at 0. Down works the same way.
GridGeometry compute_grid(int width, int height, int x_elements, int y_elements);

// True when the requested cell size differs from the previous frame's: the
// grid must be rebuilt.
bool grid_cells_changed(const tagINFO& info, const GridGeometry& grid);

// Writes the tile size, origin, counts, element_count and the cell sizes for
// the next frame's restart check into info.
void apply_grid(tagINFO* info, const GridGeometry& grid);
