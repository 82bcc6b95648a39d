// Damaged and absurd input of every kind, from a seeded generator: records
// cut short or garbled, header texts of noise, INI files, dialog texts,
// typed field values and batch files. Whatever comes in, the programs end
// (exit 0, or 3 where a limit cut a repeating box), never crash, leave the
// input files as they were and keep their memory bounded.
//
// TRACEFOLD_SEED chooses another seed; the failing case's seed and number
// are in the test's message.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <random>

#include "process_run.h"
#include "test_support.h"
#include "tools/binary_record_generators.h"
#include "tools/field_generators.h"
#include "tools/record_generators.h"
#include "tools/text_record_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

using Rng = std::mt19937;

int pick(Rng& rng, int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng); }

// Some bytes of noise, now and then with line ends and blanks in them.
std::string noise(Rng& rng, size_t size) {
  static const char alphabet[] = " \r\n,.-+eE0123456789*?\"\\/:;abcdefghijklmnopqrstuvwxyz\t";
  std::string s(size, '\0');
  const bool text_like = pick(rng, 0, 1) == 0;
  for (char& c : s)
    c = text_like ? alphabet[pick(rng, 0, sizeof alphabet - 2)] : static_cast<char>(pick(rng, 0, 255));
  return s;
}

// A valid file spoiled one way or another.
std::string spoil(Rng& rng, std::string bytes) {
  switch (pick(rng, 0, 5)) {
    case 0: return "";                                                                    // empty
    case 1: return bytes.substr(0, static_cast<size_t>(pick(rng, 0, static_cast<int>(bytes.size()))));  // cut short
    case 2:                                                                               // flipped bytes
      for (int i = pick(rng, 1, 64); i > 0 && !bytes.empty(); --i)
        bytes[static_cast<size_t>(pick(rng, 0, static_cast<int>(bytes.size()) - 1))] = static_cast<char>(pick(rng, 0, 255));
      return bytes;
    case 3: return noise(rng, static_cast<size_t>(pick(rng, 1, 5000)));                  // garbage
    case 4: {                                                                             // a header of noise
      const size_t keep = std::min<size_t>(bytes.size(), static_cast<size_t>(pick(rng, 0, 2048)));
      return noise(rng, keep) + bytes.substr(keep);
    }
    default: return bytes + noise(rng, static_cast<size_t>(pick(rng, 1, 300)));         // a tail too many
  }
}

// What a hurried user types into a number field.
std::string absurd_number(Rng& rng) {
  static const char* const values[] = {"",     "0",   "-1",       "-32768", "32767",  "32768", "65536",
                                       "1e308", "nan", "abc",      " 1 2 ",  "999999999999", "2147483648",
                                       "-0.5", "1d400", "\t", "12abc", "1e-300", "0x10", "+"};
  return values[pick(rng, 0, static_cast<int>(std::size(values)) - 1)];
}

// A dialog's answer: the real selection, or a text of blanks, separators,
// wildcards and missing names.
std::string odd_selection(Rng& rng, const std::string& dir, const std::vector<std::string>& names) {
  switch (pick(rng, 0, 5)) {
    case 0: {
      std::string s = dir + "/";
      for (const auto& n : names) s += " " + n;
      return s;
    }
    case 1: return dir + "/" + names.front();
    case 2: return dir + "/ " + std::string(static_cast<size_t>(pick(rng, 0, 300)), ' ') + "missing.dat";
    case 3: return dir + "/*.dat";
    case 4: {
      std::string s = dir + "/";
      for (int i = pick(rng, 100, 140); i > 0; --i) s += " " + names.front();
      return s;
    }
    default: return noise(rng, static_cast<size_t>(pick(rng, 0, 200)));
  }
}

struct Case {
  std::string script;                 // for tracefold-run; "" runs tracefold-batch on case.bat
  std::vector<std::string> inputs;    // files that must come out unchanged
};

// The scenarios: each makes its input files in `dir` and the actions on them.
using Scenario = std::function<Case(Rng&, const std::string& dir)>;

std::string quoted(const std::string& text) {
  std::string q = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') q += '\\';
    if (c == '\n') q += "\\n";
    else if (c == '\r') q += "\\r";
    else if (c != '\0') q += c;
  }
  return q + "\"";
}

