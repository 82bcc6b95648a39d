// Record geometry of an SU file read out of its trace headers: how many
// traces, how many channels a record, and whether the data are stacked.
#pragma once

#include <cstdint>
#include <string>

namespace tf {

class App;

// Stack flag: 2 when a trace with nhs above 1 was met, else 0. Channels 0:
// no record structure found.
inline constexpr int16_t stacked = 2;

// The geometry of the processing panels. Sets ns and trace_pos; may ask
// for the channel count (its default is Text5 of the active panel) and
// renumber fldr and tracf.
void Detect_Geometry(App& app, const std::string& file, int32_t& traces, int16_t& channels, int16_t& stack_flag);

// ns, dt, nb_traces and nb_channels of a file, through Detect_Geometry.
void Read_File_Geometry(App& app, const std::string& file);

// The lighter scan of the main panel; sets ns, dt and trace_pos.
void Calcul_Channel(App& app, const std::string& file, int32_t& traces, int16_t& channels, int16_t& stack_flag);

}  // namespace tf
