// Runs the real paneburst-render executable on files written in a temporary
// folder, and reads what it wrote.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tool_support {

struct ToolRun {
    int status = -1;
    std::string out, err;
};

// A fresh folder, removed with everything in it when the test ends.
class TempDir {
public:
    TempDir();
    ~TempDir();
    std::string path(const std::string& name) const { return dir_ + "/" + name; }
    // Runs paneburst-render with these arguments, the folder as working directory.
    ToolRun render(const std::vector<std::string>& args) const;
    // Names of the files in the folder (or a subfolder), sorted.
    std::vector<std::string> files(const std::string& sub = "") const;

private:
    std::string dir_;
};

// Pixels as OpenImageIO reads them back: integer formats as 16 bits, float
// files as floats.
struct Picture {
    int width = 0, height = 0;
    std::string format;  // "uint8", "uint16", "float"
    int bits = 0;        // oiio:BitsPerSample
    std::vector<std::uint16_t> ints;
    std::vector<float> floats;
};

// Writes pixels of `type` ("uint8", "uint16", "float") with `channels` channels.
void write_picture(const std::string& path, int width, int height, int channels, const std::string& type,
                   const void* pixels, int bits_per_sample = 0);
Picture read_picture(const std::string& path);
// Expects the file to hold exactly these 8-bit values (read back as 16 bits).
void expect_picture8(const std::string& path, const std::vector<std::uint8_t>& expected);
std::string file_bytes(const std::string& path);
void write_text(const std::string& path, const std::string& text);

// An 8-bit RGB test pattern that differs from pixel to pixel and frame to frame.
std::vector<std::uint8_t> pattern8(int width, int height, int frame);

// The number of times `needle` occurs in `text`.
int count(const std::string& text, const std::string& needle);

}  // namespace tool_support