std::vector<std::string> write_spoiled(Rng& rng, const std::string& dir, const std::vector<std::vector<uint8_t>>& records,
                                       const std::string& extension) {
  std::vector<std::string> names;
  for (size_t i = 0; i < records.size(); ++i) {
    const std::string name = record_name(static_cast<int>(i) + 1, extension);
    write_text(dir + "/" + name, spoil(rng, std::string(records[i].begin(), records[i].end())));
    names.push_back(name);
  }
  return names;
}

// A panel's road through spoiled input: shown, its records chosen by the
// dialog, odd values typed, converted into out.su of the case's folder.
struct PanelRoad {
  std::string panel, select, convert, output;
  std::vector<std::string> fields;  // typed into at random
};

std::string panel_script(Rng& rng, const PanelRoad& road, const std::string& chosen, const std::string& dir) {
  std::string s = "show " + road.panel + "\ndialog " + quoted(chosen) + "\nclick " + road.panel + "." + road.select + "\n";
  for (const auto& field : road.fields)
    if (pick(rng, 0, 2) == 0) s += "set " + road.panel + "." + field + " " + quoted(absurd_number(rng)) + "\n";
  for (int i = 0; i < 3; ++i) s += "input " + quoted(absurd_number(rng)) + "\n";
  s += "set " + road.panel + "." + road.output + " " + quoted(dir + "/out.su") + "\nclick " + road.panel + "." + road.convert + "\n";
  return s;
}

// Spoiled copies of records written by `make`, through the panel's road.
Scenario records_through(PanelRoad road, std::function<std::vector<std::string>(Rng&, const std::string&)> make) {
  return [road, make](Rng& rng, const std::string& dir) {
    std::vector<std::string> names;
    Case c;
    for (const auto& path : make(rng, dir)) {
      write_text(path, spoil(rng, text_of(path)));
      names.push_back(std::filesystem::path(path).filename().string());
      c.inputs.push_back(path);
    }
    c.script = panel_script(rng, road, odd_selection(rng, dir, names), dir);
    return c;
  };
}

// Public radar samples, copied beside each other with their headers.
std::vector<std::string> copies_of(const std::string& dir, std::initializer_list<const char*> samples) {
  std::vector<std::string> paths;
  for (const char* sample : samples) {
    const std::filesystem::path from = std::string(TRACEFOLD_SHARED_DATA) + "/" + sample;
    std::error_code ec;
    if (!std::filesystem::exists(from, ec)) continue;
    const std::string to = dir + "/" + from.filename().string();
    std::filesystem::copy_file(from, to, ec);
    std::filesystem::permissions(to, std::filesystem::perms::owner_write, std::filesystem::perm_options::add, ec);
    paths.push_back(to);
  }
  return paths;
}

// A field importer's road: the selection of spoiled records, one absurd
// field now and then, and Convert.
Case text_record_case(Rng& rng, const std::string& dir, const std::vector<std::vector<uint8_t>>& records,
                      const std::string& extension, const std::string& option, const std::string& panel,
                      std::initializer_list<const char*> fields) {
  auto names = write_spoiled(rng, dir, records, extension);
  std::string s = "click Utility." + option + "\ndialog " + quoted(odd_selection(rng, dir, names)) + "\nclick " + panel +
                  ".Command5\n";
  for (const char* field : fields)
    if (pick(rng, 0, 3) == 0) s += "set " + panel + "." + field + " " + quoted(absurd_number(rng)) + "\n";
  s += "set " + panel + ".Text2 " + quoted(dir + "/out.su") + "\nclick " + panel + ".Command1\n";
  Case c{s, {}};
  for (const auto& n : names) c.inputs.push_back(dir + "/" + n);
  return c;
}

