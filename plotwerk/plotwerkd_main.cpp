// plotwerkd - a Plotwerk without a window: opens files and answers the messages of the session bus.
#include "plotwerk/application/application.h"
#include "plotwerk/application/pictureFiles.h"
#include "plotwerk/base/bounds.h"
#include "plotwerk/base/ending.h"
#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/drawing/typesetter.h"
#include "plotwerk/server/mainLoop.h"
#include "plotwerk/server/server.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <getopt.h>
#include <malloc.h>
#include <sys/resource.h>

using namespace plotwerk;

static constexpr char usage[] =
    "usage: plotwerkd [--limit NAME=VALUE] [--log-level error|warning|info|debug]\n"
    "                 [--recover | --no-journal] [FILE ...]\n";

static constexpr char help[] =
    "\n"
    "A Plotwerk without a window. Opens the files, saved documents or data text, or one empty\n"
    "document \"Untitled\", and answers the messages of the session bus until SIGTERM or SIGINT.\n"
    "\n"
    "      --help       print this and end\n"
    "      --limit      set one of the limits below\n"
    "      --log-level  lines on standard error up to this level; info unless given\n"
    "      --no-journal unsaved changes don't outlive a crash\n"
    "      --recover    first bring back the documents that others left with unsaved changes\n"
    "      --version    print the version and end\n";

struct Options {
    bool journal = true;
    bool recover = false;
};

static void tellHelp() {
    std::printf("%s%s\nLimits, what they are at first, and what they can be:\n\n", usage, help);
    for (const Bound &bound : bounds())
        std::printf("      %-10s %4.0f  %2.0f to %-7.0f  %s\n", bound.name, bound.value,
                    bound.least, bound.most, bound.meaning);
}

[[noreturn]] static void refuseUsage() {
    std::fputs(usage, stderr);
    std::exit(2);
}

static void readLimit(const char *program, const char *assignment) {
    try {
        setBound(assignment);
    } catch (const Refusal &refusal) {
        std::fprintf(stderr, "%s: %s\n", program, refusal.what());
        refuseUsage();
    }
}

// Ends the process for --help and --version, and with status 2 for an option that isn't one.
static Options readOptions(int argc, char **argv) {
    enum {
        helpOption = 1,
        limitOption,
        levelOption,
        noJournalOption,
        recoverOption,
        versionOption
    };
    static const option options[] = {
        {"help", no_argument, nullptr, helpOption},
        {"limit", required_argument, nullptr, limitOption},
        {"log-level", required_argument, nullptr, levelOption},
        {"no-journal", no_argument, nullptr, noJournalOption},
        {"recover", no_argument, nullptr, recoverOption},
        {"version", no_argument, nullptr, versionOption},
        {},
    };
    Options given;
    for (int chosen; (chosen = getopt_long(argc, argv, "", options, nullptr)) != -1;) {
        switch (chosen) {
        case helpOption: tellHelp(); std::exit(0);
        case versionOption: std::printf("plotwerkd %s\n", PLOTWERK_VERSION); std::exit(0);
        case limitOption: readLimit(argv[0], optarg); break;
        case noJournalOption: given.journal = false; break;
        case recoverOption: given.recover = true; break;
        case levelOption:
            if (const auto level = logLevelNamed(optarg)) {
                setLogLevel(*level);
                break;
            }
            std::fprintf(stderr, "%s: no log level is called '%s'\n", argv[0], optarg);
            [[fallthrough]];
        default: refuseUsage();
        }
    }
    // What was brought back would be lost with the next crash.
    if (given.recover && !given.journal) refuseUsage();
    return given;
}

static void openFiles(Application &application, char **files, int count) {
    for (int i = 0; i < count; ++i) {
        try {
            application.open(files[i], false);
        } catch (const std::exception &error) {
            log(LogLevel::error, reasonOf(error));
        }
    }
    if (!application.front()) application.add({});
}

// While a client that waited for this program is starting.
static void prepareForPictures() {
    try {
        loadFonts();
    } catch (const std::exception &) { // the first picture tries again
    }
}

// Each open document has a journal, an open file.
static void allowManyFiles() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

int main(int argc, char **argv) {
    const Options given = readOptions(argc, argv);
    // A reader of the log that ends, and a file beyond the size limit, are errors of one write
    // only.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    holdSignals();
    endInTheMiddleOfWork();
    allowManyFiles();
    mallopt(M_ARENA_MAX, 1); // threads take no address space of their own: memory is limited by it

    Application application;
    int status = 0;
    try {
        Server server(application);
        beginToReadFonts();
        if (given.journal) application.keepJournals();
        if (given.recover) server.recover();
        application.removeOldJournals();
        if (!given.recover) application.tellLeftJournals();
        openFiles(application, argv + optind, argc - optind);
        prepareForPictures();
        runUntilSignal(server);
    } catch (const std::exception &error) {
        log(LogLevel::error, reasonOf(error));
        status = 1;
    }
    application.leave();
    if (status == 0) log(LogLevel::info, "ended");
    return status;
}
