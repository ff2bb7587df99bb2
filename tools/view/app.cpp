#include "tools/view/app.h"

#include <GL/gl.h>
#include <GLFW/glfw3.h>
#include <imgui.h>

#include <cstdlib>
#include <filesystem>

#include "tools/output_writer.h"
#include "tools/progress.h"

namespace view {

namespace {
constexpr float kLeftWidth = 420.0f;
constexpr float kBottomHeight = 210.0f;
}  // namespace

App::App(const ViewOptions& options) : options_(options) {}

App::~App() { tools::set_warning_sink(nullptr); }

void App::shown(const tools::Status& status) {
    viewer_->mark_stale();
    if (!status.ok()) log_.add(LogPanel::Error, status.message);
}

void App::changed(bool processed) {
    if (processed) viewer_->mark_stale();
}

void App::pointer_at_image(float x, float y, bool held) {
    double px = 0, py = 0;
    viewer_->to_screen(x, y, px, py);
    if (viewer_->pointer(px, py, held)) {
        shot_->note_preview();
        viewer_->mark_stale();
    }
}

void App::answer(bool yes) {
    answer_ = yes ? 1 : 0;
    question_open_ = false;
}

void App::request_screenshot(const std::string& path, bool image_only) {
    screenshot_path_ = path;
    screenshot_image_ = image_only;
}

void App::request_close() {
    closing_ = true;
    close_asked_ = false;
}

// The plug-in waits inside sparkMessageConfirm for the answer, as it does in
// the host: the window goes on drawing (and the script on running) in a
// nested loop until the question is answered.
bool App::ask(const std::string& question) {
    if (question_open_) return false;  // one question at a time
    question_ = question;
    question_open_ = question_popup_ = true;
    answer_ = -1;
    while (answer_ < 0) {
        if (window_.close_requested() || (scripted_ && script_.finished())) {
            if (scripted_ && script_.finished()) log_.add(LogPanel::Error, "the script ended with a question open");
            answer(false);
            break;
        }
        frame(true);
    }
    log_.add(LogPanel::Note, "answered " + std::string(answer_ ? "yes" : "no") + ": " + question);
    return answer_ == 1;
}

// The plug-in opened the host's file browser (Import Amplitude File): the
// viewer's dialog answers it, in the folder the plug-in asked for.
void App::open_file_browser_request() {
    sparkhost::Host& host = shot_->host();
    if (!host.file_request || dialog_.is_open()) return;
    dialog_.open("Import Amplitude File", host.file_request->directory, false, [this](const std::string& path) {
        if (!path.empty()) log_.add(LogPanel::Note, "importing " + path);
        shot_->host().complete_file_request(path);
    });
}

// Loads or saves the setup or the key file through the file dialog.
void App::setup_file(bool keys, bool saving) {
    const std::string what = keys ? "keys" : "setup";
    const std::string current = keys ? keys_path_ : setup_path_;
    const std::string folder = current.empty() ? std::string() : std::filesystem::path(current).parent_path().string();
    dialog_.open(std::string(saving ? "Save " : "Load ") + (keys ? "Keys" : "Setup"), folder, saving,
                 [this, keys, saving, what](const std::string& path) {
                     if (path.empty()) return;
                     const tools::Status s = saving ? (keys ? shot_->save_keys(path) : shot_->save_setup(path))
                                                    : (keys ? shot_->load_keys(path) : shot_->load_setup(path));
                     if (!s.ok()) return log_.add(LogPanel::Error, s.message);
                     (keys ? keys_path_ : setup_path_) = path;
                     log_.add(LogPanel::Note, what + (saving ? " saved to " : " loaded from ") + path);
                 });
}

void App::menu_bar() {
    if (!ImGui::BeginMainMenuBar()) return;
    if (ImGui::BeginMenu("File")) {
        static const char* const kInputs[] = {"Open Front...", "Open Back...", "Open 2D Matte...", "Open 3D Matte..."};
        for (int i = 0; i < 4; ++i)
            if (ImGui::MenuItem(kInputs[i]))
                dialog_.open(kInputs[i], "", false, [this, i](const std::string& path) {
                    if (!path.empty()) shown(shot_->set_input(i, path));
                });
        ImGui::Separator();
        if (ImGui::MenuItem("Load Setup...")) setup_file(false, false);
        if (ImGui::MenuItem("Save Setup...")) setup_file(false, true);
        if (ImGui::MenuItem("Load Keys...")) setup_file(true, false);
        if (ImGui::MenuItem("Save Keys...")) setup_file(true, true);
        ImGui::Separator();
        if (ImGui::MenuItem("Quit")) request_close();
        ImGui::EndMenu();
    }
    ImGui::EndMainMenuBar();
}

void App::viewer_settings() {
    if (ImGui::Button("Fit")) viewer_->fit();
    ImGui::SameLine();
    if (ImGui::Button("1:1")) viewer_->set_scale(1.0);
    ImGui::SameLine();
    ImGui::Text("%.0f%%", viewer_->scale() * 100);
    ImGui::SameLine();
    ImGui::SetNextItemWidth(120);
    // The inputs under the titles the plug-in gave them ("1: Disintegrate").
    auto name = [this](Source s) {
        const int clip = static_cast<int>(s) - 2;
        const std::string& title = clip >= 0 ? shot_->host().clip_titles[clip] : std::string();
        return title.empty() ? std::string(source_name(s)) : title;
    };
    if (ImGui::BeginCombo("Show", name(viewer_->source).c_str())) {
        for (Source s : {Source::Result, Source::Front, Source::Back, Source::Matte2D, Source::Matte3D})
            if (ImGui::Selectable(name(s).c_str(), s == viewer_->source)) viewer_->source = s;
        ImGui::EndCombo();
    }
    ImGui::SameLine();
    const sparkhost::Settings& s = shot_->host().settings;
    ImGui::TextDisabled("%d x %d, %d-bit   wheel: zoom   right or middle drag: pan", s.width, s.height,
                        s.depth_bits);
}

void App::layout() {
    menu_bar();
    const float top = ImGui::GetFrameHeight();
    const float w = static_cast<float>(window_.width()), h = static_cast<float>(window_.height());
    const ImGuiWindowFlags fixed = ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoCollapse |
                                   ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoBringToFrontOnFocus;
    ImGui::SetNextWindowPos(ImVec2(0, top));
    ImGui::SetNextWindowSize(ImVec2(kLeftWidth, h - top));
    if (ImGui::Begin("Controls", nullptr, fixed)) {
        if (ImGui::BeginTabBar("pages")) {
            pages_->draw();
            if (ImGui::BeginTabItem("Channels")) {
                tree_.draw(shot_->host(), shot_->frame());
                ImGui::EndTabItem();
            }
            ImGui::EndTabBar();
        }
    }
    ImGui::End();
    ImGui::SetNextWindowPos(ImVec2(kLeftWidth, h - kBottomHeight));
    ImGui::SetNextWindowSize(ImVec2(w - kLeftWidth, kBottomHeight));
    if (ImGui::Begin("Transport", nullptr, fixed)) {
        transport_->draw([this](const tools::Status& s) { shown(s); });
        viewer_settings();
        log_.draw_status_line();
        ImGui::Separator();
        ImGui::BeginChild("log");
        log_.draw();
        ImGui::EndChild();
    }
    ImGui::End();
    viewer_->set_area(static_cast<int>(kLeftWidth), static_cast<int>(top), static_cast<int>(w - kLeftWidth),
                      static_cast<int>(h - top - kBottomHeight));

    if (question_popup_) {
        ImGui::OpenPopup("Question");
        question_popup_ = false;
    }
    if (ImGui::BeginPopupModal("Question", nullptr, ImGuiWindowFlags_AlwaysAutoResize)) {
        ImGui::TextUnformatted(question_.c_str());
        if (ImGui::Button("Yes", ImVec2(90, 0))) answer(true);
        ImGui::SameLine();
        if (ImGui::Button("No", ImVec2(90, 0))) answer(false);
        if (!question_open_) ImGui::CloseCurrentPopup();
        ImGui::EndPopup();
    }
    dialog_.draw();
}

void App::handle_viewer_mouse() {
    const ImGuiIO& io = ImGui::GetIO();
    const double px = io.MousePos.x * io.DisplayFramebufferScale.x;
    const double py = io.MousePos.y * io.DisplayFramebufferScale.y;
    const bool over = !io.WantCaptureMouse && viewer_->inside(px, py) && !question_open_ && !dialog_.is_open();
    if (over && io.MouseWheel != 0) viewer_->zoom_at(io.MouseWheel > 0 ? 1.25 : 0.8, px, py);
    const bool pan_button = ImGui::IsMouseDown(ImGuiMouseButton_Right) || ImGui::IsMouseDown(ImGuiMouseButton_Middle);
    if (panning_ && pan_button) viewer_->pan(px - last_px_, py - last_py_);
    panning_ = pan_button && (panning_ || over);
    const bool held = ImGui::IsMouseDown(ImGuiMouseButton_Left);
    const bool moved = px != last_px_ || py != last_py_;
    // Pressure 1 while the button is held, 0 on release and for moves with
    // no button: the plug-in tells press, drag, release and hover apart.
    bool send = false;
    if (!mouse_held_) {
        send = over && (held || moved);
        mouse_held_ = over && held;
    } else {
        send = moved || !held;
        mouse_held_ = held;
    }
    if (send && viewer_->pointer(px, py, held)) {
        shot_->note_preview();
        viewer_->mark_stale();
    }
    last_px_ = px;
    last_py_ = py;
}

void App::take_screenshot() {
    const int x = screenshot_image_ ? viewer_->origin_x() : 0;
    const int y = screenshot_image_ ? viewer_->origin_y() : 0;
    const sparkhost::Settings& s = shot_->host().settings;
    const int w = screenshot_image_ ? static_cast<int>(s.width * viewer_->scale() + 0.5) : window_.width();
    const int h = screenshot_image_ ? static_cast<int>(s.height * viewer_->scale() + 0.5) : window_.height();
    const tools::Status st = tools::write_rgb8(window_.read_pixels(x, y, w, h), w, h, screenshot_path_);
    if (!st.ok())
        log_.add(LogPanel::Error, st.message);
    else
        log_.add(LogPanel::Note, "screenshot " + screenshot_path_);
    screenshot_path_.clear();
}

// One drawn frame. What may ask the user a question (a control's callback,
// a script step) runs after the frame is shown, never inside it.
void App::frame(bool nested) {
    const bool busy = transport_->playing || scripted_;
    window_.begin_frame(!busy);
    log_.collect(shot_->host());
    if (!nested) transport_->tick([this](const tools::Status& s) { shown(s); });
    if (!nested) open_file_browser_request();
    layout();
    if (!nested && !dialog_.is_open()) handle_viewer_mouse();
    log_.collect(shot_->host());
    viewer_->draw(window_.width(), window_.height());
    window_.end_frame();
    if (!screenshot_path_.empty()) take_screenshot();
    glfwSwapBuffers(window_.handle());
    ++frames_drawn_;
    pages_->apply([this](bool processed) { changed(processed); });
    if (scripted_ && !script_.finished()) script_.run_one(*this);
}

int App::run() {
    std::string error;
    if (!window_.open(options_.window_width, options_.window_height, "paneburst-view", error)) {
        std::fprintf(stderr, "paneburst-view: %s\n", error.c_str());
        return tools::kExitFailure;
    }
    tools::set_warning_sink([this](const std::string& text) { log_.add(LogPanel::Warning, text); });
    if (!options_.script.empty()) {
        if (tools::Status s = script_.load(options_.script); !s.ok()) {
            std::fprintf(stderr, "paneburst-view: %s\n", s.message.c_str());
            return s.code;
        }
        scripted_ = true;
    }
    shot_.reset(new Shot(options_.shot));
    if (tools::Status s = shot_->open(); !s.ok()) {
        std::fprintf(stderr, "paneburst-view: %s\n", s.message.c_str());
        return s.code;
    }
    sparkhost::Host& host = shot_->host();
    viewer_.reset(new ViewerPanel(host));
    pages_.reset(new Pages(*shot_));
    transport_.reset(new Transport(*shot_));
    host.confirm_policy = [this](const std::string& q) { return ask(q); };
    host.on_viewing_draw = [this] {
        ++viewer_->redraw_requests;
        window_.wake();
    };
    host.on_viewing_cursor = [this](int shape) { window_.set_cursor_shape(shape); };
    tree_.build(host);
    for (const std::string& line : shot_->startup_lines()) log_.add(LogPanel::Note, line);
    log_.collect(host);
    log_.add(LogPanel::Note, "frame " + std::to_string(shot_->frame()) + " of " +
                                 (options_.shot.front.empty() ? std::string("the test card") : options_.shot.front) +
                                 "; drag the handles in the viewer, right-click a control for keys");

    while (true) {
        frame(false);
        if (window_.close_requested()) request_close();
        if (scripted_ && script_.finished() && screenshot_path_.empty() && !closing_) closing_ = close_asked_ = true;
        if (!closing_) continue;
        if (!close_asked_ && shot_->unsaved()) {
            close_asked_ = true;
            if (!ask("There are unsaved changes to the controls or keys. Close and discard them?")) {
                closing_ = false;
                window_.cancel_close();
                continue;
            }
        }
        break;
    }
    const int failures = (scripted_ ? script_.failures() : 0);
    return failures ? tools::kExitFailure : tools::kExitOk;
}

}  // namespace view
