#include "tools/output_writer.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "tools/open_image.h"

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

std::string cannot_write(const std::string& path, const std::string& why) {
    return "cannot write " + path + (why.empty() ? std::string() : ": " + why);
}

// The hidden temporary a file is written under: removed on every way out
// (an error, an exception, a signal) unless it was renamed into place.
class PartialFile {
public:
    explicit PartialFile(const std::string& final_path) : final_(final_path), path_(temporary_name(final_path)) {
        set_partial(path_);
    }
    ~PartialFile() {
        g_partial_set = 0;
        if (!kept_) unlink(path_.c_str());
    }
    PartialFile(const PartialFile&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;
    const std::string& path() const { return path_; }
    Status keep() {
        if (std::rename(path_.c_str(), final_.c_str()) != 0) return failure(cannot_write(final_, std::strerror(errno)));
        kept_ = true;
        return ok_status();
    }

private:
    std::string final_, path_;
    bool kept_ = false;
};

// Reads the whole image back: a writer that cannot tell a short write (a
// full disk) leaves a file that does not decode.
bool reads_back(const std::string& path, const OIIO::ImageSpec& header, OIIO::TypeDesc data_type) {
    OIIO::ImageSpec found;
    std::string error;
    auto in = open_image(path, found, error);
    if (!in || found.width != header.width || found.height != header.height) return false;
    std::vector<unsigned char> pixels(found.image_pixels() * found.nchannels * data_type.size());
    return in->read_image(0, 0, 0, found.nchannels, data_type, pixels.data()) && in->close();
}

Status write_pixels(const std::string& path, OIIO::ImageSpec header, OIIO::TypeDesc data_type, const void* data) {
    auto out = OIIO::ImageOutput::create(path);
    if (!out) return failure(cannot_write(path, one_line(OIIO::geterror())));
    header.attribute("Software", "paneburst-render");
    // Most writers encode into memory; the bytes then go to disk through
    // write_file, where every write is checked.
    std::vector<unsigned char> bytes;
    OIIO::Filesystem::IOVecOutput memory(bytes);
    const bool in_memory = out->supports("ioproxy") && out->set_ioproxy(&memory);
    std::unique_ptr<PartialFile> temp;
    if (!in_memory) temp = std::make_unique<PartialFile>(path);
    bool ok = out->open(in_memory ? path : temp->path(), header) && out->write_image(data_type, data);
    std::string why = ok ? std::string() : one_line(out->geterror());
    ok = out->close() && ok;
    if (!ok) return failure(cannot_write(path, why.empty() ? one_line(out->geterror()) : why));
    if (in_memory) return write_file(path, bytes.data(), bytes.size());
    if (!reads_back(temp->path(), header, data_type))
        return failure(cannot_write(path, "the written file does not read back (is the disk full?)"));
    return temp->keep();
}

}  // namespace

Status write_file(const std::string& path, const void* data, std::size_t size) {
    PartialFile temp(path);
    const int fd = open(temp.path().c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (fd < 0) return failure(cannot_write(path, std::strerror(errno)));
    int error = 0;
    for (const char* p = static_cast<const char*>(data); size > 0 && !error;) {
        const ssize_t n = write(fd, p, size);
        if (n < 0 && errno != EINTR) error = errno;
        if (n > 0) p += n, size -= static_cast<std::size_t>(n);
    }
    // A network or quota file system may report a full disk only here.
    if (!error && fsync(fd) != 0) error = errno;
    if (close(fd) != 0 && !error) error = errno;
    if (error) return failure(cannot_write(path, std::strerror(error)));
    return temp.keep();
}

Status check_image_format(const std::string& option, const std::string& path) {
    if (OIIO::ImageOutput::create(path)) return ok_status();
    const auto dot = path.rfind('.');
    const std::string why = dot == std::string::npos || path.find('/', dot) != std::string::npos
                                ? "the name has no extension to choose an image format"
                                : "no image format has the extension \"" + path.substr(dot) + "\"";
    return usage_error(option + " " + path + ": " + why + " (use .exr, .dpx, .tif, .png or .jpg)");
}

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
