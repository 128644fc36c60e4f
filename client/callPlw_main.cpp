// callPlw: remote control of a running Plotwerk. With arguments it executes the commands given
// there; without, it treats every line of the standard input as a command line of its own.

#include "client/execute.h"
#include "client/failures.h"
#include "util/text/copy.h"
#include "util/text/word.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <getopt.h>
#include <string>
#include <vector>

// The '+' makes getopt stop at the first argument that is not an option. Only a line can name its
// target document (-d): commands given as arguments address the front document.
static const char argumentOptions[] = "+a:b:c:e:f:g:h:i:j:k:l:m:n:o:p:r:s:t:u:w:x:y:R:G:B:S:X:Y:";
static const char lineOptions[] = "+a:b:c:d:e:f:g:h:i:j:k:l:m:n:o:p:r:s:t:u:w:x:y:R:G:B:S:X:Y:";

static constexpr int lineSize = 512; // bytes read as one line, the terminator counted
static constexpr int maxWords = 62;  // words read of one line

// The texts of one command line. They are large, and only their first bytes are ever cleared.
struct CommandLine {
    char command[commandSize];
    char fText[longTextSize];
    char pText[longTextSize];
    OptionSlots slots;
    std::vector<std::string> faults; // that the next command has
};

static void clear(CommandLine &line) {
    line.command[0] = line.fText[0] = line.pText[0] = '\0';
    for (char *slot : line.slots) slot[0] = '\0';
}

static void addFault(CommandLine &line, const std::string &fault) {
    if (failuresAreTold()) line.faults.push_back(fault);
}

static void tellFaults(CommandLine &line) {
    for (const std::string &fault : line.faults) fail(line.command, fault);
    line.faults.clear();
}

static void storeOption(CommandLine &line, int letter, const char *value) {
    const auto store = [&](char *text, int size) {
        plw::strMycpy(text, value, size);
        if (std::strlen(value) >= static_cast<std::size_t>(size))
            addFault(line, std::string("the value of -") + static_cast<char>(letter) +
                               " is cut after " + std::to_string(size - 1) + " bytes");
    };
    switch (letter) {
    case 'x': store(line.command, commandSize); break;
    case 'f': store(line.fText, longTextSize); break;
    case 'p': store(line.pText, longTextSize); break;
    default: store(line.slots[letter], slotSize);
    }
}

// What getopt found wrong, and doesn't print itself where failures are told.
static void addWrongOption(CommandLine &line, const char *options) {
    const std::string option = std::string("-") + static_cast<char>(optopt);
    addFault(line, std::strchr(options, optopt) ? "option " + option + " without a value"
                                                : "wrong option " + option);
}

static void addIgnored(CommandLine &line, const char *word) {
    addFault(line, '"' + std::string(word) + "\" and all behind it is ignored");
}

static void execute(PlotwerkControl &plotwerk, CommandLine &line) {
    tellFaults(line);
    execute(plotwerk, line.command, line.slots, line.fText, line.pText);
}

// Options stay in force from one command to the next until they are given again.
static int runArguments(PlotwerkControl &plotwerk, CommandLine &line, int argc, char **argv) {
    bool commandSeen = false;
    clear(line);
    for (int letter; (letter = getopt(argc, argv, argumentOptions)) != -1;) {
        if (letter == '?') {
            addWrongOption(line, argumentOptions);
            tellFaults(line);
            if (failuresAreTold()) return exitStatus();
            std::fprintf(stderr, "usage: %s \n", argv[0]);
            return EXIT_FAILURE;
        }
        if (letter == 'x') {
            if (commandSeen) execute(plotwerk, line);
            commandSeen = true;
        }
        storeOption(line, letter, optarg);
    }
    if (optind < argc) addIgnored(line, argv[optind]);
    execute(plotwerk, line);
    return exitStatus();
}

// Cuts the text into words behind the program's name. Returns their count with that name; `text`
// moves to what is left of it.
static int splitWords(char *&text, char **words) {
    static char programName[] = "callPlw";
    char ignored;
    int count = 1;
    words[0] = programName;
    while (count <= maxWords && (words[count] = plw::nextWord(&text, &ignored, &ignored))) ++count;
    words[count] = nullptr;
    return count;
}

// A line is executed even if some of its options were wrong: getopt has complained already.
static void runLine(PlotwerkControl &plotwerk, CommandLine &line, char *text) {
    char *words[1 + maxWords + 1];
    clear(line);
    const int count = splitWords(text, words);

    optind = 0; // unlike 1 this also forgets where within a word the last scan stopped
    for (int letter; (letter = getopt(count, words, lineOptions)) != -1;) {
        if (letter == '?') addWrongOption(line, lineOptions);
        storeOption(line, letter, optarg ? optarg : ""); // '?' has a slot that nobody reads
    }
    if (!*line.command) return tellFaults(line);

    char ignored;
    char *beyond = count > maxWords ? plw::nextWord(&text, &ignored, &ignored) : nullptr;
    if (optind < count)
        addIgnored(line, words[optind]);
    else if (beyond)
        addIgnored(line, beyond);
    execute(plotwerk, line);
}

// Whether more than an end of line follows what was read of one.
static bool lineGoesOn() {
    const int next = std::getc(stdin);
    if (next != EOF) std::ungetc(next, stdin);
    return next != EOF && next != '\n';
}

static int runLines(PlotwerkControl &plotwerk, CommandLine &line) {
    char text[lineSize];
    char &last = text[lineSize - 2]; // written only when the buffer is filled
    for (last = '\0'; std::fgets(text, lineSize, stdin); last = '\0') {
        if (failuresAreTold() && last != '\0' && last != '\n' && lineGoesOn())
            addFault(line, "the line is longer than " + std::to_string(lineSize - 1) +
                               " bytes: its rest is read as a line of its own");
        text[std::strcspn(text, "\n")] = '\0';
        runLine(plotwerk, line, text);
    }
    return exitStatus();
}

int main(int argc, char **argv) {
    const PlotwerkConnection connection = connectToPlotwerk();
    if (!connection.bus) {
        std::fputs("can't connect to Plotwerk\n", stderr);
        return EXIT_FAILURE;
    }
    PlotwerkControl plotwerk(connection);
    CommandLine line;
    if (failuresAreTold()) opterr = 0; // then our own words tell what getopt finds
    return argc == 1 ? runLines(plotwerk, line) : runArguments(plotwerk, line, argc, argv);
}
