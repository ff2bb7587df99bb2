// The host functions the plug-in imports by name. Each serves the current Host.
#include <cstdarg>
#include <cstring>
#include <string>

#include "sparkhost/host.h"

namespace sparkhost {
unsigned long current_band_index();
}

using sparkhost::Host;
using sparkhost::Message;

namespace {
Host* host() { return Host::current(); }
}  // namespace

extern "C" {

double sparkAPIVersionInfo(void) { return host() ? host()->settings.api_version : 4.0; }

void sparkError(const char* text) {
    if (host()) host()->on_message(Message::Error, text ? text : "");
}

void sparkMessage(const char* text) {
    if (host()) host()->on_message(Message::Info, text ? text : "");
}

int sparkMessageConfirm(const char* question) { return host() ? host()->on_confirm(question ? question : "") : 1; }

int sparkLoadSetup(void*) {
    Host* h = host();
    if (!h || h->setup_path.empty()) return 0;
    std::string error;
    return h->load_setup(h->setup_path, error) ? 1 : 0;
}

int sparkSaveSetup(void*) {
    Host* h = host();
    if (!h || h->setup_path.empty()) return 0;
    std::string error;
    if (h->save_setup(h->setup_path, error)) return 1;
    h->on_message(Message::Error, error);
    return 0;
}

void sparkControlTitle(int page, const char* title) {
    if (host() && page >= 0 && page < 4) host()->page_titles[page] = title ? title : "";
}

void sparkClipControlTitle(int clip, const char* title) {
    if (host() && clip >= 0 && clip < 4) host()->clip_titles[clip] = title ? title : "";
}

int sparkMemGetFreeMemory(void) { return host() ? host()->settings.free_buffers : 0; }

int sparkMemGetBuffer(int id, HostBufferRecord* record) {
    return host() && record ? host()->on_get_buffer(id, record) : 0;
}

int sparkGraphSetup(HostGraphRecord* g) {
    if (!g) return 0;
    std::memset(g, 0, sizeof *g);
    g->pixel_aspect = host() ? host()->pixel_aspect : 1.0f;
    return 1;
}

int sparkGetFrame(int clip, int frame, void* pixels) { return host() ? host()->on_get_frame(clip, frame, pixels) : 0; }

int sparkMpFork(void (*fn)(), int nargs, ...) {
    if (nargs < 0) nargs = 0;
    if (nargs > 8) nargs = 8;
    void* args[8] = {};
    va_list ap;
    va_start(ap, nargs);
    for (int i = 0; i < nargs; ++i) args[i] = va_arg(ap, void*);
    va_end(ap);
    if (host()) return host()->mp_fork(fn, nargs, args);
    Host standalone;  // nobody set up a host: run on one processor
    standalone.settings.bands = 1;
    return standalone.mp_fork(fn, nargs, args);
}

void sparkMpInfo(unsigned long* a, unsigned long* b) {
    if (a) *a = sparkhost::current_band_index();
    if (b) *b = 1;
}

void sparkControlUpdate(int control) {
    if (host()) host()->on_control_update(control);
}

void sparkEnableParameter(int, int control) {
    if (host()) host()->on_enable(control, true);
}

void sparkDisableParameter(int, int control) {
    if (host()) host()->on_enable(control, false);
}

float sparkGetCurveValuef(int, int control, float frame) { return host() ? host()->on_get_curve(control, frame) : 0.0f; }

int sparkSetCurveKey(int, int control, int key, float value) {
    return host() ? host()->on_set_key(control, key, value) : 0;
}

void sparkViewingDraw(void) {
    if (host() && host()->on_viewing_draw) host()->on_viewing_draw();
}

void sparkViewingCursor(int shape) {
    if (host() && host()->on_viewing_cursor) host()->on_viewing_cursor(shape);
}

void sparkCursorBusy(void) {}

float sparkGetViewerRatio(void) { return host() ? host()->viewer_ratio : 1.0f; }

int sparkCeAddFolder(int first, const char* name) {
    if (!host()) return 0;
    host()->editor_calls.push_back({sparkhost::EditorCall::Folder, first, 0, name ? name : ""});
    return 1;
}

int sparkCeAddControl(int first, int second, int control) {
    if (!host()) return 0;
    host()->editor_calls.push_back({sparkhost::EditorCall::Control, first, second, std::to_string(control)});
    return 1;
}

int sparkSetControlName(int first, int control, const char* name) {
    if (!host()) return 0;
    host()->editor_calls.push_back({sparkhost::EditorCall::Name, first, control, name ? name : ""});
    return 1;
}

void sparkWorkingDir(char* buffer) {
    if (!buffer) return;
    const std::string dir = host() ? host()->working_dir : std::string();
    std::strncpy(buffer, dir.c_str(), 255);
    buffer[255] = '\0';
}

void sparkFileBrowserDisplay(const char* directory, const char* extension, void (*done)(const char* path)) {
    Host* h = host();
    if (!h || !done) return;
    if (!h->file_browser) {
        h->file_request.reset(new sparkhost::FileRequest{directory ? directory : "", extension ? extension : "", done});
        return;
    }
    const std::string chosen = h->file_browser(directory ? directory : "", extension ? extension : "");
    if (!chosen.empty()) done(chosen.c_str());
}

}  // extern "C"
