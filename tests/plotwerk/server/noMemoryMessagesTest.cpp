// A message that finds no memory, at whichever of its allocations, is refused and leaves all as it
// was, or is done; and what was done is in the journal.
#include "plotwerk/application/application.h"
#include "plotwerk/data/exchange.h"
#include "plotwerk/fit/documentFit.h"
#include "plotwerk/fit/documentFormula.h"
#include "plotwerk/model/selection.h"
#include "plotwerk/server/controlObject.h"
#include "plotwerk/window/versions.h"
#include "tests/plotwerk/files/fullDocument.h"
#include "tests/plotwerk/server/serverTest.h"
#include "tests/support/failingMemory.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace fs = std::filesystem;
using namespace plotwerk;

// Thousands of files are written: none is waited for.
extern "C" int fsync(int) {
    return 0;
}
extern "C" int sync_file_range(int, off64_t, off64_t, unsigned) {
    return 0;
}

namespace {

// Names that don't fit into a string itself, so that each copy of one is an allocation.
const std::string documentName = "the document of all these messages";
const std::string names[] = {documentName, "another document, behind it",
                             "another document, and its name", documentName + " copy"};
const std::string columnName = "a column with a long name";

// What is sent for an argument: a text by its keyword, anything else by its type, with all that is
// yes or no set to `yes`.
template<class T> T argument(const std::string &keyword, bool yes) {
    if constexpr (std::is_same_v<T, std::string>) {
        static const std::map<std::string, std::string> texts{
            {"newDocumentWithName", names[2]},
            {"sourceName", "a source with a long name"},
            {"source", "a source with a long name"},
            {"column", columnName},
            {"file", "data or a document in a file"},
            {"to", "something that needs an allocation"},
            {"as", "a picture or a document of its own"},
            {"savePDFofCompositionView", "a page of pictures.pdf"},
            {"openWith", "none"},
            {"varName", "report"},
            {"formulaText", "height_of_the_line*x+offset_of_the_line"},
            {"parameterList", "offset_of_all = 2!"},
            {"replaceDataformText", "x y z\n1 2 3\n4 5 6\n\n7 8\n"},
            {"readDataformText", "x y z\n1 2 3\n4 5 6\n\n7 8\n"},
            {"appendDataAndDrawInFastMode", "9 8 7 6\n\n1 2\n"}};
        const auto text = texts.find(keyword);
        return text == texts.end() ? documentName : text->second;
    } else if constexpr (std::is_same_v<T, bool>) {
        return yes;
    } else if constexpr (std::is_same_v<T, double>) {
        return keyword.ends_with("max") || keyword == "maxx" ? 3 : 1;
    } else if constexpr (std::is_same_v<T, std::int32_t>) {
        return 1;
    } else {
        return Rectangle(0, 0, 300, 200);
    }
}

// How a message is sent: within the first `allocations`, and to which document.
struct Sending {
    bool yes = false;
    bool toNobody = false;
    long allocations = std::numeric_limits<long>::max();
    bool reusesFreed = true;
};

using Arguments = Sending;
std::string answer;                                  // to the last message
using Contents = std::map<std::string, std::string>; // of documents, by their names

template<class Answer, class... Parameters>
void repeatMessage(ControlObject &object, const char *member,
                   Answer (ControlObject::*method)(const Parameters &...), const Sending &sending) {
    std::istringstream keywords(member);
    [[maybe_unused]] const auto next = [&]<class T>(const T *) {
        std::string keyword;
        std::getline(keywords, keyword, '_');
        T value = argument<T>(keyword, sending.yes);
        if constexpr (std::is_same_v<T, std::string>)
            if (sending.toNobody && value == documentName) value = "nobody";
        return value;
    };
    const std::tuple<Parameters...> arguments{next(static_cast<const Parameters *>(nullptr))...};
    std::apply(
        [&](const Parameters &...each) {
            const auto send = [&] {
                const FailingMemory failing(sending.allocations, sending.reusesFreed);
                return object.answerTo(member, method, each...);
            };
            if constexpr (std::is_void_v<Answer>)
                send(), answer = "";
            else // nobody is asked where there is no document to ask for
                answer = testing::PrintToString(sending.toNobody && sizeof...(each) == 0 ? Answer()
                                                                                         : send());
        },
        arguments);
}

const struct Message {
    std::string member;
    void (*send)(ControlObject &, const Sending &);
} messages[] = {
#include "repetitions.h"
};

Document exampleDocument() {
    Document document{.name = documentName};
    addData(document, "a source with a long name",
            "x \"another long name of a column\" \"" + columnName + "\" \"" + columnName +
                " error\"\n3 1 2 1\n1 2 1 2\n2 4 1 1\n4 3 9 2\n\n1 2\n0 3\n",
            '.');
    addData(document, "another source with a long name", "x w\n1 2\n2 1\n3 7\n", '.');
    selectByIndex(document, {0, 0}, false);
    markSelection(document);
    selectByIndex(document, {1, 1}, false);
    markSelection(document);
    selectByIndex(document, {3, 4}, true);
    setFormula(document, "slope_of_the_long_line*x+offset_of_all");
    fitDocument(document);
    return document;
}

class NoMemoryMessages : public testing::Test {
  protected:
    NoMemoryMessages() {
        setenv("XDG_STATE_HOME", (directory / "state").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", (directory / "state").c_str(), 1);
        setenv("PATH", directory.c_str(), 1);
        fs::create_directory(directory / "work");
        fs::current_path(directory / "work"); // where a relative path leads
        setLogLevel(static_cast<LogLevel>(-1));
        loadFonts();
    }
    ~NoMemoryMessages() override { fs::current_path("/"); }

    const TemporaryFolder folder;
    const fs::path &directory = folder.path;
    const Document example = exampleDocument();
};

const Document *documentIn(Application &application, const std::string &name) {
    try {
        return &application.document(name);
    } catch (const Refusal &) {
        return nullptr;
    }
}

// Of the open documents, or of those with unsaved changes.
Contents contentsIn(Application &application, bool areUnsaved) {
    Contents all;
    for (const std::string &name : names) {
        const Document *document = documentIn(application, name);
        if (document && (!areUnsaved || hasUnsavedChanges(*document)))
            all[name] = saved(*document, true);
    }
    return all;
}

// Two open documents, something on the clipboard, a page. With isSaved the one in front is as in
// its file, and has no journal yet.
struct World {
    Application application;
    ControlObject object{application};

