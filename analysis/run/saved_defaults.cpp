#include "analysis/run/saved_defaults.h"

#include <cstring>

namespace {

constexpr int firstBox = 940;
constexpr int curveBox = 990;

struct SavedGroup {
    int box;
    std::size_t offset;
    std::size_t size;
};

constexpr std::size_t componentSize = sizeof(double) + sizeof(std::int32_t);
constexpr std::size_t logisticSize = offsetof(Settings, weibull) - offsetof(Settings, logisticState);

// Canonical correlation and quantification 1 to 3 keep nothing of their own.
constexpr SavedGroup savedGroups[] = {
    {950, offsetof(Settings, fundamental), sizeof(FundamentalOptions)},
    {951, offsetof(Settings, regression), sizeof(RegressionOptions)},
    {952, offsetof(Settings, componentMinimum), componentSize},
    {954, offsetof(Settings, factor), sizeof(FactorOptions)},
    {956, offsetof(Settings, discriminant), sizeof(DiscriminantOptions)},
    {957, offsetof(Settings, cluster), sizeof(ClusterOptions)},
    {960, offsetof(Settings, association), sizeof(AssociationOptions)},
    {961, offsetof(Settings, unused1136), 2 * sizeof(std::int32_t)},
    {964, offsetof(Settings, logLinear), sizeof(LogLinearOptions)},
    // The similarity dialog sets the flag of its box 970, so its "save as default" has no lasting effect.
    {972, offsetof(Settings, similarity), sizeof(SimilarityOptions)},
    {980, offsetof(Settings, logisticState), logisticSize},
    {981, offsetof(Settings, weibull), sizeof(SurvivalOptions)},
    {982, offsetof(Settings, hazard), sizeof(SurvivalOptions)},
    {curveBox, offsetof(Settings, curve), sizeof(RegressionOptions)},
};

} // namespace

std::int32_t& saveFlag(Settings& settings, int box) {
    return box == curveBox ? settings.curveSaveFlag : settings.saveFlags[box - firstBox];
}

void commitSavedDefaults(Settings& defaults, AnalysisRun& run) {
    Settings& settings = run.options.settings;
    for (const SavedGroup& group : savedGroups) {
        if (saveFlag(settings, group.box) == 0) continue;
        std::memcpy(reinterpret_cast<char*>(&defaults) + group.offset,
                    reinterpret_cast<const char*>(&settings) + group.offset, group.size);
    }
    for (std::int32_t& flag : settings.saveFlags) flag = 0;
    settings.curveSaveFlag = 0;
}
