#include "numeric/kendall_variance.h"

void TieSums::add(Index t) {
    const auto count = static_cast<double>(t);
    pairs += count * (count - 1.0);
    triples += count * (count - 1.0) * (count - 2.0);
    weighted += count * (count - 1.0) * (2.0 * count + 5.0);
}

double kendallVariance(Index n, const TieSums& first, const TieSums& second) {
    TieSums all;
    all.add(n);
    if (first.pairs == all.pairs || second.pairs == all.pairs) return 0.0;
    const double singles = (all.weighted - first.weighted - second.weighted) / 18.0;
    const double pairs = first.pairs * second.pairs / (2.0 * all.pairs);
    // Two values have no triples.
    const double triples = n > 2 ? first.triples * second.triples / (9.0 * all.triples) : 0.0;
    return singles + triples + pairs;
}
