// SU files built by the tests from the record layout: 240-byte headers with
// the words a case needs, then ns little-endian float32 samples.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "test_support.h"

namespace tf::test {

struct SuTrace {
  int32_t fldr = 1, tracf = 1;
  int16_t ns = 0, dt = 1000;
  std::vector<float> samples;
};

inline void append_trace(std::vector<uint8_t>& file, const SuTrace& t) {
  const size_t at = file.size();
  file.resize(at + 240 + 4 * t.samples.size(), 0);
  put_at<int32_t>(file, at + 0, static_cast<int32_t>(at / (240 + 4 * t.samples.size())) + 1);  // tracl
  put_at<int32_t>(file, at + 8, t.fldr);
  put_at<int32_t>(file, at + 12, t.tracf);
  put_at<int16_t>(file, at + 114, t.ns);
  put_at<int16_t>(file, at + 116, t.dt);
  for (size_t i = 0; i < t.samples.size(); ++i) put_at<float>(file, at + 240 + 4 * i, t.samples[i]);
}

// `records` records of `channels` traces of `ns` samples; sample i of a
// trace is value(record, channel, i).
inline std::vector<uint8_t> su_file(int records, int channels, int ns, int dt,
                                    const std::function<float(int, int, int)>& value) {
  std::vector<uint8_t> file;
  for (int r = 1; r <= records; ++r)
    for (int c = 1; c <= channels; ++c) {
      SuTrace t;
      t.fldr = r;
      t.tracf = c;
      t.ns = static_cast<int16_t>(ns);
      t.dt = static_cast<int16_t>(dt);
      for (int i = 0; i < ns; ++i) t.samples.push_back(value(r, c, i));
      append_trace(file, t);
    }
  return file;
}

inline float sample_of(const std::vector<uint8_t>& file, size_t trace, size_t i, int ns) {
  return value_at<float>(file, trace * (240 + 4 * static_cast<size_t>(ns)) + 240 + 4 * i);
}

}  // namespace tf::test
