// One run of paneburst-render: inputs checked, the plug-in loaded and set up,
// the shot's run-up simulated, the frames rendered and written.
#pragma once
#include "tools/options.h"
#include "tools/status.h"

namespace tools {

Status run_render(const Options& options);

}  // namespace tools
