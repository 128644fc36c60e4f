// output.h - where the print routines of the library write: one rule for all of them.
//
//   std::FILE *out = openOutput(path);
//   std::fprintf(out, ...);
//   closeOutput(out, path);
#ifndef PLW_UTIL_FILES_OUTPUT_H
#define PLW_UTIL_FILES_OUTPUT_H

#include <cstdio>

namespace plw {

// The standard output for nullptr or an empty path, else the file at path, emptied. A missing
// directory is made (permissions 0777 less the umask), but only the last of the path: its parents
// must be there.
// Ends the process: "ERROR: can't create directory: " and the directory; "ERROR: can't open file: "
// and the path.
std::FILE *openOutput(const char *path);

// Closes what openOutput gave for path; leaves the standard output open, and its errors to the
// program.
// Ends the process if not all could be written: "ERROR: can't write file: " and the path.
void closeOutput(std::FILE *out, const char *path);

} // namespace plw

#endif
