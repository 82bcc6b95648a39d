// The trace display: one record of an SU file as wiggles with grey-filled
// positive lobes, drawn on the picture `ecran` of the panel that shows it
// (the SEG-Y import panel), so that a trial conversion can be judged at a
// glance.
#pragma once

#include <string>

#include "frame/panel.h"

namespace tf {

// Draws the first `Text5` traces of `file` on `ecran`, each normalised to
// its greatest positive sample and scaled by `Text13`. Brings tab 1 of
// `SSTab1` to the front.
void Display_SU(App& app, Panel& panel, std::string& file);

// The pointer over `ecran` at X, Y in its user units: the tooltip gives the
// time and the trace.
void ecran_mouse_move(App& app, Panel& panel, double x, double y);

}  // namespace tf
