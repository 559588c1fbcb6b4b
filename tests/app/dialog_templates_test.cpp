#include <filesystem>
#include <iomanip>
#include <map>

#include "analysis/run/analysis_kind.h"
#include "data/import/import_choice.h"
#include "tests/support/cases.h"

namespace {

// What each control of a dialog is, by its identifier: a statement of the resource compiler, the window class
// of a CONTROL, or for a radio button the first one of its group, in which a click unsets the others.
using Controls = std::multimap<int, std::string>;

std::string radioButton(int firstOfGroup) {
    return "radio button of the group of " + std::to_string(firstOfGroup);
}

// The templates of all analyses. Controls and dialogs that go by a name of app/resource_ids.h have no field.
std::map<int, Controls> readTemplates() {
    std::map<int, Controls> templates;
    for (const auto& file : std::filesystem::directory_iterator(OMBRIVANTEL_SOURCE_DIR "/app/dialogs")) {
        std::istringstream lines(readTextFile("../app/dialogs/" + file.path().filename().string()));
        int dialog = 0, firstOfGroup = 0;
        for (std::string line; std::getline(lines, line);) {
            if (line.find(" DIALOGEX ") != std::string::npos) dialog = std::atoi(line.c_str());
            if (!line.starts_with(' ')) continue;
            std::istringstream words(line);
            std::string type, label;
            char comma = ',';
            int identifier = 0; // stays so for a name
            words >> type >> std::ws;
            if (words.peek() == '"') words >> std::quoted(label) >> comma;
            words >> identifier;
            if (type == "CONTROL") words >> comma >> std::quoted(type);
            if (line.find("WS_GROUP") != std::string::npos) firstOfGroup = identifier;
            if (type == "AUTORADIOBUTTON") type = radioButton(firstOfGroup);
            if (identifier != 0) templates[dialog].emplace(identifier, type);
        }
    }
    return templates;
}

// What the dialog engine needs for the fields, given the template.
Controls controlsOf(OptionFields fields, const Controls& dialog) {
    Controls controls;
    for (const OptionField& field : fields) {
        const auto found = dialog.find(field.control);
        const bool isListBox = found != dialog.end() && found->second == "LISTBOX";
        switch (field.type) {
        case OptionType::flag:
            controls.emplace(field.control, "AUTOCHECKBOX");
            break;
        case OptionType::choice:
            for (std::size_t k = 0; k < field.choices.size(); ++k)
                controls.emplace(field.control + static_cast<int>(k), radioButton(field.control));
            break;
        case OptionType::listedChoice:
            controls.emplace(field.control, "COMBOBOX");
            break;
        case OptionType::wholeNumber:
        case OptionType::real:
            controls.emplace(field.control, "EDITTEXT");
            controls.emplace(field.arrows, "msctls_updown32");
            break;
        case OptionType::variable:
        case OptionType::variables:
            for (int k = 0; k < field.count; ++k)
                controls.emplace(field.control + k, isListBox ? "LISTBOX" : "COMBOBOX");
        }
    }
    return controls;
}

} // namespace

TEST(DialogTemplates, HaveTheControlsOfTheOptionFields) {
    std::map<int, Controls> templates = readTemplates();
    for (const AnalysisKind& kind : analysisKinds()) {
        if (kind.analysis == nullptr) continue;
        SCOPED_TRACE(kind.batchName);
        const Controls& dialog = templates[kind.dialog];
        Controls controls = controlsOf(kind.analysis->fields, dialog);
        controls.emplace(kind.saveBox, "AUTOCHECKBOX");
        if (kind.heading != nullptr) controls.emplace(kind.headingControl, "LTEXT");
        EXPECT_EQ(dialog, controls);
        const Controls& first = templates[kind.analysis->firstDialog];
        EXPECT_EQ(first, controlsOf(kind.analysis->firstFields, first));
    }
}

// One height for each sort of control and one place for the buttons. Arrow keys go among buttons of one sort.
TEST(DialogTemplates, KeepToOneGrid) {
    const std::map<std::string, int> heights = {{"LTEXT", 10},           {"EDITTEXT", 14},
                                                {"AUTORADIOBUTTON", 10}, {"AUTOCHECKBOX", 10},
                                                {"PUSHBUTTON", 14},      {"DEFPUSHBUTTON", 14}};
    for (const auto& file : std::filesystem::directory_iterator(OMBRIVANTEL_SOURCE_DIR "/app/dialogs")) {
        std::istringstream lines(readTextFile("../app/dialogs/" + file.path().filename().string()));
        int width = 0, height = 0;
        std::string sort, former;
        for (std::string line; std::getline(lines, line); former = sort) {
            const std::size_t size = line.find(" DIALOGEX ");
            if (size != std::string::npos)
                std::sscanf(line.c_str() + size, " DIALOGEX 0, 0, %d, %d", &width, &height);
            std::istringstream words(line);
            std::string label, identifier;
            char comma = ',';
            words >> sort >> std::ws;
            if (!line.starts_with(' ') || heights.count(sort) == 0) continue;
            if (words.peek() == '"') words >> std::quoted(label) >> comma >> std::ws;
            std::getline(words, identifier, ',');
            int left = 0, top = 0, controlWidth = 0, controlHeight = 0;
            words >> left >> comma >> top >> comma >> controlWidth >> comma >> controlHeight;

            SCOPED_TRACE(file.path().filename().string() + ": " + line);
            EXPECT_EQ(controlHeight, heights.at(sort));
            const bool isSaveBox = label == "save as default";
            const int button = height - 21, margin = 7;
            EXPECT_LE(left + controlWidth, width - margin);
            EXPECT_LE(top + controlHeight, height - margin);
            const std::map<std::string, std::pair<int, int>> places = {
                {"Okay", {width - 112, button}},
                {"Cancel", {width - 57, button}},
                {"save as default",
                 {margin, height == 150 ? height - 17 : button + 2}}}; // a page has no buttons
            if (places.count(label) != 0) {
                EXPECT_EQ(std::pair(left, top), places.at(label));
            }
            const bool isButton = sort.ends_with("BUTTON") || sort == "AUTOCHECKBOX";
            const bool begins = isSaveBox || (sort != former && former != "DEFPUSHBUTTON");
            if (isButton && begins) {
                EXPECT_NE(line.find("WS_GROUP"), std::string::npos);
            }
        }
    }
}

// What a refusal calls a choice is what stands beside it.
TEST(DialogTemplates, OfTheImportHaveTheNamesOfItsChoices) {
    std::string dialog = readTextFile("../app/dialogs/import_table.rc");
    std::erase(dialog, '&');
    std::size_t at = 0;
    for (int k = 0; k < importChoiceCount; ++k) {
        const std::string label = namesOf(static_cast<ImportChoice>(k)).label;
        at = dialog.find("LTEXT \"" + label + "\", CONTROL_STATIC", at);
        ASSERT_NE(at, std::string::npos) << label;
        std::string control = k < wordChoiceCount ? "COMBOBOX" : "EDITTEXT";
        control += " CONTROL_IMPORT_FIRST";
        control += k == 0 ? "," : " + " + std::to_string(k) + ",";
        at = dialog.find('\n', at);
        EXPECT_EQ(dialog.find(control, at), at + 5) << label;
    }
}
