#include "client/options.h"

#include "util/text/utf8.h"

#include <cmath>
#include <cstdlib>

double real(const char *text) {
    return real(text, std::sqrt(-1.0));
}

double real(const char *text, double whenEmpty) {
    return *text ? std::atof(text) : whenEmpty;
}

int integer(const char *text) {
    return integer(text, -1);
}

int integer(const char *text, int whenEmpty) {
    return *text ? std::atoi(text) : whenEmpty;
}

bool yesNo(const char *text) {
    return *text && *text != 'n' && *text != 'N';
}

int triState(const char *text) {
    switch (*text) {
    case '\0':
    case 'k':
    case 'K': return 2;
    case 'n':
    case 'N': return 0;
    default: return 1;
    }
}

std::string textOf(const char *text) {
    return plw::utf8Of(text);
}
