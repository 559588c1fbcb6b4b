#pragma once

#include <cstddef>
#include <cstdint>

// One group of options for each analysis that keeps any; each dialog's "save as default" copies its group.

struct FundamentalOptions {
    std::int32_t covarianceMatrix;
    std::int32_t correlationMatrix;
    std::int32_t spearmanRanking;
    std::int32_t kendallRanking;
};

// Multiple regression and the curve models.
struct RegressionOptions {
    std::int32_t method; // 0 all variables, 1 forward, 2 backward regression, 3 forward, 4 backward selection
    std::int32_t criterion; // 0 AIC, 1 F
    double fIn;
    double fOut;
    double alpha;
};

struct FactorOptions {
    std::int32_t factorNumber; // of components too; set to DefaultFactorCount before each dialog
    std::int32_t standardize;
    std::int32_t useSmc;
    std::int32_t repetition;
    std::int32_t rotation;            // 0 none, 1 oblique, 2 orthogonal
    std::int32_t obliqueCriterion;    // 0 covarimin, 1 biquartimin, 2 quartimin
    std::int32_t orthogonalCriterion; // 0 varimax, 1 biquartimax, 2 quartimax
};

struct DiscriminantOptions {
    std::int32_t testBoxM;
    std::int32_t forwardSelection;
    double canonAlpha;
    double fIn;
    double fInProbability;
};

struct ClusterOptions {
    std::int32_t division;  // 0 sample, 1 variable
    std::int32_t distance;  // 0 mahalanobis, 1 standardized, 2 raw data
    std::int32_t criterion; // 0 nearest, 1 furthest, 2 median, 3 group average, 4 centroid, 5 Ward
};

struct AssociationOptions {
    std::int32_t scale; // 0 order, 1 nominal
};

struct LogLinearOptions {
    std::int32_t dataMode;    // 0 category variables, 1 contingency table
    std::int32_t firstModel;  // list index
    std::int32_t secondModel; // list index
    std::int32_t categories[3];
};

struct SimilarityOptions {
    std::int32_t dimensions;
};

// The Weibull and the proportional hazard models.
struct SurvivalOptions {
    std::int32_t timeColumn;
    std::int32_t stateColumn;
    std::int32_t iterations;
    char reserved12[4];
    double division;
};

// Everything that outlives a run of the program: 1,400 bytes, kept in the settings file as they stand here.
// Reserved bytes are zero in a fresh block and are written back as they were read.
struct Settings {
    static constexpr int saveFlagCount = 50;

    char reserved0[12];
    std::int32_t screenWidth; // seen when the window was centred
    std::int32_t screenHeight;
    char reserved20[16];
    std::int32_t windowLeft;
    std::int32_t windowTop;
    std::int32_t windowRight;
    std::int32_t windowBottom;
    char reserved52[16];
    std::int32_t windowWidth;
    std::int32_t windowHeight;
    char reserved76[36];
    std::int32_t saveFlags[saveFlagCount]; // of the "save as default" boxes 940..989
    std::int32_t curveSaveFlag;            // of the box 990
    char reserved316[36];
    char dataFileName[260];
    std::int32_t fileType;   // 0 csv, 1 spreadsheet
    std::int32_t linkMethod; // 0 dde, 1 odbc
    char sheetName[260];
    std::int32_t variableStringLength;
    std::int32_t sampleStringLength;
    std::int32_t expressGraph;
    std::int32_t scatterNumbering;
    std::int32_t vectorSizing;
    char reserved900[88];
    FundamentalOptions fundamental;
    char reserved1004[12];
    RegressionOptions regression;
    double componentMinimum;    // eigenvalue
    std::int32_t componentBase; // 0 correlation, 1 covariance
    FactorOptions factor;
    DiscriminantOptions discriminant;
    ClusterOptions cluster;
    AssociationOptions association;
    std::int32_t unused1136;
    std::int32_t unused1140;
    LogLinearOptions logLinear;
    SimilarityOptions similarity;
    std::int32_t logisticState; // column
    std::int32_t logisticIterations;
    char reserved1180[4];
    double logisticDivision;
    SurvivalOptions weibull;
    SurvivalOptions hazard;
    RegressionOptions curve;
    char reserved1272[128];
};

static_assert(sizeof(Settings) == 1400);
static_assert(offsetof(Settings, screenWidth) == 12);
static_assert(offsetof(Settings, windowLeft) == 36);
static_assert(offsetof(Settings, windowWidth) == 68);
static_assert(offsetof(Settings, saveFlags) == 112);
static_assert(offsetof(Settings, curveSaveFlag) == 312);
static_assert(offsetof(Settings, dataFileName) == 352);
static_assert(offsetof(Settings, fileType) == 612);
static_assert(offsetof(Settings, sheetName) == 620);
static_assert(offsetof(Settings, variableStringLength) == 880);
static_assert(offsetof(Settings, vectorSizing) == 896);
static_assert(offsetof(Settings, fundamental) == 988);
static_assert(offsetof(Settings, regression) == 1016 && offsetof(RegressionOptions, alpha) == 24);
static_assert(offsetof(Settings, componentMinimum) == 1048);
static_assert(offsetof(Settings, factor) == 1060);
static_assert(offsetof(Settings, discriminant) == 1088 && offsetof(DiscriminantOptions, fIn) == 16);
static_assert(offsetof(Settings, cluster) == 1120);
static_assert(offsetof(Settings, association) == 1132);
static_assert(offsetof(Settings, logLinear) == 1144);
static_assert(offsetof(Settings, similarity) == 1168);
static_assert(offsetof(Settings, logisticState) == 1172);
static_assert(offsetof(Settings, logisticDivision) == 1184);
static_assert(offsetof(Settings, weibull) == 1192 && offsetof(SurvivalOptions, division) == 16);
static_assert(offsetof(Settings, hazard) == 1216);
static_assert(offsetof(Settings, curve) == 1240);

// A block with the first values of every preference and option.
void setDefaultSettings(Settings& settings);
