// What all panels share for the whole run: the current file, its geometry
// and the sample buffers. One instance, owned by the application.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tf {

struct SessionState {
  std::string current_file;
  std::string data_folder;
  int32_t nb_traces = 0;
  std::string file_in;
  std::string file_out;
  int16_t nb_channels = 0;
  int32_t ns = 0;
  int32_t first_trace = 0;
  int32_t last_trace = 0;
  int16_t dt = 0;
  // Sample buffers belong to nobody: each panel sizes them before use. Index
  // 0 is the first element; panels that count from 1 leave it unused.
  std::vector<int16_t> i2_trace;
  std::vector<int32_t> i4_trace;
  std::vector<uint8_t> header_bytes;
  std::vector<float> r4_trace;
  int32_t trace_pos = 0;
  std::string su_tools_folder;
  std::string command_prefix;
  std::string crlf;
  std::string conversion_mode;
  std::string editor_file;
  std::string batch_file;
};

}  // namespace tf
