#include <cstring>
#include <set>
#include <string>

#include "data/csv_reader.h"
#include "data/import/import_preview.h"
#include "data/import/import_table.h"
#include "data/import/text_hash.h"
#include "data/number.h"
#include "tests/fuzz/require.h"

namespace {

struct TextSink : TableSink {
    std::string text;
    bool write(std::string_view piece) override {
        text += piece;
        return true;
    }
};

// Of all options some, by what the bytes are.
void choose(std::size_t draw, ImportOptions& options) {
    const auto next = [&](std::size_t limit) {
        const std::size_t chosen = draw % limit;
        draw /= limit;
        return chosen;
    };
    options.oddRows = static_cast<OddRows>(next(2));
    if (next(3) > 0) return;
    options.encoding = static_cast<TextEncoding>(next(4));
    options.delimiter = static_cast<Delimiter>(next(6));
    options.decimal = static_cast<DecimalSign>(next(3));
    options.thousands = static_cast<ThousandsMark>(next(5));
    options.header = static_cast<HeaderRow>(next(3));
    options.labels = static_cast<LabelColumn>(next(3));
    options.written = static_cast<WrittenText>(next(2));
    Block<const char*>* const lists[] = {&options.missing, &options.keeps, &options.drops,
                                         &options.categories};
    const char* const texts[] = {"none,-999,9", "#1-#2", "#2", "#3,#2"};
    const std::size_t list = next(8);
    if (list > 3) return;
    require(lists[list]->allocate(1) == success);
    (*lists[list])[0] = texts[list];
}

} // namespace

// Any bytes give a table that the program's own reader takes without a doubt but for a total, or a refusal
// and nothing written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(bytes), size);
    ImportOptions options;
    choose(hashOf(input) >> 8, options);
    MemorySource source(input);
    TextSink sink, codebook;
    ImportMessages messages;
    const ErrorCode code = importTable(source, options, sink, messages, &codebook);
    require(code == success || code == illegalData);
    require(messages.refused() == (code == illegalData));
    require(code == success || sink.text.empty());
    ImportPreview preview;
    ImportMessages previewed;
    const ErrorCode previewCode = previewImport(source, options, {.shownRows = 5}, preview, previewed);
    require(preview.isDecided == (previewCode == success) && previewCode != outOfMemory);
    require(!preview.isWhole || previewCode == code);
    if (previewCode == success) {
        const CellTable& cells = preview.cells;
        require(cells.rows > 1 && cells.cols > 1 && std::strcmp(cells.cell(0, 0), "label") == 0);
    }
    if (code != success) return 0;

    std::FILE* file = fmemopen(sink.text.data(), sink.text.size(), "r");
    CellTable table;
    ReadingNotes notes;
    require(readCsvStream(file, table, notes) == FileCode::done);
    std::fclose(file);
    notes.doubts[Doubt::totalRow] = {};
    for (const DoubtCount& doubt : notes.doubts.found) require(doubt.count == 0);
    std::set<std::string> names;
    for (std::int32_t j = 1; j < table.cols; ++j) require(names.insert(table.cell(0, j)).second);
    for (std::int32_t i = 1; i < table.rows; ++i) {
        require(table.cell(i, 0)[0] != '\0');
        for (std::int32_t j = 1; j < table.cols; ++j) {
            require(isNumber(table.cell(i, j)) || std::strcmp(table.cell(i, j), "NA") == 0);
        }
    }
    return 0;
}
