#include "tests/plotwerk/window/screen.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

static constexpr int screenWidth = 1280;
static constexpr int screenHeight = 900;

bool Shot::isDark(int x, int y) const {
    const auto &pixel = pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                               static_cast<std::size_t>(x)];
    return pixel[0] + pixel[1] + pixel[2] < 3 * 110;
}

Place ShownFrame::at(double right, double up) const {
    return {static_cast<int>(std::lround(lowerLeft.x + right * (upperRight.x - lowerLeft.x))),
            static_cast<int>(std::lround(lowerLeft.y + up * (upperRight.y - lowerLeft.y)))};
}

Screen::Screen() {
    const std::string size =
        std::to_string(screenWidth) + 'x' + std::to_string(screenHeight) + "x24";
    server = std::make_unique<ChildProcess>(std::vector<std::string>{
        "Xvfb", "-wr", "-displayfd", "1", "-screen", "0", size, "-nolisten", "tcp", "-noreset"});
    std::string number = server->readLine();
    if (number.empty()) throw std::runtime_error("no Xvfb: " + server->finish().err);
    number.pop_back();
    setenv("DISPLAY", (':' + number).c_str(), 1);
    setenv("GDK_BACKEND", "x11", 1);
    setenv("GTK_A11Y", "none", 1);
    setenv("GSETTINGS_BACKEND", "memory", 1);
}

Screen::~Screen() {
    server->sendSignal(SIGTERM);
    server->finish();
    unsetenv("DISPLAY");
}

void Screen::point(const std::vector<std::string> &words) {
    std::vector<std::string> command{"xdotool"};
    command.insert(command.end(), words.begin(), words.end());
    const Output output = runProgram(command);
    if (output.status != 0) throw std::runtime_error("xdotool: " + output.err);
}

static std::vector<std::string> motion(Place to) {
    return {"mousemove", std::to_string(to.x), std::to_string(to.y)};
}

static void add(std::vector<std::string> &words, const std::vector<std::string> &more) {
    words.insert(words.end(), more.begin(), more.end());
}

// Keys go to the window under the mouse.
void Screen::type(const std::string &key) {
    point({"key", key});
}

void Screen::write(const std::string &text) {
    point({"type", text});
}

void Screen::move(Place to) {
    std::vector<std::string> words = motion({to.x - 3, to.y - 2});
    add(words, motion(to));
    point(words);
}

void Screen::click(Place at, const std::string &key, int times) {
    move(at);
    std::vector<std::string> words;
    if (!key.empty()) add(words, {"keydown", key});
    add(words, {"click", "--repeat", std::to_string(times), "1"});
    if (!key.empty()) add(words, {"keyup", key});
    point(words);
}

void Screen::drag(Place from, Place to, int button, const std::string &key) {
    move(from);
    std::vector<std::string> words;
    if (!key.empty()) add(words, {"keydown", key});
    add(words, {"mousedown", std::to_string(button)});
    constexpr int steps = 5;
    for (int i = 1; i <= steps; ++i)
        add(words,
            motion({from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps}));
    add(words, {"mouseup", std::to_string(button)});
    if (!key.empty()) add(words, {"keyup", key});
    point(words);
}

void Screen::wheel(Place at, int clicks) {
    move(at);
    point({"click", "--repeat", std::to_string(std::abs(clicks)), clicks > 0 ? "4" : "5"});
}

void Screen::dragAcross(Place from, Place to, const std::function<bool()> &isTaken) {
    waitUntil("what was dragged", [&] {
        move(from);
        const Shot before = stillShot();
        point({"mousedown", "1"});
        for (const int step : {5, 10, 20}) point(motion({from.x - step, from.y - step}));
        waitUntil("something to drag", [&] { return shot() != before; });
        move(to);
        stillShot();
        point({"mouseup", "1"});
        stillShot();
        return isTaken();
    });
}

// A window that goes meanwhile fails the search.
void Screen::place(const std::string &title, Place corner) {
    const std::vector<std::string> words{
        "xdotool",         "search",     "--onlyvisible",          "--name",
        '^' + title + '$', "windowmove", std::to_string(corner.x), std::to_string(corner.y)};
    waitUntil("the window " + title, [&] { return runProgram(words).status == 0; });
}

std::vector<std::string> Screen::titles() {
    const Output ids = runProgram({"xdotool", "search", "--onlyvisible", "--name", "."});
    std::istringstream lines(ids.out);
    std::vector<std::string> titles;
    for (std::string id; std::getline(lines, id);) {
        std::string title = runProgram({"xdotool", "getwindowname", id}).out;
        if (!title.empty()) title.pop_back();
        titles.push_back(title);
    }
    return titles;
}

Shot Screen::shot() const {
    const Output output =
        runProgram({"import", "-silent", "-window", "root", "-depth", "8", "ppm:-"});
    std::istringstream header(output.out);
    std::string magic;
    int most = 0;
    Shot shot;
    header >> magic >> shot.width >> shot.height >> most;
    header.get();
    const std::size_t begin = static_cast<std::size_t>(header.tellg());
    const auto count = static_cast<std::size_t>(shot.width) * static_cast<std::size_t>(shot.height);
    if (magic != "P6" || output.out.size() < begin + 3 * count)
        throw std::runtime_error("no picture of the screen: " + output.err);
    shot.pixels.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t c = 0; c < 3; ++c)
            shot.pixels[i][c] = static_cast<std::uint8_t>(output.out[begin + 3 * i + c]);
    return shot;
}

Shot Screen::stillShot() const {
    Shot last = shot();
    waitUntil("a screen that stands still", [&] {
        Shot next = shot();
        return std::exchange(last, std::move(next)) == last;
    });
    return last;
}

// The first and the last column, or row, that is dark for a quarter of the screen without a gap.
template<class IsDark>
static std::optional<std::pair<int, int>> longLines(int lines, int length, IsDark isDark) {
    std::optional<std::pair<int, int>> found;
    for (int line = 0; line < lines; ++line) {
        int run = 0;
        int longest = 0;
        for (int i = 0; i < length; ++i) {
            run = isDark(line, i) ? run + 1 : 0;
            longest = std::max(longest, run);
        }
        if (longest < length / 4) continue;
        if (!found) found = {line, line};
        found->second = line;
    }
    return found;
}

ShownFrame Screen::frame() const {
    ShownFrame frame;
    waitUntil("the frame of a plot", [&] {
        const Shot shown = stillShot();
        const auto columns =
            longLines(shown.width, shown.height, [&](int x, int y) { return shown.isDark(x, y); });
        const auto rows =
            longLines(shown.height, shown.width, [&](int y, int x) { return shown.isDark(x, y); });
        if (!columns || !rows || columns->first == columns->second || rows->first == rows->second)
            return false;
        frame = {{columns->first, rows->second}, {columns->second, rows->first}};
        return true;
    });
    return frame;
}
