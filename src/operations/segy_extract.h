// Command11 of the main panel: the head of a SEG-Y file copied into a
// smaller one, to try a conversion on a sample of a large file.
#pragma once

namespace tf {

class App;

// Routine "Extract_SEGY". Nothing is parsed: the user gives the trace count
// and the samples per trace, and that many bytes are copied.
void Extract_SEGY(App& app);

}  // namespace tf
