#include <sstream>

#include "batch/import_arguments.h"
#include "data/import/import_preview.h"
#include "data/import/import_table.h"
#include "data/word_list.h"
#include "tests/support/cases.h"
#include "tests/support/failing_allocations.h"

namespace {

struct Imported : TableSink {
    ErrorCode code = success;
    std::string table, told;

    bool write(std::string_view piece) override {
        table += piece;
        return true;
    }
};

void import(ByteSource& source, const std::string& words, Imported& result) {
    std::string texts[20] = {"", "import", "file"};
    char* arguments[20] = {};
    int count = 3;
    std::istringstream in(words == "-" ? "" : words);
    while (in >> texts[count]) ++count;
    for (int k = 0; k < count; ++k) arguments[k] = texts[k].data();
    ImportCommand command;
    Complaint complaint;
    ASSERT_TRUE(parseImport(count, arguments, command, complaint)) << complaint.text;
    ImportMessages messages;
    result.table.clear();
    result.code = importTable(source, command.options, result, messages);
    result.told = messages.text();
    EXPECT_EQ(messages.refused(), result.code == illegalData);
}

Imported import(const std::string& file, const std::string& words = "-") {
    MemorySource source(file);
    Imported result;
    import(source, words, result);
    return result;
}

// A file that is another when it is read again, or cannot be read to its end.
class FickleSource : public MemorySource {
public:
    FickleSource(std::string_view bytes, std::string_view later) : MemorySource(bytes), later_(later) {}
    bool rewind() override {
        if (++rewinds_ == 3) static_cast<MemorySource&>(*this) = MemorySource(later_); // form, survey, table
        return MemorySource::rewind();
    }

private:
    std::string_view later_;
    int rewinds_ = 0;
};

} // namespace

TEST(Import, ReadsTablesOfOtherPrograms) {
    for (const Case& row : readCases("data/imports.tsv")) {
        SCOPED_TRACE(row[0]);
        const Imported result = import(row[2], row[1]);
        EXPECT_NE(result.told.find(row[3]), std::string::npos) << result.told;
        EXPECT_EQ(result.table, row[4]) << result.told;
    }
}

TEST(Import, KnowsEncodings) {
    const std::string table = "label,x\nM\xC3\xBCller,1\n";
    EXPECT_EQ(import("\xEF\xBB\xBFn,x\nM\xC3\xBCller,1\n").table, table);
    EXPECT_EQ(import("n,x\nM\xFCller,1\n").table, table);
    EXPECT_EQ(import("n,x\nM\xC3\xBCller,1\n", "--write ansi").table, "label,x\nM\xFCller,1\n");
    const Imported lacking = import("n,x\n\xC5\x81\xC3\xB3,1\n\xE2\x82\xAC,2\n", "--write ansi");
    EXPECT_EQ(lacking.table, "label,x\n?\xF3,1\n\x80,2\n");
    EXPECT_NE(lacking.told.find("which ? stands for: 1"), std::string::npos) << lacking.told;
    EXPECT_EQ(import("n,x\nM\xFCller,1\n", "--encoding utf-8").code, illegalData);
    const char little[] = "\xFF\xFEn\0,\0x\0\n\0\x3D\xD8\x00\xDE,\0001\0",
               big[] = "\xFE\xFF\0n\0,\0x\0\n\xD8\x3D\xDE\x00\0,\0001";
    for (const std::string& file : {std::string(little, 18), std::string(big, 18),
                                    std::string(little + 2, 16), std::string(big + 2, 16)}) {
        EXPECT_EQ(import(file).table, "label,x\n\xF0\x9F\x98\x80,1\n");
    }
    // Far behind what is looked at first.
    std::string late = "n,x\n";
    for (int k = 0; k < 40000; ++k) late += "row " + std::to_string(k) + ",1.5\n";
    const Imported result = import(late + "\xE4,1\n");
    EXPECT_NE(result.told.find("line 40002 is no UTF-8"), std::string::npos) << result.told;
    EXPECT_TRUE(result.table.ends_with("row 39999,1.5\n\xC3\xA4,1\n"));
}

