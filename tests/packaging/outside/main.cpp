// A program of somebody else's that uses the installed library.
#include "plw.h"

#include <cstdio>

int main() {
    plw::Fct *f = plw::newFct(2);
    plw::appendFct(f, 0, 1);
    plw::appendFct(f, 2, 5);
    std::puts(plw::stringOfDouble(plw::evalFct(f, 1)));
    plw::freeFct(f);
}
