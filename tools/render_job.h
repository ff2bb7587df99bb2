// One run of paneburst-render: inputs checked, the plug-in loaded and set up,
// the shot's run-up simulated, the frames rendered and written.
#pragma once
#include "tools/options.h"
#include "tools/status.h"

namespace tools {

Status run_render(const Options& options);

// The frame size and the host buffer depth (8 or 12) a render of these
// options uses, from the inputs' first frame or the test card: the first
// check a render makes.
Status probe_frame_format(const Options& options, int& width, int& height, int& depth_bits);

// Refuses output frames and a contact sheet that exist (without --overwrite)
// and makes sure their folders exist and can be written.
Status check_outputs(const Options& options);

}  // namespace tools
