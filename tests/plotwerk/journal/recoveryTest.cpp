// What plotwerkd has answered outlives it.
#include "plotwerk/journal/journalFile.h"
#include "tests/plotwerk/server/randomMessages.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <map>
#include <re2/re2.h>
#include <set>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

class RecoveryTest : public ServerTest {
  protected:
    // Ends it by the signal, and starts another one.
    std::string die(int signal, const std::vector<std::string> &arguments) {
        plotwerk.reset();
        program->sendSignal(signal);
        const Output output = program->finish();
        EXPECT_EQ(output.status == 0, signal == SIGTERM) << output.err;
        bus.waitForNoOwner(busName);
        start(arguments);
        return output.err;
    }

    std::size_t journals() const {
        return plotwerk::journalPaths(stateDirectory / "journal").size();
    }

    using Documents = std::vector<std::pair<std::string, std::string>>;

    // Of all open documents, the front one first, names and contents in CBOR. Closes them. An
    // untouched "Untitled" behind them is none of them.
    Documents documents() {
        Documents all;
        const std::string copy = pathOf("copy");
        const auto add = [&](const std::string &name) {
            plotwerk->saveDocument_to_binary_(name, copy, true);
            EXPECT_TRUE(plotwerk->didSaveSucceed_(name)) << name;
            // a name that holds the time holds another, perhaps longer, when its message is sent
            // again
            static const RE2 time(
                "(?:dname.)?([A-Za-z]{0,9}) [0-9]{2}:[0-9]{2}:[0-9]{2}(?:#[0-9]+)?", RE2::Latin1);
            std::string bytes = bytesOf(copy);
            RE2::GlobalReplace(&bytes, time, "\\1 hh:mm:ss");
            all.emplace_back(name, std::move(bytes));
        };
        closeAll(add);
        add("Untitled");
        const auto untouched = all.back();
        all.pop_back();
        if (all.back() == untouched) all.pop_back();
        return all;
    }

    static std::string differenceOf(const Documents &got, const Documents &wanted) {
        std::string text;
        for (std::size_t i = 0; i < std::max(got.size(), wanted.size()); ++i) {
            const auto [name, bytes] = i < got.size() ? got[i] : Documents::value_type();
            const auto [wantedName, other] =
                i < wanted.size() ? wanted[i] : Documents::value_type();
            text += '"' + name + "\", wanted \"" + wantedName + "\"\n";
            if (bytes == other) continue;
            const auto at = std::mismatch(bytes.begin(), bytes.end(), other.begin(), other.end());
            const std::size_t from = std::max<long>(0, at.first - bytes.begin() - 60);
            for (const std::string &all : {bytes, other})
                if (from < all.size()) text += testing::PrintToString(all.substr(from, 120)) + '\n';
        }
        return text;
    }

  private:
};

