// The first-break picks of an SU file's headers written as text: one .FBP
// file per record, and the .ASC file of a whole line for Rayfract.
#pragma once

namespace tf {

class App;

// Commandp2 of the main panel: channel and pick, one file per record.
void Write_FBP(App& app);
// Commandp3: shot, stations, first break and elevations, semicolon-separated;
// dead traces get fbp -1 in the SU file itself. Opens the result in the
// editor.
void Write_Rayfract(App& app);

}  // namespace tf
