// The open documents, their files and their journals.
#include "plotwerk/application/application.h"

#include "plotwerk/application/desktop.h"
#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/files/stateDirectory.h"
#include "plotwerk/model/change.h"
#include "tests/plotwerk/base/askedToEnd.h"
#include "tests/plotwerk/files/fullDocument.h"
#include "tests/plotwerk/server/serverTest.h"

#include <cstdlib>
#include <fstream>
#include <new>
#include <regex>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace plotwerk;

namespace {

struct FakeDesktop final : Desktop {
    void opened(Document &document) override {
        if (!hasMemory) throw std::bad_alloc();
        told += "opened " + document.name + '\n';
    }
    void closing(const Document &document) override { told += "closing " + document.name + '\n'; }
    void activated(const Document &document) override { told += "front " + document.name + '\n'; }
    bool asksToSave(const Document &document) override {
        told += "save " + document.name + "?\n";
        return asks;
    }
    void copyText(const std::string &text) override { told += "copied " + text + '\n'; }
    void copyPicture(const Document &document) override { told += "drew " + document.name + '\n'; }
    std::optional<std::string> foreignText() override { return foreign; }

    bool hasMemory = true, asks = true;
    std::optional<std::string> foreign;
    std::string told;
};

struct Journaling : Application {
    Journaling() { keepJournals(); }
};

} // namespace

class ApplicationTest : public testing::Test {
  protected:
    ApplicationTest() {
        setenv("XDG_STATE_HOME", directory.c_str(), 1);
        journals = stateDirectory("journal");
    }
    ~ApplicationTest() override { unsetenv("XDG_STATE_HOME"); }

    // A journal that a process has left behind.
    void leave(const std::string &name, std::int64_t stamp,
               const std::vector<std::string> &messages, bool isIncomplete = false) const {
        JournalFile file(journals / (name + ".journal"), {.name = name}, stamp);
        for (const std::string &message : messages) file.append({message});
        if (isIncomplete) file.setIncomplete();
    }

    bool isInUse(const std::string &name) const {
        return !LeftJournal::lock(journals / (name + ".journal"));
    }

    static void retitle(Application &application, const std::string &title) {
        Document &document = *application.front();
        change(document, [&](Document &changed) { changed.title = title; });
        application.record(document, {}, [] { return std::nullopt; });
    }

    static std::string logOf(const std::function<void()> &work) {
        testing::internal::CaptureStderr();
        work();
        return testing::internal::GetCapturedStderr();
    }

    const TemporaryFolder folder;
    const fs::path &directory = folder.path;
    fs::path journals;
};

TEST_F(ApplicationTest, BringsBackEachDocumentByItself) {
    leave("front", 30, {"title", ","}, true);
    leave("behind", 10, {"title"});
    std::ofstream(journals / "none.journal") << "no journal at all";
    leave("wrong", 5, {"title", "refused", "title"});
    Journaling application;
    application.add({.name = "open"});
    application.decimalSeparator = '.';
    application.lastError = "what was refused before";
    const auto repeat = [&](std::string_view message) {
        if (message == "refused") application.lastError = "the reason";
        if (message == ",") application.decimalSeparator = ',';
        EXPECT_THROW(application.document("open"), Refusal) << "none but its own is there";
        change(*application.front(), [&](Document &document) { document.title += message; });
    };
    const std::regex times(" as it was on [-0-9]+ at [:0-9]*[0-9]");
    const std::string log =
        std::regex_replace(logOf([&] { application.recover(repeat); }), times, "");
    const std::string none = (journals / "none.journal").string();
    for (const std::string &line : std::vector<std::string>{
             "error: can't bring back \"wrong\": can't be repeated: the reason\n",
             "error: can't bring back a document: " + none + ": ",
             "info: brought back \"behind\"\n",
             "info: brought back \"front\", without its last changes\n"})
        EXPECT_TRUE(holds(log, line)) << log;
    EXPECT_EQ(application.front()->name, "front");
    EXPECT_EQ(application.document("front").title, "title,");
    EXPECT_EQ(application.document("behind").title, "title");
    EXPECT_EQ(application.document("open").title, "");
    EXPECT_THROW(application.document("wrong"), Refusal);
    EXPECT_EQ(application.lastError + application.decimalSeparator, ".");
    // journals go on as those of open documents, but for the one that may be mended
    EXPECT_EQ(journalPaths(journals).size(), 4U);
    EXPECT_TRUE(isInUse("front") && isInUse("behind") && !isInUse("wrong"));
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(holds(logOf([&] { application.recover(repeat); }), ": the reason\n")) << i;
    const fs::path emptied = journals / "emptied.journal";
    std::ofstream(emptied).close();
    {
        const AskedToEnd asked;
        application.removeOldJournals();
        EXPECT_TRUE(fs::exists(emptied)) << "maybe one that was not tried";
    }
    application.removeOldJournals();
    EXPECT_FALSE(fs::exists(emptied));
}

