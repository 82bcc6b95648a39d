#include "su/su_record.h"

#include <algorithm>
#include <cstring>

#include "frame/conventions.h"
#include "frame/pending_writes.h"

namespace tf::su {

int32_t record_size(int32_t ns) { return i32_add(header_size, i32_mul(4, ns)); }

int32_t trace_count(int64_t file_length, int32_t ns) {
  double size = record_size(ns);
  if (size == 0) throw RunTimeError(err::division_by_zero);
  return to_i32(static_cast<double>(file_length) / size);
}

int32_t trace_position(int32_t k, int32_t ns) { return i32_mul(int64_t{k} - 1, record_size(ns)); }

int32_t read_word(BinaryFile& file, int64_t trace_pos, const HeaderWord& w) {
  if (w.width == 2) {
    int16_t v = 0;
    file.read_value(trace_pos + w.offset, v);
    return v;
  }
  int32_t v = 0;
  file.read_value(trace_pos + w.offset, v);
  return v;
}

void write_word(BinaryFile& file, int64_t trace_pos, const HeaderWord& w, int32_t value) {
  if (w.width == 2)
    file.write_value(trace_pos + w.offset, to_i16(value));
  else
    file.write_value(trace_pos + w.offset, value);
}

RecordImage::RecordImage(FileTable& files, int number) : files_(files), number_(number) {
  add_pending_writes(this, [this](const void* closing) {
    if (!closing || closing == &files_[number_]) flush();
  });
}

RecordImage::~RecordImage() {
  remove_pending_writes(this);
  resume_next([this] { flush(); });
}

void RecordImage::begin(int64_t trace_pos) {
  base_ = trace_pos;
  current_ = 0;
  bytes_.clear();
  written_.clear();
}

void RecordImage::move_to(int64_t trace_pos) {
  if (bytes_.size() > write_out_size) resume_next([this] { flush(); });
  if (bytes_.empty()) return begin(trace_pos);
  if (trace_pos < base_) {  // a trace ahead of the image: it grows at its front
    const auto ahead = static_cast<size_t>(base_ - trace_pos);
    bytes_.insert(bytes_.begin(), ahead, 0);
    written_.insert(written_.begin(), ahead, 0);
    base_ = trace_pos;
  }
  current_ = trace_pos - base_;
}

void RecordImage::touch(int offset, size_t size) {
  const size_t start = static_cast<size_t>(current_ + offset), end = start + size;
  if (end > bytes_.size()) {
    const size_t old = bytes_.size();
    bytes_.resize(end);
    written_.resize(end);
    // Between the old end and this word lies a gap: zero, and not written.
    if (start > old) {
      std::memset(bytes_.data() + old, 0, start - old);
      std::memset(written_.data() + old, 0, start - old);
    }
  }
  std::memset(written_.data() + start, 1, size);
}

void RecordImage::put_bytes(int offset, const void* data, size_t size) {
  if (size == 0) return;  // an empty block writes nothing
  touch(offset, size);
  std::memcpy(bytes_.data() + current_ + offset, data, size);
}

void RecordImage::put_i16(int offset, int16_t value) { put_bytes(offset, &value, sizeof value); }
void RecordImage::put_i32(int offset, int32_t value) { put_bytes(offset, &value, sizeof value); }
void RecordImage::put_f32(int offset, float value) { put_bytes(offset, &value, sizeof value); }

void RecordImage::put(const HeaderWord& w, double value) {
  switch (w.type) {
    case WordType::i16: put_i16(w.offset, to_i16(value)); break;
    case WordType::i32: put_i32(w.offset, to_i32(value)); break;
    case WordType::f32: put_f32(w.offset, static_cast<float>(value)); break;
  }
}

void RecordImage::zero_words(int first, int end, int width) {
  for (int offset = first; offset < end; offset += width) {
    static constexpr uint8_t zeros[8] = {};
    put_bytes(offset, zeros, static_cast<size_t>(width));
  }
}

void RecordImage::fill_gaps(BinaryFile& file) {
  // Fill the gaps between the written words with the file's own bytes; past
  // the end of the file they stay zero, as the file grows with zeros.
  if (base_ < file.length()) {
    size_t inside = static_cast<size_t>(std::min<int64_t>(file.length() - base_, static_cast<int64_t>(bytes_.size())));
    // The runs of bytes that no write touched, from the flags.
    std::vector<std::pair<size_t, size_t>> gaps;  // start, end
    constexpr size_t few_gaps = 4096;             // beyond this the whole range is read at once
    for (size_t at = 0; at < inside && gaps.size() <= few_gaps;) {
      const void* zero = std::memchr(written_.data() + at, 0, inside - at);
      if (!zero) break;
      const size_t start = static_cast<size_t>(static_cast<const uint8_t*>(zero) - written_.data());
      const void* one = std::memchr(written_.data() + start, 1, inside - start);
      const size_t end = one ? static_cast<size_t>(static_cast<const uint8_t*>(one) - written_.data()) : inside;
      gaps.emplace_back(start, end);
      at = end;
    }
    if (!gaps.empty() && gaps.size() <= few_gaps) {
      // A few gaps, such as unwritten header words: each read on its own.
      for (const auto& [start, end] : gaps) file.read_at(base_ + static_cast<int64_t>(start), bytes_.data() + start, end - start);
    } else if (!gaps.empty()) {
      under_.resize(inside);
      file.read_at(base_, under_.data(), inside);
      // Eight bytes at a time: each written flag (0 or 1) times 0xFF is the
      // byte mask of the image's own bytes.
      size_t i = 0;
      for (; i + 8 <= inside; i += 8) {
        uint64_t mine, under, flags;
        std::memcpy(&mine, bytes_.data() + i, 8);
        std::memcpy(&under, under_.data() + i, 8);
        std::memcpy(&flags, written_.data() + i, 8);
        const uint64_t mask = flags * 0xFF;
        mine = (mine & mask) | (under & ~mask);
        std::memcpy(bytes_.data() + i, &mine, 8);
      }
      for (; i < inside; ++i)
        if (!written_[i]) bytes_[i] = under_[i];
    }
  }
}

void RecordImage::wait_behind() {
  if (behind_.valid()) behind_.get();
}

// Leading bytes that no write touched are left out of the write.
size_t RecordImage::first_written() const {
  const void* touched = std::memchr(written_.data(), 1, written_.size());
  return touched ? static_cast<size_t>(static_cast<const uint8_t*>(touched) - written_.data()) : written_.size();
}

void RecordImage::flush() { write_out(false); }
void RecordImage::flush_behind() { write_out(true); }

void RecordImage::write_out(bool behind) {
  wait_behind();
  if (bytes_.empty()) return;
  BinaryFile& file = files_[number_];
  fill_gaps(file);
  const size_t first = first_written();
  const int64_t at = base_ + static_cast<int64_t>(first), next = base_ + static_cast<int64_t>(bytes_.size());
  if (!behind) {
    file.write_at(at, bytes_.data() + first, bytes_.size() - first);
  } else {
    std::swap(bytes_, behind_bytes_);  // the two buffers take turns
    behind_ = std::async(std::launch::async, [&file, this, at, first] {
      file.write_at(at, behind_bytes_.data() + first, behind_bytes_.size() - first);
    });
  }
  begin(next);
}

void put_channel_words(RecordImage& image, int32_t fldr, int32_t tracf) {
  image.put(word("fldr"), fldr);
  image.put(word("tracf"), tracf);
  image.put(word("cdp"), 0);
  image.put(word("cdpt"), 0);
  image.put(word("trid"), 1);
  image.put(word("nvs"), 1);
  image.put(word("nhs"), 1);
}

void put_record_header(RecordImage& image, int32_t fldr, int32_t tracf, int32_t ns, int16_t dt, bool with_duse) {
  image.put(word("tracl"), 0);
  image.put(word("tracr"), 0);
  put_channel_words(image, fldr, tracf);
  if (with_duse) image.put(word("duse"), 1);
  image.zero_words(36, 88, 4);
  image.zero_words(88, 114, 2);
  image.put_i32(word("ns").offset, ns);
  image.put(word("dt"), dt);
  image.zero_words(118, 180, 2);
  image.zero_words(180, 256, 4);
}

}  // namespace tf::su
