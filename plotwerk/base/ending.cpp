#include "plotwerk/base/ending.h"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <string_view>
#include <sys/time.h>
#include <unistd.h>

namespace plotwerk {

bool endIsAskedFor() {
    sigset_t pending;
    return sigpending(&pending) == 0 &&
           (sigismember(&pending, SIGTERM) == 1 || sigismember(&pending, SIGINT) == 1);
}

// Signal handlers: they may call little, and not log().
static void endIfStillAskedFor(int) {
    static constexpr std::string_view line =
        "plotwerkd: warning: ended in the middle of a message\n";
    const int before = errno;
    if (endIsAskedFor()) {
        pollfd ready{STDERR_FILENO, POLLOUT, 0};
        if (poll(&ready, 1, 0) == 1) {
            [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
        }
        _exit(0);
    }
    errno = before;
}

// Every 10 ms of CPU time, which only a process at work has. From then on elapsed time counts:
// where other processes work, 10 ms of CPU time may take long.
static void look(int) {
    constexpr itimerval patience{{0, 0}, {0, 200'000}};
    const int before = errno;
    itimerval left{};
    if (endIsAskedFor() && getitimer(ITIMER_REAL, &left) == 0 && !timerisset(&left.it_value))
        setitimer(ITIMER_REAL, &patience, nullptr);
    errno = before;
}

static void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

void endInTheMiddleOfWork() {
    handle(SIGALRM, endIfStillAskedFor);
    handle(SIGPROF, look);
    constexpr timeval tick{0, 10'000};
    const itimerval timer{tick, tick};
    setitimer(ITIMER_PROF, &timer, nullptr);
}

} // namespace plotwerk
