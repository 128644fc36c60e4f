// path.h - parts of path texts. Nothing here looks at the file system; any text is accepted.
// Lengths are bytes.
#ifndef PLW_UTIL_FILES_PATH_H
#define PLW_UTIL_FILES_PATH_H

namespace plw {

// Replaces every ' ' by '_' in place.
void convertBlankToUnderline(char *s);

// A path shortened for display to its last whole components: path itself if it has at most maxLen
// bytes, else its text from the first '/' within the last maxLen bytes, else (no '/' there) its
// last maxLen - 1 bytes, which may begin inside a UTF-8 character. Empty for a longer path if
// maxLen < 1. Points into path.
//   ("/aa/bb/cc", 5) -> "/cc"   ("abcdefgh", 3) -> "gh"   ("abc", 3) -> "abc"
const char *limitfilename(const char *path, int maxLen);

// What follows the last '.' of the last component; empty if that component has no '.'. Points
// into path.
//   "a.b.c" -> "c"   "dir.x/file" -> ""   ".rc" -> "rc"
char *fileextension(char *path);

// What follows the last '/', or path itself. Points into path.
//   "/a/b.txt" -> "b.txt"   "b.txt" -> "b.txt"   "/a/" -> ""
char *fileNameOfPath(char *path);

// Copies what stands before the last '/' into dir, which has room for it, and returns dir. Empty
// without a '/', and for a name in the root directory too. dir may be path.
//   "/a/b/c.txt" -> "/a/b"   "file" -> ""   "/file" -> ""
char *dirOfPath(const char *path, char *dir);

// Cuts path at its last '.' and returns where that was; nullptr if there is none. It does not look
// at '/': the '.' of a directory's name is taken when the file's name has none, and the path is
// cut there.
//   "a/b.c.txt" -> "a/b.c"   "dir.x/file" -> "dir"
char *removeExtension(char *path);

} // namespace plw

#endif
