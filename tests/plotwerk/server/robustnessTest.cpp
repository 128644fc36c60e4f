// plotwerkd under messages that nobody would send, and under many clients.
#include "tests/plotwerk/server/randomMessages.h"

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <sys/wait.h>

namespace fs = std::filesystem;

class RobustnessTest : public ServerTest {
  protected:
    RobustnessTest() {
        setenv("PATH", directory.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
        start();
        methods = methodsOf(*connection);
        EXPECT_EQ(methods.size(), std::size(plotwerkControl::messageNames));
        startOver();
        contents = contentsOf("doc");
    }

    // Documents as they are at the beginning, so that every message can be done.
    void startOver() {
        closeAll();
        for (const auto &[method, values] : beginning) send(method, values);
        plotwerk->newCompositionView_({0, 0, 595, 842});
    }

    void send(const std::string &method, const Values &values) { ::send(*control, method, values); }

    // A message that the protocol has is answered. False when it is refused: without a trace then.
    bool isDone(const Method &method, const Values &values, const std::string &was) {
        plotwerk->actify_("doc"); // clears lastError
        EXPECT_NO_THROW(send(method.name, values));
        const std::string reason = lastError();
        if (reason.empty() || hasSelectedNone(reason)) return true;
        EXPECT_LT(reason.size(), 4000U);
        EXPECT_TRUE(contentsOf("doc") == was) << reason;
        return false;
    }

    // Takes in the answers that come to them until the condition holds.
    static void takeAnswers(const std::vector<sdbus::IConnection *> &buses,
                            const std::function<bool()> &condition) {
        waitUntil("all answers", [&] {
            for (sdbus::IConnection *bus : buses)
                while (bus->processPendingRequest()) {
                }
            return condition();
        });
    }

    // Messages that are not of the protocol: too short, too long, of another signature or name.
    void expectError(const std::string &method, const Values &values,
                     const std::string &error = "InvalidArgs") {
        std::string got;
        try {
            send(method, values);
        } catch (const sdbus::Error &caught) {
            got = caught.getName();
        }
        EXPECT_EQ(got, "org.freedesktop.DBus.Error." + error) << method << ", " << values.size();
    }

    std::vector<Method> methods;
    std::string contents; // of "doc" at the beginning

  private:
};

TEST_F(RobustnessTest, AnswersEveryMessageWithEachArgumentAtItsExtremes) {
    for (const Method &method : methods) {
        Values sensible;
        for (const auto &argument : method.arguments)
            sensible.push_back(valuesOf(argument).front());
        for (std::size_t i = 0; i < sensible.size(); ++i) {
            Values sent = sensible;
            for (const Value &extreme : valuesOf(method.arguments[i])) {
                sent[i] = extreme;
                if (isDone(method, sent, contents)) startOver();
                ASSERT_FALSE(HasFailure()) << method.name << ", argument " << i;
            }
            sent[i] = Rectangle();
            if (!std::holds_alternative<Rectangle>(sensible[i])) expectError(method.name, sent);
            expectError(method.name, {sensible.begin(), sensible.begin() + static_cast<long>(i)});
        }
        sensible.emplace_back(1);
        expectError(method.name, sensible);
    }
    expectError("nix", {}, "UnknownMethod");
    EXPECT_TRUE(contentsOf("doc") == contents);
    stop();
}

// PLOTWERK_RANDOM_MESSAGES says how many; another number makes other messages.
TEST_F(RobustnessTest, AnswersAllRandomMessagesAndRefusesWithoutATrace) {
    const char *wanted = std::getenv("PLOTWERK_RANDOM_MESSAGES");
    const int count = wanted ? std::atoi(wanted) : 3000;
    Random random(static_cast<unsigned>(count));
    int refused = 0;
    for (int i = 0; i < count; ++i) {
        if (i % 40 == 0) startOver();
        const Method &method = methods[random.below(methods.size())];
        const Values values = random.arguments(method);
        plotwerk->actify_("doc"); // may have been closed
        if (random.below(4) == 0 && lastError().empty()) {
            refused += !isDone(method, values, contentsOf("doc"));
            ASSERT_FALSE(HasFailure()) << "message " << i << ", " << method.name;
        } else {
            ASSERT_NO_THROW(send(method.name, values)) << "message " << i << ", " << method.name;
        }
    }
    EXPECT_GT(refused, count / 40) << "of those that were looked at";
    stop();
}

// The server finds fifty messages of one client and then one of another, which hasn't to wait for
// all of them; those of the first are done in their order.
TEST_F(RobustnessTest, LetsClientsTakeTurns) {
    const auto busyBus = sdbus::createSessionBusConnection();
    const auto otherBus = sdbus::createSessionBusConnection();
    const auto busy = sdbus::createProxy(*busyBus, busName, objectPath);
    const auto other = sdbus::createProxy(*otherBus, busName, objectPath);
    double done = 0, seen = 0; // by the other client

    program->sendSignal(SIGSTOP);
    for (double i = 1; i <= 50; ++i)
        sendAhead(*busy, "setValueOfDoc_atIndex_indexSerie_toValue_", {"doc", 0, 0, i},
                  [&, i](sdbus::MethodReply &, const sdbus::Error *) { EXPECT_EQ(++done, i); });
    waitForBus(*busyBus);
    sendAhead(*other, "valueOfDoc_atIndex_indexSerie_", {"doc", 0, 0},
              [&](sdbus::MethodReply &reply, const sdbus::Error *) { reply >> seen; });
    waitForBus(*otherBus);
    program->sendSignal(SIGCONT);
    takeAnswers({busyBus.get(), otherBus.get()}, [&] { return done == 50 && seen > 0; });
    EXPECT_LE(seen, 2);
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("doc", 0, 0), 50);
}

