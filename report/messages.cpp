#include "report/messages.h"

#include "data/categories.h"

namespace {

template <class Code> struct Message {
    Code code;
    const char* text; // of the screen, null leaves it; "%d" is filled in
    const char* status;
};

// A code without a status text of its own keeps this one.
constexpr const char* defaultStatus = "error : detected singular matrix.";

constexpr Message<ErrorCode> analysisMessages[] = {
    {tooFewSamples,
     "\n\ttoo few samples or too much variables.\n"
     "\tneed to exclude %d variables, or add as many samples.",
     "error : too few samples or too much variables."},
    {illegalData, "\n\tillegal or nonsence data or illegal data structure.\n",
     "error : illegal or nonsence data or illegal data structure."},
    {outOfMemory, "\n\tfailed to allocate memory for data.\n", "error : failed to allocate memory for data."},
    {noEffectiveVariable, "\n\tno effective variable.\n", "error : no effective variable."},
    {singularMatrix, "\n\tdetected singular matrix. please re-select or exclude some variables.\n",
     defaultStatus},
    {eigenNotConvergent, "\n\teigen not convergent. please re-select or exclude some variables.\n",
     "error : eigen not convergent."},
    {singularFactorMatrix,
     "\n\tdetected singular matrix of factor. please decrease or increase factor number.\n", defaultStatus},
    {illegalGroupVariable,
     "\n\tillegal group variable.\n"
     "\t-- which priori discriminant data should be continuous natural intenger number from 1\n"
     "\t-- and its maximal number is %d\n",
     "error : illegal group variable."},
    {illegalCategoricalData,
     "\n\tillegal categorical variable data.\n"
     "\t-- which categorical data should be continuous natural intenger number from 1\n"
     "\t-- and its maximal number is %d\n",
     "error : illegal categorical variable data."},
    {illegalVariableNumber, "\n\tillegal variable number for three-way log linear model.\n",
     "error : illegal variable number for three-way log linear model."},
    {illegalCategoryNumber,
     "\n\tillegal category number of contingency table for three-way log linear model.\n",
     "error : illegal category number of contingency table for three-way log linear model."},
    {notFinite, "\n\tdetected nan, ind or inf cause inept source data.\n",
     "error : detected nan, ind or inf cause inept source data."},
    {illegalSimilarityData,
     "\n\tillegal source data which must be square data structure consisted with intenger number\n"
     "\t-- for similarity analysis.\n",
     "error : illegal source data which must be square data structure consisted with intenger number for "
     "similarity analysis."},
    // The hint speaks of similarity although the model is another; the pairing is kept so that reports stay
    // comparable.
    {illegalDivisionalValue,
     "\n\tillegal divisional value which must be in between of state variables.\n"
     "\t-- for similarity analysis.\n",
     "error : illegal divisional value which must be in between of state variables."},
    {newtonRaphsonSingular,
     "\n\tdetected singular matrix in newton-raphson method for non-linear model.\n"
     "\t-- please exclude some variables or change the divisional value.\n",
     "error : detected singular matrix in newton-raphson method for non-linear model."},
    {newtonRaphsonNotConvergent,
     "\n\tnot convergent in iteration of newton-raphson method for non-linear model.\n"
     "\t-- please exclude some variables or change the divisional value.\n",
     "error : not convergent in iteration of newton-raphson method for non-linear model."},
    {invalidDegree, "\n\tinvalid degree which must be plus numeral.\n",
     "error : invalid degree which must be plus numeral."},
    {invalidInvolutionVariable,
     "\n\tinvalid variable which must be plus numeral for the involution curve regression analysis.\n",
     "error : invalid variable which must be plus numeral for the involution curve regression analysis."},
    {invalidPurposeVariable, "\n\tinvalid purpose variable which must be plus numeral for the model.\n",
     "error : invalid purpose variable which must be plus numeral for the model."},
    {stopped, nullptr, "error : stopped."},
};

constexpr Message<FileCode> fileMessages[] = {
    {FileCode::done, nullptr, "status : opened the file"},
    {FileCode::notOpened, "\n\tfailed to open the file or no data.\n",
     "error : failed to open the file or no data."},
    {FileCode::malformed, "\n\tillegal data nor data structure.\n",
     "error : illegal data nor data structure."},
    {FileCode::noMemory, "\n\tfailed to allocate memory for data.\n",
     "error : failed to allocate memory for data."},
    {FileCode::notCreated, "\n\tfailed to open nor create a file.\n",
     "error : failed to open nor create a file."},
};

constexpr Message<LinkCode> ddeMessages[] = {
    {LinkCode::done, nullptr, "status : opened the file."},
    {LinkCode::notInitialized, "\n\tfailed to initialize dde process link.\n",
     "error : failed to initialize dde process link."},
    {LinkCode::notLinked,
     "\n\tfailed to link server.\n"
     "please boot the excel file or select another file.\n",
     "error : failed to link server."},
    {LinkCode::noService,
     "\n\ttherer is no dde service.\n"
     "please boot the excel file or select another file.\n",
     "error : therer is no dde service."},
    {LinkCode::notExited, "\n\tfailed to exit dde service.\n", "error : failed to exit dde service."},
    {LinkCode::notInitiated,
     "\n\tnot initiate dde.\n"
     "please boot the excel file or select another file.\n",
     "error : not initiate dde."},
    {LinkCode::noData, "\n\tfailed to get data of excel file.\n",
     "error : failed to get data of excel file."},
};

constexpr const char* ddeOtherStatus = "error : failed to disconnect dde connection.";

// In the order in which a later bit replaces an earlier one.
constexpr Message<LinkCode> ddeBits[] = {
    {LinkCode::serviceKept, "\n\tfailed to terminate dde service.\n", ddeOtherStatus},
    {LinkCode::topicKept, "\n\tfailed to terminate dde connection.\n", ddeOtherStatus},
    {LinkCode::notDisconnected, "\n\tfailed to disconnect dde connection.\n", ddeOtherStatus},
};

template <class Code, std::size_t count>
const Message<Code>* findMessage(const Message<Code> (&messages)[count], Code code) {
    for (const Message<Code>& message : messages) {
        if (message.code == code) return &message;
    }
    return nullptr;
}

// Puts `text` into the buffer with its "%d", if it has one, replaced by `number`.
void putText(TextBuffer& buffer, std::string_view text, int number) {
    buffer.clear();
    const std::size_t mark = text.find("%d");
    buffer.append(text.substr(0, mark));
    if (mark == std::string_view::npos) return;
    buffer.appendInteger(number, 0);
    buffer.append(text.substr(mark + 2));
}

template <class Code> void putDataSourceMessage(Report& report, const Message<Code>& message) {
    if (message.text != nullptr) putText(report.upper, message.text, 0);
    putText(report.status, message.status, 0);
}

} // namespace

