// The level-0 records between the persons and the families: the notes of places, the notes,
// the sources, the addresses and the media. Each stage writes every marked row of its table
// in the order of its query and sets the progress per row; the pointer writers apply the same
// mark, so that every pointer to one of these records finds it in the file.
#pragma once

namespace folio {

class Exportlauf;

// "0 @ON…@ NOTE" for every marked place whose memo has a plain text.
void ortsnotizen_schreiben(Exportlauf& lauf);
// "0 @N…@ NOTE" for every marked note.
void notizen_schreiben(Exportlauf& lauf);
// "0 @U…@ SOUR" for every marked document, with the general remark of the export.
void quellen_schreiben(Exportlauf& lauf);
// "0 @A…@ ADDR" for every marked address.
void adressen_schreiben(Exportlauf& lauf);
// "0 @B…@ OBJE" for every marked picture, and "0 @BM…@ OBJE" behind it for its second file.
void medien_schreiben(Exportlauf& lauf);

} // namespace folio
