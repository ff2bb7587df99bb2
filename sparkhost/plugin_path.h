#pragma once
#include <string>

namespace sparkhost {
// The plug-in file built beside the running program, unless PANEBURST_PLUGIN names another.
std::string default_plugin_path();
}
