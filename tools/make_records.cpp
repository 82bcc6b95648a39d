// make-records: writes synthetic field records for the demo and the tests.
//   make-records es1225 FOLDER COUNT [CHANNELS] [SAMPLES] [HEADER]
//   make-records abem FOLDER COUNT [CHANNELS] [SAMPLES] [RATE_CODE]
//   make-records oyo FOLDER COUNT [CHANNELS] [SAMPLES] [SAMPLE_BYTES]
//   make-records ascii FOLDER COUNT [TRACES] [SAMPLES] [RADAR]
//   make-records ascii-traces FOLDER COUNT [SAMPLES]
//   make-records kgs FILE TRACES [CHANNELS] [SAMPLES] [FLOATING]
//   make-records binary FOLDER COUNT [CHANNELS] [SAMPLES] [FILE_HEADER] [TRACE_HEADER] [i16|i32|f32] [le|be]
//   make-records dolang FOLDER COUNT [CHANNELS] [SAMPLES] [DT]
//   make-records bison FOLDER COUNT [CHANNELS] [SAMPLES]
//   make-records ambrogeo FOLDER COUNT [CHANNELS] [SAMPLES] [DT]
//   make-records pasi FOLDER COUNT [CHANNELS] [SAMPLES]
// ES-1225: a file header, then per channel the int16 samples and 48 bytes;
// ABEM Mark 3: a 2048-byte header of text lines, then per channel the int16
// samples; OYO McSEIS 170: a 6144-byte header with text columns, then per
// channel four bytes a sample (SAMPLE_BYTES 4 long integers, 2 short, 1
// floats); ASCII: a comma-separated matrix a file (RADAR 1 adds its DZT head)
// or one trace a file; KGS: one file of traces with a 240-byte header of
// 16-bit words, int16 samples or, with FLOATING 1, float32; generic binary:
// a file header, then per channel a trace header and its samples
// (recNNN.bin); Dolang: per shot the channel files shotNNN.A01 ... as text
// and the info file shotNNN.ADT; Bison 5000: a text header closed by ETX
// ETX, then per channel groups of four int16 samples behind a gain word
// (recNNN.dat); Ambrogeo: 37 text lines, then rows of 24 numbers
// (recNNN.dta); PASI LCM-12: bare numbers, channel after channel (recNNN.asc). The samples are a shot gather with a first
// arrival moving out by channel.
#include <iostream>
#include <string>

#include "tools/binary_record_generators.h"
#include "tools/field_generators.h"
#include "tools/record_generators.h"
#include "tools/text_record_generators.h"

