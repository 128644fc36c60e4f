// Every message, its arguments told from each other by what it does with them.
#include "tests/plotwerk/server/serverTest.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

std::string shown(const json &value) {
    std::ostringstream text;
    if (value.is_number())
        text << value.get<double>();
    else if (!value.is_array())
        text << value.dump();
    else if (value.size() > 16)
        text << value.size() << " values";
    else
        for (const json &each : value) text << (text.tellp() > 0 ? " " : "") << shown(each);
    return text.str();
}

// All that the document holds, by paths as in "axes/0/range/min" and, for the second curve of a
// source's first table, "0/0/y/1/values" and "0/0/y/1/line". The look of x is never drawn.
using Values = std::map<std::string, json>;

void collect(const json &value, const std::string &path, Values &values) {
    const bool numbers = value.is_array() && !value.empty() && value.front().is_primitive();
    if (value.is_primitive() || numbers) {
        values[path] = value;
        return;
    }
    for (const auto &[key, inner] : value.items()) {
        if (key == "look" && path.ends_with("/x")) continue;
        const bool named = key != "sources" && key != "tables" && key != "look";
        collect(inner, !named ? path : path.empty() ? key : path + '/' + key, values);
    }
}

Values valuesOf(const std::string &saved) {
    Values values;
    collect(json::parse(saved).at("document"), "", values);
    return values;
}

// What has changed, is new or gone, as in "axes/0/range max 1, min 0" and "v values 1 2": curves by
// the names that they had. Of new columns only names and values, nothing that is empty.
std::string changes(const Values &before, const Values &after) {
    std::string text, last;
    const auto add = [&](const std::string &path, const std::string &what) {
        const std::size_t slash = path.find_last_of('/');
        const bool inside = slash != std::string::npos;
        std::string record = inside ? path.substr(0, slash) : "";
        const auto name = before.find(record + "/name");
        if (name != before.end() && record.find("/y/") != std::string::npos) record = name->second;
        if (inside) text += record == last ? ", " : '\n' + record + ' ';
        text += (inside ? path.substr(slash + 1) : '\n' + path) + what;
        last = record;
    };
    for (const auto &[path, value] : after) {
        const auto old = before.find(path);
        if (old == before.end()) {
            const bool says = !value.is_null() && value != false && value != 0 && value != "";
            const bool setting = path.find("/y/") != std::string::npos &&
                                 !path.ends_with("/name") && !path.ends_with("/values");
            if (!says || setting) continue;
        } else if (old->second == value) {
            continue;
        }
        add(path, ' ' + shown(value));
    }
    for (const auto &[path, value] : before)
        if (path.ends_with("/name") && !after.contains(path)) add(path, " gone");
    return text;
}

std::string onOneLine(const std::string &text) {
    static const std::regex lineEnd("\n"), tab("\t");
    return std::regex_replace(std::regex_replace(text, lineEnd, "\\n"), tab, "\\t");
}

// But for what nobody would save a document for.
Values withoutSelection(Values values) {
    std::erase_if(values, [](const auto &value) { return value.first.ends_with("/place"); });
    return values;
}

} // namespace

