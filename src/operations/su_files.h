// What the SU file operations share: opening a file that must exist, the
// parts of a selection text, names formed from a name, the record geometry.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "su/binary_file.h"

namespace tf {

// An existing file opened for binary access by position as file `number`.
// A missing name fails with error 53 (a wildcard with 52) and leaves no
// empty file behind: inputs are never created.
BinaryFile& open_existing(FileTable& files, int number, const std::string& name);

// A text cut at each blank into at most `limit` parts; the last part is the
// rest of the text, blanks and all.
std::vector<std::string> split_parts(const std::string& text, size_t limit);

// `name` less its last `cut` characters, plus `ending`; error 5 when the
// name is shorter than that.
std::string renamed(const std::string& name, size_t cut, const std::string& ending);

// ns of the first trace: the int16 at byte 114.
int16_t first_ns(BinaryFile& file);
// ns and dt of the first trace (bytes 114 and 116) into `ns` and `dt`.
void first_ns_dt(BinaryFile& file, int16_t& ns, int16_t& dt);

}  // namespace tf
