// The SU trace record: a 240-byte header and ns float32 samples, little-endian,
// no file header. The header is one table of words; every write names a key.
#pragma once

#include <array>
#include <future>
#include <memory>
#include <new>
#include <utility>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "su/binary_file.h"

namespace tf::su {

enum class WordType { i16, i32, f32 };

struct HeaderWord {
  std::string_view key;
  int offset;
  int width;
  WordType type;
  int number;  // place in the explorer's word list, 0 for the words of our own
};

inline constexpr int header_size = 240;

// The header table. Words 1 to 79 are the standard ones; fbp, shot_station
// and receiver_station live in the unassigned tail.
inline constexpr std::array<HeaderWord, 82> header_words{{
    {"tracl", 0, 4, WordType::i32, 1},      {"tracr", 4, 4, WordType::i32, 2},
    {"fldr", 8, 4, WordType::i32, 3},       {"tracf", 12, 4, WordType::i32, 4},
    {"ep", 16, 4, WordType::i32, 5},        {"cdp", 20, 4, WordType::i32, 6},
    {"cdpt", 24, 4, WordType::i32, 7},      {"trid", 28, 2, WordType::i16, 8},
    {"nvs", 30, 2, WordType::i16, 9},       {"nhs", 32, 2, WordType::i16, 10},
    {"duse", 34, 2, WordType::i16, 11},     {"offset", 36, 4, WordType::i32, 12},
    {"gelev", 40, 4, WordType::i32, 13},    {"selev", 44, 4, WordType::i32, 14},
    {"sdepth", 48, 4, WordType::i32, 15},   {"gdel", 52, 4, WordType::i32, 16},
    {"sdel", 56, 4, WordType::i32, 17},     {"swdep", 60, 4, WordType::i32, 18},
    {"gwdep", 64, 4, WordType::i32, 19},    {"scalel", 68, 2, WordType::i16, 20},
    {"scalco", 70, 2, WordType::i16, 21},   {"sx", 72, 4, WordType::i32, 22},
    {"sy", 76, 4, WordType::i32, 23},       {"gx", 80, 4, WordType::i32, 24},
    {"gy", 84, 4, WordType::i32, 25},       {"counit", 88, 2, WordType::i16, 26},
    {"wevel", 90, 2, WordType::i16, 27},    {"swevel", 92, 2, WordType::i16, 28},
    {"sut", 94, 2, WordType::i16, 29},      {"gut", 96, 2, WordType::i16, 30},
    {"sstat", 98, 2, WordType::i16, 31},    {"gstat", 100, 2, WordType::i16, 32},
    {"tstat", 102, 2, WordType::i16, 33},   {"laga", 104, 2, WordType::i16, 34},
    {"lagb", 106, 2, WordType::i16, 35},    {"delrt", 108, 2, WordType::i16, 36},
    {"muts", 110, 2, WordType::i16, 37},    {"mute", 112, 2, WordType::i16, 38},
    {"ns", 114, 2, WordType::i16, 39},      {"dt", 116, 2, WordType::i16, 40},
    {"gain", 118, 2, WordType::i16, 41},    {"igc", 120, 2, WordType::i16, 42},
    {"igi", 122, 2, WordType::i16, 43},     {"corr", 124, 2, WordType::i16, 44},
    {"sfs", 126, 2, WordType::i16, 45},     {"sfe", 128, 2, WordType::i16, 46},
    {"slen", 130, 2, WordType::i16, 47},    {"styp", 132, 2, WordType::i16, 48},
    {"stas", 134, 2, WordType::i16, 49},    {"stae", 136, 2, WordType::i16, 50},
    {"tatyp", 138, 2, WordType::i16, 51},   {"afilf", 140, 2, WordType::i16, 52},
    {"afils", 142, 2, WordType::i16, 53},   {"nofilf", 144, 2, WordType::i16, 54},
    {"nofils", 146, 2, WordType::i16, 55},  {"lcf", 148, 2, WordType::i16, 56},
    {"hcf", 150, 2, WordType::i16, 57},     {"lcs", 152, 2, WordType::i16, 58},
    {"hcs", 154, 2, WordType::i16, 59},     {"year", 156, 2, WordType::i16, 60},
    {"day", 158, 2, WordType::i16, 61},     {"hour", 160, 2, WordType::i16, 62},
    {"minute", 162, 2, WordType::i16, 63},  {"sec", 164, 2, WordType::i16, 64},
    {"timbas", 166, 2, WordType::i16, 65},  {"trwf", 168, 2, WordType::i16, 66},
    {"grnors", 170, 2, WordType::i16, 67},  {"grnofr", 172, 2, WordType::i16, 68},
    {"grnlof", 174, 2, WordType::i16, 69},  {"gaps", 176, 2, WordType::i16, 70},
    {"otrav", 178, 2, WordType::i16, 71},   {"d1", 180, 4, WordType::f32, 72},
    {"f1", 184, 4, WordType::f32, 73},      {"d2", 188, 4, WordType::f32, 74},
    {"f2", 192, 4, WordType::f32, 75},      {"ungpow", 196, 4, WordType::f32, 76},
    {"unscale", 200, 4, WordType::f32, 77}, {"ntr", 204, 4, WordType::i32, 78},
    {"mark", 208, 2, WordType::i16, 79},    {"fbp", 222, 2, WordType::i16, 0},
    {"shot_station", 228, 4, WordType::i32, 0}, {"receiver_station", 232, 4, WordType::i32, 0},
}};

// The word of a key; an unknown key does not compile where the key is a
// constant, and stops with a logic error otherwise.
constexpr const HeaderWord& word(std::string_view key) {
  for (const auto& w : header_words)
    if (w.key == key) return w;
  throw std::logic_error("unknown header key");
}

// 240 + 4 * ns, with the 32-bit overflow error.
int32_t record_size(int32_t ns);
// Traces of a file: length / record size in floating point, rounded half to even.
int32_t trace_count(int64_t file_length, int32_t ns);
// Byte offset of trace k counted from 1.
int32_t trace_position(int32_t k, int32_t ns);

// SEG-Y beside SU: a 3600-byte file header, then big-endian trace records of
// the same layout.
inline constexpr int segy_file_header = 3600;
inline constexpr int segy_ns_offset = segy_file_header + 114;
inline constexpr int segy_dt_offset = segy_file_header + 116;

// Header word access on an open file, at trace_pos + offset, by the width of
// the table.
int32_t read_word(BinaryFile& file, int64_t trace_pos, const HeaderWord& w);
void write_word(BinaryFile& file, int64_t trace_pos, const HeaderWord& w, int32_t value);

// Trace records gathered in memory before they go to the file in one
// write. Word writes land in the image in the order they are made, exactly as
// they would on the file; bytes that no write touched keep what the file
// holds there (or zero where the file grows), so the result is the same
// byte for byte as writing word by word. The image belongs to file `number`
// of the table: it goes out at flush(), whenever it passes 64 MB, before any
// box or dialog is shown and before that file is closed.
class RecordImage {
 public:
  RecordImage(FileTable& files, int number);
  ~RecordImage();
  RecordImage(const RecordImage&) = delete;
  RecordImage& operator=(const RecordImage&) = delete;

