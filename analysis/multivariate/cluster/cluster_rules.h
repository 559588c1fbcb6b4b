#pragma once

#include <algorithm>
#include <cmath>

// How the distance of a cluster to a new one follows from those to the two clusters that it is made of.

// The two that unite.
struct UnitedPair {
    int addedFirst; // items beyond the first
    int addedSecond;
    double distance;

    double firstSize() const { return addedFirst + 1.0; }
    double secondSize() const { return addedSecond + 1.0; }
    double size() const { return firstSize() + secondSize(); }
};

// Each rule is called as rule(pair, added, first, second) with the items beyond the first of the third
// cluster and its distances to both of the pair.

// Coefficients by integer arithmetic from the number of the criterion.
class ClassicRule {
public:
    explicit ClassicRule(int criterion)
        : beta_(criterion == 2 ? -0.25 : 0.0), gamma_((criterion - 0.5) * ((5 - criterion) % 4)),
          e_((5 - criterion) % 3 * 0.5), t_((criterion + 1) % 4), u_((criterion + 1) % 6),
          w_((criterion + 1) % 5 - u_) {}

    double operator()(const UnitedPair& pair, int added, double first, double second) const {
        const double q =
            t_ / static_cast<double>((added + 1) * u_ + (pair.addedFirst + pair.addedSecond + 2));
        const double alphaFirst = (pair.addedFirst + 1 + added * u_) * q + e_;
        const double alphaSecond = (pair.addedSecond + 1 + added * u_) * q + e_;
        const double beta = beta_ - w_ * alphaFirst * alphaSecond - u_ * q * added;
        return beta * pair.distance + alphaFirst * first + alphaSecond * second +
               gamma_ * std::fabs(first - second);
    }

private:
    double beta_, gamma_, e_;
    int t_, u_, w_;
};

// The rules of Lance and Williams (1967), in their order there; Ward's is that of Wishart (1969).

struct NearestNeighbour {
    double operator()(const UnitedPair&, int, double first, double second) const {
        return std::min(first, second);
    }
};

struct FurthestNeighbour {
    double operator()(const UnitedPair&, int, double first, double second) const {
        return std::max(first, second);
    }
};

struct Median { // of squared distances
    double operator()(const UnitedPair& pair, int, double first, double second) const {
        return ((first + second) - pair.distance / 2.0) / 2.0;
    }
};

struct GroupAverage {
    double operator()(const UnitedPair& pair, int, double first, double second) const {
        return (pair.firstSize() * first + pair.secondSize() * second) / pair.size();
    }
};

struct Centroid { // of squared distances
    double operator()(const UnitedPair& pair, int, double first, double second) const {
        const double within = pair.firstSize() * pair.secondSize() * pair.distance / pair.size();
        return (pair.firstSize() * first + pair.secondSize() * second - within) / pair.size();
    }
};

struct Ward { // of squared distances
    double operator()(const UnitedPair& pair, int added, double first, double second) const {
        const double size = added + 1.0;
        return ((pair.firstSize() + size) * first + (pair.secondSize() + size) * second -
                size * pair.distance) /
               (pair.size() + size);
    }
};
