// Routines of the main panel that edit an SU file in place: one trace's
// samples replaced by another's, and the first-break picks edited.
#pragma once

namespace tf {

class App;

// Command6 "Trace replacement".
void Replace_Trace(App& app);
// Command8 "Remove/Modify FBP from SU file".
void Modify_FBP(App& app);

}  // namespace tf
