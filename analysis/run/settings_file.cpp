#include "analysis/run/settings_file.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

static_assert(std::endian::native == std::endian::little, "the file is an image of the block");

bool decodeSettings(const unsigned char* bytes, std::size_t count, SettingsFile& file) {
    file = {};
    if (count < settingsFileSize) return false;
    std::memcpy(file.head, bytes, sizeof file.head);
    std::memcpy(&file.settings, bytes + sizeof file.head, sizeof file.settings);
    // "save as default" is asked anew by every dialog.
    std::fill(std::begin(file.settings.saveFlags), std::end(file.settings.saveFlags), 0);
    file.settings.curveSaveFlag = 0;
    file.settings.dataFileName[sizeof file.settings.dataFileName - 1] = '\0';
    file.settings.sheetName[sizeof file.settings.sheetName - 1] = '\0';
    return true;
}

void encodeSettings(const SettingsFile& file, unsigned char (&bytes)[settingsFileSize]) {
    std::memcpy(bytes, file.head, sizeof file.head);
    std::memcpy(bytes + sizeof file.head, &file.settings, sizeof file.settings);
}
