#include <gtest/gtest.h>

#include "frame/conventions.h"
#include "su/su_record.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

// Spot checks of the header table where the words are not in plain order
// of 4-byte and 2-byte runs.
TEST(HeaderTable, KeysHaveTheirOffsetsWidthsAndTypes) {
  const std::tuple<const char*, int, int> cases[] = {{"tracl", 0, 4}, {"trid", 28, 2},  {"offset", 36, 4},
                                                     {"scalel", 68, 2}, {"ns", 114, 2},  {"d1", 180, 4},
                                                     {"ntr", 204, 4},   {"mark", 208, 2}, {"receiver_station", 232, 4}};
  for (const auto& [key, offset, width] : cases)
    EXPECT_EQ(std::pair(su::word(key).offset, su::word(key).width), std::pair(offset, width)) << key;
  EXPECT_EQ(su::word("d1").type, su::WordType::f32);
  EXPECT_EQ(su::word("mark").number, 79);
}

TEST(RecordGeometry, SizeCountAndPosition) {
  EXPECT_EQ(su::record_size(1000), 4240);
  EXPECT_EQ(su::trace_position(3, 1000), 8480);
  // A tail of exactly half a record goes to the even count.
  EXPECT_EQ(su::trace_count(10 * 4240 + 2120, 1000), 10);
  EXPECT_EQ(su::trace_count(11 * 4240 + 2120, 1000), 12);
  EXPECT_EQ(su::trace_count(10 * 4240 + 2121, 1000), 11);
  EXPECT_EQ(su::record_size(-10), 200);  // a negative ns: smaller than its header
  EXPECT_EQ(su::segy_ns_offset, 3714);
  EXPECT_EQ(su::segy_dt_offset, 3716);
}

TEST(BinaryFiles, OpenCreatesGrowthIsZeroShortReadKeepsBuffer) {
  TempDir dir;
  BinaryFile f;
  f.open(dir.file("new.su"));
  EXPECT_EQ(f.length(), 0);
  f.write_value<int32_t>(100, 7);
  EXPECT_EQ(f.length(), 104);
  std::vector<uint8_t> grown(100, 0xAB);
  f.read_at(0, grown.data(), grown.size());
  EXPECT_EQ(grown, std::vector<uint8_t>(100, 0));
  int32_t kept[4] = {1, 2, 3, 4};
  f.read_at(100, kept, sizeof kept);  // only the first word lies in the file
  EXPECT_EQ(std::vector<int32_t>(kept, kept + 4), (std::vector<int32_t>{7, 2, 3, 4}));
  f.close();
  EXPECT_EQ(error_number([&] { BinaryFile().open(dir.file("no/such/file")); }), 76);
}

// Traces gathered in one image, also out of order and overlapping, give the
// bytes of the same writes made word by word on an existing file.
TEST(RecordImages, GatheredTracesGiveTheBytesOfWordByWordWrites) {
  TempDir dir;
  std::vector<uint8_t> old(700);
  for (size_t i = 0; i < old.size(); ++i) old[i] = static_cast<uint8_t>(i * 7 + 1);
  write_bytes(dir.file("words.su"), old);
  write_bytes(dir.file("image.su"), old);
  BinaryFile words;
  words.open(dir.file("words.su"));
  FileTable files;
  BinaryFile& gathered = files.open(2, dir.file("image.su"));
  const float samples[3] = {1.5f, -2.0f, 3.25f};
  su::RecordImage image(files, 2);
  // Trace positions: two adjacent, then one ahead of the first, the last one
  // running past the end of the file.
  for (int64_t pos : {300, 552, 100, 650}) {
    words.write_value<int32_t>(pos + 12, static_cast<int32_t>(pos));
    words.write_value<int32_t>(pos + 112, 0);
    words.write_value<int16_t>(pos + 114, 3);  // over the half of the word before
    words.write_at(pos + 240, samples, sizeof samples);
    image.move_to(pos);
    image.put(su::word("tracf"), static_cast<double>(pos));
    image.put_i32(112, 0);
    image.put(su::word("ns"), 3);
    image.put_block(240, samples, 3);
  }
  image.flush();
  words.close();
  gathered.close();
  EXPECT_EQ(read_bytes(dir.file("words.su")), read_bytes(dir.file("image.su")));
}

// A long run of traces goes out in pieces of about 64 MB, not all at the
// end; a box or the closing of the file puts out the rest.
TEST(RecordImages, GoOutPastSixtyFourMegabytesAndBeforeABoxOrAClose) {
  TempDir dir;
  FileTable files;
  files.open(2, dir.file("out.su"));
  su::RecordImage image(files, 2);
  const std::vector<float> samples(262084, 1.0f);  // a trace of 1 MiB with its header
  const int64_t trace = 240 + 4 * static_cast<int64_t>(samples.size());
  for (int64_t k = 0; k < 70; ++k) {
    image.move_to(k * trace);
    image.put(su::word("tracl"), static_cast<double>(k + 1));
    image.put_block(240, samples.data(), samples.size());
  }
  EXPECT_GE(files[2].length(), 64 << 20);
  EXPECT_LT(files[2].length(), 70 * trace);
  std::ostringstream transcript;
  ScriptPlatform quiet({}, transcript);
  quiet.message_box({});
  EXPECT_EQ(files[2].length(), 70 * trace);
  image.move_to(70 * trace);
  image.put(su::word("tracl"), 71);
  files.close(2);
  EXPECT_EQ(std::filesystem::file_size(dir.file("out.su")), static_cast<uintmax_t>(70 * trace + 4));
}

// A record written behind the next one's gathering is on disk before a box,
// and before its own file closes; closing another file leaves the gathered
// traces where they are.
TEST(RecordImages, RecordsWrittenBehindAreOnDiskBeforeABoxOrTheirClose) {
  TempDir dir;
  FileTable files;
  files.open(1, dir.file("in.dat"));
  files.open(2, dir.file("out.su"));
  su::RecordImage image(files, 2);
  const std::vector<float> samples(1000, 2.5f);
  const int64_t trace = 240 + 4 * 1000;
  auto put_trace = [&](int64_t k) {
    image.move_to(k * trace);
    image.put(su::word("tracl"), static_cast<double>(k + 1));
    image.put_block(240, samples.data(), samples.size());
  };
  for (int64_t k = 0; k < 24; ++k) put_trace(k);
  image.flush_behind();
  put_trace(24);
  files.close(1);
  EXPECT_LE(std::filesystem::file_size(dir.file("out.su")), static_cast<uintmax_t>(24 * trace));
  std::ostringstream transcript;
  ScriptPlatform quiet({}, transcript);
  quiet.message_box({});
  EXPECT_EQ(std::filesystem::file_size(dir.file("out.su")), static_cast<uintmax_t>(25 * trace));
  for (int64_t k = 25; k < 48; ++k) put_trace(k);
  image.flush_behind();
  files.close(2);
  const std::vector<uint8_t> bytes = read_bytes(dir.file("out.su"));
  ASSERT_EQ(bytes.size(), static_cast<size_t>(48 * trace));
  for (int64_t k = 0; k < 48; ++k) {
    int32_t tracl = 0;
    float last = 0;
    std::memcpy(&tracl, &bytes[static_cast<size_t>(k * trace)], 4);
    std::memcpy(&last, &bytes[static_cast<size_t>((k + 1) * trace - 4)], 4);
    EXPECT_EQ(tracl, k + 1);
    EXPECT_EQ(last, 2.5f);
  }
}
