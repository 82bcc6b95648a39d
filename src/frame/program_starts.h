// Outside programs that the main panel starts: viewers and small converters.
#pragma once

#include <string>

#include "frame/platform.h"

namespace tf {

class App;

enum class FailureRule {
  below_32,  // any failing start is reported
  exactly_0  // only a result of 0 is reported: an ordinary failure passes in silence
};

struct ProgramStart {
  const char* control;
  const char* program;        // below the application folder, unless it names a drive
  const char* arguments;
  bool test_first;            // File_Exists before the start
  const char* missing_text;   // message when the test fails ("" + path for the path itself)
  Icon missing_icon;
  FailureRule rule;
  const char* failure_text;   // "" gives "Unable to shell application:" + path
};

// The path of a program of the table: the application folder plus its text.
std::string program_path(App& app, const std::string& program);

// Starts the program of a control; false when the test before found it
// missing (Lance ends there for SN388).
bool start_program(App& app, const std::string& control);

}  // namespace tf
