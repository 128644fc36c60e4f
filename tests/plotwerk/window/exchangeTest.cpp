// Documents exchanged with other programs: clipboard, files that are dropped.
#include "plotwerk/drawing/surface.h"
#include "tests/plotwerk/window/windowTest.h"

#include <cairo.h>
#include <csignal>

TEST_F(WindowTest, CopiesDataAndPicturesAndPastesData) {
    startWithLine();
    screen.frame();
    const auto clipboard = [&](const char *type) {
        return runProgram({"xclip", "-selection", "clipboard", "-o", "-t", type}).out;
    };
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_(name, 0, 0, false);
    plotwerk->copySelectedCurvesOf_includeX_(name, true);
    EXPECT_EQ(clipboard("UTF8_STRING"), plotwerk->dataOfSelectedCurvesOf_(name));
    plotwerk->copyPDF_(name);
    EXPECT_TRUE(holds(clipboard("application/pdf"), "%PDF"));
    const plotwerk::Surface png(
        cairo_image_surface_create_from_png(file("copied.png", clipboard("image/png")).c_str()));
    ASSERT_EQ(cairo_surface_status(png.get()), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_data(png.get())[0], 255) << "white paper";
    EXPECT_TRUE(holds(clipboard("image/svg+xml"), "<svg"));
    EXPECT_TRUE(holds(clipboard("image/tiff"), "II*"));

    screen.move(screen.frame().at(0.51, 0.5));
    const std::string readOut = "x = 5.1   y = 50\ty   point 1: 5, 50";
    waitUntil("the read-out", [&] { // of a mouse that may not have arrived at once
        screen.type("ctrl+shift+r");
        return clipboard("UTF8_STRING") == readOut;
    });

    const std::string text = file("text", "a b\n1 2\n3 4\n5 6\n");
    runProgram({"xclip", "-selection", "clipboard", "-i", text});
    waitUntil("data of another program", [&] { // which may not be at the clipboard at once
        plotwerk->pasteDataOf_(name);
        return plotwerk->indexOfCurveNameOf_source_table_column_(name, "Clipboard", 1, "b") == 1;
    });
    screen.type("ctrl+v");
    waitUntil("data from the clipboard", [&] {
        return plotwerk->indexOfCurveNameOf_source_table_column_(name, "Clipboard 2", 1, "b") == 2;
    });
}

TEST_F(WindowTest, DroppedDataAreReadInAndDroppedDocumentsOpened) {
    startWithLine();
    const std::string data = file("decimal commas.txt", "x;y\n0,5;1,5\n2,5;3,5\n");
    const std::string document = pathOf("other.plotwerk");
    plotwerk->newDocumentWithName_("other");
    plotwerk->saveDocument_as_binary_("other", document, false);
    plotwerk->closeDocument_askForSave_("other", false);
    ChildProcess source({DRAG_SOURCE, document, data});
    const Place corner{1100, 750};
    screen.place("drag source", corner);
    const Place target = screen.frame().at(0.5, 0.5);
    screen.dragAcross({corner.x + 50, corner.y + 50}, target, [&] {
        return plotwerk->indexOfCurveNameOf_source_table_column_(name, "decimal commas.txt", 1,
                                                                 "y") == 1 &&
               plotwerk->documentNameOfFrontWindow() == "other";
    });
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_(name, 1, 1), 3.5);
    EXPECT_EQ(lastError(), "");
    source.sendSignal(SIGTERM);
    source.finish();
}
