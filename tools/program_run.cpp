#include "tools/program_run.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tools {

std::string ProgramRun::last_line() const {
    for (const std::string* text : {&err, &out}) {
        std::size_t end = text->find_last_not_of(" \n");
        if (end == std::string::npos) continue;
        const std::size_t start = text->rfind('\n', end);
        return text->substr(start == std::string::npos ? 0 : start + 1, end - (start == std::string::npos ? 0 : start + 1) + 1);
    }
    return {};
}

ProgramRun run_program(const std::vector<std::string>& argv) {
    ProgramRun run;
    int out_pipe[2], err_pipe[2];
    if (argv.empty() || pipe(out_pipe) != 0) return run;
    if (pipe(err_pipe) != 0) {
        close(out_pipe[0]);
        close(out_pipe[1]);
        return run;
    }
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(out_pipe[1], STDOUT_FILENO);
        dup2(err_pipe[1], STDERR_FILENO);
        for (int fd : {out_pipe[0], out_pipe[1], err_pipe[0], err_pipe[1]}) close(fd);
        execvp(args[0], args.data());
        _exit(127);
    }
    close(out_pipe[1]);
    close(err_pipe[1]);
    // Both pipes are drained together, so a program filling one cannot block.
    pollfd fds[2] = {{out_pipe[0], POLLIN, 0}, {err_pipe[0], POLLIN, 0}};
    std::string* texts[2] = {&run.out, &run.err};
    int open_pipes = pid > 0 ? 2 : 0;
    while (open_pipes > 0) {
        if (poll(fds, 2, -1) < 0) break;
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
            char buffer[4096];
            const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0) {
                texts[i]->append(buffer, static_cast<std::size_t>(n));
            } else {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open_pipes;
            }
        }
    }
    for (const pollfd& p : fds)
        if (p.fd >= 0) close(p.fd);
    int raw = 0;
    if (pid > 0 && waitpid(pid, &raw, 0) == pid) run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return run;
}

}  // namespace tools
