#include "data/moments/typed_moments.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "data/letter_case.h"
#include "data/moments/moment_names.h"
#include "data/number.h"

namespace {

// Digits behind the point.
int decimalsOf(std::string_view number) {
    const std::size_t point = number.find('.');
    if (point == std::string_view::npos) return 0;
    const std::size_t end = number.find_first_not_of("0123456789", point + 1);
    return static_cast<int>(std::min(end, number.size()) - point - 1);
}

class TypedReader {
public:
    TypedReader(const DelimitedCells& cells, bool divisorIsN, MomentTable& table, MomentsRefusal& refusal)
        : cells_(cells), divisorIsN_(divisorIsN), table_(table), refusal_(refusal) {}

    ErrorCode read() {
        refusal_.line = cells_.line(0);
        ErrorCode code = takeNames();
        if (code == success)
            code = table_.allocate(1, p_) | isGiven_.allocate(p_ * p_) | deviations_.allocate(p_);
        for (Index row = 1; code == success && row < cells_.rows(); ++row) code = takeRow(row);
        refusal_.line = 0;
        if (code == success) code = completeTriangle();
        if (code == success) rounding_ = findRounding();
        if (code == success) code = takeScale();
        return code;
    }
    double rounding() const { return rounding_; }

private:
    ErrorCode refuse(MomentsFault fault, const char* name = "", const char* other = "") {
        return refuseMoments(refusal_, fault, name, other);
    }
    bool isGiven(Index i, Index j) const { return isGiven_[i * p_ + j] != 0; }

    ErrorCode takeNames() {
        p_ = cells_.cells(0) - 1;
        while (p_ > 0 && cells_.cell(0, p_)[0] == '\0') --p_;
        if (p_ < 1) return refuse(MomentsFault::noVariables);
        if (table_.names.allocate(p_) != success) return outOfMemory;
        for (Index i = 0; i < p_; ++i) {
            const std::string_view name = cells_.cell(0, i + 1);
            if (name.size() >= textSlotSize) return refuse(MomentsFault::nameTooLong, name.data());
            for (Index j = 0; j < i; ++j) {
                if (name == table_.names[j]) return refuse(MomentsFault::variableTwice, name.data());
            }
            table_.names.set(i, name);
        }
        return success;
    }

    // Whether a row stands above the matrix.
    bool isRowOf(const char* label, std::string_view kind) const {
        return !matrixBegun_ && equalButCase(label, kind);
    }

    ErrorCode takeRow(Index row) {
        refusal_.line = cells_.line(row);
        const char* const label = cells_.cell(row, 0);
        if (isRowOf(label, "n")) return takeCount(row);
        if (isRowOf(label, "mean") || isRowOf(label, "sd")) {
            const bool isMean = isRowOf(label, "mean");
            (isMean ? table_.hasMeans : hasDeviations_) = true;
            for (Index i = 0; i < p_; ++i) {
                double& value = isMean ? table_.means(0, i) : deviations_[i];
                const ErrorCode code = takeNumber(row, i, value);
                if (code != success) return code;
                if (!isMean && value < 0.0) return refuse(MomentsFault::negative, table_.names[i]);
            }
            return success;
        }
        matrixBegun_ = true;
        const Index i = findNameButCase(table_.names, label);
        if (i < 0 || isGiven(i, i)) return refuse(MomentsFault::wrongVariable, label);
        for (Index j = 0; j < p_; ++j) {
            const bool isEmpty = j + 1 >= cells_.cells(row) || cells_.cell(row, j + 1)[0] == '\0';
            if (isEmpty && j != i) continue;
            double value = 0.0;
            const ErrorCode code = takeNumber(row, j, value);
            if (code != success) return code;
            decimals_ = std::max(decimals_, decimalsOf(cells_.cell(row, j + 1)));
            if (isGiven(j, i) && value != table_.covariance(0, j, i))
                return refuse(MomentsFault::notSymmetric, table_.names[i], table_.names[j]);
            table_.covariance(0, i, j) = value;
            isGiven_[i * p_ + j] = 1;
        }
        return success;
    }

