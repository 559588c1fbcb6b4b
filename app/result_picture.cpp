#include "app/result_picture.h"

#include <cstdio>
#include <cstring>
#include <utility>

#include "analysis/run/data_file.h"
#include "analysis/run/sample_groups.h"
#include "app/gdi_canvas.h"
#include "app/message_box.h"
#include "app/picture_dialog.h"
#include "app/screens_window.h"
#include "app/table_file.h"
#include "report/charts/chart_painter.h"
#include "report/graph_painter.h"
#include "report/svg_canvas.h"

namespace {

constexpr Index firstCapacity = 65'536;

// A picture of the last analysis as it was chosen, for as long as it is drawn.
class ChosenPicture {
public:
    explicit ChosenPicture(Program& program);
    ~ChosenPicture() { exchangeGroups(); }
    ChosenPicture(const ChosenPicture&) = delete;
    ChosenPicture& operator=(const ChosenPicture&) = delete;

    Extent size() const;
    void draw(Canvas& canvas);
    ErrorCode code() const { return code_; }
    const ChartShortage& shortage() const { return shortage_; } // of the last drawing

private:
    void exchangeGroups();

    AnalysisRun& run_;
    Chart* chart_ = nullptr; // null: the picture of the graph window
    ChartView view_;
    GraphView graphView_;
    SampleGroups groups_; // that stand in the chart, or those that it had before
    bool isExchanged_ = false;
    ErrorCode code_ = success;
    ChartShortage shortage_;
};

ChosenPicture::ChosenPicture(Program& program) : run_(program.run) {
    const PictureChoice& choice = program.picture;
    if (choice.picture == PictureChoice::ofWindow) {
        graphView_ = program.graph.view;
        const Extent wanted = choice.chart.size;
        const GraphView usual;
        graphView_.width = wanted.width > 0 ? wanted.width : usual.width;
        graphView_.height = wanted.width > 0 ? wanted.height : usual.height;
        return;
    }
    chart_ = &run_.charts[choice.picture];
    view_ = viewOf(*chart_, choice.chart);
    if (choice.column <= 0) return;
    const GroupSearch search = findGroups(run_.data, choice.column, groups_);
    if (search == GroupSearch::noMemory) code_ = outOfMemory;
    isExchanged_ = search == GroupSearch::found;
    exchangeGroups();
}

void ChosenPicture::exchangeGroups() {
    if (isExchanged_) std::swap(chart_->groups, groups_);
}

Extent ChosenPicture::size() const {
    return chart_ != nullptr ? view_.size : Extent{graphView_.width, graphView_.height};
}

void ChosenPicture::draw(Canvas& canvas) {
    shortage_ = {};
    if (chart_ == nullptr) {
        drawGraph(canvas, run_.graph, graphView_);
    } else if (code_ == success) {
        code_ = drawChart(canvas, *chart_, view_, shortage_);
    }
}

// The first one until another is chosen.
void startChoice(Program& program) {
    int& picture = program.picture.picture;
    while (picture < PictureChoice::ofWindow && !hasPicture(program.run, picture)) ++picture;
}

void showDone(Program& program, const char* what, const ChartShortage& shortage) {
    char text[120];
    std::snprintf(text, sizeof text, "status : the picture is %s", what);
    const std::size_t used = std::strlen(text);
    if (shortage.labels > 0) {
        std::snprintf(text + used, sizeof text - used, "; it has no room for %td of %td labels",
                      shortage.labels, shortage.ofLabels);
    }
    showText(program, statusBar, text);
}

void drawOn(HDC device, ChosenPicture& picture) {
    GdiCanvas canvas(device);
    canvas.fillBox({0, 0, picture.size().width, picture.size().height}, {255, 255, 255});
    picture.draw(canvas);
}

// As large as on the screen.
HENHMETAFILE makeMetafile(HDC screen, ChosenPicture& picture) {
    const Extent size = picture.size();
    const auto hundredths = [&](int pixels, int length, int resolution) { // of a millimetre
        return static_cast<LONG>(
            MulDiv(pixels, 100 * GetDeviceCaps(screen, length), GetDeviceCaps(screen, resolution)));
    };
    const RECT frame = {0, 0, hundredths(size.width, HORZSIZE, HORZRES),
                        hundredths(size.height, VERTSIZE, VERTRES)};
    const HDC device = CreateEnhMetaFileA(screen, nullptr, &frame, "Ombrivantel\0picture\0");
    if (device == nullptr) return nullptr;
    drawOn(device, picture);
    return CloseEnhMetaFile(device);
}

HBITMAP makeBitmap(HDC screen, ChosenPicture& picture) {
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, picture.size().width, picture.size().height);
    if (memory != nullptr && bitmap != nullptr) {
        const HGDIOBJ before = SelectObject(memory, bitmap);
        drawOn(memory, picture);
        SelectObject(memory, before);
    }
    if (memory != nullptr) DeleteDC(memory);
    return bitmap;
}

