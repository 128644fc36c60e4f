// Documents: which there are, what opening, saving and closing does to them.
#include "tests/plotwerk/server/serverTest.h"

namespace fs = std::filesystem;

class DocumentMessages : public ServerTest {
  protected:
    std::string front() { return plotwerk->documentNameOfFrontWindow(); }

    void open(const std::string &path) { plotwerk->openFile_file_doRangeOverAll_("", path, false); }
    void close(const std::string &document, bool ask) {
        plotwerk->closeDocument_askForSave_(document, ask);
    }
    void read(const std::string &document, const std::string &text) {
        plotwerk->replaceDataformText_of_source_doRangeOverAll_(text, document, "", false);
        ASSERT_EQ(lastError(), "");
    }

    // The document "Untitled"; true when it succeeded.
    bool saveAs(const std::string &path, bool binary = false) {
        plotwerk->saveDocument_as_binary_("Untitled", path, binary);
        return plotwerk->didSaveSucceed_("Untitled");
    }
};

// What a script asks for next hits neither the document that was in front before, nor any other.
TEST_F(DocumentMessages, AFileThatCannotBeReadLeavesADocumentThatRefusesAllButClosing) {
    start({file("good", "t y\n1 2\n3 4\n")});
    const std::string contents = contentsOf("good");
    const std::pair<std::string, std::string> wrong[] = {
        {pathOf("none.txt"), "none.txt"},
        {file("cut", "{\"format\":\"plotwerk docu"), "cut"},
        {directory.string(), directory.filename().string()},
        {"", "Untitled"},
        {pathOf(std::string(300, 'n')), "Untitled"}};
    for (const auto &[path, name] : wrong) {
        open(path);
        EXPECT_NE(lastError(), "") << path;
        EXPECT_EQ(front(), name);
        close(name, true);
        EXPECT_EQ(lastError() + front(), "good");
    }
    file("none.txt", "1 2\n");
    open(pathOf("none.txt"));
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("none.txt", 0, -1), 2);
    EXPECT_EQ(contentsOf("good"), contents);
    stop();
    EXPECT_FALSE(fs::exists(stateDirectory / "journal") &&
                 !fs::is_empty(stateDirectory / "journal"));
}

TEST_F(DocumentMessages, SavingAsGivesAPathSavingToDoesNotAndFailingLeavesAll) {
    start();
    EXPECT_FALSE(saveAs(""));
    EXPECT_EQ(lastError(), "no path of its own (\"Untitled\")");
    const std::string copy = contentsOf("Untitled");
    EXPECT_FALSE(saveAs("")) << "a copy's path isn't its own";
    EXPECT_TRUE(saveAs(pathOf("own")));
    EXPECT_EQ(front(), "Untitled") << "clients know it by this name";

    read("Untitled", "1 3\n");
    const std::pair<std::string, const char *> wrong[] = {
        {directory.string(), "Is a directory"},
        {pathOf("none/own"), "No such file or directory"},
        {pathOf("own/in"), "Not a directory"},
        {"/dev/full", "not a regular file"}};
    for (const auto &[path, reason] : wrong) {
        EXPECT_FALSE(saveAs(path)) << path;
        EXPECT_EQ(lastError(), "can't write " + path + ": " + reason + " (\"Untitled\")");
    }
    EXPECT_EQ(bytesOf(pathOf("own")), copy);
    EXPECT_TRUE(saveAs("", true)) << "its own path has stayed";
    EXPECT_NE(bytesOf(pathOf("own")).front(), '{');
}

// Neither the file's name nor its text is UTF-8 here, as the bus needs it.
TEST_F(DocumentMessages, DataTextIsReadIntoASourceNamedAfterItsFile) {
    start({file("r\xf6hre.txt", "\xef\xbb\xbfU Str\xf6me\n0 1\n")});
    EXPECT_EQ(front(), "r\u00f6hre.txt");
    EXPECT_EQ(plotwerk->indexOfCurveNameOf_source_table_column_(front(), front(), 1, "Str\u00f6me"),
              0);

    open(file("picture", std::string("1 2\n\0\n", 6)));
    EXPECT_TRUE(holds(lastError(), "picture: neither a saved document nor data text"));
}

TEST_F(DocumentMessages, AnOpenDocumentIsNotOpenedTwice) {
    start();
    read("Untitled", "1 2\n");
    EXPECT_TRUE(saveAs(pathOf("saved")));
    plotwerk->newDocumentWithName_("other");
    plotwerk->setValueOfDoc_atIndex_indexSerie_toValue_("Untitled", 0, -1, 7);
    fs::create_symlink("saved", pathOf("link"));
    open(pathOf("link"));
    EXPECT_EQ(front(), "Untitled");
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("Untitled", 0, -1), 7) << "not saved";

    const std::string text = file("text", "1 2\n");
    open(text);
    open(text);
    EXPECT_EQ(front().find("text "), 0U) << "data text is read anew: " << front();
    plotwerk->saveDocument_as_binary_("text", "", false);
    EXPECT_EQ(bytesOf(text), "1 2\n") << "and never overwritten";
}

TEST_F(DocumentMessages, UnsavedChangesAreKeptWhenClosedWithAQuestion) {
    start();
    plotwerk->newDocumentWithName_("doc");
    read("doc", "1 2\n");
    const std::string contents = contentsOf("doc");
    close("doc", true);
    const fs::path kept = stateDirectory / "doc.json";
    EXPECT_EQ(bytesOf(kept), contents);

    fs::remove_all(stateDirectory);
    file("state/plotwerk", "not a directory");
    read("Untitled", "1 2\n");
    close("Untitled", true);
    EXPECT_EQ(front(), "Untitled");
    EXPECT_TRUE(lastError().starts_with("can't create "));
    EXPECT_TRUE(
        holds(stop().err, "info: unsaved changes of \"doc\" kept in " + kept.string() + "\n"));
}
