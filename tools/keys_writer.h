// Writes the host's animation keys as a key file that --keys reads back
// (see keys_file.h): one key a line, the control by its title when the title
// names it alone, by its number otherwise.
#pragma once
#include <string>

#include "sparkhost/host.h"
#include "tools/status.h"

namespace tools {

Status save_keys(sparkhost::Host& host, const std::string& path, int& key_count);

}  // namespace tools
