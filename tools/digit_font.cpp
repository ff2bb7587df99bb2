#include "tools/digit_font.h"

#include <cstdint>

namespace tools {

namespace {
// Rows top to bottom; bit 2 is the left column.
const std::uint8_t kDigits[10][5] = {
    {7, 5, 5, 5, 7}, {2, 6, 2, 2, 7}, {7, 1, 7, 4, 7}, {7, 1, 7, 1, 7}, {5, 5, 7, 1, 1},
    {7, 4, 7, 1, 7}, {7, 4, 7, 5, 7}, {7, 1, 1, 1, 1}, {7, 5, 7, 5, 7}, {7, 5, 7, 1, 7},
};
}  // namespace

void draw_digits(const std::string& number, int x0, int y0, int scale, const std::function<void(int, int)>& plot) {
    for (std::size_t k = 0; k < number.size(); ++k) {
        if (number[k] < '0' || number[k] > '9') continue;
        const auto& glyph = kDigits[number[k] - '0'];
        for (int row = 0; row < 5; ++row)
            for (int col = 0; col < 3; ++col)
                if (glyph[row] & (4 >> col))
                    for (int dy = 0; dy < scale; ++dy)
                        for (int dx = 0; dx < scale; ++dx)
                            plot(x0 + static_cast<int>(k) * 4 * scale + col * scale + dx, y0 + row * scale + dy);
    }
}

}  // namespace tools
