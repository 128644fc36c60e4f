// The messages about documents as wholes: opening, showing, saving, closing.
#include "plotwerk/model/ranges.h"
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

std::string ControlObject::documentNameOfFrontWindow() {
    std::string name;
    attempt([&] {
        if (const Document *front = application.front()) name = front->name;
    });
    return name;
}

// Messages are answered one after the other: all earlier work is done.
void ControlObject::waitForEmptyReply() {
    attempt([] {});
}

void ControlObject::actify_(const std::string &name) {
    actOn(name, [&](const Document &document) { application.activate(document); });
}

void ControlObject::printDoc_(const std::string &name) {
    actOn(name, [&](const Document &document) { application.print(document); });
}

void ControlObject::closeDocument_askForSave_(const std::string &name, const bool &askForSave) {
    act([&] {
        withOpen(name, [&](const Document &document) { application.close(document, askForSave); });
    });
}

void ControlObject::newDocumentWithName_(const std::string &name) {
    act([&] {
        requireName(name);
        Document document;
        document.name = name;
        application.create(std::move(document));
    });
}

// The first argument is the sender's target before the message; what is opened is new.
void ControlObject::openFile_file_doRangeOverAll_(const std::string &, const std::string &file,
                                                  const bool &overAll) {
    act([&] { application.open(file, overAll); });
}

void ControlObject::display_doRangeOverAll_(const std::string &name, const bool &overAll) {
    if (overAll) {
        actOn(name, [&](Document &document) {
            application.activate(document);
            rangeOverAll(document);
        });
    } else {
        actOn(name, [&](const Document &document) { application.activate(document); });
    }
}

void ControlObject::saveDocument_to_binary_(const std::string &name, const std::string &path,
                                            const bool &binary) {
    actOn(name, [&](const Document &document) { application.save(document, path, binary, false); });
}

void ControlObject::saveDocument_as_binary_(const std::string &name, const std::string &path,
                                            const bool &binary) {
    actOn(name, [&](const Document &document) { application.save(document, path, binary, true); });
}

bool ControlObject::didSaveSucceed_(const std::string &name) {
    bool succeeded = false;
    attempt([&] { succeeded = application.lastSaveSucceeded(application.document(name)); });
    return succeeded;
}

} // namespace plotwerk
