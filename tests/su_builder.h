// SU files of an exact layout for the tests of the exports and of the
// vibroseis panels: header words put at their byte offsets, samples behind.
#pragma once

#include <cstdint>
#include <vector>

#include "test_support.h"

namespace tf::test {

struct SuTrace {
  int32_t fldr = 1, tracf = 1, cdp = 0;
  int16_t trid = 1, fbp = 0, scalel = 0, delrt = 0;
  int32_t gelev = 0, selev = 0, shot_station = 0, receiver_station = 0;
  std::vector<float> samples;
};

// Header offsets of the SU trace record.
namespace at {
inline constexpr size_t fldr = 8, tracf = 12, cdp = 20, trid = 28, gelev = 40, selev = 44, scalel = 68,
                        delrt = 108, ns = 114, dt = 116, corr = 124, fbp = 222, shot_station = 228,
                        receiver_station = 232;
}

inline std::vector<uint8_t> su_bytes(const std::vector<SuTrace>& traces, int16_t ns, int16_t dt) {
  std::vector<uint8_t> file;
  const size_t size = 240 + 4 * static_cast<size_t>(ns);
  for (size_t i = 0; i < traces.size(); ++i) {
    const SuTrace& t = traces[i];
    const size_t pos = i * size;
    file.resize(pos + size, 0);
    put_at<int32_t>(file, pos + at::fldr, t.fldr);
    put_at<int32_t>(file, pos + at::tracf, t.tracf);
    put_at<int32_t>(file, pos + at::cdp, t.cdp);
    put_at<int16_t>(file, pos + at::trid, t.trid);
    put_at<int32_t>(file, pos + at::gelev, t.gelev);
    put_at<int32_t>(file, pos + at::selev, t.selev);
    put_at<int16_t>(file, pos + at::scalel, t.scalel);
    put_at<int16_t>(file, pos + at::delrt, t.delrt);
    put_at<int16_t>(file, pos + at::ns, ns);
    put_at<int16_t>(file, pos + at::dt, dt);
    put_at<int16_t>(file, pos + at::fbp, t.fbp);
    put_at<int32_t>(file, pos + at::shot_station, t.shot_station);
    put_at<int32_t>(file, pos + at::receiver_station, t.receiver_station);
    for (size_t k = 0; k < t.samples.size() && k < static_cast<size_t>(ns); ++k)
      put_at<float>(file, pos + 240 + 4 * k, t.samples[k]);
  }
  return file;
}

// `records` records of `channels` traces, fldr from 1, tracf from 1; sample
// k of trace n (from 0) is n * 10 + k + 0.25.
inline std::vector<SuTrace> line_of(int records, int channels, int ns) {
  std::vector<SuTrace> traces;
  for (int r = 1; r <= records; ++r)
    for (int c = 1; c <= channels; ++c) {
      SuTrace t;
      t.fldr = r;
      t.tracf = c;
      const int n = static_cast<int>(traces.size());
      for (int k = 0; k < ns; ++k) t.samples.push_back(static_cast<float>(n * 10 + k) + 0.25f);
      traces.push_back(t);
    }
  return traces;
}

}  // namespace tf::test
