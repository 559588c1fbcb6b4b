#include "analysis/basic/event_models/newton_raphson.h"

#include <array>
#include <cmath>

#include <gtest/gtest.h>

namespace {

using Values = std::array<double, 3>; // of the log-likelihood and its two derivatives

struct Curve : LikelihoodModel {
    Values (*function)(double);
    int evaluations = 0;

    explicit Curve(Values (*given)(double)) : function(given) {}
    void evaluate(const double* parameters, LikelihoodPoint& point) override {
        ++evaluations;
        point.value = function(*parameters)[0];
        point.gradient[0] = function(*parameters)[1];
        point.information(0, 0) = -function(*parameters)[2];
    }
    ErrorCode fitFrom(double start, NewtonRaphsonFit& fit, std::int32_t limit = 100) {
        EXPECT_EQ(fit.allocate(1), success);
        fit.parameters[0] = start;
        return newtonRaphson(*this, 1, limit, fit);
    }
};

// -(A u^2 + 2 B u v + C v^2) / 2 with u = x - 3 and v = y + 1, scaled by `unit` and its reciprocal.
struct Paraboloid : LikelihoodModel {
    double a, b, c, unit;

    Paraboloid(double a_, double b_, double c_, double unit_) : a(a_), b(b_), c(c_), unit(unit_) {}
    void evaluate(const double* x, LikelihoodPoint& point) override {
        const double u = unit * (x[0] - 3), v = (x[1] + 1) / unit;
        point.value = -(a * u * u + 2 * b * u * v + c * v * v) / 2;
        point.gradient[0] = -unit * (a * u + b * v);
        point.gradient[1] = -(b * u + c * v) / unit;
        point.information(0, 0) = a * unit * unit;
        point.information(1, 0) = b;
        point.information(1, 1) = c / unit / unit;
    }
    ErrorCode fit(NewtonRaphsonFit& result) {
        EXPECT_EQ(result.allocate(2), success);
        return newtonRaphson(*this, 2, 100, result);
    }
};

// The full step on -ln cosh overshoots further each time; that on ln x - x from 5 goes to -15.
TEST(NewtonRaphson, HalvesStepsThatLoseOrLeave) {
    Curve losing([](double x) {
        return Values{-std::log(std::cosh(x)), -std::tanh(x), -1 / (std::cosh(x) * std::cosh(x))};
    });
    Curve leaving([](double x) { return Values{std::log(x) - x, 1 / x - 1, -1 / (x * x)}; });
    NewtonRaphsonFit fit;
    for (const auto& [model, start, top] : {std::tuple{&losing, 2, 0}, {&leaving, 5, 1}}) {
        ASSERT_EQ(model->fitFrom(start, fit), success);
        EXPECT_NEAR(fit.parameters[0], top, 1e-8);
        EXPECT_GT(model->evaluations, fit.iterations + 1);
    }
}

TEST(NewtonRaphson, SaysWhyThereIsNoMaximum) {
    constexpr ErrorCode singular = newtonRaphsonSingular, endless = newtonRaphsonNotConvergent;
    // clang-format off
    const std::tuple<Values (*)(double), double, ErrorCode, std::int32_t> cases[] = { // start, code, iterations
        {[](double) { return Values{1, 1, 0}; }, 0, singular, 0}, // flat
        {[](double) { return Values{1, 1, 1}; }, 0, singular, 0}, // convex
        {[](double x) { return Values{std::log(x), 1, -1}; }, -1, notFinite, 0},           // nowhere
        {[](double x) { return Values{x == 0 ? 0.0 : NAN, 1, -1}; }, 0, notFinite, 0}, // elsewhere
        {[](double x) { return Values{x, 1, x > 3 ? 0.0 : -1.0}; }, 0, endless, 4},
        // Rises for ever in steps of 1; its variance exp(x) passes 1e8 after x = 18.
        {[](double x) { return Values{-std::exp(-x), std::exp(-x), -std::exp(-x)}; }, 0, endless, 19},
        {[](double x) { return Values{x, 1, -1}; }, 0, endless, 100},
    };
    // clang-format on
    NewtonRaphsonFit fit;
    for (const auto& [function, start, code, iterations] : cases) {
        EXPECT_EQ(Curve(function).fitFrom(start, fit), code);
        EXPECT_EQ(fit.iterations, iterations);
    }
    Curve parabola([](double x) { return Values{-x * x / 2, -x, -1}; });
    EXPECT_EQ(parabola.fitFrom(4, fit, 2), success);
    for (const int limit : {1, 0, -5}) EXPECT_EQ(parabola.fitFrom(4, fit, limit), endless);
}

} // namespace
