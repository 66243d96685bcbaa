// The texts of the sample source as the family-tree files store them: rich text as the host's
// text boxes write it, or plain text with line breaks.
#pragma once

#include <string>
#include <vector>

namespace folio::sample_source {

// Rich text of Windows-1252 with one paragraph per line: characters of that code page beyond
// ASCII as \'hh, others as \uN? (N the UTF-16 unit as a signed number, a pair for characters
// beyond the first plane). The marks <b>, <i> and <u> and their closing forms switch bold,
// italic and underline; backslashes and braces are escaped.
std::string richText(const std::vector<std::string>& lines);

// The lines joined by CR LF.
std::string plainText(const std::vector<std::string>& lines);

} // namespace folio::sample_source
