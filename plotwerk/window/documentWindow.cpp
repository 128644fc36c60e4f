#include "plotwerk/window/documentWindow.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/data/commas.h"
#include "plotwerk/data/encoding.h"
#include "plotwerk/data/lines.h"
#include "plotwerk/data/readingTime.h"
#include "plotwerk/files/atomicFile.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/window/clipboard.h"
#include "plotwerk/window/menus.h"
#include "plotwerk/window/printing.h"
#include "plotwerk/window/scopedValue.h"
#include "plotwerk/window/windowedApplication.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace plotwerk {

static constexpr std::int32_t keep = 2; // a flag of a message that leaves a setting as it is

DocumentWindow::DocumentWindow(const Glib::RefPtr<WindowedApplication> &app, Document &shown)
    : Gtk::ApplicationWindow(app),
      application(*app),
      document(shown),
      versions(shown),
      curves(shown,
             {.select = [this](const std::vector<int> &chosen) { selectCurves(chosen); },
              .showSelection = [this](bool isShown) { isShown ? showCurves() : hideCurves(); }}),
      plot(shown, {.select =
                       [this](const MouseSelection &selection) {
                           if (!isFree()) return;
                           application.mouseSelection(document) = selection;
                           refresh();
                       },
                   .selectCurve =
                       [this](int curve, bool append) {
                           send("selectCurvesOf_indexFirst_indexLast_appendSelection_",
                                {curve, curve, append});
                       },
                   .setRanges = [this](const std::vector<AxisRange> &ranges) { setRanges(ranges); },
                   .beginView = [this] { history.leave(viewOf(document)); },
                   .rangeOverAll =
                       [this] {
                           history.leave(viewOf(document));
                           send("display_doRangeOverAll_", {true});
                       },
                   .setFitRange =
                       [this](double min, double max) {
                           send("setFitRangeOf_xmin_xmax_", {min, max});
                       },
                   .readOut = [this](const ReadOut &readOut) { status.showReadOut(readOut); }}),
      fitPane(
          shown,
          {.setFormula =
               [this](const std::string &text) {
                   return isDone("setFormulaOf_formulaText_", {document.name, text});
               },
           .setParameters =
               [this](std::string list) {
                   std::replace(list.begin(), list.end(), '.', application.decimalSeparator());
                   return isDone("readFormulaParameterOf_parameterList_", {document.name, list});
               },
           // It lets the main loop run, which is not for the handler of an event.
           .fit =
               [this] {
                   Glib::signal_idle().connect_once([this] {
                       if (!retired) send("startFitOf_iterations_lambda_chiq_");
                   });
               }}),
      questions(*this),
      closing(*app, *this, shown, questions,
              [this](const std::function<void()> &then) { save(then); }) {
    set_default_size(960, 640);
    set_show_menubar();

    auto *content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    auto *upper = Gtk::make_managed<Gtk::Paned>(Gtk::Orientation::VERTICAL);
    auto *across = Gtk::make_managed<Gtk::Paned>(Gtk::Orientation::HORIZONTAL);
    curves.set_size_request(160, -1);
    across->set_start_child(curves);
    auto *plotAndFit = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL);
    plotAndFit->append(plot);
    auto *edge = Gtk::make_managed<Gtk::Separator>(Gtk::Orientation::VERTICAL);
    Glib::Binding::bind_property(fitPane.property_visible(), edge->property_visible(),
                                 Glib::Binding::Flags::SYNC_CREATE);
    plotAndFit->append(*edge);
    plotAndFit->append(fitPane);
    fitPane.set_visible(false);
    fitPane.property_visible().signal_changed().connect([this] {
        plot.showFitRange(fitPane.get_visible());
        fitPane.refresh();
    });
    across->set_end_child(*plotAndFit);
    across->set_resize_start_child(false);
    across->set_shrink_start_child(false);
    across->set_shrink_end_child(false);
    across->set_position(200);
    plot.set_size_request(240, 160);
    upper->set_start_child(*across);
    upper->set_end_child(journalPane);
    upper->set_resize_end_child(false);
    upper->set_shrink_start_child(false);
    upper->set_shrink_end_child(false);
    upper->set_vexpand();
    journalPane.set_visible(false);
    content->append(*upper);

    content->append(*Gtk::make_managed<Gtk::Separator>(Gtk::Orientation::HORIZONTAL));
    content->append(status);
    set_child(*content);

    addActions();
    picture().signalDrawn().connect([this] { catchUp(); });
    addDropTarget();
    add_controller(yieldingKeys());
    catchUpBeforeKeys();
    signal_close_request().connect(
        [this] {
            closing.begin({});
            return true;
        },
        false);
    refresh();
    updateActions();
    plot.grab_focus();
}

