// fittedCurve.h - the curve that a fit has drawn, as the formula that it is.
#ifndef PLOTWERK_DRAWING_FITTEDCURVE_H
#define PLOTWERK_DRAWING_FITTEDCURVE_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/drawnCurves.h"
#include "plotwerk/drawing/scaledFrame.h"
#include "plotwerk/formula/formula.h"
#include "plotwerk/model/document.h"

#include <optional>
#include <utility>
#include <vector>

namespace plotwerk {

class FittedCurve {
  public:
    // The last fit's formula, where that is a function of x alone, the curve is the fit's, and its
    // points still lie on it; nothing where they have been changed, averaged or stepped.
    static std::optional<FittedCurve> of(const Document &document, const DrawnCurve &curve);

    // The formula on paper, as far as the curve's points and the frame go, with a point wherever
    // paper can tell one from the next.
    Path line(const DrawnCurve &curve, const ScaledFrame &frame) const;

    // The band around that line in which the true one lies with a probability of 95 %, at each x
    // for itself: the parameters' covariance, propagated linearly. Closed rings. Empty where the
    // covariance isn't known.
    std::vector<Path> band(const DrawnCurve &curve, const ScaledFrame &frame) const;

    // The limits of that band at the curve's points, as far as the data go that have been fitted:
    // those of the fit's residuals. Without these, and where there is no band, none.
    Range bandAtData(const Document &document, const DrawnCurve &curve) const;

  private:
    struct Band {
        std::vector<double> lower;
        std::vector<double> upper;
    };

    FittedCurve(Formula itsFormula, const FitResult &result)
        : formula(std::move(itsFormula)), fit(&result) {}

    std::vector<double> parameters() const;
    Band bandAt(const std::vector<double> &x) const; // empty where the covariance isn't known
    std::vector<double> deviations(const std::vector<double> &x) const;

    Formula formula;
    const FitResult *fit;
};

} // namespace plotwerk

#endif
