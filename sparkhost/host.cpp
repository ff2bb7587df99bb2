#include "sparkhost/host.h"

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <thread>

namespace sparkhost {

namespace {
Host* g_current = nullptr;

struct KindPrefix {
    ControlKind kind;
    const char* prefix;
};
const KindPrefix kPrefixes[] = {
    {ControlKind::Float, "SparkFloat"}, {ControlKind::UserFloat, "SparkUserFloat"},
    {ControlKind::Int, "SparkInt"},     {ControlKind::Boolean, "SparkBoolean"},
    {ControlKind::Push, "SparkPush"},   {ControlKind::Pup, "SparkPup"},
    {ControlKind::Color, "SparkColor"}, {ControlKind::String, "SparkString"},
};
// Control numbers the host scans for descriptors.
constexpr int kMaxControl = 256;
}  // namespace

Host::Host() : previous_(g_current) {
    g_current = this;
    char cwd[4096];
    if (getcwd(cwd, sizeof cwd)) working_dir = cwd;
}

Host::~Host() {
    if (g_current == this) g_current = previous_;
    // The plug-in stays loaded: its effect object lives until the process ends,
    // as it does in the host, and another Host may load the same file again.
}

Host* Host::current() { return g_current; }

std::unique_ptr<Host> Host::load(const std::string& path, std::string& error) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* why = dlerror();
        error = "cannot load plug-in " + path + ": " + (why ? why : "unknown error");
        return nullptr;
    }
    std::unique_ptr<Host> host(new Host());
    host->handle_ = handle;
    host->path_ = path;
    struct Required {
        const char* name;
        void** slot;
    };
    EntryPoints& e = host->entry;
    const Required required[] = {
        {"SparkInitialise", reinterpret_cast<void**>(&e.initialise)},
        {"SparkUnInitialise", reinterpret_cast<void**>(&e.uninitialise)},
        {"SparkProcessStart", reinterpret_cast<void**>(&e.process_start)},
        {"SparkClips", reinterpret_cast<void**>(&e.clips)},
        {"SparkMemoryTempBuffers", reinterpret_cast<void**>(&e.memory_temp_buffers)},
        {"SparkProcess", reinterpret_cast<void**>(&e.process)},
    };
    for (const Required& r : required) {
        *r.slot = dlsym(handle, r.name);
        if (!*r.slot) {
            error = "plug-in " + path + " does not export " + r.name;
            return nullptr;
        }
    }
    e.overlay = reinterpret_cast<decltype(e.overlay)>(dlsym(handle, "SparkOverlay"));
    e.interact = reinterpret_cast<decltype(e.interact)>(dlsym(handle, "SparkInteract"));
    host->discover_controls();
    return host;
}

void* Host::symbol(const char* name) const { return handle_ ? dlsym(handle_, name) : nullptr; }

void Host::discover_controls() {
    controls_.clear();
    for (int n = 0; n < kMaxControl; ++n) {
        for (const KindPrefix& k : kPrefixes) {
            const std::string name = k.prefix + std::to_string(n);
            if (void* d = dlsym(handle_, name.c_str())) {
                Control c;
                c.number = n;
                c.kind = k.kind;
                c.descriptor = d;
                c.symbol = name;
                controls_[n] = c;
            }
        }
    }
}

Control* Host::control(int number) {
    auto it = controls_.find(number);
    return it == controls_.end() ? nullptr : &it->second;
}

Control* Host::control_by_label(const std::string& label) {
    for (auto& kv : controls_)
        if (kv.second.label() == label) return &kv.second;
    return nullptr;
}

int Host::update_count(int number) const {
    auto it = updates_.find(number);
    return it == updates_.end() ? 0 : it->second;
}

FrameBuffer& Host::buffer(int id) { return buffers_[(id >= 1 && id <= 5) ? id : 0]; }

