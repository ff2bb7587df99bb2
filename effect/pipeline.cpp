// The frame pipeline: parameters from the controls, the random tables, the
// background canvas, the element step and the compositing into the result.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "effect/grid.h"
#include "effect/paneburst.h"
#include "framework/angles.h"
#include "framework/frame_pool.h"

namespace {

long checkbox(CheckboxControlQ7& c) {
    long v = 0;
    c.GetValue(-1.0, v);
    return v;
}
double number(FloatControlQ7& c) {
    double v = 0;
    c.GetValue(-1.0, v);
    return v;
}
}  // namespace

void Paneburst::fill_info() {
    tagINFO* in = &info;
    const float s = scale;
    const double W = in->width, H = in->height;
    in->foreground_z = static_cast<float>(number(foreground_z_ctl) / s);
    in->maximum_z = static_cast<float>(number(maximum_z_ctl) / s);
    in->speed_x = static_cast<float>(number(speed_x_ctl) / s);
    in->speed_y = static_cast<float>(number(speed_y_ctl) / s);
    in->speed_z = static_cast<float>(number(speed_z_ctl) / s);
    in->speed_var_x = static_cast<float>(number(speed_var_x_ctl) / 100.0);
    in->speed_var_y = static_cast<float>(number(speed_var_y_ctl) / 100.0);
    in->speed_var_z = static_cast<float>(number(speed_var_z_ctl) / 100.0);
    in->rot_speed_x = static_cast<float>(number(rot_speed_x_ctl));
    in->rot_speed_y = static_cast<float>(number(rot_speed_y_ctl));
    in->rot_speed_z = static_cast<float>(number(rot_speed_z_ctl));
    in->rot_var_x = static_cast<float>(number(rot_var_x_ctl) / 100.0);
    in->rot_var_y = static_cast<float>(number(rot_var_y_ctl) / 100.0);
    in->rot_var_z = static_cast<float>(number(rot_var_z_ctl) / 100.0);
    double px, py;
    repulsion_ctl.GetValue(-1.0, px, py);
    in->repulsion_x = static_cast<float>(W * px);
    in->repulsion_y = static_cast<float>(H * py);
    in->repulsion_strength = static_cast<float>(number(repulsion_strength_ctl) * 0.3 / s);
    attraction_ctl.GetValue(-1.0, px, py);
    in->attraction_x = static_cast<float>(W * px);
    in->attraction_y = static_cast<float>(H * py);
    in->attraction_strength = static_cast<float>(number(attraction_strength_ctl) * 0.3 / s);
    in->gravity = static_cast<float>(number(gravity_ctl) / s);
    double gravity_angle = 0;
    gravity_angle_ctl.GetValue(-1.0, gravity_angle);
    in->gravity_cos = static_cast<float>(std::cos(gravity_angle * kDegreesToRadians));
    in->gravity_sin = static_cast<float>(std::sin(gravity_angle * kDegreesToRadians));
    in->swirl_density = static_cast<float>(number(swirl_density_ctl));
    in->swirl_magnitude = static_cast<float>(number(swirl_magnitude_ctl) / s);
    in->use_light = static_cast<std::int32_t>(checkbox(use_light_ctl));
    light_pos_ctl.GetValue(-1.0, px, py);
    in->light_x = static_cast<float>(W * px);
    in->light_y = static_cast<float>(H * py);
    in->light_z = static_cast<float>(W * number(light_z_ctl));
    in->light_brightness = static_cast<float>(number(light_brightness_ctl));
    in->gloss = static_cast<float>(number(gloss_ctl));
    // The colour as the last refresh expanded it (255 reads as 32767).
    in->light_r = light_colour_ctl.value.r;
    in->light_g = light_colour_ctl.value.g;
    in->light_b = light_colour_ctl.value.b;
    in->use_matte_2d = static_cast<std::int32_t>(checkbox(use_matte_2d_ctl));
    in->invert_matte_2d = static_cast<std::int32_t>(checkbox(invert_matte_2d_ctl));
    in->use_matte_3d = static_cast<std::int32_t>(checkbox(use_matte_3d_ctl));
    in->invert_matte_3d = static_cast<std::int32_t>(checkbox(invert_matte_3d_ctl));
    in->use_gravity = static_cast<std::int32_t>(checkbox(use_gravity_ctl));
    in->use_wind = static_cast<std::int32_t>(checkbox(use_wind_ctl));
    in->use_repulsion = static_cast<std::int32_t>(checkbox(use_repulsion_ctl));
    in->use_attraction = static_cast<std::int32_t>(checkbox(use_attraction_ctl));
    in->use_swirl = static_cast<std::int32_t>(checkbox(use_swirl_ctl));
    in->omni_z = static_cast<std::int32_t>(checkbox(omni_z_ctl));
    in->z_sort = static_cast<std::int32_t>(checkbox(z_sort_ctl));
    in->z_pop_off = static_cast<std::int32_t>(checkbox(z_pop_off_ctl));
    in->stack_at_max_z = (in->z_sort && !in->z_pop_off) ? 1 : 0;
    double sx, sy, tx, ty;
    wind_source_ctl.GetValue(-1.0, sx, sy);
    wind_target_ctl.GetValue(-1.0, tx, ty);
    in->wind_source_x = static_cast<float>(W * sx);
    in->wind_source_y = static_cast<float>(H * sy);
    float dx = static_cast<float>(W * tx) - in->wind_source_x;
    float dy = static_cast<float>(H * ty) - in->wind_source_y;
    const float len = std::sqrt(dx * dx + dy * dy);
    // A target on the source gives no direction: the vector stays undivided.
    if (len > 0.0001f) {
        dx /= len;
        dy /= len;
    }
    in->wind_dir_x = dx;
    in->wind_dir_y = dy;
    double spread = 0;
    wind_spread_ctl.GetValue(-1.0, spread);
    in->wind_spread_cos = static_cast<float>(std::cos(3.14159 * spread / 360.0));
    in->wind_speed = static_cast<float>(number(wind_speed_ctl));
    // The host frame number is an unsigned 32-bit value; one beyond the int
    // range has no truncation and gives INT_MIN, as the processor's own
    // conversion does (a plain cast would be undefined there).
    in->frame = frame >= -2147483648.0 && frame < 2147483648.0 ? static_cast<std::int32_t>(frame)
                                                                : INT32_MIN;
    long quality = 0;
    render_quality_ctl.GetValue(-1.0, quality);
    in->render_mode = static_cast<std::int32_t>(quality - 1);
    in->lit_background = static_cast<std::int32_t>(checkbox(lit_background_ctl));
    in->background_z = static_cast<float>(W * number(background_z_ctl));
}

