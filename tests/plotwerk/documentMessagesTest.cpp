// Documents: which there are, what opening, saving and closing does to them.
#include "tests/plotwerk/serverTest.h"

#include <cmath>
#include <tuple>

namespace fs = std::filesystem;

class DocumentMessages : public ServerTest {
  protected:
    std::string front() { return plotwerk->documentNameOfFrontWindow(); }

    void read(const std::string &document, const std::string &text) {
        plotwerk->replaceDataformText_of_source_doRangeOverAll_(text, document, "", false);
        ASSERT_EQ(lastError(), "");
    }
};

TEST_F(DocumentMessages, TheFrontOneIsTheLastOpenedCreatedOrActivated) {
    start({file("a", "1 2\n"), file("b", "1 2\n")});
    EXPECT_EQ(front(), "b");
    plotwerk->actify_("a");
    EXPECT_EQ(front(), "a");
    plotwerk->newDocumentWithName_("c");
    EXPECT_EQ(front(), "c");
    plotwerk->display_doRangeOverAll_("b", false);
    EXPECT_EQ(front(), "b");
    plotwerk->closeDocument_askForSave_("b", false);
    EXPECT_EQ(front(), "c");
    plotwerk->closeDocument_askForSave_("a", false);
    EXPECT_EQ(front(), "c");
    plotwerk->closeDocument_askForSave_("c", false);
    EXPECT_EQ(front(), "");
}

TEST_F(DocumentMessages, NamesAreNeverEmptyNorTaken) {
    start();
    plotwerk->newDocumentWithName_("");
    const std::string second = front();
    EXPECT_EQ(second.find("Untitled "), 0U) << second;
    plotwerk->newDocumentWithName_("Untitled");
    const std::string third = front();
    EXPECT_EQ(third.find("Untitled "), 0U) << third;
    EXPECT_NE(third, second);
    plotwerk->newDocumentWithName_("k\u00e4se / \n\"x\"");
    EXPECT_EQ(front(), "k\u00e4se / \n\"x\"");
}

TEST_F(DocumentMessages, SavedOnesComeBackFromBothKindsOfFile) {
    start();
    read("Untitled", "x a \"b c\"\n0 1 nan\n1 -2.5 inf\n");
    plotwerk->setXRangeOf_xmin_xmax_("Untitled", 0.1, 3);
    const std::string contents = contentsOf("Untitled");
    for (const bool binary : {false, true}) {
        plotwerk->saveDocument_as_binary_("Untitled", pathOf("saved"), binary);
        EXPECT_TRUE(plotwerk->didSaveSucceed_("Untitled"));
        EXPECT_EQ(bytesOf(pathOf("saved")).front() == '{', !binary);
        plotwerk->closeDocument_askForSave_("Untitled", true);
        EXPECT_EQ(front(), "") << "nothing to be kept: " << lastError();

        plotwerk->openFile_file_doRangeOverAll_("", pathOf("saved"), false);
        EXPECT_EQ(front(), "Untitled");
        EXPECT_EQ(contentsOf("Untitled"), contents);
        EXPECT_FALSE(fs::exists(stateDirectory));
    }
    plotwerk->closeDocument_askForSave_("Untitled", false);
    plotwerk->openFile_file_doRangeOverAll_("", pathOf("saved"), true);
    EXPECT_EQ(plotwerk->getXRangeOf_xmin_xmax_("Untitled"), std::tuple(0.0, 1.0));
}

TEST_F(DocumentMessages, SavingToIsACopyAndSavingAsIsNot) {
    start();
    read("Untitled", "1 2\n");
    plotwerk->saveDocument_as_binary_("Untitled", "", false);
    EXPECT_FALSE(plotwerk->didSaveSucceed_("Untitled"));
    EXPECT_EQ(lastError(), "saveDocument:as:binary: \"Untitled\" has no path of its own");

    plotwerk->saveDocument_to_binary_("Untitled", pathOf("copy"), false);
    EXPECT_TRUE(plotwerk->didSaveSucceed_("Untitled"));
    plotwerk->saveDocument_to_binary_("Untitled", "", false);
    EXPECT_FALSE(plotwerk->didSaveSucceed_("Untitled")) << "a copy's path isn't its own";

    plotwerk->saveDocument_as_binary_("Untitled", pathOf("own"), false);
    EXPECT_EQ(front(), "Untitled") << "clients know it by this name";
    read("Untitled", "1 3\n");
    plotwerk->saveDocument_as_binary_("Untitled", "", true);
    EXPECT_TRUE(plotwerk->didSaveSucceed_("Untitled"));
    EXPECT_NE(bytesOf(pathOf("own")), bytesOf(pathOf("copy")));
    EXPECT_NE(bytesOf(pathOf("own")).front(), '{');
}