void DocumentWindow::addActions() {
    const auto onSelection = [&](const char *name, const char *member) {
        forSelection.push_back(add_action(name, [this, member] { send(member); }));
    };
    add_action("open", [this] { chooseFileToOpen(); });
    add_action("save", [this] { save({}); });
    add_action("save-as", [this] { saveAs({}); });
    add_action("export", [this] { exportPicture(); });
    add_action("print", [this] {
        printByDialog(*this, document, sigc::mem_fun(*this, &DocumentWindow::tell));
    });
    add_action("close", [this] { closing.begin({}); });

    undo = add_action("undo", [this] {
        endStep();
        if (!versions.canUndo() || !isFree()) return;
        Versions::Version version = versions.undo(document);
        const std::size_t lines = version.lines;
        restore(std::move(version));
        journalPane.takeBackTo(lines);
        versions.setLines(journalPane.numberOfLines());
    });
    redo = add_action("redo", [this] {
        endStep();
        if (!versions.canRedo() || !isFree()) return;
        restore(versions.redo(document));
        versions.setEarlierLines(journalPane.putBack());
        versions.setLines(journalPane.numberOfLines());
    });
    forSelection.push_back(
        add_action("copy-data", [this] { send("copySelectedCurvesOf_includeX_", {true}); }));
    add_action("copy-picture", [this] { send("copyPDF_"); });
    add_action("copy-read-out", [this] { copyTextTo(get_clipboard(), status.readOutText()); });
    add_action("paste-data", [this] { paste(); });
    add_action("select-all", [this] {
        send("selectCurvesOf_indexFirst_indexLast_appendSelection_", {-1, -1, false});
    });
    onSelection("delete", "deleteSelectedCurvesOf_");

    add_action("zoom-in", [this] { plot.zoom(0.8); });
    add_action("zoom-out", [this] { plot.zoom(1 / 0.8); });
    add_action("range-over-all", [this] {
        history.leave(viewOf(document));
        send("display_doRangeOverAll_", {true});
    });
    back = add_action("view-back", [this] {
        if (!isFree()) return;
        if (const auto view = history.back(viewOf(document))) showView(*view);
    });
    forward = add_action("view-forward", [this] {
        if (!isFree()) return;
        if (const auto view = history.forward(viewOf(document))) showView(*view);
    });
    logarithmicX =
        add_action_bool("logarithmic-x", [this] { toggleLogarithmic(xAxis, *logarithmicX); });
    logarithmicY =
        add_action_bool("logarithmic-y", [this] { toggleLogarithmic(yAxis, *logarithmicY); });
    fillWindow = add_action_bool("fill-window", [this] {
        picture().setFills(!picture().fills());
        fillWindow->set_state(Glib::Variant<bool>::create(picture().fills()));
    });
    add_action(Gio::PropertyAction::create("show-curves", curves.property_visible()));
    add_action(Gio::PropertyAction::create("show-journal", journalPane.property_visible()));
    add_action(Gio::PropertyAction::create("show-fit", fitPane.property_visible()));
    add_action("save-script", [this] { saveScript(); });

    line = add_action_bool("toggle-line", [this] { setLooks("line", 0); });
    symbols = add_action_bool("toggle-symbols", [this] { setLooks("symbols", 9); });
    forSelection.push_back(add_action("show", [this] { showCurves(); }));
    forSelection.push_back(add_action("hide", [this] { hideCurves(); }));
    onSelection("mark", "markSelectedCurvesOf_");
    onSelection("fit-data", "markSelectionAsFitDataOf_");
    cancelFit = add_action("cancel-fit", [this] { application.cancelFitOf(document); });
    cancelFit->set_enabled(false);
    forSelection.push_back(add_action("rename", [this] { rename(); }));
    onSelection("differentiate", "diffOf_");
    onSelection("sort-by-x", "sortSelectedCurvesByXdata_");
    onSelection("swap-with-x", "swapSelectedCurvesWithXdata_");
    forSelection.push_back(line);
    forSelection.push_back(symbols);
}

void DocumentWindow::addDropTarget() {
    const auto target = Gtk::DropTarget::create(GDK_TYPE_FILE_LIST, Gdk::DragAction::COPY);
    target->signal_drop().connect(
        [this](const Glib::ValueBase &value, double, double) {
            auto *list = static_cast<GdkFileList *>(g_value_get_boxed(value.gobj()));
            GSList *files = gdk_file_list_get_files(list);
            for (const GSList *file = files; file; file = file->next) {
                if (char *path = g_file_get_path(G_FILE(file->data))) {
                    takeFile(path);
                    g_free(path);
                }
            }
            g_slist_free(files);
            return true;
        },
        false);
    add_controller(target);
}

