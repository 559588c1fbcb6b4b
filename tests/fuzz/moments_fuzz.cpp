#include <algorithm>
#include <string>

#include "data/moments/read_moments.h"
#include "numeric/moments.h"
#include "numeric/stand_in_rows.h"
#include "report/moments_messages.h"
#include "tests/fuzz/require.h"

// Any bytes are moments, or are refused with a line of words; moments are finite and have rows to stand in.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(bytes), size);
    MomentTable table;
    MomentsRefusal refusal;
    const ErrorCode code = readMoments(text.data(), static_cast<Index>(size), size % 2 == 0, table, refusal);
    require(code == success || code == illegalData);
    require((code == success) == (refusal.fault == MomentsFault::none) &&
            table.isEmpty() == (code != success));
    TextBuffer words;
    require(words.allocate(64, TextBuffer::Growth::growing) == success);
    writeMomentsRefusal(words, refusal);
    require((words.length() > 0) == (code != success));
    if (code != success) return 0;
    const Index p = table.variables;
    require(table.names.size() == p && table.means.rows() == table.groups && table.means.columns() == p);
    require(allFinite(table.means) && allFinite(table.covariances));
    Matrix covariance, rows;
    require((covariance.allocate(p, p) | rows.allocate(2 * p, p)) == success);
    std::copy_n(table.covariances.begin(), p * p, covariance.begin());
    findStandInRows(covariance, 10.0, rows);
    return 0;
}
