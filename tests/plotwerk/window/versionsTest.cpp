#include "plotwerk/window/versions.h"

#include "plotwerk/model/change.h"
#include "plotwerk/model/ranges.h"
#include "tests/plotwerk/files/fullDocument.h"

#include <gtest/gtest.h>

using namespace plotwerk;

static std::string bytesOf(const Document &document) {
    return saved(document, false);
}

namespace {

// A document as a window has it.
struct Edited {
    Document document = fullDocument();
    Versions versions{document};

    void keep(Versions::Change kind, std::size_t lines = 0) {
        versions.keep(document, kind, lines);
    }
    void setX(double max) {
        change(document, [&](Document &changed) { setRange(changed, xAxis, 0, max); });
    }
    void setFirstValue(double value) {
        change(document,
               [&](Document &changed) { changed.sources[0].tables[0].y[0].values[0] = value; });
    }
};

} // namespace

TEST(Versions, AreUndoneAndRedoneToTheSameBytes) {
    Edited edited;
    std::vector<std::string> steps{bytesOf(edited.document)};
    for (int i = 1; i <= 120; ++i) {
        edited.setFirstValue(i);
        edited.keep(Versions::Change::ofData, static_cast<std::size_t>(i));
        steps.push_back(bytesOf(edited.document));
    }
    for (std::size_t i = 120; i-- > 0;) {
        const auto version = edited.versions.undo();
        ASSERT_EQ(bytesOf(version.document), steps[i]) << i;
        ASSERT_EQ(version.lines, i);
    }
    EXPECT_FALSE(edited.versions.canUndo());
    for (std::size_t i = 1; i <= 120; ++i)
        ASSERT_EQ(bytesOf(edited.versions.redo().document), steps[i]) << i;
    EXPECT_FALSE(edited.versions.canRedo());

    edited.versions.undo();
    edited.setFirstValue(-1);
    edited.keep(Versions::Change::ofData);
    EXPECT_FALSE(edited.versions.canRedo()) << "another way was taken";
}

TEST(Versions, HaveOneStepForSettingsInARowAndNoneForTheSelection) {
    Edited edited;
    const std::string first = bytesOf(edited.document);
    for (const double max : {5, 6, 7}) {
        edited.setX(max);
        edited.keep(Versions::Change::ofSetting);
    }
    EXPECT_EQ(bytesOf(edited.versions.undo().document), first);
    edited.versions.redo();
    edited.setFirstValue(3);
    edited.keep(Versions::Change::ofData);
    change(edited.document, [](Document &document) { document.markWalk = 1; });
    edited.keep(Versions::Change::ofView);
    edited.keep(Versions::Change::ofData); // of the same revision
    EXPECT_EQ(edited.versions.undo().document.axes[xAxis].range.max, 7);
    EXPECT_EQ(bytesOf(edited.versions.undo().document), first);
    EXPECT_FALSE(edited.versions.canUndo());
}

TEST(Versions, KnowWhichOfThemIsSaved) {
    Edited edited;
    edited.setX(5);
    edited.keep(Versions::Change::ofData);
    setSaved(edited.document);
    edited.keep(Versions::Change::ofData);
    edited.setX(6);
    edited.keep(Versions::Change::ofData);
    EXPECT_TRUE(edited.versions.undo().isSaved);
    EXPECT_FALSE(edited.versions.undo().isSaved) << "another is in the file by now";
}

TEST(Versions, TellLooksFromData) {
    Edited edited;
    const std::string before = bytesOf(edited.document);
    change(edited.document, [](Document &changed) { changed.title = "another"; });
    edited.keep(Versions::Change::ofLook);
    const std::string titled = bytesOf(edited.document);
    edited.setFirstValue(7);
    edited.keep(Versions::Change::ofData);
    change(edited.document, [](Document &changed) { changed.sources.pop_back(); });
    edited.keep(Versions::Change::ofLook);
    edited.versions.undo();
    EXPECT_EQ(bytesOf(edited.versions.undo().document), titled);
    EXPECT_EQ(bytesOf(edited.versions.undo().document), before);
}
