// The page of the linked records: entering it runs the closure once for the present
// selection of persons, shows its progress on the form, and switches the page's buttons by
// what the closure found.
#pragma once

namespace folio {

// Runs the closure unless it has run for the present selection (verknuepfungen_aktuell),
// switches the buttons of Coolbar_Datengrid(1) by what was marked, shows the events and,
// when couples' events were left out because a partner wasn't selected, tells the user once.
void verknuepfungen_markieren();

} // namespace folio