  void begin(int64_t trace_pos);
  // The next trace of the same image, at or after the first: a field
  // record's channels gathered and written together.
  void move_to(int64_t trace_pos);
  int64_t trace_pos() const { return base_ + current_; }

  void put_i16(int offset, int16_t value);
  void put_i32(int offset, int32_t value);
  void put_f32(int offset, float value);
  // A word by its key and table width.
  void put(const HeaderWord& w, double value);
  // `count` words of `width` bytes from `first`, all zero.
  void zero_words(int first, int end, int width);
  void put_bytes(int offset, const void* data, size_t size);
  template <typename T>
  void put_block(int offset, const T* values, size_t count) { put_bytes(offset, values, count * sizeof(T)); }

  // Writes the image: one read of what lies under it, one write. Error 52
  // when its file is not open.
  void flush();
  // The same, the write left to a second thread while the next traces are
  // gathered: for a record written whole while the next is read. Whatever
  // needs the file on disk (a box, its close, the next flush) waits for it;
  // a failing write fails there.
  void flush_behind();

  static constexpr size_t write_out_size = 64u << 20;

 private:
  void touch(int offset, size_t size);
  void fill_gaps(BinaryFile& file);
  size_t first_written() const;
  void wait_behind();
  void write_out(bool behind);
  FileTable& files_;
  int number_;
  int64_t base_ = 0;
  int64_t current_ = 0;  // the trace being written, from base_
  // Bytes that grow without being cleared first: every byte is set by the
  // write that grows the image or cleared as a gap.
  template <typename T>
  struct Uncleared : std::allocator<T> {
    template <typename U>
    struct rebind {
      using other = Uncleared<U>;
    };
    template <typename U, typename... Args>
    void construct(U* p, Args&&... args) { ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...); }
    template <typename U>
    void construct(U* p) noexcept { ::new (static_cast<void*>(p)) U; }
  };
  using Bytes = std::vector<uint8_t, Uncleared<uint8_t>>;
  Bytes bytes_;
  Bytes written_;
  std::vector<uint8_t> under_;
  Bytes behind_bytes_;
  std::future<void> behind_;
};

// The words of a field record's channel that the importers write in this
// order: fldr and tracf, cdp and cdpt 0, one data trace neither summed nor
// stacked (trid, nvs, nhs 1).
void put_channel_words(RecordImage& image, int32_t fldr, int32_t tracf);

// The whole header of the ABEM family of importers: tracl and tracr 0, the
// channel words (with duse 1 where the format has it), zero words from 36
// to 113, ns written 4 bytes wide (its upper half falls on dt), dt, zero
// words from 118 to 179, and zero words from 180 to 255: that run goes 16
// bytes past the header, where the samples then cover it.
void put_record_header(RecordImage& image, int32_t fldr, int32_t tracf, int32_t ns, int16_t dt, bool with_duse);

}  // namespace tf::su