TEST_F(RecoveryTest, BringsBackWhatNoFileHolds) {
    start();
    const std::string text = file("data", "x a\n1 2\n2 4\n");
    const auto read = [&](const std::string &document, const char *data) {
        plotwerk->replaceDataformText_of_source_doRangeOverAll_(data, document, "Data", false);
    };
    for (const char *name : {"empty", "closed", "kept", "saved", "changed"}) {
        plotwerk->newDocumentWithName_(name);
        if (*name != 'e') read(name, "1 2\n");
        if (*name == 's' || std::string_view(name) == "changed")
            plotwerk->saveDocument_as_binary_(name, pathOf(name), false);
    }
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("saved", 0, 0, false);
    plotwerk->saveDocument_to_binary_("changed", pathOf("a copy"), false);
    plotwerk->setDeciSeparator_(1);
    read("changed", "x a\n1,5 2,5\n");
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("changed", 0, 0, false);
    plotwerk->copySelectedCurvesOf_includeX_("changed", true);
    plotwerk->setDeciSeparator_(0);
    for (int i = 0; i < 2; ++i) plotwerk->pasteDataOf_("changed"); // the second named by the clock
    plotwerk->setXRangeOf_xmin_xmax_("changed", 5, 1);             // refused
    plotwerk->openFile_file_doRangeOverAll_("", text, true);
    plotwerk->closeDocument_askForSave_("closed", false);
    plotwerk->closeDocument_askForSave_("kept", true);
    plotwerk->duplicateAsPlottedOf_("changed");
    plotwerk->actify_("empty");
    plotwerk->actify_("changed");
    const std::string contents = contentsOf("changed"), copied = contentsOf("changed copy");
    EXPECT_EQ(journals(), 3U);

    // another one takes nothing that it wasn't asked to take, and nothing that is in use
    die(SIGKILL, {});
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "Untitled");
    const std::string log = die(SIGTERM, {"--recover"});
    for (const char *name : {"\"empty\"", "\"changed copy\""})
        EXPECT_TRUE(holds(log, std::string("info: ") + name + " as it was on "));
    EXPECT_TRUE(holds(log, "info: \"changed\" of " + pathOf("changed") + " as it was on "));
    EXPECT_TRUE(holds(log, " can be brought back by plotwerkd --recover\n"));

    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "changed");
    EXPECT_EQ(contentsOf("changed"), contents);
    EXPECT_EQ(contentsOf("changed copy"), copied);
    plotwerk->saveDocument_as_binary_("changed", "", false); // in its own file, which it has again
    EXPECT_EQ(bytesOf(pathOf("changed")), contents);
    EXPECT_EQ(journals(), 2U);
    plotwerk->setXRangeOf_xmin_xmax_("changed copy", 1, 2);

    // an orderly end with unsaved changes, and then one without
    const std::string end = die(SIGTERM, {"--recover", text});
    EXPECT_TRUE(holds(end, "unsaved changes of \"changed copy\" can be brought back by "
                           "plotwerkd --recover\n"));
    EXPECT_EQ(end.find("\"empty\" can be"), std::string::npos);
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "data");
    EXPECT_EQ(plotwerk->getXRangeOf_xmin_xmax_("changed copy"), std::make_tuple(1.0, 2.0));
    plotwerk->saveDocument_as_binary_("changed copy", pathOf("b"), false);
    EXPECT_EQ(journals(), 0U);
    stop();
}

// By the limits of a start none is brought back in part, and none is lost.
TEST_F(RecoveryTest, KeepsWhatCannotBeBroughtBackNow) {
    start();
    plotwerk->newDocumentWithName_("small");
    plotwerk->setXRangeOf_xmin_xmax_("small", 1, 2);
    plotwerk->newDocumentWithName_("large"); // 10.4 MB made by a message
    plotwerk->createCurveAtSelectionOf_minx_maxx_incx_miny_incy_("large", 1, 650'000, 1, 0, 1);
    plotwerk->duplicateAsPlottedOf_("large"); // written as it is
    plotwerk->actify_("small");
    std::map<std::string, std::string> contents;
    for (const char *name : {"small", "large", "large copy"}) contents[name] = contentsOf(name);

    const std::pair<const char *, std::vector<std::string>> starts[] = {
        {"--limit=memory=10",
         {"can't bring back \"large\" as it was on ",
          ": can't be repeated: would take too much memory (limit memory) (\"large\")\n",
          "info: brought back \"large copy\""}},
        {"--limit=documents=18",
         {"info: brought back \"large copy\"", "can't bring back \"large\" as it was on "}},
        {"--limit=documents=10",
         {"can't bring back \"large\" as it was on ",
          "can't bring back \"large copy\" as it was on ",
          ": the open documents would take too much memory (limit documents)\n"}}};
    for (const auto &[limit, told] : starts) {
        die(SIGKILL, {"--recover", limit});
        EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "small");
        EXPECT_EQ(contentsOf("small"), contents["small"]);
        EXPECT_EQ(journals(), 3U);
        const std::string log = die(SIGTERM, {});
        for (const std::string &line : told) EXPECT_TRUE(holds(log, line));
    }
    die(SIGKILL, {"--recover"});
    for (const auto &[name, content] : contents) EXPECT_TRUE(contentsOf(name) == content) << name;
    stop();
}

TEST_F(RecoveryTest, KeepsNoJournalsWhereNoneAreWanted) {
    start({"--no-journal"});
    plotwerk->setXRangeOf_xmin_xmax_("Untitled", 0, 1);
    EXPECT_EQ(journals(), 0U);
    EXPECT_TRUE(holds(stop().err, "unsaved changes of \"Untitled\" are lost\n"));
    EXPECT_EQ(runProgram(command({"--recover", "--no-journal"})).status, 2);
}

