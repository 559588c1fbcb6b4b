#pragma once

#include <gtest/gtest.h>

#include "tests/gui/driver.h"

// What the tests of option dialogs share.

// Starts with a data file of the reference cases, without pictures.
inline void startWith(App& app, const std::string& data) {
    app.write("data.csv", readFile(projectFile("tests/reference/data/" + data)));
    Settings settings;
    setDefaultSettings(settings);
    settings.expressGraph = 0;
    app.writeSettings(settings);
    app.start("data.csv");
}

// "Okay" is answered by this alert, and the dialog stays with the focus on what the alert speaks of.
inline void expectRefused(const App& app, const Dialog& dialog, const std::string& text, int control) {
    dialog.click(IDOK);
    const Dialog alert = app.waitForDialog("alert");
    EXPECT_EQ(alert.text(messageText), text);
    alert.press(IDOK);
    EXPECT_EQ(GetDlgCtrlID(app.focus()), control);
}