// Their order stays even where bringing back ends after any of them, for it is that of the stamps.
TEST_F(ApplicationTest, BringsBackTheDocumentsThatWereInFrontLastFirstAndInTheirOrder) {
    const std::vector<std::string> names{"one", "two", "three", "four"};
    for (std::size_t i = 0; i < names.size(); ++i)
        leave(names[i], static_cast<std::int64_t>(i), {"title"});
    leave("next", 9, {"too much"});
    std::string order;
    {
        Journaling application;
        application.add({.name = "open"});
        application.recover([&](std::string_view message) {
            order += application.front()->name + ' ';
            if (message == "too much") application.lastError = message;
        });
        EXPECT_EQ(order, "next four three two one ");
        for (std::size_t i = names.size(); i > 1; --i) {
            EXPECT_EQ(application.front()->name, names[i - 1]);
            if (i > 2) application.close(*application.front(), false);
        }
    }
    EXPECT_EQ(LeftJournal::lock(journals / "one.journal")->state.stamp, 0);
    EXPECT_EQ(LeftJournal::lock(journals / "two.journal")->state.stamp, 1);
}

TEST_F(ApplicationTest, BringsBackLongNamesTwiceAndOrdersThemWhereTheClockWasSetBack) {
    const std::string longest(1000, 'n');
    constexpr std::int64_t future = std::int64_t{1} << 62;
    for (const int i : {1, 2})
        const JournalFile left(JournalFile::freePath(journals), {.name = longest}, future + i);
    {
        Journaling application;
        application.recover([](std::string_view) {});
        EXPECT_EQ(application.front()->name, longest);
        application.close(*application.front(), false);
        EXPECT_TRUE(application.front()->name.starts_with(longest.substr(0, 900)));
        application.create({.name = "later"});
    }
    const std::vector<std::string> left = Journaling().leftDocuments();
    EXPECT_EQ(left.size(), 2U);
    EXPECT_TRUE(left.back().starts_with("\"later\"")) << left.back();
}

TEST_F(ApplicationTest, NamesTheTenYoungestThatAreLeftAndCountsTheOthers) {
    int count = 0;
    for (const auto &[wanted, first] : {std::pair{10, "\"d1\" as it was on "},
                                        {11, "one older document"},
                                        {12, "2 older documents"}}) {
        for (; count < wanted; ++count) leave("d" + std::to_string(count + 1), count, {});
        const std::vector<std::string> told = Journaling().leftDocuments();
        EXPECT_EQ(told.size(), std::min(wanted, 11));
        EXPECT_TRUE(told.front().starts_with(first)) << told.front();
        EXPECT_TRUE(told.back().starts_with("\"d" + std::to_string(wanted) + "\" as it was on "));
    }
}

