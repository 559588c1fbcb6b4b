#include "analysis/run/analysis_kind.h"
#include "report/charts/chart_painter.h"
#include "tests/support/analysis_session.h"
#include "tests/support/recording_canvas.h"

namespace {

// Values without a pattern, from 0 to 1.
double noise(int seed) {
    return std::fabs(std::fmod(std::sin(seed * 12.9898) * 43758.5453, 1.0));
}

// 24 samples of four measures above 0 whose last ones depend on the others; or the last one numbers groups.
std::string measures(bool areGrouped = false) {
    std::vector<std::vector<double>> columns(4, std::vector<double>(24));
    for (std::size_t s = 0; s < 24; ++s) {
        const int seed = static_cast<int>(s);
        columns[0][s] = 1.0 + noise(seed) + (areGrouped ? seed % 3 : 0);
        columns[1][s] = 2.0 + noise(seed + 100);
        columns[2][s] = columns[0][s] + columns[1][s] + noise(seed + 200);
        columns[3][s] = areGrouped ? 1.0 + seed % 3 : 0.1 + 0.2 * columns[0][s] + 0.3 * noise(seed + 300);
    }
    return fileOf(columns);
}

std::string categories() {
    std::vector<std::vector<double>> columns(4, std::vector<double>(24));
    for (std::size_t s = 0; s < 24; ++s) {
        for (std::size_t j = 0; j < 4; ++j)
            columns[j][s] = 1.0 + std::floor(noise(static_cast<int>(40 * j + s)) * (j == 3 ? 2.99 : 1.99));
    }
    return fileOf(columns);
}

std::string similarities() {
    std::vector<std::vector<double>> columns(6, std::vector<double>(6));
    for (std::size_t i = 0; i < 6; ++i) {
        for (std::size_t j = 0; j < 6; ++j)
            columns[j][i] = -static_cast<double>((i - j) * (i - j) + (i * j) % 3 * (i != j));
    }
    return fileOf(columns);
}

// Times in the first column, states in the second.
std::string survivals() {
    std::vector<std::vector<double>> columns(3, std::vector<double>(24));
    for (std::size_t s = 0; s < 24; ++s) {
        const int seed = static_cast<int>(s);
        columns[0][s] = 1.0 + static_cast<double>(s % 20);
        columns[1][s] = noise(seed) < 0.6;
        columns[2][s] = noise(seed + 50);
    }
    return fileOf(columns);
}

void chooseAll(AnalysisOptions& options) {
    options.purposes[0] = 4;
    options.settings.logisticState = options.settings.weibull.stateColumn = 2;
    options.settings.hazard.stateColumn = 2;
    options.settings.weibull.timeColumn = options.settings.hazard.timeColumn = 1;
    options.settings.factor.factorNumber = 2;
    options.quantification3Count = 2;
    options.clusterCount = 3;
}

Index countSamples(const Chart& chart) {
    Index count = 0;
    for (Index k = 0; k < chart.layerCount; ++k) {
        const ChartLayer& layer = chart.layers[k];
        for (Index i = 0; layer.isOfSamples && i < layer.size(); ++i)
            count += std::isfinite(layer.x[i]) && std::isfinite(layer.y[i]);
    }
    return count;
}

} // namespace

// Every picture of every kind is described whichever allocation fails, has its samples, and can be drawn.
TEST(Pictures, OfAllKindsAreDescribed) {
    Index described = 0;
    for (const AnalysisKind& kind : analysisKinds()) {
        for (const Picture& picture : picturesOf(kind)) {
            SCOPED_TRACE(testing::Message() << kind.batchName << ' ' << picture.name);
            const bool isOfEvents = kind.number >= logisticKind && kind.number <= hazardKind;
            const bool isOfCategories =
                kind.number >= quantification1Kind && kind.number <= quantification3Kind;
            AnalysisSession session(isOfEvents       ? survivals()
                                    : isOfCategories ? categories()
                                    : kind.sizeCheck ? measures(kind.number == discriminantKind)
                                                     : similarities());
            session.run.pictureWish.pictures = {&picture, 1};
            session.run.options.settings.expressGraph = 0;
            const int command = firstAnalysisCommand + kind.number;
            const auto choose = [&](AnalysisOptions& options) {
                chooseAll(options);
                if (kind.number == maximumLikelihoodFactorKind) options.settings.factor.factorNumber = 1;
                if (kind.analysis->chosenKind != nullptr)
                    options.*kind.analysis->chosenKind = kind.number - kind.analysis->firstKind;
            };
            ASSERT_EQ(session.analyse(command, choose), success) << session.frontend.lower;
            const Chart& chart = session.run.charts[0];
            ASSERT_TRUE(chart.isDescribed) << (chart.refusal != nullptr ? chart.refusal : "");
            ++described;
            if ((picture.takes & Picture::labels) != 0) {
                EXPECT_EQ(countSamples(chart), session.run.data.working.samples);
            }
            RecordingCanvas canvas;
            ChartShortage shortage;
            EXPECT_EQ(drawChart(canvas, chart, {}, shortage), success);
            EXPECT_GT(canvas.lines.size() + canvas.polygons.size() + canvas.circles.size(), 5U);
            // Fundamental statistics go on without their rank correlations.
            const bool goesOn = kind.number == fundamentalStatisticsKind;
            session.failAllocations(command,
                                    goesOn ? std::vector{outOfMemory, success} : std::vector{outOfMemory});
        }
    }
    EXPECT_GT(described, 30);
}

TEST(Pictures, TakeTheLevelsOfTheReport) {
    AnalysisSession session(measures());
    session.run.pictureWish.isOfAll = true;
    ASSERT_EQ(session.analyse(firstAnalysisCommand + clusterKind), success);
    const Block<TreeMerge>& merges = session.run.charts[0].tree.merges;
    ASSERT_EQ(merges.size(), 23);
    for (Index s = 0; s < merges.size(); ++s) {
        // "first + second, ->, second, level" behind the number of the step.
        const std::vector<double> row = session.row("uniting information", std::to_string(s + 1));
        ASSERT_EQ(row.size(), 4U);
        EXPECT_EQ(row[0], merges[s].first + 1);
        EXPECT_EQ(row[2], merges[s].second + 1);
        EXPECT_NEAR(row[3], merges[s].level, 1e-9);
    }
}

// By hand: 4 at risk at 1, one dies; 3 at 2, one leaves; 2 at 3, one dies; the last one leaves at 4.
TEST(Pictures, EstimateSurvivalFromTheData) {
    AnalysisSession session("label,t,d,x\na,3,1,0.1\nb,1,1,0.9\nc,4,0,0.2\nd,2,0,0.7\n");
    session.run.pictureWish.isOfAll = true;
    ASSERT_EQ(session.analyse(firstAnalysisCommand + weibullKind, chooseAll), success);
    const Chart& chart = session.run.charts[0];
    const ChartLayer& data = chart.layers[chart.layerCount - 1];
    ASSERT_EQ(data.kind, LayerKind::steps);
    expectNear({data.x.begin(), data.x.end()}, {0.0, 1.0, 3.0, 4.0}, 0.0);
    expectNear({data.y.begin(), data.y.end()}, {1.0, 0.75, 0.375, 0.375}, 1e-15);
}
