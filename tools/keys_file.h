// Key files: animation keys for controls, one key a line,
//
//     # frame  control = value
//     1    Z Speed = 5
//     50   Z Speed = 20
//     1    Use Wind = on
//     10   27 = 100
//
// The control is named by its title or number as in --set. Between keys the
// host interpolates linearly; before the first key and after the last it
// holds the nearest key's value. Blank lines and lines starting with '#'
// are skipped.
#pragma once
#include <string>

#include "sparkhost/host.h"
#include "tools/status.h"

namespace tools {

// Reads the file and sets every key on the host. Errors name the file and line.
Status load_keys(sparkhost::Host& host, const std::string& path, int& key_count);

}  // namespace tools