ErrorCode reportAnalysisCode(Screens& screens, Report& report, ErrorCode code, int shortage) {
    if (code == success || code == graphNotBuilt) return code;
    const Message<ErrorCode>* message = findMessage(analysisMessages, code);
    if (message != nullptr && message->text == nullptr) { // what the user may have typed there stays, too
        putText(report.status, message->status, 0);
        screens.showStatus(report);
        return code;
    }
    if (message != nullptr) {
        putText(report.lower, message->text, code == tooFewSamples ? shortage : mostCategories);
        putText(report.status, message->status, 0);
    } else {
        screens.showUpper(report);
    }
    screens.showLower(report);
    screens.showStatus(report);
    return code;
}

FileCode reportFileCode(Screens& screens, Report& report, FileCode code) {
    const Message<FileCode>* message = findMessage(fileMessages, code);
    if (message == nullptr) return code;
    putDataSourceMessage(report, *message);
    if (code == FileCode::noMemory) screens.alert("", "alert");
    screens.showUpper(report);
    screens.showStatus(report);
    return code;
}

LinkCode reportDdeCode(Screens& screens, Report& report, LinkCode code) {
    const Message<LinkCode>* message = findMessage(ddeMessages, code);
    if (message != nullptr) {
        putDataSourceMessage(report, *message);
    } else {
        putText(report.status, ddeOtherStatus, 0);
        for (const Message<LinkCode>& bit : ddeBits) {
            if (holds(code, bit.code)) putDataSourceMessage(report, bit);
        }
    }
    screens.showUpper(report);
    screens.showLower(report);
    screens.showStatus(report);
    return code;
}
