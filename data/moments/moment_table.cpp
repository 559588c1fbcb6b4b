#include "data/moments/moment_table.h"

#include <cstdio>

ErrorCode MomentTable::allocate(Index groupCount, Index variableCount) {
    groups = static_cast<std::int32_t>(groupCount);
    variables = static_cast<std::int32_t>(variableCount);
    const ErrorCode code = counts.allocate(groupCount) | means.allocate(groupCount, variableCount) |
                           greatest.allocate(groupCount, variableCount) |
                           covariances.allocate(groupCount * variableCount, variableCount);
    if (code == success) greatest.fill(1.0);
    return code;
}

ErrorCode refuseMoments(MomentsRefusal& refusal, MomentsFault fault, const char* name, const char* other) {
    refusal.fault = fault;
    std::snprintf(refusal.name, sizeof refusal.name, "%s", name);
    std::snprintf(refusal.other, sizeof refusal.other, "%s", other);
    return illegalData;
}
