#include "gedcom/rtf.h"

namespace folio {

std::string rtf_klartext(const std::string& gespeichert) { return gespeichert; }

} // namespace folio
