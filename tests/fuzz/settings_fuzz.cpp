#include <cstring>

#include "analysis/run/settings_file.h"
#include "analysis/run/window_place.h"
#include "report/table_formats.h"
#include "report/tables.h"
#include "tests/fuzz/require.h"

// Any bytes are a settings file, or are refused; a window settles within the screens and tables can be
// written whatever stands in it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static Report report;
    static const ErrorCode allocated = allocateReport(report, TextBuffer::Growth::fixed);
    require(allocated == success);
    SettingsFile file;
    const bool decoded = decodeSettings(bytes, size, file);
    require(decoded == (size >= 1412));
    unsigned char written[settingsFileSize];
    encodeSettings(file, written);
    for (std::size_t i = 0; i < sizeof written; ++i) {
        const bool endOfText = i == 12 + 352 + 259 || i == 12 + 620 + 259;
        const bool isSaveFlag = i >= 12 + 112 && i < 12 + 316;
        require(written[i] == (decoded && !endOfText && !isSaveFlag ? bytes[i] : 0));
    }

    Settings& settings = file.settings;
    settleWindowRectangle(settings, 1920, 1080, {0, 0, 1920, 1080});
    require(settings.windowLeft < 1920 && settings.windowTop < 1080);
    require(settings.windowRight > 0 && settings.windowBottom > 0);

    const double values[3] = {settings.regression.fIn, settings.discriminant.canonAlpha,
                              settings.hazard.division};
    SetFormatsFromValues(report, values, 3, settings.variableStringLength, settings.sampleStringLength);
    report.lower.clear();
    WriteFactorHeader(report, 3, settings.variableStringLength);
    WriteValueRow(report, values, 3, 12, settings.sheetName, settings.logisticIterations);
    require(report.lower.length() == std::strlen(report.lower.text()));
    return 0;
}
