#include "tests/support/process.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <stdexcept>
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

static void closePipeEnd(int &fd) {
    if (fd >= 0) close(fd);
    fd = -1;
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

ChildProcess::ChildProcess(std::vector<std::string> words) : command(std::move(words)) {
    std::vector<char *> argv;
    for (std::string &word : command) argv.push_back(word.data());
    argv.push_back(nullptr);

    int pipes[3][2];
    for (auto &ends : pipes) checked(pipe2(ends, O_CLOEXEC), "pipe");
    const int streams[3] = {pipes[0][0], pipes[1][1], pipes[2][1]};
    in = pipes[0][1];
    out = pipes[1][0];
    err = pipes[2][0];
    for (const int fd : {in, out, err}) checked(fcntl(fd, F_SETFL, O_NONBLOCK), "fcntl");

    signal(SIGPIPE, SIG_IGN); // a program may end before it has read its input
    id = checked(fork(), "fork");
    if (id == 0) becomeProgram(argv.data(), streams);
    for (const int fd : streams) close(fd);
}

ChildProcess::~ChildProcess() {
    if (id > 0) {
        kill(id, SIGKILL);
        waitpid(id, nullptr, 0);
    }
    for (int *fd : {&in, &out, &err}) closePipeEnd(*fd);
}

std::string ChildProcess::describe(const std::string &what) const {
    std::string words;
    for (const std::string &word : command) words += ' ' + word.substr(0, 60);
    return what + " of" + words + "; its stderr: " + pendingErr;
}

static void readInto(std::string &bytes, int &fd) {
    char block[65536];
    const ssize_t n = read(fd, block, sizeof block);
    if (n > 0) bytes.append(block, static_cast<size_t>(n));
    if (n == 0) closePipeEnd(fd);
}

// Moves bytes on all three streams, so that neither side ever blocks the other.
void ChildProcess::pumpUntil(const std::string &what, const std::function<bool()> &done) {
    const auto end = Clock::now() + deadline;
    while (!done()) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        pollfd streams[3] = {
            {pendingIn.empty() ? -1 : in, POLLOUT, 0}, {out, POLLIN, 0}, {err, POLLIN, 0}};
        if (left.count() <= 0 || poll(streams, 3, static_cast<int>(left.count())) == 0) {
            throw std::runtime_error("waited in vain for " + describe(what));
        }
        if (streams[0].revents) {
            const ssize_t n = ::write(in, pendingIn.data(), pendingIn.size());
            if (n > 0) pendingIn.erase(0, static_cast<size_t>(n));
            if (n < 0 && errno == EPIPE) closePipeEnd(in);
        }
        if (streams[1].revents) readInto(pendingOut, out);
        if (streams[2].revents) readInto(pendingErr, err);
    }
}

void ChildProcess::write(std::string_view bytes) {
    pendingIn += bytes;
    pumpUntil("the input", [&] { return pendingIn.empty() || in < 0; });
    pendingIn.clear();
}

std::string ChildProcess::readLine() {
    pumpUntil("a line", [&] { return pendingOut.find('\n') != std::string::npos || out < 0; });
    const size_t length = std::min(pendingOut.find('\n'), pendingOut.size() - 1) + 1;
    std::string line = pendingOut.substr(0, length);
    pendingOut.erase(0, length);
    return line;
}

std::string ChildProcess::procStatus(const std::string &field) const {
    std::ifstream status("/proc/" + std::to_string(id) + "/status");
    for (std::string line; std::getline(status, line);) {
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
    closePipeEnd(in);
    pumpUntil("the end", [&] { return out < 0 && err < 0; });

    int status = 0;
    waitUntil(describe("the end"), [&] { return waitpid(id, &status, WNOHANG) == id; });
    id = -1;
    const bool exited = WIFEXITED(status);
    return {pendingOut, pendingErr, exited ? WEXITSTATUS(status) : -1,
            exited ? 0 : WTERMSIG(status)};
}

Output runProgram(const std::vector<std::string> &words, std::string_view input) {
    return ChildProcess(words).finish(input);
}
