// The messages about data text, the clipboard and what a document holds.
#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/data/exchange.h"
#include "plotwerk/model/duplicate.h"
#include "plotwerk/model/ranges.h"
#include "plotwerk/model/selection.h"
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

void ControlObject::setDeciSeparator_(const std::int32_t &code) {
    act([&] {
        if (code != 0 && code != 1) {
            throw Refusal("no decimal separator has the number " + std::to_string(code));
        }
        application.decimalSeparator = code == 0 ? '.' : ',';
    });
}

void ControlObject::replaceDataformText_of_source_doRangeOverAll_(const std::string &text,
                                                                  const std::string &name,
                                                                  const std::string &source,
                                                                  const bool &overAll) {
    actOn(name, [&](Document &document) {
        replaceData(document, source, text, application.decimalSeparator);
        if (overAll) rangeOverAll(document);
    });
}

void ControlObject::readDataformText_of_source_doRangeOverAll_appendToExistingData_(
    const std::string &text, const std::string &name, const std::string &source,
    const bool &overAll, const bool &append) {
    actOn(name, [&](Document &document) {
        (append ? appendData : replaceData)(document, source, text, application.decimalSeparator);
        if (overAll) rangeOverAll(document);
    });
}

// Nothing is drawn here, so that reading is all there is to be fast in.
void ControlObject::appendDataAndDrawInFastMode_of_source_(const std::string &text,
                                                           const std::string &name,
                                                           const std::string &source) {
    actOn(name, [&](Document &document) {
        appendData(document, source, text, application.decimalSeparator);
    });
}

std::string ControlObject::dataOfSelectedCurvesOf_(const std::string &name) {
    return answer(name, std::string(), [&](const Document &document) {
        return dataTextOfSelection(document, true, application.decimalSeparator, longestAnswer());
    });
}

void ControlObject::copySelectedCurvesOf_includeX_(const std::string &name, const bool &includeX) {
    actOn(name, [&](const Document &document) {
        application.copyText(
            dataTextOfSelection(document, includeX, application.decimalSeparator, mostMemory()));
    });
}

void ControlObject::pasteDataOf_(const std::string &name) {
    actOn(name, [&](Document &document) {
        const Clipboard clipboard = application.pasted();
        if (!clipboard.picture.empty()) throw Refusal("the clipboard holds a picture, no data");
        if (clipboard.dataText.empty()) throw Refusal("the clipboard is empty");
        addData(document, "Clipboard", clipboard.dataText, clipboard.decimalSeparator);
    });
}

void ControlObject::duplicateAsPlottedOf_(const std::string &name) {
    actOn(name,
          [&](const Document &document) { application.create(duplicateAsPlotted(document)); });
}

std::tuple<std::int32_t, std::int32_t, std::int32_t>
ControlObject::inventoryOf_sources_tables_columns_justInSelTable_justInSelSource_(
    const std::string &name, const bool &justInTable, const bool &justInSource) {
    const Inventory held = answer(name, Inventory{}, [&](const Document &document) {
        return inventoryOf(document, justInTable, justInSource);
    });
    return {held.sources, held.tables, held.columns};
}

} // namespace plotwerk
