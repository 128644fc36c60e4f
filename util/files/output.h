// output.h - where the print routines of the library write: one rule for all of them.
//
//   FILE *out = openOutput(path);
//   std::fprintf(out, ...);
//   closeOutput(out);
#ifndef PLW_UTIL_FILES_OUTPUT_H
#define PLW_UTIL_FILES_OUTPUT_H

#include <cstdio>

namespace plw {

// The standard output for nullptr or an empty path, else the file at path, emptied. A missing
// directory is made (permissions 0777), but only the last of the path: its parents must be there.
// Ends the process: "ERROR: can't create directory: " and the directory; "ERROR: can't open file: "
// and the path.
FILE *openOutput(const char *path);

// Closes what openOutput gave; leaves the standard output open.
void closeOutput(FILE *out);

} // namespace plw

#endif
