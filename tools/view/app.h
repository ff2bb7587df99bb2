// paneburst-view's window and what it shows: the pages of controls and the
// channel tree on the left, the viewer, and below it the transport, the
// viewer's settings, the status line and the log. Owns the shot and answers
// the plug-in's questions, file browsers, redraw and cursor requests.
#pragma once
#include <memory>
#include <string>

#include "tools/view/channel_tree.h"
#include "tools/view/file_dialog.h"
#include "tools/view/log_panel.h"
#include "tools/view/pages.h"
#include "tools/view/script.h"
#include "tools/view/shot.h"
#include "tools/view/transport.h"
#include "tools/view/viewer_panel.h"
#include "tools/view/window.h"

namespace view {

struct ViewOptions {
    tools::Options shot;
    std::string script;
    int window_width = 1400, window_height = 900;
};

class App {
public:
    explicit App(const ViewOptions& options);
    ~App();
    // Opens the window and the shot and runs until closed; returns the exit status.
    int run();

    // What the script and the window's controls act through.
    Shot& shot() { return *shot_; }
    ViewerPanel& viewer() { return *viewer_; }
    Window& window() { return window_; }
    LogPanel& log() { return log_; }
    Transport& transport() { return *transport_; }
    FileDialog& file_dialog() { return dialog_; }
    const ChannelTree& channel_tree() const { return tree_; }

    // A frame shown after processing, or a failure to report.
    void shown(const tools::Status& status);
    // The plug-in processed the frame inside a callback or an event.
    void changed(bool processed);
    // A pointer event at an image position, through the viewer's screen
    // position as a mouse event would arrive.
    void pointer_at_image(float x, float y, bool held);

    // The open question, answered by the user or the script.
    bool question_open() const { return question_open_; }
    const std::string& question() const { return question_; }
    void answer(bool yes);

    void request_screenshot(const std::string& path, bool image_only);
    void request_close();
    void force_close() { closing_ = true; }
    long frames_drawn() const { return frames_drawn_; }

private:
    bool ask(const std::string& question);
    void frame(bool nested);
    void layout();
    void menu_bar();
    void viewer_settings();
    void handle_viewer_mouse();
    void take_screenshot();
    void open_file_browser_request();
    void setup_file(bool keys, bool saving);

    ViewOptions options_;
    Window window_;
    std::unique_ptr<Shot> shot_;
    std::unique_ptr<ViewerPanel> viewer_;
    std::unique_ptr<Pages> pages_;
    std::unique_ptr<Transport> transport_;
    ChannelTree tree_;
    LogPanel log_;
    FileDialog dialog_;
    Script script_;
    bool scripted_ = false;

    bool question_open_ = false, question_popup_ = false;
    int answer_ = -1;
    std::string question_;
    std::string screenshot_path_;
    bool screenshot_image_ = false;
    bool closing_ = false, close_asked_ = false;
    bool mouse_held_ = false, panning_ = false;
    double last_px_ = 0, last_py_ = 0;
    long frames_drawn_ = 0;
    std::string setup_path_, keys_path_;
};

}  // namespace view
