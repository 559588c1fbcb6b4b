#include "analysis/run/sample_columns.h"

ErrorCode SampleColumns::allocate(Index samples, Index columns) {
    release();
    const ErrorCode code = names.allocate(columns) | values.allocate(samples, columns);
    if (code != success) release();
    return code;
}

void SampleColumns::release() {
    count = 0;
    names.release();
    values = {};
}

void SampleColumns::addNumbered(const char* prefix, const Matrix& matrix, Index columns) {
    for (Index k = 0; k < columns; ++k) {
        add("", [&](Index s) { return matrix(s, k); });
        names.setFormat(count - 1, "%s%td", prefix, k + 1);
    }
}

ErrorCode keepNumbered(SampleColumns& columns, const char* prefix, const Matrix& matrix, Index count) {
    return keepColumns(columns, matrix.rows(), count,
                       [&](SampleColumns& kept) { kept.addNumbered(prefix, matrix, count); });
}
