#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillan {

/// The texts around the content of an exported page.
struct PageTexts {
  std::string title;
  std::string sub_title;
  std::string paragraph;
  std::string footer;
  std::string generator;  ///< The program's name and version.
};

/// Reads the next row of a table into `cells`; false at its end. The first row is the header.
using ReadRow = std::function<bool(std::vector<std::string>& cells)>;

/// A table as text whose fields `separator` separates (RFC 4180), UTF-8. Text outside ASCII gets a
/// byte-order mark, by which spreadsheets recognise the encoding.
std::string DelimitedDocument(char separator, const ReadRow& read_row);

/// A table as one self-contained page of HTML.
std::string HtmlDocument(const PageTexts& page, const ReadRow& read_row);

/// Plain text as one self-contained page of HTML, its line breaks and blanks kept.
std::string HtmlDocument(const PageTexts& page, std::string_view text);

}  // namespace quillan
