#include "tests/gui/analysis_dialogs.h"

TEST(LogLinearDialog, ComparesNestedModelsOfATable) {
    constexpr int variables = 3401, table = 3402, first = 3403, second = 3404, a = 3405, b = 3406, c = 3407,
                  arrows = 3408;
    App app;
    startWith(app, "haireye-table.csv");
    const Dialog dialog = app.runCommand(724, "three-way log linear analysis");
    EXPECT_EQ(dialog.entries(first).size(), 18u);
    EXPECT_EQ(dialog.entries(second)[13], "u      +uB(j)+uC(k)                        ");
    EXPECT_EQ(dialog.chosen(first), 1);
    EXPECT_EQ(dialog.chosen(second), 0);
    EXPECT_TRUE(dialog.isChecked(table) && dialog.isEnabled(a) && dialog.isEnabled(arrows));
    dialog.click(variables);
    EXPECT_FALSE(dialog.isEnabled(a) || dialog.isEnabled(b) || dialog.isEnabled(c) ||
                 dialog.isEnabled(arrows));
    dialog.click(table);
    dialog.spin(arrows, true);
    EXPECT_EQ(dialog.text(a) + dialog.text(b) + dialog.text(c), "    4    2    3");
    dialog.choose(first, 9);
    dialog.choose(second, 5);
    dialog.type(b, "4");
    dialog.type(c, "2");
    dialog.press(IDOK);
    EXPECT_EQ(app.statusText(),
              "status : three way log linear analysis statistics -- due to contingency table data");
    EXPECT_NE(app.lowerText().find("LLM(10),           ,    LLM( 6),"), std::string::npos);
}

TEST(SimilarityDialog, ChoosesTheKindAndItsDimensions) {
    constexpr int scaling = 4001, quantification = 4002, coordinates = 4003, arrows = 4005;
    App app;
    startWith(app, "five.csv");
    Dialog dialog = app.runCommand(732, "similarity data analysis");
    EXPECT_TRUE(dialog.isChecked(coordinates));
    for (int click = 0; click < 5; ++click) dialog.spin(arrows, true);
    dialog.click(quantification);
    dialog.press(IDOK);
    EXPECT_NE(app.lowerText().find("vector 4\n"), std::string::npos);
    EXPECT_EQ(app.statusText(), "status : quantification 4 analysis statistics ");
    dialog = app.runCommand(731, "similarity data analysis");
    EXPECT_TRUE(dialog.isChecked(quantification));
    dialog.click(scaling);
    dialog.press(IDOK);
    EXPECT_EQ(app.statusText(), "status : multi dimentional analysis statistics -- due to  data");
}

TEST(HazardDialog, AsksForItsVariables) {
    constexpr int state = 5201, time = 5202, iterations = 5203, division = 5204;
    App app;
    startWith(app, "ovarian.csv");
    const Dialog dialog = app.runCommand(742, "propotional hazard model");
    EXPECT_EQ(dialog.entries(state)[0], "(none)");
    EXPECT_TRUE(dialog.chosen(state) == 1 && dialog.chosen(time) == 2);
    dialog.spin(5205, false);
    dialog.spin(5206, true);
    EXPECT_EQ(dialog.text(iterations) + dialog.text(division), "   990.600");
    dialog.choose(state, 0);
    expectRefused(app, dialog, "please select one state variable", state);
    dialog.choose(state, 2);
    expectRefused(app, dialog, "state and time variable must be different", state);
    dialog.choose(time, 0);
    expectRefused(app, dialog, "please select one time variable", time);
    dialog.choose(time, 2);
    dialog.choose(state, 1);
    dialog.press(IDOK);
    EXPECT_EQ(app.statusText(), "status : propotional hazard model statistics");
}
