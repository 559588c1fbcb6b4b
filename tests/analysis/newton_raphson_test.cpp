#include "analysis/basic/newton_raphson.h"

#include <cmath>
#include <functional>

#include <gtest/gtest.h>

namespace {

// From the log-likelihood, its gradient and the lower triangle of its information.
struct TestModel : LikelihoodModel {
    std::function<double(const double*, double* gradient, double* information)> function;
    int evaluations = 0;

    explicit TestModel(decltype(function) given) : function(std::move(given)) {}
    void evaluate(const double* parameters, LikelihoodPoint& point) override {
        ++evaluations;
        point.clear();
        point.value = function(parameters, point.gradient.data(), point.information.data());
    }
};

// Of one parameter, by its derivatives.
TestModel modelOf(double (*value)(double), double (*first)(double), double (*second)(double)) {
    return TestModel([=](const double* x, double* gradient, double* information) {
        *gradient = first(*x);
        *information = -second(*x);
        return value(*x);
    });
}

ErrorCode fitFrom(double start, TestModel& model, NewtonRaphsonFit& fit, std::int32_t limit = 100) {
    EXPECT_EQ(fit.allocate(1), success);
    fit.parameters[0] = start;
    return newtonRaphson(model, 1, limit, fit);
}

// -(A u^2 + 2 B u v + C v^2) / 2 with u = x - 3 and v = y + 1, scaled by `unit` and its reciprocal.
ErrorCode fitParaboloid(double a, double b, double c, double unit, NewtonRaphsonFit& fit) {
    TestModel model([=](const double* x, double* gradient, double* information) {
        const double u = unit * (x[0] - 3), v = (x[1] + 1) / unit;
        gradient[0] = -unit * (a * u + b * v);
        gradient[1] = -(b * u + c * v) / unit;
        information[0] = a * unit * unit;
        information[2] = b;
        information[3] = c / unit / unit;
        return -(a * u * u + 2 * b * u * v + c * v * v) / 2;
    });
    EXPECT_EQ(fit.allocate(2), success);
    return newtonRaphson(model, 2, 100, fit);
}

// One step reaches the top, a second one of 0 ends the search. What counts as singular has no units.
TEST(NewtonRaphson, MaximisesAParaboloidInOneStep) {
    NewtonRaphsonFit fit;
    ASSERT_EQ(fitParaboloid(2, 1, 3, 1, fit), success);
    EXPECT_EQ(fit.iterations, 2);
    EXPECT_NEAR(fit.parameters[0], 3, 1e-12);
    EXPECT_NEAR(fit.parameters[1], -1, 1e-12);
    EXPECT_NEAR(fit.startLikelihood, -(18 - 6 + 3) / 2.0, 1e-12);
    EXPECT_NEAR(fit.likelihood, 0, 1e-12);
    const double weights[] = {1, 2}; // variance (3 - 4 + 8) / 5 from the inverse of the information
    EXPECT_NEAR(fit.standardError(weights), std::sqrt(7.0 / 5), 1e-12);

    EXPECT_EQ(fitParaboloid(1, std::sqrt(1 - 1e-9), 1, 1e-6, fit), success);
    EXPECT_EQ(fitParaboloid(1, std::sqrt(1 - 1e-11), 1, 1, fit), newtonRaphsonSingular);
}

// The full step on -ln cosh overshoots further each time; that on ln x - x from 5 goes to -15.
TEST(NewtonRaphson, HalvesStepsThatLoseOrLeave) {
    TestModel losing =
        modelOf([](double x) { return -std::log(std::cosh(x)); }, [](double x) { return -std::tanh(x); },
                [](double x) { return -1 / (std::cosh(x) * std::cosh(x)); });
    NewtonRaphsonFit fit;
    ASSERT_EQ(fitFrom(2, losing, fit), success);
    EXPECT_NEAR(fit.parameters[0], 0, 1e-8);
    EXPECT_GT(losing.evaluations, fit.iterations + 1);
    TestModel leaving = modelOf([](double x) { return std::log(x) - x; }, [](double x) { return 1 / x - 1; },
                                [](double x) { return -1 / (x * x); });
    ASSERT_EQ(fitFrom(5, leaving, fit), success);
    EXPECT_NEAR(fit.parameters[0], 1, 1e-8);
}

TEST(NewtonRaphson, SaysWhyThereIsNoMaximum) {
    const auto same = [](double x) { return x; };
    const auto one = [](double) { return 1.0; };
    const auto minusOne = [](double) { return -1.0; };
    const auto minusExp = [](double x) { return -std::exp(-x); };
    struct {
        TestModel model;
        double start;
        ErrorCode code;
        std::int32_t iterations;
    } cases[] = {
        {modelOf(one, one, [](double) { return 0.0; }), 0, newtonRaphsonSingular, 0},           // flat
        {modelOf(one, one, one), 0, newtonRaphsonSingular, 0},                                  // convex
        {modelOf([](double x) { return std::log(x); }, one, minusOne), -1, notFinite, 0},       // nowhere
        {modelOf([](double x) { return x == 0 ? 0.0 : NAN; }, one, minusOne), 0, notFinite, 0}, // elsewhere
        {modelOf(same, one, [](double x) { return x > 3 ? 0.0 : -1.0; }), 0, newtonRaphsonNotConvergent, 4},
        // Rises for ever in steps of 1; its variance exp(x) passes 1e8 after x = 18.
        {modelOf(
             minusExp, [](double x) { return std::exp(-x); }, minusExp),
         0, newtonRaphsonNotConvergent, 19},
        {modelOf(same, one, minusOne), 0, newtonRaphsonNotConvergent, 100},
    };
    NewtonRaphsonFit fit;
    for (auto& c : cases) {
        EXPECT_EQ(fitFrom(c.start, c.model, fit), c.code) << &c - cases;
        EXPECT_EQ(fit.iterations, c.iterations) << &c - cases;
    }
    TestModel parabola = modelOf([](double x) { return -x * x / 2; }, [](double x) { return -x; }, minusOne);
    EXPECT_EQ(fitFrom(4, parabola, fit, 2), success);
    for (const int limit : {1, 0, -5})
        EXPECT_EQ(fitFrom(4, parabola, fit, limit), newtonRaphsonNotConvergent);
}

} // namespace
