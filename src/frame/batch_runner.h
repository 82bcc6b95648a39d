// Outside tools: the batch file of the Seismic Unix commands, the program
// that opens a file type, the joining of two files and the tools folder.
#pragma once

#include <string>

namespace tf {

class App;

// Normalises a command file (lower case, one pass of each blank rule), saves
// it as "batch.bat" in the application folder and starts it; does not wait,
// unless the caller reads the results of the commands next (wait_for_end).
void Run_Batch(App& app, const std::string& command_file, const std::string& arguments, int window_style,
               bool wait_for_end = false);

// The program that opens files with this extension, "" when none is known.
std::string Find_Exec_For_Ext(App& app, const std::string& extension);

// `output` gets the bytes of `first` and then those of `second`, written
// over it in place.
void Join_Files(App& app, const std::string& first, const std::string& second, const std::string& output);

// Sets su_tools_folder from the suite's INI, or to the application folder.
void Find_Tools_Folder(App& app);

// Command5 of the main panel: each selected file archived by the installed
// archiver (routine "Zip_Files").
void Zip_Files(App& app);

}  // namespace tf
