// A shot submitted to a Slurm farm: its frames, chunks and output, kept in a
// shot folder on the shared file system with the job scripts, the tasks'
// logs and one state file per chunk, and the Slurm jobs that render it.
//
//   <farm dir>/shots/<name>-XXXXXX/   shot.txt, jobs.txt, render.sh, final.sh,
//                                     logs/render-<job>_<chunk>.log, logs/final-<job>.log,
//                                     chunks/<chunk>, final (state files the jobs write)
//   <farm dir>/jobs/<job id>          a link to the shot folder, for every job submitted
#pragma once
#include <string>
#include <vector>

#include "tools/frame_pattern.h"
#include "tools/status.h"

namespace tools {

struct FarmShot {
    std::string folder;
    std::string out;  // absolute output pattern
    FrameRange frames;
    int shot_start = 1;
    int chunk = 1;  // frames per task
    std::string contact_sheet;
    int contact_every = 1, thumb_width = 160;
    int width = 0, height = 0, depth = 8;  // the frames the render writes

    int chunks() const { return (frames.count() + chunk - 1) / chunk; }
    FrameRange chunk_frames(int index) const;

    std::string file(const std::string& name) const { return folder + "/" + name; }
    Status save() const;
    static Status load(const std::string& folder, FarmShot& shot);
};

// A submitted job: the render array (with the chunks it runs) or the final job.
struct FarmJob {
    std::string kind;  // "render" or "final"
    std::string id;
    std::vector<int> chunks;
};

Status read_jobs(const FarmShot& shot, std::vector<FarmJob>& jobs);
Status record_job(const FarmShot& shot, const std::string& farm_dir, const FarmJob& job);

// The shot folder of a job id, through <farm dir>/jobs.
Status find_shot(const std::string& farm_dir, const std::string& job_id, FarmShot& shot);

// The farm folder: --farm-dir, else $PANEBURST_FARM_DIR, else ~/.paneburst-farm.
std::string default_farm_dir();

// "0,1,2,5" and back.
std::string chunk_list(const std::vector<int>& chunks);
std::vector<int> parse_chunk_list(const std::string& text);

}  // namespace tools
