// Starting a document or program the way the platform's open verb does:
// the call returns at once with a number, below 32 for a failure.
#pragma once

#include <string>

#include "frame/platform.h"

namespace tf {

inline constexpr int shell_file_not_found = 2;
inline constexpr int shell_no_association = 31;
inline constexpr int shell_started = 42;

// On Windows the shell's own call. Elsewhere the same contract: a missing
// file gives 2, a ".bat" goes to the batch interpreter (tracefold-batch), an
// executable starts detached, any other document goes to the desktop's
// opener (31 when there is none). The call does not wait for what it starts,
// unless the request asks to wait for its end.
int shell_start(const ShellRequest& request);

// Whether a start would find its file (a bare name also on PATH).
bool shell_start_would_find(const ShellRequest& request);

// The program that opens documents of an existing file's type, or "" where
// none is known.
std::string find_executable(const std::string& document);

// Folder of the running program, where tracefold-batch sits beside it.
std::string program_folder();

// An executable of that exact name in a folder of PATH, or "".
std::string find_on_path(const std::string& program);

}  // namespace tf
