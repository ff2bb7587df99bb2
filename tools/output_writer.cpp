#include "tools/output_writer.h"

#include <OpenImageIO/imageio.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace tools {

namespace {

// The temporary file being written, for the signal handler (which may only
// use async-signal-safe calls: unlink and _exit).
char g_partial[4096];
volatile sig_atomic_t g_partial_set = 0;

void on_interrupt(int sig) {
    if (g_partial_set) unlink(g_partial);
    _exit(128 + sig);
}

void set_partial(const std::string& path) {
    g_partial_set = 0;
    std::snprintf(g_partial, sizeof g_partial, "%s", path.c_str());
    g_partial_set = 1;
}

std::string one_line(std::string text) {
    for (char& c : text)
        if (c == '\n') c = ' ';
    while (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
}

std::string folder_of(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// The temporary name keeps the file hidden beside its final name; the format
// is chosen from the final name's extension, so the temporary's does not matter.
std::string temporary_name(const std::string& path) {
    const auto slash = path.rfind('/');
    const std::string dir = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    return dir + "." + base + "." + std::to_string(getpid()) + ".part";
}

Status write_pixels(const std::string& path, OIIO::ImageSpec header, OIIO::TypeDesc data_type, const void* data) {
    auto out = OIIO::ImageOutput::create(path);
    if (!out) return failure("cannot write " + path + ": " + one_line(OIIO::geterror()));
    header.attribute("Software", "paneburst-render");
    const std::string temp = temporary_name(path);
    set_partial(temp);
    bool ok = out->open(temp, header) && out->write_image(data_type, data);
    std::string why = ok ? std::string() : one_line(out->geterror());
    ok = out->close() && ok;
    if (ok && std::rename(temp.c_str(), path.c_str()) != 0) {
        ok = false;
        why = std::strerror(errno);
    }
    if (!ok) {
        std::remove(temp.c_str());
        g_partial_set = 0;
        return failure("cannot write " + path + (why.empty() ? std::string() : ": " + why));
    }
    g_partial_set = 0;
    return ok_status();
}

}  // namespace

Status prepare_folder(const std::string& path) {
    const std::string folder = folder_of(path);
    // mkdir -p, one component at a time.
    for (std::size_t i = 1; i <= folder.size(); ++i) {
        if (i != folder.size() && folder[i] != '/') continue;
        const std::string part = folder.substr(0, i);
        if (mkdir(part.c_str(), 0777) != 0 && errno != EEXIST)
            return failure("cannot create folder " + part + ": " + std::strerror(errno));
    }
    struct stat st {};
    if (stat(folder.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
        return failure("cannot write into " + folder + ": not a folder");
    const std::string probe = folder + "/.paneburst-render." + std::to_string(getpid()) + ".probe";
    const int fd = open(probe.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
    if (fd < 0) return failure("cannot write into folder " + folder + ": " + std::strerror(errno));
    close(fd);
    unlink(probe.c_str());
    return ok_status();
}

Status write_frame(const sparkhost::FrameBuffer& b, const std::string& path) {
    auto probe = OIIO::ImageOutput::create(path);
    if (!probe) return failure("cannot write " + path + ": " + one_line(OIIO::geterror()));
    const std::string format = probe->format_name();
    const std::size_t n = static_cast<std::size_t>(b.width) * b.height * 3;
    const unsigned top = b.deep ? 4095u : 255u;
    auto value = [&](std::size_t i) {
        const int x = static_cast<int>(i / 3 % b.width), y = static_cast<int>(i / 3 / b.width);
        const unsigned v = b.get(x, y, static_cast<int>(i % 3));
        // 12-bit buffers hold the value in bits 4..15; bits 0..3 carry no image.
        return b.deep ? v >> 4 : v;
    };
    if (format == "openexr") {
        // OpenEXR has no 8- or 16-bit integer pixels: store the exact ratio.
        std::vector<float> px(n);
        for (std::size_t i = 0; i < n; ++i) px[i] = static_cast<float>(value(i)) / static_cast<float>(top);
        return write_pixels(path, OIIO::ImageSpec(b.width, b.height, 3, OIIO::TypeDesc::FLOAT), OIIO::TypeDesc::FLOAT,
                            px.data());
    }
    if (!b.deep || format == "jpeg") {
        std::vector<std::uint8_t> px(n);
        for (std::size_t i = 0; i < n; ++i)
            px[i] = static_cast<std::uint8_t>(b.deep ? (value(i) * 255u + 2047u) / 4095u : value(i));
        return write_pixels(path, OIIO::ImageSpec(b.width, b.height, 3, OIIO::TypeDesc::UINT8), OIIO::TypeDesc::UINT8,
                            px.data());
    }
    std::vector<std::uint16_t> px(n);
    for (std::size_t i = 0; i < n; ++i) px[i] = static_cast<std::uint16_t>(widen12(value(i)));
    OIIO::ImageSpec header(b.width, b.height, 3, OIIO::TypeDesc::UINT16);
    // DPX keeps the buffer's 12 bits as they are (it drops the replicated low bits).
    if (format == "dpx") header.attribute("oiio:BitsPerSample", 12);
    return write_pixels(path, header, OIIO::TypeDesc::UINT16, px.data());
}

Status write_rgb8(const std::vector<std::uint8_t>& pixels, int width, int height, const std::string& path) {
    return write_pixels(path, OIIO::ImageSpec(width, height, 3, OIIO::TypeDesc::UINT8), OIIO::TypeDesc::UINT8,
                        pixels.data());
}

void install_interrupt_cleanup() {
    struct sigaction sa {};
    sa.sa_handler = on_interrupt;
    sigemptyset(&sa.sa_mask);
    for (int sig : {SIGINT, SIGTERM, SIGHUP}) sigaction(sig, &sa, nullptr);
}

}  // namespace tools
