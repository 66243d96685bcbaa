// The plain text of a stored rich text, as a rich-text control gives it.
#pragma once

#include <string>

namespace folio {

// Paragraphs joined by CR LF (a final \par gives a final CR LF), \'hh read in the document's
// code page, \u escapes, destinations such as the font and colour tables skipped; the result
// is UTF-8. A value that doesn't start with "{\rtf" comes back unchanged.
std::string rtf_klartext(const std::string& gespeichert);

} // namespace folio
