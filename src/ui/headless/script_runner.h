// The headless panel runner: a script of panel actions against the panel
// models, a JSON-lines transcript of what the user would have seen.
#pragma once

#include <ostream>
#include <string>

#include "ui/headless/script_platform.h"

namespace tf {

inline constexpr int exit_ok = 0;
inline constexpr int exit_script_error = 2;
inline constexpr int exit_run_aborted = 3;

// Runs a whole script; gives the exit code.
int run_script(const std::string& script, const RunnerOptions& options, std::ostream& out);

}  // namespace tf