const std::map<std::string, Scenario>& scenarios() {
  static const std::map<std::string, Scenario> all = {
      {"oyo", records_through({"oyo", "Command3", "Command1", "Text2", {"Text5"}}, [](Rng& rng, const std::string& dir) {
         gen::OyoLayout layout;
         layout.channels = pick(rng, 1, 3), layout.samples = pick(rng, 1, 40);
         return std::vector<std::string>{gen::write_oyo(dir, 1, layout), gen::write_oyo(dir, 2, layout)};
       })},
      {"sisforme", records_through({"sisforme", "Command5", "Command1", "Text2", {"Text3", "Text4", "Text7", "Text8"}},
                                   [](Rng& rng, const std::string& dir) {
                                     gen::BinaryLayout layout;
                                     layout.channels = pick(rng, 1, 3), layout.samples = pick(rng, 1, 40);
                                     return std::vector<std::string>{gen::write_binary(dir, 1, layout)};
                                   })},
      {"dolang", [](Rng& rng, const std::string& dir) {
         gen::DolangLayout layout;
         layout.channels = pick(rng, 1, 3), layout.samples = pick(rng, 1, 40);
         gen::write_dolang(dir, 1, layout);
         Case c;
         std::vector<std::string> names;
         for (const auto& entry : std::filesystem::directory_iterator(dir)) {
           const std::string path = entry.path().string();
           write_text(path, spoil(rng, text_of(path)));
           names.push_back(entry.path().filename().string());
           c.inputs.push_back(path);
         }
         c.script = panel_script(rng, {"DOLANG", "Command6", "Command1", "Text5", {"Text2", "Text3", "Text6"}},
                                 odd_selection(rng, dir, names), dir);
         return c;
       }},
      {"dzt", records_through({"DZT", "Command1", "Command3", "Text2", {"Text3", "Text4", "Text5"}},
                              [](Rng&, const std::string& dir) { return copies_of(dir, {"dzt/FILE____032.DZT"}); })},
      {"dt1", records_through({"DT1", "Command1", "Command3", "Text2", {"Text5", "Text6", "Text8"}},
                              [](Rng&, const std::string& dir) {
                                return copies_of(dir, {"dt1/gprpy_ComOffs/XLINE00.DT1", "dt1/gprpy_ComOffs/XLINE00.HD"});
                              })},
      {"ramac", records_through({"Radar_F", "Command3", "Command1", "Text5", {"Text2", "Text4", "Text6", "Text8"}},
                                [](Rng&, const std::string& dir) { return copies_of(dir, {"rd3/ten_col.rd3", "rd3/ten_col.rad"}); })},
      {"es1225", [](Rng& rng, const std::string& dir) {
         gen::Es1225Layout layout;
         layout.channels = pick(rng, 1, 4), layout.samples = pick(rng, 1, 64), layout.header = pick(rng, 0, 128);
         std::vector<std::vector<uint8_t>> records;
         for (int i = 1; i <= pick(rng, 1, 3); ++i) records.push_back(gen::es1225_record(i, layout));
         auto names = write_spoiled(rng, dir, records, "dat");
         std::string s = "click Utility.Option4\n";
         for (const char* field : {"Text5", "Text4", "Text1", "Text3"})
           if (pick(rng, 0, 2) == 0) s += "set es1225." + std::string(field) + " " + quoted(absurd_number(rng)) + "\n";
         s += "dialog " + quoted(odd_selection(rng, dir, names)) + "\nclick es1225.Command3\n";
         if (pick(rng, 0, 3) == 0) s += "click es1225.Check2\n";
         if (pick(rng, 0, 3) == 0) s += "click es1225.Check3\n";
         s += "set es1225.Text2 " + quoted(dir + "/out.su") + "\nclick es1225.Command1\n";
         Case c{s, {}};
         for (const auto& n : names) c.inputs.push_back(dir + "/" + n);
         return c;
       }},
      {"abem", [](Rng& rng, const std::string& dir) {
         gen::AbemLayout layout;
         layout.channels = pick(rng, 1, 4), layout.samples = pick(rng, 1, 64), layout.rate_code = pick(rng, -2, 9);
         std::vector<std::vector<uint8_t>> records;
         for (int i = 1; i <= pick(rng, 1, 3); ++i) records.push_back(gen::abem_record(i, layout));
         auto names = write_spoiled(rng, dir, records, "abm");
         std::string s = "click Utility.Option5\ndialog " + quoted(odd_selection(rng, dir, names)) + "\nclick abem.Command4\n";
         for (const char* field : {"Text6", "Text5", "Text4", "Text3"})
           if (pick(rng, 0, 2) == 0) s += "set abem." + std::string(field) + " " + quoted(absurd_number(rng)) + "\n";
         s += "set abem.Text2 " + quoted(dir + "/out.su") + "\nclick abem.Command1\n";
         Case c{s, {}};
         for (const auto& n : names) c.inputs.push_back(dir + "/" + n);
         return c;
       }},
      {"bison", [](Rng& rng, const std::string& dir) {
         gen::BisonLayout layout;
         layout.channels = pick(rng, 1, 4), layout.samples = pick(rng, 1, 64), layout.odd_header = pick(rng, 0, 3) == 0;
         std::vector<std::vector<uint8_t>> records;
         for (int i = 1; i <= pick(rng, 1, 3); ++i) records.push_back(gen::bison_record(i, layout));
         return text_record_case(rng, dir, records, "dat", "Option14", "Bison", {"Text3", "Text4", "Text6", "Text7"});
       }},
      {"ambrogeo", [](Rng& rng, const std::string& dir) {
         gen::AmbrogeoLayout layout;
         layout.channels = pick(rng, 1, 24), layout.samples = pick(rng, 1, 64), layout.day_code = pick(rng, 0, 99);
         std::vector<std::vector<uint8_t>> records;
         for (int i = 1; i <= pick(rng, 1, 3); ++i) {
           const std::string text = gen::ambrogeo_record(i, layout);
           records.emplace_back(text.begin(), text.end());
         }
         return text_record_case(rng, dir, records, "dta", "Option19", "Ambrogeo", {"Text1", "Text3", "Text4"});
       }},
      {"pasi", [](Rng& rng, const std::string& dir) {
         gen::PasiLayout layout;
         layout.channels = pick(rng, 1, 4), layout.samples = pick(rng, 1, 64);
         std::vector<std::vector<uint8_t>> records;
         for (int i = 1; i <= pick(rng, 1, 3); ++i) {
           const std::string text = gen::pasi_record(i, layout);
           records.emplace_back(text.begin(), text.end());
         }
         return text_record_case(rng, dir, records, "asc", "Option16", "pasi", {"Text3", "Text4", "Text5"});
       }},
      {"handyviewer", [](Rng& rng, const std::string& dir) {
         std::vector<std::vector<uint8_t>> records(static_cast<size_t>(pick(rng, 1, 3)), std::vector<uint8_t>(64, 0));
         auto names = write_spoiled(rng, dir, records, "dat");
         Case c{"click Utility.Command14\ndialog " + quoted(odd_selection(rng, dir, names)) +
                    "\nclick HandyViewer.Command5\nclick HandyViewer.Command1\n",
                {}};
         for (const auto& n : names) c.inputs.push_back(dir + "/" + n);
         return c;
       }},
      {"ini", [](Rng& rng, const std::string& dir) {
         // The suite's INI as the main panel and the tools search read it.
         std::string ini = pick(rng, 0, 1) ? "[PLANTA]\r\nFile=" + dir + "/" + noise(rng, static_cast<size_t>(pick(rng, 0, 120))) + "\r\n"
                                           : noise(rng, static_cast<size_t>(pick(rng, 0, 2000)));
         if (pick(rng, 0, 1)) ini += "[LARVEX]\r\nDirectory1=" + noise(rng, static_cast<size_t>(pick(rng, 0, 300))) + "\r\n";
         write_text(dir + "/Larvex32.INI", ini);
         write_text(dir + "/" + std::string(static_cast<size_t>(pick(rng, 1, 60)), 'a'), "");
         return Case{"click Utility.Option1\ncheck Utility.Option1 off\nclick Utility.Option1\n", {dir + "/Larvex32.INI"}};
       }},
      {"script", [](Rng& rng, const std::string& dir) {
         // Words a script may hold: unknown panels and controls, odd keys.
         static const char* const words[] = {"show", "click", "set", "type", "select", "tab", "dump", "dialog", "input",
                                             "reply", "session", "close", "Utility.Option5", "abem.Text4", "es1225",
                                             "Utility", "\"\\b\\b\"", "-5", "99999999999", "nb_channels", "ns"};
         std::string s;
         for (int line = pick(rng, 1, 12); line > 0; --line) {
           for (int w = pick(rng, 1, 4); w > 0; --w) s += std::string(words[pick(rng, 0, static_cast<int>(std::size(words)) - 1)]) + " ";
           s += "\n";
         }
         (void)dir;
         return Case{s, {}};
       }},
      {"batch", [](Rng& rng, const std::string& dir) {
         static const char* const commands[] = {"copy /b", "copy", "Copy/B", "del", "pause", "echo", "segyread", "type"};
         static const char* const names[] = {"a.dat", "b.dat", "a.dat+a.dat", "b.dat+a.dat", "*.dat", "a.dat+", ">", ">>",
                                             "<", "|", "c.out", "\"a b.dat\"", "+", "nul", "*"};
         write_text(dir + "/a.dat", noise(rng, static_cast<size_t>(pick(rng, 0, 400))));
         write_text(dir + "/b.dat", noise(rng, static_cast<size_t>(pick(rng, 0, 400))));
         std::string bat;
         for (int line = pick(rng, 1, 8); line > 0; --line) {
           bat += commands[pick(rng, 0, static_cast<int>(std::size(commands)) - 1)];
           for (int w = pick(rng, 0, 4); w > 0; --w) bat += std::string(" ") + names[pick(rng, 0, static_cast<int>(std::size(names)) - 1)];
           bat += pick(rng, 0, 1) ? "\r\n" : "\n";
         }
         if (pick(rng, 0, 5) == 0) bat += noise(rng, 200);
         write_text(dir + "/case.bat", bat);
         return Case{"", {dir + "/case.bat"}};
       }},
  };
  return all;
}

