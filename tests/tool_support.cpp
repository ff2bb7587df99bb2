#include "tests/tool_support.h"

#include <OpenImageIO/imageio.h>
#include <dirent.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tools/open_image.h"

namespace tool_support {

namespace {

std::string quote(const std::string& s) {
    std::string q = "'";
    for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

OIIO::TypeDesc type_of(const std::string& type) {
    if (type == "uint8") return OIIO::TypeDesc::UINT8;
    if (type == "uint16") return OIIO::TypeDesc::UINT16;
    return OIIO::TypeDesc::FLOAT;
}

}  // namespace

TempDir::TempDir() {
    char name[] = "/tmp/paneburst-tool-XXXXXX";
    const char* made = mkdtemp(name);
    EXPECT_NE(made, nullptr);
    dir_ = made ? made : "/tmp";
}

TempDir::~TempDir() {
    if (dir_.rfind("/tmp/paneburst-tool-", 0) == 0) {
        const std::string cmd = "rm -rf " + quote(dir_);
        if (std::system(cmd.c_str()) != 0) std::fprintf(stderr, "could not remove %s\n", dir_.c_str());
    }
}

ToolRun TempDir::render(const std::vector<std::string>& args) const {
    std::string cmd = "cd " + quote(dir_) + " && " + quote(PANEBURST_RENDER_EXE);
    for (const std::string& a : args) cmd += " " + quote(a);
    cmd += " >" + quote(dir_ + "/.stdout") + " 2>" + quote(dir_ + "/.stderr") + " </dev/null";
    const int raw = std::system(cmd.c_str());
    ToolRun r{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, file_bytes(dir_ + "/.stdout"), file_bytes(dir_ + "/.stderr")};
    std::remove((dir_ + "/.stdout").c_str());
    std::remove((dir_ + "/.stderr").c_str());
    return r;
}

std::vector<std::string> TempDir::files(const std::string& sub) const {
    std::vector<std::string> names;
    if (DIR* d = opendir((sub.empty() ? dir_ : path(sub)).c_str())) {
        while (dirent* e = readdir(d)) {
            const std::string n = e->d_name;
            if (n != "." && n != "..") names.push_back(n);
        }
        closedir(d);
    }
    std::sort(names.begin(), names.end());
    return names;
}

void write_picture(const std::string& path, int width, int height, int channels, const std::string& type,
                   const void* pixels, int bits_per_sample) {
    auto out = OIIO::ImageOutput::create(path);
    ASSERT_TRUE(out) << OIIO::geterror();
    OIIO::ImageSpec header(width, height, channels, type_of(type));
    if (bits_per_sample) header.attribute("oiio:BitsPerSample", bits_per_sample);
    ASSERT_TRUE(out->open(path, header)) << out->geterror();
    ASSERT_TRUE(out->write_image(type_of(type), pixels)) << out->geterror();
    ASSERT_TRUE(out->close());
}

Picture read_picture(const std::string& path) {
    Picture p;
    OIIO::ImageSpec header;
    std::string error;
    auto in = tools::open_image(path, header, error);
    EXPECT_TRUE(in) << path << ": " << error;
    if (!in) return p;
    p.width = header.width;
    p.height = header.height;
    p.format = header.format.c_str();
    p.bits = header.get_int_attribute("oiio:BitsPerSample", 0);
    const std::size_t n = static_cast<std::size_t>(p.width) * p.height * header.nchannels;
    const bool is_float = header.format.is_floating_point();
    if (is_float) p.floats.resize(n);
    else p.ints.resize(n);
    EXPECT_TRUE(in->read_image(0, 0, 0, header.nchannels, is_float ? OIIO::TypeDesc::FLOAT : OIIO::TypeDesc::UINT16,
                               is_float ? static_cast<void*>(p.floats.data()) : p.ints.data()));
    return p;
}

void expect_picture8(const std::string& path, const std::vector<std::uint8_t>& expected) {
    const Picture p = read_picture(path);
    ASSERT_EQ(p.ints.size(), expected.size()) << path;
    for (std::size_t i = 0; i < expected.size(); ++i) ASSERT_EQ(p.ints[i], expected[i] * 257u) << path << " value " << i;
}

std::string file_bytes(const std::string& path) {
    std::ostringstream s;
    s << std::ifstream(path, std::ios::binary).rdbuf();
    return s.str();
}

void write_text(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

std::vector<std::uint8_t> pattern8(int width, int height, int frame) {
    std::vector<std::uint8_t> px(static_cast<std::size_t>(width) * height * 3);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int c = 0; c < 3; ++c)
                px[(static_cast<std::size_t>(y) * width + x) * 3 + c] =
                    static_cast<std::uint8_t>((x * 37 + y * 11 + c * 85 + frame * 29) % 256);
    return px;
}

int count(const std::string& text, const std::string& needle) {
    int n = 0;
    for (auto pos = text.find(needle); pos != std::string::npos; pos = text.find(needle, pos + needle.size())) ++n;
    return n;
}

}  // namespace tool_support
