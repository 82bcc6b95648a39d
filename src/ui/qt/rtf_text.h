// The readable text of a rich text file, for a box that shows it read-only:
// paragraphs, tabs and characters kept, formatting and tables of fonts,
// colours and styles dropped. Text that is not rich text comes back as it is.
#pragma once

#include <QString>
#include <QTextDocument>
#include <string>

namespace tf {

QString rtf_plain_text(const std::string& text);

// The same text with its bold, italic, size and fixed-pitch runs, as the
// rich text box shows it.
void rtf_to_document(const std::string& text, QTextDocument& document);

}  // namespace tf