int main(int argc, char** argv) {
  if (argc < 4) {
    std::cerr << "usage: make-records es1225 FOLDER COUNT [CHANNELS] [SAMPLES] [HEADER]\n"
                 "       make-records abem FOLDER COUNT [CHANNELS] [SAMPLES] [RATE_CODE]\n"
                 "       make-records oyo FOLDER COUNT [CHANNELS] [SAMPLES] [SAMPLE_BYTES]\n"
                 "       make-records ascii FOLDER COUNT [TRACES] [SAMPLES] [RADAR]\n"
                 "       make-records ascii-traces FOLDER COUNT [SAMPLES]\n"
                 "       make-records kgs FILE TRACES [CHANNELS] [SAMPLES] [FLOATING]\n"
                 "       make-records binary FOLDER COUNT [CHANNELS] [SAMPLES] [FILE_HEADER] [TRACE_HEADER]"
                 " [i16|i32|f32] [le|be]\n"
                 "       make-records dolang FOLDER COUNT [CHANNELS] [SAMPLES] [DT]\n"
                 "       make-records bison FOLDER COUNT [CHANNELS] [SAMPLES]\n"
                 "       make-records ambrogeo FOLDER COUNT [CHANNELS] [SAMPLES] [DT]\n"
                 "       make-records pasi FOLDER COUNT [CHANNELS] [SAMPLES]\n";
    return 2;
  }
  std::string format = argv[1], folder = argv[2];
  int count = std::stoi(argv[3]);
  // The optional numbers after the count, 0 where not given.
  auto option = [&](int i) { return argc > 3 + i ? std::stoi(argv[3 + i]) : 0; };
  if (format == "kgs") {
    tf::gen::KgsLayout layout;
    layout.traces = count;
    if (option(1)) layout.channels = option(1);
    if (option(2)) layout.samples = option(2);
    layout.floating = option(3) != 0;
    std::cout << tf::gen::write_kgs(folder, layout) << "\n";
    return 0;
  }
  for (int i = 1; i <= count; ++i) {
    if (format == "es1225") {
      tf::gen::Es1225Layout layout;
      if (option(1)) layout.channels = option(1);
      if (option(2)) layout.samples = option(2);
      if (option(3)) layout.header = option(3);
      std::cout << tf::gen::write_es1225(folder, i, layout) << "\n";
    } else if (format == "abem") {
      tf::gen::AbemLayout layout;
      if (option(1)) layout.channels = option(1);
      if (option(2)) layout.samples = option(2);
      if (argc > 6) layout.rate_code = option(3);
      std::cout << tf::gen::write_abem(folder, i, layout) << "\n";
    } else if (format == "oyo") {
      tf::gen::OyoLayout layout;
      if (option(1)) layout.channels = option(1);
      if (option(2)) layout.samples = option(2);
      if (option(3) == 2) layout.type = tf::gen::OyoSamples::short_integer;
      if (option(3) == 1) layout.type = tf::gen::OyoSamples::floating;
      std::cout << tf::gen::write_oyo(folder, i, layout) << "\n";
    } else if (format == "ascii") {
      tf::gen::AsciiMatrixLayout layout;
      if (option(1)) layout.traces = option(1);
      if (option(2)) layout.samples = option(2);
      layout.radar = option(3) != 0;
      std::string path = tf::gen::write_ascii_matrix(folder, i, layout);
      if (layout.radar) tf::gen::write_dzt_beside(path, layout.samples, 0.5f, layout.traces);
      std::cout << path << "\n";
    } else if (format == "ascii-traces") {
      std::cout << tf::gen::write_ascii_trace(folder, i, option(1) ? option(1) : 512) << "\n";
    } else if (format == "binary") {
      tf::gen::BinaryLayout layout;
      if (option(1)) layout.channels = option(1);
      if (option(2)) layout.samples = option(2);
      if (argc > 6) layout.file_header = option(3);
      if (argc > 7) layout.trace_header = option(4);
      const std::string type = argc > 8 ? argv[8] : "i32";
      layout.type = type == "i16" ? tf::gen::SampleType::i16 : type == "f32" ? tf::gen::SampleType::f32 : tf::gen::SampleType::i32;
      layout.big_endian = argc > 9 && std::string(argv[9]) == "be";
      std::cout << tf::gen::write_binary(folder, i, layout) << "\n";
    } else if (format == "dolang") {
      tf::gen::DolangLayout layout;
      if (option(1)) layout.channels = option(1);
      if (option(2)) layout.samples = option(2);
      if (option(3)) layout.dt = option(3);
      std::cout << tf::gen::write_dolang(folder, i, layout) << "\n";
    } else if (format == "bison") {
      tf::gen::BisonLayout layout;
      if (option(1)) layout.channels = option(1);
      if (option(2)) layout.samples = option(2);
      std::cout << tf::gen::write_bison(folder, i, layout) << "\n";
    } else if (format == "ambrogeo") {
      tf::gen::AmbrogeoLayout layout;
      if (option(1)) layout.channels = option(1);
      if (option(2)) layout.samples = option(2);
      if (option(3)) layout.interval_us = option(3);
      std::cout << tf::gen::write_ambrogeo(folder, i, layout) << "\n";
    } else if (format == "pasi") {
      tf::gen::PasiLayout layout;
      if (option(1)) layout.channels = option(1);
      if (option(2)) layout.samples = option(2);
      std::cout << tf::gen::write_pasi(folder, i, layout) << "\n";
    } else {
      std::cerr << "make-records: unknown format " << format << "\n";
      return 2;
    }
  }
  return 0;
}
