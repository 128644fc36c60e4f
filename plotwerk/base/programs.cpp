#include "plotwerk/base/programs.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace plotwerk {

static std::map<pid_t, std::string> running; // and their names

[[noreturn]] static void refuse(const std::string &program, int error) {
    throw Refusal("can't start " + program + ": " + std::strerror(error));
}

namespace {

// A file in memory, which a program can read at its own pace.
class InputFile {
  public:
    explicit InputFile(const std::string &program, std::string_view bytes)
        : descriptor(memfd_create("input", MFD_CLOEXEC)) {
        if (descriptor < 0) refuse(program, errno);
        while (!bytes.empty()) {
            const ssize_t written = write(descriptor, bytes.data(), bytes.size());
            if (written < 0) {
                close(descriptor);
                refuse(program, errno);
            }
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        lseek(descriptor, 0, SEEK_SET);
    }
    ~InputFile() { close(descriptor); }
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;

    const int descriptor;
};

// Streams, and signals as a program expects them, instead of the server's.
class Surroundings {
  public:
    explicit Surroundings(int input) {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

        sigset_t signals;
        posix_spawnattr_init(&attributes);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        for (const int ignored : {SIGPIPE, SIGXFSZ}) sigaddset(&signals, ignored);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                  POSIX_SPAWN_SETPGROUP);
    }
    ~Surroundings() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    Surroundings(const Surroundings &) = delete;
    Surroundings &operator=(const Surroundings &) = delete;

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

} // namespace

void startProgram(std::vector<std::string> words, std::string_view input) {
    const std::string program = words.front();
    std::vector<char *> argv;
    argv.reserve(words.size() + 1);
    for (std::string &word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    const InputFile file(program, input);
    const Surroundings around(file.descriptor);
    pid_t child = 0;
    const int error = posix_spawnp(&child, program.c_str(), &around.actions, &around.attributes,
                                   argv.data(), environ);
    if (error != 0) refuse(program, error);
    running[child] = program;
}

void reapChildren() {
    int status = 0;
    for (pid_t child; (child = waitpid(-1, &status, WNOHANG)) > 0;) {
        const auto found = running.find(child);
        if (found == running.end()) continue;
        if (WIFSIGNALED(status)) {
            log(LogLevel::warning,
                found->second + " was ended by signal " + std::to_string(WTERMSIG(status)));
        } else if (WEXITSTATUS(status) != 0) {
            log(LogLevel::warning,
                found->second + " ended with status " + std::to_string(WEXITSTATUS(status)));
        }
        running.erase(found);
    }
}

} // namespace plotwerk
