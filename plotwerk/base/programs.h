// programs.h - other programs started by this one: for printing, and to open files.
#ifndef PLOTWERK_BASE_PROGRAMS_H
#define PLOTWERK_BASE_PROGRAMS_H

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace plotwerk {

// Throws Refusal "can't start PROGRAM: REASON" unless there is such a program, on PATH or at the
// path it is, and it can be started: a directory, or a script without its interpreter, can't.
void requireProgram(const std::string &program);

// Starts a program, looked up on PATH, with its arguments, without a shell, and doesn't wait for
// it. It reads what writeInput writes, has no stdout, and writes to the stderr of this program.
// Throws Refusal "can't start PROGRAM: REASON".
void startProgram(std::vector<std::string> words,
                  const std::function<void(std::ostream &)> &writeInput = {});

// Collects the started programs that have ended, so that none stays as a zombie, and logs those
// that failed or were ended by a signal. To be called on SIGCHLD.
void reapChildren();

} // namespace plotwerk

#endif