// A line with its bytes outside printable ASCII as \xNN.
std::string printable(const std::string& line) {
  std::string out;
  for (unsigned char c : line) {
    char hex[8];
    std::snprintf(hex, sizeof hex, "\\x%02X", c);
    out += c >= 0x20 && c < 0x7F ? std::string(1, static_cast<char>(c)) : hex;
  }
  return out;
}

unsigned seed() {
  const char* chosen = std::getenv("TRACEFOLD_SEED");
  return chosen ? static_cast<unsigned>(std::strtoul(chosen, nullptr, 10)) : 20261123u;
}

}  // namespace

TEST(MalformedInput, NoCrashNoChangedInputBoundedMemory) {
  constexpr int cases_per_scenario = 20;
  constexpr long memory_bound_kb = 512L * 1024;
  const unsigned base = seed();
  for (const auto& [name, scenario] : scenarios()) {
    for (int n = 0; n < cases_per_scenario; ++n) {
      SCOPED_TRACE("scenario " + name + ", seed " + std::to_string(base) + ", case " + std::to_string(n));
      Rng rng(base + static_cast<unsigned>(n) * 7919u + static_cast<unsigned>(std::hash<std::string>{}(name)));
      TempDir dir;
      const Case c = scenario(rng, dir.str());
      std::map<std::string, std::string> before;
      for (const auto& input : c.inputs)
        if (std::filesystem::exists(input)) before[input] = text_of(input);
      ProcessResult r = c.script.empty()
                            ? run_program("tracefold-batch", {"case.bat"}, dir.str())
                            : run_runner(c.script, dir.str(), {"--max-seconds", "20", "--max-boxes", "40"});
      EXPECT_EQ(r.signal, 0) << c.script;
      if (!c.script.empty()) {
        // A script that the runner cannot read ends with 2; everything else with 0 or 3.
        const bool script_error = !r.lines.empty() && r.lines.back().find("\"event\":\"error\"") != std::string::npos;
        if (!script_error) EXPECT_TRUE(r.exit_code == 0 || r.exit_code == 3) << r.exit_code << "\n" << c.script;
        else EXPECT_EQ(r.exit_code, 2);
        for (const auto& line : r.lines) EXPECT_TRUE(is_utf8(line)) << printable(line);
      }
      EXPECT_LT(r.peak_kb, memory_bound_kb);
      for (const auto& [input, bytes] : before) {
        if (name == "batch") continue;  // a batch file may change its own data; it must only end
        EXPECT_TRUE(text_of(input) == bytes) << input << " changed";
      }
      if (HasFailure()) return;
    }
  }
}