bool DocumentWindow::isDone(const char *member, std::vector<Argument> arguments) {
    return !retired && isFree() && application.perform(member, std::move(arguments));
}

bool DocumentWindow::isFree() {
    if (application.isBusy()) tell("Not while other work goes on");
    return !application.isBusy();
}

void DocumentWindow::send(const char *member, std::vector<Argument> arguments) {
    arguments.insert(arguments.begin(), document.name);
    isDone(member, std::move(arguments));
}

void DocumentWindow::hear(const MessageLine &message) {
    journalPane.add(message);
    if (std::exchange(heardRevision, document.revision) == document.revision) return;
    const auto kind = message.selects            ? Versions::Change::ofView
                      : !message.setting.empty() ? Versions::Change::ofSetting
                      : message.keepsData        ? Versions::Change::ofLook
                                                 : Versions::Change::ofData;
    change = std::max(change, kind);
}

void DocumentWindow::hearOpened(const MessageLine &message) {
    if (journalPane.numberOfLines() > 0) return;
    versions.keep(document, Versions::Change::ofView, 0); // its ranges are no step of their own
    heardRevision = document.revision;
    if (!document.path.empty()) return;
    journalPane.add(message);
    versions.setLines(journalPane.numberOfLines());
}

void DocumentWindow::endStep() {
    if (isWithinStep) return;
    // What nobody has told of may be anything.
    const auto kind = change == Versions::Change::none ? Versions::Change::ofData : change;
    versions.keep(document, kind, journalPane.numberOfLines());
    if (!versions.canRedo()) journalPane.forgetTakenBack();
    change = Versions::Change::none;
}

// With the messages since the last time.
void DocumentWindow::catchUp() {
    if (retired) return;
    endStep();
    updateActions();
}

// A key may come between a message and the picture of it, which waits for others.
void DocumentWindow::catchUpBeforeKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint, guint, Gdk::ModifierType) {
            catchUp();
            return false;
        },
        false);
    add_controller(keys);
}

void DocumentWindow::restore(Versions::Version version) {
    application.restore(document, std::move(version));
    versions.setRestored(document);
    heardRevision = document.revision;
    picture().refreshNow();
}

void DocumentWindow::refresh() {
    if (retired) return;
    updateTitle();
    plot.refresh(application.mouseSelection(document));
    curves.refresh();
    if (fitPane.get_visible()) fitPane.refresh();
}

void DocumentWindow::updateTitle() {
    const Glib::ustring title = (hasUnsavedChanges(document) ? "• " : "") + document.name;
    if (title.raw() == get_title().raw()) return; // clang sees two == of Glib::ustring
    set_title(title);
    plot.setDescription(Glib::ustring::sprintf("The plot of the document %s", document.name));
}

void DocumentWindow::updateActions() {
    const auto first = firstSelectedCurve(document);
    for (const auto &action : forSelection) action->set_enabled(first.has_value());
    const auto setState = [](const Glib::RefPtr<Gio::SimpleAction> &action, bool state) {
        action->set_state(Glib::Variant<bool>::create(state));
    };
    setState(line, first && columnOf(document, *first).look.line);
    setState(symbols, first && columnOf(document, *first).look.symbols);
    setState(logarithmicX, document.axes[xAxis].logarithmic);
    setState(logarithmicY, document.axes[yAxis].logarithmic);
    undo->set_enabled(versions.canUndo());
    redo->set_enabled(versions.canRedo());
    const View view = viewOf(document);
    back->set_enabled(history.hasEarlier(view));
    forward->set_enabled(history.hasLater(view));
}

void DocumentWindow::beginFit() {
    cancelFit->set_enabled();
}

void DocumentWindow::showFit(const FitProgress &progress) {
    fitPane.showProgress(progress);
    if (fitPane.get_visible() || !status.isRead()) return;
    note(progress.iterations() == 0
             ? "Fitting. Escape cancels."
             : Glib::ustring::sprintf("Fitting: χ² = %.7g, %d iterations. Escape cancels.",
                                      progress.chiSquare(), progress.iterations()));
}

void DocumentWindow::endFit() {
    cancelFit->set_enabled(false);
    fitPane.hideProgress();
    tell({});
}

