#include "tools/farm_status.h"

#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <vector>

#include "tools/contact_sheet.h"
#include "tools/farm_shot.h"
#include "tools/farm_slurm.h"
#include "tools/input_clip.h"

namespace tools {

namespace {

enum class State { Pending, Running, Done, Failed };
const char* const kStateNames[] = {"pending", "running", "done", "failed"};

struct JobState {
    State state = State::Failed;
    std::string task;    // "12_3" or "13"
    std::string detail;  // the scheduler's reason, the node, the exit status
    std::string log;     // the job's log file
};

// How a job ran: the scheduler while it holds the job, else the state file
// the job script wrote.
JobState job_state(const std::map<std::string, QueuedJob>& queue, const std::string& task,
                   const std::string& state_file, const std::string& log) {
    JobState js;
    js.task = task;
    js.log = log;
    if (const auto q = queue.find(task); q != queue.end()) {
        const bool running = q->second.state == "RUNNING" || q->second.state == "COMPLETING";
        js.state = running ? State::Running : State::Pending;
        js.detail = running ? "on " + q->second.reason : q->second.reason;
        if (q->second.state != "COMPLETING") return js;
    }
    std::ifstream f(state_file);
    std::string word, recorded, status;
    f >> word >> recorded >> status;
    if (recorded != task) {
        js.state = State::Failed;
        js.detail = "never ran (cancelled before it started)";
    } else if (word == "done") {
        js.state = State::Done;
    } else if (word == "failed") {
        js.state = State::Failed;
        const int code = std::atoi(status.c_str());
        js.detail = code > 128 ? "killed by signal " + std::to_string(code - 128) + " (cancelled or out of time)"
                               : "exit status " + status;
    } else {
        js.state = State::Failed;
        js.detail = "ended without a status (killed, or its node failed)";
    }
    return js;
}

std::vector<std::string> last_lines(const std::string& path, std::size_t count) {
    std::ifstream f(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(f, line);) {
        const auto cr = line.rfind('\r');  // progress redrawn in place: its last state
        if (cr != std::string::npos) line = line.substr(cr + 1);
        if (line.find_first_not_of(' ') != std::string::npos) lines.push_back(line);
    }
    if (lines.size() > count) lines.erase(lines.begin(), lines.end() - static_cast<long>(count));
    return lines;
}

struct ShotState {
    FarmShot shot;
    std::vector<FarmJob> jobs;
    std::vector<JobState> chunks;
    JobState final_job;
    bool has_final = false;
};

Status shot_state(const std::string& farm_dir, const std::string& job_id, ShotState& s) {
    if (Status st = find_shot(farm_dir, job_id, s.shot); !st.ok()) return st;
    if (Status st = read_jobs(s.shot, s.jobs); !st.ok()) return st;
    const auto queue = queued_jobs();
    // Each chunk as its latest submission ran.
    std::vector<std::string> latest(static_cast<std::size_t>(s.shot.chunks()));
    for (const FarmJob& job : s.jobs) {
        if (job.kind == "final") {
            s.final_job = job_state(queue, job.id, s.shot.file("final"), s.shot.file("logs/final-" + job.id + ".log"));
            s.has_final = true;
        }
        for (int c : job.chunks)
            if (c >= 0 && c < s.shot.chunks()) latest[static_cast<std::size_t>(c)] = job.id;
    }
    for (int c = 0; c < s.shot.chunks(); ++c) {
        const std::string task = latest[static_cast<std::size_t>(c)] + "_" + std::to_string(c);
        s.chunks.push_back(job_state(queue, task, s.shot.file("chunks/" + std::to_string(c)),
                                     s.shot.file("logs/render-" + task + ".log")));
    }
    return ok_status();
}

void print_state(const std::string& label, const JobState& js) {
    std::printf("%-24s %-8s %s%s%s\n", label.c_str(), kStateNames[static_cast<int>(js.state)], js.task.c_str(),
                js.detail.empty() ? "" : ": ", js.detail.c_str());
    if (js.state == State::Failed)
        for (const std::string& line : last_lines(js.log, 3)) std::printf("    | %s\n", line.c_str());
}

bool exists(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0;
}

}  // namespace

Status farm_status(const std::string& farm_dir, const std::string& job_id) {
    ShotState s;
    if (Status st = shot_state(farm_dir, job_id, s); !st.ok()) return st;
    std::printf("shot %s, frames %d-%d in %d chunks of %d\n", s.shot.out.c_str(), s.shot.frames.first,
                s.shot.frames.last, s.shot.chunks(), s.shot.chunk);
    int counts[4] = {};
    for (int c = 0; c < s.shot.chunks(); ++c) {
        const JobState& js = s.chunks[static_cast<std::size_t>(c)];
        const FrameRange r = s.shot.chunk_frames(c);
        print_state("chunk " + std::to_string(c) + " (frames " + std::to_string(r.first) + "-" +
                        std::to_string(r.last) + ")",
                    js);
        ++counts[static_cast<int>(js.state)];
    }
    if (s.has_final) print_state("final job", s.final_job);
    std::printf("%d done, %d running, %d pending, %d failed", counts[2], counts[1], counts[0], counts[3]);
    if (counts[3]) std::printf(": fix the cause, then paneburst-farm resubmit %s", job_id.c_str());
    std::printf("\n");
    return ok_status();
}

Status farm_resubmit(const std::string& farm_dir, const std::string& job_id) {
    ShotState s;
    if (Status st = shot_state(farm_dir, job_id, s); !st.ok()) return st;
    FarmJob render{"render", "", {}};
    std::string waits;  // chunks of earlier jobs still to finish
    for (int c = 0; c < s.shot.chunks(); ++c) {
        const JobState& js = s.chunks[static_cast<std::size_t>(c)];
        if (js.state == State::Failed) render.chunks.push_back(c);
        if (js.state == State::Pending || js.state == State::Running) waits += ":" + js.task;
    }
    const bool final_failed = s.has_final && s.final_job.state == State::Failed;
    if (render.chunks.empty() && !final_failed) {
        std::printf("nothing to resubmit: neither a chunk nor the final job of job %s failed\n", job_id.c_str());
        return ok_status();
    }
    // The old final job waits for a chunk that failed: it would never run.
    if (s.has_final && s.final_job.state == State::Pending) scancel(s.final_job.task);
    std::string after = waits;
    if (!render.chunks.empty()) {
        if (Status st = sbatch({"--array=" + chunk_list(render.chunks)}, s.shot.file("render.sh"), render.id);
            !st.ok())
            return st;
        if (Status st = record_job(s.shot, farm_dir, render); !st.ok()) return st;
        std::printf("render job %s: chunks %s again\n", render.id.c_str(), chunk_list(render.chunks).c_str());
        after = ":" + render.id + waits;
    }
    FarmJob final_job{"final", "", {}};
    const std::vector<std::string> options =
        after.empty() ? std::vector<std::string>{} : std::vector<std::string>{"--dependency=afterok" + after};
    if (Status st = sbatch(options, s.shot.file("final.sh"), final_job.id); !st.ok()) return st;
    if (Status st = record_job(s.shot, farm_dir, final_job); !st.ok()) return st;
    std::printf("final job %s\n", final_job.id.c_str());
    return ok_status();
}

Status farm_finish(const std::string& shot_folder) {
    FarmShot shot;
    if (Status s = FarmShot::load(shot_folder, shot); !s.ok()) return s;
    const FramePattern out(shot.out);
    std::vector<int> missing;
    for (int f = shot.frames.first; f <= shot.frames.last; ++f)
        if (!exists(out.at(f))) missing.push_back(f);
    if (!missing.empty())
        return failure(std::to_string(missing.size()) + " of " + std::to_string(shot.frames.count()) +
                       " frames missing, the first " + out.at(missing.front()));
    std::printf("all %d frames present: %s\n", shot.frames.count(), shot.out.c_str());
    if (shot.contact_sheet.empty()) return ok_status();
    // The frames read back into a buffer of the render's depth give the
    // buffers the render had (8-bit and 16-bit files hold them exactly).
    sparkhost::FrameBuffer buffer;
    buffer.resize(shot.width, shot.height, shot.depth > 8);
    InputClip frames("frame", shot.out);
    ContactSheet sheet(shot.thumb_width, shot.contact_every);
    for (int f = shot.frames.first; f <= shot.frames.last; ++f) {
        bool clipped = false;
        if (Status s = frames.load(f, buffer, clipped); !s.ok()) return s;
        sheet.add(f, buffer);
    }
    if (Status s = sheet.write(shot.contact_sheet); !s.ok()) return s;
    std::printf("contact sheet: %s\n", shot.contact_sheet.c_str());
    return ok_status();
}

}  // namespace tools
