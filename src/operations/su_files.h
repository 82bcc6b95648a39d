// What the SU file operations share: opening a file that must exist, the
// parts of a selection text, names formed from a name, the record geometry.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "su/binary_file.h"

namespace tf {

// An existing file opened for binary access by position as file `number`.
// A missing name fails with error 53 (a wildcard with 52) and leaves no
// empty file behind: inputs are never created.
BinaryFile& open_existing(FileTable& files, int number, const std::string& name);

// A text cut at each blank into at most `limit` parts; the last part is the
// rest of the text, blanks and all.
std::vector<std::string> split_parts(const std::string& text, size_t limit);

// `name` less its last `cut` characters, plus `ending`; error 5 when the
// name is shorter than that.
std::string renamed(const std::string& name, size_t cut, const std::string& ending);

// Whole records go out in pieces of about this size: one buffer, reused,
// rather than fresh memory for the whole file.
inline constexpr size_t copy_piece = 4u << 20;

// The bytes of `in` appended at the end of `out`, as one read of the whole
// file and one write would leave them (also when both are the same file).
void append_whole(BinaryFile& in, BinaryFile& out);

// Whole records copied into file `number`, gathered while each follows the
// one before and written in pieces: the file gets what one write a record
// would give it. What is gathered goes out before any box and at the end.
class RecordRun {
 public:
  RecordRun(FileTable& files, int number);
  ~RecordRun();
  RecordRun(const RecordRun&) = delete;
  RecordRun& operator=(const RecordRun&) = delete;
  void put(int64_t pos, const std::vector<uint8_t>& record);
  void flush();

 private:
  FileTable& files_;
  int number_;
  int64_t start_ = 0;
  std::vector<uint8_t> bytes_;
};

// Records read from file `number` going forward: the file is read in pieces
// and each record taken from the piece. A read gives what read_at gives.
class RecordReader {
 public:
  RecordReader(FileTable& files, int number) : files_(files), number_(number) {}
  void get(int64_t pos, std::vector<uint8_t>& record);

 private:
  FileTable& files_;
  int number_;
  int64_t start_ = 0;
  std::vector<uint8_t> piece_;
};

// The sample buffer sized to indices 0 to ns; a negative ns is error 9.
void size_samples(std::vector<float>& samples, int32_t ns);

// ns of the first trace: the int16 at byte 114.
int16_t first_ns(BinaryFile& file);
// ns and dt of the first trace (bytes 114 and 116) into `ns` and `dt`.
void first_ns_dt(BinaryFile& file, int16_t& ns, int16_t& dt);

}  // namespace tf
