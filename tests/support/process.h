// process.h - programs run by a test: bytes in, bytes out, how they ended. Nothing waits for ever.
#ifndef PLW_TESTS_SUPPORT_PROCESS_H
#define PLW_TESTS_SUPPORT_PROCESS_H

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

// How long a test waits for anything at all: ample for a sanitized build on a busy machine.
constexpr std::chrono::seconds deadline{60};

// Returns as soon as the condition holds. Throws std::runtime_error, which names what was waited
// for, when it does not within the deadline.
void waitUntil(const std::string &what, const std::function<bool()> &condition);

// What has been written to a file since `taken`, which moves on.
std::string newBytes(int file, off_t &taken);

// What a program left behind.
struct Output {
    std::string out;
    std::string err;
    int status; // exit status; -1 when a signal ended it
    int signal; // that signal, or 0
};

// A running program: a pipe is its stdin, memory takes what it writes. It inherits the environment,
// dumps no core, and is killed when this object or the test program ends. Every wait throws
// std::runtime_error at the deadline.
class ChildProcess {
  public:
    // The words are the program, looked up on PATH, and its arguments.
    explicit ChildProcess(std::vector<std::string> words);
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    pid_t pid() const { return id; } // -1 once it has finished

    // Returns when the program's stdin has taken all bytes; they are dropped if it has closed it.
    void write(std::string_view bytes);

    // The next line of stdout with its line end; at the end of the output what is left, or "".
    std::string readLine();

    // A field of /proc/PID/status without its name, e.g. "1" for "Threads".
    std::string procStatus(const std::string &field) const;

    void sendSignal(int signal) const;

    // Writes the bytes, closes stdin and waits for the end. Lines read before are left out.
    Output finish(std::string_view input = "");

  private:
    bool hasEnded();

    std::string command;
    pid_t id = -1;
    int status = 0;         // as waitpid has it
    int in = -1;            // our end of a pipe
    int out = -1, err = -1; // files in memory
    off_t taken = 0;        // of out
    std::string unread;     // of what was taken
};

// Runs a program to its end.
Output runProgram(const std::vector<std::string> &words, std::string_view input = "");

#endif
