#include "client/failures.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

enum class Telling { none, report, stop };

static constexpr int statusOfFailure = 2;

static bool failed = false;

static Telling tellingAskedFor() {
    const char *given = std::getenv("CALLPLW_ERRORS");
    const std::string_view wanted = given ? given : "";
    if (wanted.empty()) return Telling::none;
    if (wanted == "stop") return Telling::stop;
    if (wanted != "report")
        std::fprintf(stderr,
                     "callPlw: CALLPLW_ERRORS is neither report nor stop: taken as report\n");
    return Telling::report;
}

static Telling telling() {
    static const Telling asked = tellingAskedFor();
    return asked;
}

bool failuresAreTold() {
    return telling() != Telling::none;
}

void fail(const std::string &command, const std::string &reason) {
    if (!failuresAreTold()) return;
    const std::string of = command.empty() ? "" : command + ": ";
    std::fprintf(stderr, "callPlw: %s%s\n", of.c_str(), reason.c_str());
    failed = true;
    if (telling() == Telling::stop) std::exit(statusOfFailure);
}

int exitStatus() {
    return failed ? statusOfFailure : EXIT_SUCCESS;
}