HostFrameRecord Host::frame_record(std::uint32_t frame_number) const {
    HostFrameRecord r{};
    frame_set<std::int32_t>(r, frame_field::viewer_origin_x, viewer_origin_x);
    frame_set<std::int32_t>(r, frame_field::viewer_origin_y, viewer_origin_y);
    frame_set<std::uint8_t>(r, frame_field::mode_flag, mode_flag);
    frame_set<std::uint32_t>(r, frame_field::frame_number, frame_number);
    frame_set<std::int32_t>(r, frame_field::frame_width, settings.width);
    frame_set<std::int32_t>(r, frame_field::frame_height, settings.height);
    frame_set<std::int32_t>(r, frame_field::frame_depth,
                            settings.depth_code ? settings.depth_code : settings.depth_bits == 12 ? 48 : 24);
    frame_set<std::int8_t>(r, frame_field::processor_count, static_cast<std::int8_t>(settings.bands));
    return r;
}

unsigned Host::initialise() {
    const bool deep = settings.depth_bits == 12;
    for (int id = 1; id <= 5; ++id) buffers_[id].resize(settings.width, settings.height, deep);
    return entry.initialise ? entry.initialise(frame_record(current_frame)) : 0;
}

void Host::uninitialise() {
    if (entry.uninitialise) entry.uninitialise(frame_record(current_frame));
}

int Host::clips() { return entry.clips ? entry.clips() : 0; }

unsigned long* Host::process(std::uint32_t frame_number) {
    current_frame = frame_number;
    apply_animation(static_cast<float>(frame_number));
    return entry.process ? entry.process(frame_record(frame_number)) : nullptr;
}

unsigned long* Host::call_callback(int number, int argument) {
    Control* c = control(number);
    if (!c || !c->callback()) return nullptr;
    return c->callback()(argument, frame_record(current_frame));
}

void Host::overlay(float zoom) {
    if (entry.overlay) entry.overlay(frame_record(current_frame), zoom);
}

unsigned long* Host::interact(float pressure, float x, float y) {
    return entry.interact ? entry.interact(frame_record(current_frame), 0, 0, pressure, x, y) : nullptr;
}

void Host::complete_file_request(const std::string& path) {
    std::unique_ptr<FileRequest> request = std::move(file_request);
    if (request && request->done && !path.empty()) request->done(path.c_str());
}

unsigned long* Host::change_control(int number, double value, int argument) {
    Control* c = control(number);
    if (!c) return nullptr;
    c->set_value(value);
    return call_callback(number, argument);
}

// The host writes every animated control's value at the frame into its
// descriptor before the plug-in sees the frame.
void Host::apply_animation(float frame) {
    for (const auto& kv : curves_) {
        if (kv.second.empty()) continue;
        if (Control* c = control(kv.first)) c->set_value(curve_value(kv.first, frame));
    }
}

void Host::set_key(int number, float frame, float value) { curves_[number][frame] = value; }
void Host::clear_keys(int number) { curves_.erase(number); }
void Host::delete_key(int number, float frame) {
    auto it = curves_.find(number);
    if (it == curves_.end()) return;
    it->second.erase(frame);
    if (it->second.empty()) curves_.erase(it);
}
bool Host::has_key(int number, float frame) const {
    auto it = curves_.find(number);
    return it != curves_.end() && it->second.count(frame) != 0;
}
bool Host::animated(int number) const {
    auto it = curves_.find(number);
    return it != curves_.end() && !it->second.empty();
}

float Host::curve_value(int number, float frame) const {
    auto it = curves_.find(number);
    if (it == curves_.end() || it->second.empty()) {
        auto c = controls_.find(number);
        return c == controls_.end() ? 0.0f : static_cast<float>(c->second.value());
    }
    const auto& keys = it->second;
    auto hi = keys.lower_bound(frame);
    if (hi == keys.begin()) return hi->second;
    if (hi == keys.end()) return std::prev(hi)->second;
    if (hi->first == frame) return hi->second;
    auto lo = std::prev(hi);
    const float t = (frame - lo->first) / (hi->first - lo->first);
    return lo->second + (hi->second - lo->second) * t;
}

