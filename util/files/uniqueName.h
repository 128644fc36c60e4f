// uniqueName.h - a name made unlike the names that are taken.
#ifndef PLW_UTIL_FILES_UNIQUENAME_H
#define PLW_UTIL_FILES_UNIQUENAME_H

namespace plw {

// Leaves name alone and returns nullptr if none of the count existing names equals it. Otherwise
// appends the local time to it, and if that is taken too a "#" and a counter that runs through the
// whole process from 1; returns name. What the counter makes is not compared once more. name needs
// room for 9 characters more, and for the '#' and up to 10 digits of the counter. Not reentrant.
//   "curve" -> "curve 14:03:09" -> "curve 14:03:09#1"
char *uniqueName(char *name, const char *const *existing, int count);

} // namespace plw

#endif
