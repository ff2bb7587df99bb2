// sparkhost: a small stand-in for the compositing host. It loads the plug-in
// file as the host does (dlopen, symbols by name), implements the host
// functions the plug-in imports, owns the frame buffers, the animation
// channels and the control state, and gives tools and tests a plain C++ API.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "abi/spark_abi.h"

namespace sparkhost {

enum class ControlKind { Float, UserFloat, Int, Boolean, Push, Pup, Color, String };
const char* kind_name(ControlKind kind);

// One control descriptor of the loaded plug-in, found by its exported name.
struct Control {
    int number = 0;
    ControlKind kind = ControlKind::Float;
    void* descriptor = nullptr;  // points into the plug-in's data
    std::string symbol;          // e.g. "SparkFloat8"

    int page() const { return number >= 6 ? (number - 6) / 29 : -1; }
    int slot() const { return number >= 6 ? (number - 6) % 29 : -1; }
    // The title as the host shows it, without the value format ("Z Speed").
    std::string label() const;
    std::string title() const;  // the raw title text
    double value() const;
    void set_value(double v);  // writes the descriptor as the host's UI would
    double minimum() const;
    double maximum() const;
    double increment() const;
    SparkCallback callback() const;
    int entry_count() const;                   // popups
    std::string entry_title(int index) const;  // popups
};

struct Message {
    enum Kind { Info, Error, Confirm } kind;
    std::string text;
};

// A host frame buffer: 8-bit (3 bytes a pixel) or 12-bit (3 uint16 a pixel,
// value in bits 4..15), rows of exactly `width` pixels.
struct FrameBuffer {
    int width = 0, height = 0;
    bool deep = false;
    std::vector<std::uint8_t> bytes;

    void resize(int w, int h, bool is_deep);
    void* data() { return bytes.data(); }
    // Channel c (0 R, 1 G, 2 B) of pixel (x, y) as the host stores it: the
    // byte at 8-bit, the whole 16-bit word at 12-bit.
    unsigned get(int x, int y, int c) const;
    void set(int x, int y, int c, unsigned v);
};

// A recorded channel-editor call.
struct EditorCall {
    enum Kind { Folder, Control, Name } kind;
    int first, second;
    std::string name;
};

// The channel-editor tree as the plug-in built it: folders in call order with
// their entries, each entry carrying the last name given to its control.
struct EditorEntry {
    int control = 0;
    int first = 0, second = 0;  // the arguments of sparkCeAddControl
    std::string name;           // empty when the control was never named
};
struct EditorFolder {
    std::string name;
    int first = 0;  // the first argument of sparkCeAddFolder
    std::vector<EditorEntry> entries;
};

struct Settings {
    int width = 720;
    int height = 486;
    int depth_bits = 8;  // 8 or 12
    // The bits-per-pixel code put in the frame record; 0 derives it from
    // depth_bits (48 for 12-bit buffers, 24 for 8-bit ones).
    int depth_code = 0;
    // The processor count reported to the plug-in: the number of bands a
    // frame is split into. Fixed by the caller so that results do not depend
    // on the machine.
    int bands = 1;
    int threads = 0;  // worker threads running the bands; 0: the hardware threads
    int free_buffers = 16;
    double api_version = 4.0;
};

// The loaded plug-in's entry points, found by name.
struct EntryPoints {
    unsigned (*initialise)(HostFrameRecord) = nullptr;
    void (*uninitialise)(HostFrameRecord) = nullptr;
    int (*process_start)() = nullptr;
    int (*clips)() = nullptr;
    void (*memory_temp_buffers)() = nullptr;
    unsigned long* (*process)(HostFrameRecord) = nullptr;
    // The viewer's entry points; a plug-in without an overlay has none.
    void (*overlay)(HostFrameRecord, float) = nullptr;
    unsigned long* (*interact)(HostFrameRecord, int, int, float, float, float) = nullptr;
};

// A file browser the plug-in opened and the user has not answered yet.
struct FileRequest {
    std::string directory, extension;
    void (*done)(const char* path) = nullptr;
};

class Host {
public:
    // A host with no plug-in, for driving framework code directly.
    Host();
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // Loads a plug-in file. On failure returns null and fills `error` with a
    // message naming the file and what is missing.
    static std::unique_ptr<Host> load(const std::string& path, std::string& error);

    // Configuration (before initialise, or between frames).
    Settings settings;
    std::function<bool(const std::string&)> confirm_policy;  // default: answer yes
    std::string setup_path;                                  // empty: setups are not kept
    std::string working_dir;                                 // default: the current directory
    std::function<std::string(const std::string&, const std::string&)> file_browser;
    // Without a synchronous file_browser, a browser the plug-in opens is kept
    // here until the viewer's dialog answers it: complete_file_request hands
    // the chosen path to the plug-in, an empty path cancels.
    std::unique_ptr<FileRequest> file_request;
    void complete_file_request(const std::string& path);
    bool echo_messages = true;  // print messages on standard error
    // Viewer hooks a viewer can set.
    std::function<void()> on_viewing_draw;
    std::function<void(int)> on_viewing_cursor;
    float viewer_ratio = 1.0f;
    float pixel_aspect = 1.0f;

