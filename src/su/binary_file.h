// Files opened for binary access by position, as every panel uses them:
// opening a missing file creates it empty, a write past the end grows the
// file with zero bytes, a read past the end leaves the buffer as it was.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tf {

class BinaryFile {
 public:
  BinaryFile() = default;
  ~BinaryFile();
  BinaryFile(const BinaryFile&) = delete;
  BinaryFile& operator=(const BinaryFile&) = delete;

  // Opens for reading and writing, creating an empty file where none is;
  // a file that cannot be written is opened for reading only.
  void open(const std::string& path);
  void close();
  bool is_open() const { return fd_ >= 0; }
  const std::string& path() const { return path_; }
  int64_t length() const { return length_; }

  // Byte offsets from 0. Reads copy what lies inside the file and leave the
  // rest of the buffer untouched.
  void read_at(int64_t pos, void* data, size_t size);
  void write_at(int64_t pos, const void* data, size_t size);

  // `size` bytes from `pos` written at `to_pos` of `to`, byte for byte as a
  // read into a zeroed buffer of that size and one write give (past this
  // file's end the bytes are zeros), without the buffer where the system
  // copies between files itself.
  void copy_to(BinaryFile& to, int64_t pos, int64_t to_pos, int64_t size);

  template <typename T>
  void read_value(int64_t pos, T& value) { read_at(pos, &value, sizeof(T)); }
  template <typename T>
  void write_value(int64_t pos, T value) { write_at(pos, &value, sizeof(T)); }
  template <typename T>
  void read_block(int64_t pos, std::vector<T>& values) { read_at(pos, values.data(), values.size() * sizeof(T)); }
  template <typename T>
  void write_block(int64_t pos, const std::vector<T>& values) { write_at(pos, values.data(), values.size() * sizeof(T)); }

 private:
  int fd_ = -1;
  bool writable_ = false;
  int64_t length_ = 0;
  std::string path_;
};

// Files by the small numbers of the convention: 1 input, 2 output, 3 a text
// beside them, 11 the short read of ns and dt.
class FileTable {
 public:
  BinaryFile& open(int number, const std::string& path);
  BinaryFile& operator[](int number);  // error 52 when not open
  void close(int number);
  void close_all();
  int free_number() const;

 private:
  std::map<int, std::unique_ptr<BinaryFile>> files_;
};

// A text file read a line at a time, as "Line Input #" does (a line ends at
// CR, LF or CR LF; past the end is error 62), without holding more of the
// file than the line: of a longer line the first 64 KiB are kept.
class TextLines {
 public:
  explicit TextLines(const std::string& path);  // error 53 when missing
  std::string next_line();
  static constexpr size_t kept = 64 * 1024;

 private:
  bool fill();  // false at the end of the file
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  std::vector<char> buffer_ = std::vector<char>(1 << 20);
  size_t pos_ = 0, end_ = 0;
};

// Reads in file order served from a window of file `number`: few large
// reads where a loop reads record after record. What each read gives is
// what a read of the file gives: the part inside the file, the rest of the
// buffer left as it was. For files that are only read while it lives.
// Error 52 when the file is not open.
class ReadAhead {
 public:
  ReadAhead(FileTable& files, int number, size_t window = 1u << 20) : files_(files), number_(number), window_(window) {}
  void read_at(int64_t pos, void* data, size_t size);
  template <typename T>
  void read_block(int64_t pos, std::vector<T>& values) { read_at(pos, values.data(), values.size() * sizeof(T)); }

 private:
  FileTable& files_;
  int number_;
  size_t window_;
  int64_t start_ = 0;
  std::vector<uint8_t> bytes_;
};

// Records 1 to `records` of a file walk, by blocks of `per_block`: `read`
// fills buffer `slot` (0 or 1) with the block of `count` records from
// `first`, then `work` uses it. In the background, the next block is read on
// a second thread while this one is worked on; a caller lets it only where
// the work writes nothing that the next read covers. A failing read fails
// where the walk waits for it, after the work of the block before.
using BlockStep = std::function<void(int32_t first, int32_t count, int slot)>;
void read_blocks_ahead(int32_t records, int32_t per_block, bool in_background, const BlockStep& read,
                       const BlockStep& work);

// A whole file copied over another; `error` when it cannot be.
void copy_whole_file(const std::string& from, const std::string& to, int error);

// Length of a file by name; error 53 when it is missing.
int64_t file_length(const std::string& path);
// Whole content of a file, or error 53.
std::string read_whole_file(const std::string& path);
void write_whole_file(const std::string& path, const std::string& content);

}  // namespace tf
