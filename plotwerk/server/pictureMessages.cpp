// The messages about pictures and compositions.
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

void ControlObject::copyPDF_(const std::string &name) {
    actOn(name,
          [&](const Document &document) { application.copyPicture(document, PictureKind::pdf); });
}

void ControlObject::copyTIFF_(const std::string &name) {
    actOn(name,
          [&](const Document &document) { application.copyPicture(document, PictureKind::tiff); });
}

void ControlObject::savePicturePDF_as_(const std::string &name, const std::string &path) {
    actOn(name, [&](const Document &document) {
        application.savePicture(document, path, PictureKind::pdf);
    });
}

void ControlObject::savePictureEPS_as_(const std::string &name, const std::string &path) {
    actOn(name, [&](const Document &document) {
        application.savePicture(document, path, PictureKind::eps);
    });
}

void ControlObject::savePictureTIFF_as_(const std::string &name, const std::string &path) {
    actOn(name, [&](const Document &document) {
        application.savePicture(document, path, PictureKind::tiff);
    });
}

// Only the size of the page counts: there is no window that would have a place.
void ControlObject::newCompositionView_(const Rectangle &page) {
    act([&] { application.newComposition(std::get<2>(page), std::get<3>(page)); });
}

void ControlObject::addPDFtoCompositionView_inRect_angle_sheer_(const std::string &name,
                                                                const Rectangle &rectangle,
                                                                const double &angle,
                                                                const double &shear) {
    actOn(name, [&](const Document &document) {
        application.addToComposition(document,
                                     {std::get<0>(rectangle), std::get<1>(rectangle),
                                      std::get<2>(rectangle), std::get<3>(rectangle)},
                                     angle, shear);
    });
}

void ControlObject::savePDFofCompositionView_openWith_(const std::string &path,
                                                       const std::string &opener) {
    act([&] { application.saveComposition(path, opener); });
}

} // namespace plotwerk
