// Pictures of documents, and where these go.
#include "tests/plotwerk/server/serverTest.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>

namespace fs = std::filesystem;

class PictureMessages : public ServerTest {
  protected:
    PictureMessages() {
        fs::create_directory(programs());
        setenv("PATH", programs().c_str(), 1);
        fs::create_directory(directory / "run");
        setenv("XDG_RUNTIME_DIR", (directory / "run").c_str(), 1);
    }

    fs::path programs() const { return directory / "bin"; }

    // The server finds no programs but these: shell scripts that find the usual ones.
    void addProgram(const std::string &name, const std::string &script) {
        const std::string made = file("bin/" + name, "#!/bin/sh\nPATH=/usr/bin:/bin\n" + script);
        fs::permissions(made, fs::perms::owner_all);
    }

    void startWithData() {
        start();
        plotwerk->replaceDataformText_of_source_doRangeOverAll_("t y\n0 1\n1 3\n2 2\n", "Untitled",
                                                                "", true);
        plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("Untitled", 0, 0, false);
    }

    // How many children of the server there are, dead ones included.
    std::size_t children() {
        std::string list = bytesOf("/proc/" + std::to_string(program->pid()) + "/task/" +
                                   std::to_string(program->pid()) + "/children");
        return static_cast<std::size_t>(std::count(list.begin(), list.end(), ' '));
    }
};

TEST_F(PictureMessages, ACopyNeedsAPlace) {
    file("plotwerk", "a file where the folder is to be");
    fs::permissions(directory / "plotwerk", fs::perms::owner_read);
    const std::string notSet = "no place for a copy: XDG_RUNTIME_DIR is not set (\"Untitled\")";
    const std::pair<std::string, std::string> cases[] = {
        {"", notSet},
        {"run", notSet}, // a relative path doesn't count
        {pathOf("none"),
         "can't create " + pathOf("none/plotwerk") + ": No such file or directory (\"Untitled\")"},
        {directory, pathOf("plotwerk") + " is not the user's own (\"Untitled\")"}};
    for (const auto &[runtime, reason] : cases) {
        setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
        startWithData();
        plotwerk->pasteDataOf_("Untitled");
        EXPECT_EQ(lastError(), "the clipboard is empty (\"Untitled\")");
        plotwerk->copySelectedCurvesOf_includeX_("Untitled", true);
        plotwerk->copyPDF_("Untitled");
        EXPECT_EQ(lastError(), reason);
        plotwerk->pasteDataOf_("Untitled");
        EXPECT_EQ(lastError(), "") << "the clipboard is as it was";
        stop();
    }
}

