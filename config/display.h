// The display of configuration file records: a frame around "label : value" lines.
#pragma once

void openDisplay(const char* kind, int setIndex);
void closeDisplay();
void showWord(const char* label, const char* value);
void showNumber(const char* label, int value);

const char* onOffText(int flag); // "On", or "Off" for 0
