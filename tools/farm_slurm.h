// The Slurm commands paneburst-farm uses: sbatch, squeue, scancel.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "tools/status.h"

namespace tools {

// Submits a job script with these sbatch options; `id` gets the job id.
// Slurm's refusal comes back as a failure with its message.
Status sbatch(const std::vector<std::string>& options, const std::string& script, std::string& id);

// What the scheduler still holds: "12_3" (array task) or "13" -> state and
// reason ("PENDING", "Dependency"). Finished jobs drop out after a while.
struct QueuedJob {
    std::string state, reason;
};
std::map<std::string, QueuedJob> queued_jobs();

void scancel(const std::string& id);

}  // namespace tools
