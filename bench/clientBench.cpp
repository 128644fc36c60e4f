// clientBench: what callPlw costs beside its peers, against the same plotwerkd in the same run.
//
// - one command as a whole process, beside the same message sent by busctl (package systemd)
// - line mode through a pipe with each answer awaited, and 100,000 lines fed at once, beside a bare
//   loop over libsystemd's sd-bus that makes the same calls
// - that loop behind the same pipes (this program with the argument "lines"): what a client would
//   cost that did nothing else
//
// Pairs of runs alternate, and each ratio is the median over its pairs.

#include "protocol/PlotwerkControlNames.h"
#include "tests/support/privateBus.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

static const char *const name = plotwerkControl::busName;
static const char *const path = plotwerkControl::objectPath;
static const char document[] = "Untitled";
static const std::string yAtX = "-x YatX -a 1.5\n";

static void check(int result, const char *what) {
    if (result < 0) throw std::runtime_error(std::string("clientBench: ") + what + " failed");
}

static double secondsOf(const std::function<void()> &work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

static double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Times both in turn and prints the medians and the median ratio.
static void compare(const char *what, int pairs, double operations, const char *peerName,
                    const std::function<void()> &ours, const std::function<void()> &peer) {
    std::vector<double> oursTimes, peerTimes, ratios;
    for (int i = 0; i < pairs; ++i) {
        oursTimes.push_back(secondsOf(ours));
        peerTimes.push_back(secondsOf(peer));
        ratios.push_back(oursTimes.back() / peerTimes.back());
    }
    std::printf("%-34s callPlw %9.1f us   %s %9.1f us   ratio %.3f\n", what,
                median(oursTimes) / operations * 1e6, peerName,
                median(peerTimes) / operations * 1e6, median(ratios));
    std::fflush(stdout);
}

// A program that answers lines, with both its pipes in our hands.
class LineMode {
  public:
    explicit LineMode(std::vector<const char *> words) {
        int input[2], output[2];
        check(pipe2(input, O_CLOEXEC), "pipe2");
        check(pipe2(output, O_CLOEXEC), "pipe2");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        words.push_back(nullptr);
        check(-posix_spawn(&id, words[0], &actions, nullptr, const_cast<char **>(words.data()),
                           environ),
              "posix_spawn");
        posix_spawn_file_actions_destroy(&actions);
        ::close(input[0]);
        ::close(output[1]);
        in = input[1];
        out = output[0];
    }
    ~LineMode() {
        if (in >= 0) ::close(in);
        ::close(out);
        waitpid(id, nullptr, 0);
    }
    LineMode(const LineMode &) = delete;
    LineMode &operator=(const LineMode &) = delete;

    void roundTrip() const {
        char answer[64];
        check(static_cast<int>(::write(in, yAtX.data(), yAtX.size())), "write");
        check(static_cast<int>(::read(out, answer, sizeof answer)), "read");
    }

    // Feeds all lines from a file of them, as fast as they are taken, and counts the answers.
    void feed(const std::string &lines, int count) {
        const pid_t feeder = fork();
        if (feeder == 0) {
            for (std::size_t done = 0; done < lines.size();) {
                const ssize_t n = ::write(in, lines.data() + done, lines.size() - done);
                if (n < 0) _exit(1);
                done += static_cast<std::size_t>(n);
            }
            _exit(0);
        }
        ::close(in);
        in = -1;
        char buffer[65536];
        ssize_t n;
        while ((n = ::read(out, buffer, sizeof buffer)) > 0) {
            count -= static_cast<int>(std::count(buffer, buffer + n, '\n'));
        }
        waitpid(feeder, nullptr, 0);
        if (count != 0) throw std::runtime_error("clientBench: answers are missing");
    }

  private:
    pid_t id = -1;
    int in = -1, out = -1;
};

static void runQuietly(std::vector<const char *> words) {
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t id;
    check(
        -posix_spawnp(&id, words[0], &actions, nullptr, const_cast<char **>(words.data()), environ),
        "posix_spawnp");
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    waitpid(id, &status, 0);
    if (status != 0) throw std::runtime_error(std::string("clientBench: failed: ") + words[0]);
}

static double bareCall(sd_bus *bus) {
    sd_bus_message *reply = nullptr;
    double y = 0;
    check(sd_bus_call_method(bus, name, path, name, "YValueOfDoc_atX_indexSerie_", nullptr, &reply,
                             "sdi", document, 1.5, -1),
          "sd_bus_call_method");
    check(sd_bus_message_read(reply, "d", &y), "sd_bus_message_read");
    sd_bus_message_unref(reply);
    return y;
}

static sd_bus *openBus() {
    sd_bus *bus = nullptr;
    check(sd_bus_open_user(&bus), "sd_bus_open_user");
    return bus;
}

// Answers each line of the standard input by a bare call.
static int answerLines() {
    sd_bus *bus = openBus();
    char line[512];
    while (std::fgets(line, sizeof line, stdin)) {
        std::printf("%g\n", bareCall(bus));
        std::fflush(stdout);
    }
    sd_bus_flush_close_unref(bus);
    return EXIT_SUCCESS;
}

int main(int argc, char **argv) {
    if (argc > 1) return answerLines();

    const PrivateBus privateBus;
    const ChildProcess plotwerkd({PLOTWERKD});
    privateBus.waitForOwner(name);
    runQuietly({CALLPLW, "-x", "readData", "-p", "0 1\n1 2\n2 4\n"});

    sd_bus *bus = openBus();

    compare(
        "sync, one process", 301, 1, "busctl",
        [] {
            runQuietly({CALLPLW, "-x", "sync"});
        },
        [] {
            runQuietly({"busctl", "--user", "call", name, path, name, "waitForEmptyReply"});
        });

    {
        constexpr int trips = 2000;
        const LineMode lineMode({CALLPLW});
        const LineMode bareLines({argv[0], "lines"});
        const auto awaitAll = [](const LineMode &program) {
            for (int i = 0; i < trips; ++i) program.roundTrip();
        };
        compare(
            "YatX, each answer awaited", 31, trips, "sd-bus", [&] { awaitAll(lineMode); },
            [&] {
                for (int i = 0; i < trips; ++i) bareCall(bus);
            });
        compare(
            "the same, sd-bus behind pipes", 31, trips, "sd-bus", [&] { awaitAll(lineMode); },
            [&] { awaitAll(bareLines); });
    }

    constexpr int count = 100000;
    std::string lines;
    for (int i = 0; i < count; ++i) lines += yAtX;
    compare(
        "YatX, 100,000 lines fed at once", 5, count, "sd-bus",
        [&] {
            LineMode lineMode({CALLPLW});
            lineMode.feed(lines, count);
        },
        [&] {
            for (int i = 0; i < count; ++i) bareCall(bus);
        });

    sd_bus_flush_close_unref(bus);
    return EXIT_SUCCESS;
}
