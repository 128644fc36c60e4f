// programs.h - other programs started by this one: for printing, and to open files.
#ifndef PLOTWERK_BASE_PROGRAMS_H
#define PLOTWERK_BASE_PROGRAMS_H

#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// Starts a program, looked up on PATH, with its arguments, without a shell, and doesn't wait for
// it. It reads `input`, has no stdout, and writes to the stderr of this program.
// Throws Refusal "can't start PROGRAM: REASON".
void startProgram(std::vector<std::string> words, std::string_view input = {});

// Collects the started programs that have ended, so that none stays as a zombie, and logs those
// that failed or were ended by a signal. To be called on SIGCHLD.
void reapChildren();

} // namespace plotwerk

#endif
