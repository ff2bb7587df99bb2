#include "tools/view/script.h"

#include <cctype>
#include <filesystem>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "tools/control_settings.h"
#include "tools/view/app.h"
#include "tools/view/pages.h"

namespace view {

using tools::Status;

std::vector<std::string> split_words(const std::string& line) {
    std::vector<std::string> words;
    std::size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && std::isspace(static_cast<unsigned char>(line[i]))) ++i;
        if (i >= line.size() || line[i] == '#') break;
        std::string word;
        if (line[i] == '"') {
            const std::size_t end = line.find('"', i + 1);
            word = line.substr(i + 1, end == std::string::npos ? std::string::npos : end - i - 1);
            i = end == std::string::npos ? line.size() : end + 1;
        } else {
            while (i < line.size() && !std::isspace(static_cast<unsigned char>(line[i]))) word += line[i++];
        }
        words.push_back(word);
    }
    return words;
}

Status Script::load(const std::string& path) {
    path_ = path;
    std::ifstream in(path);
    if (!in) return tools::usage_error("--script " + path + ": cannot read the file");
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        Step step{number, split_words(line)};
        if (!step.words.empty()) steps_.push_back(step);
    }
    return tools::ok_status();
}

void Script::run_one(App& app) {
    if (!wait_file_.empty()) {
        // Another program (a test moving the real mouse) says when it is done.
        const bool there = std::filesystem::exists(wait_file_);
        if (!there && std::chrono::steady_clock::now() < wait_until_) return;
        if (!there) {
            ++failures_;
            app.log().add(LogPanel::Error, path_ + ": " + wait_file_ + " did not appear within 60 seconds");
        }
        wait_file_.clear();
        return;
    }
    if (waiting_ > 0) {
        if (--waiting_ == 0 && pause_after_wait_) app.transport().playing = pause_after_wait_ = false;
        return;
    }
    if (next_ >= steps_.size()) return;
    const Step& step = steps_[next_++];
    const Status s = run(app, step);
    if (!s.ok()) {
        ++failures_;
        const std::string text = path_ + ":" + std::to_string(step.line) + ": " + s.message;
        app.log().add(LogPanel::Error, text);
        std::fprintf(stderr, "paneburst-view: %s\n", text.c_str());
    }
}

namespace {

Status need(const std::vector<std::string>& w, std::size_t count, const char* usage) {
    if (w.size() != count) return tools::usage_error(std::string("use: ") + usage);
    return tools::ok_status();
}

bool number(const std::string& text, double& v) {
    char* end = nullptr;
    v = std::strtod(text.c_str(), &end);
    return end != text.c_str() && *end == '\0';
}

Status control_named(App& app, const std::string& name, sparkhost::Control*& c) {
    if (Status s = tools::find_control(app.shot().host(), name, c); !s.ok()) return s;
    if (app.shot().host().hidden(c->number))
        return tools::usage_error("\"" + name + "\" is hidden: it is not on its page now");
    return tools::ok_status();
}

// The viewer's state, one "name value" line each, for tests and for bug reports.
Status write_state(App& app, const std::string& path) {
    std::FILE* f = std::fopen(path.c_str(), "w");
    if (!f) return tools::failure("cannot write " + path);
    Shot& shot = app.shot();
    sparkhost::Host& host = shot.host();
    std::fprintf(f, "frame %d\nprocessed %ld\nredraws %ld\ncursor %d\nscale %.9g\norigin %d %d\n", shot.frame(),
                 shot.processed(), app.viewer().redraw_requests, app.window().cursor_shape(), app.viewer().scale(),
                 app.viewer().origin_x(), app.viewer().origin_y());
    std::fprintf(f, "fps %.2f\nplaying %d\n", app.transport().fps(), app.transport().playing ? 1 : 0);
    std::fprintf(f, "unsaved %d\nquestion %d\nfile-dialog %d\n", shot.unsaved() ? 1 : 0, app.question_open() ? 1 : 0,
                 app.file_dialog().is_open() ? 1 : 0);
    for (const auto& kv : host.controls()) {
        const sparkhost::Control& c = kv.second;
        if (c.kind == sparkhost::ControlKind::Push || c.kind == sparkhost::ControlKind::String) continue;
        std::fprintf(f, "value %d %.9g\n", c.number, c.value());
        if (host.hidden(c.number)) std::fprintf(f, "hidden %d\n", c.number);
        if (Pages::disabled(c)) std::fprintf(f, "disabled %d\n", c.number);
    }
    for (const auto& curve : host.curves())
        for (const auto& key : curve.second) std::fprintf(f, "key %d %.9g %.9g\n", curve.first, key.first, key.second);
    for (const auto& folder : app.channel_tree().folders()) {
        std::fprintf(f, "folder %s\n", folder.name.c_str());
        for (const auto& entry : folder.entries) std::fprintf(f, "channel %d %s\n", entry.control, entry.name.c_str());
    }
    for (const auto& line : app.log().lines()) std::fprintf(f, "log %d %s\n", static_cast<int>(line.first), line.second.c_str());
    return std::fclose(f) == 0 ? tools::ok_status() : tools::failure("cannot write " + path);
}

Status shown(App& app, const Status& s) {
    app.shown(s);
    return s;
}

}  // namespace

