#include "tests/gui/analysis_dialogs.h"

TEST(LogLinearDialog, ComparesNestedModelsOfATable) {
    constexpr int variables = 3401, table = 3402, first = 3403, second = 3404, a = 3405, b = 3406, c = 3407,
                  arrows = 3408;
    App app;
    startWith(app, "haireye-table.csv");
    const Dialog dialog = app.runCommand(724, "three-way log linear analysis");
    EXPECT_EQ(dialog.entries(first), dialog.entries(second));
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
    dialog.choose(first, 0);
    expectRefused(app, dialog, "first model and second one must be different");
    dialog.choose(first, 9);
    dialog.choose(second, 8);
    expectRefused(app, dialog, "first model and second one must be implicated relation");
    dialog.choose(second, 5);
    dialog.type(b, "4");
    dialog.type(c, "2");
    dialog.press(IDOK);
    EXPECT_EQ(app.statusText(),
              "status : three way log linear analysis statistics -- due to contingency table data");
    EXPECT_NE(app.lowerText().find("LLM(10),           ,    LLM( 6),"), std::string::npos);
}

TEST(SimilarityDialog, ChoosesTheKindAndItsDimensions) {
    constexpr int scaling = 4001, quantification = 4002, coordinates = 4003, dimensions = 4004, arrows = 4005;
    App app;
    startWith(app, "five.csv");
    Dialog dialog = app.runCommand(732, "similarity data analysis");
    EXPECT_TRUE(dialog.isChecked(coordinates));
    for (int click = 0; click < 5; ++click) dialog.spin(arrows, true);
    EXPECT_EQ(dialog.text(dimensions), "    4");
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

TEST(EventDialogs, AskForTheirVariables) {
    const struct {
        int command;
        const char* caption;
        std::vector<int> lists; // state, time
        int iterations;
    } cases[] = {{740, "multiple logistic model", {5001}, 5002},
                 {741, "exponential weibull model", {5101, 5102}, 5103},
                 {742, "propotional hazard model", {5201, 5202}, 5203}};
    App app;
    startWith(app, "ovarian.csv");
    for (const auto& c : cases) {
        const Dialog dialog = app.runCommand(c.command, c.caption);
        EXPECT_EQ(dialog.entries(c.lists[0])[0], "(none)");
        EXPECT_EQ(dialog.chosen(c.lists[0]), 1);
        EXPECT_EQ(dialog.text(c.iterations) + dialog.text(c.iterations + 1), "  1000.500");
        dialog.spin(c.iterations + 2, false);
        dialog.spin(c.iterations + 3, true);
        EXPECT_EQ(dialog.text(c.iterations) + dialog.text(c.iterations + 1), "   990.600");
        dialog.choose(c.lists[0], 0);
        expectRefused(app, dialog, "please select one state variable");
        if (c.lists.size() > 1) {
            EXPECT_EQ(dialog.chosen(c.lists[1]), 2);
            dialog.choose(c.lists[0], 2);
            expectRefused(app, dialog, "state and time variable must be different");
            dialog.choose(c.lists[1], 0);
            expectRefused(app, dialog, "please select one time variable");
            dialog.choose(c.lists[1], 2);
        }
        dialog.choose(c.lists[0], 1);
        dialog.press(IDOK);
        EXPECT_EQ(app.statusText(), "status : " + std::string(c.caption) + " statistics");
    }
}
