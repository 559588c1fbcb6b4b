#include <cmath>

#include "tests/support/failing_allocations.h"
#include "tests/support/graph_samples.h"
#include "tests/support/recording_frontend.h"

TEST(GraphSpec, EachKindTakesItsNumberOfSeries) {
    // By kind: the code for 1, 2, 3, 4 and 65 series.
    const char* const codes[] = {"01111", "10111", "11011", "11001", "10111",
                                 "20001", "10111", "20001", "20001", "44444"};
    const Index series[] = {1, 2, 3, 4, 65};
    for (std::uint32_t kind = 0; kind < std::size(codes); ++kind) {
        for (int k = 0; k < 5; ++k) {
            GraphSpec spec;
            describeGraph(spec, kind, series[k], 3, 1);
            Graph graph;
            EXPECT_EQ(initGraph(spec, graph), GraphCode{codes[kind][k] - '0'}) << kind << " of " << series[k];
            EXPECT_EQ(graph.present, codes[kind][k] == '0');
        }
    }
}

TEST(GraphSpec, RangesHoldZeroAndAreSharedByGroups) {
    GraphSpec spec;
    describeGraph(spec, 7, 5, 2, 0);
    const double values[] = {2, -1, 4, NAN, -7, 3, -5, INFINITY, -2, -1};
    std::copy(std::begin(values), std::end(values), spec.values.data());
    const std::uint32_t masks[] = {1, 6, 4, 8, 9};
    std::copy(std::begin(masks), std::end(masks), spec.rangeGroups);
    Graph graph;
    ASSERT_EQ(initGraph(spec, graph), GraphCode::built);
    // 0, 3 and 4 through the masks 1, 8 and 9; 1 and 2 through the bit 4.
    const double expected[][2] = {{-7, 3}, {-5, 4}, {-5, 4}, {-7, 3}, {-7, 3}};
    for (int k = 0; k < 5; ++k) {
        EXPECT_EQ(graph.minimum[k], expected[k][0]) << k;
        EXPECT_EQ(graph.maximum[k], expected[k][1]) << k;
    }
}

TEST(GraphSpec, CopiesWhatTheKindUses) {
    for (std::uint32_t kind = 0; kind <= 8; ++kind) {
        GraphSpec spec;
        describeSample(spec, kind);
        ASSERT_EQ(spec.kind8Labels.allocate(3), success);
        Graph graph;
        const long long allocations =
            failEachAllocation([&] { EXPECT_EQ(initGraph(spec, graph) == GraphCode::built, graph.present); },
                               [&] { EXPECT_FALSE(graph.present); });
        const int texts = 3; // blocks of a list
        EXPECT_EQ(allocations, 2 * texts + 1 + texts * (spec.numbering != 0) + (texts + 1) * (kind >= 5) +
                                   texts * (kind == 8))
            << kind;
        EXPECT_EQ(graph.spec.numberLabels.size(), spec.numbering != 0 ? spec.itemCount : 0);
        EXPECT_EQ(graph.spec.kind8Labels.size(), kind == 8 ? 3 : 0);
        EXPECT_STREQ(graph.spec.itemLabels[12], "item 13");
    }
}

TEST(GraphSpec, TellsFailuresInTheirWords) {
    const std::pair<std::uint32_t, const char*> cases[] = {
        {0, "alert(failed to initialize graph struct cause illegal variable number/alert)"},
        {7, "alert(failed to initialize and graph struct cause too few vector number/alert)"},
        {9, "alert(failed to initialize and registred graph struct/alert)"}};
    for (const auto& [kind, words] : cases) {
        RecordingFrontend frontend;
        GraphSpec spec;
        Graph graph;
        describeGraph(spec, kind, kind == 7 ? 1 : 2, 3);
        EXPECT_EQ(buildGraph(frontend, spec, graph), graphNotBuilt);
        EXPECT_EQ(frontend.takeLog(), words);
    }
}