    World(const Document &example, bool isSaved) {
        const fs::path state = std::getenv("XDG_STATE_HOME");
        fs::remove_all(state);
        fs::create_directory(state);
        for (const auto &entry : fs::directory_iterator(fs::current_path()))
            fs::remove_all(entry.path());
        Document other = example;
        other.name = names[2];
        std::ofstream("data or a document in a file")
            << (isSaved ? saved(other, false) : "x y\n1 2\n2 3\n");
        application.keepJournals();
        application.create({.name = names[1]});
        Document &document = isSaved ? application.add(example) : application.create(example);
        if (isSaved) document.path = fs::current_path() / "its own file, with a long name";
        application.newComposition(300, 200);
        application.addToComposition(document, {}, 0, 0);
        application.copyText("1 2\n3 4\n5 6 and no more than this\n");
    }

    // All that a message could change, in the process. The document that stands for a file that
    // couldn't be read is closed first.
    std::string state() {
        try {
            if (application.front()) application.requireRead(*application.front());
        } catch (const Refusal &) {
            application.close(*application.front(), false);
        }
        const Document *const front = application.front();
        if (!front) return "no document";
        std::string text = front->name + ' ' + saved(*front, true) +
                           application.clipboard.dataText + application.clipboard.picture.string() +
                           application.decimalSeparator;
        if (const Document *document = documentIn(application, documentName))
            text += saved(*document, true) + std::to_string(document->revision) + ' ' +
                    std::to_string(document->savedRevision) + document->path.string();
        try {
            application.addToComposition(*front, {}, 0, 0);
        } catch (const Refusal &) {
            text += "no page";
        }
        return text;
    }
};

// By another process, in which memory is full after that number of allocations. They stay behind.
Contents broughtBack(long allocations = std::numeric_limits<long>::max()) {
    Application application;
    ControlObject object(application);
    application.keepJournals();
    {
        const FailingMemory failing(allocations);
        application.recover([&](std::string_view message) { object.repeat(message); });
    }
    return contentsIn(application, false);
}

// Names and sizes of all files but journals.
std::set<std::string> filesIn(const fs::path &directory) {
    std::set<std::string> files;
    for (const auto &entry : fs::recursive_directory_iterator(directory))
        if (entry.is_regular_file() && entry.path().extension() != ".journal")
            files.insert(entry.path().string() + ' ' + std::to_string(entry.file_size()));
    return files;
}

// What a message has answered, and what there is then.
struct Result {
    std::string answer, state;
    std::set<std::string> files;

