#include "plotwerk/base/child.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/ending.h"
#include "plotwerk/base/refusal.h"

#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <new>
#include <poll.h>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <time.h>
#include <unistd.h>

namespace plotwerk {

// The address sanitizer reserves terabytes: no address space could be left to it.
#if defined(__SANITIZE_ADDRESS__)
static constexpr bool sanitized = true;
#elif defined(__has_feature)
static constexpr bool sanitized = __has_feature(address_sanitizer);
#else
static constexpr bool sanitized = false;
#endif

// How the child says that it had no memory left; anything else it says is the reason of a refusal.
static constexpr char noMemory = '\1';

static void limitResource(int resource, double amount) {
    const auto value = static_cast<rlim_t>(amount);
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0) return;
    if (limit.rlim_max != RLIM_INFINITY && limit.rlim_max < value) return; // has less already
    limit = {value, value};
    setrlimit(resource, &limit);
}

// The bytes of address space that this process has.
static double addressSpace() {
    std::ifstream file("/proc/self/statm");
    double pages = 0;
    file >> pages;
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE));
}

static void limitChild() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    limitResource(RLIMIT_CORE, 0);
    limitResource(RLIMIT_CPU, std::ceil(mostSeconds()));
    if (!sanitized) limitResource(RLIMIT_AS, addressSpace() + mostMemory());
}

static void say(int descriptor, const char *text, std::size_t length) {
    [[maybe_unused]] const ssize_t written = write(descriptor, text, length);
}

[[noreturn]] static void workInChild(const std::function<void()> &work, pid_t parent, int answer) {
    try {
        limitChild();
        if (getppid() != parent) _exit(1); // it ended before its death could be asked for
        work();
        _exit(0);
    } catch (const std::bad_alloc &) {
        say(answer, &noMemory, 1);
    } catch (const std::exception &exception) {
        say(answer, exception.what(), std::strlen(exception.what()));
    } catch (...) { // nothing of the child may go on as this process does
    }
    _exit(1);
}

// A fork copies the calling thread alone: what another one has locked stays locked in the child.
// Those that look for fonts end by themselves.
static void waitForOtherThreads() {
    for (int i = 0; i < 1000; ++i) {
        struct stat tasks {};
        if (stat("/proc/self/task", &tasks) != 0 || tasks.st_nlink <= 3) return; // ., .. and this
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

static double cpuSecondsOf(pid_t process) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0) return 0;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// What the child says until it ends. It is ended when it does nothing for as long as it may work,
// which no limit of its CPU time would do.
static std::string heardFrom(int descriptor, pid_t child) {
    constexpr int look = 100;                            // for signals, in ms
    const double mostIdle = mostSeconds() * 1000 / look; // looks in a row
    int idle = 0;
    double worked = 0;
    std::string heard;
    char part[4096];
    for (bool ended = false; !ended;) {
        pollfd waited{descriptor, POLLIN, 0};
        const int ready = poll(&waited, 1, look);
        if (ready == 0) {
            const double now = cpuSecondsOf(child);
            idle = now > worked ? 0 : idle + 1;
            worked = now;
            if (idle >= mostIdle || endIsAskedFor()) kill(child, SIGKILL);
        }
        if (ready != 1) continue;
        const ssize_t count = read(descriptor, part, sizeof part);
        if (count > 0) heard.append(part, static_cast<std::size_t>(count));
        ended = count == 0 || (count < 0 && errno != EINTR);
    }
    return heard;
}

static int statusOf(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

static bool forks = true;

void forkNoChildren() {
    forks = false;
}

void inChild(const std::function<void()> &work) {
    if (!forks) return work();
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw Refusal(std::string("can't start a process: ") + std::strerror(errno));
    waitForOtherThreads();
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) workInChild(work, parent, ends[1]);
    close(ends[1]);
    if (child < 0) {
        close(ends[0]);
        throw Refusal(std::string("can't start a process: ") + std::strerror(errno));
    }
    const std::string heard = heardFrom(ends[0], child);
    close(ends[0]);
    const int status = statusOf(child);

    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return;
    if (!heard.empty() && heard.front() != noMemory) throw Refusal(heard);
    if (endIsAskedFor()) throw Refusal("given up, since the program is to end");
    switch (WIFSIGNALED(status) ? WTERMSIG(status) : SIGABRT) {
    case SIGXCPU:
    case SIGKILL: throw Refusal("takes too long (limit seconds)");
    case SIGABRT: // libraries that can't say that there is no memory abort
    case SIGTRAP: throw Refusal("takes too much memory (limit memory)");
    default:
        throw Refusal("can't be done: its process was ended by signal " +
                      std::to_string(WTERMSIG(status)));
    }
}

} // namespace plotwerk
