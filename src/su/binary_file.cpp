#include "su/binary_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <sstream>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#ifdef _WIN32
#include <io.h>
#define pread_compat(fd, b, n, p) (_lseeki64(fd, p, SEEK_SET), _read(fd, b, static_cast<unsigned>(n)))
#define pwrite_compat(fd, b, n, p) (_lseeki64(fd, p, SEEK_SET), _write(fd, b, static_cast<unsigned>(n)))
#define close_compat _close
#define open_compat _open
#define BINARY_FLAG _O_BINARY
#else
#include <unistd.h>
#define pread_compat ::pread
#define pwrite_compat ::pwrite
#define close_compat ::close
#define open_compat ::open
#define BINARY_FLAG 0
#endif

#include "frame/conventions.h"
#include "frame/pending_writes.h"

namespace tf {

namespace {
int open_error() {
  switch (errno) {
    case ENOENT:
    case ENOTDIR: return err::path_not_found;
    case EACCES:
    case EPERM:
    case EROFS: return err::permission_denied;
    case EISDIR: return err::path_file_access;
    default: return err::bad_file_name;
  }
}
}  // namespace

BinaryFile::~BinaryFile() { close(); }

void BinaryFile::open(const std::string& path) {
  close();
  if (path.empty()) throw RunTimeError(err::path_file_access);
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) throw RunTimeError(err::path_file_access);
  int fd = open_compat(path.c_str(), O_RDWR | O_CREAT | BINARY_FLAG, 0644);
  writable_ = fd >= 0;
  if (fd < 0 && (errno == EACCES || errno == EROFS || errno == EPERM)) fd = open_compat(path.c_str(), O_RDONLY | BINARY_FLAG);
  if (fd < 0) throw RunTimeError(open_error());
  struct stat st {};
  fstat(fd, &st);
  fd_ = fd;
  length_ = st.st_size;
  path_ = path;
}

void BinaryFile::close() {
  if (fd_ >= 0) close_compat(fd_);
  fd_ = -1;
}

void BinaryFile::read_at(int64_t pos, void* data, size_t size) {
  if (fd_ < 0) throw RunTimeError(err::bad_file_number);
  if (pos < 0) throw RunTimeError(63);  // bad record number
  auto* out = static_cast<char*>(data);
  while (size > 0 && pos < length_) {
    auto got = pread_compat(fd_, out, size, pos);
    if (got <= 0) break;
    out += got, pos += got, size -= static_cast<size_t>(got);
  }
}

void BinaryFile::write_at(int64_t pos, const void* data, size_t size) {
  if (fd_ < 0) throw RunTimeError(err::bad_file_number);
  if (!writable_) throw RunTimeError(err::permission_denied);
  if (pos < 0) throw RunTimeError(63);  // bad record number
  auto* in = static_cast<const char*>(data);
  int64_t end = pos + static_cast<int64_t>(size);
  while (size > 0) {
    auto put = pwrite_compat(fd_, in, size, pos);
    if (put <= 0) throw RunTimeError(err::disk_full);
    in += put, pos += put, size -= static_cast<size_t>(put);
  }
  if (end > length_) length_ = end;
}

void BinaryFile::copy_to(BinaryFile& to, int64_t pos, int64_t to_pos, int64_t size) {
  if (fd_ < 0 || to.fd_ < 0) throw RunTimeError(err::bad_file_number);
  if (!to.writable_) throw RunTimeError(err::permission_denied);
  if (pos < 0 || to_pos < 0 || size < 0) throw RunTimeError(63);  // bad record number
  const int64_t end = to_pos + size;
  int64_t inside = std::max<int64_t>(0, std::min(size, length_ - pos));
#ifdef __linux__
  while (inside > 0) {
    loff_t in_off = pos, out_off = to_pos;
    auto moved = ::copy_file_range(fd_, &in_off, to.fd_, &out_off, static_cast<size_t>(inside), 0);
    if (moved <= 0) break;  // not between these files: the buffer below does it
    pos += moved, to_pos += moved, size -= moved, inside -= moved;
  }
#endif
  constexpr int64_t chunk = 8 << 20;
  std::vector<char> buffer;
  while (size > 0) {
    const int64_t n = std::min(size, chunk);
    buffer.assign(static_cast<size_t>(n), 0);
    read_at(pos, buffer.data(), buffer.size());
    to.write_at(to_pos, buffer.data(), buffer.size());
    pos += n, to_pos += n, size -= n;
  }
  if (end > to.length_) to.length_ = end;
}