namespace {

const RE2 others("actify|addPDF.*|closeDocument|copy(PDF|TIFF)|display|newComposition.*|openFile|"
                 "printDoc|save.*");

// Random messages about the document "doc" and few others.
class Messages {
  public:
    Messages(const std::vector<Method> &all, Random &source) : methods(all), random(source) {}

    // None where one was drawn that isn't sent.
    std::optional<Message> next() {
        const Method &method = methods[random.below(methods.size())];
        Message message{method.name, random.arguments(method)};
        const std::string keyword = method.keyword();
        const bool isOther = RE2::FullMatch(keyword, others);
        if (isOther && random.below(50) != 0) return std::nullopt;
        if (keyword == "newDocumentWithName")
            message.values = {"new " + std::to_string(++unique)};
        else if (keyword == "closeDocument")
            message.values = {"new " + std::to_string(1 + random.below(9)), false};
        else if (keyword == "actify" || keyword == "display")
            message.values[0] = "new " + std::to_string(1 + random.below(9));
        else if (isOther || ((keyword == "pasteDataOf" || keyword == "duplicateAsPlottedOf") &&
                             !once.insert(keyword).second))
            return std::nullopt;
        return message;
    }

  private:
    const std::vector<Method> &methods;
    Random &random;
    int unique = 0;
    std::set<std::string> once; // their names are the clock's when they are sent again
};

} // namespace