void Paneburst::ProcessFrame() {
    ImageQ7* result = result_clip.image;
    image_width = static_cast<int>(result->width);
    image_height = static_cast<int>(result->height);
    scale = result->scale;
    const int W = image_width, H = image_height;

    // The grid follows the tile size: a change of W / X Elements or
    // H / Y Elements (including a change of preview resolution) rebuilds it.
    long x_elements = 0, y_elements = 0;
    x_elements_ctl.GetValue(-1.0, x_elements);
    y_elements_ctl.GetValue(-1.0, y_elements);
    const GridGeometry grid = compute_grid(W, H, static_cast<int>(x_elements), static_cast<int>(y_elements));
    if (grid_cells_changed(info, grid)) restart = 1;
    info.width = W;
    info.height = H;

    // The tables depend on the Seed alone: they are rebuilt when it changes,
    // and otherwise hold exactly what a rebuild would put in them.
    long seed = 0;
    seed_ctl.GetValue(-1.0, seed);
    if (!tables_built || tables_seed != -seed) {
        gradientTabInit(-seed);
        build_random_table(-seed);
        tables_seed = -seed;
        tables_built = true;
    }

    info.front = front_clip.image;
    info.back = back_clip.image;
    info.matte_2d = matte_2d_clip.image;
    info.matte_3d = matte_3d_clip.image;
    info.result = result;

    // More elements than pixels: the control is set back to the image size.
    if (grid.clamp_x) x_elements_ctl.SetValue(-1.0, grid.x_elements);
    if (grid.clamp_y) y_elements_ctl.SetValue(-1.0, grid.y_elements);
    apply_grid(&info, grid);
    ensure_element_capacity(info.element_count);

    fill_info();

    const bool drawing = info.render_mode != kWireframe;
    // The canvas. Without the 2D matte the compositing is a plain copy of the
    // canvas into the result, whose background the canvas starts from: the
    // elements are then drawn straight into the result. Canvas and maps are
    // taken from the frame pool, which keeps them for the next frame.
    ImageQ7* canvas = drawing && info.use_matte_2d ? frame_pool_image(W, H) : nullptr;
    info.lit_back = canvas ? canvas : result;
    // The maps are used only by the rasteriser; it clears the coverage of
    // each band before drawing (see mp_polyrender).
    const std::size_t pixels = static_cast<std::size_t>(W) * static_cast<std::size_t>(H);
    if (drawing && restart != 1) {
        info.map_u = static_cast<float*>(frame_pool_take(pixels * sizeof(float)));
        info.map_v = static_cast<float*>(frame_pool_take(pixels * sizeof(float)));
        info.map_coverage = static_cast<float*>(frame_pool_take(pixels * sizeof(float)));
    }

    if (drawing) {
        if (info.lit_background && info.use_light && info.light_brightness > 0.0f)
            run_bands(&Paneburst::mp_BackLight);
        else
            copy_back_into_result();
    }

    create_shatter(&info);

    if (!drawing)
        copy_back_into_result();  // the result is the back clip
    else if (canvas)
        run_bands(&Paneburst::mp_compo);

    frame_pool_drop(canvas);
    info.lit_back = nullptr;
    frame_pool_give(info.map_u);
    frame_pool_give(info.map_v);
    frame_pool_give(info.map_coverage);
    info.map_u = info.map_v = info.map_coverage = nullptr;

    if (!render_alpha) result->CopyAlpha(info.front);
}