    // One number, or the same one for each variable.
    ErrorCode takeCount(Index row) {
        for (Index i = 0; i < p_ && i + 1 < cells_.cells(row); ++i) {
            const char* const cell = cells_.cell(row, i + 1);
            if (cell[0] == '\0') continue;
            double value = 0.0;
            const bool isCount = readNumber(cell, value) && value >= 1.0 && value == std::floor(value);
            if (!isCount || (table_.hasCounts && value != table_.counts[0]))
                return refuse(MomentsFault::badCount, cell);
            table_.counts[0] = value;
            table_.hasCounts = true;
        }
        return success;
    }

    ErrorCode takeNumber(Index row, Index variable, double& value) {
        const char* const cell = variable + 1 < cells_.cells(row) ? cells_.cell(row, variable + 1) : "";
        if (readNumber(cell, value) && std::isfinite(value)) return success;
        refusal_.cell = variable + 2;
        return refuse(MomentsFault::notNumber, cell, table_.names[variable]);
    }

    ErrorCode completeTriangle() {
        for (Index i = 0; i < p_; ++i) {
            for (Index j = 0; j <= i; ++j) {
                if (!isGiven(i, j) && !isGiven(j, i))
                    return refuse(MomentsFault::missingPair, table_.names[i], table_.names[j]);
                const double value = isGiven(i, j) ? table_.covariance(0, i, j) : table_.covariance(0, j, i);
                table_.covariance(0, i, j) = table_.covariance(0, j, i) = value;
            }
        }
        return success;
    }

    bool isCorrelation() const {
        bool isOne = true;
        for (Index i = 0; i < p_; ++i) isOne = isOne && table_.covariance(0, i, i) == 1.0;
        return isOne;
    }

    // Half a unit of the last decimal; of a correlation that comes of large covariances, what this is of the
    // least variance, twice, as the covariance and both its variances are rounded.
    double findRounding() const {
        const double half = 0.5 * std::pow(10.0, -decimals_);
        if (isCorrelation()) return half;
        double least = std::numeric_limits<double>::infinity();
        for (Index i = 0; i < p_; ++i) least = std::min(least, table_.covariance(0, i, i));
        return least > 2.0 ? 2.0 * half / least : half;
    }

    // Correlations become covariances where deviations are known; both come to the divisor N.
    ErrorCode takeScale() {
        const bool areCorrelations = isCorrelation();
        table_.hasDeviations = hasDeviations_ || !areCorrelations;
        const double n = table_.counts[0];
        const double scale = table_.hasCounts && !divisorIsN_ ? (n - 1.0) / n : 1.0;
        for (Index i = 0; i < p_ && hasDeviations_ && !areCorrelations; ++i) {
            const double deviation = std::sqrt(table_.covariance(0, i, i));
            if (!(std::fabs(deviation - deviations_[i]) <= 0.01 * deviations_[i]))
                return refuse(MomentsFault::deviationDiffers, table_.names[i]);
        }
        for (Index i = 0; i < p_ && table_.hasDeviations; ++i) {
            for (Index j = 0; j < p_; ++j) {
                const double unit = areCorrelations ? deviations_[i] * deviations_[j] : 1.0;
                table_.covariance(0, i, j) *= unit * scale;
            }
        }
        return success;
    }

    const DelimitedCells& cells_;
    bool divisorIsN_;
    MomentTable& table_;
    MomentsRefusal& refusal_;
    Index p_ = 0;
    bool matrixBegun_ = false;
    bool hasDeviations_ = false;
    int decimals_ = 0; // the most of a number in the matrix
    double rounding_ = 0.0;
    Block<char> isGiven_; // p x p
    Block<double> deviations_;
};

} // namespace

ErrorCode readTypedMoments(const DelimitedCells& cells, bool divisorIsN, MomentTable& table, double& rounding,
                           MomentsRefusal& refusal) {
    TypedReader reader(cells, divisorIsN, table, refusal);
    const ErrorCode code = reader.read();
    rounding = reader.rounding();
    return code;
}
