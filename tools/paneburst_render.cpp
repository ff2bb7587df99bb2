// paneburst-render: renders the Paneburst effect on image sequences (or the
// built-in test card) from the command line, through the stand-in host that
// loads the plug-in file exactly as the compositing host does.
#include <cstdio>

#include "tools/options.h"
#include "tools/render_job.h"

int main(int argc, char** argv) {
    tools::Options options;
    bool exit_now = false;
    tools::Status status = tools::parse_options(argc, argv, options, exit_now);
    if (status.ok() && !exit_now) status = tools::run_render(options);
    if (!status.ok()) std::fprintf(stderr, "paneburst-render: %s\n", status.message.c_str());
    return status.code;
}
