// An off-screen OpenGL context on Mesa's software renderer (OSMesa), for
// tests that draw for real and read the pixels back, with no display.
//
// Link the executable against OSMesa before libGL so that the GL names
// resolve to the renderer that owns the context.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct OffscreenPixel {
    std::uint8_t r, g, b, a;
};

class OffscreenGl {
public:
    OffscreenGl() = default;
    ~OffscreenGl();
    OffscreenGl(const OffscreenGl&) = delete;
    OffscreenGl& operator=(const OffscreenGl&) = delete;

    // Creates an RGBA context of width x height and makes it current, with
    // the viewport on the whole image and an orthographic projection of
    // (0, 0) ... (width, height): one unit a pixel, y up, row 0 at the
    // bottom. The model-view matrix is the identity. On failure returns
    // false and fills `error`.
    bool create(int width, int height, std::string& error);
    // Fills the image with a colour (channels 0 ... 1).
    void clear(float r, float g, float b);
    // Finishes drawing (glFinish) so that the pixels can be read.
    void finish();
    // The pixel of column x and row y (row 0 at the bottom), as drawn.
    OffscreenPixel pixel(int x, int y) const;
    int width() const { return width_; }
    int height() const { return height_; }

private:
    void* context_ = nullptr;  // OSMesaContext
    std::vector<std::uint8_t> buffer_;
    int width_ = 0;
    int height_ = 0;
};
