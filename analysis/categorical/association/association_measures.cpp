#include "analysis/categorical/association/association_measures.h"

#include <algorithm>
#include <cmath>

namespace {

using Wrapping = std::uint32_t;

std::int32_t wrappedProduct(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<Wrapping>(a) * static_cast<Wrapping>(b));
}

std::int32_t wrappedSum(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<Wrapping>(a) + static_cast<Wrapping>(b));
}

std::int32_t wrappedDifference(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<Wrapping>(a) - static_cast<Wrapping>(b));
}

const std::int32_t* rowOf(const ContingencyTable& table, Index row) {
    return table.counts + row * table.stride;
}

double chiSquare(const ContingencyTable& table) {
    double sum = 0.0;
    for (Index a = 0; a < table.rows; ++a) {
        const std::int32_t* row = rowOf(table, a);
        for (Index b = 0; b < table.columns; ++b) {
            const std::int32_t product = wrappedProduct(table.rowTotals[a], table.columnTotals[b]);
            const double expected = static_cast<double>(product) / table.samples;
            const double difference = row[b] - expected;
            sum += difference * difference / expected;
        }
    }
    return sum;
}

} // namespace

ChiSquareFamily chiSquareFamily(const ContingencyTable& table) {
    const double samples = table.samples;
    const std::int32_t rows = table.rows - 1;
    const std::int32_t columns = table.columns - 1;
    const double value = chiSquare(table);
    return {value, std::sqrt(value / samples), std::sqrt(value / (samples + value)),
            std::sqrt(value / wrappedProduct(std::min(rows, columns), table.samples)),
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

OrderedPairs countOrderedPairs(const ContingencyTable& table, std::int32_t* below) {
    Wrapping concordant = 0, discordant = 0, tiedRow = 0, tiedColumn = 0;
    Wrapping allBelow = 0;
    std::fill_n(below, table.columns, 0);
    for (Index a = table.rows - 1; a >= 0; --a) {
        const std::int32_t* row = rowOf(table, a);
        Wrapping belowRight = 0; // samples in the rows below whose column is greater
        Wrapping right = 0;      // samples of this row whose column is greater
        for (Index b = table.columns - 1; b >= 0; --b) {
            const Wrapping count = static_cast<Wrapping>(row[b]);
            const Wrapping belowHere = static_cast<Wrapping>(below[b]);
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
    return {static_cast<std::int32_t>(concordant), static_cast<std::int32_t>(discordant),
            static_cast<std::int32_t>(tiedRow), static_cast<std::int32_t>(tiedColumn)};
}

double goodmanKruskalGamma(const OrderedPairs& pairs) {
    return static_cast<double>(wrappedDifference(pairs.concordant, pairs.discordant)) /
           wrappedSum(pairs.concordant, pairs.discordant);
}

double twiceKendallTau(const OrderedPairs& pairs) {
    const std::int32_t untied = wrappedSum(pairs.concordant, pairs.discordant);
    const std::int32_t product =
        wrappedProduct(wrappedSum(pairs.tiedColumn, untied), wrappedSum(pairs.tiedRow, untied));
    return 2.0 * wrappedDifference(pairs.concordant, pairs.discordant) /
           std::sqrt(static_cast<double>(product));
}
