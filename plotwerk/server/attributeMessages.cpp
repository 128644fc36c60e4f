// The messages about the look of curves, axes and texts.
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

void ControlObject::
    setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_(
        const std::string &, const int32_t &, const int32_t &, const int32_t &, const int32_t &,
        const int32_t &, const int32_t &, const int32_t &, const int32_t &, const int32_t &,
        const int32_t &) {
    refuseUnsupported("setAttributesOfSelectionOf:line:stepped:yerr:xerr:dash:fill:topX:rightY:"
                      "marker:sym:");
}

void ControlObject::setAttributes2OfSelectionOf_(const std::string &, const int32_t &,
                                                 const double &, const int32_t &, const double &,
                                                 const int32_t &, const int32_t &, const int32_t &,
                                                 const int32_t &, const int32_t &, const double &,
                                                 const double &, const double &, const double &,
                                                 const double &, const double &, const double &,
                                                 const double &, const double &, const double &,
                                                 const double &, const double &, const double &) {
    refuseUnsupported("setAttributes2OfSelectionOf:sum:interpolationPoints:interpolationType:"
                      "symbolSize:symbolInc:symbol1:symbol2:symbol3:symbol4:lineThickness:"
                      "dashLength1:dashLength2:dashLength3:dashLength4:lineColorRed:"
                      "lineColorGreen:lineColorBlue:lineColorOpacity:fillColorRed:fillColorGreen:"
                      "fillColorBlue:fillColorOpacity:");
}

void ControlObject::
    setDocAttributes_xAxisLength_yAxisLength_tickLength_axisThickness_yAxisPos_xAxisPos_multiDimFit_noLineOnRev_(
        const std::string &, const double &, const double &, const double &, const double &,
        const double &, const double &, const int32_t &, const int32_t &) {
    refuseUnsupported("setDocAttributes:xAxisLength:yAxisLength:tickLength:axisThickness:"
                      "yAxisPos:xAxisPos:multiDimFit:noLineOnRev:");
}

void ControlObject::
    setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_labelDensity_(
        const std::string &, const int32_t &, const double &, const int32_t &, const int32_t &,
        const int32_t &, const int32_t &, const int32_t &, const int32_t &, const int32_t &,
        const int32_t &, const double &, const int32_t &, const int32_t &, const int32_t &,
        const int32_t &, const int32_t &, const int32_t &, const int32_t &, const double &) {
    refuseUnsupported("setAxisOf:axisCode:inc:ticks:prec:log:insideticks:outsideticks:majorgrid:"
                      "minorgrid:expnumbers:labelAngle:noline:numbersinside:nonumbers:arrow:"
                      "logticksAt:lognumberAt:reverse:labelDensity:");
}

void ControlObject::setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_(
    const std::string &, const std::string &, const double &, const double &, const double &,
    const double &, const double &) {
    refuseUnsupported("setRTFTextOf:to:at_X:at_Y:angle:xFloating:yFloating:");
}

void ControlObject::setXTitleOf_to_(const std::string &, const std::string &) {
    refuseUnsupported("setXTitleOf:to:");
}

void ControlObject::setYTitleOf_to_(const std::string &, const std::string &) {
    refuseUnsupported("setYTitleOf:to:");
}

void ControlObject::setRTFxTitleOf_to_(const std::string &, const std::string &) {
    refuseUnsupported("setRTFxTitleOf:to:");
}

void ControlObject::setRTFyTitleOf_to_(const std::string &, const std::string &) {
    refuseUnsupported("setRTFyTitleOf:to:");
}

} // namespace plotwerk
