// Routines of the main panel that write the samples of an SU file as text
// for spreadsheets: one file per channel, one file of columns, and the
// CDP / time / amplitude list.
#pragma once

namespace tf {

class App;

// One file per channel of the first record, one sample a line.
void su2ascii2(App& app);
// One line per sample index, one column per trace of a range.
void su2Ascii(App& app);
// One line per sample: cdp, time in ms (negative down the trace), amplitude.
void Convert_2_X_Y_Z(App& app);

}  // namespace tf
