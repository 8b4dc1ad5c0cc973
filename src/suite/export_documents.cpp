#include "suite/export_documents.h"

#include "platform/text/ascii.h"
#include "platform/text/delimited_text.h"

namespace quillan {
namespace {

constexpr std::string_view kStyle =
    "body{font-family:sans-serif}"
    "table{border-collapse:collapse}"
    "th,td{border:1px solid #999;padding:2px 6px;text-align:left;white-space:pre-wrap}"
    "th{background:#eee}";

std::string Escaped(std::string_view text) {
  std::string html;
  for (const char c : text) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += c;
    }
  }
  return html;
}

void AppendElement(std::string_view name, std::string_view text, std::string& html) {
  if (text.empty()) return;
  html.append("<").append(name).append(">").append(Escaped(text));
  html.append("</").append(name).append(">\n");
}

std::string PageStart(const PageTexts& page) {
  std::string html = "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n";
  html.append("<meta name=\"generator\" content=\"").append(Escaped(page.generator));
  html.append("\">\n<title>").append(Escaped(page.title)).append("</title>\n<style>");
  html.append(kStyle).append("</style>\n</head>\n<body>\n");
  AppendElement("h1", page.title, html);
  AppendElement("h2", page.sub_title, html);
  AppendElement("p", page.paragraph, html);
  return html;
}

std::string PageEnd(const PageTexts& page) {
  std::string html;
  AppendElement("footer", page.footer, html);
  return html + "</body>\n</html>\n";
}

void AppendRow(std::string_view cell_element, const std::vector<std::string>& cells,
               std::string& html) {
  html += "<tr>";
  for (const std::string& cell : cells) {
    html.append("<").append(cell_element).append(">").append(Escaped(cell));
    html.append("</").append(cell_element).append(">");
  }
  html += "</tr>\n";
}

}  // namespace

std::string DelimitedDocument(char separator, const ReadRow& read_row) {
  std::string document;
  std::vector<std::string> cells;
  std::vector<std::string_view> fields;
  while (read_row(cells)) {
    fields.assign(cells.begin(), cells.end());
    text::AppendDelimitedRecord(fields, separator, document);
  }
  return text::IsAscii(document) ? document : "\xEF\xBB\xBF" + document;
}

std::string HtmlDocument(const PageTexts& page, const ReadRow& read_row) {
  std::string html = PageStart(page) + "<table>\n<thead>\n";
  std::vector<std::string> cells;
  if (read_row(cells)) AppendRow("th", cells, html);
  html += "</thead>\n<tbody>\n";
  while (read_row(cells)) AppendRow("td", cells, html);
  return html + "</tbody>\n</table>\n" + PageEnd(page);
}

std::string HtmlDocument(const PageTexts& page, std::string_view text) {
  return PageStart(page) + "<pre>" + Escaped(text) + "</pre>\n" + PageEnd(page);
}

}  // namespace quillan
