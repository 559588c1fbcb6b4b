#include "analysis/categorical/association/association_measures.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace {

template <class Count> using Wrapping = std::make_unsigned_t<Count>;

template <class Count> Count wrappedSum(Count a, Count b) {
    return static_cast<Count>(static_cast<Wrapping<Count>>(a) + static_cast<Wrapping<Count>>(b));
}

template <class Count> Count wrappedDifference(Count a, Count b) {
    return static_cast<Count>(static_cast<Wrapping<Count>>(a) - static_cast<Wrapping<Count>>(b));
}

double productOf(std::int32_t a, std::int32_t b) {
    using Unsigned = Wrapping<std::int32_t>;
    return static_cast<std::int32_t>(static_cast<Unsigned>(a) * static_cast<Unsigned>(b));
}

double productOf(std::int64_t a, std::int64_t b) {
    return static_cast<double>(a) * static_cast<double>(b);
}

const std::int32_t* rowOf(const ContingencyTable& table, Index row) {
    return table.counts + row * table.stride;
}

template <class Count> double chiSquare(const ContingencyTable& table) {
    double sum = 0.0;
    for (Index a = 0; a < table.rows; ++a) {
        const std::int32_t* row = rowOf(table, a);
        for (Index b = 0; b < table.columns; ++b) {
            const double product = productOf(Count{table.rowTotals[a]}, Count{table.columnTotals[b]});
            const double expected = product / table.samples;
            const double difference = row[b] - expected;
            sum += difference * difference / expected;
        }
    }
    return sum;
}

template <class Count> double tauB(const OrderedPairs<Count>& pairs) {
    const Count untied = wrappedSum(pairs.concordant, pairs.discordant);
    const double product = productOf(wrappedSum(pairs.tiedColumn, untied), wrappedSum(pairs.tiedRow, untied));
    return static_cast<double>(wrappedDifference(pairs.concordant, pairs.discordant)) / std::sqrt(product);
}

} // namespace

template <class Count> ChiSquareFamily chiSquareFamily(const ContingencyTable& table) {
    const double samples = table.samples;
    const std::int32_t rows = table.rows - 1;
    const std::int32_t columns = table.columns - 1;
    const double value = chiSquare<Count>(table);
    return {value, std::sqrt(value / samples), std::sqrt(value / (samples + value)),
            std::sqrt(value / productOf(Count{std::min(rows, columns)}, Count{table.samples})),
            std::sqrt(value / (std::sqrt(static_cast<double>(columns * rows)) * samples))};
}

double goodmanKruskalLambda(const ContingencyTable& table) {
    std::int32_t columnLargest[mostCategories] = {};
    Index modes = 0;
    for (Index a = 0; a < table.rows; ++a) {
        const std::int32_t* row = rowOf(table, a);
        modes += *std::max_element(row, row + table.columns);
        for (Index b = 0; b < table.columns; ++b) columnLargest[b] = std::max(columnLargest[b], row[b]);
    }
    for (Index b = 0; b < table.columns; ++b) modes += columnLargest[b];
    const Index marginalModes = Index{*std::max_element(table.rowTotals, table.rowTotals + table.rows)} +
                                *std::max_element(table.columnTotals, table.columnTotals + table.columns);
    return static_cast<double>(modes - marginalModes) /
           static_cast<double>(2 * Index{table.samples} - marginalModes);
}

template <class Count>
OrderedPairs<Count> countOrderedPairs(const ContingencyTable& table, std::int32_t* below) {
    Wrapping<Count> concordant = 0, discordant = 0, tiedRow = 0, tiedColumn = 0;
    Wrapping<Count> allBelow = 0;
    std::fill_n(below, table.columns, 0);
    for (Index a = table.rows - 1; a >= 0; --a) {
        const std::int32_t* row = rowOf(table, a);
        Wrapping<Count> belowRight = 0; // samples in the rows below whose column is greater
        Wrapping<Count> right = 0;      // samples of this row whose column is greater
        for (Index b = table.columns - 1; b >= 0; --b) {
            const Wrapping<Count> count = static_cast<Wrapping<Count>>(row[b]);
            const Wrapping<Count> belowHere = static_cast<Wrapping<Count>>(below[b]);
            concordant += count * belowRight;
            discordant += count * (allBelow - belowRight - belowHere);
            tiedRow += count * right;
            tiedColumn += count * belowHere;
            belowRight += belowHere;
            right += count;
            below[b] += row[b];
        }
        allBelow += right;
    }
    return {static_cast<Count>(concordant), static_cast<Count>(discordant), static_cast<Count>(tiedRow),
            static_cast<Count>(tiedColumn)};
}

template <class Count> double goodmanKruskalGamma(const OrderedPairs<Count>& pairs) {
    return static_cast<double>(wrappedDifference(pairs.concordant, pairs.discordant)) /
           static_cast<double>(wrappedSum(pairs.concordant, pairs.discordant));
}

double kendallTauB(const OrderedPairs<std::int64_t>& pairs) {
    return tauB(pairs);
}

double twiceKendallTau(const OrderedPairs<std::int32_t>& pairs) {
    return 2.0 * tauB(pairs);
}

template ChiSquareFamily chiSquareFamily<std::int32_t>(const ContingencyTable&);
template ChiSquareFamily chiSquareFamily<std::int64_t>(const ContingencyTable&);
template OrderedPairs<std::int32_t> countOrderedPairs(const ContingencyTable&, std::int32_t*);
template OrderedPairs<std::int64_t> countOrderedPairs(const ContingencyTable&, std::int32_t*);
template double goodmanKruskalGamma(const OrderedPairs<std::int32_t>&);
template double goodmanKruskalGamma(const OrderedPairs<std::int64_t>&);
