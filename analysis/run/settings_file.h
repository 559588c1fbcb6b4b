#pragma once

#include "analysis/run/settings.h"

// The settings file: a head of 12 bytes that is written back as it was read, then the block.
struct SettingsFile {
    unsigned char head[12];
    Settings settings;
};

constexpr std::size_t settingsFileSize = sizeof(SettingsFile::head) + sizeof(SettingsFile::settings);

// Takes the contents of a file over. False, with `file` all zero, when there are fewer than settingsFileSize
// bytes: such a file counts as missing. Numbers are taken as they are; texts get their end.
bool decodeSettings(const unsigned char* bytes, std::size_t count, SettingsFile& file);

void encodeSettings(const SettingsFile& file, unsigned char (&bytes)[settingsFileSize]);
