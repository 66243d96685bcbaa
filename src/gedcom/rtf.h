// The plain text of a stored rich text, as a rich-text control gives it.
#pragma once

#include <string>

namespace folio {

// Paragraphs joined by CR LF (a final \par gives a final CR LF), \'hh read in the document's
// code page, \u escapes, destinations such as the font and colour tables skipped; the result
// is UTF-8. A value that doesn't start with "{\rtf" comes back unchanged. Characters that stand
// literally in the stored value are Unicode already; only a byte that isn't UTF-8 is read in
// the code page. What follows the close of the outermost group isn't read. Broken input gives
// what can be read; nothing throws.
std::string rtf_klartext(const std::string& gespeichert);

} // namespace folio
