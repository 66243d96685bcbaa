// The migration of a file of the old schema to version 5.
#include "database/upgrade/abschnitt1.h"
#include "database/upgrade/lauf.h"

namespace folio::upgrade {

void migration(Lauf& lauf, bool ohne_komprimieren) {
    (void)lauf;
    (void)ohne_komprimieren;
}

} // namespace folio::upgrade