    // Entry points.
    EntryPoints entry;
    unsigned initialise();  // SparkInitialise with a frame record from settings
    void uninitialise();    // SparkUnInitialise
    int clips();
    // Processes one frame. Returns the result buffer's pixels as the plug-in
    // returned them (null when it could not process the frame).
    unsigned long* process(std::uint32_t frame_number);
    // Calls a control's callback as the host does: argument 1 and the current
    // frame record. Returns what the callback returned.
    unsigned long* call_callback(int control, int argument = 1);
    // The viewer's redraw (SparkOverlay with the current frame record) and one
    // pointer event over it (SparkInteract). Both do nothing without the entry
    // points; interact returns what SparkInteract returned.
    void overlay(float zoom);
    unsigned long* interact(float pressure, float x, float y);

    HostFrameRecord frame_record(std::uint32_t frame_number) const;
    std::uint32_t current_frame = 0;
    unsigned char mode_flag = 1;
    int viewer_origin_x = 0, viewer_origin_y = 0;

    // Buffers by id: 1 result, 2 front, 3 back, 4 2D matte, 5 3D matte.
    FrameBuffer& buffer(int id);
    std::set<int> failing_buffers;  // ids whose sparkMemGetBuffer fails (tests)
    // Random frame access: the frames the plug-in asked for, in order. The
    // stand-in keeps one frame per clip, so every request gets the clip's
    // current buffer.
    std::vector<int> frame_requests;
    int on_get_frame(int clip, int frame, void* pixels);

    // Controls.
    const std::map<int, Control>& controls() const { return controls_; }
    Control* control(int number);
    Control* control_by_label(const std::string& label);  // "Z Speed", exact, blanks trimmed
    bool hidden(int number) const { return hidden_.count(number) != 0; }
    const std::set<int>& hidden_controls() const { return hidden_; }
    // Changes a control as the user does on its page: writes the descriptor
    // value, then calls the control's callback with the argument. Returns what
    // the callback returned (null also when the control has no callback).
    unsigned long* change_control(int number, double value, int argument = 1);
    int update_count(int number) const;
    // Every sparkControlUpdate call in order, by control number.
    const std::vector<int>& update_log() const { return update_log_; }

    // Animation channels.
    void set_key(int control, float frame, float value);
    void clear_keys(int control);
    void delete_key(int control, float frame);
    bool has_key(int control, float frame) const;
    bool animated(int control) const;
    float curve_value(int control, float frame) const;
    const std::map<int, std::map<float, float>>& curves() const { return curves_; }

    // Setups: every descriptor value as a readable text file.
    bool save_setup(const std::string& path, std::string& error) const;
    std::string setup_text() const;  // what save_setup writes
    // Checks a value read from line `line` of a setup before it is written:
    // `kind` is the kind the line names, `text` the value as it stands. Sets
    // `value`, or returns false with the whole message refusing the file.
    using SetupCheck = std::function<bool(const Control& control, int line, const std::string& kind,
                                          const std::string& text, double& value, std::string& error)>;
    // Without a check, lines of another kind are skipped and a value is
    // taken as strtod reads it.
    bool load_setup(const std::string& path, std::string& error, const SetupCheck& check = {});

    std::vector<Message> messages;
    std::vector<EditorCall> editor_calls;
    // Calls the plug-in's SparkChannelEditor as the host does when it builds
    // the editor; returns its result (0 when the plug-in does not export it).
    int build_channel_editor();
    // The tree of folders and entries made by the editor_calls so far. Entries
    // added before any folder go into a folder without a name.
    std::vector<EditorFolder> channel_editor_tree() const;
    std::vector<std::string> page_titles = std::vector<std::string>(4);
    std::vector<std::string> clip_titles = std::vector<std::string>(4);

    // Looks up any exported symbol of the loaded plug-in.
    void* symbol(const char* name) const;

    // The host the host functions currently serve (the most recently made one).
    static Host* current();

    // Called by the host functions.
    void on_message(Message::Kind kind, const std::string& text);
    int on_confirm(const std::string& question);
    int on_get_buffer(int id, HostBufferRecord* record);
    int mp_fork(void (*fn)(), int nargs, void* const* args);
    void on_control_update(int control);
    void on_enable(int control, bool enabled);
    float on_get_curve(int control, float frame);
    int on_set_key(int control, int key, float value);

private:
    void discover_controls();
    void apply_animation(float frame);

    void* handle_ = nullptr;
    std::string path_;
    std::map<int, Control> controls_;
    std::set<int> hidden_;
    std::map<int, int> updates_;
    std::vector<int> update_log_;
    std::map<int, std::map<float, float>> curves_;
    FrameBuffer buffers_[6];
    Host* previous_ = nullptr;
};

}  // namespace sparkhost
