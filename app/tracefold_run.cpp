// tracefold-run [options] SCRIPT: runs a script of panel actions headless and
// prints the JSON-lines transcript. See docs/automation.md.
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "ui/headless/script_runner.h"

namespace {
// A limit option's value: a finite number within `most`, else the run does
// not start.
bool limit_value(const std::string& option, const std::string& text, double most, bool whole, double& value) {
  char* end = nullptr;
  errno = 0;
  value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || errno == ERANGE || !std::isfinite(value) || value < 0 || value > most ||
      (whole && value != std::floor(value))) {
    std::cerr << "tracefold-run: " << option << " takes a " << (whole ? "whole " : "") << "number from 0 to " << most
              << ", not \"" << text << "\"\n";
    return false;
  }
  return true;
}

int usage() {
  std::cerr << "usage: tracefold-run [--app-dir DIR] [--system-dir DIR] [--shell record|run] "
               "[--clock real|virtual] [--max-seconds N] [--max-boxes N] SCRIPT|-\n";
  return tf::exit_script_error;
}
}  // namespace

int main(int argc, char** argv) {
  tf::RunnerOptions options;
  options.hard_time_limit = true;
  std::string script_path;
  for (int i = 1; i < argc; ++i) {
    std::string a = argv[i];
    auto value = [&]() -> std::string { return i + 1 < argc ? argv[++i] : ""; };
    if (a == "--app-dir") options.app_dir = value();
    else if (a == "--system-dir") options.system_dir = value();
    else if (a == "--shell") {
      std::string v = value();
      if (v != "record" && v != "run") return usage();
      options.shell_run = v == "run";
    } else if (a == "--clock") {
      std::string v = value();
      if (v != "real" && v != "virtual") return usage();
      options.virtual_clock = v == "virtual";
    } else if (a == "--max-seconds") {
      if (!limit_value(a, value(), 1e6, false, options.max_seconds)) return tf::exit_script_error;
    } else if (a == "--max-boxes") {
      double boxes = 0;
      if (!limit_value(a, value(), 1e9, true, boxes)) return tf::exit_script_error;
      options.max_boxes = static_cast<long>(boxes);
    }
    else if (!a.empty() && a[0] == '-' && a != "-") return usage();
    else script_path = a;
  }
  if (script_path.empty()) return usage();
  std::stringstream script;
  if (script_path == "-") {
    script << std::cin.rdbuf();
  } else {
    std::ifstream in(script_path);
    if (!in) {
      std::cerr << "tracefold-run: cannot read " << script_path << "\n";
      return tf::exit_script_error;
    }
    script << in.rdbuf();
  }
  return tf::run_script(script.str(), options, std::cout);
}
