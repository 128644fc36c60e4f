#include "plotwerk/model/change.h"

#include "plotwerk/base/refusal.h"

#include <functional>
#include <gtest/gtest.h>

using namespace plotwerk;

TEST(Change, IsUnsavedUntilSavedAndAViewIsNot) {
    Document document;
    const auto work = [](Document &) {};
    const std::pair<std::function<void()>, bool> steps[] = {
        {[&] { changeView(document, work); }, false}, {[&] { change(document, work); }, true},
        {[&] { changeView(document, work); }, true},  {[&] { setSaved(document); }, false},
        {[&] { changeView(document, work); }, false}, {[&] { change(document, work); }, true}};
    EXPECT_FALSE(hasUnsavedChanges(document));
    for (const auto &[step, unsaved] : steps) {
        step();
        EXPECT_EQ(hasUnsavedChanges(document), unsaved) << document.revision;
    }
    const auto refused = [](Document &) { throw Refusal("no"); };
    EXPECT_THROW(change(document, refused), Refusal);
    EXPECT_THROW(changeView(document, refused), Refusal);
    EXPECT_EQ(document.revision, 5u) << "a view counts, too; saving and what is refused don't";
}
