// copy.h - texts copied and changed byte by byte.
#ifndef PLW_UTIL_TEXT_COPY_H
#define PLW_UTIL_TEXT_COPY_H

namespace plw {

// Copies src, cut to size - 1 bytes, to dst and terminates it. A size below 1 counts as 1.
void strMycpy(char *dst, const char *src, int size);

// Replaces every byte of s that equals from by to, over the length that s has on entry (to may be
// NUL).
void replaceChr(char *s, int from, int to);

} // namespace plw

#endif
