// name.h - names with a numeric suffix.
#ifndef PLW_UTIL_TEXT_NAME_H
#define PLW_UTIL_TEXT_NAME_H

namespace plw {

// Splits a name such as "curve12" into "curve" and 12. The name begins with a letter, its digits
// begin at the first digit, reach to the end and are the int as it is written: no leading zeros, no
// more than INT_MAX. Any other text gives -1 and an empty name. name needs room for all of s but
// its digits.
//   "curve7" -> "curve", 7      "a-b 0" -> "a-b ", 0      "curve07", "7up", "curve" -> "", -1
void indexOfName(const char *s, int *index, char *name);

} // namespace plw

#endif