// Neighbours in one message.
void DocumentWindow::selectCurves(const std::vector<int> &chosen) {
    bool append = false;
    for (std::size_t i = 0; i < chosen.size();) {
        std::size_t last = i;
        while (last + 1 < chosen.size() && chosen[last + 1] == chosen[last] + 1) ++last;
        send("selectCurvesOf_indexFirst_indexLast_appendSelection_",
             {chosen[i], chosen[last], append});
        append = true;
        i = last + 1;
    }
}

static constexpr const char *rangeMembers[axisCount] = {
    "setXRangeOf_xmin_xmax_", "setYRangeOf_ymin_ymax_", "set2XRangeOf_xmin_xmax_",
    "set2YRangeOf_ymin_ymax_"};

void DocumentWindow::setRanges(const std::vector<AxisRange> &ranges) {
    for (const AxisRange &range : ranges) send(rangeMembers[range.axis], {range.min, range.max});
    picture().refreshNow();
}

// A message leaves a limit as it is that isn't given: what is set may have to go first.
void DocumentWindow::showView(const View &view) {
    const View present = viewOf(document);
    for (std::size_t axis = 0; axis < view.size(); ++axis) {
        const Range &range = view[axis];
        const auto isSet = [](double limit) { return !std::isnan(limit); };
        const bool stays = (isSet(range.min) || !isSet(present[axis].min)) &&
                           (isSet(range.max) || !isSet(present[axis].max)) &&
                           isSet(range.min) == isSet(range.max);
        if (!stays) send(rangeMembers[axis], {unset, unset});
        if (isSet(range.min) || isSet(range.max)) send(rangeMembers[axis], {range.min, range.max});
    }
    picture().refreshNow();
}

// The action's state turned, as the argument of the message that stands for it.
void DocumentWindow::setLooks(const char *action, int argument) {
    bool state = false;
    (std::string_view(action) == "line" ? line : symbols)->get_state(state);
    std::vector<Argument> arguments(10, keep);
    arguments[static_cast<std::size_t>(argument)] = static_cast<std::int32_t>(!state);
    send("setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_",
         std::move(arguments));
}

void DocumentWindow::hideCurves() {
    hiddenCurves.keepSelected(document);
    drawParts({});
}

// Where curves get different parts again, those that get the same ones are selected for it.
void DocumentWindow::showCurves() {
    {
        const ScopedValue within(isWithinStep, true);
        showSelection();
    }
    endStep();
}

// In several messages.
void DocumentWindow::showSelection() {
    send("showCurveOf_");
    const auto hidden = hiddenCurves.selected(document);
    std::vector<int> selected; // by their ranks
    for (const CurveRef &curve : selectedCurves(document)) selected.push_back(curve.index);
    const bool same = hidden.size() == 1 && hidden[0].curves.size() == selected.size();
    for (const HiddenCurves::Group &group : hidden) {
        if (!same) selectCurves(group.curves);
        drawParts(group.parts);
    }
    if (!same && !hidden.empty()) selectCurves(selected);
}

// Of the selected curves.
void DocumentWindow::drawParts(const DrawnParts &parts) {
    send("setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_",
         {std::int32_t{parts.line}, keep, std::int32_t{parts.yError}, std::int32_t{parts.xError},
          keep, std::int32_t{parts.filled}, keep, keep, std::int32_t{parts.marker},
          std::int32_t{parts.symbols}});
}

void DocumentWindow::toggleLogarithmic(AxisCode axis, Gio::SimpleAction &action) {
    constexpr std::int32_t same = -1;
    bool state = false;
    action.get_state(state);
    const auto turned = static_cast<std::int32_t>(!state);
    send(
        "setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_"
        "expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_"
        "labelDensity_",
        {static_cast<std::int32_t>(axis) + 1, unset, same, same, turned, keep, keep, keep, keep,
         keep, unset, keep, keep, keep, keep, same, same, keep, unset});
}

// In the folder of the document.
void DocumentWindow::askForFile(const Glib::ustring &title, Gtk::FileChooser::Action action,
                                const Glib::ustring &name,
                                const std::function<void(const std::string &)> &chosen) {
    std::error_code none;
    questions.askForFile(title, action,
                         document.path.empty() ? std::filesystem::current_path(none)
                                               : document.path.parent_path(),
                         name, chosen);
}

void DocumentWindow::chooseFileToOpen() {
    askForFile("Open", Gtk::FileChooser::Action::OPEN, "",
               [this](const std::string &path) { application.openFile(path); });
}

void DocumentWindow::save(const std::function<void()> &then) {
    if (document.path.empty()) return saveAs(then);
    if (isDone("saveDocument_to_binary_", {document.name, std::string(), false}) && then) then();
}

