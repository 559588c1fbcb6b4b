#pragma once

#include "report/structure.h"

// What Markdown and HTML have in common: reports as a text shows them, names cut and numbers rounded. Texts
// come out in UTF-8; controls, which neither may hold, become the replacement character, and a line end or a
// tab a blank.

// Appends a report in Markdown with the tables of GitHub's: a heading for each part, and a caption in bold
// over each table.
void writeMarkdownReport(const ReportStructure& structure, TextBuffer& document);
// Appends it as a page of HTML, each table with its caption.
void writeHtmlReport(const ReportStructure& structure, TextBuffer& document);

// The text of a failure as a paragraph.
void writeMarkdownFailure(std::string_view failure, TextBuffer& document);
void writeHtmlFailure(std::string_view failure, TextBuffer& document);

// Texts of which nothing is taken for markup.
void appendMarkdownText(TextBuffer& document, std::string_view text);
void appendHtmlText(TextBuffer& document, std::string_view text);
