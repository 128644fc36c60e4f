// plotwerkd under messages that nobody would send, and under many clients.
#include "tests/plotwerk/server/serverTest.h"

#include <csignal>
#include <cstdlib>
#include <future>
#include <random>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using Values = std::vector<std::string>;

// What may be sent, by the names of text arguments and the types of others: the first is sensible,
// the others need not be.
const std::pair<std::set<std::string>, Values> pools[] = {
    {{"formulaText"},
     {"a*x+b", "a*exp(-b*x)", "a*sin(b*x+c)", "u = x/a\nu^2+b", "y/0", "1/x", "log(x)*a", "", "y",
      std::string(20'000, '('), "a+a+a+a*b*x", "x x", "a*(x", "if(x>1,a,b)", "gamma(171*x)*a"}},
    {{"parameterList"},
     {"a = 1", "a=1,b=2!", "a = nan", "b = 1e300, a = -1e300", "a", "=", "a = 1 +- 2\nb=3 !", ",,,",
      "c = 1e999", "a=\n"}},
    {{"varName"}, {"a", "a.error", "chiq", "lastError", "xmin", "fitmax", "points", "", ".error"}},
    {{"regexSourceName", "regexColumn", "regexSource"},
     {".*", "", "a", "(", "(a+)+b", "[", "(a|b)*c", "\\1", "a{1,99999}", "(a*)*"}},
    {{"replaceDataformText", "readDataformText", "appendDataAndDrawInFastMode"},
     {"1 2\n2 3\n3 5\n4 4\n", "x a b\n0 1 2\n1 2 3\n2 1 4\n5 2 2\n",
      "x a \"a error\"\n1 2 0.1\n2 3 1\n", "", "word", "1;;2\n", "1\n2\n3\n",
      "nan nan\n-inf inf\n1e308 -1e308\n1e-320 5\n", "1 2 3\n\n4 5\n\n6\n", "3 1\n1 2\n2 nan\n",
      "# only a comment"}},
    {{"file", "savePDFofCompositionView", "as"},
     {"a", "b", "", "/", "/dev/full", "/nowhere/file", "."}},
    {{"source", "sourceName", "column"}, {"Data", "", "a", "b", "Fit", "a error", "X", "\n"}},
    {{"to", "openWith"},
     {"none", "", "a", std::string(200'000, 'n'), "\u00e4\U0001F600\u0301", "%s%n", "-x",
      "{\\rtf1 a}", "{\\rtf1{\\b bold}\\super 2\\u-1?\\'zz}", "{\\rtf1" + std::string(5000, '{'),
      "a\nb\tc\x01"}},
    {{"xmax", "ymax", "maxx"}, {"5", "nan", "1", "0.5", "1e300", "inf", "-1e300"}},
    {{"i"}, {"1", "-1", "0", "2", "3", "4", "17", "100000", "-2147483648", "2147483647", "-2"}},
    {{"d"},
     {"1", "0", "2", "0.5", "-1", "-0", "12", "1000.5", "nan", "inf", "-inf", "1e300", "-1e300",
      "1e-300", "4.9e-324", "1.7976931348623157e308"}},
    {{"b"}, {"no", "yes"}},
    {{"(dddd)"},
     {"0 0 595 842", "nan nan nan nan", "1.7e308 -1.7e308 1 4.9e-324", "0 0 1.7e308 inf",
      "-inf 5 -1 0"}}};
const Values documents{"doc", "doc copy", "", "nix", std::string(200'000, 'n')};

const Values &valuesOf(const Method::Argument &argument) {
    for (const auto &[keys, values] : pools)
        if (keys.contains(argument.name) || keys.contains(argument.type)) return values;
    return documents;
}

} // namespace

class RobustnessTest : public ServerTest {
  protected:
    RobustnessTest() : before(fs::current_path()) {
        fs::current_path(directory); // where a relative path leads
        setenv("PATH", directory.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
        start();
        methods = methodsOf(*connection);
        EXPECT_EQ(methods.size(), std::size(plotwerkControl::messageNames));
        startOver();
        contents = contentsOf("doc");
    }
    ~RobustnessTest() override { fs::current_path(before); }

    // Documents as they are at the beginning, so that every message can be done.
    void startOver() {
        for (std::string name; !(name = plotwerk->documentNameOfFrontWindow()).empty();)
            plotwerk->closeDocument_askForSave_(name, false);
        plotwerk->setDeciSeparator_(0);
        plotwerk->newDocumentWithName_("doc");
        plotwerk->replaceDataformText_of_source_doRangeOverAll_(
            "x a b \"a error\"\n0 1 5 0.1\n1 3 4 0.2\n2 5 6 0.1\n3 6.5 4 0.3\n", "doc", "Data",
            false);
        plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 0, 0, false);
        plotwerk->copySelectedCurvesOf_includeX_("doc", true);
        plotwerk->newCompositionView_({0, 0, 595, 842});
        plotwerk->setFormulaOf_formulaText_("doc", "a*x+b");
    }

    // A message that the protocol has is answered. False when it is refused: without a trace then.
    bool isDone(const Method &method, const Values &values, const std::string &was) {
        plotwerk->actify_("doc"); // clears lastError
        EXPECT_NO_THROW(answerTo(method, values));
        const std::string reason = lastError();
        if (reason.empty()) return true;
        EXPECT_LT(reason.size(), 4000U);
        EXPECT_EQ(reason.find('\n'), std::string::npos) << reason;
        EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "doc") << reason;
        EXPECT_TRUE(contentsOf("doc") == was) << reason;
        return false;
    }

    // Messages that are not of the protocol: too short, too long, of another signature or name.
    void expectError(const Method &method, const Values &values,
                     const std::string &error = "InvalidArgs") {
        std::string got;
        try {
            answerTo(method, values);
        } catch (const sdbus::Error &caught) {
            got = caught.getName();
        }
        EXPECT_EQ(got, "org.freedesktop.DBus.Error." + error)
            << method.name << ", " << values.size();
    }

    std::vector<Method> methods;
    std::string contents; // of "doc" at the beginning

  private:
    const fs::path before;
};

TEST_F(RobustnessTest, AnswersEveryMessageWithEachArgumentAtItsExtremes) {
    for (const Method &method : methods) {
        Values sensible;
        for (const auto &argument : method.arguments)
            sensible.push_back(valuesOf(argument).front());
        for (size_t i = 0; i < sensible.size(); ++i) {
            Values sent = sensible;
            for (const std::string &extreme : valuesOf(method.arguments[i])) {
                sent[i] = extreme;
                if (isDone(method, sent, contents)) startOver();
                ASSERT_FALSE(HasFailure()) << method.name << ", argument " << i;
            }
            expectError(method, {sensible.begin(), sensible.begin() + static_cast<long>(i)});
            Method other = method;
            other.arguments[i].type = method.arguments[i].type == "s" ? "(dddd)" : "s";
            expectError(other, sensible);
        }
        Method longer = method;
        longer.arguments.push_back({"", "i"});
        sensible.emplace_back("1");
        expectError(longer, sensible);
    }
    expectError({"nix", {}, ""}, {}, "UnknownMethod");
    EXPECT_TRUE(contentsOf("doc") == contents);
    stop();
}

// PLOTWERK_RANDOM_MESSAGES says how many; another number makes other messages.
TEST_F(RobustnessTest, AnswersAllRandomMessagesAndRefusesWithoutATrace) {
    const char *wanted = std::getenv("PLOTWERK_RANDOM_MESSAGES");
    const int count = wanted ? std::atoi(wanted) : 3000;
    std::mt19937 random(static_cast<unsigned>(count));
    const auto below = [&](size_t n) { return random() % n; };
    int refused = 0;
    for (int i = 0; i < count; ++i) {
        if (i % 40 == 0) startOver();
        const Method &method = methods[below(methods.size())];
        const size_t odds = size_t{2} << (2 * below(3)); // of a value that need not be sensible
        Values values;
        for (const auto &argument : method.arguments) {
            const Values &pool = valuesOf(argument);
            values.push_back(pool[below(odds) != 0 ? 0 : below(pool.size())]);
        }
        plotwerk->actify_("doc"); // may have been closed
        if (below(4) == 0 && lastError().empty()) {
            refused += !isDone(method, values, contentsOf("doc"));
            ASSERT_FALSE(HasFailure()) << "message " << i << ", " << method.name;
        } else {
            ASSERT_NO_THROW(answerTo(method, values)) << "message " << i << ", " << method.name;
        }
    }
    EXPECT_GT(refused, count / 40) << "of those that were looked at";
    stop();
}

TEST_F(RobustnessTest, ServesTenClientsAtOnce) {
    std::vector<std::future<void>> clients;
    clients.reserve(10);
    for (int number = 0; number < 10; ++number) {
        clients.push_back(std::async(std::launch::async, [number] {
            const auto own = sdbus::createSessionBusConnection();
            own->setMethodCallTimeout(deadline);
            Plotwerk server(*own);
            const std::string name = "client " + std::to_string(number);
            server.newDocumentWithName_(name);
            server.setFormulaOf_formulaText_(name, "slope*x");
            for (int i = 1; i <= 50; ++i) {
                server.appendDataAndDrawInFastMode_of_source_(
                    std::to_string(i) + " " + std::to_string(i * number) + "\n", name, "");
                EXPECT_EQ(server.YValueOfDoc_atX_indexSerie_(name, i, 0), i * number);
            }
            server.startFitOf_iterations_lambda_chiq_(name);
            EXPECT_NEAR(std::stod(server.getVarOf_varName_(name, "slope")), number, 1e-9);
        }));
    }
    for (auto &client : clients) client.get();
}

// A client that does nothing but call, killed: while it sends, waits or is answered.
TEST_F(RobustnessTest, OutlivesClientsThatAreKilledInACall) {
    std::string text;
    for (int i = 0; i < 100'000; ++i) text += "1.25 2.5\n";
    for (int round = 0; round < 10; ++round) {
        int calls[2];
        ASSERT_EQ(pipe(calls), 0);
        const pid_t client = fork();
        ASSERT_GE(client, 0);
        if (client == 0) {
            const auto own = sdbus::createSessionBusConnection();
            Plotwerk server(*own);
            for (;;) {
                server.replaceDataformText_of_source_doRangeOverAll_(text, "doc", "Late", true);
                if (write(calls[1], "", 1) != 1) _exit(1);
            }
        }
        char done = 0;
        EXPECT_EQ(read(calls[0], &done, 1), 1);
        kill(client, SIGKILL);
        int status = 0;
        waitpid(client, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << status;
        close(calls[0]);
        close(calls[1]);
    }
    plotwerk->selectCurvesOf_sourceName_table_column_appendSelection_("doc", "Late", -1, "", false);
    const auto statistic =
        plotwerk->statisticOfSelectionOf_name_dataPoints_min_max_sum_std_area_("doc");
    EXPECT_EQ(std::get<1>(statistic), 100'000);
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("doc", 3, 0), 6.5);
    stop();
}
