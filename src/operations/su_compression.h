// SU files with 16-bit samples ("SU2"): the main panel's compression of an
// SU file to half its size, and the expansion back to 32-bit floats.
#pragma once

namespace tf {

class App;

// Command19: samples times a factor, as int16 (routine "SU_Compress").
void SU_Compress(App& app);
// Command21: the int16 samples back to floats, not divided (routine
// "SU_Uncompress").
void SU_Uncompress(App& app);

}  // namespace tf
