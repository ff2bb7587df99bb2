// Grid geometry of a frame and the rebuild of the element array from it.
#include "effect/grid.h"

#include "effect/element_array.h"
#include "effect/paneburst.h"

namespace {

struct Axis {
    int requested_cell = 0;
    int elements = 1;
    bool clamped = false;
    int cell = 0;
    int tile = 1;
    int origin = 0;
    int count = 0;
};

// One direction of the grid: `size` pixels cut into `elements` tiles.
Axis compute_axis(int size, int elements) {
    Axis a;
    // The host keeps the controls at 1 ... 100; anything below 1 is read as
    // one tile rather than dividing by it.
    a.elements = elements < 1 ? 1 : elements;
    if (size < 1) return a;  // no image, no tiles
    a.requested_cell = size / a.elements;

    if (a.elements > size) {
        // More tiles than pixels: one-pixel tiles, and the control is set
        // back to the image size.
        a.elements = size;
        a.clamped = true;
        a.tile = 1;
    } else {
        a.tile = size / a.elements;
    }
    a.cell = size / a.elements;

    if (a.tile < size) {
        // Put a tile edge on the centre, then step back until the first tile
        // starts at or left of 0.
        const int centre = static_cast<int>(0.5 * size + 0.5);
        a.origin = centre - ((centre + a.tile - 1) / a.tile) * a.tile;
        // Tile starts origin + k * tile below size.
        a.count = (size - a.origin + a.tile - 1) / a.tile;
    } else {
        a.origin = 0;
        a.count = 1;
    }
    return a;
}

}  // namespace

GridGeometry compute_grid(int width, int height, int x_elements, int y_elements) {
    const Axis across = compute_axis(width, x_elements);
    const Axis down = compute_axis(height, y_elements);
    GridGeometry g;
    g.requested_cell_w = across.requested_cell;
    g.requested_cell_h = down.requested_cell;
    g.x_elements = across.elements;
    g.y_elements = down.elements;
    g.clamp_x = across.clamped;
    g.clamp_y = down.clamped;
    g.cell_w = across.cell;
    g.cell_h = down.cell;
    g.tile_width = across.tile;
    g.tile_height = down.tile;
    g.grid_x0 = across.origin;
    g.grid_y0 = down.origin;
    g.columns = across.count;
    g.rows = down.count;
    g.element_count = across.count * down.count;
    return g;
}

bool grid_cells_changed(const tagINFO& info, const GridGeometry& grid) {
    return grid.requested_cell_w != info.last_cell_w || grid.requested_cell_h != info.last_cell_h;
}

void apply_grid(tagINFO* info, const GridGeometry& grid) {
    info->tile_width = grid.tile_width;
    info->tile_height = grid.tile_height;
    info->grid_x0 = grid.grid_x0;
    info->grid_y0 = grid.grid_y0;
    info->columns = grid.columns;
    info->rows = grid.rows;
    info->element_count = grid.element_count;
    info->last_cell_w = grid.cell_w;
    info->last_cell_h = grid.cell_h;
}

void Paneburst::initialise_polygons(tagINFO* info, tagPOLYGON* polygons) {
    const int count = elements_in_reach(*this, polygons, info);
    const float grav_x = info->use_gravity ? info->gravity * info->gravity_cos : 0.0f;
    const float grav_y = info->use_gravity ? info->gravity * info->gravity_sin : 0.0f;

    // One counter for the whole grid: element k reads table entries 6k + 1 to
    // 6k + 6, so a Seed and a grid always give the same elements.
    int counter = 0;
    for (int row = 0; row < info->rows; ++row) {
        for (int column = 0; column < info->columns; ++column) {
            const int index = row * info->columns + column;
            if (index >= count) return;
            tagPOLYGON& p = polygons[index];
            // Part tiles at the borders keep their negative edges; the centre
            // of such a tile can lie outside the image.
            const int x0 = info->grid_x0 + column * info->tile_width;
            const int y0 = info->grid_y0 + row * info->tile_height;
            p.src_left = x0;
            p.src_right = x0 + info->tile_width;
            p.src_top = y0;
            p.src_bottom = y0 + info->tile_height;
            // An odd tile size gives a half-pixel centre.
            p.x = static_cast<float>(x0) + 0.5f * static_cast<float>(info->tile_width);
            p.y = static_cast<float>(y0) + 0.5f * static_cast<float>(info->tile_height);
            p.z = info->foreground_z;

            // The draw order is fixed: var x, y, z, then spin var x, y, z.
            // The z factors lie in [-2 var, 0]: the z speed never grows.
            // Single-precision arithmetic throughout, like the fields.
            p.var_x = part_rand_11(&counter) * info->speed_var_x;
            p.var_y = part_rand_11(&counter) * info->speed_var_y;
            p.var_z = (2.0f * part_rand_01(&counter) - 2.0f) * info->speed_var_z;

            p.grav_x = grav_x;
            p.grav_y = grav_y;
            p.angle_x = p.angle_y = p.angle_z = 0.0f;

            p.spin_var_x = (2.0f * part_rand_01(&counter) - 2.0f) * info->rot_var_x;
            p.spin_var_y = (2.0f * part_rand_01(&counter) - 2.0f) * info->rot_var_y;
            p.spin_var_z = (2.0f * part_rand_01(&counter) - 2.0f) * info->rot_var_z;

            p.drawn = 1;
            p.parked = 0;
        }
    }
}