Status Script::run(App& app, const Step& step) {
    const std::vector<std::string>& w = step.words;
    const std::string& verb = w[0];
    Shot& shot = app.shot();
    double a = 0, b = 0;
    if (verb == "set") {
        if (Status s = need(w, 3, "set \"NAME\" VALUE"); !s.ok()) return s;
        sparkhost::Control* c = nullptr;
        if (Status s = control_named(app, w[1], c); !s.ok()) return s;
        double value = 0;
        if (Status s = tools::parse_control_value(*c, w[2], value, "set"); !s.ok()) return s;
        if (Pages::disabled(*c)) return tools::usage_error("\"" + w[1] + "\" is greyed: it cannot be changed now");
        app.changed(shot.change_control(c->number, value));
        return tools::ok_status();
    }
    if (verb == "click-button") {
        if (Status s = need(w, 2, "click-button \"TITLE\""); !s.ok()) return s;
        sparkhost::Control* c = nullptr;
        if (Status s = control_named(app, w[1], c); !s.ok()) return s;
        if (c->kind != sparkhost::ControlKind::Push) return tools::usage_error("\"" + w[1] + "\" is not a button");
        app.changed(shot.press_button(c->number));
        return tools::ok_status();
    }
    if (verb == "key" || verb == "unkey") {
        if (Status s = need(w, 2, "key|unkey \"NAME\""); !s.ok()) return s;
        sparkhost::Control* c = nullptr;
        if (Status s = control_named(app, w[1], c); !s.ok()) return s;
        if (verb == "key")
            shot.set_key(c->number);
        else
            shot.delete_key(c->number);
        return tools::ok_status();
    }
    if (verb == "press" || verb == "drag" || verb == "hover") {
        if (w.size() != 3 || !number(w[1], a) || !number(w[2], b))
            return tools::usage_error("use: " + verb + " X Y (image pixels)");
        app.pointer_at_image(static_cast<float>(a), static_cast<float>(b), verb != "hover");
        last_x_ = static_cast<float>(a), last_y_ = static_cast<float>(b);
        return tools::ok_status();
    }
    if (verb == "release") {
        app.pointer_at_image(last_x_, last_y_, false);
        return tools::ok_status();
    }
    if (verb == "play") {
        // Plays as the Play button does, one frame a drawn frame, for N frames.
        app.transport().playing = true;
        waiting_ = w.size() > 1 ? std::atoi(w[1].c_str()) : 1;
        pause_after_wait_ = true;
        return tools::ok_status();
    }
    if (verb == "step") {
        const int n = w.size() > 1 ? std::atoi(w[1].c_str()) : 1;
        for (int i = 0; i < n; ++i) {
            const Status s = shot.step();
            app.transport().frame_done();
            if (!s.ok()) return shown(app, s);
        }
        return shown(app, tools::ok_status());
    }
    if (verb == "goto") {
        if (Status s = need(w, 2, "goto FRAME"); !s.ok()) return s;
        return shown(app, shot.go_to(std::atoi(w[1].c_str())));
    }
    if (verb == "restart") return shown(app, shot.restart());
    if (verb == "refresh") return shown(app, shot.refresh());
    if (verb == "answer") {
        if (w.size() != 2 || (w[1] != "yes" && w[1] != "no")) return tools::usage_error("use: answer yes|no");
        if (!app.question_open()) return tools::usage_error("no question is open");
        app.answer(w[1] == "yes");
        return tools::ok_status();
    }
    if (verb == "choose-file") {
        if (Status s = need(w, 2, "choose-file PATH"); !s.ok()) return s;
        if (!app.file_dialog().is_open()) return tools::usage_error("no file dialog is open");
        app.file_dialog().choose(w[1]);
        return tools::ok_status();
    }
    if (verb == "zoom") {
        if (w.size() == 2 && w[1] == "fit") return app.viewer().fit(), tools::ok_status();
        if (w.size() != 2 || !number(w[1], a) || a <= 0) return tools::usage_error("use: zoom fit|SCALE");
        app.viewer().set_scale(a);
        return tools::ok_status();
    }
    if (verb == "pan") {
        if (w.size() != 3 || !number(w[1], a) || !number(w[2], b)) return tools::usage_error("use: pan DX DY");
        app.viewer().pan(a, b);
        return tools::ok_status();
    }
    if (verb == "show") {
        static const char* const kNames[] = {"result", "front", "back", "matte2d", "matte3d"};
        for (int i = 0; i < 5; ++i)
            if (w.size() == 2 && w[1] == kNames[i]) {
                app.viewer().source = static_cast<Source>(i + 1);
                return tools::ok_status();
            }
        return tools::usage_error("use: show result|front|back|matte2d|matte3d");
    }
    if (verb == "screenshot" || verb == "screenshot-image") {
        if (Status s = need(w, 2, "screenshot FILE"); !s.ok()) return s;
        app.request_screenshot(w[1], verb == "screenshot-image");
        return tools::ok_status();
    }
    if (verb == "save-setup" || verb == "load-setup" || verb == "save-keys" || verb == "load-keys") {
        if (Status s = need(w, 2, "save-setup|load-setup|save-keys|load-keys FILE"); !s.ok()) return s;
        if (verb == "save-setup") return shot.save_setup(w[1]);
        if (verb == "load-setup") return shot.load_setup(w[1]);
        if (verb == "save-keys") return shot.save_keys(w[1]);
        return shot.load_keys(w[1]);
    }
    if (verb == "open-input") {
        if (w.size() != 3 || !number(w[1], a) || a < 0 || a > 3) return tools::usage_error("use: open-input 0..3 FILE");
        return shown(app, shot.set_input(static_cast<int>(a), w[2]));
    }
    if (verb == "state") {
        if (Status s = need(w, 2, "state FILE"); !s.ok()) return s;
        return write_state(app, w[1]);
    }
    if (verb == "wait") {
        waiting_ = w.size() > 1 ? std::atoi(w[1].c_str()) : 1;
        return tools::ok_status();
    }
    if (verb == "wait-for") {
        if (Status s = need(w, 2, "wait-for FILE"); !s.ok()) return s;
        wait_file_ = w[1];
        wait_until_ = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        return tools::ok_status();
    }
    if (verb == "quit") {
        app.request_close();
        return tools::ok_status();
    }
    return tools::usage_error("unknown step \"" + verb + "\"");
}

}  // namespace view
