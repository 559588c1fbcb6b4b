#include "batch/batch_frontend.h"

#include <cstdio>

#include "batch/applied_options.h"
#include "batch/argument_list.h"
#include "batch/file_system.h"
#include "batch/terminal.h"
#include "batch/threads.h"
#include "data/byte_source.h"
#include "data/moments/read_moments.h"

namespace {

constexpr std::chrono::milliseconds patience(500);

// A file that is read twice and tells how far it is.
class ProgressSource : public FileSource {
public:
    ProgressSource(std::FILE* file, Screens& screens) : FileSource(file), screens_(screens) {
        if (std::fseek(file, 0, SEEK_END) == 0) size_ = std::ftell(file);
        std::rewind(file);
    }
    Index read(char* bytes, Index count) override {
        const Index done = FileSource::read(bytes, count);
        read_ += done;
        if (size_ > 0) static_cast<void>(screens_.setProgress(static_cast<int>(50 * read_ / size_)));
        return done;
    }

private:
    Screens& screens_;
    long long size_ = -1;
    long long read_ = 0; // of twice the size
};

// From what cannot be read twice, which is held in memory.
FileCode readHeld(std::FILE* file, CellTable& cells, ReadingNotes& notes) {
    Block<char> bytes;
    Index length = 0;
    const ErrorCode code = readToEnd(file, bytes, length);
    if (code == outOfMemory) return FileCode::noMemory;
    if (code != success) {
        notes.refusal.cause = RefusalCause::unreadable;
        return FileCode::notOpened;
    }
    MemorySource source({bytes.data(), static_cast<std::size_t>(length)});
    return readCsvSource(source, cells, notes);
}

} // namespace

BatchFrontend::BatchFrontend(const CommandLine& line) : line_(line), onTerminal_(isErrorTerminal()) {}

void BatchFrontend::showUpper(const Report& report) {
    shown_ = &report.upper;
}

void BatchFrontend::showLower(const Report& report) {
    shown_ = &report.lower;
}

void BatchFrontend::showProgress() {
    start_ = std::chrono::steady_clock::now();
}

ErrorCode BatchFrontend::setProgress(int percent) {
    if (!onTerminal_ || percent == percent_ || std::chrono::steady_clock::now() - start_ < patience)
        return success;
    percent_ = percent;
    std::fprintf(stderr, "\r%3d %%", percent);
    std::fflush(stderr);
    return success;
}

void BatchFrontend::hideProgress() {
    if (percent_ >= 0) std::fprintf(stderr, "\r     \r");
    percent_ = -1;
}

void BatchFrontend::alert(const char* text, const char*) {
    alerted_ = true;
    if (text[0] != '\0') std::fprintf(stderr, "%s\n", text);
}

std::FILE* BatchFrontend::openFile(const char* path, ReadingNotes& notes) {
    file_.path = path;
    if (isStandardStream(path)) {
        useBinaryInput();
        return stdin;
    }
    file_.isKnown = findSizeAndTime(path, file_.size, file_.modified);
    std::FILE* const file = openToRead(path);
    if (file == nullptr) {
        const FileType type = typeOf(path);
        notes.refusal.cause = type == FileType::missing  ? RefusalCause::missing
                              : type == FileType::folder ? RefusalCause::folder
                                                         : RefusalCause::unreadable;
    }
    return file;
}

FileCode BatchFrontend::readTable(const char* path, CellTable& cells, ReadingNotes& notes) {
    std::FILE* const file = openFile(path, notes);
    if (file == nullptr) return FileCode::notOpened;
    if (file == stdin) return readHeld(stdin, cells, notes);
    FileCode code = FileCode::done;
    if (typeOf(path) == FileType::device) {
        code = readHeld(file, cells, notes);
    } else {
        ProgressSource source(file, *this);
        showProgress();
        code = readCsvSource(source, cells, notes);
        hideProgress();
    }
    std::fclose(file);
    return code;
}

FileCode BatchFrontend::readMoments(const char* path, MomentTable& moments, ReadingNotes& notes) {
    std::FILE* const file = openFile(path, notes);
    if (file == nullptr) return FileCode::notOpened;
    Block<char> bytes;
    Index length = 0;
    ErrorCode code = readToEnd(file, bytes, length);
    if (file != stdin) std::fclose(file);
    if (code == illegalData) {
        notes.refusal.cause = RefusalCause::unreadable;
        return FileCode::notOpened;
    }
    if (code == success) code = bytes.grow(length + 1);
    if (code == success) {
        code = ::readMoments(bytes.data(), length, line_.divisorIsN, moments, notes.moments);
    }
    if (code == success) return FileCode::done;
    return code == outOfMemory ? FileCode::noMemory : FileCode::malformed;
}

Index BatchFrontend::workers() const {
    return line_.threads > 0 ? line_.threads : machineThreads();
}

ErrorCode BatchFrontend::computeParts(PartedWork& work, Index workers) {
    return computeByThreads(work, static_cast<int>(workers));
}

bool BatchFrontend::chooseOptions(AnalysisRun& run, const AnalysisKind&) {
    // All of the similarity kinds are asked for by the command of one of them.
    const Analysis& analysis = *line_.kind->analysis;
    if (analysis.chosenKind != nullptr) {
        run.options.*analysis.chosenKind = line_.kind->number - analysis.firstKind;
    }
    Complaint complaint; // the same values were applied once before, without one
    return applyFields(line_, run.data, run.options, complaint);
}