// What a file of that kind may be called, for a document that may be called after one of data.
//   "U/V.txt" -> "U_V.pdf"        "run 1.5" -> "run 1.5.pdf"
static Glib::ustring fileName(const Document &document, const char *end) {
    std::string name = document.name;
    std::replace(name.begin(), name.end(), '/', '_');
    const std::size_t point = name.rfind('.');
    const auto isLetter = [](char c) { return g_ascii_isalpha(c) != 0; };
    if (point != std::string::npos && point > 0 &&
        std::all_of(name.begin() + static_cast<std::ptrdiff_t>(point) + 1, name.end(), isLetter))
        name.resize(point);
    return name + end;
}

void DocumentWindow::saveAs(const std::function<void()> &then) {
    const std::string own = document.path.filename().string();
    const Glib::ustring name = own.empty() ? fileName(document, ".plotwerk") : Glib::ustring(own);
    askForFile("Save", Gtk::FileChooser::Action::SAVE, name, [this, then](const std::string &path) {
        if (isDone("saveDocument_as_binary_", {document.name, path, false}) && then) then();
    });
}

// Saves a picture in the format of the path's extension; null if there is none of that.
static const char *messageFor(const std::filesystem::path &path) {
    const Glib::ustring end = Glib::ustring(path.extension().string()).lowercase();
    if (end == ".pdf" || end == ".svg") return "savePicturePDF_as_";
    if (end == ".eps") return "savePictureEPS_as_";
    if (end == ".tiff" || end == ".tif" || end == ".png") return "savePictureTIFF_as_";
    return nullptr;
}

void DocumentWindow::exportPicture() {
    askForFile("Export Picture as PDF, SVG, EPS, TIFF or PNG", Gtk::FileChooser::Action::SAVE,
               fileName(document, ".pdf"), [this](const std::string &path) {
                   if (const char *member = messageFor(path)) return send(member, {path});
                   tell("Not exported: the name of a picture ends in .pdf, .svg, .eps, .tiff or "
                        ".png");
               });
}

void DocumentWindow::saveScript() {
    askForFile("Save Journal as Script", Gtk::FileChooser::Action::SAVE, fileName(document, ".sh"),
               [this](const std::string &path) {
                   try {
                       const std::string script = journalPane.script();
                       writeWholeFile(path, [&](std::ostream &stream) { stream << script; });
                   } catch (const Refusal &refusal) {
                       tell(refusal.what());
                   }
               });
}

void DocumentWindow::rename() {
    const auto curve = firstSelectedCurve(document);
    if (!curve) return;
    questions.askForText(
        "Rename Curves", "_Rename", columnOf(document, *curve).name,
        [this](const std::string &text) { send("changeNameOfSelectionOf_to_", {text}); });
}

static std::string freeSourceName(const Document &document, const std::string &name) {
    const auto isTaken = [&](const std::string &candidate) {
        return std::any_of(document.sources.begin(), document.sources.end(),
                           [&](const Source &source) { return source.name == candidate; });
    };
    std::string free = name;
    for (int i = 2; isTaken(free); ++i) free = name + ' ' + std::to_string(i);
    return free;
}

void DocumentWindow::readText(const std::string &text, const std::string &source) {
    isDone("readDataformText_of_source_doRangeOverAll_appendToExistingData_",
           {text, document.name, freeSourceName(document, source), false, false});
}

// As text, not by the message that pastes: a script would find another clipboard.
void DocumentWindow::paste() {
    const auto clipboard = get_clipboard();
    const auto take = [this, clipboard](Glib::RefPtr<Gio::AsyncResult> &result) {
        try {
            readText(clipboard->read_text_finish(result), "Clipboard");
        } catch (const Glib::Error &) {
            tell("The clipboard holds no text");
        }
    };
    clipboard->read_text_async(sigc::track_obj(take, *this)); // the window may go before
}

// Its numbers may say what the decimal separator is, as when it is opened. A document that was
// dropped with it may have taken the window's place.
void DocumentWindow::takeFile(const std::string &path) {
    try {
        std::string bytes = readWholeFile(path);
        if (retired || beginsAsDocument(bytes)) return application.openFile(path);
        ReadingTime time(bytes.size());
        std::string text = textOfFile(std::move(bytes), time);
        unifyLineEnds(text);
        const CommaUse use = commaUseOfFile(text, application.decimalSeparator(), time);
        application.withDecimalSeparator(use.commas == Commas::decimal ? ',' : '.', [&] {
            readText(text, std::filesystem::path(path).filename().string());
        });
    } catch (const Refusal &refusal) {
        tell(refusal.what());
    }
}

void DocumentWindow::retire() {
    retired = true;
    questions.withdraw();
    hide();
}

} // namespace plotwerk
