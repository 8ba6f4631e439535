// The words for the adapter's codes, both ways, and sector counts as megabytes. Words are found
// anywhere in the user's text, without regard to case; all returned texts are constants.
#pragma once

#include <cstdint>

int TranslateRaidLevel(const char* text);              // code; 255 after a message when unknown
const char* TranslateRaidLevel2Str(int code);          // the low 8 bits count
int TranslateWriteMode(const char* text);              // code; -1 without a message when unknown
const char* TranslateWriteMode2Str(int code);          // as listings show it
const char* TranslateWriteMode2StrForImport(int code); // as settings texts take it
int TranslateInitialization(const char* text);         // code; -1 when unknown (message) or foreground
const char* TranslateLDInitOption2Str(int code);       // as creation texts take it
const char* TranslateInitialization2Str(int code);     // as displays show it
int TranslateRoundingScheme(const char* text);         // code; 255 after a message when unknown

const char* enableText(int flag); // "Enable", or "Disable" for 0

double SectorCount2MB(std::uint64_t sectors);         // of 1,048,576 bytes
double SectorCount2MBBase1000(std::uint64_t sectors); // of 1,000,000 bytes
