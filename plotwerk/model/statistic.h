// statistic.h - statistic of the selected curves.
#ifndef PLOTWERK_MODEL_STATISTIC_H
#define PLOTWERK_MODEL_STATISTIC_H

#include "plotwerk/model/document.h"

#include <string>

namespace plotwerk {

struct Statistic {
    std::string name;         // of the first selected curve
    int points = 0;           // with both x and y
    double min = unset;       // NaN without points
    double max = unset;       // NaN without points
    double sum = 0;           // compensated: as if added up in twice the precision
    double deviation = unset; // population standard deviation; NaN without points
    double area = 0;          // under each curve's points in the order of x (trapezoids), added up
};

// Of y over all valid points of all selected curves. Refused without a selection.
Statistic statisticOfSelection(const Document &document);

} // namespace plotwerk

#endif
