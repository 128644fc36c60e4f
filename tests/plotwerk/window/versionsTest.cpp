#include "plotwerk/window/versions.h"

#include "plotwerk/application/application.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/ranges.h"
#include "tests/plotwerk/files/fullDocument.h"
#include "tests/support/temporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>

using namespace plotwerk;

static std::string bytesOf(const Document &document) {
    return saved(document, false);
}

namespace fs = std::filesystem;

namespace {

// A document as a window has it.
struct Edited {
    Document document = fullDocument();
    Versions versions{document};

    void keep(Versions::Change kind, std::size_t lines = 0) {
        versions.keep(document, kind, lines);
    }
    Versions::Version undo() { return become(versions.undo(document)); }
    Versions::Version redo() { return become(versions.redo(document)); }
    // Its document is the one that is edited.
    Versions::Version become(Versions::Version version) {
        version.document.revision = document.revision + 1;
        document = std::move(version.document);
        versions.setRestored(document);
        return version;
    }
    void setX(double max, Versions::Change kind) {
        change(document, [&](Document &changed) { setRange(changed, xAxis, 0, max); });
        keep(kind);
    }
    void setFirstValue(double value, std::size_t lines = 0) {
        change(document,
               [&](Document &changed) { changed.sources[0].tables[0].y[0].values[0] = value; });
        keep(Versions::Change::ofData, lines);
    }
    void setTitle() {
        change(document, [](Document &changed) { changed.title = "another"; });
        keep(Versions::Change::ofLook);
    }
};

} // namespace

TEST(Versions, AreUndoneAndRedoneToTheSameBytes) {
    Edited edited;
    std::vector<std::string> steps{bytesOf(edited.document)};
    for (int i = 1; i <= 120; ++i) {
        edited.setFirstValue(i, static_cast<std::size_t>(i));
        steps.push_back(bytesOf(edited.document));
    }
    for (std::size_t i = 120; i-- > 0;) {
        ASSERT_EQ(edited.undo().lines, i);
        ASSERT_EQ(bytesOf(edited.document), steps[i]) << i;
    }
    EXPECT_FALSE(edited.versions.canUndo());
    for (std::size_t i = 1; i <= 120; ++i) {
        edited.redo();
        ASSERT_EQ(bytesOf(edited.document), steps[i]) << i;
    }
    EXPECT_FALSE(edited.versions.canRedo());

    edited.undo();
    edited.setFirstValue(-1);
    EXPECT_FALSE(edited.versions.canRedo()) << "another way was taken";
}

TEST(Versions, HaveOneStepForSettingsInARowAndNoneForTheSelection) {
    Edited edited;
    const std::string first = bytesOf(edited.document);
    for (const double max : {5, 6, 7}) edited.setX(max, Versions::Change::ofSetting);
    edited.undo();
    EXPECT_EQ(bytesOf(edited.document), first);
    edited.redo();
    edited.setFirstValue(3);
    change(edited.document, [](Document &document) { document.markWalk = 1; });
    edited.keep(Versions::Change::ofView);
    edited.keep(Versions::Change::ofData); // of the same revision
    edited.undo();
    EXPECT_EQ(edited.document.axes[xAxis].range.max, 7);
    change(edited.document, [](Document &document) { document.markWalk = 2; });
    edited.keep(Versions::Change::ofView);
    EXPECT_TRUE(edited.versions.canRedo());
    edited.setX(8, Versions::Change::ofSetting);
    EXPECT_FALSE(edited.versions.canRedo()) << "it would take another way than the user";
    edited.undo();
    EXPECT_EQ(bytesOf(edited.document), first);
    EXPECT_FALSE(edited.versions.canUndo());
}

TEST(Versions, KnowWhichOfThemIsSaved) {
    Edited edited;
    edited.setX(5, Versions::Change::ofData);
    setSaved(edited.document);
    edited.keep(Versions::Change::ofData);
    edited.setX(6, Versions::Change::ofData);
    EXPECT_TRUE(edited.undo().isSaved);
    EXPECT_FALSE(edited.undo().isSaved) << "another is in the file by now";
}

TEST(Versions, TellLooksFromData) {
    Edited edited;
    const std::string before = bytesOf(edited.document);
    edited.setTitle();
    const std::string titled = bytesOf(edited.document);
    edited.setFirstValue(7);
    change(edited.document, [](Document &changed) { changed.sources.pop_back(); });
    edited.keep(Versions::Change::ofLook);
    edited.undo();
    edited.undo();
    EXPECT_EQ(bytesOf(edited.document), titled);
    edited.undo();
    EXPECT_EQ(bytesOf(edited.document), before);
}

TEST(Versions, LeaveColumnsWhereTheyAre) {
    Edited edited;
    const auto place = [&] { return edited.document.sources[0].tables[0].y[0].values.data(); };
    const double *const before = place();
    edited.setTitle();
    edited.undo();
    EXPECT_EQ(place(), before);
    edited.redo();
    EXPECT_EQ(place(), before);
    edited.setFirstValue(7);
    edited.undo();
    EXPECT_NE(place(), before) << "the values before were kept";
}

// Some changes are added to the journal as messages, others write its document anew; steps back and
// forth are added to it.
TEST(Versions, ThatWereGoneBackToOutliveTheProcess) {
    const TemporaryFolder state;
    const fs::path own = state.path / "own";
    const fs::path copy = state.path / "copy";
    setenv("XDG_STATE_HOME", own.c_str(), 1);
    Application application;
    application.keepJournals();
    Document &document = application.create(fullDocument());
    Versions versions(document);
    const auto restore = [&](const Versions::Version &version) {
        application.restore(document, version.document, version.origins, version.isSaved);
        versions.setRestored(document);
    };
    const auto edit = [&](
                          const std::function<void(Document &)> &work,
                          const Journal::MessageAsData &message = [] { return std::nullopt; }) {
        change(document, work);
        application.record(document, {}, message);
        versions.keep(document, Versions::Change::ofData, 0);
    };
    const auto title = [&] {
        GatheredBytes message;
        message.putNumber('.');
        message.putText(document.title);
        return message;
    };
    const auto setTitle = [](Document &titled, std::string_view message) {
        ByteReader reader(message);
        EXPECT_EQ(reader.number<char>(), '.');
        change(titled, [&](Document &changed) { changed.title = reader.text(); });
    };
    std::minstd_rand random(5);
    for (int step = 0; step < 200; ++step) {
        switch (random() % 6) {
        case 0: edit([&](Document &edited) { edited.title = std::to_string(step); }, title); break;
        case 1:
            edit([&](Document &edited) {
                for (Table &table : edited.sources[0].tables)
                    for (Column &column : table.y)
                        if (!column.values.empty()) column.values[0] = step;
            });
            break;
        case 2:
            edit([&](Document &edited) { std::swap(edited.sources[0], edited.sources.back()); });
            break;
        case 3:
            if (versions.canRedo()) restore(versions.redo(document));
            break;
        default:
            if (versions.canUndo()) restore(versions.undo(document));
        }
        if (step % 10 != 0) continue;
        fs::remove_all(copy);
        fs::copy(own, copy, fs::copy_options::recursive);
        setenv("XDG_STATE_HOME", copy.c_str(), 1);
        Application other;
        other.keepJournals();
        other.recover([&](std::string_view message) { setTitle(*other.front(), message); });
        ASSERT_TRUE(other.front()) << step;
        ASSERT_EQ(bytesOf(*other.front()), bytesOf(document)) << step;
        ASSERT_EQ(hasUnsavedChanges(*other.front()), hasUnsavedChanges(document)) << step;
    }
}
