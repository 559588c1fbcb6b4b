#include "batch/sql/sql_kind.h"

Reduction reductionOf(const AnalysisKind& kind) {
    switch (kind.number) {
    case fundamentalStatisticsKind:
    case multipleRegressionKind:
    case principalComponentsKind:
    case canonicalCorrelationKind:
    case principalFactorKind:
    case maximumLikelihoodFactorKind:
        return Reduction::moments;
    case discriminantKind:
        return Reduction::groupedMoments;
    case degreesCurveKind:
    case involutionCurveKind:
    case exponentialCurveKind:
    case inverseCurveKind:
    case logisticCurve1Kind:
    case logisticCurve2Kind:
        return Reduction::curveMoments;
    case logLinearKind:
        return Reduction::threeWayCounts;
    case quantification3Kind:
        return Reduction::crossCounts;
    default:
        return Reduction::none;
    }
}
