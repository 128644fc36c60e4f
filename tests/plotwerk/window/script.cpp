#include "tests/plotwerk/window/script.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <utility>

static std::string restOf(std::istream &words) {
    std::string rest;
    std::getline(words >> std::ws, rest);
    return rest;
}

static int pixelsIn(std::istream &words) {
    int pixels = 0;
    if (words.peek() == '+' || words.peek() == '-') words >> pixels;
    return pixels;
}

Place ScriptTest::placeIn(std::istream &words) const {
    double right = 0, up = 0;
    words >> right;
    const int more = pixelsIn(words);
    words >> up;
    const Place place = frame.at(right, up);
    return {place.x + more, place.y + pixelsIn(words)};
}

Widget ScriptTest::widgetIn(std::istream &words) const {
    int number = 1;
    if (std::isdigit((words >> std::ws).peek()) != 0) words >> number;
    return screen.widget(restOf(words), number);
}

void ScriptTest::act(const std::string &line) {
    std::istringstream words(line);
    const auto widget = [&] { return widgetIn(words).middle(); };
    const auto place = [&] { return placeIn(words); };
    const std::map<std::string, std::function<void()>> acts{
        {"call",
         [&] {
             runProgram({"sh"}, CALLPLW " -x " + restOf(words));
             plotwerk->documentNameOfFrontWindow(); // answered behind it
         }},
        {"sh", [&] { runProgram({"sh"}, restOf(words)); }},
        {"do",
         [&] {
             const std::string action = restOf(words);
             action.starts_with("app.") ? activate(0, action.substr(4)) : activate(1, action);
         }},
        {"key",
         [&] {
             for (std::string key; words >> key; screen.settle()) screen.type(key);
         }},
        {"write", [&] { screen.write(restOf(words)); }},
        {"click", [&] { screen.click(widget()); }},
        {"shift", [&] { screen.click(widget(), "shift"); }},
        {"ctrl", [&] { screen.click(widget(), "ctrl"); }},
        {"menu", [&] { screen.click(widget(), "", 1, 3); }},
        {"hover", [&] { screen.move(place()); }},
        {"away",
         [&] {
             screen.move({300, 5});
         }},
        {"point",
         [&] {
             const Place at = place();
             screen.click(at, restOf(words));
         }},
        {"twice", [&] { screen.click(place(), "", 2); }},
        {"wheel",
         [&] {
             const Place at = place();
             screen.wheel(at, std::stoi(restOf(words)));
         }},
        {"drag",
         [&] {
             const Place from = place(), to = place();
             screen.drag(from, to, 1, restOf(words));
         }},
        {"pan",
         [&] {
             const Place from = place();
             screen.drag(from, place(), 2);
         }},
        {"hold",
         [&] {
             const Place from = place();
             screen.hold(from, place());
         }},
        {"release", [&] { screen.release(); }},
        {"frame", [&] { frame = screen.frame(); }},
    };
    std::string word;
    words >> word >> std::ws;
    acts.at(word)();
}

static std::string layoutOf(const std::vector<Widget> &widgets) {
    std::ostringstream layout;
    for (const Widget &widget : widgets)
        layout << '\n'
               << widget.at.x << ' ' << widget.at.y << ' ' << widget.width << 'x' << widget.height
               << ' ' << widget.kind << ' ' << widget.text << widget.looks;
    return layout.str();
}

std::string ScriptTest::look(const std::string &what) {
    std::istringstream words(what);
    std::string word;
    words >> word;
    const Place left = frame.lowerLeft;
    const Place right = frame.upperRight;
    double at = 0;
    if (word == "shown") return screen.shown(restOf(words));
    if (word == "across" && words >> at)
        return screen.pixels(frame.at(0, at), {1, 0}, right.x - left.x + 1);
    if (word == "down" && words >> at)
        return screen.pixels(frame.at(at, 1), {0, 1}, left.y - right.y + 1);
    if (word == "layout") return layoutOf(screen.widgets());
    if (word == "states") return states(1);
    if (word == "text") return widgetIn(words).text;
    if (word == "dots") {
        const Widget of = widgetIn(words);
        return screen.pixels({of.at.x, of.middle().y}, {1, 0}, of.width) + "| " +
               screen.pixels({of.middle().x, of.at.y}, {0, 1}, of.height);
    }
    if (word == "looks") return widgetIn(words).looks;
    if (word == "answers") {
        std::string questions;
        for (std::string question; words >> question;) questions += "-x " + question + '\n';
        std::string answers = runProgram({CALLPLW}, questions).out;
        std::replace(answers.begin(), answers.end(), '\n', ' ');
        return answers;
    }
    throw std::runtime_error("nothing to look at: " + what);
}

static void replaceAll(std::string &text, const std::string &from, const std::string &to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
        text.replace(at, from.size(), to);
}

// One text that isn't as wanted may be waited for; then the test has failed.
std::string ScriptTest::patientLook(const std::string &what, const std::string &want) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(3);
    std::string is;
    do {
        if (!std::exchange(isStill, true)) screen.settle();
        is = look(what);
        replaceAll(is, directory, "FOLDER");
        isStill = is == want;
    } while (!isStill && isPatient && std::chrono::steady_clock::now() < end);
    isPatient = isPatient && isStill;
    return is;
}

void ScriptTest::follow(const std::string &script) {
    const std::string further = "\n        "; // before the further lines of a text
    const std::filesystem::path path = std::string(TEST_DATA_DIR "/windows/") + script;
    std::string wanted = bytesOf(path);
    replaceAll(wanted, further, "\v");
    std::istringstream lines(wanted);
    std::string is;
    for (std::string line; std::getline(lines, line); is += line + '\n') {
        if (line[0] == '#') continue;
        if (line[0] != ' ') {
            if (!std::exchange(isStill, false)) screen.settle();
            act(line);
            continue;
        }
        const std::size_t text = line.find(": ") + 2;
        std::string want = line.substr(text);
        replaceAll(want, "\v", "\n");
        line.replace(text, line.npos, patientLook(line.substr(4, text - 6), want));
        replaceAll(line, "\n", "\v");
    }
    replaceAll(is, "\v", further);
    replaceAll(wanted, "\v", further);
    if (std::getenv("REWRITE")) std::ofstream(path) << is;
    EXPECT_EQ(is, wanted);
}
