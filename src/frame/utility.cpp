#include "frame/utility.h"

#include <array>

#include "frame/helpers.h"
#include "frame/paths.h"
#include "frame/program_starts.h"

namespace tf {

namespace {

constexpr const char* same = "\x01";  // hover caption equal to the caption at load
constexpr const char* none = nullptr; // no hover handler

// Buttons of the first tab. The help lines are separated by "|".
struct ButtonRow {
  const char* name;
  const char* caption;
  const char* hover;
  const char* help;
  const char* target;  // panel or routine
  bool panel;
};

constexpr std::array<ButtonRow, 24> utility_buttons{{
    {"Command12", "Traces extraction", same, "You can extract some trace from a SU file + saut$", "Add_file", true},
    {"Command11", "Extract traces from SEG-Y file", same, "Use this module to extract some traces from SEG-Y record",
     "Extract_SEGY", false},
    {"Command10", "Stack traces in time", same, "Use this module to appends different records", "Stack_Time", true},
    {"Command9", "Change samplerate/Nb samples", same,
     "Use this module to modify SEISMIC UNIX file size|You can change the recording time | Sampling rate can be modified | The number of samples / trace can be modified ",
     "rezize", true},
    {"Command8", "Remove/Modify FBP from SU file", same,
     "This module can remove all or time limited FBP values from SU header", "Modify_FBP", false},
    {"Command7", "Location map", same, "Use this module display shot point on a geographical map (Format bitmap)", "",
     false},
    {"Command6", "Trace replacement", same,
     "This module allow you to EXTRACT ONE trace from a SU file to REPLACE an ONE existing trace on an another SU file",
     "Replace_Trace", false},
    {"Command5", "ZIP files", same, "Use this module to ZIP (with installed WINZIP only) selected files", "Zip_Files",
     false},
    {"Command21", "SU file uncompress (2 to 4 bytes", "SU file uncompress (2 to 4 bytes)",
     "Use this module uncompress your data, 2 bytes will be converted to 4 bytes", "SU_Uncompress", false},
    {"Command19", "SU file compression (4 to 2 bytes)", same,
     "Use this module compress your data, 4 bytes will be converted to 2 bytes, loosing informations !", "SU_Compress",
     false},
    {"Commandp12", "Reverse channel order in selected SU file", "Reverse channel in selected SU file",
     "Use this module to reverse one or many selected channels|of one or all SU field records|For example, you can use this module if you inverted cables !!!|1.-Select the SU file|2.-Select the first and last shot to modify|3.-Select the first and last channel to permute|The first channel will become last selected channel|Press REVERSE to modify the SU file",
     "reversex", true},
    {"Commandp10", "Enter Vibroseis info into SU Header", same,
     "This module will write all vibrator parameters into the trace header|Just enter the correct values and press on WRITE DATA button",
     "vibro", true},
    {"Commandp9", "Vibroseis correlation", same,
     " With this module,you can correlate vibroseis record | using SU module SUCOR.| Just input all value and press START CORRELATION button",
     "vibroseis", true},
    {"Commandp8", "File substraction", same,
     " How to use SUBSTRACTION MODULE|You can use this module to substract 2 files  |Amplitudes of all samples of File2  will be subsbtract or added from File1 |You can check what has been removed during any filtering or processing.|This module can also be used to enhance S waves ",
     "substract", true},
    {"Commandp7", "Compute SEG-Y or SU file size", same, "Use this module to verifiy the file size (SU or SEG-Y)",
     "FileSize", true},
    {"Commandp6", "File number change", same,
     "Use this modules to modify the file name of your field records| You can change the file name and/or the numbers | File number must be regularly increasing !",
     "", false},
    {"Commandp5", "Split or add files", same,
     "This module can be used to cut a large file into smaller files or add those files", "spliter", true},
    {"Commandp4", "Merge SU files", same,
     "How to append files|1.- You select all SU files using Alt+Ctrl button when you click   |2.- You can add all files of a same seismic line together|3.- Files MUST HAVE THE SAME SIZE, same sample number and same channels    |4.- If necessary you can convert the file to SEG-Y using conversion module  |    ",
     "Add_SU_files", true},
    {"Commandp3", "Write ASCII RayFract file ", "Write ASCII Rayfract file",
     "This module records the ASCII necessary file (ASC file) for RAYFRACT program t produce hybrid section, from SU "
     "file with STATION geometry, FBP must have been already picked !",
     "Write_Rayfract", false},
    {"Commandp2", "Write First Break picks", "Write First break picks",
     "You can write ASCII files with all First arrivals time recorded in SU files header", "Write_FBP", false},
    {"Commandp21", "Display SEG2 field records", same,
     "Use this module to see the SEG-2 field records without SU conversion", "", false},
    {"Commandp22", "Display SEG-Y field data", "Display SEG-Y field records",
     "Use this module to see the SEG-Y field records without SU conversion", "", false},
    // The grid extraction has no button of its own in the table: this is its entry.
    {"Command13", "Extract SU traces on a grid", same,
     "Use this module to choose on a grid the traces to copy into a new SU file", "Extract", true},
    // The McSeis-3 selection panel has no button of its own either: this is its entry.
    {"Command14", "Mc Seis 3 HandyViewer", same,
     "Use this module to select McSeis 3 records and read their sample rate", "HandyViewer", true},
}};

// The button that shows the GSSI panel sits last on the tab.
constexpr ButtonRow gssi_button{"Command1", "Display GSSI Radar files", "GSSI Radar files",
                                "Use this module to see the GSSI radar records without SU conversion", "DZT2", true};

// Option buttons in the order in which Lance tests them.
struct OptionRow {
  const char* name;
  const char* frame;
  const char* caption;
  const char* hover;
  const char* mode;    // conversion_mode set before the show, or ""
  const char* target;  // panel shown or routine run
  enum Action { show, routine, program, s2conv, ascii_question } action;
};

constexpr std::array<OptionRow, 29> lance_options{{
    {"Option1", "Frame1", "SEG-2 to Seismic Unix", same, "", "", OptionRow::s2conv},
    {"Option2", "Frame1", "SEG-Y to Seismic Unix", same, "SEGY2SU", "SEGY", OptionRow::show},
    {"Option3", "Frame1", "KGS integer to Seismic Unix", same, "KGSI2SU", "Convert", OptionRow::show},
    {"Option4", "Frame1", "ES-1225 to Seismic Unix", same, "", "es1225", OptionRow::show},
    {"Option5", "Frame1", "ABEM Mark 3 to Seismic Unix", same, "", "abem", OptionRow::show},
    {"Option6", "Frame1", "Dolang to Seismic Unix", same, "", "DOLANG", OptionRow::show},
    {"Option7", "Frame1", "Other files to Seismic Unix", same, "", "sisforme", OptionRow::show},
    {"Option8", "Frame2", "Seismic Unix to Ascii (1 file/channel)", same, "", "su2ascii2", OptionRow::routine},
    {"Option9", "Frame1", "KGS floating to Seismic Unix", same, "KGS2SU", "Convert", OptionRow::show},
    {"Option10", "Frame1", "OYO McSEIS-170", same, "", "oyo", OptionRow::show},
    {"Option11", "Frame2", "Seismic Unix to KGS floating", same, "SU2KGS", "Convert", OptionRow::show},
    {"Option12", "Frame3", "RAMAC Radar files", same, "", "Radar_F", OptionRow::show},
    {"Option14", "Frame1", "Bison 5000 to Seismic Unix", same, "", "Bison", OptionRow::show},
    {"Option13", "Frame1", "SEG-D to Seismic Unix", same, "SEGD2SU", "Convert", OptionRow::show},
    {"Option15", "Frame2", "Seismic Unix to SEG-Y", same, "", "SU2SGY", OptionRow::show},
    {"Option16", "Frame1", "PASI LCM-12 Ascii", same, "", "pasi", OptionRow::show},
    {"Option18", "Frame3", "EKKO Pulse DT1 to Seismic Unix", same, "", "DT1", OptionRow::show},
    {"Option17", "Frame3", "GSSI DZT radar to SU", same, "", "DZT2", OptionRow::show},
    {"Option19", "Frame1", "Ambrogeo", same, "", "Ambrogeo", OptionRow::show},
    {"Option20", "Frame1", "SEG-B to Seismic Unix", none, "", "SEGB", OptionRow::show},
    {"Option23", "Frame1", "ASCII to SU", same, "", "", OptionRow::ascii_question},
    {"Option24", "Frame2", "Seismic Unix to ASCII (1 file with x channels)",
     "Seismic Unix to Ascii (1 file with xchannels)", "", "su2Ascii", OptionRow::routine},
    {"Option25", "Frame1", "Bison 2 to Seismic Unix", same, "", "Bison2su", OptionRow::show},
    {"Option29", "Frame1", "SAC to SU", "SAC/ASCII to SU", "", "", OptionRow::program},
    {"Option30", "Frame4", "BinPatch", same, "", "", OptionRow::program},
    {"Option31", "Frame1", "SEG-D SN388 2 SEG-Y", same, "", "", OptionRow::program},
    // The captions of these two are crossed with their actions on purpose.
    {"Option32", "Frame2", "SU to Time / CD P/ Amplitude text file", same, "", "Add_SU_files", OptionRow::show},
    {"Option33", "Frame2", "Add SU files", same, "", "Convert_2_X_Y_Z", OptionRow::routine},
    // The DZT panel that reads the radar file itself, beside the ASCII road
    // of Option17.
    {"Option35", "Frame3", "GSSI DZT direct to SU", same, "", "DZT", OptionRow::show},
}};

// Options of the viewer frame with a click handler of their own.
struct ViewerRow {
  const char* name;
  const char* caption;
  const char* hover;
};
constexpr std::array<ViewerRow, 4> viewer_options{{
    {"Option26", "SEG-D", same},
    {"Option27", "Radview", same},
    {"Option28", "SEG-Y", same},
    {"Option34", "SEG2", none},
}};

// Lists of controls whose bold goes when the pointer passes over a frame
// or the tab control. They are numbered lists, not by frame.
const std::vector<std::string> frame1_unbold{"Option1",  "Option2",  "Option3",  "Option4",  "Option5",  "Option6",
                                             "Option7",  "Option8",  "Option9",  "Option10", "Option11", "Option12",
                                             "Option13", "Option14", "Option15", "Option16", "Option19", "Option23",
                                             "Option25", "Option29", "Option31"};
const std::vector<std::string> frame2_unbold{"Option8",  "Option11", "Option15", "Option20",
                                             "Option24", "Option32", "Option33"};
const std::vector<std::string> frame3_unbold{"Option12", "Option17", "Option18", "Option35"};
const std::vector<std::string> frame4_unbold{"Option26", "Option27", "Option28", "Option30"};
const std::vector<std::string> tab_unbold{
    "Command1",  "Command2",   "Command3",   "Command4",   "Command5",   "Command6",   "Command7",   "Command9",
    "Command10", "Command11",  "Command19",  "Command21",  "Commandp2",  "Commandp3",  "Commandp4",  "Commandp5",
    "Commandp6", "Commandp7",  "Commandp8",  "Commandp9",  "Commandp10", "Commandp12", "Commandp21", "Commandp22"};

const char* const info_lines[] = {
    "Select the type of file and press on CONVERT",
    " If you don't know what type of file your seismograph",
    " produce, you must read the owner manual. ",
    " If your seismograph don't appears on the panel  ",
    " you can contact Brenholt.  ",
    " E-mail us some file sample and all available informations ",
    " Number of samples, sample rate, traces per record...  ",
    " ALL TYPE OF FILES CAN BE CONVERTED !",
    " If you are familiar with \xC2\xA8seismic data use OTHER FILE TO SU menu !",
    " This module can convert nearly all type of seismic file ",
};

}  // namespace

Utility::Utility(App& owner) : Panel(owner, "Utility", "Tracefold 1.2") {
  auto& tabs = add(Kind::tabs, "SSTab1");
  tabs.items = {"General modules", "Field record conversion", "Info"};
  tabs.value = 1;
  tabs.on_change = [this] { tab_changed(); };
  tabs.on_hover = [this] { unbold(tab_unbold); };

  auto place = [](Control& c, const std::string& parent, int tab) {
    c.parent = parent;
    c.tab = tab;
  };
  auto button_on_tab0 = [&](const ButtonRow& row) {
    auto& b = add(Kind::button, row.name, row.caption);
    place(b, "SSTab1", 0);
    std::string hover = row.hover == same ? row.caption : row.hover;
    std::string help = row.help;
    b.on_hover = [this, name = std::string(row.name), hover, help] { hover_control(name, hover, help); };
    std::string target = row.target, name = row.name;
    if (*row.target == 0)
      b.on_click = [this, name] { start_button_program(name); };
    else if (row.panel)
      b.on_click = [this, target] { app.panels.show(target); };
    else
      b.on_click = [this, target] { app.run_routine(target); };
  };
  for (const auto& row : utility_buttons) button_on_tab0(row);
  button_on_tab0(gssi_button);
  auto& help = add(Kind::text, "Text1");
  place(help, "SSTab1", 0);
  help.multiline = true;
  help.locked = true;

  const std::pair<const char*, const char*> frames[] = {{"Frame1", "To Seismic Unix"},
                                                         {"Frame2", "Reverse conversion"},
                                                         {"Frame3", "Radar files to SU"},
                                                         {"Frame4", "External record viewer"}};
  const std::vector<std::string>* unbold_lists[] = {&frame1_unbold, &frame2_unbold, &frame3_unbold, &frame4_unbold};
  for (int f = 0; f < 4; ++f) {
    auto& frame = add(Kind::frame, frames[f].first, frames[f].second);
    place(frame, "SSTab1", 1);
    const auto* list = unbold_lists[f];
    frame.on_hover = [this, list] { unbold(*list); };
  }
  (*this)["Frame1"].tooltip = "Select a file format and press on CONVERT";

  auto option = [&](const char* name, const char* frame, const char* caption, const char* hover) -> Control& {
    auto& o = add(Kind::option, name, caption);
    place(o, frame, -1);
    if (hover != none) {
      std::string h = hover == same ? caption : hover;
      o.on_hover = [this, n = std::string(name), h] { hover_control(n, h, ""); };
    }
    return o;
  };
  for (const auto& row : lance_options) option(row.name, row.frame, row.caption, row.hover).on_click = [this] { Lance(); };
  for (const auto& row : viewer_options)
    option(row.name, "Frame4", row.caption, row.hover).on_click = [this, n = std::string(row.name)] {
      start_program(app, n);
    };
  // Two tiny options that carry their own names and do nothing.
  option("Option21", "Frame1", "Option21", none).tiny = true;
  option("Option22", "Frame2", "Option22", none).tiny = true;

  auto& quit_button = add(Kind::button, "Command2", "Quit");
  quit_button.tooltip = "Click here when conversion is done";
  quit_button.on_click = [this] { quit(); };
  auto& info_button = add(Kind::button, "Command3", "Info");
  info_button.tooltip = "How to use this module";
  info_button.on_click = [this] { info(); };
  auto& explorer = add(Kind::button, "Command4", "Seismic file explorer");
  explorer.tooltip = "\"Use this option to pick a value ine any file\"";
  explorer.on_click = [this] { app.panels.show("pick"); };
  // The digitiser has no control of its own in the option table: this
  // button is its entry.
  add(Kind::button, "Command22", "Bitmap digitizing tool").on_click = [this] { app.panels.show("digit"); };
  for (const char* name : {"Command2", "Command3", "Command4", "Command22"}) {
    auto& b = (*this)[name];
    place(b, "SSTab1", 1);
    b.on_hover = [this, n = std::string(name), c = b.caption] { hover_control(n, c, ""); };
  }
  auto& close_su = add(Kind::check, "Check1", "Close SU windows automatically");
  place(close_su, "SSTab1", 1);
  close_su.tooltip = "This option can make problems, you can cancel this option ";

  auto& rich = add(Kind::rich_text, "RichTextBox1");
  place(rich, "SSTab1", 2);
  rich.multiline = true;
}

void Utility::form_load() { state.crlf = "\r\n"; }

void Utility::start_button_program(const std::string& control) {
  if (control == "Commandp6") {
    if (message(platform, "If you installed The RENAME FreeWare (found on CD) click YES", Icon::none,
                Buttons::yes_no) == Answer::yes)
      start_program(app, control);
    else
      message(platform, "Install RENAME from CD-ROM...", Icon::information);
    return;
  }
  start_program(app, control);
}

void Utility::hover_control(const std::string& control, const std::string& hover_caption, const std::string& help) {
  auto& c = (*this)[control];
  c.bold = true;
  set_caption(control, hover_caption);
  if (help.empty()) return;
  std::string text;
  size_t start = 0;
  while (true) {
    size_t slash = help.find('|', start);
    text += help.substr(start, slash == std::string::npos ? std::string::npos : slash - start) + state.crlf;
    if (slash == std::string::npos) break;
    start = slash + 1;
  }
  set_text("Text1", text);
}

void Utility::unbold(const std::vector<std::string>& list) {
  for (const auto& name : list) {
    auto& c = (*this)[name];
    if (!c.bold) continue;
    c.bold = false;
    changed(c);
  }
}

void Utility::Lance() {
  state.command_prefix = checked("Check1") ? "command.com /c " : "";
  for (const auto& row : lance_options) {
    if (!checked(row.name)) continue;
    switch (row.action) {
      case OptionRow::show:
        if (*row.mode) state.conversion_mode = row.mode;
        app.panels.show(row.target);
        break;
      case OptionRow::routine: app.run_routine(row.target); break;
      case OptionRow::program:
        if (!start_program(app, row.name)) return;  // SN388 missing: the rest is not tested
        break;
      case OptionRow::s2conv: option1_s2conv(); break;
      case OptionRow::ascii_question: option23_ascii(); break;
    }
  }
}

void Utility::option1_s2conv() {
  // The host tag is fixed, so the suite's INI is always the one read.
  const std::string host_tag = "LX12";
  if (host_tag == "LX12") {
    state.current_file = platform.profile_string("PLANTA", "File", "C:\\LARVEX\\DATA\\DEMO1\\DEMO1.LX5", 90, "Larvex32.INI");
  } else {
    state.current_file = platform.profile_string("halvorn", "files1", platform.application_folder() + native_path("\\data\\demo1.hvn"), 100, "Halvorn.INI");
  }
  std::string folder;
  Folder_Of(platform, state.current_file, folder);
  std::string path = platform.application_folder() + native_path("\\S2CONV.EXE");
  ShellRequest start;
  start.file = path;
  start.params = "999 " + folder;
  start.dir = platform.application_folder();
  if (platform.shell_execute(start) == 0) message(platform, path + "is missing", Icon::stop);
}

void Utility::option23_ascii() {
  InputBoxRequest ask;
  ask.prompt = "Type 1 to convert many ASCII file with 1 channel/ file, >1 for one ASCII file merging many channels";
  ask.default_text = "1";
  float layout = static_cast<float>(leading_number(platform.input_box(ask)));
  app.panels.show(layout == 1.0f ? "XASCII2SU" : "ASCII2SU");
}

void Utility::info() {
  message(platform, ended_lines(info_lines, state.crlf), Icon::information);
}

void Utility::tab_changed() {
  if ((*this)["SSTab1"].value != 2) return;
  std::string manual = platform.application_folder() + native_path("\\manual\\utility.rtf");
  if (File_Exists(manual) == 1) resume_next([&] { set_text("RichTextBox1", read_whole_file(manual)); });
}

void Utility::quit() { unload(); }

// The program ends with its main panel, whatever other panels are open.
void Utility::form_unload() { platform.quit(); }

}  // namespace tf
