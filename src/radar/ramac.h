// RAMAC radar: a .rd3 record and its .rad text header into one SU file.
#pragma once

#include "frame/panel.h"

namespace tf {

class Radar_F : public Panel {
 public:
  explicit Radar_F(App& app);
  void Lit_RAMAC();
  void Convert();

 private:
  void read_header(const std::string& header_text);
};

// The date words of a record from its modification time, read through the
// platform's short date text and the "hh:mm" time: year from the last two
// characters of the date, day = (first two - 1) * 30 + the two from the
// fourth on, a rough 30-day month. Which part of the date the positions take
// follows the locale.
struct RecordDate {
  int16_t year = 0, day = 0, hour = 0, minute = 0;
};
RecordDate record_date(const std::string& short_date, const std::string& time);

}  // namespace tf
