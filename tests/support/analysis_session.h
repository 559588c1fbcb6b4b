#pragma once

#include <algorithm>
#include <cmath>
#include <sstream>

#include "analysis/run/run_flow.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/recording_frontend.h"

// The program with a file opened, ready for the commands of the menu.
struct AnalysisSession {
    RecordingFrontend frontend;
    AnalysisRun run;

    explicit AnalysisSession(const std::string& text) {
        startRun(run, TextBuffer::Growth::growing);
        EXPECT_EQ(loadText(frontend, run, text), FileCode::done);
        frontend.takeLog();
    }
    ErrorCode analyse(int command) {
        Settings defaults = run.options.settings;
        const ErrorCode code = runAnalysisCommand(frontend, defaults, run, command);
        // Whatever the code, no bar of progress stays; 0 stands for a word that is not in the log.
        const std::size_t shown = frontend.log.rfind("progress") + 1,
                          hidden = frontend.log.rfind("hidden") + 1;
        EXPECT_TRUE(shown == 0 || shown < hidden) << frontend.log;
        return code;
    }
    // The same with this done in the dialog.
    template <class Choice> ErrorCode analyse(int command, Choice choice) {
        frontend.choose = [choice](AnalysisRun& chosen) { return choice(chosen.options), true; };
        return analyse(command);
    }
    // Runs the command stopped at each of its steps: what is shown and kept stays, but for the status.
    void stopEverywhere(int command) {
        for (long long step = 1; step < 100'000; step += 1 + step / 50) {
            frontend.upper = "above", frontend.lower = "below";
            const std::string kept = wholeText(run.report.lower);
            frontend.stopAt = step;
            const ErrorCode code = analyse(command);
            if (code != stopped) break;
            EXPECT_EQ(frontend.upper + frontend.lower + frontend.status, "abovebelowerror : stopped.")
                << step;
            EXPECT_EQ(wholeText(run.report.lower), kept) << step;
        }
        frontend.stopAt = 0;
    }
    // Runs the command with each of its allocations failing, which is to end in one of these codes, by both
    // numerics, at last by those that are set. Returns how many allocations there were at least.
    long long failAllocations(int command, const std::vector<ErrorCode>& codes = {outOfMemory}) {
        stopEverywhere(command);
        ErrorCode code = success;
        long long counts[2];
        for (long long& count : counts) {
            run.numerics = run.numerics->textbook ? &classicNumerics : &textbookNumerics;
            count = failEachAllocation(
                [&] { code = analyse(command); },
                [&] { EXPECT_EQ(std::count(codes.begin(), codes.end(), code), 1) << code; });
        }
        return std::min(counts[0], counts[1]);
    }
    // Whether textbook numerics change nothing but the remark below the title.
    bool isTheSameByTextbook(int command) {
        analyse(command);
        const std::string classic = frontend.lower;
        run.numerics = &textbookNumerics;
        analyse(command);
        run.numerics = &classicNumerics;
        std::string textbook = frontend.lower;
        const std::string remark = "-- textbook numerics\n";
        const std::size_t at = textbook.find(remark);
        if (at != std::string::npos) textbook.erase(at, remark.size());
        return at != std::string::npos && textbook == classic && run.deviations[0] == '\0';
    }
    bool shows(const std::string& text) const { return frontend.lower.find(text) != std::string::npos; }
    // The numbers in the row with this label, the first one after this title.
    std::vector<double> row(const std::string& title, const std::string& label) const {
        std::istringstream lines(
            frontend.lower.substr(std::min(frontend.lower.find(title), frontend.lower.size())));
        for (std::string line; std::getline(lines, line);) {
            std::istringstream cells(line);
            std::string number, name, cell;
            std::getline(cells, number, ',');
            std::getline(cells, name, ',');
            if (name.substr(std::min(name.find_first_not_of(' '), name.size())) != label) continue;
            std::vector<double> values;
            while (std::getline(cells, cell, ',')) values.push_back(std::strtod(cell.c_str(), nullptr));
            return values;
        }
        ADD_FAILURE() << "no row " << label << " after " << title << " in\n" << frontend.lower;
        return {};
    }
};

// A file of these columns; its samples are s1, s2, ... and its variables v1, v2, ...
inline std::string fileOf(const std::vector<std::vector<double>>& columns) {
    std::ostringstream text;
    text.precision(17);
    text << "label";
    for (std::size_t j = 1; j <= columns.size(); ++j) text << ",v" << j;
    for (std::size_t s = 0; s < columns[0].size(); ++s) {
        text << "\ns" << s + 1;
        for (const auto& column : columns) text << ',' << column[s];
    }
    text << '\n';
    return text.str();
}

// The same columns as a data matrix.
struct ColumnMatrix : DataMatrix {
    std::vector<double> numbers;
};
inline ColumnMatrix matrixOf(const std::vector<std::vector<double>>& columns) {
    ColumnMatrix data;
    data.variables = static_cast<std::int32_t>(columns.size());
    data.samples = static_cast<std::int32_t>(columns[0].size());
    for (std::size_t s = 0; s < columns[0].size(); ++s) {
        for (const auto& column : columns) data.numbers.push_back(column[s]);
    }
    data.values = data.numbers; // which do not move with the record
    return data;
}

inline void expectNear(const std::vector<double>& values, const std::vector<double>& expected,
                       double tolerance) {
    ASSERT_EQ(values.size(), expected.size());
    for (std::size_t i = 0; i < values.size(); ++i) EXPECT_NEAR(values[i], expected[i], tolerance) << i;
}
