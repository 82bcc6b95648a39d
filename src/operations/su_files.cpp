#include "operations/su_files.h"

#include <filesystem>

#include "frame/conventions.h"
#include "frame/file_selection.h"
#include "frame/paths.h"
#include "frame/pending_writes.h"
#include "su/su_record.h"

namespace tf {

BinaryFile& open_existing(FileTable& files, int number, const std::string& name) {
  const std::string path = file_system_name(native_path(name));
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) throw RunTimeError(err::file_not_found);
  return files.open(number, path);
}

std::vector<std::string> split_parts(const std::string& text, size_t limit) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (parts.size() + 1 < limit) {
    const size_t blank = text.find(' ', start);
    if (blank == std::string::npos) break;
    parts.push_back(text.substr(start, blank - start));
    start = blank + 1;
  }
  parts.push_back(text.substr(start));
  return parts;
}

std::string renamed(const std::string& name, size_t cut, const std::string& ending) {
  if (name.size() < cut) throw RunTimeError(err::invalid_call);
  return name.substr(0, name.size() - cut) + ending;
}

RecordRun::RecordRun(FileTable& files, int number) : files_(files), number_(number) {
  bytes_.reserve(copy_piece + (64u << 10));
  add_pending_writes(this, [this](const void* closing) {
    if (!closing || closing == &files_[number_]) flush();
  });
}

RecordRun::~RecordRun() {
  remove_pending_writes(this);
  resume_next([this] { flush(); });
}

void RecordRun::put(int64_t pos, const std::vector<uint8_t>& record) {
  if (!bytes_.empty() && pos != start_ + static_cast<int64_t>(bytes_.size())) flush();
  if (bytes_.empty()) start_ = pos;
  if (pos < 0) throw RunTimeError(63);  // bad record number
  files_[number_];  // error 52 when the file is not open
  bytes_.insert(bytes_.end(), record.begin(), record.end());
  if (bytes_.size() >= copy_piece) flush();
}

void RecordRun::flush() {
  if (bytes_.empty()) return;
  const int64_t at = start_;
  start_ += static_cast<int64_t>(bytes_.size());
  // The buffer is emptied, and kept, whatever the write gives.
  struct Emptied {
    std::vector<uint8_t>& bytes;
    ~Emptied() { bytes.clear(); }
  } emptied{bytes_};
  files_[number_].write_at(at, bytes_.data(), bytes_.size());
}

void RecordReader::get(int64_t pos, std::vector<uint8_t>& record) {
  BinaryFile& file = files_[number_];
  const auto end = [&] { return start_ + static_cast<int64_t>(piece_.size()); };
  if (pos >= 0 && (pos < start_ || pos + static_cast<int64_t>(record.size()) > end()) && pos < file.length()) {
    start_ = pos;
    piece_.resize(static_cast<size_t>(std::min<int64_t>(file.length() - pos, std::max(copy_piece, record.size()))));
    file.read_block(pos, piece_);
  }
  if (pos >= start_ && pos + static_cast<int64_t>(record.size()) <= end())
    std::copy_n(piece_.begin() + (pos - start_), record.size(), record.begin());
  else
    file.read_block(pos, record);  // across the end of the file, or before its start
}

void size_samples(std::vector<float>& samples, int32_t ns) {
  if (ns < 0) throw RunTimeError(err::subscript);
  samples.assign(static_cast<size_t>(ns) + 1, 0.0f);
}

void append_whole(BinaryFile& in, BinaryFile& out) {
  const int64_t length = in.length(), end = out.length();
  std::vector<uint8_t> piece(static_cast<size_t>(std::min<int64_t>(length, copy_piece)));
  for (int64_t at = 0; at < length; at += static_cast<int64_t>(piece.size())) {
    piece.resize(static_cast<size_t>(std::min<int64_t>(length - at, copy_piece)));
    in.read_block(at, piece);
    out.write_block(end + at, piece);
  }
}

int16_t first_ns(BinaryFile& file) {
  int16_t ns = 0;
  file.read_value(su::word("ns").offset, ns);
  return ns;
}

void first_ns_dt(BinaryFile& file, int16_t& ns, int16_t& dt) {
  ns = first_ns(file);
  file.read_value(su::word("dt").offset, dt);
}

}  // namespace tf
