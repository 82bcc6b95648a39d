#include "ui/qt/rtf_text.h"

#include <cctype>
#include <cstdlib>
#include <set>
#include <vector>

namespace tf {

namespace {
// Groups whose content is not text to read.
const std::set<std::string> skipped_groups = {
    "fonttbl", "colortbl", "stylesheet", "info", "pict", "object", "header", "footer", "headerl", "headerr",
    "footerl", "footerr", "listtable", "listoverridetable", "rsidtbl", "xmlnstbl", "themedata",
    "colorschememapping", "latentstyles", "datastore", "generator", "mmathPr", "pgdsctbl", "filetbl", "revtbl"};
}  // namespace

QString rtf_plain_text(const std::string& text) {
  if (text.rfind("{\\rtf", 0) != 0) return QString::fromStdString(text);
  QString out;
  std::vector<bool> skip{false};  // per open group
  size_t i = 0;
  int skip_after_unicode = 0;
  auto put = [&](QChar c) {
    if (skip_after_unicode > 0) {
      --skip_after_unicode;
      return;
    }
    if (!skip.back()) out += c;
  };
  while (i < text.size()) {
    const char c = text[i];
    if (c == '{') {
      skip.push_back(skip.back());
      ++i;
    } else if (c == '}') {
      if (skip.size() > 1) skip.pop_back();
      ++i;
    } else if (c == '\r' || c == '\n') {
      ++i;
    } else if (c != '\\') {
      put(QChar::fromLatin1(c));
      ++i;
    } else if (i + 1 >= text.size()) {
      ++i;
    } else {
      const char n = text[i + 1];
      if (n == '\\' || n == '{' || n == '}') {
        put(QChar::fromLatin1(n));
        i += 2;
      } else if (n == '\'' && i + 3 < text.size()) {
        // A character of the file's code page, written as two hex digits.
        put(QChar::fromLatin1(static_cast<char>(std::strtol(text.substr(i + 2, 2).c_str(), nullptr, 16))));
        i += 4;
      } else if (n == '*') {
        skip.back() = true;
        i += 2;
      } else if (std::isalpha(static_cast<unsigned char>(n))) {
        size_t j = i + 1;
        while (j < text.size() && std::isalpha(static_cast<unsigned char>(text[j]))) ++j;
        const std::string word = text.substr(i + 1, j - i - 1);
        size_t k = j;
        if (k < text.size() && (text[k] == '-' || std::isdigit(static_cast<unsigned char>(text[k])))) ++k;
        while (k < text.size() && std::isdigit(static_cast<unsigned char>(text[k]))) ++k;
        const std::string parameter = text.substr(j, k - j);
        if (k < text.size() && text[k] == ' ') ++k;
        i = k;
        if (word == "par" || word == "line") put('\n');
        else if (word == "tab") put('\t');
        else if (word == "u" && !parameter.empty() && parameter != "-") {
          long code = std::strtol(parameter.c_str(), nullptr, 10) % 65536;
          put(QChar(static_cast<char16_t>(code < 0 ? code + 65536 : code)));
          skip_after_unicode = 1;  // the stand-in character that follows
        } else if (skipped_groups.count(word)) {
          skip.back() = true;
        }
      } else {
        i += 2;  // a control symbol such as \~ or \-
      }
    }
  }
  return out;
}

}  // namespace tf
