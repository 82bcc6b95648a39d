#include <gtest/gtest.h>

#include "frame/conventions.h"
#include "su/su_record.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

TEST(HeaderTable, KeysHaveTheirOffsetsAndWidths) {
  struct Case {
    const char* key;
    int offset, width;
  } cases[] = {{"tracl", 0, 4}, {"fldr", 8, 4},   {"tracf", 12, 4}, {"trid", 28, 2},  {"nhs", 32, 2},
               {"offset", 36, 4}, {"scalel", 68, 2}, {"gx", 80, 4},    {"delrt", 108, 2}, {"ns", 114, 2},
               {"dt", 116, 2},  {"corr", 124, 2},  {"year", 156, 2}, {"d1", 180, 4},   {"d2", 188, 4},
               {"ntr", 204, 4}, {"mark", 208, 2},  {"fbp", 222, 2},  {"shot_station", 228, 4},
               {"receiver_station", 232, 4}};
  for (const auto& c : cases) {
    EXPECT_EQ(su::word(c.key).offset, c.offset) << c.key;
    EXPECT_EQ(su::word(c.key).width, c.width) << c.key;
  }
  EXPECT_EQ(su::word("d1").type, su::WordType::f32);
  EXPECT_EQ(su::word("mark").number, 79);
}

TEST(RecordGeometry, SizeCountAndPosition) {
  EXPECT_EQ(su::record_size(1000), 4240);
  EXPECT_EQ(su::trace_position(3, 1000), 8480);
  EXPECT_EQ(su::trace_count(10 * 4240, 1000), 10);
  // A tail of exactly half a record goes to the even count.
  EXPECT_EQ(su::trace_count(10 * 4240 + 2120, 1000), 10);
  EXPECT_EQ(su::trace_count(11 * 4240 + 2120, 1000), 12);
  EXPECT_EQ(su::trace_count(10 * 4240 + 2119, 1000), 10);
  EXPECT_EQ(su::trace_count(10 * 4240 + 2121, 1000), 11);
  // A negative ns gives a record smaller than its header.
  EXPECT_EQ(su::record_size(-10), 200);
  EXPECT_EQ(su::segy_ns_offset, 3714);
  EXPECT_EQ(su::segy_dt_offset, 3716);
}

TEST(BinaryFiles, OpenCreatesGrowthIsZeroShortReadKeepsBuffer) {
  TempDir dir;
  std::string path = dir.file("new.su");
  BinaryFile f;
  f.open(path);
  EXPECT_TRUE(std::filesystem::exists(path));
  EXPECT_EQ(f.length(), 0);
  f.write_value<int32_t>(100, 7);
  EXPECT_EQ(f.length(), 104);
  std::vector<uint8_t> before(100, 0xAB);
  f.read_at(0, before.data(), before.size());
  EXPECT_EQ(before, std::vector<uint8_t>(100, 0));  // the grown area reads 0
  int32_t kept[4] = {1, 2, 3, 4};
  f.read_at(100, kept, sizeof kept);  // only the first word lies in the file
  EXPECT_EQ(kept[0], 7);
  EXPECT_EQ(kept[1], 2);
  EXPECT_EQ(kept[3], 4);
  f.close();
  BinaryFile missing_folder;
  try {
    missing_folder.open(dir.file("no/such/file"));
    FAIL();
  } catch (const RunTimeError& e) {
    EXPECT_EQ(e.number, 76);
  }
}

TEST(RecordImages, SameBytesAsWordByWordWrites) {
  TempDir dir;
  // An existing file, written over in place: bytes no write touches stay.
  std::vector<uint8_t> old(500);  // the record runs 80 bytes past its end
  for (size_t i = 0; i < old.size(); ++i) old[i] = static_cast<uint8_t>(i * 7 + 1);
  write_bytes(dir.file("a.su"), old);
  write_bytes(dir.file("b.su"), old);

  BinaryFile words, image_file;
  words.open(dir.file("a.su"));
  image_file.open(dir.file("b.su"));
  const int64_t pos = 300;
  words.write_value<int32_t>(pos + 12, 5);
  words.write_value<int16_t>(pos + 28, 1);
  words.write_value<int32_t>(pos + 112, 0);
  words.write_value<int16_t>(pos + 114, 250);
  std::vector<float> samples{1.5f, -2.0f, 3.25f, 9.0f, 0.5f, 8.0f, 7.0f, 6.0f, 5.0f, 4.0f};
  words.write_block(pos + 240, samples);

  su::RecordImage image;
  image.begin(pos);
  image.put(su::word("tracf"), 5);
  image.put(su::word("trid"), 1);
  image.put_i32(112, 0);
  image.put(su::word("ns"), 250);
  image.put_block(240, samples.data(), samples.size());
  image.flush(image_file);
  words.close();
  image_file.close();
  EXPECT_EQ(read_bytes(dir.file("a.su")), read_bytes(dir.file("b.su")));
  EXPECT_EQ(read_bytes(dir.file("b.su")).size(), 300u + 240 + 40);
}

TEST(RecordImages, ZeroRunsCoverTheirWords) {
  TempDir dir;
  BinaryFile f;
  f.open(dir.file("z.su"));
  std::vector<uint8_t> ones(300, 0xFF);
  f.write_at(0, ones.data(), ones.size());
  su::RecordImage image;
  image.begin(0);
  image.zero_words(36, 88, 4);
  image.flush(f);
  f.close();
  auto bytes = read_bytes(dir.file("z.su"));
  for (size_t i = 0; i < bytes.size(); ++i) EXPECT_EQ(bytes[i], (i >= 36 && i < 88) ? 0 : 0xFF) << i;
}