// What the clipboard takes is its own from then on; the rest is deleted.
bool putOnClipboard(HWND window, HENHMETAFILE metafile, HBITMAP bitmap) {
    const bool isOpen = OpenClipboard(window) != 0;
    if (isOpen) EmptyClipboard();
    const bool hasMetafile = isOpen && SetClipboardData(CF_ENHMETAFILE, metafile) != nullptr;
    const bool hasBitmap = isOpen && SetClipboardData(CF_BITMAP, bitmap) != nullptr;
    if (isOpen) CloseClipboard();
    if (!hasMetafile) DeleteEnhMetaFile(metafile);
    // cppcheck-suppress doubleFree ; what the clipboard does not take is ours
    if (!hasBitmap) DeleteObject(bitmap);
    return hasMetafile && hasBitmap;
}

bool choosePath(const Program& program, char (&path)[pathSize]) {
    static_cast<void>(proposeTablePath(program.run.data.path, "-picture.svg", path));
    OPENFILENAMEA dialog = {};
    dialog.lpstrFilter = "picture (*.svg)\0*.svg\0all files (*.*)\0*.*\0";
    dialog.lpstrDefExt = "svg";
    dialog.lpstrFile = path;
    dialog.Flags = OFN_PATHMUSTEXIST | OFN_OVERWRITEPROMPT;
    return chooseTablePath(program.window, program, GetSaveFileNameA, dialog);
}

} // namespace

void savePicture(Program& program) {
    startChoice(program);
    if (!showPictureDialog(program)) return;
    TextBuffer document;
    ErrorCode code = document.allocate(firstCapacity, TextBuffer::Growth::growing);
    ChosenPicture picture(program);
    if (code == success) {
        SvgCanvas canvas(document, picture.size());
        picture.draw(canvas);
        canvas.finish();
        code = picture.code();
    }
    if (code != success || document.ranOutOfMemory()) {
        showOutOfMemory(program.window);
        return;
    }
    char path[pathSize] = "";
    if (!choosePath(program, path)) return;
    if (isSameFile(program.run.data.path, path)) {
        showAlert(program.window, "this is the file of the data :\nsave the picture under another name");
        return;
    }
    const DWORD error = writeWhole(path, document);
    if (error != ERROR_SUCCESS) {
        showSystemError(program.window, error);
    } else {
        showDone(program, "saved", picture.shortage());
    }
}

void copyPicture(Program& program) {
    startChoice(program);
    ChosenPicture picture(program);
    const HDC screen = GetDC(program.window);
    const HENHMETAFILE metafile = makeMetafile(screen, picture);
    const HBITMAP bitmap = makeBitmap(screen, picture);
    ReleaseDC(program.window, screen);
    const bool isMade = picture.code() == success && metafile != nullptr && bitmap != nullptr;
    if (isMade && putOnClipboard(program.window, metafile, bitmap)) {
        showDone(program, "on the clipboard", picture.shortage());
        return;
    }
    if (!isMade && metafile != nullptr) DeleteEnhMetaFile(metafile);
    if (!isMade && bitmap != nullptr) DeleteObject(bitmap);
    if (isMade) {
        showAlert(program.window, "failed to put the picture on the clipboard");
    } else {
        showOutOfMemory(program.window);
    }
}
