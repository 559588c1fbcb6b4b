#include "tests/support/cases.h"
#include "tests/support/csv_text.h"

TEST(Doubts, AreFoundWhereAPlainReadingIsWrong) {
    const char* const names[doubtKinds] = {"otherSeparator", "loneReturns",  "markedComment", "longName",
                                           "noHeader",       "sameNames",    "unnamedLabels", "moreCells",
                                           "quotedCommas",   "lostComments", "lostLastLine",  "noLabels",
                                           "totalRow",       "notNumbers",   "notFinite"};
    for (const Case& test : readCases("data/doubts.tsv")) {
        SCOPED_TRACE(test[0]);
        const std::string text = test[0][0] == '^' ? "\xef\xbb\xbf" + test[0].substr(1) : test[0];
        DataSet data;
        ASSERT_EQ(loadDataSet(text, data), success);
        std::ostringstream found;
        for (int kind = 0; kind < doubtKinds; ++kind) {
            const DoubtCount doubt = findDoubt(data, static_cast<Doubt>(kind));
            if (doubt.count == 0) continue;
            found << (found.tellp() > 0 ? ", " : "") << names[kind] << " " << doubt.count << "@"
                  << doubt.line;
        }
        EXPECT_EQ(found.str(), test[1]);
    }
}

TEST(Refusals, NameLineAndCause) {
    const char* const names[] = {"none",    "missing",     "unreadable",  "folder",     "empty",
                                 "notText", "lineTooLong", "cellTooLong", "tooFewCells"};
    for (const Case& test : readCases("data/refusals.tsv")) {
        SCOPED_TRACE(test[0].substr(0, 200));
        CellTable table;
        ReadingNotes notes;
        EXPECT_NE(readText(test[0], table, notes), FileCode::done);
        std::ostringstream refusal;
        refusal << names[static_cast<int>(notes.refusal.cause)] << " " << notes.refusal.line << " "
                << notes.refusal.cells << " " << notes.refusal.names;
        EXPECT_EQ(refusal.str(), test[1]);
    }
}

TEST(MissingPolicy, LeavesSamplesOutByTheVariablesInUse) {
    DataSet data;
    data.policy = MissingPolicy::omit;
    ASSERT_EQ(loadDataSet("label,x,y,z\na,1,2,3\nb,.,2,-1e999\nc,3x,,4\nd,7,8,.\ne,5,6,7\n", data), success);
    const auto labels = [&] {
        std::string all;
        for (std::int32_t s = 0; s < data.loaded.samples; ++s) all += data.loaded.label(s);
        return all;
    };
    EXPECT_EQ(labels(), "ae");
    EXPECT_EQ(data.leftOut, 3);
    EXPECT_EQ(data.loaded.at(1, 2), 7.0);
    EXPECT_EQ(data.missing[1].count(), 2);
    EXPECT_EQ(data.missing[2].count(), 1);
    EXPECT_EQ(data.missing[3].count(), 2);
    EXPECT_EQ(findBadCells(data, Doubt::noNumbers).count, 0);

    data.exclusion.slots[0] = 1;
    data.exclusion.slots[1] = 3;
    buildDataSet(data);
    EXPECT_EQ(labels(), "abde");
    EXPECT_EQ(data.loaded.at(2, 0), 8.0);

    data.exclusion = {};
    data.policy = MissingPolicy::zero;
    buildDataSet(data);
    EXPECT_EQ(labels(), "abcde");
    EXPECT_EQ(data.leftOut, 0);
    EXPECT_EQ(data.loaded.at(2, 0), 3.0);
    EXPECT_EQ(findBadCells(data, Doubt::noNumbers).count, 4);
    EXPECT_STREQ(findBadCells(data, Doubt::infinite).variable, "z");
}