class EveryMessage : public ServerTest {
  protected:
    EveryMessage() {
        setenv("PATH", directory.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
        start({"--no-journal"});
        for (const Method &method : methodsOf(*connection)) {
            std::vector<std::string> key;
            for (const auto &argument : method.arguments) key.push_back(argument.name);
            if (key.empty()) key = {method.name};
            methods[key] = method;
        }
    }

    void startOver() {
        closeAll();
        for (const fs::path &entry : files()) fs::remove(entry);
        file("text", "1 2\n3 4\n");
        const std::set<std::string> triedByCases = tried;
        send(beginning);
        tried = triedByCases;
        ASSERT_EQ(lastError(), "");
    }

    // Sends messages, a line each. Returns what is answered.
    std::string send(const std::string &messages) {
        static const std::regex argument("(\\w+):('[^']*'|\\{[^}]*\\}|\\S+)");
        static const std::regex dir("DIR"), lineEnd("\\\\n"), longNumber("(\\.\\d{5})\\d+");
        std::string answers, line;
        for (std::istringstream lines(messages); std::getline(lines, line);) {
            if (line.starts_with('#')) continue;
            line = std::regex_replace(line, dir, directory.string());
            line = std::regex_replace(line, lineEnd, "\n");
            std::vector<std::string> names, values;
            for (std::sregex_iterator match(line.begin(), line.end(), argument), end; match != end;
                 ++match) {
                names.push_back((*match)[1]);
                const std::string given = (*match)[2];
                const bool enclosed = given.front() == '\'' || given.front() == '{';
                values.push_back(enclosed ? given.substr(1, given.size() - 2) : given);
            }
            if (names.empty()) names = {line};
            if (!methods.contains(names)) throw std::runtime_error("no message " + line);
            const Method &method = methods[names];
            tried.insert(method.name);
            const std::string answer = answerTo(method, values);
            if (!answer.empty())
                answers += '\n' + onOneLine(std::regex_replace(answer, longNumber, "$1"));
        }
        return answers;
    }

    // Indented lines.
    std::string outcomeOf(const std::string &messages) {
        const Values before = valuesOf(contentsOf("doc"));
        fs::remove(pathOf("contents"));
        std::string outcome = send(messages);
        if (!lastError().empty()) outcome += '\n' + lastError();
        const std::string front = plotwerk->documentNameOfFrontWindow();
        if (front != "other") outcome += "\nfront " + front;
        for (const fs::path &made : files()) {
            const std::string name = made.lexically_relative(directory).string();
            if (name != "text" && name != "saved")
                outcome += '\n' + name + ' ' + testing::PrintToString(bytesOf(made).substr(0, 3));
        }
        plotwerk->actify_("doc");
        if (lastError().empty()) outcome += whatChanged(before);
        outcome = std::regex_replace(outcome, std::regex(directory.string()), "DIR");
        return std::regex_replace(outcome, std::regex("\n"), "\n    ");
    }

    std::string whatChanged(const Values &before) {
        const Values after = valuesOf(contentsOf("doc"));
        const bool differs = withoutSelection(before) != withoutSelection(after);
        plotwerk->closeDocument_askForSave_("doc", true);
        const bool wasUnsaved = fs::exists(stateDirectory / "doc.json");
        const char *unexpected = wasUnsaved ? "\nunsaved" : "\nnothing unsaved";
        return changes(before, after) + (wasUnsaved == differs ? "" : unexpected);
    }

    std::set<fs::path> files() const {
        std::set<fs::path> found;
        for (const auto &entry : fs::recursive_directory_iterator(directory)) {
            if (entry.is_regular_file()) found.insert(entry.path());
        }
        return found;
    }

    std::map<std::vector<std::string>, Method> methods; // by their arguments
    std::set<std::string> tried;                        // messages of all cases
    std::string beginning;                              // of each case
};

// The first case is the beginning of all others.
TEST_F(EveryMessage, DoesWithItsArgumentsWhatItSays) {
    const std::string cases = bytesOf(TEST_DATA_DIR "/messages.txt");
    for (std::size_t at = 0, end = 0; at < cases.size(); at = end + 2) {
        end = std::min(cases.find("\n\n", at), cases.size() - 1);
        const std::string wanted = cases.substr(at, end - at);
        const std::string messages = wanted.substr(0, wanted.find("\n    "));
        if (beginning.empty()) beginning = messages;
        startOver();
        if (messages == beginning) continue;
        EXPECT_EQ(messages + outcomeOf(messages), wanted);
    }
    for (const auto &[arguments, method] : methods)
        EXPECT_TRUE(tried.contains(method.name)) << method.name;
}
