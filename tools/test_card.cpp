#include "tools/test_card.h"

#include <string>

#include "tools/digit_font.h"

namespace tools {

namespace {
// Stores an 8-bit colour into either kind of buffer.
void put(sparkhost::FrameBuffer& b, int x, int y, const unsigned char rgb[3]) {
    for (int c = 0; c < 3; ++c) b.set(x, y, c, b.deep ? (static_cast<unsigned>(rgb[c]) * 4095 / 255) << 4 : rgb[c]);
}
}  // namespace

void draw_test_card(sparkhost::FrameBuffer& b, int frame) {
    static const unsigned char bars[8][3] = {{235, 235, 235}, {235, 235, 16}, {16, 235, 235}, {16, 235, 16},
                                             {235, 16, 235},  {235, 16, 16},  {16, 16, 235},  {16, 16, 16}};
    const int grid = b.width / 12 > 0 ? b.width / 12 : 1;
    for (int y = 0; y < b.height; ++y) {
        for (int x = 0; x < b.width; ++x) {
            unsigned char rgb[3];
            const int bar = x * 8 / b.width;
            for (int c = 0; c < 3; ++c) rgb[c] = bars[bar][c];
            if (x % grid == 0 || y % grid == 0) rgb[0] = rgb[1] = rgb[2] = 0;
            // A strip along the bottom whose lit cell moves with the frame number.
            if (y > b.height * 7 / 8) {
                const int cell = (x * 16 / b.width);
                const unsigned char v = cell == frame % 16 ? 255 : 40;
                rgb[0] = rgb[1] = rgb[2] = v;
            }
            put(b, x, y, rgb);
        }
    }
    // The frame number, large, in a black box in the upper middle.
    const std::string number = std::to_string(frame);
    const int scale = b.height / 40 > 1 ? b.height / 40 : 1;
    const int w = digits_width(number, scale) + 2 * scale, h = 7 * scale;
    const int x0 = (b.width - w) / 2, y0 = b.height / 8;
    const unsigned char black[3] = {0, 0, 0}, white[3] = {255, 255, 255};
    for (int y = y0; y < y0 + h && y < b.height; ++y)
        for (int x = x0 < 0 ? 0 : x0; x < x0 + w && x < b.width; ++x) put(b, x, y, black);
    draw_digits(number, x0 + 2 * scale, y0 + scale, scale, [&](int x, int y) {
        if (x >= 0 && y >= 0 && x < b.width && y < b.height) put(b, x, y, white);
    });
}

void draw_gradient(sparkhost::FrameBuffer& b) {
    for (int y = 0; y < b.height; ++y) {
        const int t = b.height > 1 ? y * 255 / (b.height - 1) : 0;
        const unsigned char rgb[3] = {static_cast<unsigned char>(20 + t * 200 / 255),
                                      static_cast<unsigned char>(30 + t * 90 / 255),
                                      static_cast<unsigned char>(120 - t * 100 / 255)};
        for (int x = 0; x < b.width; ++x) put(b, x, y, rgb);
    }
}

}  // namespace tools
