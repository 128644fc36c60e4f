// callPlw: remote control of a running Plotwerk. With arguments it executes the commands given
// there; without, it treats every line of the standard input as a command line of its own.

#include "client/execute.h"
#include "util/text/copy.h"
#include "util/text/word.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <getopt.h>

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
};

static void clear(CommandLine &line) {
    line.command[0] = line.fText[0] = line.pText[0] = '\0';
    for (char *slot : line.slots) slot[0] = '\0';
}

static void storeOption(CommandLine &line, int letter, const char *value) {
    switch (letter) {
    case 'x': plw::strMycpy(line.command, value, commandSize); break;
    case 'f': plw::strMycpy(line.fText, value, longTextSize); break;
    case 'p': plw::strMycpy(line.pText, value, longTextSize); break;
    default: plw::strMycpy(line.slots[letter], value, slotSize);
    }
}

static void execute(PlotwerkControl &plotwerk, const CommandLine &line) {
    execute(plotwerk, line.command, line.slots, line.fText, line.pText);
}

// Options stay in force from one command to the next until they are given again.
static int runArguments(PlotwerkControl &plotwerk, CommandLine &line, int argc, char **argv) {
    bool commandSeen = false;
    clear(line);
    for (int letter; (letter = getopt(argc, argv, argumentOptions)) != -1;) {
        if (letter == '?') {
            std::fprintf(stderr, "usage: %s \n", argv[0]);
            return EXIT_FAILURE;
        }
        if (letter == 'x') {
            if (commandSeen) execute(plotwerk, line);
            commandSeen = true;
        }
        storeOption(line, letter, optarg);
    }
    execute(plotwerk, line);
    return EXIT_SUCCESS;
}

// Cuts the text into words behind the program's name. Returns their count with that name.
static int splitWords(char *text, char **words) {
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
        storeOption(line, letter, optarg ? optarg : ""); // '?' has a slot that nobody reads
    }
    if (*line.command) execute(plotwerk, line);
}

static int runLines(PlotwerkControl &plotwerk, CommandLine &line) {
    char text[lineSize];
    while (std::fgets(text, lineSize, stdin)) {
        text[std::strcspn(text, "\n")] = '\0';
        runLine(plotwerk, line, text);
    }
    return EXIT_SUCCESS;
}

int main(int argc, char **argv) {
    const PlotwerkConnection connection = connectToPlotwerk();
    if (!connection.bus) {
        std::fputs("can't connect to Plotwerk\n", stderr);
        return EXIT_FAILURE;
    }
    PlotwerkControl plotwerk(connection);
    CommandLine line;
    return argc == 1 ? runLines(plotwerk, line) : runArguments(plotwerk, line, argc, argv);
}
