#include "tests/plotwerk/window/screen.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/syscall.h>
#include <thread>
#include <utility>

std::uint32_t Shot::at(int x, int y) const {
    return pixels[static_cast<std::size_t>(y * width + x)];
}

bool Shot::isDark(int x, int y) const {
    const std::uint32_t pixel = at(x, y);
    return (pixel >> 16 & 255) + (pixel >> 8 & 255) + (pixel & 255) < 3 * 110;
}

Place ShownFrame::at(double right, double up) const {
    return {static_cast<int>(std::lround(lowerLeft.x + right * (upperRight.x - lowerLeft.x))),
            static_cast<int>(std::lround(lowerLeft.y + up * (upperRight.y - lowerLeft.y)))};
}

Screen::Screen(const std::optional<ChildProcess> &of) : program(of) {
    const std::string size =
        std::to_string(Shot::width) + 'x' + std::to_string(Shot::height) + "x24";
    server = std::make_unique<ChildProcess>(
        std::vector<std::string>{"Xvfb", "-wr", "-displayfd", "1", "-screen", "0", size, "-fbdir",
                                 folder.path, "-nocursor", "-nolisten", "tcp", "-noreset"});
    std::string number = server->readLine();
    if (number.empty()) throw std::runtime_error("no Xvfb: " + server->finish().err);
    number.pop_back();
    setenv("DISPLAY", (':' + number).c_str(), 1);
    setenv("GDK_BACKEND", "x11", 1);
    setenv("GTK_A11Y", "test", 1); // keeps what it is told of widgets, for nobody
    setenv("GSETTINGS_BACKEND", "memory", 1);
    setenv("GIO_EXTRA_MODULES", GIO_MODULES, 1);
    setenv("WIDGETS", (folder.path / "widgets").c_str(), 1);

    // Widgets are everywhere as large as here.
    setenv("GTK_THEME", "Default", 1);
    setenv("FONTCONFIG_FILE", (folder.path / "fonts.conf").c_str(), 1);
    for (const char *scale : {"GDK_SCALE", "GDK_DPI_SCALE"}) unsetenv(scale);
    std::ofstream(folder.path / "fonts.conf")
        << "<fontconfig><dir>/usr/share/fonts/truetype/dejavu</dir><cachedir>"
        << folder.path.string()
        << "</cachedir><alias><family>monospace</family><prefer><family>DejaVu Sans Mono</family>"
           "</prefer></alias></fontconfig>";
    std::filesystem::create_directory(folder.path / "gtk-4.0");
    std::ofstream(folder.path / "gtk-4.0/settings.ini")
        << "[Settings]\ngtk-cursor-blink=false\ngtk-enable-animations=false\n"
           "gtk-print-backends=file\ngtk-font-name=DejaVu Sans 10\ngtk-icon-theme-name=hicolor\n"
           "gtk-double-click-time=80\n"; // is waited for: one click has no part in the next
    for (const char *home : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        setenv(home, folder.path.c_str(), 1);
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

static void add(std::vector<std::string> &words, const std::vector<std::string> &more) {
    words.insert(words.end(), more.begin(), more.end());
}

static std::vector<std::string> jump(Place to) {
    return {"mousemove", std::to_string(to.x), std::to_string(to.y)};
}

static std::vector<std::string> motion(Place to) {
    std::vector<std::string> words = jump({to.x - 3, to.y - 2});
    add(words, jump(to));
    return words;
}

// Keys go to the window under the mouse.
void Screen::type(const std::string &key) {
    point({"key", key});
}

void Screen::write(const std::string &text) {
    point({"type", "--delay", "0", text});
}

void Screen::move(Place to) {
    point(motion(to));
}

void Screen::click(Place at, const std::string &key, int times, int button) {
    std::vector<std::string> words = motion(at);
    if (!key.empty()) add(words, {"keydown", key});
    add(words,
        {"click", "--delay", "0", "--repeat", std::to_string(times), std::to_string(button)});
    if (!key.empty()) add(words, {"keyup", key});
    point(words);
}

static std::vector<std::string> path(Place from, Place to) {
    constexpr int steps = 5;
    std::vector<std::string> words;
    for (int i = 1; i <= steps; ++i)
        add(words,
            jump({from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps}));
    return words;
}

void Screen::drag(Place from, Place to, int button, const std::string &key) {
    std::vector<std::string> words = motion(from);
    if (!key.empty()) add(words, {"keydown", key});
    add(words, {"mousedown", std::to_string(button)});
    add(words, path(from, to));
    add(words, {"mouseup", std::to_string(button)});
    if (!key.empty()) add(words, {"keyup", key});
    point(words);
}

void Screen::hold(Place from, Place to) {
    std::vector<std::string> words = motion(from);
    add(words, {"mousedown", "1"});
    add(words, path(from, to));
    point(words);
}

void Screen::release() {
    point({"mouseup", "1"});
}

void Screen::wheel(Place at, int clicks) {
    std::vector<std::string> words = motion(at);
    add(words, {"click", "--delay", "0", "--repeat", std::to_string(std::abs(clicks)),
                clicks > 0 ? "4" : "5"});
    point(words);
}

void Screen::dragAcross(Place from, Place to, const std::function<bool()> &isTaken) {
    waitUntil("what was dragged", [&] {
        move(from);
        const Shot before = stillShot();
        point({"mousedown", "1"});
        for (const int step : {5, 10, 20}) point(jump({from.x - step, from.y - step}));
        waitUntil("something to drag", [&] { return shot() != before; });
        move(to);
        settle();
        release();
        settle();
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
    const Output names =
        runProgram({"xdotool", "search", "--onlyvisible", "--name", ".", "getwindowname", "%@"});
    std::istringstream lines(names.out);
    std::vector<std::string> titles;
    for (std::string title; std::getline(lines, title);) titles.push_back(title);
    return titles;
}

// The file ends with the pixels.
Shot Screen::shot() const {
    Shot shot;
    shot.pixels.resize(std::size_t{Shot::width} * Shot::height);
    const auto bytes = static_cast<std::streamsize>(shot.pixels.size() * sizeof shot.pixels[0]);
    std::ifstream file(folder.path / "Xvfb_screen0", std::ios::binary);
    file.seekg(-bytes, std::ios::end);
    if (!file.read(reinterpret_cast<char *>(shot.pixels.data()), bytes))
        throw std::runtime_error("no picture of the screen");
    return shot;
}

// Whether a program with a main loop waits, neither for a thread of its own nor for what comes by
// itself soon: the kernel tells the call that it is in and its arguments, of which the third of
// poll is how long it waits, in ms.
static bool isIdle(const ChildProcess &program) {
    constexpr int soon = 260;
    std::ifstream file("/proc/" + std::to_string(program.pid()) + "/syscall");
    std::string call, descriptors, count, time;
    if (!(file >> call >> descriptors >> count >> time)) return false; // it is running
    if (call == std::to_string(SYS_futex)) return false;
    const int rest = static_cast<int>(std::stoul(time, nullptr, 16));
    return rest <= 0 || rest > soon;
}

// What one has sent, the other may not have heard of yet: neither has done anything for a while.
void Screen::settle() const {
    using namespace std::chrono_literals;
    const auto activityOf = [](const ChildProcess &process) {
        return process.procStatus("State") + process.procStatus("voluntary_ctxt_switches");
    };
    const auto activity = [&] { return activityOf(*server) + activityOf(*program); };
    waitUntil("a screen that stands still", [&] {
        const std::string before = activity();
        std::this_thread::sleep_for(30ms);
        const bool isRunning = before.find('R') != before.npos;
        return !isRunning && isIdle(*program) && activity() == before;
    });
}

Shot Screen::stillShot() const {
    settle();
    return shot();
}

static constexpr const char *marks = "*>~!"; // that stand before the text

std::vector<Widget> Screen::widgets() const {
    const std::filesystem::path path = folder.path / "widgets";
    std::filesystem::remove(path);
    program->sendSignal(SIGUSR1);
    waitUntil("the widgets", [&] { return std::filesystem::exists(path); });
    std::ifstream file(path);
    std::vector<Widget> widgets;
    for (Widget widget; file >> widget.at.x >> widget.at.y >> widget.width >> widget.height;) {
        file.get();
        std::getline(file, widget.kind, '\t');
        std::getline(file, widget.text, '\t');
        std::getline(file, widget.looks);
        widgets.push_back(widget);
    }
    return widgets;
}

std::string Screen::shown(const std::string &title) const {
    std::string text;
    bool isIn = false;
    Widget last;
    for (const Widget &widget : widgets()) {
        if (widget.text.starts_with("= ")) isIn = title.empty() || widget.text.ends_with(title);
        if (!isIn || widget.text.find_first_not_of(' ') == std::string::npos) continue;
        const int right = widget.at.x - last.at.x;
        const int down = widget.middle().y - last.middle().y;
        const bool isMarked = last.text.find_first_not_of(marks) == std::string::npos &&
                              right >= 0 && right < last.width && std::abs(2 * down) <= last.height;
        if (!text.empty() && !isMarked) text += right > 0 && std::abs(down) < 8 ? "  " : " / ";
        text += widget.text;
        last = widget;
    }
    return text;
}

Widget Screen::widget(const std::string &text, int number) const {
    std::optional<Widget> found;
    waitUntil(text, [&] {
        int left = number;
        for (const Widget &widget : widgets()) {
            const std::size_t begin =
                std::min(widget.text.find_first_not_of(marks), widget.text.size());
            if (widget.kind != text && widget.text.substr(begin) != text) continue;
            if (--left > 0) continue;
            found = widget;
            return true;
        }
        return false;
    });
    return *found;
}

std::string Screen::pixels(Place from, Place step, int count) const {
    const Shot shown = stillShot();
    std::ostringstream runs;
    runs << std::hex;
    for (int i = 0, begin = 0; i < count; ++i) {
        const auto at = [&](int of) {
            return shown.at(from.x + of * step.x, from.y + of * step.y);
        };
        if (i + 1 < count && at(i + 1) == at(begin)) continue;
        runs << std::dec << i + 1 - begin << '*' << std::hex << (at(begin) & 0xffffff) << ' ';
        begin = i + 1;
    }
    return runs.str();
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
