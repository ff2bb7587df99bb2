#include "tools/farm_submit.h"

#include <CLI/CLI.hpp>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "sparkhost/plugin_path.h"
#include "tools/farm_shot.h"
#include "tools/farm_slurm.h"
#include "tools/options.h"
#include "tools/program_run.h"
#include "tools/render_job.h"

namespace tools {

namespace fs = std::filesystem;

namespace {

struct FarmOptions {
    int chunk = 10;
    std::string partition, time, mem, farm_dir;
    int cpus_per_task = 0;
    bool dry_run = false;
    // The render's own options as given, paths made absolute, minus those
    // the farm sets per task.
    std::vector<std::string> render_args;
};

// Options each task or the final job gets from the farm, not from the user.
const std::set<std::string> kSetPerTask = {"--frames",       "--shot-start",  "--overwrite", "--contact-sheet",
                                           "--contact-every", "--thumb-width", "--threads",   "--bands",
                                           "--plugin",        "--help"};
// Options naming files: the farm's nodes see them by absolute path.
const std::set<std::string> kPaths = {"--front", "--back", "--matte2d", "--matte3d", "--setup", "--keys", "--out"};

std::string absolute(const std::string& path) {
    return path.empty() ? path : fs::absolute(path).lexically_normal().string();
}

std::vector<std::string> forwarded_arguments(const CLI::App& app) {
    std::vector<std::string> args;
    for (const CLI::Option* opt : app.get_options()) {
        const std::string name = opt->get_name();
        if (opt->count() == 0 || opt->get_group() == "Farm" || kSetPerTask.count(name)) continue;
        if (opt->get_type_size() == 0) {  // a flag
            args.push_back(name);
            continue;
        }
        for (const std::string& value : opt->results()) {
            args.push_back(name);
            args.push_back(kPaths.count(name) ? absolute(value) : value);
        }
    }
    return args;
}

void add_farm_options(CLI::App& app, FarmOptions& f) {
    app.name("paneburst-farm submit");
    app.description(
        "paneburst-farm submit: renders a shot on a Slurm farm as an array job, one task per chunk of frames,\n"
        "and a final job that checks every frame and writes the contact sheet. Takes paneburst-render's options.");
    app.add_option("--chunk", f.chunk, "frames per task (default 10)")->group("Farm");
    app.add_option("--partition", f.partition, "Slurm partition (default: the cluster's)")->group("Farm");
    app.add_option("--time", f.time, "time limit of each task, as sbatch takes it (e.g. 2:00:00)")->group("Farm");
    app.add_option("--mem", f.mem, "memory of each task, as sbatch takes it (e.g. 8G)")->group("Farm");
    app.add_option("--cpus-per-task", f.cpus_per_task, "CPUs of each task, its render threads (default 1)")
        ->check(CLI::Range(1, 4096))
        ->group("Farm");
    app.add_option("--farm-dir", f.farm_dir,
                   "shared folder for job scripts, logs and states (default $PANEBURST_FARM_DIR or ~/.paneburst-farm)")
        ->group("Farm");
    app.add_flag("--dry-run", f.dry_run, "print the job scripts instead of submitting them")->group("Farm");
    app.final_callback([&app, &f] { f.render_args = forwarded_arguments(app); });
}

std::string program_folder() {
    char exe[4096];
    const ssize_t n = readlink("/proc/self/exe", exe, sizeof exe - 1);
    const std::string path = n > 0 ? std::string(exe, static_cast<std::size_t>(n)) : std::string("./x");
    return path.substr(0, path.rfind('/'));
}

bool is_file(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

// Every input frame of the shot is there (the header of the first is read
// by the format probe); the setup and key files too.
Status check_inputs(const Options& o) {
    const std::pair<const char*, const std::string*> clips[] = {
        {"--front", &o.front}, {"--back", &o.back}, {"--matte2d", &o.matte_2d}, {"--matte3d", &o.matte_3d}};
    for (const auto& [name, pattern_text] : clips) {
        if (pattern_text->empty()) continue;
        const FramePattern pattern(*pattern_text);
        const int last = pattern.is_sequence() ? o.frames.last : o.frames.first;
        for (int f = o.frames.first; f <= last; ++f)
            if (!is_file(pattern.at(f)))
                return usage_error(std::string(name) + " " + pattern.at(f) + ": missing" +
                                   (pattern.is_sequence() ? " (frame " + std::to_string(f) + "; the shot needs frames " +
                                                                std::to_string(o.frames.first) + "-" +
                                                                std::to_string(o.frames.last) + ")"
                                                          : std::string()));
    }
    for (const auto& [name, path] : {std::pair{"--setup", &o.setup}, std::pair{"--keys", &o.keys}})
        if (!path->empty() && (!is_file(*path) || access(path->c_str(), R_OK) != 0))
            return usage_error(std::string(name) + " " + *path + ": missing or unreadable file");
    return ok_status();
}

// The controls, preset, setup and key file as one task would apply them,
// checked by the renderer itself without rendering.
Status check_controls(const std::string& render, const std::string& plugin, const std::vector<std::string>& args) {
    std::vector<std::string> argv{render};
    argv.insert(argv.end(), args.begin(), args.end());
    argv.insert(argv.end(), {"--plugin", plugin, "--list-controls", "--quiet"});
    const ProgramRun run = run_program(argv);
    if (run.status == 0) return ok_status();
    std::string why = run.last_line();
    if (why.rfind("paneburst-render: ", 0) == 0) why = why.substr(18);
    return usage_error(why.empty() ? render + " failed to start" : why);
}

// Quoted for the shell, one option with its value a line.
std::string join_quoted(const std::vector<std::string>& args) {
    std::string text;
    for (const std::string& a : args) text += (a.rfind("--", 0) == 0 ? " \\\n    " : " ") + shell_quote(a);
    return text;
}

struct Scripts {
    std::string render, final;
};

Scripts job_scripts(const FarmShot& shot, const FarmOptions& f, const std::string& render, const std::string& plugin,
                    const std::string& farm_exe, const std::string& name, int bands) {
    std::ostringstream resources;
    if (!f.partition.empty()) resources << "#SBATCH --partition=" << f.partition << "\n";
    if (!f.time.empty()) resources << "#SBATCH --time=" << f.time << "\n";
    if (!f.mem.empty()) resources << "#SBATCH --mem=" << f.mem << "\n";
    const std::string head = "#!/bin/bash\n# Written by paneburst-farm for " + shot.out + ", frames " +
                             std::to_string(shot.frames.first) + "-" + std::to_string(shot.frames.last) + ".\n";
    Scripts s;
    std::ostringstream r;
    r << head << "# Array task i renders chunk i: " << shot.chunks() << " chunks of " << shot.chunk << " frames.\n"
      << "#SBATCH --job-name=" << name << "\n#SBATCH --array=0-" << shot.chunks() - 1 << "\n#SBATCH --output="
      << shot.file("logs/render-%A_%a.log") << "\n#SBATCH --requeue\n"
      << resources.str();
    if (f.cpus_per_task) r << "#SBATCH --cpus-per-task=" << f.cpus_per_task << "\n";
    r << "chunk=$SLURM_ARRAY_TASK_ID\n"
      << "first=$((" << shot.frames.first << " + chunk * " << shot.chunk << "))\n"
      << "last=$((first + " << shot.chunk - 1 << "))\n"
      << "[ \"$last\" -le " << shot.frames.last << " ] || last=" << shot.frames.last << "\n"
      << "threads=${SLURM_CPUS_PER_TASK:-${SLURM_CPUS_ON_NODE:-1}}\n"
      << "echo \"paneburst-farm: chunk $chunk, frames $first-$last, on $(hostname -s) with $threads threads\"\n"
      // --overwrite: a requeued or resubmitted task redoes its frames.
      << recorded_command(shot.file("chunks/$chunk"), "${SLURM_ARRAY_JOB_ID}_$chunk",
                          shell_quote(render) + join_quoted(f.render_args) + join_quoted({"--plugin", plugin}) +
                              " \\\n    --frames \"$first-$last\" --shot-start " + std::to_string(shot.shot_start) +
                              " --bands " + std::to_string(bands) + " --threads \"$threads\" --overwrite");
    s.render = r.str();
    std::ostringstream fin;
    fin << head << "# Runs after every chunk succeeded: checks every frame, writes the contact sheet.\n"
        << "#SBATCH --job-name=" << name << "-final\n#SBATCH --output=" << shot.file("logs/final-%j.log") << "\n"
        << resources.str()
        << recorded_command(shot.file("final"), "$SLURM_JOB_ID",
                            shell_quote(farm_exe) + " finish " + shell_quote(shot.folder));
    s.final = fin.str();
    return s;
}

Status write_text(const std::string& path, const std::string& text) {
    std::ofstream f(path);
    f << text;
    f.close();
    return f ? ok_status() : failure("cannot write " + path);
}

// Nothing is submitted unless all of this holds; every refusal is a usage error.
Status check_submission(Options& o, FarmOptions& f, FarmShot& shot, std::string& render, std::string& plugin) {
    if (f.chunk < 1) return usage_error("--chunk " + std::to_string(f.chunk) + ": a chunk needs at least one frame");
    if (o.out.empty()) return usage_error("give --out: the farm writes the frames to files");
    if (o.list_controls || !o.save_setup.empty())
        return usage_error("--list-controls and --save-setup are for paneburst-render, not for the farm");
    for (std::string* path : {&o.front, &o.back, &o.matte_2d, &o.matte_3d, &o.setup, &o.keys, &o.out,
                              &o.contact_sheet, &o.plugin, &f.farm_dir})
        *path = absolute(*path);
    render = program_folder() + "/paneburst-render";
    if (access(render.c_str(), X_OK) != 0) return usage_error(render + ": missing; paneburst-farm runs it on the farm");
    plugin = absolute(o.plugin.empty() ? sparkhost::default_plugin_path() : o.plugin);
    if (!is_file(plugin)) return usage_error("plug-in file " + plugin + ": missing");
    if (Status s = check_inputs(o); !s.ok()) return s;
    if (Status s = probe_frame_format(o, shot.width, shot.height, shot.depth); !s.ok()) return usage_error(s.message);
    if (Status s = check_controls(render, plugin, f.render_args); !s.ok()) return s;
    if (!f.dry_run)
        if (Status s = check_outputs(o); !s.ok()) return usage_error(s.message);
    shot.out = o.out;
    shot.frames = o.frames;
    shot.shot_start = o.shot_start >= 0 ? o.shot_start : o.frames.first;
    shot.chunk = f.chunk;
    shot.contact_sheet = o.contact_sheet;
    shot.contact_every = o.contact_every;
    shot.thumb_width = o.thumb_width;
    return ok_status();
}

// The shot folder, named after the output: shots/<name>-XXXXXX.
Status make_shot_folder(const std::string& farm_dir, const std::string& name, FarmShot& shot) {
    std::error_code ec;
    fs::create_directories(farm_dir + "/shots", ec);
    std::string folder = farm_dir + "/shots/" + name + "-XXXXXX";
    if (ec || !mkdtemp(folder.data())) return usage_error("cannot create a shot folder in " + farm_dir + "/shots");
    shot.folder = folder;
    chmod(folder.c_str(), 0755);
    fs::create_directories(shot.file("logs"), ec);
    fs::create_directories(shot.file("chunks"), ec);
    if (ec) return usage_error("cannot create " + shot.file("logs") + ": " + ec.message());
    return ok_status();
}

}  // namespace

std::string shell_quote(const std::string& text) {
    std::string q = "'";
    for (char c : text) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

std::string recorded_command(const std::string& state_file, const std::string& task, const std::string& command) {
    const std::string state = "\"" + state_file + "\"";
    // Cancelling a job signals every process of it: the program ends its
    // work cleanly (a render removes its partial frame), then its status
    // is recorded here. With a trap set, bash waits for the program.
    return "trap 'echo \"paneburst-farm: cancelled\"' TERM\n"
           "echo \"running " + task + " $(hostname -s)\" >" + state + "\n" + command +
           "\nstatus=$?\n"
           "if [ \"$status\" -eq 0 ]; then echo \"done " + task + "\" >" + state +
           "; else echo \"failed " + task + " $status\" >" + state + "; fi\n"
           "exit \"$status\"\n";
}

Status farm_submit(int argc, char** argv) {
    Options o;
    FarmOptions f;
    bool exit_now = false;
    if (Status s = parse_options(argc, argv, o, exit_now, [&f](CLI::App& app) { add_farm_options(app, f); });
        !s.ok() || exit_now)
        return s;
    if (f.farm_dir.empty()) f.farm_dir = default_farm_dir();
    FarmShot shot;
    std::string render, plugin;
    if (Status s = check_submission(o, f, shot, render, plugin); !s.ok()) return s;

    std::string name = fs::path(o.out).filename().string();
    name = name.substr(0, name.find_first_of(".%#"));
    if (name.empty()) name = "shot";
    if (f.dry_run)
        shot.folder = f.farm_dir + "/shots/" + name + "-XXXXXX";
    else if (Status s = make_shot_folder(f.farm_dir, name, shot); !s.ok())
        return s;
    const Scripts scripts =
        job_scripts(shot, f, render, plugin, program_folder() + "/paneburst-farm", "paneburst-" + name, o.bands);
    if (f.dry_run) {
        std::printf("# render job: sbatch %s\n%s\n# final job: sbatch --dependency=afterok:<render job> %s\n%s",
                    shot.file("render.sh").c_str(), scripts.render.c_str(), shot.file("final.sh").c_str(),
                    scripts.final.c_str());
        return ok_status();
    }
    for (Status s : {shot.save(), write_text(shot.file("render.sh"), scripts.render),
                     write_text(shot.file("final.sh"), scripts.final)})
        if (!s.ok()) return s;

    FarmJob render_job{"render", "", {}};
    for (int i = 0; i < shot.chunks(); ++i) render_job.chunks.push_back(i);
    // Slurm refusing the job (a partition, time or memory it does not
    // offer) is refused input too: nothing was submitted.
    if (Status s = sbatch({}, shot.file("render.sh"), render_job.id); !s.ok()) return usage_error(s.message);
    FarmJob final_job{"final", "", {}};
    if (Status s = sbatch({"--dependency=afterok:" + render_job.id}, shot.file("final.sh"), final_job.id); !s.ok()) {
        scancel(render_job.id);
        return failure("the final job was refused, render job " + render_job.id + " cancelled: " + s.message);
    }
    for (const FarmJob& job : {render_job, final_job})
        if (Status s = record_job(shot, f.farm_dir, job); !s.ok()) return s;
    std::printf("render job %s: frames %d-%d in %d chunks of %d\nfinal job %s: checks the frames%s\n",
                render_job.id.c_str(), shot.frames.first, shot.frames.last, shot.chunks(), shot.chunk,
                final_job.id.c_str(), shot.contact_sheet.empty() ? "" : " and writes the contact sheet");
    std::printf("follow it with: paneburst-farm status %s\n", render_job.id.c_str());
    return ok_status();
}

}  // namespace tools
