#include "tools/view/shot.h"

#include <unistd.h>

#include <cstdio>

#include "tools/control_settings.h"
#include "tools/keys_file.h"
#include "tools/keys_writer.h"

namespace view {

using tools::Status;

namespace {
constexpr int kRestartButton = 29;

// The plug-in prints its start-up banner on standard output; the viewer
// shows it in its log instead.
class StdoutCapture {
public:
    StdoutCapture() {
        std::fflush(stdout);
        file_ = std::tmpfile();
        saved_ = dup(STDOUT_FILENO);
        if (file_ && saved_ >= 0) dup2(fileno(file_), STDOUT_FILENO);
    }
    std::vector<std::string> lines() {
        std::fflush(stdout);
        if (saved_ >= 0) {
            dup2(saved_, STDOUT_FILENO);
            close(saved_);
            saved_ = -1;
        }
        std::vector<std::string> out;
        if (!file_) return out;
        std::rewind(file_);
        char line[1024];
        while (std::fgets(line, sizeof line, file_)) {
            std::string text = line;
            while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
            if (!text.empty()) out.push_back(text);
        }
        std::fclose(file_);
        file_ = nullptr;
        return out;
    }
    ~StdoutCapture() { lines(); }

private:
    std::FILE* file_ = nullptr;
    int saved_ = -1;
};
}  // namespace

Status Shot::open() {
    int width = 0, height = 0, bits = 8;
    if (Status s = inputs_.probe(options_, width, height, bits); !s.ok()) return s;
    if (Status s = tools::load_plugin(options_, width, height, bits, host_); !s.ok()) return s;
    StdoutCapture capture;
    host_->initialise();
    startup_lines_ = capture.lines();
    {
        // The start-up values are the shot's, not user changes: no callback
        // may process a frame before the first one.
        tools::AutoPreviewOff auto_preview(*host_);
        if (Status s = tools::set_up_controls(*host_, options_, auto_preview); !s.ok()) return s;
    }
    inputs_.fill_defaults(*host_);
    mark_saved();
    return process(first());
}

std::map<int, double> Shot::values() const { return tools::control_values(*host_); }

Status Shot::process(int f) {
    if (Status s = inputs_.load(*host_, f); !s.ok()) return s;
    frame_ = f;
    ++processed_;
    if (!host_->process(static_cast<std::uint32_t>(f)))
        return tools::failure("frame " + std::to_string(f) + ": the plug-in returned no result");
    // The host writes animated values into the descriptors at each frame;
    // they are the frame's, not changes.
    frame_values_ = values();
    frame_keys_ = host_->curves();
    diverged_ = false;
    return tools::ok_status();
}

bool Shot::changed_since_frame() const {
    if (diverged_ || host_->curves() != frame_keys_) return true;
    for (const auto& kv : values()) {
        auto it = frame_values_.find(kv.first);
        // A push button has no value; Auto Preview and Clear Overlay change
        // nothing in the frame.
        if (kv.first == 34 || kv.first == 63 || kv.first == 92 || kv.first == 28 || kv.first == 57 || kv.first == 86)
            continue;
        if (it == frame_values_.end() || it->second != kv.second) return true;
    }
    return false;
}

Status Shot::go_to(int f) {
    if (f < first() || f > last())
        return tools::usage_error("frame " + std::to_string(f) + " is outside the shot " + std::to_string(first()) +
                                  "-" + std::to_string(last()));
    if (f == frame_ + 1 && !changed_since_frame()) return process(f);
    return replay_to(f);
}

Status Shot::replay_to(int f) {
    // The rebuild request of the Restart button, with Auto Preview held off
    // so that the button does not process a frame itself.
    {
        tools::AutoPreviewOff auto_preview(*host_);
        host_->call_callback(kRestartButton);
    }
    if (Status s = tools::simulate_run_up(*host_, first(), f, [this](int) { ++processed_; }); !s.ok()) return s;
    return process(f);
}

Status Shot::set_input(int index, const std::string& pattern) {
    tools::InputClip clip(inputs_.clips[index].role(), pattern);
    tools::ImageInfo info;
    if (Status s = clip.probe(frame_, info); !s.ok()) return s;
    if (info.width != host_->settings.width || info.height != host_->settings.height)
        return tools::usage_error(pattern + " is " + std::to_string(info.width) + "x" + std::to_string(info.height) +
                                  ", the shot is " + std::to_string(host_->settings.width) + "x" +
                                  std::to_string(host_->settings.height) +
                                  "; start the viewer with --front for another size");
    inputs_.clips[index] = clip;
    return replay_to(frame_);
}

bool Shot::change_control(int number, double value) {
    sparkhost::Control* c = host_->control(number);
    if (!c) return false;
    // An animated control keeps its change as a key at the current frame.
    if (host_->animated(number)) host_->set_key(number, static_cast<float>(frame_), static_cast<float>(value));
    c->set_value(value);
    if (!host_->call_callback(number)) return false;
    note_preview();
    return true;
}

bool Shot::press_button(int number) {
    if (!host_->call_callback(number)) return false;
    note_preview();
    return true;
}

void Shot::set_key(int number) {
    if (sparkhost::Control* c = host_->control(number))
        host_->set_key(number, static_cast<float>(frame_), static_cast<float>(c->value()));
}

void Shot::delete_key(int number) { host_->delete_key(number, static_cast<float>(frame_)); }

void Shot::mark_saved() {
    saved_values_ = values();
    saved_keys_ = host_->curves();
}

bool Shot::unsaved() const {
    // Animated controls hold the current frame's value; their keys count.
    std::map<int, double> now = values();
    for (const auto& curve : host_->curves()) now.erase(curve.first);
    std::map<int, double> saved = saved_values_;
    for (const auto& curve : saved_keys_) saved.erase(curve.first);
    for (const auto& curve : host_->curves()) saved.erase(curve.first);
    for (const auto& kv : saved)
        if (now.count(kv.first) && now[kv.first] != kv.second) return true;
    return host_->curves() != saved_keys_;
}

Status Shot::save_setup(const std::string& path) {
    std::string error;
    if (!host_->save_setup(path, error)) return tools::failure(error);
    saved_values_ = values();
    return tools::ok_status();
}

Status Shot::load_setup(const std::string& path) {
    std::string error;
    if (!host_->load_setup(path, error)) return tools::failure(error);
    mark_saved();
    return tools::ok_status();
}

Status Shot::save_keys(const std::string& path) {
    int count = 0;
    if (Status s = tools::save_keys(*host_, path, count); !s.ok()) return s;
    saved_keys_ = host_->curves();
    return tools::ok_status();
}

Status Shot::load_keys(const std::string& path) {
    int count = 0;
    if (Status s = tools::load_keys(*host_, path, count); !s.ok()) return s;
    saved_keys_ = host_->curves();
    return tools::ok_status();
}

}  // namespace view
