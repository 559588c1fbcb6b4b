#include "analysis/run/analysis_kind.h"

#include <cstring>

#include "analysis/basic/descriptive/fundamental_statistics.h"
#include "analysis/basic/event_models/hazard_model.h"
#include "analysis/basic/event_models/logistic_model.h"
#include "analysis/basic/event_models/weibull_model.h"
#include "analysis/basic/regression/curve_regression.h"
#include "analysis/basic/regression/multiple_regression.h"
#include "analysis/categorical/association/association.h"
#include "analysis/categorical/log_linear/log_linear.h"
#include "analysis/categorical/quantification/quantification1.h"
#include "analysis/categorical/quantification/quantification2.h"
#include "analysis/categorical/quantification/quantification3.h"
#include "analysis/categorical/similarity/similarity.h"
#include "analysis/multivariate/canonical/canonical_correlation.h"
#include "analysis/multivariate/cluster/cluster.h"
#include "analysis/multivariate/components/principal_components.h"
#include "analysis/multivariate/discriminant/discriminant.h"
#include "analysis/multivariate/factor/factor_analysis.h"

namespace {

constexpr GraphRule never = GraphRule::never;
constexpr GraphRule always = GraphRule::always;
constexpr GraphRule threeGroups = GraphRule::threeGroups;
constexpr GraphRule threeVariables = GraphRule::threeVariables;

// clang-format off
const AnalysisKind kinds[] = {
    // number, menu text, batch name, dialog, title, save box, on menu, size check, graph, prediction,
    // analysis, heading control, heading
    {0, "Fundamental Statistics", "fundamental", 1010, "fundamental statistics analysis", 950, true, true, never, false,
     &fundamentalStatistics},
    {1, "Multiple Regression Analysis", "regression", 1011, "multiple regression analysis", 951, true, true, always, true,
     &multipleRegression},
    {2, "Principal Component Analysis", "pca", 1012, "principal component analysis", 952, true, true, always, false,
     &principalComponents},
    {3, "Canonical Correlation Analysis", "canonical", 1013, "canonical correlation analysis", 953, true, true, never, false,
     &canonicalCorrelation},
    {4, "Principal Factor Analysis", "principal-factor", 1014, "factor analysis", 954, true, true, always, false,
     &factorAnalysis, 2400, "principal factor analysys"},
    {5, "Maximum Likelihood Analysis", "ml-factor", 1014, "factor analysis", 954, true, true, always, false,
     &factorAnalysis, 2400, "maximum likelihood analysis"},
    {6, "Discriminant Analysis", "discriminant", 1016, "discriminant analysis", 956, true, true, threeGroups, false,
     &discriminantAnalysis},
    {7, "Cluster Analysis", "cluster", 1017, "cluster analysis", 957, true, true, never, false,
     &clusterAnalysis},
    {10, "Association Measures Analysis", "association", 1020, "association mesures analysis", 960, true, true, never, false,
     &associationAnalysis},
    {11, "Quantification-1 Analysis", "quant1", 1021, "quantification 1 analysis", 961, true, true, always, true,
     &quantification1},
    {12, "Quantification-2 Analysis", "quant2", 1022, "quantification 2 analysis", 962, true, true, threeGroups, false,
     &quantification2},
    {13, "Quantification-3 Analysis", "quant3", 1023, "quantification 3 analysis", 963, true, false, never, false,
     &quantification3},
    {14, "Three-Way Log-Linear Analysis", "loglinear", 1024, "three-way log linear analysis", 964, true, false, never, false,
     &logLinearAnalysis},
    // Reached through the dialog of the next two.
    {20, "Multidimentional Scaling Analysis", "mds", 1030, "similarity data analysis", 970, false, false, never, false,
     &similarityAnalysis},
    {21, "Quantification-4 Analysis", "quant4", 1030, "similarity data analysis", 970, true, false, threeVariables, false,
     &similarityAnalysis},
    {22, "Principal Co-ordinates Analysis", "pcoa", 1030, "similarity data analysis", 970, true, false, threeVariables, false,
     &similarityAnalysis},
    {30, "Multiple Logistic Analysis", "logistic", 1040, "multiple logistic model", 980, true, false, never, false,
     &logisticModel},
    {31, "Exponential Weibull Analysis", "weibull", 1041, "exponential weibull model", 981, true, false, never, false,
     &weibullModel},
    {32, "Propotional Hazard Analysis", "hazard", 1042, "propotional hazard model", 982, true, false, always, false,
     &hazardModel},
    {41, "Convertiong Degrees Regression", "polynomial", 1050, "non-linear multiple regression analysis", 990, true, true, always, true,
     &polynomialRegression},
    {42, "Involution Curve Regression", "involution", 1050, "non-linear multiple regression analysis", 990, true, true, always, true,
     &curveRegression},
    {43, "Exponential Curve Regression", "exponential", 1050, "non-linear multiple regression analysis", 990, true, true, always, true,
     &curveRegression},
    {44, "Inverse Curve Regression", "inverse", 1050, "non-linear multiple regression analysis", 990, true, true, always, true,
     &curveRegression},
    {45, "Logistic Curve 1 Regression", "logistic-curve-1", 1050, "non-linear multiple regression analysis", 990, true, true, always, true,
     &curveRegression},
    {46, "Logistic Curve 2 Regression", "logistic-curve-2", 1050, "non-linear multiple regression analysis", 990, true, true, always, true,
     &curveRegression},
    // There is no such model; the item is shown and never enabled.
    {47, "Gompertz Curve Regression", "", 0, "", 0, false, false, never, false},
};
// clang-format on

} // namespace

std::span<const AnalysisKind> analysisKinds() {
    return kinds;
}

const AnalysisKind* findKind(std::int32_t number) {
    for (const AnalysisKind& kind : kinds) {
        if (kind.number == number) return &kind;
    }
    return nullptr;
}

const AnalysisKind* findKind(const char* batchName) {
    for (const AnalysisKind& kind : kinds) {
        if (kind.batchName[0] != '\0' && std::strcmp(kind.batchName, batchName) == 0) return &kind;
    }
    return nullptr;
}