    bool operator==(const Result &) const = default;
};

Result resultIn(World &world) {
    return {answer, world.state(), filesIn(fs::current_path().parent_path())};
}

} // namespace

TEST_F(NoMemoryMessages, AreRefusedOrDoneAndInTheJournal) {
    int refused = 0;
    for (const Message &message : messages) {
        if (message.member.find("regex") != message.member.npos)
            continue; // RE2 has its memory or isn't begun
        for (const bool yes : {false, true}) {
            Result before, done;
            std::string neutral, reason;
            {
                World world(example, yes);
                before = resultIn(world);
                message.send(world.object, {yes, true});
                neutral = answer;
            }
            {
                World world(example, yes);
                message.send(world.object, {yes});
                reason = world.application.lastError;
                done = resultIn(world);
            }
            before.answer = reason.empty() ? neutral : done.answer;
            bool failed = true;
            for (long allocations = 0; failed; allocations += 1 + allocations / 3) {
                const std::string what =
                    message.member + ", " + std::to_string(allocations) + (yes ? " yes" : " no");
                Contents open, unsaved;
                {
                    World world(example, yes);
                    ASSERT_NO_THROW(message.send(world.object, {yes, false, allocations})) << what;
                    failed = FailingMemory::hasFailed();
                    const std::string &error = world.application.lastError;
                    const bool isRefused = error != reason;
                    refused += isRefused;
                    EXPECT_TRUE(!isRefused || holds(error, "memory")) << what;
                    EXPECT_TRUE(resultIn(world) == (isRefused ? before : done)) << what;
                    open = contentsIn(world.application, false);
                    unsaved = contentsIn(world.application, true);
                }
                const Contents back = broughtBack();
                EXPECT_TRUE(std::ranges::includes(open, back)) << what;
                EXPECT_TRUE(std::ranges::includes(back, unsaved)) << what;
            }
        }
    }
    EXPECT_GT(refused, 500);
}

// At each allocation of the work itself, which is no more than the first hundreds.
TEST_F(NoMemoryMessages, LeaveTheDocumentAsItWasOrAreDone) {
    for (const Message &message : messages) {
        if (message.member.find("regex") != message.member.npos) continue;
        std::set<std::string> states;
        bool failed = true;
        for (long allocations = 0; failed && allocations < 300; ++allocations) {
            Application application;
            ControlObject object(application);
            application.add(example).parameters[0].value = 5;
            try {
                message.send(object, {true, false, allocations, false});
            } catch (const std::bad_alloc &) { // not even for the reason
            }
            failed = FailingMemory::hasFailed();
            const Document *document = documentIn(application, documentName);
            states.insert(document ? saved(*document, true) : "");
        }
        EXPECT_LE(states.size(), 2U) << message.member;
    }
}

TEST_F(NoMemoryMessages, AreBroughtBackAllOrLater) {
    int later = 0;
    bool failed = true;
    for (long allocations = 0; failed; allocations += 1 + allocations / 16) {
        Contents open;
        {
            World world(example, false);
            for (const Message &message : messages)
                for (const char *each : {"setXTitle", "pasteData", "diff", "startFit", "readData"})
                    if (message.member.starts_with(each)) message.send(world.object, {});
            open = contentsIn(world.application, false);
        }
        Contents some;
        try {
            some = broughtBack(allocations);
        } catch (const std::bad_alloc &) {
        }
        failed = FailingMemory::hasFailed();
        EXPECT_TRUE(std::ranges::includes(open, some)) << allocations;
        later += some.size() < open.size();
        ASSERT_TRUE(broughtBack() == open) << allocations;
    }
    EXPECT_GT(later, 20);
}

TEST_F(NoMemoryMessages, AreUndoneInTheJournalTooOrNotAtAll) {
    int undone = 0, kept = 0;
    bool failed = true;
    for (long allocations = 0; failed; allocations += 1 + allocations / 16) {
        std::string now;
        {
            World world(example, false);
            Document &document = world.application.document(documentName);
            Versions versions(document);
            std::vector<std::string> states{saved(document, true)};
            for (const char *title : {"something that needs an allocation", "another such thing"}) {
                versions.keep(document, Versions::Change::ofData, 0);
                change(document, [&](Document &changed) {
                    changed.title = title;
                    changed.sources[0].tables[0].y[0].values.assign(4, title[0]);
                });
                world.application.record(document, {}, [] { return std::nullopt; });
                states.push_back(saved(document, true));
            }
            const auto undo = [&] {
                const FailingMemory failing(allocations);
                versions.keep(document, Versions::Change::ofData, 0);
                Versions::Version version = versions.undo(document);
                world.application.restore(document, std::move(version.document), version.origins,
                                          version.isSaved);
                versions.setRestored(document);
                states.pop_back();
                ++undone;
            };
            try {
                undo();
                undo(); // what the first one took from the journal is set aside again
            } catch (const std::bad_alloc &) {
                ++kept;
            }
            failed = FailingMemory::hasFailed();
            now = saved(document, true);
            EXPECT_TRUE(now == states.back()) << allocations;
            versions.keep(document, Versions::Change::ofData, 0);
            if (states.size() > 1) {
                EXPECT_TRUE(saved(versions.undo(document).document, true) == states.end()[-2]);
            }
        }
        EXPECT_TRUE(broughtBack()[documentName] == now) << allocations;
    }
    EXPECT_GT(undone, 10);
    EXPECT_GT(kept, 10);
}