// While one is brought back, the limit holds for it and the open ones together.
TEST_F(ApplicationTest, CountsTheOpenDocumentsWhileOneIsBroughtBack) {
    leave("other", 1, {"message"});
    Journaling application;
    application.add({.name = "open", .formula = std::string(6'000'000, 'x')});
    setBound("documents=10");
    application.recover([&](std::string_view) {
        EXPECT_THROW(requireRoom(5e6), Refusal);
        EXPECT_NO_THROW(requireRoom(3e6));
    });
    EXPECT_EQ(application.front()->name, "other");
    EXPECT_NO_THROW(requireRoom(3e6)) << "counted once";
    setBound("documents=2000");
}

TEST_F(ApplicationTest, LeavesWhatAnotherProcessBringsBackMeanwhile) {
    leave("other", 1, {"message"});
    leave("own", 2, {"message"});
    Journaling application;
    std::optional<LeftJournal> taken;
    const std::string log = logOf([&] {
        application.recover(
            [&](std::string_view) { taken = LeftJournal::lock(journals / "other.journal"); });
    });
    EXPECT_EQ(application.front()->name, "own");
    EXPECT_FALSE(holds(log, "other")) << log;
}

TEST_F(ApplicationTest, GivesUpAJournalThatEndsTheProcess) {
    leave("deadly", 1, {"message"});
    const auto bringBack = [] {
        Journaling().recover([](std::string_view) { _exit(3); });
        _exit(0);
    };
    for (const int status : {3, 3, 3, 0})
        EXPECT_EXIT(bringBack(), testing::ExitedWithCode(status), "");
}

// However often; each time in the middle of the first one's messages.
TEST_F(ApplicationTest, CanBeAskedToEndWhileItBringsBack) {
    leave("behind", 1, {"message"});
    leave("front", 2, {"message", "message"});
    const auto messagesBefore = [&](bool end) {
        std::optional<AskedToEnd> asked;
        int messages = 0;
        Journaling().recover([&](std::string_view) {
            if (++messages == 1 && end) asked.emplace();
        });
        return messages;
    };
    for (int i = 0; i < 4; ++i) EXPECT_EQ(messagesBefore(true), 1) << i;
    EXPECT_EQ(messagesBefore(false), 3);
}

TEST_F(ApplicationTest, SavesWhatWasOpenedInItsOwnFile) {
    Application application;
    const std::string path = directory / "saved";
    application.save(application.create({.name = "document"}), path, false, true);
    application.close(*application.front(), false);
    application.open(path, false);
    retitle(application, "new");
    EXPECT_EQ(logOf([&] { application.save(*application.front(), "", false, true); }),
              "plotwerkd: info: saved \"document\" in " + path + '\n');
    EXPECT_FALSE(hasUnsavedChanges(*application.front()));
    application.close(*application.front(), false);
    const Document &opened = application.open(path, false);
    EXPECT_EQ(opened.title, "new");
    application.savePicture(opened, path, PictureKind::pdf);
    EXPECT_TRUE(hasUnsavedChanges(opened)) << "its file is a picture now";
    fs::create_directory_symlink(directory, directory / "link");
    application.save(opened, directory / "link/saved", false, false);
    EXPECT_FALSE(hasUnsavedChanges(opened)) << "its own file, spelled otherwise";
    application.save(application.create({}), directory / "link/saved", false, true);
    EXPECT_TRUE(hasUnsavedChanges(opened)) << "its file is another's";
    EXPECT_FALSE(hasUnsavedChanges(*application.front()));
}

TEST_F(ApplicationTest, BringsBackTheRangesOfADocumentThatWasOpenedAgain) {
    const fs::path file = directory / "file";
    std::string ranges;
    {
        Journaling application;
        application.save(application.create(smallDocument()), file, false, true);
        retitle(application, "changed");
        const std::string before = saved(*application.front(), false);
        ranges = saved(application.open(file, true), false);
        EXPECT_NE(ranges, before);
    }
    Journaling next;
    next.recover([](std::string_view) {});
    EXPECT_EQ(saved(*next.front(), false), ranges);
}

