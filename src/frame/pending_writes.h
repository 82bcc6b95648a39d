// Writes gathered in memory that must reach their file before the user sees
// anything: a box, a question, a dialog, or the file being closed. Word-by-word
// writes would already be on disk there, and the user may look at the file.
#pragma once

#include <functional>

namespace tf {

// A gatherer of writes registers how to put out what it holds; `owner` is
// its key for the removal.
void add_pending_writes(const void* owner, std::function<void()> write_out);
void remove_pending_writes(const void* owner);
// Every gatherer puts out what it holds; a failing write is passed over, as
// the word-by-word write that it stands for would have been.
void write_pending();

}  // namespace tf
