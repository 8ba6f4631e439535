// Converts between the adapter's codes and the keywords for them, and sector counts to megabytes.
// Keywords are recognized anywhere in a text, ignoring case. All returned texts are constants.
#pragma once

#include <cstdint>

int TranslateRaidLevel(const char* text);              // code; 255 after a message when unknown
const char* TranslateRaidLevel2Str(int code);          // only the low 8 bits are used
int TranslateWriteMode(const char* text);              // code; -1 without a message when unknown
const char* TranslateWriteMode2Str(int code);          // for listings
const char* TranslateWriteMode2StrForImport(int code); // for settings texts
int TranslateInitialization(const char* text);         // code; -1 when unknown (message) or foreground
const char* TranslateLDInitOption2Str(int code);       // for creation texts
const char* TranslateInitialization2Str(int code);     // for display
int TranslateRoundingScheme(const char* text);         // code; 255 after a message when unknown

const char* enableText(int flag); // "Enable", or "Disable" for 0

double SectorCount2MB(std::uint64_t sectors);         // of 1,048,576 bytes
double SectorCount2MBBase1000(std::uint64_t sectors); // of 1,000,000 bytes
