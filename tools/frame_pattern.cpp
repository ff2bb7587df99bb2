#include "tools/frame_pattern.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace tools {

FramePattern::FramePattern(std::string text) : text_(std::move(text)) {
    // The first frame token wins; a name with "%%" or no token is a still.
    for (std::size_t i = 0; i < text_.size(); ++i) {
        if (text_[i] == '#') {
            std::size_t j = i;
            while (j < text_.size() && text_[j] == '#') ++j;
            token_start_ = i;
            token_length_ = j - i;
            digits_ = static_cast<int>(j - i);
            return;
        }
        if (text_[i] == '%') {
            std::size_t j = i + 1;
            int width = 0;
            bool zero = false;
            if (j < text_.size() && text_[j] == '0') {
                zero = true;
                ++j;
            }
            while (j < text_.size() && std::isdigit(static_cast<unsigned char>(text_[j])))
                width = width * 10 + (text_[j++] - '0');
            if (j < text_.size() && text_[j] == 'd') {
                token_start_ = i;
                token_length_ = j + 1 - i;
                // "%4d" pads with blanks in printf; nobody wants blanks in a
                // file name, so any width pads with zeros.
                digits_ = (zero || width > 0) ? width : 0;
                return;
            }
        }
    }
}

std::string FramePattern::at(int frame) const {
    if (!is_sequence()) return text_;
    char number[32];
    std::snprintf(number, sizeof number, "%0*d", digits_ > 0 ? digits_ : 1, frame);
    return text_.substr(0, token_start_) + number + text_.substr(token_start_ + token_length_);
}

namespace {
bool parse_frame(const std::string& text, int& frame) {
    if (text.empty()) return false;
    for (char c : text)
        if (!std::isdigit(static_cast<unsigned char>(c))) return false;
    if (text.size() > 9) return false;
    frame = std::atoi(text.c_str());
    return true;
}
}  // namespace

Status parse_frame_range(const std::string& text, FrameRange& range) {
    if (text.empty()) return usage_error("--frames: empty frame range");
    const auto dash = text.find('-', 1);
    const std::string a = dash == std::string::npos ? text : text.substr(0, dash);
    const std::string b = dash == std::string::npos ? text : text.substr(dash + 1);
    if (!parse_frame(a, range.first) || !parse_frame(b, range.last))
        return usage_error("--frames " + text + ": not a frame range (use FIRST-LAST, e.g. 1-100)");
    if (range.last < range.first)
        return usage_error("--frames " + text + ": backwards frame range (" + b + " comes before " + a + ")");
    return ok_status();
}

}  // namespace tools
