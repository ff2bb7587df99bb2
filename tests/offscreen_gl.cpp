// Off-screen OpenGL context on OSMesa; see offscreen_gl.h.
#include "tests/offscreen_gl.h"

#include <GL/gl.h>
#include <GL/osmesa.h>

OffscreenGl::~OffscreenGl() {
    if (context_ == nullptr) return;
    // Release the context before destroying it: a context destroyed while
    // current keeps its framebuffer alive.
    OSMesaMakeCurrent(nullptr, nullptr, GL_UNSIGNED_BYTE, 0, 0);
    OSMesaDestroyContext(static_cast<OSMesaContext>(context_));
}

bool OffscreenGl::create(int width, int height, std::string& error) {
    if (width <= 0 || height <= 0) {
        error = "off-screen image size must be positive";
        return false;
    }
    OSMesaContext ctx = OSMesaCreateContextExt(OSMESA_RGBA, 0, 0, 0, nullptr);
    if (ctx == nullptr) {
        error = "OSMesaCreateContextExt failed";
        return false;
    }
    context_ = ctx;
    width_ = width;
    height_ = height;
    buffer_.assign(static_cast<std::size_t>(width) * height * 4, 0);
    if (!OSMesaMakeCurrent(ctx, buffer_.data(), GL_UNSIGNED_BYTE, width, height)) {
        error = "OSMesaMakeCurrent failed";
        return false;
    }
    glViewport(0, 0, width, height);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0.0, width, 0.0, height, -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    return true;
}

void OffscreenGl::clear(float r, float g, float b) {
    glClearColor(r, g, b, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
}

void OffscreenGl::finish() { glFinish(); }

OffscreenPixel OffscreenGl::pixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) return {0, 0, 0, 0};
    // OSMesa keeps row 0 at the bottom, as GL numbers window rows.
    const std::uint8_t* p = buffer_.data() + (static_cast<std::size_t>(y) * width_ + x) * 4;
    return {p[0], p[1], p[2], p[3]};
}

// Mesa's OSMesa keeps each framebuffer it made current in a process-wide
// list that it never frees. That is the renderer's, not ours: tell the leak
// checker of sanitizer builds to leave it out (unused in other builds).
extern "C" const char* __lsan_default_suppressions() { return "leak:libOSMesa.so\n"; }
