#include "util/files/fatal.h"

#include <cstdio>
#include <cstdlib>

namespace plw {

void myexit(const char *message, int number) {
    std::fprintf(stderr, "%s (%d)\n", message, number);
    std::exit(1);
}

void myexitText(const char *message, const char *detail) {
    std::fprintf(stderr, "%s%s\n", message, detail);
    std::exit(1);
}

} // namespace plw
