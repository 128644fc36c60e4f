// A message that finds no memory, at whichever of its allocations, is refused and leaves all as it
// was, or is done; and what was done is in the journal.
#include "plotwerk/application/application.h"
#include "plotwerk/data/exchange.h"
#include "plotwerk/fit/documentFit.h"
#include "plotwerk/fit/documentFormula.h"
#include "plotwerk/model/selection.h"
#include "plotwerk/server/controlObject.h"
#include "tests/plotwerk/files/fullDocument.h"
#include "tests/support/failingMemory.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace fs = std::filesystem;
using namespace plotwerk;

namespace {

// Names that don't fit into a string itself, so that each copy of one is an allocation.
const std::string documentName = "the document of all these messages";
const std::string columnName = "a column with a long name";

// What is sent for an argument: a text by its keyword, anything else by its type, with all that is
// yes or no set to `yes`.
template<class T> T argument(const std::string &keyword, bool yes) {
    if constexpr (std::is_same_v<T, std::string>) {
        static const std::map<std::string, std::string> texts{
            {"newDocumentWithName", "another document, and its name"},
            {"sourceName", "a source with a long name"},
            {"regexSourceName", "a source with.*"},
            {"source", "a source with a long name"},
            {"regexSource", "a source with.*"},
            {"column", columnName},
            {"regexColumn", "a column.*"},
            {"file", "data in a file.txt"},
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
};

struct Outcome {
    std::string answer;
    bool hasFailed = false; // an allocation
};

using Arguments = Sending;
Outcome outcome;

template<class T> std::string shown(const T &value) {
    return testing::PrintToString(value);
}

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
                const FailingMemory failing(sending.allocations);
                return object.answerTo(member, method, each...);
            };
            if constexpr (std::is_void_v<Answer>)
                send(), outcome.answer = "";
            else
                outcome.answer = shown(send());
        },
        arguments);
    outcome.hasFailed = FailingMemory::hasFailed();
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
                " error\"\n3 1 2 1\n1 2 1 2\n2 4 1 1\n4 3 9 2\n",
            '.');
    addData(document, "another source with a long name", "x w\n1 2\n2 1\n3 7\n", '.');
    selectByIndex(document, {0, 0}, false);
    markSelection(document);
    selectByIndex(document, {1, 1}, false);
    markSelection(document);
    setFormula(document, "slope_of_the_long_line*x+offset_of_all");
    fitDocument(document);
    return document;
}

class NoMemoryMessages : public testing::Test {
  protected:
    NoMemoryMessages() : path(std::getenv("PATH")), home(fs::current_path()) {
        std::string pattern = (fs::temp_directory_path() / "noMemory-XXXXXX").string();
        directory = mkdtemp(pattern.data());
        setenv("XDG_STATE_HOME", (directory / "state").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", (directory / "state").c_str(), 1);
        setenv("PATH", directory.c_str(), 1);
        fs::create_directory(directory / "work");
        fs::current_path(directory / "work"); // where a relative path leads
        setLogLevel(static_cast<LogLevel>(-1));
    }
    ~NoMemoryMessages() override {
        setLogLevel(LogLevel::info);
        fs::current_path(home);
        setenv("PATH", path.c_str(), 1);
        unsetenv("XDG_STATE_HOME");
        unsetenv("XDG_RUNTIME_DIR");
        fs::remove_all(directory);
    }

    // Names and sizes, journals aside.
    std::string files() const {
        std::set<std::string> lines;
        for (const auto &entry : fs::recursive_directory_iterator(directory))
            if (entry.is_regular_file() && entry.path().string().find("journal") == entry.path().string().npos)
                lines.insert(entry.path().string() + ' ' + std::to_string(entry.file_size()) + '\n');
        std::string all;
        for (const std::string &line : lines) all += line;
        return all;
    }

    fs::path directory;
    const Document example = exampleDocument();

  private:
    const std::string path;
    const fs::path home;
};

// Two open documents, something on the clipboard, a page. With isSaved nothing has changed since,
// and there is no journal yet.
struct World {
    Application application;
    ControlObject object{application};