TEST_F(DocumentMessages, AFailedSaveLeavesTheFileAndIsTold) {
    start();
    plotwerk->saveDocument_as_binary_("Untitled", pathOf("own"), false);
    const std::string before = bytesOf(pathOf("own"));
    const struct {
        std::string path, reason;
    } cases[] = {
        {directory.string(), "Is a directory"},
        {pathOf("none/own"), "No such file or directory"},
        {pathOf("own/in"), "Not a directory"},
        {"/dev/full", "not a regular file"},
    };
    for (const auto &c : cases) {
        plotwerk->saveDocument_as_binary_("Untitled", c.path, false);
        EXPECT_FALSE(plotwerk->didSaveSucceed_("Untitled")) << c.path;
        EXPECT_EQ(lastError(), "saveDocument:as:binary: can't write " + c.path + ": " + c.reason);
    }
    EXPECT_EQ(bytesOf(pathOf("own")), before);
    plotwerk->saveDocument_as_binary_("Untitled", "", false);
    EXPECT_TRUE(plotwerk->didSaveSucceed_("Untitled")) << "its own path has stayed";
    EXPECT_FALSE(plotwerk->didSaveSucceed_("nix"));
}

// Neither the file's name nor its text is UTF-8 here, as the bus needs it.
TEST_F(DocumentMessages, DataTextIsReadIntoASourceNamedAfterItsFile) {
    start({file("r\xf6hre.txt", "\xef\xbb\xbfU Str\xf6me\n0 1\n")});
    EXPECT_EQ(front(), "r\u00f6hre.txt");
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_(front(), 0, 0, false);
    EXPECT_EQ(plotwerk->markSelectedCurvesOf_(front()), 1);
    EXPECT_EQ(plotwerk->nameOfNextMarkedCurveOf_name_source_yData_table_index_(front()),
              std::tuple("Str\u00f6me", "r\u00f6hre.txt", true, 1, 0));

    plotwerk->openFile_file_doRangeOverAll_("", file("picture", std::string("1 2\n\0\n", 6)),
                                            false);
    EXPECT_EQ(lastError(), "openFile:file:doRangeOverAll: can't open " + pathOf("picture") +
                               ": neither a saved document nor data text");
}

TEST_F(DocumentMessages, AnOpenDocumentIsNotOpenedTwice) {
    start();
    read("Untitled", "1 2\n");
    plotwerk->saveDocument_as_binary_("Untitled", pathOf("saved"), false);
    plotwerk->newDocumentWithName_("other");
    plotwerk->setValueOfDoc_atIndex_indexSerie_toValue_("Untitled", 0, -1, 7);
    fs::create_symlink("saved", pathOf("link"));
    plotwerk->openFile_file_doRangeOverAll_("", pathOf("link"), false);
    EXPECT_EQ(front(), "Untitled");
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("Untitled", 0, -1), 7)
        << "unsaved changes stay";

    const std::string text = file("text", "1 2\n");
    plotwerk->openFile_file_doRangeOverAll_("", text, false);
    plotwerk->openFile_file_doRangeOverAll_("", text, false);
    EXPECT_EQ(front().find("text "), 0U) << "data text is read anew: " << front();
    plotwerk->saveDocument_as_binary_("text", "", false);
    EXPECT_FALSE(plotwerk->didSaveSucceed_("text"));
    EXPECT_EQ(bytesOf(text), "1 2\n");
}

TEST_F(DocumentMessages, UnsavedChangesAreKeptWhenClosedWithAQuestion) {
    start();
    std::string contents;
    for (const char *keptName : {"_a_b.json", "_a_b 2.json"}) {
        plotwerk->newDocumentWithName_(".a/b");
        plotwerk->closeDocument_askForSave_(".a/b", true);
        EXPECT_FALSE(fs::exists(stateDirectory / keptName)) << "nothing had changed";

        plotwerk->newDocumentWithName_(".a/b");
        read(".a/b", "1 2\n");
        contents = contentsOf(".a/b");
        plotwerk->closeDocument_askForSave_(".a/b", true);
        EXPECT_EQ(front(), "Untitled");
    }
    EXPECT_EQ(bytesOf(stateDirectory / "_a_b.json"), contents);
    EXPECT_EQ(bytesOf(stateDirectory / "_a_b 2.json"), contents);
    EXPECT_EQ(fs::status(stateDirectory).permissions(), fs::perms::owner_all);

    plotwerk->newDocumentWithName_("dropped");
    read("dropped", "1 2\n");
    plotwerk->closeDocument_askForSave_("dropped", false);
    EXPECT_FALSE(fs::exists(stateDirectory / "dropped.json"));

    EXPECT_NE(stop().err.find("info: unsaved changes of \".a/b\" kept in " +
                              (stateDirectory / "_a_b.json").string() + "\n"),
              std::string::npos);
}

TEST_F(DocumentMessages, ADocumentThatCannotBeKeptStaysOpen) {
    file("state", "not a directory");
    start();
    read("Untitled", "1 2\n");
    plotwerk->closeDocument_askForSave_("Untitled", true);
    EXPECT_EQ(front(), "Untitled");
    EXPECT_NE(lastError().find("closeDocument:askForSave: can't create "), std::string::npos);
}
