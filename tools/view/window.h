// The program's window: GLFW with an OpenGL compatibility context (the
// plug-in draws its overlay with the fixed-function calls of OpenGL 1 and 2)
// and Dear ImGui on its OpenGL 2 back end.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

struct GLFWwindow;
struct GLFWcursor;

namespace view {

class Window {
public:
    Window() = default;
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    bool open(int width, int height, const std::string& title, std::string& error);
    GLFWwindow* handle() { return window_; }

    // One frame of the user interface: events in, ImGui's frame begun.
    void begin_frame(bool wait_for_events);
    // ImGui drawn over what is already in the back buffer, then shown.
    void end_frame();
    void wake() const;  // ends a wait for events from outside

    int width() const { return width_; }    // the framebuffer, in pixels
    int height() const { return height_; }
    // Cursor position in framebuffer pixels.
    void cursor(double& x, double& y) const;
    bool close_requested() const;
    void cancel_close();

    // The host's cursor shapes: 1 the arrow, 14 a grabbed handle, 20 a handle under the pointer.
    void set_cursor_shape(int shape);
    int cursor_shape() const { return shape_; }

    // The back buffer's pixels, top row first, 8-bit RGB.
    std::vector<std::uint8_t> read_pixels(int x, int y, int w, int h) const;

private:
    GLFWwindow* window_ = nullptr;
    GLFWcursor* cursors_[3] = {};
    int width_ = 0, height_ = 0;
    int shape_ = 1;
    bool imgui_ = false;
};

}  // namespace view
