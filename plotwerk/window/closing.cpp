#include "plotwerk/window/closing.h"

#include "plotwerk/model/change.h"
#include "plotwerk/window/windowedApplication.h"

#include <utility>

namespace plotwerk {

Closing::Closing(WindowedApplication &app, DocumentWindow &closed, const Document &shown,
                 Questions &asked, std::function<void(const std::function<void()> &)> saving)
    : application(app), window(closed), document(shown), questions(asked), save(std::move(saving)) {
}

void Closing::begin(const std::function<void()> &then) {
    if (then || !questions.isAsking()) whenClosed = then;
    goOn();
}

// The user may be in the middle of another question.
void Closing::goOn() {
    if (window.isRetired()) return;
    if (application.isBusy()) {
        application.cancelFitOf(document);
        window.tell("Closes as soon as the work is done");
        return application.whenFree(
            sigc::slot<void()>(sigc::track_obj([this] { goOn(); }, window)));
    }
    if (questions.isAsking()) return questions.remind([this] { goOn(); });
    if (!hasUnsavedChanges(document)) return close(std::exchange(whenClosed, {}));
    ask();
}

void Closing::close(const std::function<void()> &then) {
    if (application.closeDocument(document) && then) then();
}

void Closing::ask() {
    using Changes = Questions::Changes;
    window.present();
    questions.askToSave(document.name, [this](Changes changes) {
        const auto then = std::exchange(whenClosed, {});
        if (changes == Changes::kept) return;
        application.cancelFitOf(document);
        application.whenFree([this, changes, then] {
            if (window.isRetired()) return;
            if (changes == Changes::discarded) return close(then);
            save([this, then] { close(then); });
        });
    });
}

} // namespace plotwerk
