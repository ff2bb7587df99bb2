// Runs the real paneburst-render executable on files written in a temporary
// folder, and reads what it wrote.
#pragma once

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tools/open_image.h"

namespace tool_support {

struct ToolRun { int status = -1; std::string out, err; };

inline std::string quote(const std::string& s) {
    std::string q = "'";
    for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

inline std::string file_bytes(const std::string& path) {
    return (std::ostringstream() << std::ifstream(path, std::ios::binary).rdbuf()).str();
}

inline void write_text(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

// A fresh folder, removed with everything in it when the test ends.
class TempDir {
public:
    TempDir() {
        char name[] = "/tmp/paneburst-tool-XXXXXX";
        const char* made = mkdtemp(name);
        EXPECT_NE(made, nullptr);
        dir_ = made ? made : "/tmp/paneburst-tool-failed";
    }
    ~TempDir() { std::filesystem::remove_all(dir_); }
    std::string path(const std::string& name) const { return dir_ + "/" + name; }
    // Runs paneburst-render with these arguments, the folder as working
    // directory, after the shell command `before` ("ulimit -v 100000").
    ToolRun render(const std::vector<std::string>& args, const std::string& before = "true") const {
        return run(PANEBURST_RENDER_EXE, args, before);
    }
    ToolRun run(const std::string& program, const std::vector<std::string>& args,
                const std::string& before = "true") const {
        std::string cmd = "cd " + quote(dir_) + " && " + before + " && " + quote(program);
        for (const std::string& a : args) cmd += " " + quote(a);
        cmd += " >" + quote(path(".stdout")) + " 2>" + quote(path(".stderr")) + " </dev/null";
        const int raw = std::system(cmd.c_str());
        ToolRun r{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, file_bytes(path(".stdout")), file_bytes(path(".stderr"))};
        for (const char* f : {".stdout", ".stderr"}) std::remove(path(f).c_str());
        return r;
    }
    // Names of the files in the folder (or a subfolder), sorted.
    std::vector<std::string> files(const std::string& sub = "") const {
        std::vector<std::string> names;
        std::error_code ec;  // no folder: no names
        for (const auto& e : std::filesystem::directory_iterator(path(sub), ec)) names.push_back(e.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::string dir_;
};

// Pixels as OpenImageIO reads them back: integer formats as 16 bits, float
// files as floats; the format ("uint8", "uint16", "float") and bits per sample.
struct Picture { std::string format; int bits = 0; std::vector<std::uint16_t> ints; std::vector<float> floats; };

// Writes pixels of `type` ("uint8", "uint16", "float") with `channels` channels.
inline void write_picture(const std::string& path, int width, int height, int channels, const std::string& type,
                          const void* pixels, int bits_per_sample = 0) {
    const OIIO::TypeDesc t = type == "uint8" ? OIIO::TypeDesc::UINT8
                             : type == "uint16" ? OIIO::TypeDesc::UINT16 : OIIO::TypeDesc::FLOAT;
    auto out = OIIO::ImageOutput::create(path);
    ASSERT_TRUE(out) << OIIO::geterror();
    OIIO::ImageSpec header(width, height, channels, t);
    if (bits_per_sample) header.attribute("oiio:BitsPerSample", bits_per_sample);
    ASSERT_TRUE(out->open(path, header) && out->write_image(t, pixels) && out->close()) << out->geterror();
}

inline Picture read_picture(const std::string& path) {
    Picture p;
    OIIO::ImageSpec header;
    std::string error;
    auto in = tools::open_image(path, header, error);
    EXPECT_TRUE(in) << path << ": " << error;
    if (!in) return p;
    p.format = header.format.c_str();
    p.bits = header.get_int_attribute("oiio:BitsPerSample", 0);
    const std::size_t n = static_cast<std::size_t>(header.width) * header.height * header.nchannels;
    const bool is_float = header.format.is_floating_point();
    (is_float ? p.floats.resize(n) : p.ints.resize(n));
    EXPECT_TRUE(in->read_image(0, 0, 0, header.nchannels, is_float ? OIIO::TypeDesc::FLOAT : OIIO::TypeDesc::UINT16,
                               is_float ? static_cast<void*>(p.floats.data()) : p.ints.data()));
    return p;
}

// Expects the file to hold exactly these 8-bit values (read back as 16 bits).
inline void expect_picture8(const std::string& path, const std::vector<std::uint8_t>& expected) {
    const Picture p = read_picture(path);
    ASSERT_EQ(p.ints.size(), expected.size()) << path;
    for (std::size_t i = 0; i < expected.size(); ++i) ASSERT_EQ(p.ints[i], expected[i] * 257u) << path << " value " << i;
}

// An 8-bit RGB test pattern that differs from pixel to pixel and frame to frame.
inline std::vector<std::uint8_t> pattern8(int width, int height, int frame) {
    std::vector<std::uint8_t> px(static_cast<std::size_t>(width) * height * 3);
    for (std::size_t i = 0; i < px.size(); ++i)
        px[i] = static_cast<std::uint8_t>((i / 3 % width * 37 + i / 3 / width * 11 + i % 3 * 85 + frame * 29) % 256);
    return px;
}

}  // namespace tool_support
