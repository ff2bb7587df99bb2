#include <cstring>

#include "sparkhost/host.h"

namespace sparkhost {

void FrameBuffer::resize(int w, int h, bool is_deep) {
    width = w;
    height = h;
    deep = is_deep;
    bytes.assign(static_cast<std::size_t>(w) * h * 3 * (deep ? 2 : 1), 0);
}

unsigned FrameBuffer::get(int x, int y, int c) const {
    const std::size_t i = (static_cast<std::size_t>(y) * width + x) * 3 + c;
    if (!deep) return bytes[i];
    std::uint16_t w;
    std::memcpy(&w, bytes.data() + i * 2, 2);
    return w;
}

void FrameBuffer::set(int x, int y, int c, unsigned v) {
    const std::size_t i = (static_cast<std::size_t>(y) * width + x) * 3 + c;
    if (!deep) {
        bytes[i] = static_cast<std::uint8_t>(v);
        return;
    }
    const auto w = static_cast<std::uint16_t>(v);
    std::memcpy(bytes.data() + i * 2, &w, 2);
}

}  // namespace sparkhost
