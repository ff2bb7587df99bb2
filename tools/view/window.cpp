#include "tools/view/window.h"

#include <GLFW/glfw3.h>
#include <imgui.h>
#include <backends/imgui_impl_glfw.h>
#include <backends/imgui_impl_opengl2.h>

namespace view {

namespace {
std::string g_glfw_error;
void on_glfw_error(int, const char* text) { g_glfw_error = text ? text : "unknown GLFW error"; }
}  // namespace

Window::~Window() {
    if (imgui_) {
        ImGui_ImplOpenGL2_Shutdown();
        ImGui_ImplGlfw_Shutdown();
        ImGui::DestroyContext();
    }
    for (GLFWcursor* c : cursors_)
        if (c) glfwDestroyCursor(c);
    if (window_) glfwDestroyWindow(window_);
    glfwTerminate();
}

bool Window::open(int width, int height, const std::string& title, std::string& error) {
    glfwSetErrorCallback(on_glfw_error);
    if (!glfwInit()) {
        error = "cannot open a window: " + g_glfw_error + " (is DISPLAY set? xvfb-run runs the viewer without a screen)";
        return false;
    }
    // The default: a compatibility context of the highest version, which
    // keeps the fixed-function pipeline the overlay draws with.
    glfwWindowHint(GLFW_CLIENT_API, GLFW_OPENGL_API);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_ANY_PROFILE);
    window_ = glfwCreateWindow(width, height, title.c_str(), nullptr, nullptr);
    if (!window_) {
        error = "cannot create an OpenGL window: " + g_glfw_error;
        return false;
    }
    glfwMakeContextCurrent(window_);
    glfwSwapInterval(0);  // play as fast as frames are processed
    cursors_[0] = glfwCreateStandardCursor(GLFW_ARROW_CURSOR);
    cursors_[1] = glfwCreateStandardCursor(GLFW_HAND_CURSOR);
    cursors_[2] = glfwCreateStandardCursor(GLFW_CROSSHAIR_CURSOR);
    IMGUI_CHECKVERSION();
    ImGui::CreateContext();
    ImGui::GetIO().IniFilename = nullptr;  // the layout is the program's, not remembered
    ImGui::StyleColorsDark();
    ImGui_ImplGlfw_InitForOpenGL(window_, true);
    ImGui_ImplOpenGL2_Init();
    imgui_ = true;
    glfwGetFramebufferSize(window_, &width_, &height_);
    return true;
}

void Window::begin_frame(bool wait_for_events) {
    if (wait_for_events)
        glfwWaitEventsTimeout(0.5);
    else
        glfwPollEvents();
    glfwGetFramebufferSize(window_, &width_, &height_);
    ImGui_ImplOpenGL2_NewFrame();
    ImGui_ImplGlfw_NewFrame();
    ImGui::NewFrame();
}

void Window::end_frame() {
    ImGui::Render();
    glViewport(0, 0, width_, height_);
    ImGui_ImplOpenGL2_RenderDrawData(ImGui::GetDrawData());
}

void Window::wake() const { glfwPostEmptyEvent(); }

void Window::cursor(double& x, double& y) const {
    glfwGetCursorPos(window_, &x, &y);
    int ww = 0, wh = 0;
    glfwGetWindowSize(window_, &ww, &wh);
    if (ww > 0 && wh > 0) {
        x *= static_cast<double>(width_) / ww;
        y *= static_cast<double>(height_) / wh;
    }
}

bool Window::close_requested() const { return glfwWindowShouldClose(window_) != 0; }
void Window::cancel_close() { glfwSetWindowShouldClose(window_, 0); }

void Window::set_cursor_shape(int shape) {
    shape_ = shape;
    glfwSetCursor(window_, cursors_[shape == 14 ? 1 : shape == 20 ? 2 : 0]);
}

std::vector<std::uint8_t> Window::read_pixels(int x, int y, int w, int h) const {
    std::vector<std::uint8_t> rows(static_cast<std::size_t>(w) * h * 3);
    std::vector<std::uint8_t> out(rows.size());
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadBuffer(GL_BACK);
    // GL's rows run bottom up.
    glReadPixels(x, height_ - y - h, w, h, GL_RGB, GL_UNSIGNED_BYTE, rows.data());
    const std::size_t stride = static_cast<std::size_t>(w) * 3;
    for (int r = 0; r < h; ++r)
        std::copy(rows.begin() + (h - 1 - r) * stride, rows.begin() + (h - r) * stride, out.begin() + r * stride);
    return out;
}

}  // namespace view
