// options.h - the option texts of one command and the values they stand for.
#ifndef CALLPLW_OPTIONS_H
#define CALLPLW_OPTIONS_H

#include <string>

constexpr int commandSize = 1024;   // bytes of the -x text, its terminator counted
constexpr int slotCount = 'z' + 1;  // slots are indexed by the option letter's code
constexpr int slotSize = 1024;      // bytes of one slot, its terminator counted
constexpr int longTextSize = 65536; // bytes of the -f and of the -p text

// One text per option letter; an empty text means that the option was not given.
using OptionSlots = char[slotCount][slotSize];

// The text of one option of a command.
struct OptionText {
    const char *text;
    char letter;
    const char *command;

    operator const char *() const { return text; }
};

// What a command may read: the slots and the two long texts. None is ever changed by a command.
struct Options {
    const char *command;
    const OptionSlots &slots;
    OptionText fText;
    OptionText pText;

    OptionText operator[](char letter) const {
        return {slots[static_cast<unsigned char>(letter)], letter, command};
    }
};

// NaN for an empty text, else what atof reads: 0 for a text that is not a number, of which the
// command fails where failures are told (failures.h).
double real(const OptionText &option, double whenEmpty);
double real(const OptionText &option);

// -1 for an empty text, else what atoi reads: 0 for a text that is not a number. Likewise of what
// isn't a whole number of 32 bits.
int integer(const OptionText &option, int whenEmpty);
int integer(const OptionText &option);

// false for an empty text and one that begins with n or N, else true: "0" and "false" are yes.
bool yesNo(const char *text);

// 2 (keep) for an empty text and one that begins with k or K, 0 (off) for n or N, else 1 (on).
int triState(const char *text);

// The text in UTF-8, empty for an empty one: bytes that are not UTF-8 are read as ISO 8859-1.
std::string textOf(const char *text);

#endif
