// plotwerk - Plotwerk with windows: opens files and answers the messages of the session bus.
#include "plotwerk/base/child.h"
#include "plotwerk/base/log.h"
#include "plotwerk/window/windowedApplication.h"

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <getopt.h>

using namespace plotwerk;

static constexpr char usage[] =
    "usage: plotwerk [--log-level error|warning|info|debug] [--no-journal] [FILE ...]\n";

static constexpr char help[] =
    "\n"
    "Opens the files, saved documents or data text, each in a window, or one empty document; in "
    "the\n"
    "Plotwerk that is open already, if there is one. Answers the messages of the session bus.\n"
    "\n"
    "      --help       print this and end\n"
    "      --log-level  lines on standard error up to this level; info unless given\n"
    "      --no-journal unsaved changes don't outlive a crash\n"
    "      --version    print the version and end\n";

[[noreturn]] static void refuseUsage() {
    std::fputs(usage, stderr);
    std::exit(2);
}

// Whether journals are kept. Ends the process for --help and --version, and with status 2 for an
// option that isn't one.
static bool readOptions(int argc, char **argv) {
    enum { helpOption = 1, levelOption, noJournalOption, versionOption };
    static const option options[] = {
        {"help", no_argument, nullptr, helpOption},
        {"log-level", required_argument, nullptr, levelOption},
        {"no-journal", no_argument, nullptr, noJournalOption},
        {"version", no_argument, nullptr, versionOption},
        {},
    };
    bool journal = true;
    for (int chosen; (chosen = getopt_long(argc, argv, "", options, nullptr)) != -1;) {
        switch (chosen) {
        case helpOption: std::printf("%s%s", usage, help); std::exit(0);
        case versionOption: std::printf("plotwerk %s\n", PLOTWERK_VERSION); std::exit(0);
        case noJournalOption: journal = false; break;
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
    return journal;
}

int main(int argc, char **argv) {
    const bool keepJournals = readOptions(argc, argv);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    setLogProgram("plotwerk");
    forkNoChildren();
    // Numbers are read and written with a point whatever the user's language is.
    std::setlocale(LC_ALL, "");
    std::setlocale(LC_NUMERIC, "C");
    gtk_disable_setlocale();
    Glib::set_init_to_users_preferred_locale(false);
    // Where OpenGL is software this starts in half the time and draws faster.
    setenv("GSK_RENDERER", "cairo", 0);

    const auto application = WindowedApplication::create(keepJournals);
    // The files, behind the name of the program.
    argv[optind - 1] = argv[0];
    const int status = application->run(argc - optind + 1, argv + optind - 1);
    return status != 0 ? status : application->status();
}
