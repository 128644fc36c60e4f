#include "tests/support/process.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

using Clock = std::chrono::steady_clock;

static constexpr int pollPause = 1; // ms between two looks at a condition

void waitUntil(const std::string &what, const std::function<bool()> &condition) {
    const auto end = Clock::now() + deadline;
    while (!condition()) {
        if (Clock::now() > end) throw std::runtime_error("waited in vain for " + what);
        poll(nullptr, 0, pollPause);
    }
}

static int checked(int result, const char *what) {
    if (result < 0) throw std::system_error(errno, std::generic_category(), what);
    return result;
}

std::string newBytes(int file, off_t &taken) {
    std::string bytes;
    char block[65536];
    for (ssize_t n; (n = pread(file, block, sizeof block, taken)) > 0; taken += n)
        bytes.append(block, static_cast<std::size_t>(n));
    return bytes;
}

// Between fork and exec: only what is safe there.
[[noreturn]] static void becomeProgram(char *const *words, const int *streams) {
    for (int i = 0; i < 3; ++i) dup2(streams[i], i);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    constexpr rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    signal(SIGPIPE, SIG_DFL);
    execvp(words[0], words);
    _exit(127);
}

ChildProcess::ChildProcess(std::vector<std::string> words) {
    std::vector<char *> argv;
    for (std::string &word : words) {
        argv.push_back(word.data());
        command += ' ' + word.substr(0, 60);
    }
    argv.push_back(nullptr);

    int ends[2];
    checked(pipe2(ends, O_CLOEXEC), "pipe");
    in = ends[1];
    checked(fcntl(in, F_SETFL, O_NONBLOCK), "fcntl");
    for (int *file : {&out, &err}) *file = checked(memfd_create("output", MFD_CLOEXEC), "memfd");

    signal(SIGPIPE, SIG_IGN); // a program may end before it has read its input
    const int streams[3] = {ends[0], out, err};
    id = checked(fork(), "fork");
    if (id == 0) becomeProgram(argv.data(), streams);
    close(ends[0]);
}

ChildProcess::~ChildProcess() {
    if (!hasEnded()) {
        kill(id, SIGKILL);
        waitpid(id, nullptr, 0);
    }
    for (const int fd : {in, out, err})
        if (fd >= 0) close(fd);
}

bool ChildProcess::hasEnded() {
    if (id > 0 && waitpid(id, &status, WNOHANG) == id) id = -1;
    return id < 0;
}

void ChildProcess::write(std::string_view bytes) {
    waitUntil("the input of" + command, [&] {
        const ssize_t n = ::write(in, bytes.data(), bytes.size());
        if (n > 0) bytes.remove_prefix(static_cast<std::size_t>(n));
        return bytes.empty() || (n < 0 && errno != EAGAIN);
    });
}

std::string ChildProcess::readLine() {
    waitUntil("a line of" + command, [&] {
        const bool ended = hasEnded(); // asked first: afterwards nothing more comes
        unread += newBytes(out, taken);
        return ended || unread.find('\n') != std::string::npos;
    });
    std::string line = unread.substr(0, unread.find('\n'));
    if (line.size() < unread.size()) line += '\n';
    unread.erase(0, line.size());
    return line;
}

std::string ChildProcess::procStatus(const std::string &field) const {
    std::ifstream fields("/proc/" + std::to_string(id) + "/status");
    for (std::string line; std::getline(fields, line);) {
        if (!line.starts_with(field + ':')) continue;
        return line.substr(line.find_first_not_of(" \t", field.size() + 1));
    }
    throw std::runtime_error("no " + field + " in /proc/PID/status");
}

void ChildProcess::sendSignal(int signal) const {
    if (id < 0) throw std::logic_error("a signal for a finished program");
    checked(kill(id, signal), "kill");
}

Output ChildProcess::finish(std::string_view input) {
    write(input);
    close(in);
    in = -1;
    waitUntil("the end of" + command, [&] { return hasEnded(); });
    const bool exited = WIFEXITED(status);
    off_t none = 0;
    return {unread + newBytes(out, taken), newBytes(err, none), exited ? WEXITSTATUS(status) : -1,
            exited ? 0 : WTERMSIG(status)};
}

Output runProgram(const std::vector<std::string> &words, std::string_view input) {
    return ChildProcess(words).finish(input);
}
