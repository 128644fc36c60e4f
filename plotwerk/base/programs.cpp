#include "plotwerk/base/programs.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <spawn.h>
#include <sstream>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace plotwerk {

static std::map<pid_t, std::string> running; // and their names

[[noreturn]] static void refuse(const std::string &program, int error) {
    throw Refusal("can't start " + program + ": " + std::strerror(error));
}

namespace {

// A file in memory, which a program can read at its own pace.
class InputFile {
  public:
    explicit InputFile(const std::string &program)
        : descriptor(memfd_create("input", MFD_CLOEXEC)) {
        if (descriptor < 0) refuse(program, errno);
    }
    ~InputFile() { close(descriptor); }

    void fill(const std::string &program, const std::function<void(std::ostream &)> &write) const {
        std::ofstream stream("/proc/self/fd/" + std::to_string(descriptor), std::ios::binary);
        write(stream);
        stream.close();
        if (!stream) refuse(program, errno);
    }

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

// Why the program at that path can't be started; 0 if it can. Only the kernel knows that of every
// format and interpreter, so it is started, held before its first instruction, and killed there.
// Where nothing can be held so, it is taken for granted.
static int errorOfStarting(const std::string &path) {
    if (access(path.c_str(), X_OK) != 0) return errno;
    const pid_t child = fork();
    if (child < 0) return 0;
    if (child == 0) {
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(0);
        execl(path.c_str(), path.c_str(), nullptr);
        _exit(errno);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFSTOPPED(status)) return WIFEXITED(status) ? WEXITSTATUS(status) : 0;
    kill(child, SIGKILL);
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return 0;
}

void requireProgram(const std::string &program) {
    if (program.find('/') != std::string::npos) {
        if (const int error = errorOfStarting(program); error != 0) refuse(program, error);
        return;
    }
    const char *path = std::getenv("PATH");
    std::istringstream folders(path ? path : "/bin:/usr/bin");
    int last = ENOENT;
    for (std::string folder; std::getline(folders, folder, ':');) {
        const int error = errorOfStarting((folder.empty() ? "." : folder) + '/' + program);
        if (error == 0) return;
        if (error != ENOENT && error != ENOTDIR) last = error;
    }
    refuse(program, last);
}

void startProgram(std::vector<std::string> words,
                  const std::function<void(std::ostream &)> &writeInput) {
    const std::string program = words.front();
    std::map<pid_t, std::string> started{{0, program}}; // what may fail comes first
    std::vector<char *> argv;
    argv.reserve(words.size() + 1);
    for (std::string &word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    const InputFile file(program);
    if (writeInput) file.fill(program, writeInput);
    const Surroundings around(file.descriptor);
    pid_t child = 0;
    const int error = posix_spawnp(&child, program.c_str(), &around.actions, &around.attributes,
                                   argv.data(), environ);
    if (error != 0) refuse(program, error);
    auto entry = started.extract(0);
    entry.key() = child;
    running.insert(std::move(entry));
}

void reapChildren() {
    int status = 0;
    for (pid_t child; (child = waitpid(-1, &status, WNOHANG)) > 0;) {
        const auto found = running.find(child);
        if (found == running.end()) continue;
        if (status != 0) {
            logDone(LogLevel::warning, [&] {
                return found->second +
                       (WIFSIGNALED(status)
                            ? " was ended by signal " + std::to_string(WTERMSIG(status))
                            : " ended with status " + std::to_string(WEXITSTATUS(status)));
            });
        }
        running.erase(found);
    }
}

} // namespace plotwerk
