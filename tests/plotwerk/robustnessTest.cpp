// plotwerkd under messages that nobody would send, and under many clients.
#include "tests/plotwerk/serverTest.h"

#include <climits>
#include <cmath>
#include <cstdlib>
#include <future>
#include <limits>
#include <map>
#include <random>
#include <thread>

namespace fs = std::filesystem;

namespace {

class Generator {
  public:
    Generator(unsigned seed, const std::string &directory)
        : random(seed), paths{"",
                              "/",
                              "/dev/full",
                              "/nowhere/file",
                              "relative",
                              directory + "/a",
                              directory + "/b",
                              directory} {}

    size_t below(size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(random); }

    double real() {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        static constexpr double values[] = {0,
                                            1,
                                            2,
                                            0.5,
                                            -1,
                                            -0.0,
                                            12,
                                            1000.5,
                                            std::numeric_limits<double>::quiet_NaN(),
                                            infinity,
                                            -infinity,
                                            1e300,
                                            -1e300,
                                            1e-300,
                                            std::numeric_limits<double>::denorm_min(),
                                            std::numeric_limits<double>::max()};
        const size_t i = below(std::size(values) + 4);
        return i < std::size(values) ? values[i]
                                     : std::uniform_real_distribution<double>(-5, 5)(random);
    }

    int32_t integer() {
        static constexpr int32_t values[] = {-1, 0, 1, 2, 3, 4, 17, 100000, INT_MIN, INT_MAX, -2};
        return values[below(std::size(values))];
    }

    // What fits the argument's name, or anything, now and then damaged.
    std::string text(const Method &method, size_t argument) {
        const std::string &name = method.arguments[argument].name;
        static const std::map<std::string, const std::vector<std::string> *> fitting{
            {"formulaText", &formulas},
            {"parameterList", &lists},
            {"varName", &variables},
            {"regexSourceName", &patterns},
            {"regexColumn", &patterns},
            {"regexSource", &patterns},
            {"replaceDataformText", &data},
            {"readDataformText", &data},
            {"appendDataAndDrawInFastMode", &data}};
        const std::vector<std::string> *pool = &texts;
        if (const auto found = fitting.find(name); found != fitting.end())
            pool = found->second;
        else if (name == "file" || name == "savePDFofCompositionView" ||
                 (name == "as" || (name == "to" && method.name.starts_with("save"))))
            pool = &paths;
        else if (argument == 0 || name == "of")
            pool = &documents;
        else if (name == "source" || name == "sourceName" || name == "column")
            pool = &names;
        std::string chosen = (*pool)[below(pool->size())];
        if (pool != &paths && pool != &documents && below(4) == 0) damage(chosen);
        return chosen;
    }

  private:
    void damage(std::string &text) {
        switch (below(4)) {
        case 0: text += text; break;
        case 1: text.resize(below(text.size() + 1)); break;
        case 2: text.insert(below(text.size() + 1), 1, static_cast<char>(1 + below(126))); break;
        default: text += std::string(below(3000), "(9a \n,"[below(6)]);
        }
        // only the bus's own UTF-8 can be sent
        std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    }

