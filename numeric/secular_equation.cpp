#include "numeric/secular_equation.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numeric/pair.h"

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();
constexpr int mostSteps = 100;
// A method that has not come to its end by then goes on by halves.
constexpr int fastSteps = 30;

struct Side {
    double value = 0.0; // of the sum over the poles of this side
    double slope = 0.0;
};

struct Secular {
    Index count;
    const double* z;
    double inverseRho;
    double* distances; // from the point that is tried
};

Side sumSide(Index first, Index end, const Secular& secular) {
    Pair value = {}, slope = {};
    Side side;
    Index i = first;
    for (; i + 2 <= end; i += 2) {
        const Pair z = loadPair(secular.z + i);
        const Pair share = z / loadPair(secular.distances + i);
        value += z * share;
        slope += share * share;
    }
    for (; i < end; ++i) {
        const double share = secular.z[i] / secular.distances[i];
        side.value += secular.z[i] * share;
        side.slope += share * share;
    }
    side.value += value[0] + value[1];
    side.slope += slope[0] + slope[1];
    return side;
}

// The smaller root, that is the one nearer to 0 on the side of the root sought, of c x^2 - a x + b.
double smallerRoot(double a, double b, double c) {
    const double root = std::sqrt(std::max(0.0, a * a - 4.0 * b * c));
    return a <= 0.0 ? (a - root) / (2.0 * c) : 2.0 * b / (a + root);
}

double largerRoot(double a, double b, double c) {
    const double root = std::sqrt(std::max(0.0, a * a - 4.0 * b * c));
    return a >= 0.0 ? (a + root) / (2.0 * c) : 2.0 * b / (a - root);
}

// Where the sum would vanish if all poles of a side were in its nearest one, k and k + 1 (Li 1993); measured
// from the point that is tried.
double step(const Secular& secular, Index k, double value, Side left, Side right, bool behindAll) {
    const double d = secular.distances[k];
    const double e = secular.distances[k + 1];
    const double a = (d + e) * value - d * e * (left.slope + right.slope);
    const double b = d * e * value;
    const double c = value - d * left.slope - e * right.slope;
    return behindAll ? largerRoot(a, b, std::fabs(c)) : smallerRoot(a, b, c);
}

} // namespace

double findSecularRoot(Index count, Index index, const double* poles, const double* z, double rho,
                       double* distances) {
    if (count == 1) {
        distances[0] = -rho * z[0] * z[0];
        return poles[0] - distances[0];
    }
    const Secular secular = {count, z, 1.0 / rho, distances};
    const bool behindAll = index == count - 1;
    // Of the two poles that stand for all, the left one; sums of the left side end behind it.
    const Index k = behindAll ? index - 1 : index;
    double width = 0.0;
    if (behindAll) {
        for (Index i = 0; i < count; ++i) width += z[i] * z[i];
        width *= rho;
    } else {
        width = poles[index + 1] - poles[index];
    }

    // The root is measured from the pole that is nearer to it.
    Index origin = index;
    double low = 0.0, high = width;
    double tried = width / 2.0;
    for (int steps = 0; steps < mostSteps; ++steps) {
        for (Index i = 0; i < count; ++i) distances[i] = (poles[i] - poles[origin]) - tried;
        const Side left = sumSide(0, k + 1, secular);
        const Side right = sumSide(k + 1, count, secular);
        const double value = secular.inverseRho + left.value + right.value;
        const double size = secular.inverseRho + std::fabs(left.value) + std::fabs(right.value);
        if (std::fabs(value) <= 4.0 * epsilon * size) break;
        (value < 0.0 ? low : high) = tried;
        double next = tried + step(secular, k, value, left, right, behindAll);
        if (steps == 0 && !behindAll && value < 0.0) { // in the right half
            origin = index + 1;
            low -= width;
            high = 0.0;
            next -= width;
            tried -= width;
        }
        if (!(next > low && next < high) || steps >= fastSteps) next = low + (high - low) / 2.0;
        if (next == tried || next == low || next == high) break;
        const bool settled = std::fabs(next - tried) <= epsilon * std::fabs(next);
        tried = next;
        if (settled) {
            for (Index i = 0; i < count; ++i) distances[i] = (poles[i] - poles[origin]) - tried;
            break;
        }
    }
    return poles[origin] + tried;
}