void Host::on_message(Message::Kind kind, const std::string& text) {
    messages.push_back({kind, text});
    if (!echo_messages) return;
    const char* prefix = kind == Message::Error ? "sparkhost: error: "
                         : kind == Message::Confirm ? "sparkhost: question: "
                                                    : "sparkhost: message: ";
    std::fprintf(stderr, "%s%s\n", prefix, text.c_str());
}

int Host::on_confirm(const std::string& question) {
    on_message(Message::Confirm, question);
    return confirm_policy ? (confirm_policy(question) ? 1 : 0) : 1;
}

int Host::on_get_buffer(int id, HostBufferRecord* record) {
    if (id < 1 || id > 5 || failing_buffers.count(id)) return 0;
    FrameBuffer& b = buffers_[id];
    if (b.bytes.empty()) b.resize(settings.width, settings.height, settings.depth_bits == 12);
    *record = HostBufferRecord{};
    record->pixels = b.data();
    return 1;
}

namespace {
thread_local unsigned long t_band_index = 0;

void call_with_args(void (*fn)(), int nargs, void* const* a) {
    typedef void* P;
    switch (nargs) {
        case 0: reinterpret_cast<void (*)()>(fn)(); break;
        case 1: reinterpret_cast<void (*)(P)>(fn)(a[0]); break;
        case 2: reinterpret_cast<void (*)(P, P)>(fn)(a[0], a[1]); break;
        case 3: reinterpret_cast<void (*)(P, P, P)>(fn)(a[0], a[1], a[2]); break;
        case 4: reinterpret_cast<void (*)(P, P, P, P)>(fn)(a[0], a[1], a[2], a[3]); break;
        case 5: reinterpret_cast<void (*)(P, P, P, P, P)>(fn)(a[0], a[1], a[2], a[3], a[4]); break;
        case 6: reinterpret_cast<void (*)(P, P, P, P, P, P)>(fn)(a[0], a[1], a[2], a[3], a[4], a[5]); break;
        case 7:
            reinterpret_cast<void (*)(P, P, P, P, P, P, P)>(fn)(a[0], a[1], a[2], a[3], a[4], a[5], a[6]);
            break;
        default:
            reinterpret_cast<void (*)(P, P, P, P, P, P, P, P)>(fn)(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7]);
            break;
    }
}
}  // namespace

unsigned long current_band_index() { return t_band_index; }

// Runs fn once per reported processor (band). The calls are spread over the
// worker threads; each call learns its band index through sparkMpInfo.
int Host::mp_fork(void (*fn)(), int nargs, void* const* args) {
    const int bands = settings.bands < 1 ? 1 : settings.bands;
    int threads = settings.threads > 0 ? settings.threads : static_cast<int>(std::thread::hardware_concurrency());
    if (threads < 1) threads = 1;
    if (threads > bands) threads = bands;
    std::atomic<int> next{0};
    auto worker = [&] {
        for (int k = next++; k < bands; k = next++) {
            t_band_index = static_cast<unsigned long>(k);
            call_with_args(fn, nargs, args);
        }
    };
    std::vector<std::thread> pool;
    for (int t = 1; t < threads; ++t) pool.emplace_back(worker);
    const unsigned long saved = t_band_index;
    worker();
    t_band_index = saved;
    for (auto& t : pool) t.join();
    return bands;
}

int Host::on_get_frame(int clip, int frame, void* pixels) {
    frame_requests.push_back(frame);
    if (clip < 0 || clip > 3 || !pixels) return 0;
    FrameBuffer& b = buffers_[clip + 2];
    std::memcpy(pixels, b.bytes.data(), b.bytes.size());
    return 1;
}

void Host::on_control_update(int number) {
    ++updates_[number];
    update_log_.push_back(number);
}

void Host::on_enable(int number, bool enabled) {
    if (enabled)
        hidden_.erase(number);
    else
        hidden_.insert(number);
}

float Host::on_get_curve(int number, float frame) { return curve_value(number, frame); }

int Host::on_set_key(int number, int key, float value) {
    set_key(number, static_cast<float>(key), value);
    return 1;
}

}  // namespace sparkhost
