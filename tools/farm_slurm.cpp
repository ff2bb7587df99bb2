#include "tools/farm_slurm.h"

#include <sstream>

#include "tools/program_run.h"

namespace tools {

Status sbatch(const std::vector<std::string>& options, const std::string& script, std::string& id) {
    std::vector<std::string> argv{"sbatch", "--parsable"};
    argv.insert(argv.end(), options.begin(), options.end());
    argv.push_back(script);
    const ProgramRun run = run_program(argv);
    if (run.status == 127) return failure("cannot run sbatch: is Slurm's client (slurm-client) installed?");
    // --parsable prints "id" or "id;cluster".
    id = run.out.substr(0, run.out.find_first_of(";\n"));
    if (run.status != 0 || id.empty()) return failure("sbatch: " + run.last_line());
    return ok_status();
}

std::map<std::string, QueuedJob> queued_jobs() {
    std::map<std::string, QueuedJob> jobs;
    // Every array task on a line of its own; every user's jobs (a farm
    // account may submit for others).
    const ProgramRun run = run_program({"squeue", "--noheader", "--array", "--all", "--format=%i|%T|%R"});
    std::istringstream lines(run.out);
    for (std::string line; std::getline(lines, line);) {
        const auto bar1 = line.find('|'), bar2 = line.find('|', bar1 + 1);
        if (bar2 == std::string::npos) continue;
        // %R: the node of a running job, "(Reason)" of a pending one.
        std::string where = line.substr(bar2 + 1);
        if (where.size() > 2 && where.front() == '(' && where.back() == ')') where = where.substr(1, where.size() - 2);
        jobs[line.substr(0, bar1)] = {line.substr(bar1 + 1, bar2 - bar1 - 1), where};
    }
    return jobs;
}

void scancel(const std::string& id) { run_program({"scancel", id}); }

}  // namespace tools
