#include "tools/frame_pattern.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace tools {

namespace {

struct Token {
    std::size_t start = 0, length = 0;  // length 0: none
    int digits = 0;
};

// The first frame token at or after `from`: a run of '#', or "%d" with an
// optional zero flag and width.
Token find_token(const std::string& text, std::size_t from) {
    for (std::size_t i = from; i < text.size(); ++i) {
        if (text[i] == '#') {
            std::size_t j = i;
            while (j < text.size() && text[j] == '#') ++j;
            return {i, j - i, static_cast<int>(j - i)};
        }
        if (text[i] == '%') {
            std::size_t j = i + 1;
            int width = 0;
            bool zero = false;
            if (j < text.size() && text[j] == '0') {
                zero = true;
                ++j;
            }
            while (j < text.size() && std::isdigit(static_cast<unsigned char>(text[j])) && width < 100)
                width = width * 10 + (text[j++] - '0');
            // "%4d" pads with blanks in printf; nobody wants blanks in a
            // file name, so any width pads with zeros.
            if (j < text.size() && text[j] == 'd') return {i, j + 1 - i, (zero || width > 0) ? width : 0};
        }
    }
    return {};
}

}  // namespace

FramePattern::FramePattern(std::string text) : text_(std::move(text)) {
    // The first frame token wins; a name without one is a still.
    const Token t = find_token(text_, 0);
    token_start_ = t.start;
    token_length_ = t.length;
    digits_ = t.digits;
}

std::string FramePattern::at(int frame) const {
    if (!is_sequence()) return text_;
    char number[32];
    std::snprintf(number, sizeof number, "%0*d", digits_ > 0 ? digits_ : 1, frame);
    return text_.substr(0, token_start_) + number + text_.substr(token_start_ + token_length_);
}

std::string FramePattern::output_problem() const {
    if (!is_sequence()) return "";
    if (text_.find('/', token_start_) != std::string::npos)
        return "the frame number is in a folder name; put it in the file name (out/shot.%04d.png)";
    if (find_token(text_, token_start_ + token_length_).length > 0)
        return "more than one frame number in the name; give one (%04d or ####)";
    return "";
}

bool FramePattern::frame_of(const std::string& name, int& frame) const {
    if (!is_sequence()) return false;
    const std::size_t tail = text_.size() - token_start_ - token_length_;
    if (name.size() <= token_start_ + tail || name.compare(0, token_start_, text_, 0, token_start_) != 0 ||
        name.compare(name.size() - tail, tail, text_, token_start_ + token_length_, tail) != 0)
        return false;
    const std::string digits = name.substr(token_start_, name.size() - token_start_ - tail);
    if (digits.size() > 9 || digits.find_first_not_of("0123456789") != std::string::npos) return false;
    frame = std::atoi(digits.c_str());
    return at(frame) == name;
}

namespace {
bool parse_frame(const std::string& text, int& frame) {
    if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) return false;
    frame = std::atoi(text.c_str());
    return true;
}

std::string frame_limits() { return "frames are whole numbers from 0 to " + std::to_string(kMaxFrame); }
}  // namespace

Status parse_frame_range(const std::string& text, FrameRange& range) {
    if (text.empty()) return usage_error("--frames: empty frame range");
    const auto dash = text.find('-', 1);
    const std::string a = dash == std::string::npos ? text : text.substr(0, dash);
    const std::string b = dash == std::string::npos ? text : text.substr(dash + 1);
    if (!parse_frame(a, range.first) || !parse_frame(b, range.last))
        return usage_error("--frames " + text + ": not a frame range (use FIRST-LAST, e.g. 1-100; " + frame_limits() +
                           ")");
    if (range.last < range.first)
        return usage_error("--frames " + text + ": backwards frame range (" + b + " comes before " + a + ")");
    if (range.last > kMaxFrame) return usage_error("--frames " + text + ": " + frame_limits());
    return ok_status();
}

Status parse_frame_number(const std::string& option, const std::string& text, int& frame) {
    if (!parse_frame(text, frame) || frame > kMaxFrame) return usage_error(option + " " + text + ": " + frame_limits());
    return ok_status();
}

}  // namespace tools
