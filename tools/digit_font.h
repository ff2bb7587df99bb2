// A tiny built-in font of the digits 0-9 (3x5 cells), so that frame numbers
// on the test card and the contact sheet look the same on every machine,
// with or without fonts installed.
#pragma once
#include <functional>
#include <string>

namespace tools {

// Calls plot(x, y) for every lit pixel of `number` drawn with its top-left
// corner at (x0, y0), each font cell `scale` pixels wide, 4 cells a digit.
void draw_digits(const std::string& number, int x0, int y0, int scale, const std::function<void(int, int)>& plot);
inline int digits_width(const std::string& number, int scale) { return static_cast<int>(number.size()) * 4 * scale; }

}  // namespace tools
