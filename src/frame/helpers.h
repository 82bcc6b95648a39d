// Small routines of the shared module that every panel uses.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "frame/conventions.h"
#include "frame/platform.h"

namespace tf {

class App;

// Each line followed by `end`: the text of a help or information box.
template <typename Lines>
std::string ended_lines(const Lines& lines, const std::string& end = "\r\n") {
  std::string text;
  for (const char* line : lines) text += std::string(line) + end;
  return text;
}

// 1 when a plain file matches the name (wildcards allowed), else 0.
int File_Exists(const std::string& name);

// The key press of a number field: the key when it is in the allowed set
// (case-insensitive, backspace added on request), else a beep and 0.
int Filter_Key(Platform& platform, int key, const std::string& allowed, bool allow_backspace);

// One pass of replacement, stepping by the length of what is found: a
// shorter replacement leaves some matches behind, and callers rely on that.
void Replace_All(std::string& text, const std::string& find, const std::string& replacement);

// The folder of an existing file, with its closing separator; a folder that
// holds a blank is reported but kept.
void Folder_Of(Platform& platform, const std::string& path, std::string& folder);

// ns and dt of the first record of an SU file into SessionState (0 becomes
// 1024 and 1).
void Read_ns_dt(App& app, const std::string& file);

// The two bytes of a signed 16-bit value exchanged, in signed arithmetic.
void Swap2(int16_t value, int16_t& result);

// The number behind a keyword of a header text, up to the line end.
void Value_After_Key(Platform& platform, std::string& text, std::string& key, double& result);

// The decimal text of a value cut to `decimals` places, read back.
void Keep_Decimals(double value, int decimals, double& result);

// A file's modification time as the desktop shows it: the short date
// "dd/mm/yyyy" and the time "hh:mm", local time. Error 53 when the file is
// missing.
std::pair<std::string, std::string> file_date_time(const std::string& path);

// Doubled separators made single, as the panels clean the names they form.
std::string single_separators(std::string path);

// Message boxes: the default title where none is given.
Answer message(Platform& platform, const std::string& text, Icon icon = Icon::none,
               Buttons buttons = Buttons::ok, const std::string& title = default_title);

// A run that retries a failing statement after a plain box "File conversion
// error N° " + the error number + the panel's `ending`, until it passes; the
// host cuts a run that would never end.
void retry_statement(Platform& platform, const std::function<void()>& statement, const std::string& ending = "");

}  // namespace tf
