// paneburst-farm status, resubmit and finish: what became of a submitted
// shot's chunks, submitting again only the failed ones, and the final job's
// check of every frame with the contact sheet.
#pragma once
#include <string>

#include "tools/status.h"

namespace tools {

// Prints every chunk's state (pending, running, done, failed with the last
// lines of its log) and the final job's.
Status farm_status(const std::string& farm_dir, const std::string& job_id);

// Submits the failed chunks again as a new array job, and a new final job
// after them (and after the chunks still pending or running); a failed final
// job alone is submitted again.
Status farm_resubmit(const std::string& farm_dir, const std::string& job_id);

// Run by the final job: every frame of the shot exists and reads back; the
// contact sheet is made from the frames written.
Status farm_finish(const std::string& shot_folder);

}  // namespace tools
