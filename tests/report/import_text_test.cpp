#include "report/import_text.h"
#include "tests/support/cases.h"
#include "tests/support/whole_text.h"

TEST(ImportText, NamesWhatCanBeChosen) {
    MemorySource source("n;x;h\xC3\xB6he\nA;1,5;\"1,171\"\nB;2.5;2\n");
    ImportOptions options;
    ImportPreview preview;
    ImportMessages messages;
    const auto entriesOf = [&](ImportChoice choice, int first = 0) {
        TextBuffer text;
        EXPECT_EQ(text.allocate(10, TextBuffer::Growth::growing), success);
        while (writeChoiceEntry(text, choice, first++, options, preview, messages)) text.append("|");
        return wholeText(text);
    };
    EXPECT_EQ(previewImport(source, options, {}, preview, messages), illegalData);
    EXPECT_EQ(entriesOf(ImportChoice::decimal), "please choose|point|comma|");
    EXPECT_EQ(entriesOf(ImportChoice::thousands), "not known yet|none|comma|point|space|");
    EXPECT_EQ(entriesOf(ImportChoice::labels), "found: #1 n|first|none|#1 n|#2 x|#3 h\xC3\xB6he|");
    EXPECT_EQ(entriesOf(ImportChoice::oddRows, 1), "all|fitting|filled|");

    char name[24];
    messages.clear();
    options.decimal = DecimalSign::comma;
    chooseLabelColumn(options, 1, name);
    EXPECT_EQ(previewImport(source, options, {}, preview, messages), success) << messages.text();
    EXPECT_STREQ(preview.cells.cell(1, 0), "1 5");
    EXPECT_EQ(entriesOf(ImportChoice::decimal), "to be found|point|comma|");
    EXPECT_EQ(entriesOf(ImportChoice::delimiter), "found: semicolon|comma|semicolon|tab|bar|blank|");
    EXPECT_EQ(preview.labelColumn, 1);
}

TEST(ImportText, ShowsRowsInColumns) {
    std::string names = "n", row = "A";
    for (int k = 1; k <= 60; ++k) {
        names += ",v" + std::to_string(k);
        row += "," + std::to_string(k % 10);
    }
    names += "\n" + row + "\n";
    for (const auto& [file, shown] :
         {std::pair<std::string, std::string>("n,x,a longer name than fits\nAnn,1.25,7\nB,3,8\n",
                                              "label     x  a longer name th~\n"
                                              "Ann    1.25                 7 \n"
                                              "B         3                 8 \n"),
          {names, "   8    9  ...\n"}}) {
        MemorySource source(file);
        ImportPreview preview;
        ImportMessages messages;
        TextBuffer text;
        ASSERT_EQ(previewImport(source, {}, {}, preview, messages), success) << messages.text();
        ASSERT_EQ(text.allocate(10, TextBuffer::Growth::growing), success);
        writePreview(text, preview.cells);
        EXPECT_TRUE(wholeText(text).ends_with(shown)) << wholeText(text);
    }
}