TEST(Import, TakesWideTablesAndLongCells) {
    std::string names = "n", row = "A";
    for (int k = 0; k < 1500; ++k) {
        names += ",v" + std::to_string(k);
        row += ",12";
    }
    const std::string wide = names + "\n" + row + "\n";
    const Imported refused = import(wide);
    // A line holds 4,094 characters: "label", v0 to v9, v10 to v99, and 739 names of three digits with
    // commas.
    EXPECT_NE(refused.told.find("--keep #2-#840 "), std::string::npos) << refused.told;
    EXPECT_EQ(import(wide, "--keep #2-#840").code, success);
    const std::string text(600000, 'a');
    EXPECT_EQ(import("n,x,y\nA,\"" + text + "\n\",1\nB,b,2\n", "--drop x").table, "label,y\nA,1\nB,2\n");
}

TEST(Import, TellsWhatHappensToTheFile) {
    FickleSource changed("n,x\nA,1\nB,2\n", "n,x\nA,1\nB,3\n");
    Imported result;
    import(changed, "-", result);
    EXPECT_NE(result.told.find("the file changed"), std::string::npos) << result.told;
    EXPECT_EQ(result.table, "");
}

TEST(Import, EndsWithoutMemory) {
    ImportMessages messages;
    Imported sink;
    failEachAllocation([&] {
        ImportOptions options;
        MemorySource source("n,x,y\nA,1,a\nB,2,b\n");
        return importTable(source, options, sink, messages);
    });
}

TEST(ImportPreview, ShowsWhatIsFoundAndAsksForTheRest) {
    for (const Case& test : readCases("data/previews.tsv")) {
        SCOPED_TRACE(test[0]);
        MemorySource source(test[2]);
        ImportOptions options;
        std::istringstream choices(test[1]);
        std::string texts[importChoiceCount];
        for (std::string choice, word; choices >> choice >> word;) {
            for (int k = 0; k < importChoiceCount; ++k) {
                if (namesOf(static_cast<ImportChoice>(k)).option != choice) continue;
                if (k < wordChoiceCount)
                    chooseWord(options, static_cast<ImportChoice>(k),
                               findWord(namesOf(static_cast<ImportChoice>(k)).words, word));
                texts[k] = word;
                if (k >= wordChoiceCount) {
                    ASSERT_EQ(chooseText(options, static_cast<ImportChoice>(k), texts[k].c_str()), success);
                }
            }
        }
        ImportPreview preview;
        ImportMessages messages(ImportMessages::Wording::labels);
        const ErrorCode code = previewImport(source, options, {.shownRows = 2}, preview, messages);
        EXPECT_EQ(code == success, preview.isDecided);
        std::string found, asked, cells;
        for (int k = 0; k < importChoiceCount; ++k) {
            const ImportChoiceNames& names = namesOf(static_cast<ImportChoice>(k));
            if (messages.asks(static_cast<ImportChoice>(k))) asked += std::string(names.label) + " ";
            if (k >= wordChoiceCount) continue;
            const std::string word(wordOf(names.words, preview.words[k]));
            found += (preview.words[k] == 0 ? "?" : word.empty() ? "column" : word) + " ";
        }
        for (std::int32_t row = 0; row < preview.cells.rows; ++row) {
            for (std::int32_t col = 0; col < preview.cells.cols; ++col)
                cells +=
                    std::string(preview.cells.cell(row, col)) + (col + 1 < preview.cells.cols ? "," : ";");
        }
        EXPECT_EQ(found, test[3] + " ") << messages.text();
        EXPECT_EQ(asked, test[4].empty() ? "" : test[4] + " ");
        EXPECT_EQ(cells, test[5]);
        EXPECT_NE(std::string(messages.text()).find(test[6]), std::string::npos) << messages.text();
        EXPECT_TRUE(preview.isWhole || test[2].size() > 1000);
    }
}

TEST(ImportPreview, EndsWithoutMemory) {
    ImportMessages messages;
    ImportPreview preview;
    for (const char* const file : {"n,x\nA,1\nB,2\n", "n,x\nA,\"1,171\"\nB,1\n"}) {
        failEachAllocation([&] {
            MemorySource source(file);
            messages.clear();
            const ErrorCode code = previewImport(source, {}, {}, preview, messages);
            return code == illegalData ? success : code;
        });
    }
}
