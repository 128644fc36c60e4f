#include "plotwerk/base/refusal.h"
#include "plotwerk/drawing/pages.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/model/editing.h"
#include "plotwerk/model/selection.h"
#include "tests/fuzz/fuzz.h"

#include <sstream>

using namespace plotwerk;

namespace {

std::string saved(const Document &document, bool binary) {
    std::ostringstream stream;
    writeDocument(stream, document, binary);
    return stream.str();
}

} // namespace

// Whatever the bytes, what is read from them can be drawn, and saved so that it comes back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Document document;
    try {
        document = documentOf(std::string(data, data + size));
    } catch (const Refusal &) {
        return 0;
    }
    const std::string json = saved(document, false);
    require(saved(documentOf(json), false) == json);
    require(saved(documentOf(saved(document, true)), false) == json);
    require(pdfOfDocument(document).starts_with("%PDF"));

    // what counts on from the numbers in it keeps within the limits of a file
    if (numberOfCurves(document) == 0) return 0;
    selectByIndex(document, {}, true);
    showSelection(document);
    documentOf(saved(document, true));
    return 0;
}
