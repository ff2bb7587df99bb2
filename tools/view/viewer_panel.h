// The host's viewer: one of the host's buffers shown as a texture in a
// rectangle of the window (fit, 1:1 or any zoom, panned), the plug-in's
// overlay drawn over it through SparkOverlay at the same zoom and origin, and
// pointer events over it handed to SparkInteract in image pixels.
//
// The overlay's y runs down the image like the frame's rows, so that the
// handles sit on the pixels they act on; the plug-in's side view, drawn at
// negative y, therefore appears just above the image.
#pragma once
#include <cstdint>

#include "sparkhost/host.h"

namespace view {

// What the viewer shows: the host buffer id (1 result, 2 front, 3 back, 4 and 5 mattes).
enum class Source { Result = 1, Front = 2, Back = 3, Matte2D = 4, Matte3D = 5 };
const char* source_name(Source s);

class ViewerPanel {
public:
    explicit ViewerPanel(sparkhost::Host& host) : host_(host) {}
    ~ViewerPanel();

    // The viewer's rectangle in framebuffer pixels (top-left origin).
    void set_area(int x, int y, int w, int h);
    int area_x() const { return ax_; }
    int area_y() const { return ay_; }
    int area_w() const { return aw_; }
    int area_h() const { return ah_; }

    void fit();
    void set_scale(double s);        // about the area's centre
    void zoom_at(double factor, double px, double py);
    void pan(double dx, double dy);
    double scale() const { return scale_; }
    bool fitted() const { return fit_; }
    // Where the image's top-left pixel corner lies, in framebuffer pixels.
    int origin_x() const;
    int origin_y() const;

    Source source = Source::Result;
    void mark_stale() { stale_ = true; }  // the buffer changed: upload again

    // Draws the image and the overlay into the current GL context.
    void draw(int framebuffer_w, int framebuffer_h);
    // Framebuffer pixel to image pixel and back.
    void to_image(double px, double py, float& x, float& y) const;
    void to_screen(float x, float y, double& px, double& py) const;
    bool inside(double px, double py) const;

    // A pointer event at framebuffer pixel (px, py): pressure 1 while the
    // button is held, 0 otherwise. Returns true when the plug-in processed
    // the frame (a handle released with Auto Preview on).
    bool pointer(double px, double py, bool held);
    long redraw_requests = 0;  // sparkViewingDraw calls

private:
    void upload();
    double fit_scale() const;

    sparkhost::Host& host_;
    int ax_ = 0, ay_ = 0, aw_ = 1, ah_ = 1;
    double scale_ = 1.0, cx_ = 0.5, cy_ = 0.5;  // image point at the area's centre (0..1)
    bool fit_ = true;
    unsigned texture_ = 0;
    int tex_w_ = 0, tex_h_ = 0;
    bool stale_ = true;
    Source shown_ = Source::Result;
};

}  // namespace view