// PLOTWERK_KILLS says how many: for 1,000
//   PLOTWERK_KILLS=1000 plotwerkJournalTests --gtest_filter='RecoveryTest.*Random*'
// Of the messages the last, which was not answered, may have been done or not.
TEST_F(RecoveryTest, BringsBackWhatWasAnsweredBeforeARandomDeath) {
    const char *wanted = std::getenv("PLOTWERK_KILLS");
    const int deaths = wanted ? std::atoi(wanted) : 20;
    start({"--log-level=warning"});
    documents();
    const std::vector<Method> methods = methodsOf(*connection);
    Random random(static_cast<unsigned>(deaths));
    std::size_t answered = 0, unanswered = 0, done = 0;
    for (int death = 0; death < deaths; ++death) {
        auto proxy = sdbus::createProxy(*connection, busName, objectPath);
        std::vector<Message> sent;
        bool tight = false;
        const auto sendMessage = [&](Message message) {
            sent.push_back(std::move(message));
            send(*proxy, sent.back().method, sent.back().values);
            // what was refused for lack of memory is done by one that has it
            if (const std::string reason = lastError();
                tight && !reason.empty() && !hasSelectedNone(reason))
                sent.pop_back();
        };
        for (const Message &message : beginning) sendMessage(message);
        tight = death % 5 == 4; // little more memory than it has
        if (tight) limit(RLIMIT_AS, addressSpace() + (1 << 20));
        const int signal = death % 3 == 2 ? SIGSEGV : SIGKILL;
        std::thread killer([&, pause = std::chrono::microseconds(random.below(60'000))] {
            std::this_thread::sleep_for(pause);
            program->sendSignal(signal);
        });
        Messages messages(methods, random);
        try {
            for (;;) {
                if (auto message = messages.next()) sendMessage(std::move(*message));
            }
        } catch (const sdbus::Error &) {
        }
        killer.join();
        const std::string log = die(signal, {"--recover", "--log-level=warning"});
        const auto recovered = documents();
        EXPECT_EQ(journals(), 0U);

        // The same messages to one that nobody ends.
        proxy = sdbus::createProxy(*connection, busName, objectPath);
        const auto wantedAfter = [&](std::size_t count) {
            for (std::size_t i = 0; i < count; ++i) send(*proxy, sent[i].method, sent[i].values);
            return documents();
        };
        const auto expected = wantedAfter(sent.size() - 1);
        const bool without = recovered == expected;
        const bool with = !without && recovered == wantedAfter(sent.size());
        EXPECT_TRUE(without || with) << "death " << death << ", after " << sent.size()
                                     << " messages, the last " << sent.back().method << '\n'
                                     << differenceOf(recovered, expected) << log;
        answered += sent.size() - 1;
        unanswered += without;
        done += with;
    }
    std::printf("%d deaths, %zu messages answered; the last was not done %zu times, done %zu\n",
                deaths, answered, unanswered, done);
    stop();
}

// Of the address space that it has left, and how many sizes: PLOTWERK_SIZES. A sanitizer ends the
// process where an allocation fails. Messages come alone, and in groups that wait to be answered.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__clang__)
TEST_F(RecoveryTest, KeepsWhatItAnswersAndLivesWithAnyMemory) {
    const char *wanted = std::getenv("PLOTWERK_SIZES");
    const int sizes = wanted ? std::atoi(wanted) : 12;
    start({"--log-level=error"});
    const std::vector<Method> methods = methodsOf(*connection);
    Random random(static_cast<unsigned>(sizes));
    int refused = 0;
    std::string large = "x a\n";
    for (int i = 0; i < 20'000; ++i) large += std::to_string(i) + " 1.25\n";
    const std::vector<Message> largeOnes{
        {"replaceDataformText_of_source_doRangeOverAll_", {large, "doc", "Large", false}},
        {"selectCurvesOf_sourceName_table_column_appendSelection_",
         {"doc", "Large", 1, "a", false}},
        {"dataOfSelectedCurvesOf_", {"doc"}},
        {"selectCurvesOf_indexFirst_indexLast_appendSelection_", {"doc", 0, 0, false}}};
    for (int i = 0; i < sizes; ++i) {
        SCOPED_TRACE(i);
        documents();
        std::vector<Message> done;
        const auto sendTogether = [&](const std::vector<Message> &group) {
            struct Outcome {
                bool answered = false;
                std::string error = "not answered";
            };
            std::vector<Outcome> outcomes(group.size());
            std::size_t answers = 0;
            const std::string noMemory = "org.freedesktop.DBus.Error.NoMemory";
            program->sendSignal(SIGSTOP);
            for (std::size_t k = 0; k < group.size(); ++k) {
                sendAhead(*control, group[k].method, group[k].values,
                          [&, k](sdbus::MethodReply &, const sdbus::Error *error) {
                              ++answers;
                              outcomes[k].answered = !error;
                              const std::string name = error ? error->getName() : noMemory;
                              EXPECT_EQ(name, noMemory);
                          });
                sendAhead(*control, "getVarOf_varName_", {"", "lastError"},
                          [&, k](sdbus::MethodReply &reply, const sdbus::Error *error) {
                              ++answers;
                              if (error)
                                  ADD_FAILURE() << error->getMessage();
                              else
                                  reply >> outcomes[k].error;
                          });
            }
            waitForBus(*connection);
            program->sendSignal(SIGCONT);
            waitUntil("all answers", [&] {
                while (connection->processPendingRequest()) {
                }
                return answers == 2 * group.size();
            });
            for (std::size_t k = 0; k < group.size(); ++k) {
                const auto &[answered, error] = outcomes[k];
                if (answered && (error.empty() || hasSelectedNone(error))) done.push_back(group[k]);
                refused += !answered || error.find("memory") != std::string::npos;
            }
        };
        for (const Message &message : beginning) sendTogether({message});
        const rlim_t has = addressSpace();
        // half of the times little more than what the longest message takes to come in, and of the
        // room that is set aside for it nothing
        const rlim_t least = i % 2 == 0 ? has : has - (rlim_t{320 - 6} << 20);
        limit(RLIMIT_AS, least + (rlim_t{16} << 10) * static_cast<rlim_t>(i * i));
        Messages messages(methods, random);
        std::vector<Message> group;
        for (int count = 0; count < 150 && !HasFatalFailure();) {
            auto message = messages.next();
            if (!message) continue;
            ++count;
            group.push_back(std::move(*message));
            if (count % 50 == 0) group.insert(group.end(), largeOnes.begin(), largeOnes.end());
            if (group.size() < 1 + random.below(30)) continue;
            sendTogether(std::exchange(group, {}));
        }
        if (HasFatalFailure()) FAIL() << program->finish().err;
        limit(RLIMIT_AS, RLIM_INFINITY);
        const auto kept = documents();
        for (const Message &message : done) send(*control, message.method, message.values);
        const auto expected = documents();
        EXPECT_TRUE(kept == expected) << differenceOf(kept, expected);
    }
    std::printf("%d sizes, %d messages refused for lack of memory\n", sizes, refused);
    stop();
}
#endif
