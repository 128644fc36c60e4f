// The messages about pictures and compositions.
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

void ControlObject::copyPDF_(const std::string &) {
    refuseUnsupported("copyPDF:");
}

void ControlObject::copyTIFF_(const std::string &) {
    refuseUnsupported("copyTIFF:");
}

void ControlObject::savePicturePDF_as_(const std::string &name, const std::string &) {
    refuseSaving("savePicturePDF:as:", name);
}

void ControlObject::savePictureEPS_as_(const std::string &name, const std::string &) {
    refuseSaving("savePictureEPS:as:", name);
}

void ControlObject::savePictureTIFF_as_(const std::string &name, const std::string &) {
    refuseSaving("savePictureTIFF:as:", name);
}

void ControlObject::newCompositionView_(const Rectangle &) {
    refuseUnsupported("newCompositionView:");
}

void ControlObject::addPDFtoCompositionView_inRect_angle_sheer_(const std::string &,
                                                                const Rectangle &, const double &,
                                                                const double &) {
    refuseUnsupported("addPDFtoCompositionView:inRect:angle:sheer:");
}

void ControlObject::savePDFofCompositionView_openWith_(const std::string &, const std::string &) {
    refuseUnsupported("savePDFofCompositionView:openWith:");
}

} // namespace plotwerk
