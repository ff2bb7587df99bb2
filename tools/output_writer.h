// Writing rendered frames (and other pictures) through OpenImageIO. Every
// file is written under a temporary name beside its final name and renamed
// when complete, so an interrupted render never leaves a half-written frame.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "sparkhost/host.h"
#include "tools/status.h"

namespace tools {

// Creates the folder of `path` (and its parents) if needed and checks that a
// file can be created in it.
Status prepare_folder(const std::string& path);

// Writes a result buffer: 8-bit buffers to 8-bit files, 12-bit buffers to
// 16-bit files (12-bit for DPX); OpenEXR stores 32-bit float, JPEG 8 bits.
Status write_frame(const sparkhost::FrameBuffer& buffer, const std::string& path);

// Writes bytes as the whole file `path`: into a hidden temporary beside it,
// every write, the flush to disk and the close checked, then renamed. On any
// error the temporary is removed and a file already at `path` stays as it was.
Status write_file(const std::string& path, const void* data, std::size_t size);

// Refuses (as a usage error of `option`) a name no image writer knows.
Status check_image_format(const std::string& option, const std::string& path);

// Writes an 8-bit RGB picture.
Status write_rgb8(const std::vector<std::uint8_t>& pixels, int width, int height, const std::string& path);

// Removes a partly written temporary file when the process is interrupted
// (SIGINT, SIGTERM, SIGHUP), then exits with 128 + the signal.
void install_interrupt_cleanup();

// 12-bit value to 16 bits by bit replication: 0 -> 0, 4095 -> 65535, and
// (v * 4095 + 32767) / 65535 gives the 12-bit value back.
inline unsigned widen12(unsigned t) { return (t << 4) | (t >> 8); }

}  // namespace tools
