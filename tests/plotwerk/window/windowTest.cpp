#include "tests/plotwerk/window/windowTest.h"

#include <algorithm>
#include <map>

WindowTest::WindowTest() : ServerTest(PLOTWERK) {
}

void WindowTest::startWithLine() {
    start({"--no-journal"});
    read("x y\n0 0\n5 50\n10 100\n", "Data", true);
    plotwerk->setXRangeOf_xmin_xmax_(name, 0, 10);
    plotwerk->setYRangeOf_ymin_ymax_(name, 0, 100);
    reopen();
}

void WindowTest::read(const std::string &text, const std::string &source, bool rangeOverAll) {
    plotwerk->readDataformText_of_source_doRangeOverAll_appendToExistingData_(text, name, source,
                                                                              rangeOverAll, false);
}

void WindowTest::reopen() {
    const std::string path = pathOf("line.plotwerk");
    plotwerk->saveDocument_as_binary_(name, path, false);
    openInstead(path);
}

void WindowTest::openInstead(const std::string &path) {
    plotwerk->newDocumentWithName_("other"); // for there always is one
    plotwerk->closeDocument_askForSave_(name, false);
    plotwerk->openFile_file_doRangeOverAll_("", path, false);
    plotwerk->closeDocument_askForSave_("other", false);
}

void WindowTest::startWithSlowFit() {
    std::string data = "x y\n";
    for (int i = 1; i <= 300'000; ++i)
        data += std::to_string(1e-4 * i) + ' ' + std::to_string(i % 7) + '\n';
    start({"--no-journal"});
    read(data, "Data", true);
    plotwerk->setFormulaOf_formulaText_(name, "a*x^b + c*x^d + e*x^f");
    plotwerk->readFormulaParameterOf_parameterList_(name, "b = 2\nd = 3\nf = 0.5");
    plotwerk->saveDocument_as_binary_(name, pathOf("slow.plotwerk"), false);
    screen.frame();
    screen.move({300, 5}); // not on the plot
    screen.type("F7");
    screen.widget("Fit");
    screen.settle();
}

void WindowTest::waitForProgress() {
    waitUntil("the fit's progress",
              [&] { return screen.shown().find(" iterations") != std::string::npos; });
}

void WindowTest::waitForWindows(std::size_t count) {
    waitUntil(std::to_string(count) + " windows", [&] {
        screen.settle(); // to ask is dearer
        return screen.titles().size() == count;
    });
    screen.settle();
}

std::unique_ptr<sdbus::IProxy> WindowTest::actionsOf(int window) const {
    std::string path = "/org/plotwerk/Plotwerk";
    if (window > 0) path += "/window/" + std::to_string(window);
    return sdbus::createProxy(*connection, "org.plotwerk.Plotwerk", path);
}

std::vector<std::string> WindowTest::actions(int window) const {
    std::vector<std::string> names;
    actionsOf(window)->callMethod("List").onInterface("org.gtk.Actions").storeResultsTo(names);
    std::sort(names.begin(), names.end());
    return names;
}

std::string WindowTest::states(int window) const {
    using Description = sdbus::Struct<bool, sdbus::Signature, std::vector<sdbus::Variant>>;
    std::map<std::string, Description> descriptions;
    actionsOf(window)
        ->callMethod("DescribeAll")
        .onInterface("org.gtk.Actions")
        .storeResultsTo(descriptions);
    std::string disabled, on;
    for (const auto &[action, description] : descriptions) {
        const std::vector<sdbus::Variant> &state = std::get<2>(description);
        if (!std::get<0>(description)) disabled += action + ' ';
        if (!state.empty() && state.front().get<bool>()) on += action + ' ';
    }
    return disabled + "| " + on;
}

// The action that a fit needs is never waited for.
void WindowTest::activate(int window, const std::string &action) const {
    const auto isEnabled = [&] {
        sdbus::Struct<bool, sdbus::Signature, std::vector<sdbus::Variant>> description;
        actionsOf(window)
            ->callMethod("Describe")
            .onInterface("org.gtk.Actions")
            .withArguments(action)
            .storeResultsTo(description);
        return std::get<0>(description);
    };
    if (action != "cancel-fit") waitUntil(action, isEnabled);
    actionsOf(window)
        ->callMethod("Activate")
        .onInterface("org.gtk.Actions")
        .withArguments(action, std::vector<sdbus::Variant>(),
                       std::map<std::string, sdbus::Variant>());
}
