#include "util/text/numeral.h"

#include <cstdlib>

namespace plw {

double readNumber(const char *s, char **end) {
    return std::strtod(s, end);
}

} // namespace plw
