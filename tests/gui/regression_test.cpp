#include "analysis/run/commands.h"
#include "tests/gui/analysis_dialogs.h"

namespace {

constexpr int regression = 711;
constexpr int polynomial = 751;
const std::string regressionCaption = "multiple regression analysis";
const std::string curveCaption = "non-linear multiple regression analysis";
const std::string degreesCaption = "convert degrees of polynomial terms";
constexpr int purposeList = 2101, allVariables = 2102, backwardElimination = 2106, aicValue = 2107,
              fValue = 2108;
constexpr int fIn = 2109, fOut = 2110, alpha = 2111, fInArrows = 2112, fOutArrows = 2113, alphaArrows = 2114;

bool contains(const std::string& text, const std::string& piece) {
    return text.find(piece) != std::string::npos;
}

} // namespace

TEST(RegressionDialog, EnablesSpinsAndRefuses) {
    App app;
    startWith(app, "stackloss.csv");
    const Dialog dialog = app.runCommand(regression, regressionCaption);
    EXPECT_EQ(dialog.entries(purposeList),
              (std::vector<std::string>{"(none)", "Air.Flow", "Water.Temp", "Acid.Conc.", "stack.loss"}));
    EXPECT_EQ(dialog.chosen(purposeList), 1);
    EXPECT_TRUE(dialog.isEnabled(aicValue) && !dialog.isEnabled(fIn) && !dialog.isEnabled(fOutArrows));
    dialog.click(fValue);
    EXPECT_TRUE(dialog.isEnabled(fIn) && dialog.isEnabled(fOut) && dialog.isEnabled(fInArrows));
    dialog.spin(fInArrows, false);
    dialog.type(alpha, "0.495");
    dialog.spin(alphaArrows, true);
    dialog.spin(alphaArrows, true); // beyond the most
    EXPECT_EQ(dialog.text(fIn) + dialog.text(alpha), "1.9000.505");
    dialog.type(fOut, "1.9");
    dialog.click(allVariables);
    EXPECT_FALSE(dialog.isEnabled(fValue) || dialog.isEnabled(fIn) || dialog.isEnabled(fInArrows));
    EXPECT_TRUE(dialog.isEnabled(alpha));
    dialog.choose(purposeList, 0);
    expectRefused(app, dialog, "f-in should be larger than f-out", IDOK); // the edit is disabled
    dialog.click(backwardElimination);
    expectRefused(app, dialog, "f-in should be larger than f-out", fIn);
    dialog.type(fIn, "2");
    expectRefused(app, dialog, "please select one purpose variable", purposeList);
    dialog.choose(purposeList, 4);
    dialog.press(IDOK);
    EXPECT_EQ(app.statusText(), "status : multiple regression analysis statistics");
    EXPECT_TRUE(contains(app.lowerText(), "process of backward elimination out due to f value"));
    app.runCommand(regression, regressionCaption).press(IDCANCEL);
    EXPECT_FALSE(app.isItemEnabled(commandPrediction));
}

TEST(PredictionDialog, FollowsACurveModelWithDegrees) {
    App app;
    startWith(app, "stackloss.csv");
    Dialog degrees = app.runCommand(polynomial, degreesCaption);
    degrees.choose(2202, 1);
    degrees.press(IDOK);
    app.waitForDialog(curveCaption).press(IDCANCEL); // forgets the degrees, too
    degrees = app.runCommand(polynomial, degreesCaption);
    EXPECT_EQ(degrees.chosen(2202), 0);
    degrees.choose(2202, 1);
    degrees.type(2212, "1.9");
    degrees.spin(2222, true);
    degrees.press(IDOK);
    const Dialog curve = app.waitForDialog(curveCaption);
    curve.choose(purposeList, 4);
    curve.press(IDOK);
    const std::string report = app.lowerText();
    EXPECT_TRUE(contains(report, "Air.Flow,   2.000000"));

    const int edit = CONTROL_PREDICTION_FIRST, name = CONTROL_PREDICTION_NAME_FIRST;
    app.runCommand(commandPrediction, "prediction").press(IDCANCEL);
    EXPECT_EQ(app.lowerText(), report);
    const Dialog page = app.runCommand(commandPrediction, "prediction");
    EXPECT_EQ(page.text(name) + page.text(edit), "alpha0.050");
    EXPECT_EQ(page.text(name + 1) + page.text(edit + 1), "Air.Flow60.429");
    EXPECT_TRUE(page.isEnabled(edit + 1));
    EXPECT_FALSE(page.isEnabled(edit + 3)); // Acid.Conc. is not in the model
    EXPECT_FALSE(IsWindowVisible(page.control(edit + 4)));
    page.type(edit, "0.1");
    page.type(edit + 1, "80");
    page.press(IDOK);
    EXPECT_EQ(app.statusText(), "status : prediction statistics");
    EXPECT_TRUE(contains(app.lowerText(), "-- due to convert degrees of polynomial terms curve"));
    EXPECT_TRUE(contains(app.lowerText(), "alpha is 0.100000") &&
                contains(app.lowerText(), "Air.Flow,  80.000000"));
    EXPECT_TRUE(app.isItemEnabled(commandPrediction));
}

TEST(PredictionDialog, TurnsItsPagesAndTakesNumbers) {
    const int edit = CONTROL_PREDICTION_FIRST;
    App app;
    startWith(app, "mtcars.csv");
    app.runCommand(regression, regressionCaption).press(IDOK);
    const Dialog first = app.runCommand(commandPrediction, "prediction");
    EXPECT_EQ(first.text(CONTROL_PREDICTION_PAGE), "page 1 of 2");
    EXPECT_FALSE(first.isEnabled(IDRETRY));
    first.type(edit, "0.1x");
    expectRefused(app, first, "please enter a number", edit);
    first.type(edit, " 0.0123456");
    first.press(IDOK);
    const Dialog second = app.waitForDialog("prediction");
    EXPECT_EQ(second.text(CONTROL_PREDICTION_PAGE), "page 2 of 2");
    second.press(IDRETRY);
    const Dialog back = app.waitForDialog("prediction");
    EXPECT_EQ(back.text(CONTROL_PREDICTION_PAGE) + " " + back.text(edit), "page 1 of 2 0.0123456");
    back.press(IDOK);
    app.waitForDialog("prediction").press(IDOK);
    EXPECT_TRUE(contains(app.lowerText(), "alpha is 0.012346"));
}
