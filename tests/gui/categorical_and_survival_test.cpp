#include "tests/gui/analysis_dialogs.h"

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
