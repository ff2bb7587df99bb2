#include "tools/contact_sheet.h"

#include <algorithm>
#include <cmath>

#include "tools/digit_font.h"
#include "tools/output_writer.h"

namespace tools {

namespace {

constexpr int kGap = 4;       // pixels between thumbnails
constexpr int kDot = 2;       // font scale
constexpr int kLabel = 5 * kDot + 4;  // label strip under each thumbnail

void put(std::vector<std::uint8_t>& img, int width, int x, int y, std::uint8_t v) {
    const std::size_t i = (static_cast<std::size_t>(y) * width + x) * 3;
    img[i] = img[i + 1] = img[i + 2] = v;
}

void draw_number(std::vector<std::uint8_t>& img, int width, int x0, int y0, int number, int scale) {
    draw_digits(std::to_string(number), x0, y0, scale, [&](int x, int y) { put(img, width, x, y, 235); });
}

}  // namespace

void ContactSheet::add(int frame, const sparkhost::FrameBuffer& b) {
    if (seen_++ % every_ != 0 || b.width < 1 || b.height < 1) return;
    const int tw = std::min(thumb_width_, b.width);
    const int th = std::max(1, static_cast<int>(std::lround(static_cast<double>(b.height) * tw / b.width)));
    thumb_height_ = std::max(thumb_height_, th);
    Thumb t{frame, std::vector<std::uint8_t>(static_cast<std::size_t>(tw) * th * 3)};
    // Box filter: each thumbnail pixel averages the frame pixels it covers.
    for (int y = 0; y < th; ++y) {
        const int y0 = static_cast<int>(static_cast<long>(y) * b.height / th);
        const int y1 = std::max(y0 + 1, static_cast<int>(static_cast<long>(y + 1) * b.height / th));
        for (int x = 0; x < tw; ++x) {
            const int x0 = static_cast<int>(static_cast<long>(x) * b.width / tw);
            const int x1 = std::max(x0 + 1, static_cast<int>(static_cast<long>(x + 1) * b.width / tw));
            for (int c = 0; c < 3; ++c) {
                unsigned long sum = 0;
                for (int sy = y0; sy < y1; ++sy)
                    for (int sx = x0; sx < x1; ++sx) sum += b.deep ? (b.get(sx, sy, c) >> 4) * 255 / 4095 : b.get(sx, sy, c);
                const unsigned long n = static_cast<unsigned long>(y1 - y0) * (x1 - x0);
                t.rgb[(static_cast<std::size_t>(y) * tw + x) * 3 + c] = static_cast<std::uint8_t>((sum + n / 2) / n);
            }
        }
    }
    thumbs_.push_back(std::move(t));
}

std::vector<std::uint8_t> ContactSheet::compose(int& width, int& height) const {
    const int count = static_cast<int>(thumbs_.size());
    const int columns = std::max(1, std::min(count, 8));
    const int rows = (count + columns - 1) / columns;
    const int tw = thumbs_.empty() ? thumb_width_ : static_cast<int>(thumbs_[0].rgb.size() / 3 / thumb_height_);
    // Labels fit under their thumbnail: smaller digits when the longest
    // number is wider, and a wider cell when even those are.
    int longest = 0;
    for (const Thumb& t : thumbs_) longest = std::max(longest, digits_width(std::to_string(t.frame), 1));
    const int scale = longest * kDot <= tw ? kDot : 1;
    const int cell_w = std::max(tw, longest * scale) + kGap, cell_h = thumb_height_ + kLabel + kGap;
    width = columns * cell_w + kGap;
    height = std::max(1, rows) * cell_h + kGap;
    std::vector<std::uint8_t> img(static_cast<std::size_t>(width) * height * 3, 24);
    for (int k = 0; k < count; ++k) {
        const Thumb& t = thumbs_[static_cast<std::size_t>(k)];
        const int w = static_cast<int>(t.rgb.size() / 3) / thumb_height_;
        const int x0 = kGap + (k % columns) * cell_w, y0 = kGap + (k / columns) * cell_h;
        for (int y = 0; y < thumb_height_; ++y)
            std::copy_n(t.rgb.begin() + static_cast<long>(y) * w * 3, w * 3,
                        img.begin() + (static_cast<long>(y0 + y) * width + x0) * 3);
        draw_number(img, width, x0, y0 + thumb_height_ + 2, t.frame, scale);
    }
    return img;
}

Status ContactSheet::write(const std::string& path) const {
    int width = 0, height = 0;
    const std::vector<std::uint8_t> img = compose(width, height);
    return write_rgb8(img, width, height, path);
}

}  // namespace tools
