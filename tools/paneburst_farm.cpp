// paneburst-farm: renders a shot on a Slurm farm as chunks that give the same
// frames as one paneburst-render run, and follows it.
//
//   paneburst-farm submit [paneburst-render options] --chunk N [--partition P --time T --mem M ...]
//   paneburst-farm status JOBID       paneburst-farm resubmit JOBID
#include <CLI/CLI.hpp>
#include <cstdio>

#include "tools/farm_shot.h"
#include "tools/farm_status.h"
#include "tools/farm_submit.h"

namespace {

const char* const kUsage =
    "usage: paneburst-farm submit [paneburst-render options] [--chunk N] [--partition P] [--time T] [--mem M]\n"
    "                             [--cpus-per-task N] [--farm-dir DIR] [--dry-run]\n"
    "       paneburst-farm status JOBID [--farm-dir DIR]\n"
    "       paneburst-farm resubmit JOBID [--farm-dir DIR]\n"
    "       paneburst-farm finish SHOT_FOLDER   (run by the final job)\n"
    "paneburst-farm submit --help lists every option.\n";

// status and resubmit: a job id and the farm folder.
tools::Status follow(int argc, char** argv) {
    const std::string command = argv[0];
    CLI::App app{"paneburst-farm " + command + ": " +
                 (command == "status" ? "the state of every chunk of a submitted shot"
                                      : "submits the failed chunks of a shot again")};
    std::string job, farm_dir = tools::default_farm_dir();
    app.add_option("JOBID", job, "the render job id paneburst-farm submit printed")->required();
    app.add_option("--farm-dir", farm_dir, "the farm folder given to submit");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
        return tools::ok_status();
    } catch (const CLI::ParseError& e) {
        return tools::usage_error(std::string(e.what()) + " (see --help)");
    }
    return command == "status" ? tools::farm_status(farm_dir, job) : tools::farm_resubmit(farm_dir, job);
}

}  // namespace

int main(int argc, char** argv) {
    const std::string command = argc > 1 ? argv[1] : "";
    tools::Status status;
    if (command == "submit")
        status = tools::farm_submit(argc - 1, argv + 1);
    else if (command == "status" || command == "resubmit")
        status = follow(argc - 1, argv + 1);
    else if (command == "finish" && argc == 3)
        status = tools::farm_finish(argv[2]);
    else if (command == "--help" || command == "-h")
        std::fputs(kUsage, stdout);
    else {
        std::fputs(kUsage, stderr);
        status = tools::usage_error(command.empty() ? "no command" : "unknown command " + command);
    }
    if (!status.ok()) std::fprintf(stderr, "paneburst-farm: %s\n", status.message.c_str());
    return status.code;
}
