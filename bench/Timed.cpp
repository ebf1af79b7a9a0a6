// Runs a command and says what it took: timed SECONDS RESULT COMMAND [ARGUMENT...]
// RESULT gets one line: exit status (-1 when the command was cut off after SECONDS, 128 and the number of the signal
// when it died of one), seconds, seconds of processor time and peak memory in KiB. Processes of the command count as
// well: their processor time is added, of their memory the largest counts.
//
// It is a program of its own, and a small one: Linux counts the memory of a process from before it turned into the
// command, so a large program that measures small ones would find its own size.

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

volatile pid_t commandGroup = 0;
volatile std::sig_atomic_t isCut = 0;

void cut(int) {
    isCut = 1;
    kill(-commandGroup, SIGKILL);
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

int exitStatus(int status) {
    if (isCut != 0) {
        return -1;
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

[[noreturn]] void becomeCommand(char** command) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    execvp(command[0], command);
    std::perror(command[0]);
    std::_Exit(127);
}

}  // namespace

int main(int argc, char** argv) {
    const unsigned limit = argc > 3 ? static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10)) : 0;
    std::FILE* const result = limit > 0 ? std::fopen(argv[2], "we") : nullptr;
    if (result == nullptr) {
        std::fputs("usage: timed SECONDS RESULT COMMAND [ARGUMENT...]\n", stderr);
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        becomeCommand(argv + 3);
    }
    setpgid(child, child);
    commandGroup = child;
    std::signal(SIGALRM, cut);
    alarm(limit);
    int status = 0;
    rusage usage{};
    while (wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    std::fprintf(result, "%d %.6f %.6f %ld\n", exitStatus(status), passed.count(),
                 seconds(usage.ru_utime) + seconds(usage.ru_stime), usage.ru_maxrss);
    return std::fclose(result) == 0 ? 0 : 1;
}
