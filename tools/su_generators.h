// Synthetic SU files: records of channels, each trace with its counters,
// a first-break pick and samples that tell it from every other trace.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tf::gen {

struct SuLayout {
  int traces = 24;
  int samples = 100;
  int channels = 12;  // tracf runs 1 .. channels, then fldr steps
  int dt = 500;
  int seed = 0;  // sets the samples apart between files
};

// Trace k (from 1): tracl k, fldr and tracf by record and channel, ns, dt,
// fbp 10 k, samples seed * 1e6 + k * 1000 + sample.
std::vector<uint8_t> su_file(const SuLayout& layout);
std::string write_su(const std::string& path, const SuLayout& layout);

}  // namespace tf::gen
