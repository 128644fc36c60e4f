// fatal.h - the library's two ways to end the process.
//
// The library returns no error codes: a broken invariant (an index out of range, a full
// fixed-length record, an incomplete function) ends the process here, as does lack of memory, and
// callers never check afterwards.
#ifndef PLW_UTIL_FILES_FATAL_H
#define PLW_UTIL_FILES_FATAL_H

namespace plw {

// Writes "MESSAGE (NUMBER)\n" to standard error and ends the process with exit status 1. The number
// is the offending index, length or count; it is printed only and never the status.
//   ("ERROR in val: index out of range", 7) -> "ERROR in val: index out of range (7)"
[[noreturn]] void myexit(const char *message, int number);

// Writes "MESSAGEDETAIL\n" to standard error and ends the process with exit status 1. The detail
// is the name of the file or directory in question.
[[noreturn]] void myexitText(const char *message, const char *detail);

} // namespace plw

#endif
