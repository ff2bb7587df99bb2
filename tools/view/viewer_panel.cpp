#include "tools/view/viewer_panel.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace view {

const char* source_name(Source s) {
    switch (s) {
        case Source::Result: return "Result";
        case Source::Front: return "Front";
        case Source::Back: return "Back";
        case Source::Matte2D: return "2D Matte";
        case Source::Matte3D: return "3D Matte";
    }
    return "";
}

ViewerPanel::~ViewerPanel() {
    if (texture_) glDeleteTextures(1, &texture_);
}

void ViewerPanel::set_area(int x, int y, int w, int h) {
    ax_ = x;
    ay_ = y;
    aw_ = std::max(1, w);
    ah_ = std::max(1, h);
}

double ViewerPanel::fit_scale() const {
    const sparkhost::Settings& s = host_.settings;
    // A margin above the image keeps the plug-in's side view in sight.
    return std::min(static_cast<double>(aw_ - 20) / s.width, static_cast<double>(ah_ - 90) / s.height);
}

void ViewerPanel::fit() {
    fit_ = true;
    cx_ = cy_ = 0.5;
}

void ViewerPanel::set_scale(double s) {
    fit_ = false;
    scale_ = std::clamp(s, 1.0 / 32, 32.0);
}

void ViewerPanel::zoom_at(double factor, double px, double py) {
    // Keeps the image point under (px, py) where it is.
    float ix = 0, iy = 0;
    to_image(px, py, ix, iy);
    set_scale(scale_ * factor);
    const sparkhost::Settings& s = host_.settings;
    cx_ = (ix - (px - (ax_ + aw_ / 2.0)) / scale_) / s.width;
    cy_ = (iy - (py - (ay_ + ah_ / 2.0)) / scale_) / s.height;
}

void ViewerPanel::pan(double dx, double dy) {
    if (fit_) set_scale(scale_);
    cx_ -= dx / (scale_ * host_.settings.width);
    cy_ -= dy / (scale_ * host_.settings.height);
}

int ViewerPanel::origin_x() const {
    const double s = fit_ ? fit_scale() : scale_;
    return static_cast<int>(std::floor(ax_ + aw_ / 2.0 - cx_ * host_.settings.width * s));
}

int ViewerPanel::origin_y() const {
    const double s = fit_ ? fit_scale() : scale_;
    // When fitted, the image sits a little low so that the side view above it shows.
    const double shift = fit_ ? 35.0 : 0.0;
    return static_cast<int>(std::floor(ay_ + ah_ / 2.0 + shift - cy_ * host_.settings.height * s));
}

void ViewerPanel::to_image(double px, double py, float& x, float& y) const {
    x = static_cast<float>((px - origin_x()) / scale_);
    y = static_cast<float>((py - origin_y()) / scale_);
}

void ViewerPanel::to_screen(float x, float y, double& px, double& py) const {
    px = origin_x() + x * scale_;
    py = origin_y() + y * scale_;
}

bool ViewerPanel::inside(double px, double py) const {
    return px >= ax_ && py >= ay_ && px < ax_ + aw_ && py < ay_ + ah_;
}

void ViewerPanel::upload() {
    const sparkhost::FrameBuffer& b = host_.buffer(static_cast<int>(source));
    if (b.width < 1 || b.height < 1) return;
    if (!texture_) glGenTextures(1, &texture_);
    glBindTexture(GL_TEXTURE_2D, texture_);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    // 12-bit buffers hold the value in bits 4..15 of each 16-bit word: as
    // unsigned shorts they are already the full range.
    const GLenum type = b.deep ? GL_UNSIGNED_SHORT : GL_UNSIGNED_BYTE;
    if (tex_w_ != b.width || tex_h_ != b.height || shown_ != source) {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB8, b.width, b.height, 0, GL_RGB, type, b.bytes.data());
        tex_w_ = b.width;
        tex_h_ = b.height;
    } else {
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, b.width, b.height, GL_RGB, type, b.bytes.data());
    }
    shown_ = source;
    stale_ = false;
}

void ViewerPanel::draw(int fb_w, int fb_h) {
    if (fit_) scale_ = fit_scale();
    if (stale_ || shown_ != source) upload();
    glViewport(0, 0, fb_w, fb_h);
    glDisable(GL_SCISSOR_TEST);
    glClearColor(0.16f, 0.16f, 0.17f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    // One unit a framebuffer pixel, y down from the top-left corner.
    glOrtho(0, fb_w, fb_h, 0, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glEnable(GL_SCISSOR_TEST);
    glScissor(ax_, fb_h - ay_ - ah_, aw_, ah_);
    glDisable(GL_BLEND);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    const double x0 = origin_x(), y0 = origin_y();
    const double x1 = x0 + tex_w_ * scale_, y1 = y0 + tex_h_ * scale_;
    if (texture_) {
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, texture_);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        glColor3f(1, 1, 1);
        glBegin(GL_QUADS);
        glTexCoord2f(0, 0), glVertex2d(x0, y0);
        glTexCoord2f(1, 0), glVertex2d(x1, y0);
        glTexCoord2f(1, 1), glVertex2d(x1, y1);
        glTexCoord2f(0, 1), glVertex2d(x0, y1);
        glEnd();
        glDisable(GL_TEXTURE_2D);
    }
    // The plug-in's overlay, as the host calls it after every redraw: the
    // origin in the frame record, the zoom in the host's encoding (below 1,
    // z stands for 1 / (2 - z)).
    host_.viewer_origin_x = origin_x();
    host_.viewer_origin_y = origin_y();
    const double z = scale_ >= 1.0 ? scale_ : 2.0 - 1.0 / scale_;
    glLineWidth(1.0f);
    glPointSize(1.0f);
    host_.overlay(static_cast<float>(z));
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glDisable(GL_SCISSOR_TEST);
}

bool ViewerPanel::pointer(double px, double py, bool held) {
    float x = 0, y = 0;
    to_image(px, py, x, y);
    return host_.interact(held ? 1.0f : 0.0f, x, y) != nullptr;
}

}  // namespace view

