// paneburst-farm submit: a render's options (as paneburst-render takes them)
// become one Slurm array job, task i rendering chunk i of the shot with the
// same --shot-start and --bands, and a final job that runs after every task
// succeeded (afterok), checks every frame and writes the contact sheet.
#pragma once
#include "tools/status.h"

namespace tools {

// argv[0] is "submit". Prints the job ids (or, with --dry-run, the scripts).
Status farm_submit(int argc, char** argv);

// The job script lines that run `command` and record how it ended in
// `state_file` ("running <task> <host>", "done <task>", "failed <task> <status>").
std::string recorded_command(const std::string& state_file, const std::string& task, const std::string& command);

// Single-quoted for the shell.
std::string shell_quote(const std::string& text);

}  // namespace tools