    World(const Document &example, bool isSaved) {
        const fs::path state = std::getenv("XDG_STATE_HOME");
        fs::remove_all(state);
        fs::create_directory(state);
        for (const auto &entry : fs::directory_iterator(fs::current_path()))
            fs::remove_all(entry.path());
        std::ofstream("data in a file.txt") << "x y\n1 2\n2 3\n";
        application.keepJournals();
        application.create({.name = "another document, behind it"});
        Document &document = isSaved ? application.add(example) : application.create(example);
        if (isSaved) document.path = fs::current_path() / "its own file, with a long name";
        application.newComposition(300, 200);
        application.addToComposition(document, {}, 0, 0);
        application.copyText("1 2\n3 4\n5 6 and no more than this\n");
    }

    const Document *named(const std::string &name) {
        try {
            return &application.document(name);
        } catch (const Refusal &) {
            return nullptr;
        }
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
        std::string text = front->name + ' ' + saved(*front, true) + application.clipboard.dataText +
                           application.clipboard.picture.string() + application.decimalSeparator;
        if (const Document *document = named(documentName))
            text += saved(*document, true) + std::to_string(document->revision) + ' ' +
                    std::to_string(document->savedRevision) + document->path.string();
        try {
            application.addToComposition(*front, {}, 0, 0);
        } catch (const Refusal &) {
            text += "no page";
        }
        return text;
    }

    // By name, what the open documents hold, and of those that nobody has saved an empty text.
    std::map<std::string, std::string> contents(bool areUnsaved) {
        std::map<std::string, std::string> all;
        for (const std::string &name :
             {documentName, std::string("another document, behind it"),
              std::string("another document, and its name"), documentName + " copy"})
            if (const Document *document = named(name);
                document && (!areUnsaved || hasUnsavedChanges(*document)))
                all[name] = saved(*document, true);
        return all;
    }
};

std::map<std::string, std::string> broughtBack() {
    Application application;
    ControlObject object(application);
    application.keepJournals();
    application.recover([&](std::string_view message) { object.repeat(message); });
    std::map<std::string, std::string> contents;
    while (const Document *front = application.front()) {
        if (contents.contains(front->name) || front->name == "Untitled") break;
        contents[front->name] = saved(*front, true);
        application.close(*front, false);
    }
    return contents;
}

} // namespace

TEST_F(NoMemoryMessages, AreRefusedOrDoneAndInTheJournal) {
    loadFonts();
    for (const Message &message : messages) {
        for (const bool variant : {false, true}) {
            std::string beforeFiles, doneFiles, before, done, right, neutral;
            {
                World world(example, variant);
                beforeFiles = files(), before = world.state();
                world.object.answerTo("", &ControlObject::didSaveSucceed_, documentName);
                message.send(world.object, {variant, true});
                neutral = outcome.answer;
            }
            std::string reason;
            {
                World world(example, variant);
                message.send(world.object, {variant});
                right = outcome.answer, doneFiles = files(), done = world.state();
                reason = world.application.lastError;
            }
            long allocations = 0;
            int refused = 0;
            for (bool failed = true; failed; allocations += 1 + allocations / 8) {
                std::map<std::string, std::string> open, unsaved;
                const std::string what = message.member + ", allocation " +
                                         std::to_string(allocations) + (variant ? ", yes" : "");
                {
                    World world(example, variant);
                    try {
                        message.send(world.object, {variant, false, allocations});
                    } catch (const std::exception &exception) {
                        ADD_FAILURE() << what << ": " << exception.what();
                        continue;
                    }
                    failed = outcome.hasFailed;
                    const std::string &error = world.application.lastError;
                    if (error == reason) {
                        EXPECT_EQ(outcome.answer, right) << what;
                        EXPECT_TRUE(world.state() == done) << what;
                        EXPECT_TRUE(files() == doneFiles) << what << files() << doneFiles;
                    } else {
                        ++refused;
                        EXPECT_TRUE(error.find("memory") != error.npos) << what << error;
                        if (!reason.empty()) { EXPECT_EQ(outcome.answer, neutral) << what; }
                        EXPECT_TRUE(world.state() == before) << what;
                        EXPECT_EQ(files(), beforeFiles) << what;
                    }
                    open = world.contents(false), unsaved = world.contents(true);
                }
                const auto back = broughtBack();
                EXPECT_TRUE(std::includes(open.begin(), open.end(), back.begin(), back.end())) << what;
                EXPECT_TRUE(std::includes(back.begin(), back.end(), unsaved.begin(), unsaved.end())) << what;
            }
            std::printf("%s: %ld allocations, %d refused %s\n", message.member.c_str(), allocations, refused, reason.c_str());
        }
    }
}
