// Where unsaved changes are kept.
#include "plotwerk/files/keptFile.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/files/atomicFile.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/model/names.h"
#include "tests/support/temporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace plotwerk;

namespace fs = std::filesystem;

class KeptFile : public testing::Test {
  protected:
    // Beginning with where the state's home is.
    static std::string keptPath(const std::string &name) {
        Document document;
        document.name = name;
        const fs::path path = keepDocument(document);
        EXPECT_EQ(documentOf(readWholeFile(path)).name, nameOf(name));
        EXPECT_EQ(fs::status(path).permissions(), static_cast<fs::perms>(0600));
        return path;
    }

    const TemporaryFolder folder;
    const fs::path &directory = folder.path;
};

TEST_F(KeptFile, IsNamedAfterItsDocumentAndNeverOverwritten) {
    setenv("XDG_STATE_HOME", directory.c_str(), 1);
    const std::string a200(200, 'a');
    const std::string a199(199, 'a');
    const std::pair<std::string, std::string> cases[] = {
        {"a/b", "a_b"},
        {"a_b", "a_b 2"},
        {"a/b", "a_b 3"},
        {".hidden.", "_hidden."},
        {"..", "_."},
        {"tab\tnewline\nunit\x1f delete\x7f", "tab_newline_unit_ delete_"},
        {"\u00e4", "\u00e4"},
        {a200, a200},
        {a200 + "more", a200 + " 2"},
        {a199 + "\u00e4", a199},
        {a199 + "\U0001F600", a199 + " 2"}};
    for (const auto &[name, file] : cases)
        EXPECT_EQ(keptPath(name), directory / "plotwerk" / (file + ".json"));
}

TEST_F(KeptFile, IsInTheUsersHomeWhereNoStateDirectoryIsGiven) {
    const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
    setenv("HOME", directory.c_str(), 1);
    const fs::path file = directory / ".local/state/plotwerk/n";
    setenv("XDG_STATE_HOME", "relative", 1);
    EXPECT_EQ(keptPath("n"), file.string() + ".json");
    unsetenv("XDG_STATE_HOME");
    EXPECT_EQ(keptPath("n"), file.string() + " 2.json");
    EXPECT_EQ(fs::status(directory / ".local/state").permissions(), fs::perms::owner_all);
    setenv("HOME", "", 1);
    EXPECT_THROW(keptPath("n"), Refusal);
    setenv("HOME", home.c_str(), 1);
}
