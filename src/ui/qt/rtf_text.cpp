#include "ui/qt/rtf_text.h"

#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <cctype>
#include <functional>
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

namespace {
// The character formatting of a group: what \b, \i, \fs and \f set.
struct RunFormat {
  bool bold = false, italic = false, mono = false;
  int half_points = 0;  // 0: the box's own size
  bool operator==(const RunFormat&) const = default;
};

// Reads a rich text file and hands its text on in runs of one format.
void read_rtf(const std::string& text, const std::function<void(const QString&, const RunFormat&)>& run) {
  QString pending;
  RunFormat pending_format;
  std::set<int> mono_fonts;  // fonts of the table declared \fmodern
  int declared_font = -1;
  struct Group {
    bool skip = false;
    RunFormat format;
  };
  std::vector<Group> groups{{}};
  size_t i = 0;
  int skip_after_unicode = 0;
  auto flush = [&] {
    if (!pending.isEmpty()) run(pending, pending_format);
    pending.clear();
  };
  auto put = [&](QChar c) {
    if (skip_after_unicode > 0) {
      --skip_after_unicode;
      return;
    }
    if (groups.back().skip) return;
    if (!(groups.back().format == pending_format)) {
      flush();
      pending_format = groups.back().format;
    }
    pending += c;
  };
  while (i < text.size()) {
    const char c = text[i];
    if (c == '{') {
      groups.push_back(groups.back());
      ++i;
    } else if (c == '}') {
      if (groups.size() > 1) groups.pop_back();
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
        groups.back().skip = true;
        i += 2;
      } else if (std::isalpha(static_cast<unsigned char>(n))) {
        size_t j = i + 1;
        while (j < text.size() && std::isalpha(static_cast<unsigned char>(text[j]))) ++j;
        const std::string word = text.substr(i + 1, j - i - 1);
        size_t k = j;
        if (k < text.size() && (text[k] == '-' || std::isdigit(static_cast<unsigned char>(text[k])))) ++k;
        while (k < text.size() && std::isdigit(static_cast<unsigned char>(text[k]))) ++k;
        const std::string parameter = text.substr(j, std::min<size_t>(k - j, 9));
        const long value = parameter.empty() || parameter == "-" ? 1 : std::strtol(parameter.c_str(), nullptr, 10);
        if (k < text.size() && text[k] == ' ') ++k;
        i = k;
        RunFormat& format = groups.back().format;
        if (word == "par" || word == "line") put('\n');
        else if (word == "tab") put('\t');
        else if (word == "b") format.bold = value != 0;
        else if (word == "i") format.italic = value != 0;
        else if (word == "fs") format.half_points = static_cast<int>(std::clamp(value, 0L, 400L));
        else if (word == "plain") format = RunFormat{};
        else if (word == "f") {
          declared_font = static_cast<int>(value);
          format.mono = mono_fonts.count(declared_font) != 0;
        } else if (word == "fmodern") {
          mono_fonts.insert(declared_font);
        } else if (word == "u" && !parameter.empty() && parameter != "-") {
          long code = value % 65536;
          put(QChar(static_cast<char16_t>(code < 0 ? code + 65536 : code)));
          skip_after_unicode = 1;  // the stand-in character that follows
        } else if (skipped_groups.count(word)) {
          groups.back().skip = true;
        }
      } else {
        i += 2;  // a control symbol such as \~ or \-
      }
    }
  }
  flush();
}
}  // namespace

QString rtf_plain_text(const std::string& text) {
  if (text.rfind("{\\rtf", 0) != 0) return QString::fromStdString(text);
  QString out;
  read_rtf(text, [&](const QString& run, const RunFormat&) { out += run; });
  return out;
}

void rtf_to_document(const std::string& text, QTextDocument& document) {
  document.clear();
  if (text.rfind("{\\rtf", 0) != 0) {
    document.setPlainText(QString::fromStdString(text));
    return;
  }
  QTextCursor cursor(&document);
  read_rtf(text, [&](const QString& run, const RunFormat& f) {
    QTextCharFormat format;
    format.setFontWeight(f.bold ? QFont::Bold : QFont::Normal);
    format.setFontItalic(f.italic);
    if (f.half_points > 0) format.setFontPointSize(f.half_points / 2.0);
    if (f.mono) format.setFontFamilies({"Courier New", "monospace"});
    cursor.insertText(run, format);
  });
}

}  // namespace tf
