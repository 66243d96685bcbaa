// The later sections of the chain, for every file.
#pragma once

namespace folio::upgrade {

class Lauf;

// The event types that the file's types depend on, the occupation of each person, the
// ancestor number as a Double, and the cause-as-tag mark of the event types.
void abschnitt2(Lauf& lauf);
// The size of each picture's file.
void abschnitt3(Lauf& lauf);

} // namespace folio::upgrade
