// Opening an image file for reading with OpenImageIO.
#pragma once

#include <OpenImageIO/imageio.h>

#include <memory>
#include <string>

namespace tools {

// Opens `path` and fills `header` with its size, channels and pixel type.
// On failure returns null with OpenImageIO's reason in `error`.
inline std::unique_ptr<OIIO::ImageInput> open_image(const std::string& path, OIIO::ImageSpec& header,
                                                    std::string& error) {
    auto in = OIIO::ImageInput::create(path);
    if (!in) {
        error = OIIO::geterror();
        return nullptr;
    }
    if (!in->open(path, header)) {
        error = in->geterror();
        return nullptr;
    }
    return in;
}

}  // namespace tools
