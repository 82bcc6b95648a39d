// Writes gathered in memory that must reach their file before the user sees
// anything: a box, a question, a dialog, or the file being closed. Word-by-word
// writes would already be on disk there, and the user may look at the file.
#pragma once

#include <functional>

namespace tf {

// A gatherer of writes registers how to put out what it holds; `owner` is
// its key for the removal. `write_out` is given the file being closed, or
// nullptr when everything must be on disk.
void add_pending_writes(const void* owner, std::function<void(const void* closing)> write_out);
void remove_pending_writes(const void* owner);
// Every gatherer puts out what it holds (for the file `closing` only, where
// one is named); a failing write is passed over, as the word-by-word write
// that it stands for would have been.
void write_pending(const void* closing = nullptr);

}  // namespace tf