    std::mt19937 random;
    const std::vector<std::string> paths;
    static const std::vector<std::string> documents, names, texts, formulas, lists, variables,
        patterns, data;
};

const std::vector<std::string> Generator::documents{"doc", "doc",      "doc", "doc",
                                                    "doc", "doc copy", "",    "nix"};
const std::vector<std::string> Generator::names{"Data", "", "a", "b", "Fit", "a error", "X", "\n"};
const std::vector<std::string> Generator::texts{"",
                                                "none",
                                                "a",
                                                std::string(200'000, 'n'),
                                                "\u00e4\U0001F600\u0301",
                                                "%s%n",
                                                "-x",
                                                "{\\rtf1 a}",
                                                "{\\rtf1{\\b bold}\\super 2\\u-1?\\'zz}",
                                                "{\\rtf1" + std::string(5000, '{'),
                                                "a\nb\tc\x01"};
const std::vector<std::string> Generator::formulas{"a*x+b",
                                                   "a*exp(-b*x)",
                                                   "a*sin(b*x+c)",
                                                   "u = x/a\nu^2+b",
                                                   "y/0",
                                                   "1/x",
                                                   "log(x)*a",
                                                   "",
                                                   "y",
                                                   std::string(20'000, '('),
                                                   "a+a+a+a*b*x",
                                                   "x x",
                                                   "a*(x",
                                                   "if(x>1,a,b)",
                                                   "gamma(171*x)*a"};
const std::vector<std::string> Generator::lists{
    "a = 1", "a=1,b=2!",  "a = nan", "b = 1e300, a = -1e300", "a", "=", "a = 1 +- 2\nb=3 !",
    ",,,",   "c = 1e999", "a=\n"};
const std::vector<std::string> Generator::variables{
    "a", "a.error", "chiq", "lastError", "xmin", "fitmax", "points", "", ".error"};
const std::vector<std::string> Generator::patterns{"",  "a",       "(",   ".*",         "(a+)+b",
                                                   "[", "(a|b)*c", "\\1", "a{1,99999}", "(a*)*"};
const std::vector<std::string> Generator::data{"1 2\n2 3\n3 5\n4 4\n",
                                               "x a b\n0 1 2\n1 2 3\n2 1 4\n5 2 2\n",
                                               "x a \"a error\"\n1 2 0.1\n2 3 1\n",
                                               "",
                                               "word",
                                               "1;;2\n",
                                               "1\n2\n3\n",
                                               "nan nan\n-inf inf\n1e308 -1e308\n1e-320 5\n",
                                               "1 2 3\n\n4 5\n\n6\n",
                                               "3 1\n1 2\n2 nan\n",
                                               "# only a comment"};

} // namespace

class RobustnessTest : public ServerTest {
  protected:
    RobustnessTest() : before(fs::current_path()) {
        fs::current_path(directory); // where a relative path leads
        setenv("PATH", directory.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
        start();
        control = sdbus::createProxy(*connection, busName, objectPath);
    }
    ~RobustnessTest() override {
        setenv("PATH", path.c_str(), 1);
        fs::current_path(before);
    }

    // Documents as they are at the beginning: what has grown is gone.
    void startOver() {
        for (std::string name; !(name = plotwerk->documentNameOfFrontWindow()).empty();)
            plotwerk->closeDocument_askForSave_(name, false);
        plotwerk->setDeciSeparator_(0);
        plotwerk->newDocumentWithName_("doc");
        plotwerk->replaceDataformText_of_source_doRangeOverAll_(
            "x a b \"a error\"\n0 1 5 0.1\n1 3 4 0.2\n2 5 6 0.1\n3 6.5 4 0.3\n", "doc", "Data",
            false);
        plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 0, 0, false);
        plotwerk->setFormulaOf_formulaText_("doc", "a*x+b");
    }

    // Sends what may be anything; a message that the protocol has must be answered.
    void send(const Method &method, Generator &generator) {
        sdbus::MethodCall call = control->createMethodCall(busName, method.name);
        for (size_t i = 0; i < method.arguments.size(); ++i) {
            switch (method.arguments[i].type[0]) {
            case 's': call << generator.text(method, i); break;
            case 'i': call << generator.integer(); break;
            case 'd': call << generator.real(); break;
            case 'b': call << (generator.below(2) == 0); break;
            default:
                call << sdbus::Struct<double, double, double, double>(
                    generator.real(), generator.real(), generator.real(), generator.real());
            }
        }
        control->callMethod(call, deadline);
    }

    // Sends what isn't of the protocol.
    void sendWrongly(const std::string &method, Generator &generator) {
        sdbus::MethodCall call = control->createMethodCall(busName, method);
        for (size_t i = generator.below(4); i > 0; --i)
            call << std::vector<sdbus::Variant>(generator.below(3),
                                                sdbus::Variant(generator.real()));
        call << uint8_t{7};
        EXPECT_THROW(control->callMethod(call, deadline), sdbus::Error) << method;
    }

    std::unique_ptr<sdbus::IProxy> control;

  private:
    const fs::path before;
    const std::string path = std::getenv("PATH");
};

// PLOTWERK_RANDOM_MESSAGES says how many.
TEST_F(RobustnessTest, AnswersAllRandomMessagesAndRefusesWithoutATrace) {
    const char *wanted = std::getenv("PLOTWERK_RANDOM_MESSAGES");
    const int count = wanted ? std::atoi(wanted) : 5000;
    const std::vector<Method> methods = methodsOf(*connection);
    ASSERT_EQ(methods.size(), 83U);

    Generator generator(20240229, directory.string());
    int refused = 0;
    for (int i = 0; i < count; ++i) {
        if (i % 300 == 0) startOver();
        const Method &method = methods[generator.below(methods.size())];
        SCOPED_TRACE("message " + std::to_string(i) + ", " + method.name);
        if (generator.below(50) == 0) {
            sendWrongly(generator.below(2) == 0 ? method.name : "nix", generator);
            continue;
        }
        const bool checked = generator.below(4) == 0;
        std::string contents;
        plotwerk->actify_("doc"); // clears lastError
        if (checked && lastError().empty()) {
            contents = contentsOf("doc");
            plotwerk->actify_("doc");
        }
        ASSERT_NO_THROW(send(method, generator));
        if (!contents.empty() && !lastError().empty()) {
            ++refused;
            EXPECT_LT(lastError().size(), 4000U);
            const std::string reason = lastError();
            ASSERT_EQ(contentsOf("doc"), contents) << reason;
        }
    }
    EXPECT_GT(refused, count / 40) << "of those that were looked at";
    stop();
}

TEST_F(RobustnessTest, ServesTenClientsAtOnce) {
    startOver();
    std::vector<std::future<std::string>> clients;
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
                if (server.YValueOfDoc_atX_indexSerie_(name, i, 0) != i * number)
                    return name + " has a wrong value";
            }
            server.startFitOf_iterations_lambda_chiq_(name);
            const double slope = std::stod(server.getVarOf_varName_(name, "slope"));
            return std::abs(slope - number) < 1e-9 ? std::string() : name + " has a wrong slope";
        }));
    }
    for (auto &client : clients) EXPECT_EQ(client.get(), "");
}

// Gone after a message was sent, and in the middle of sending one.
TEST_F(RobustnessTest, OutlivesClientsThatVanishInACall) {
    startOver();
    std::string text;
    for (int i = 0; i < 2'000'000; ++i) text += "1.25 2.5\n";
    for (const std::string &sent : {std::string("7 8\n"), text}) {
        const auto own = sdbus::createSessionBusConnection();
        const auto proxy = sdbus::createProxy(*own, busName, objectPath);
        sdbus::MethodCall call = proxy->createMethodCall(busName, "replaceDataformText_of_source_"
                                                                  "doRangeOverAll_");
        call << sent << std::string("doc") << std::string("Late") << true;
        proxy->callMethod(
            call, [](sdbus::MethodReply &, const sdbus::Error *) {}, deadline);
    }
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "doc");
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("doc", 3, 0), 6.5);
}
