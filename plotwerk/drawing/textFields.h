// textFields.h - the texts of a document as they are drawn: their markup carried out, and fields
// such as <name> filled with what the document holds.
#ifndef PLOTWERK_DRAWING_TEXTFIELDS_H
#define PLOTWERK_DRAWING_TEXTFIELDS_H

#include "plotwerk/drawing/drawnCurves.h"
#include "plotwerk/drawing/richText.h"

#include <string_view>
#include <vector>

namespace plotwerk {

// <legend>      a line for each of the curves that draws anything, in the document's order: a
//               sample of it and its name, with its source's where two have the same name. Beyond
//               `legendLines` lines the last one is "…".
// <formula>     as it was given
// <parameters>  "name = value ± error" for each, with the digits that the error justifies
// <chi>         "χ²/ndf = ", and its value in three digits. Empty before a fit, and where it has no
//               more points than parameters.
// <name>        the document's
// <date>        today's as 2024-12-31, or that of SOURCE_DATE_EPOCH in UTC
// Other words in angle brackets stay. The result refers to the looks of the curves.
RichText filledText(std::string_view text, const Document &document,
                    const std::vector<DrawnCurve> &curves, std::size_t legendLines);

// The text of a name, which has markup and no fields.
RichText nameText(std::string_view name);

// Whether a filled text has a legend with at least one curve.
bool hasLegend(const RichText &filled);

// Whether a text is "<legend>" and nothing else, blanks aside.
bool isLegendAlone(std::string_view text);

} // namespace plotwerk

#endif