// Each has a journal, an open file; the last ones to be had are for something else.
TEST_F(RobustnessTest, SavesHoweverManyDocumentsAreOpen) {
    limit(RLIMIT_NOFILE, 40);
    for (int i = 0; i < 40; ++i) plotwerk->newDocumentWithName_(std::to_string(i));
    plotwerk->saveDocument_as_binary_("39", pathOf("saved"), true);
    EXPECT_TRUE(plotwerk->didSaveSucceed_("39")) << lastError();
    plotwerk->savePicturePDF_as_("doc", pathOf("picture.pdf"));
    EXPECT_TRUE(fs::exists(pathOf("picture.pdf"))) << lastError();
    EXPECT_TRUE(holds(stop().err, "Too many open files"));
}

// Messages of 10 ms, whose answers nobody takes.
TEST_F(RobustnessTest, OutlivesClientsThatAreKilledInACall) {
    std::string text;
    for (int i = 0; i < 100'000; ++i) text += "1.25 2.5\n";
    for (int round = 0; round < 10; ++round) {
        const std::string source = "of client " + std::to_string(round);
        const pid_t client = fork();
        if (client == 0) {
            const auto own = sdbus::createSessionBusConnection();
            for (Plotwerk server(*own);;)
                server.replaceDataformText_of_source_doRangeOverAll_(text, "doc", source, true);
        }
        waitUntil("its first call", [&] {
            return plotwerk->indexOfCurveNameOf_source_table_column_("doc", source, 1, "Y1") >= 0;
        });
        kill(client, SIGKILL);
        int status = 0;
        waitpid(client, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << status;
    }
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("doc", 3, 0), 6.5);
    stop();
}

// One that doesn't read is answered up to the limit, which others don't notice; once it reads, it
// is served again.
TEST_F(RobustnessTest, CutsOffClientsThatDoNotReadTheirAnswers) {
    stop();
    start({"--limit=unread=2", "--log-level=warning"});
    plotwerk->newDocumentWithName_("doc");
    plotwerk->createCurveAtSelectionOf_minx_maxx_incx_miny_incy_("doc", 1, 40'000, 1, 0, 0.125);
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 0, 0, false);
    const std::string text = plotwerk->dataOfSelectedCurvesOf_("doc");

    const auto own = sdbus::createSessionBusConnection();
    const auto deaf = sdbus::createProxy(*own, busName, objectPath);
    int answered = 0, refused = 0;
    constexpr int calls = 60;
    for (int i = 0; i < calls; ++i) {
        sendAhead(*deaf, "dataOfSelectedCurvesOf_", {"doc"},
                  [&](sdbus::MethodReply &, const sdbus::Error *error) {
                      ++(error ? refused : answered);
                      EXPECT_EQ(error ? error->getName()
                                      : "org.freedesktop.DBus.Error.LimitsExceeded",
                                "org.freedesktop.DBus.Error.LimitsExceeded");
                  });
        EXPECT_TRUE(plotwerk->dataOfSelectedCurvesOf_("doc") == text); // others are served
    }
    takeAnswers({own.get()}, [&] { return answered + refused == calls; });
    const double length = static_cast<double>(text.size());
    EXPECT_GE(answered, 2e6 / length);
    EXPECT_LE(answered, 2 + 3e6 / length);
    EXPECT_EQ(Plotwerk(*own).dataOfSelectedCurvesOf_("doc").size(), text.size());
    EXPECT_TRUE(holds(stop().err, " doesn't read its answers (limit unread)\n"));
}

// What it is without the reserve that is set aside for messages, with 8 MB for them.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__clang__)
TEST_F(RobustnessTest, OutlivesMessagesThatItHasNoMemoryFor) {
    const rlim_t has = addressSpace();
    limit(RLIMIT_AS, has - (rlim_t{320 - 8} << 20));
    const std::string noMemory = "org.freedesktop.DBus.Error.NoMemory";
    const auto errorOf = [&](std::size_t length) {
        try {
            send("setFormulaOf_formulaText_", {"doc", std::string(length, 'a')});
        } catch (const sdbus::Error &error) {
            return error.getName();
        }
        return std::string();
    };
    // the length at which it can be read, but not taken apart
    std::size_t length = 1 << 20;
    std::string error;
    for (; error.empty() && length < 8 << 20; length += 1 << 18) error = errorOf(length);
    EXPECT_EQ(error, noMemory) << length;
    // the reserve is set aside again, though nothing is left to be answered
    limit(RLIMIT_AS, RLIM_INFINITY);
    methodsOf(*connection);
    waitUntil("the reserve", [&] { return addressSpace() > has - (rlim_t{100} << 20); });
    EXPECT_TRUE(contentsOf("doc") == contents);
    limit(RLIMIT_AS, has - (rlim_t{320 - 8} << 20));

    // One that stays with the bus doesn't keep those before it from being answered.
    int answered = 0;
    const auto count = [&](sdbus::MethodReply &, const sdbus::Error *each) { answered += !each; };
    program->sendSignal(SIGSTOP);
    for (int i = 0; i < 20; ++i) sendAhead(*control, "indexOfFitCurveOf_", {"doc"}, count);
    sendAhead(*control, "setFormulaOf_formulaText_", {"doc", std::string(16 << 20, 'a')}, count);
    waitForBus(*connection);
    program->sendSignal(SIGCONT);
    takeAnswers({connection.get()}, [&] { return answered == 20; });
    limit(RLIMIT_AS, RLIM_INFINITY);
    takeAnswers({connection.get()}, [&] { return answered == 21; });
    stop();
}
#endif

TEST_F(RobustnessTest, TakesDataOfAnyLength) {
    connection->setMethodCallTimeout(5 * deadline); // as a client waits
    plotwerk->selectCurvesOf_sourceName_table_column_appendSelection_("doc", "Data", 1, "a", false);
    const std::string zeros(1000, '0'); // many bytes, few numbers
    std::string text = "x\ta\n";
    int lines = 0;
    for (; text.size() < 64 << 20; ++lines)
        text += std::to_string(lines) + ".12345678" + zeros + "\t-0.123456789012\n";
    plotwerk->replaceDataformText_of_source_doRangeOverAll_(text, "doc", "Data", true);
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("doc", lines - 1, 0), -0.123456789012);
    EXPECT_TRUE(std::isnan(plotwerk->valueOfDoc_atIndex_indexSerie_("doc", lines, 0)));
}