TEST_F(ApplicationTest, TellsAtItsEndWhichChangesAreLost) {
    Journaling application;
    application.create({.name = "document"});
    retitle(application, "title");
    EXPECT_TRUE(holds(logOf([&] { application.leave(); }), "\"document\" can be brought back"));
    fs::remove_all(journals);
    std::ofstream(journals) << "in the way";
    EXPECT_EQ(logOf([&] { application.tellLeftJournals(); }),
              "plotwerkd: warning: can't look for documents in " + journals.string() +
                  ": Not a directory\n");
    application.create({.name = "other"});
    retitle(application, "title");
    const std::string log = logOf([&] { application.leave(); });
    for (const char *name : {"document", "other"})
        EXPECT_TRUE(holds(log, std::string(name) + "\" are lost\n"));
}

TEST_F(ApplicationTest, LeavesNothingBehindOfManyUnchangedDocuments) {
    {
        Journaling application;
        for (int i = 0; i < 502; ++i) application.create({});
        application.leave();
    }
    Journaling next;
    EXPECT_EQ(next.leftDocuments(), std::vector<std::string>{});
    EXPECT_EQ(journalPaths(journals).size(), 2U) << "the rest could take long";
    next.removeOldJournals();
    EXPECT_TRUE(journalPaths(journals).empty());
}

TEST_F(ApplicationTest, KeepsUnsavedWorkInTheHomeUnlessToldAnotherFolder) {
    const std::string home = std::getenv("HOME");
    setenv("HOME", directory.c_str(), 1);
    setenv("XDG_STATE_HOME", "relative", 1);
    EXPECT_EQ(stateDirectory(), directory / ".local/state/plotwerk");
    unsetenv("HOME");
    EXPECT_THROW(stateDirectory(), Refusal);
    setenv("HOME", home.c_str(), 1);
}

TEST_F(ApplicationTest, TakesInNothingThatHasNoWindow) {
    Application application;
    application.create({.name = "open"});
    FakeDesktop desktop;
    desktop.hasMemory = false;
    application.desktop = &desktop;
    EXPECT_THROW(application.create({.name = "new"}), std::bad_alloc);
    EXPECT_EQ(application.front()->name, "open");
    EXPECT_THROW(application.document("new"), Refusal);
}

TEST_F(ApplicationTest, TellsItsDesktopWhatHappens) {
    setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
    Application application;
    FakeDesktop desktop;
    application.desktop = &desktop;
    const auto pasted = [&] {
        return application.pasted().dataText + application.pasted().decimalSeparator;
    };
    application.create({.name = "one"});
    change(application.create({.name = "two"}), [](Document &) {});
    application.activate(application.document("one"));
    application.close(application.document("two"), true);
    EXPECT_EQ(application.document("two").name, "two") << "which asks the user first";
    desktop.asks = false;
    application.close(application.document("two"), true);
    application.close(*application.front(), true);
    application.copyPicture(*application.front(), PictureKind::pdf);
    application.decimalSeparator = ',';
    application.copyText("1,5");
    application.decimalSeparator = '.';
    EXPECT_EQ(desktop.told,
              "opened one\nopened two\nfront one\nsave two?\nsave two?\n"
              "closing two\nclosing one\nopened Untitled\ndrew Untitled\ncopied 1,5\n");
    EXPECT_EQ(pasted(), "1,5,");
    desktop.foreign = "1.5";
    EXPECT_EQ(pasted(), "1.5.");
    const std::string picture = directory / "a.svg";
    EXPECT_EQ(
        logOf([&] { application.savePicture(*application.front(), picture, PictureKind::pdf); }),
        "plotwerkd: info: saved the picture of \"Untitled\" in " + picture + '\n');
    unsetenv("XDG_RUNTIME_DIR");
}

// None of so long a name can be there.
TEST_F(ApplicationTest, NamesWhatStandsForAFileThatCannotBeReadAfterIt) {
    for (const std::size_t length : {255U, 256U}) {
        Application application;
        EXPECT_THROW(application.open(directory / std::string(length, 'n'), false), Refusal);
        EXPECT_EQ(application.front()->name, length == 255 ? std::string(255, 'n') : "Untitled");
    }
}
