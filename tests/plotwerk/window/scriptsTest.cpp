// What a user does and sees, as tests/data/windows tells it.
#include "tests/plotwerk/window/script.h"

class ScriptsTest : public ScriptTest, public testing::WithParamInterface<const char *> {};

TEST_P(ScriptsTest, ShowsWhatTheScriptSays) {
    std::filesystem::current_path(directory);
    start({"--no-journal"});
    follow(std::string(GetParam()) + ".txt");
    stop();
}

INSTANTIATE_TEST_SUITE_P(Windows, ScriptsTest,
                         testing::Values("curveList", "dialogs", "fitPane", "journal", "layout",
                                         "marks", "menus", "mouse", "status"),
                         [](const auto &of) { return std::string(of.param); });