// The plain background: the result (and the canvas, when it is an image of
// its own) becomes the back clip. Nothing reads the back clip after this in
// the frame, so when the result is all that needs it, the two images of the
// same size exchange their pixel blocks instead of copying them.
void Paneburst::copy_back_into_result() {
    ImageQ7* back = info.back;
    ImageQ7* result = info.result;
    if (info.lit_back == result && back != result && back->width == result->width &&
        back->height == result->height) {
        std::swap(back->buffer, result->buffer);
        std::swap(back->rows, result->rows);
        std::swap(back->owns_buffer, result->owns_buffer);
        return;
    }
    run_bands(&Paneburst::mp_copy_back);
}

void Paneburst::create_shatter(tagINFO* in) {
    if (restart == 1) {
        initialise_polygons(in, polygons);
        restart = 0;
        in->max_z_count = 0;
        // The rebuild frame shows the front intact; the first movement is on
        // the next frame.
        if (in->render_mode != kWireframe) {
            if (in->use_light && in->light_brightness > 0.0f)
                run_bands(&Paneburst::mp_copywithlight);
            else
                run_bands(&Paneburst::mp_copynolight);
        }
        return;
    }
    update_polygons(in, polygons);
    if (in->render_mode != kWireframe) render_polygons(in, polygons);
}

// A band run over the whole image, marked so that a random draw inside it is
// reported.
void Paneburst::run_bands(void (Paneburst::*worker)(long, long)) {
    in_mp = 1;
    MultiProcess(worker, image_height);
    in_mp = 0;
}
