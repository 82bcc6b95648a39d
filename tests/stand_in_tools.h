// Seismic Unix stand-ins for the batch files that the operation panels
// start: a recording platform that runs each started batch at once, to its
// end, and small scripts in place of suwind, susort and suresamp.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "frame/batch_interpreter.h"
#include "test_support.h"
#include "ui/headless/script_platform.h"

namespace tf::test {

// Starts are recorded as the runner records them; a batch then runs to its
// end before the start returns, so that a panel reads what the tools wrote.
class SyncBatchPlatform : public ScriptPlatform {
 public:
  using ScriptPlatform::ScriptPlatform;
  int batches_run = 0;
  int shell_execute(const ShellRequest& request) override {
    int result = ScriptPlatform::shell_execute(request);
    if (std::filesystem::path(request.file).extension() == ".bat" && std::filesystem::exists(request.file)) {
      BatchSession session;
      session.working_dir = request.dir;
      session.echo = false;
      int quiet = ::open("/dev/null", O_WRONLY);
      session.out_fd = session.err_fd = quiet;
      run_batch_text(text_of(request.file), session);
      ::close(quiet);
      ++batches_run;
    }
    return result;
  }
};

// suwind: with min= and max= keeps the traces whose tracf lies between them;
// otherwise copies. Every call is logged with its arguments in calls.log.
inline const char* suwind_stand_in = R"(#!/usr/bin/perl
open(my $log, '>>', 'calls.log'); print $log "suwind @ARGV\n"; close($log);
my ($min, $max);
for (@ARGV) { $min = $1 if /^min=(-?\d+)$/; $max = $1 if /^max=(-?\d+)$/; }
binmode STDIN; binmode STDOUT; local $/; my $d = <STDIN>; $d = '' unless defined $d;
if (!defined $min || length($d) < 240) { print $d; exit 0; }
my $rec = 240 + 4 * unpack('s<', substr($d, 114, 2));
for (my $p = 0; $p + $rec <= length($d); $p += $rec) {
  my $t = unpack('l<', substr($d, $p + 12, 4));
  print substr($d, $p, $rec) if $t >= $min && $t <= $max;
}
)";

// Any other tool: logs its call and copies its input.
inline std::string copying_stand_in(const std::string& name) {
  return "#!/bin/sh\necho \"" + name + " $*\" >> calls.log\nexec cat\n";
}

inline void write_tool(const std::string& path, const std::string& script) {
  write_text(path, script);
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

// The three stand-ins in `folder`.
inline void write_stand_ins(const std::string& folder) {
  write_tool(folder + "/suwind", suwind_stand_in);
  write_tool(folder + "/susort", copying_stand_in("susort"));
  write_tool(folder + "/suresamp", copying_stand_in("suresamp"));
}

}  // namespace tf::test