TEST_F(PictureMessages, ACompositionIsSavedAndOpened) {
    addProgram("viewer", "echo seen\nsed -n 's/^SigIgn:\t//p' /proc/$$/status >'" +
                             pathOf("ignored") + "'\ncp \"$1\" \"$1.seen\"\n");
    addProgram("broken", "exit 3\n");
    startWithData();
    const std::string page = pathOf("page.pdf");
    const auto add = [&] {
        plotwerk->addPDFtoCompositionView_inRect_angle_sheer_("Untitled", {10, 10, 100, 100}, 30,
                                                              0.1);
    };
    plotwerk->newCompositionView_({0, 0, 300, 200});
    add();
    plotwerk->savePDFofCompositionView_openWith_(page, "viewer");
    EXPECT_EQ(lastError(), "");
    EXPECT_NE(bytesOf(page).find("/MediaBox [ 0 0 300 200 ]"), std::string::npos);
    waitUntil("the viewer", [&] {
        return fs::exists(page + ".seen") && fs::file_size(page + ".seen") == fs::file_size(page);
    });

    constexpr unsigned long pipeAndFileSize = 1 << (SIGPIPE - 1) | 1 << (SIGXFSZ - 1);
    EXPECT_EQ(std::stoul(bytesOf(pathOf("ignored")), nullptr, 16) & pipeAndFileSize, 0U)
        << "signals that plotwerkd ignores";

    add();
    EXPECT_TRUE(lastError().starts_with("there is no composition")) << "a saved one is done with";

    // as large as the picture, 100 points wide, turned upright and not sheared
    plotwerk->newCompositionView_({0, 0, 0, 0});
    plotwerk->addPDFtoCompositionView_inRect_angle_sheer_("Untitled", {500, 10, 100, 0}, 90, 0);
    plotwerk->savePDFofCompositionView_openWith_(page, "");
    const std::string pdf = bytesOf(page);
    double width = 0, height = 0;
    std::sscanf(pdf.c_str() + pdf.find("/MediaBox"), "/MediaBox [ 0 0 %lf %lf", &width, &height);
    EXPECT_NEAR(height, 115, 10);
    EXPECT_NEAR(width, 85, 10);

    plotwerk->newCompositionView_({0, 0, 0, 0});
    add();
    plotwerk->savePDFofCompositionView_openWith_(page, "no such; touch " + pathOf("touched"));
    EXPECT_TRUE(lastError().starts_with("can't start no such; touch")) << lastError();
    EXPECT_FALSE(fs::exists(pathOf("touched")));
    std::ofstream(pathOf("script")) << "#!/no/interpreter\n";
    std::ofstream(pathOf("rubbish")) << "\x7f"
                                     << "ELF" << std::string(100, '\1');
    for (const std::string &opener : {pathOf("script"), pathOf("rubbish"), pathOf("")}) {
        if (!fs::is_directory(opener)) fs::permissions(opener, fs::perms::owner_all);
        plotwerk->savePDFofCompositionView_openWith_(page, opener);
        EXPECT_TRUE(lastError().starts_with("can't start " + opener + ": ")) << lastError();
        EXPECT_EQ(bytesOf(page), pdf) << "the old page, with " << opener;
    }
    std::ofstream(pathOf("bin/page")) << "no program";
    plotwerk->savePDFofCompositionView_openWith_(page, "page");
    EXPECT_EQ(lastError(), "can't start page: Permission denied");
    plotwerk->savePDFofCompositionView_openWith_(page, "broken");
    EXPECT_EQ(lastError(), "");
    waitUntil("the end of all programs", [&] { return children() == 0; });
    const auto [out, log, status, signal] = stop();
    EXPECT_EQ(out, "") << "what a viewer says";
    EXPECT_TRUE(holds(log, "warning: broken ended with status 3\n"));
    EXPECT_TRUE(holds(log, "info: saved the composition in " + page + '\n'));
}

TEST_F(PictureMessages, NothingIsPrintedThatIsCutOff) {
    startWithData();
    addProgram("lp", "touch '" + pathOf("started") + "'\n");
    limit(RLIMIT_FSIZE, 1000);
    plotwerk->printDoc_("Untitled");
    EXPECT_EQ(lastError(), "can't write what is to be printed: File too large (\"Untitled\")");
    EXPECT_EQ(children(), 0U);
    EXPECT_FALSE(fs::exists(pathOf("started")));
}

// A printer that takes its time keeps nobody waiting.
TEST_F(PictureMessages, PrintingHandsAPdfToLp) {
    startWithData();
    addProgram("lp", "while [ ! -e '" + pathOf("go") + "' ]; do sleep 0.01; done\necho \"$@\" >'" +
                         pathOf("arguments") + "'\ncat >'" + pathOf("part") + "'\nmv '" +
                         pathOf("part") + "' '" + pathOf("printed") + "'\n");
    plotwerk->printDoc_("Untitled");
    EXPECT_EQ(lastError(), "");
    plotwerk->savePicturePDF_as_("Untitled", pathOf("a.pdf"));
    EXPECT_FALSE(fs::exists(pathOf("printed")));
    file("go", "");
    waitUntil("the printer", [&] { return fs::exists(pathOf("printed")); });
    EXPECT_EQ(bytesOf(pathOf("printed")), bytesOf(pathOf("a.pdf")));
    EXPECT_EQ(bytesOf(pathOf("arguments")), "-t Untitled\n");
    waitUntil("the end of all programs", [&] { return children() == 0; });
    EXPECT_TRUE(holds(stop().err, "info: printed \"Untitled\"\n"));
}