BinaryFile& FileTable::open(int number, const std::string& path) {
  auto& slot = files_[number];
  if (slot && slot->is_open()) throw RunTimeError(err::file_already_open);
  slot = std::make_unique<BinaryFile>();
  try {
    slot->open(path);
  } catch (...) {
    files_.erase(number);
    throw;
  }
  return *slot;
}

BinaryFile& FileTable::operator[](int number) {
  auto it = files_.find(number);
  if (it == files_.end() || !it->second->is_open()) throw RunTimeError(err::bad_file_number);
  return *it->second;
}

// What is gathered for a file goes out before the file closes.
void FileTable::close(int number) {
  if (auto it = files_.find(number); it != files_.end()) write_pending(it->second.get());
  files_.erase(number);
}
void FileTable::close_all() {
  write_pending();
  files_.clear();
}

int FileTable::free_number() const {
  int n = 1;
  while (files_.count(n)) ++n;
  return n;
}

TextLines::TextLines(const std::string& path) : file_(nullptr, &std::fclose) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) throw RunTimeError(err::file_not_found);
  file_.reset(std::fopen(path.c_str(), "rb"));
  if (!file_) throw RunTimeError(err::file_not_found);
}

bool TextLines::fill() {
  if (pos_ < end_) return true;
  pos_ = 0;
  end_ = std::fread(buffer_.data(), 1, buffer_.size(), file_.get());
  return end_ > 0;
}

std::string TextLines::next_line() {
  if (!fill()) throw RunTimeError(err::input_past_end);
  std::string line;
  while (fill()) {
    const char* start = buffer_.data() + pos_;
    const char* stop = start;
    while (stop < buffer_.data() + end_ && *stop != '\r' && *stop != '\n') ++stop;
    line.append(start, std::min<size_t>(static_cast<size_t>(stop - start), kept - std::min(kept, line.size())));
    pos_ = static_cast<size_t>(stop - buffer_.data());
    if (pos_ == end_) continue;
    if (buffer_[pos_++] == '\r' && fill() && buffer_[pos_] == '\n') ++pos_;
    break;
  }
  return line;
}

void ReadAhead::read_at(int64_t pos, void* data, size_t size) {
  BinaryFile& file = files_[number_];
  if (pos < 0) throw RunTimeError(63);  // bad record number
  const int64_t inside = std::min<int64_t>(static_cast<int64_t>(size), std::max<int64_t>(0, file.length() - pos));
  if (inside == 0) return;
  if (pos < start_ || pos + inside > start_ + static_cast<int64_t>(bytes_.size())) {
    start_ = pos;
    bytes_.resize(static_cast<size_t>(std::min<int64_t>(std::max(window_, size), file.length() - pos)));
    file.read_at(start_, bytes_.data(), bytes_.size());
  }
  std::memcpy(data, bytes_.data() + (pos - start_), static_cast<size_t>(inside));
}

void read_blocks_ahead(int32_t records, int32_t per_block, bool in_background, const BlockStep& read,
                       const BlockStep& work) {
  if (records <= 0 || per_block <= 0) return;
  auto count = [&](int32_t first) { return std::min(per_block, records - first + 1); };
  read(1, count(1), 0);
  for (int32_t first = 1, slot = 0; first <= records; first += per_block, slot = 1 - slot) {
    std::future<void> next;  // waited for by its destructor if the work fails
    if (const int32_t after = first + per_block; after <= records)
      next = std::async(in_background ? std::launch::async : std::launch::deferred, read, after, count(after), 1 - slot);
    work(first, count(first), slot);
    if (next.valid()) next.get();
  }
}

void copy_whole_file(const std::string& from, const std::string& to, int error) {
  std::error_code ec;
  std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing, ec);
  if (ec) throw RunTimeError(error);
}

int64_t file_length(const std::string& path) {
  std::error_code ec;
  auto size = std::filesystem::file_size(path, ec);
  if (ec) throw RunTimeError(err::file_not_found);
  return static_cast<int64_t>(size);
}

std::string read_whole_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  if (!in) throw RunTimeError(err::file_not_found);
  // One read into a text of the file's size; a file still growing gives
  // what it held at the open.
  std::string text(static_cast<size_t>(std::max<std::streamoff>(in.tellg(), 0)), '\0');
  in.seekg(0);
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<size_t>(in.gcount()));
  return text;
}

void write_whole_file(const std::string& path, const std::string& content) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) throw RunTimeError(err::path_not_found);
  out.write(content.data(), static_cast<std::streamsize>(content.size()));
}

}  // namespace tf
