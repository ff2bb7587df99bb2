#include "tools/farm_shot.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace tools {

namespace fs = std::filesystem;

FrameRange FarmShot::chunk_frames(int index) const {
    FrameRange r;
    r.first = frames.first + index * chunk;
    r.last = std::min(frames.last, r.first + chunk - 1);
    return r;
}

Status FarmShot::save() const {
    std::ofstream f(file("shot.txt"));
    f << "out=" << out << "\nfirst=" << frames.first << "\nlast=" << frames.last << "\nshot_start=" << shot_start
      << "\nchunk=" << chunk << "\ncontact_sheet=" << contact_sheet << "\ncontact_every=" << contact_every
      << "\nthumb_width=" << thumb_width << "\nwidth=" << width << "\nheight=" << height << "\ndepth=" << depth
      << "\n";
    f.close();
    return f ? ok_status() : failure("cannot write " + file("shot.txt"));
}

Status FarmShot::load(const std::string& folder, FarmShot& shot) {
    shot.folder = folder;
    std::ifstream f(shot.file("shot.txt"));
    if (!f) return failure(shot.file("shot.txt") + ": missing; not a shot folder");
    std::map<std::string, std::string> v;
    for (std::string line; std::getline(f, line);) {
        const auto eq = line.find('=');
        if (eq != std::string::npos) v[line.substr(0, eq)] = line.substr(eq + 1);
    }
    auto number = [&](const char* key) { return std::atoi(v[key].c_str()); };
    shot.out = v["out"];
    shot.frames.first = number("first");
    shot.frames.last = number("last");
    shot.shot_start = number("shot_start");
    shot.chunk = std::max(1, number("chunk"));
    shot.contact_sheet = v["contact_sheet"];
    shot.contact_every = number("contact_every");
    shot.thumb_width = number("thumb_width");
    shot.width = number("width");
    shot.height = number("height");
    shot.depth = number("depth");
    return ok_status();
}

std::string chunk_list(const std::vector<int>& chunks) {
    std::string text;
    for (int c : chunks) text += (text.empty() ? "" : ",") + std::to_string(c);
    return text;
}

std::vector<int> parse_chunk_list(const std::string& text) {
    std::vector<int> chunks;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, ',');)
        if (!part.empty()) chunks.push_back(std::atoi(part.c_str()));
    return chunks;
}

Status read_jobs(const FarmShot& shot, std::vector<FarmJob>& jobs) {
    std::ifstream f(shot.file("jobs.txt"));
    if (!f) return failure(shot.file("jobs.txt") + ": missing");
    for (std::string line; std::getline(f, line);) {
        std::istringstream words(line);
        FarmJob job;
        std::string list;
        if (!(words >> job.kind >> job.id)) continue;
        words >> list;
        job.chunks = parse_chunk_list(list);
        jobs.push_back(job);
    }
    return ok_status();
}

Status record_job(const FarmShot& shot, const std::string& farm_dir, const FarmJob& job) {
    std::ofstream f(shot.file("jobs.txt"), std::ios::app);
    f << job.kind << ' ' << job.id << ' ' << chunk_list(job.chunks) << '\n';
    f.close();
    if (!f) return failure("cannot write " + shot.file("jobs.txt"));
    // A cluster that was set up again numbers its jobs from the start: the
    // newest shot owns the number.
    std::error_code ec;
    const fs::path link = fs::path(farm_dir) / "jobs" / job.id;
    fs::create_directories(link.parent_path(), ec);
    fs::remove(link, ec);
    fs::create_directory_symlink(shot.folder, link, ec);
    if (ec) return failure("cannot write " + link.string() + ": " + ec.message());
    return ok_status();
}

Status find_shot(const std::string& farm_dir, const std::string& job_id, FarmShot& shot) {
    const std::string link = farm_dir + "/jobs/" + job_id;
    std::error_code ec;
    const fs::path folder = fs::read_symlink(link, ec);
    if (ec || job_id.empty() || job_id.find('/') != std::string::npos)
        return usage_error("job " + job_id + ": not a job paneburst-farm submitted (nothing in " + farm_dir +
                           "/jobs; use --farm-dir)");
    return FarmShot::load(folder.string(), shot);
}

std::string default_farm_dir() {
    if (const char* dir = std::getenv("PANEBURST_FARM_DIR"); dir && *dir) return dir;
    const char* home = std::getenv("HOME");
    return std::string(home && *home ? home : ".") + "/.paneburst-farm";
}

}  // namespace tools
