// Runs another program (sbatch, squeue, paneburst-render) without a shell
// and collects what it printed.
#pragma once
#include <string>
#include <vector>

namespace tools {

struct ProgramRun {
    int status = -1;  // the exit status; 127 when it could not be started, -1 when killed
    std::string out, err;
    // The last non-empty line of its standard error (or output), for one-line messages.
    std::string last_line() const;
};

ProgramRun run_program(const std::vector<std::string>& argv);

}  // namespace tools
