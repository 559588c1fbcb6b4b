#pragma once

#include <cstdint>

// The number of each item of the analysis menu: its command less 710.
enum KindNumber : std::int32_t {
    fundamentalStatisticsKind = 0,
    multipleRegressionKind = 1,
    principalComponentsKind = 2,
    canonicalCorrelationKind = 3,
    principalFactorKind = 4,
    maximumLikelihoodFactorKind = 5,
    discriminantKind = 6,
    clusterKind = 7,
    associationKind = 10,
    quantification1Kind = 11,
    quantification2Kind = 12,
    quantification3Kind = 13,
    logLinearKind = 14,
    multidimensionalScalingKind = 20,
    quantification4Kind = 21,
    principalCoordinatesKind = 22,
    logisticKind = 30,
    weibullKind = 31,
    hazardKind = 32,
    degreesCurveKind = 41,
    involutionCurveKind = 42,
    exponentialCurveKind = 43,
    inverseCurveKind = 44,
    logisticCurve1Kind = 45,
    logisticCurve2Kind = 46,
    gompertzCurveKind = 47,
};
