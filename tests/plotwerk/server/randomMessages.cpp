#include "tests/plotwerk/server/randomMessages.h"

#include <climits>
#include <limits>
#include <set>
#include <utility>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double most = std::numeric_limits<double>::max();
constexpr double least = std::numeric_limits<double>::denorm_min();

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
    {{"xmax", "ymax", "maxx"}, {5.0, nan, 1.0, 0.5, 1e300, infinity, -1e300}},
    {{"i"}, {1, -1, 0, 2, 3, 4, 17, 100000, INT_MIN, INT_MAX, -2}},
    {{"d"},
     {1.0, 0.0, 2.0, 0.5, -1.0, -0.0, 12.0, 1000.5, nan, infinity, -infinity, 1e300, -1e300, 1e-300,
      least, most}},
    {{"b"}, {false, true}},
    {{"(dddd)"},
     {Rectangle(0, 0, 595, 842), Rectangle(nan, nan, nan, nan), Rectangle(most, -most, 1, least),
      Rectangle(0, 0, most, infinity), Rectangle(-infinity, 5, -1, 0)}}};
const Values documents{"doc", "doc copy", "", "nix", std::string(200'000, 'n')};

} // namespace

const std::vector<Message> beginning{
    {"setDeciSeparator_", {0}},
    {"newDocumentWithName_", {"doc"}},
    {"replaceDataformText_of_source_doRangeOverAll_",
     {"x a b \"a error\"\n0 1 5 0.1\n1 3 4 0.2\n2 5 6 0.1\n3 6.5 4 0.3\n", "doc", "Data", false}},
    {"selectCurvesOf_indexFirst_indexLast_appendSelection_", {"doc", 0, 0, false}},
    {"copySelectedCurvesOf_includeX_", {"doc", true}},
    {"setFormulaOf_formulaText_", {"doc", "a*x+b"}}};

const Values &valuesOf(const Method::Argument &argument) {
    for (const auto &[keys, values] : pools)
        if (keys.contains(argument.name) || keys.contains(argument.type)) return values;
    return documents;
}

Values Random::arguments(const Method &method) {
    const std::size_t odds = std::size_t{2} << (2 * below(3));
    Values arguments;
    for (const auto &argument : method.arguments) {
        const Values &values = valuesOf(argument);
        arguments.push_back(below(odds) != 0 ? values.front() : strange(values));
    }
    return arguments;
}

// Any of the values, now and then another number or a damaged text.
Value Random::strange(const Values &values) {
    Value value = values[below(values.size())];
    if (below(3) != 0) return value;
    if (auto *real = std::get_if<double>(&value))
        *real = std::uniform_real_distribution<double>(-5, 5)(engine);
    if (auto *text = std::get_if<std::string>(&value)) damage(*text);
    return value;
}

void Random::damage(std::string &text) {
    switch (below(4)) {
    case 0: text += text; break;
    case 1: text.resize(below(text.size() + 1)); break;
    case 2: text.insert(below(text.size() + 1), 1, static_cast<char>(1 + below(126))); break;
    default: text += std::string(below(3000), "(9a \n,"[below(6)]);
    }
    // only UTF-8 can be sent, and no path may lead out of the test's directory
    std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) >= 0x80 || c == '/'; });
}

static sdbus::MethodCall callOf(sdbus::IProxy &control, const std::string &method,
                                const Values &values) {
    sdbus::MethodCall call = control.createMethodCall(busName, method);
    for (const Value &value : values)
        std::visit([&](const auto &argument) { call << argument; }, value);
    return call;
}

void send(sdbus::IProxy &control, const std::string &method, const Values &values) {
    control.callMethod(callOf(control, method, values), deadline);
}

void sendAhead(sdbus::IProxy &control, const std::string &method, const Values &values,
               sdbus::async_reply_handler answered) {
    control.callMethod(callOf(control, method, values), std::move(answered), deadline);
}

void waitForBus(sdbus::IConnection &bus) {
    std::string id;
    sdbus::createProxy(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus")
        ->callMethod("GetId")
        .onInterface("org.freedesktop.DBus")
        .storeResultsTo(id);
}
