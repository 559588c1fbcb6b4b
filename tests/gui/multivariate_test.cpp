#include "tests/gui/analysis_dialogs.h"

TEST(FactorDialog, ShowsItsKindAndEnablesTheCriteriaOfTheRotation) {
    constexpr int heading = 2400, number = 2401, orthogonal = 2408, covarimin = 2409, varimax = 2412,
                  quartimax = 2414;
    App app;
    startWith(app, "eight-tests.csv");
    const Dialog principal = app.runCommand(714, "factor analysis");
    EXPECT_EQ(principal.text(heading), "principal factor analysys");
    EXPECT_TRUE(principal.isEnabled(covarimin) && !principal.isEnabled(varimax));
    for (int click = 0; click < 5; ++click) principal.spin(2402, true);
    EXPECT_EQ(principal.text(number), "    4"); // twice the two that it opened with
    principal.click(orthogonal);
    principal.click(quartimax);
    principal.press(IDOK);
    EXPECT_EQ(app.statusText(), "status : principal factor analysis statistics");
    EXPECT_NE(app.lowerText().find("-- orthogonal rotation due to quartimax criterion, use SMC"),
              std::string::npos);

    const Dialog likelihood = app.runCommand(715, "factor analysis");
    EXPECT_EQ(likelihood.text(heading), "maximum likelihood analysis");
    EXPECT_EQ(likelihood.text(number), "    2"); // proposed anew
    EXPECT_TRUE(likelihood.isChecked(quartimax) && likelihood.isEnabled(varimax) &&
                !likelihood.isEnabled(covarimin));
    likelihood.press(IDOK);
    EXPECT_EQ(app.statusText(), "status : maximum likelihood analysis statistics");
}

TEST(CanonicalAndDiscriminantDialogs, OpenWithoutAPurpose) {
    App app;
    startWith(app, "iris-group.csv");
    const Dialog canonical = app.runCommand(713, "canonical correlation analysis");
    expectRefused(app, canonical, "please select at least one purpose variable", 2301);
    canonical.choose(2309, 1);
    canonical.choose(2303, 2);
    canonical.press(IDOK);
    EXPECT_EQ(app.statusText(), "status : canonical correlation analysis statistics");

    constexpr int group = 2601, selection = 2603, fIn = 2605, fInArrows = 2608;
    const Dialog discriminant = app.runCommand(716, "discriminant analysis");
    EXPECT_EQ(discriminant.chosen(group), 0);
    expectRefused(app, discriminant, "please select at least one purpose variable", group);
    discriminant.check(selection, false);
    EXPECT_FALSE(discriminant.isEnabled(fIn) || discriminant.isEnabled(fInArrows));
    discriminant.choose(group, 5);
    discriminant.press(IDOK);
    EXPECT_EQ(app.statusText(), "status : discriminant analysis statistics");
    EXPECT_EQ(app.lowerText().find("stepwise"), std::string::npos);
    const Dialog again = app.runCommand(716, "discriminant analysis");
    EXPECT_EQ(again.chosen(group), 5);
    again.press(IDCANCEL);
    EXPECT_EQ(app.runCommand(713, "canonical correlation analysis").chosen(2303), 2);
}

TEST(CategoryDialogs, RememberTheirVariable) {
    constexpr int list = 3201, save = 962;
    App app;
    startWith(app, "survey-y.csv");
    const Dialog dialog = app.runCommand(722, "quantification 2 analysis");
    EXPECT_EQ(dialog.entries(list), (std::vector<std::string>{"(none)", "q1", "q2", "q3", "q4", "q5", "y"}));
    EXPECT_TRUE(dialog.chosen(list) == 1 && !dialog.isEnabled(save));
    dialog.choose(list, 6);
    dialog.press(IDOK);
    EXPECT_EQ(app.statusText(), "error : illegal group variable."); // y holds no group numbers
    EXPECT_EQ(app.runCommand(721, "quantification 1 analysis").chosen(3101), 6);
}

// The longest name that there can be is shown whole, by a drop-down list opened or a list box scrolled.
TEST(OptionDialogs, ShowLongNames) {
    const std::string name(62, 'W');
    App app;
    app.write("data.csv", "label," + name + ",y\na,1,1\nb,2,2\nc,1,3\nd,2,4\ne,1,5\nf,2,9\n");
    app.start("data.csv");
    for (const auto& [command, caption, list, asked] :
         {std::tuple{716, "discriminant analysis", 2601, CB_GETDROPPEDWIDTH},
          std::tuple{721, "quantification 1 analysis", 3101, LB_GETHORIZONTALEXTENT}}) {
        const Dialog dialog = app.runCommand(command, caption);
        EXPECT_GT(SendMessageA(dialog.control(list), static_cast<UINT>(asked), 0, 0), 62 * 8); // pixels
        dialog.press(IDCANCEL);
    }
}
