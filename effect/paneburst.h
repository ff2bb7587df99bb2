// The effect object. One instance lives in static storage as `Instance`.
//
// Its member functions are defined by concept in separate files:
//   effect/paneburst.cpp      construction, destruction
//   effect/random_tables.cpp  the seeded tables and the counter draws
//   effect/noise.cpp          gradient noise
//   effect/grid.cpp           grid geometry and the element rebuild
//   effect/motion.cpp         the element step under the forces
//   effect/pipeline.cpp       ProcessFrame and the element step driver
//   effect/visibility.cpp     which controls are shown, the restart request
//   render/transform.cpp      3D transforms and projection
//   render/outline.cpp        element outlines, the nearest-depth rule
//   render/rasteriser*.cpp    the polygon rasteriser
//   render/lighting.cpp       light factors, background and compositing workers
//   render/gl_preview.cpp     element outlines and side-view profiles in the viewer
//   render/effect_overlay.cpp the viewer overlay: side view, handles, wind cone
#pragma once

#include "effect/paneburst_info.h"
#include "effect/records.h"
#include "framework/overlay.h"
#include "framework/plugin.h"

class Paneburst : public PluginQ7, public PaneburstInfo, public OverlayQ7 {
public:
    Paneburst();
    ~Paneburst() override;
    Paneburst(const Paneburst&) = delete;
    Paneburst& operator=(const Paneburst&) = delete;

    // ---- Simulation (effect/) ----
    // Random tables and draws.
    void build_random_table(long seed);
    float part_rand_11(int* counter);
    float part_rand_01(int* counter);
    void gradientTabInit(long seed);
    float glattice(float* table, int ix, int iy, int iz, float fx, float fy, float fz);
    float gnoise(float* table, float x, float y, float z);

    // Grid and simulation.
    void initialise_polygons(tagINFO* info, tagPOLYGON* polygons);
    void update_polygons(tagINFO* info, tagPOLYGON* polygons);
    // Makes sure the element array holds `count` records (grids of small
    // frames with many elements can need more than the usual capacity).
    tagPOLYGON* ensure_element_capacity(int count);

    // ---- Rendering (render/) ----
    // Transforms (p is a point of three floats, changed in place).
    void translate(float* p, float tx, float ty, float tz);
    void inverse_translate(float* p, float tx, float ty, float tz);
    void rotate_xaxis(float angle, float* p);
    void rotate_yaxis(float angle, float* p);
    void rotate_zaxis(float angle, float* p);
    void inverse_rotate_xaxis(float angle, float* p);
    void inverse_rotate_yaxis(float angle, float* p);
    void inverse_rotate_zaxis(float angle, float* p);
    void perspective_project(tagINFO* info, float* p, float n, float f);
    void inverse_perspective_project(tagINFO* info, float* p, float n, float f);
    float* matrix_multiply(float* m, float* p);

    // Outlines.
    void generate_polygon_vertices(tagINFO* info, tagPOLYGON* poly, float* near_z, float* far_z);
    void inverse_transform_point(tagINFO* info, tagPOLYGON* poly, float* p, float n, float f);

    // Rasteriser.
    void render_polygons(tagINFO* info, tagPOLYGON* polygons);
    void zsort_polys(tagINFO* info, tagPOLYGON* polygons);
    void qs(tagPOLYGON* items, int left, int right);
    void mp_polyrender(long first, long last);
    void polygon_render(tagINFO* info, tagPOLYGON* poly, int x0, int y0, int x1, int y1, int last);
    void find_line_coeffs(tagPOLYGON* poly);
    int inside_polygon_test(tagPOLYGON* poly, int x, int y);
    float edge_antialiased_alpha(tagINFO* info, tagPOLYGON* poly, int x, int y);
    void interpolate_texture_point(tagINFO* info, tagPOLYGON* poly, int x, int y, float* u, float* v, float n,
                                   float f);
    PixelQ7 dotval(ImageQ7* image, int width, int height, float ua, float va, float ub, float vb);
    PixelQ7 dotval_matte(ImageQ7* image, int width, int height, float ua, float va, float ub, float vb);
    float clamp(float value, float low, float high);

    // Lighting, background and compositing.
    float add_light(tagINFO* info, tagPOLYGON* poly, float x, float y);
    float add_background_light(tagINFO* info, int x, int y, int use_background_z);
    void mp_BackLight(long first, long last);
    void mp_copywithlight(long first, long last);
    void mp_copynolight(long first, long last);
    void mp_compo(long first, long last);
    void mp_copy_back(long first, long last);
    void copy_back_into_result();

    // ---- Viewer overlay (render/gl_preview.cpp, render/effect_overlay.cpp) ----
    void RenderOverlay() override;
    void HandleInteraction(InterType type, float x, float y) override;
    void render_OpenGL_polygons(tagINFO* info, tagPOLYGON* polygons, float a);
    void OpenGL_polygon_render(tagINFO* info, tagPOLYGON* poly, float a, float r);
    // The two edges of a cone from (x1, y1) around the direction to (x2, y2),
    // as long as that distance; their ends become the cone widget's tips.
    void draw_cone(float x1, float y1, float x2, float y2, float half_angle, int tip_a, int tip_b, int dotted);

    // ---- Frame pipeline and control handling ----
    // Visibility of the dependent controls (effect/visibility.cpp).
    void SyncControls() override;
    void CtrlUpdateCB(ControlQ7& control, double frame);
    void Use2DMatteCB(ControlQ7& control, double frame);
    void Use3DMatteCB(ControlQ7& control, double frame);
    void UseAttractionCB(ControlQ7& control, double frame);
    // Asks for a rebuild of the element grid at the next processed frame.
    void RestartCB(ControlQ7& control, double frame);
    // The Demos menu: writes the chosen preset into the controls and restarts.
    void DemosCB(ControlQ7& control, double frame);

    // The frame (effect/pipeline.cpp).
    void ProcessFrame() override;
    void create_shatter(tagINFO* info);
    // The parameter fields of `info` from the controls' cached values.
    void fill_info();
    void run_bands(void (Paneburst::*worker)(long, long));
    static constexpr int kWireframe = 3;

    int image_width = 0;
    int image_height = 0;
    std::int32_t table_seed = 0;
    // The seed the tables were last built from, once they have been built.
    long tables_seed = 0;
    bool tables_built = false;
    float gradient_table[256][3] = {};
    float random_table[kRandomTableSize] = {};
    tagINFO info = {};
    tagPOLYGON* polygons = nullptr;
    std::int32_t restart = 1;
    std::int32_t in_mp = 0;
    float scale = 1.0f;

    int element_capacity = 0;  // records allocated in `polygons`
};

extern "C" {
extern Paneburst Instance;
}
