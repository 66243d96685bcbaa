// The tables of the current version of the family-tree files, and of the side databases in
// the data folder.
//
// Every table is described once. The fields are those that the program reads, writes or
// creates, in the order of the table; the fields of the event types (`Ereignisdb`) are shared
// with the event catalogue, which holds the same rows per language.
//
// Text fields that allow the empty text are marked so (`textZ`, `memoZ`); in the others the
// program stores one blank where it wants no text. Records are numbered in `Counter`, a
// Currency like every reference to a record (`RecordId`); every table with `Counter` carries
// a unique index `Counter` on it, on which Seek finds a record. Link tables (`*_DS`) carry
// indexes on `Quelle` and `Ziel` as well, since every walk along a link selects on one of
// them. Text columns are never indexed.
#include "database/schema/schema.h"

namespace folio::schema {

namespace {

Field boolean(std::string_view name) {
    return {name, FieldType::Boolean};
}
Field byte(std::string_view name) {
    return {name, FieldType::Byte};
}
Field integer(std::string_view name) {
    return {name, FieldType::Integer};
}
Field longInt(std::string_view name) {
    return {name, FieldType::Long};
}
Field currency(std::string_view name) {
    return {name, FieldType::Currency};
}
Field dbl(std::string_view name) {
    return {name, FieldType::Double};
}
Field dateTime(std::string_view name) {
    return {name, FieldType::DateTime};
}
Field text(std::string_view name, int size) {
    return {name, FieldType::Text, size, false};
}
Field textZ(std::string_view name, int size) {
    return {name, FieldType::Text, size, true};
}
Field memo(std::string_view name) {
    return {name, FieldType::Memo, 0, false};
}
Field memoZ(std::string_view name) {
    return {name, FieldType::Memo, 0, true};
}

Index counterIndex() {
    return {"Counter", {"Counter"}, true};
}
std::vector<Index> linkIndexes() {
    return {counterIndex(), {"Quelle", {"Quelle"}, false}, {"Ziel", {"Ziel"}, false}};
}

// --- Persons, events and their links ------------------------------------------------------

Table daten() {
    return {"Daten",
            {
                currency("Counter"),
                boolean("Markierung"),
                integer("Marker"),
                boolean("Druck"),
                boolean("Lebt"),
                text("Geschlecht", 1),
                currency("Vater"),
                currency("Mutter"),
                textZ("NPFX", 255),
                textZ("GIVN", 255),
                textZ("SPFX", 255),
                textZ("SURN", 255),
                textZ("Familienname", 255),
                textZ("NFSX", 255),
                textZ("TITL", 255),
                textZ("NICK", 255),
                textZ("ABBR", 255),
                textZ("RufNamen", 255),
                textZ("Patronym", 255),
                memoZ("NameNOTE"),
                textZ("Listentext", 255),
                byte("GTag"),
                byte("GMonat"),
                integer("GJahr"),
                textZ("GDatum", 20),
                textZ("GSort", 8),
                text("ca1", 6),
                currency("GOrt"),
                byte("STag"),
                byte("SMonat"),
                integer("SJahr"),
                textZ("SDatum", 20),
                textZ("SSort", 8),
                text("ca2", 6),
                currency("SOrt"),
                currency("Ort"),
                currency("Bild"),
                currency("Notiz"),
                currency("Status"),
                textZ("OCCU", 255),
                textZ("Religion", 255),
                memo("Memo"),
                text("NNSoundex", 255),
                text("VNSoundex", 255),
                integer("Plausgeburt"),
                dbl("Kekuelnr"),
                currency("Ahnentafel"),
                text("GUID", 38),
                boolean("OnlineDB"),
                boolean("OnlineabfrageDB"),
                dateTime("OnlineDate"),
                memo("OnlineMemo"),
                boolean("Onlinemarkierung"),
                dateTime("geaendert"),
            },
            {counterIndex()}};
}

// Marriage partners ("E") and associations ("Z") between two persons.
Table datenDs() {
    return {"Daten_DS",
            {
                currency("Counter"),
                currency("Quelle"),
                currency("Ziel"),
                text("Art", 1),
                textZ("ASSO", 255),
                memoZ("Info"),
            },
            linkIndexes()};
}

Table ereignis() {
    return {
        "Ereignis",
        {
            currency("Counter"),     boolean("Markierung"), integer("Marker"),   boolean("Druck"),
            integer("Art"),          text("ca", 6),         byte("vTag"),        byte("vMonat"),
            integer("vJahr"),        textZ("vDatum", 20),   textZ("vSort", 8),   byte("bTag"),
            byte("bMonat"),          integer("bJahr"),      textZ("bDatum", 20), textZ("bSort", 8),
            text("Kurztext", 255),   memo("Text"),          text("Grund", 255),  integer("Level"),
            currency("Ort"),         currency("Bild"),      currency("Notiz"),   currency("Status"),
            text("Listentext", 255), dateTime("geaendert"),
        },
        {counterIndex()}};
}

// The participants of an event: `Quelle` takes part in the event `Ziel`.
Table ereignisDs() {
    return {"Ereignis_DS",
            {
                currency("Counter"),
                currency("Quelle"),
                currency("Ziel"),
                text("Ursprung", 1),
                textZ("ASSO", 255),
                memoZ("Info"),
            },
            linkIndexes()};
}

// The fields of an event type, in the file's own `Ereignisdb` and in the catalogue.
const std::vector<Field>& eventTypeFields() {
    static const std::vector<Field> fields = {
        integer("Index"),
        text("Art", 255),
        text("Text_vor", 255),
        text("Text_nach", 255),
        integer("Level"),
        text("GedTAG", 50),
        integer("Sortindex"),
        text("Personenarten", 200),
        integer("maxhauptpersonen"),
        text("Ereignisgrund", 255),
        text("txtzeichen", 10),
        integer("mainindex"),
        byte("OrtPos"),
        boolean("CAUSasTAG"),
    };
    return fields;
}

Index eventTypeIndex() {
    return {"Index", {"Index"}, true};
}

Table ereignisdb() {
    return {"Ereignisdb", eventTypeFields(), {eventTypeIndex()}};
}

// Families are derived from the persons; this table holds the host's own data about them.
Table familie() {
    return {"Familie",
            {
                currency("Counter"),
                integer("Marker"),
                boolean("Druck"),
                currency("Ahnentafel"),
                currency("Status"),
                currency("Notiz"),
            },
            {counterIndex()}};
}

// --- Places, notes, sources, pictures, addresses ------------------------------------------

Table ort() {
    return {"Ort",
            {
                currency("Counter"),
                boolean("Markierung"),
                integer("Marker"),
                boolean("Druck"),
                text("Name", 255),
                text("Soundex", 255),
                memo("Memo"),
                currency("Oberort"),
                currency("Bild"),
                currency("Notiz"),
                currency("Status"),
            },
            {counterIndex()}};
}

Table notiz() {
    return {"Notiz",
            {
                currency("Counter"),
                boolean("Markierung"),
                integer("Marker"),
                boolean("Druck"),
                text("Name", 255),
                memo("Memo"),
                memoZ("Dateipfad"),
                currency("Obernotiz"),
                currency("Status"),
                dateTime("erfasst"),
                dateTime("geaendert"),
            },
            {counterIndex()}};
}

Table dokument() {
    return {"Dokument",
            {
                currency("Counter"), boolean("Markierung"), integer("Marker"),
                boolean("Druck"),    text("Dok_art", 1),    text("Vorlage", 1),
                currency("Oberdoc"), memo("Dateipfad"),     text("ca", 6),
                byte("vTag"),        byte("vMonat"),        integer("vJahr"),
                textZ("vDatum", 20), textZ("vSort", 8),     text("Listentext", 255),
                memo("Text"),        currency("Ort"),       currency("Bild"),
                currency("Notiz"),   currency("Status"),    dateTime("geaendert"),
            },
            {counterIndex()}};
}

// Which record documents which: `Ziel` is the source of `Quelle`; the record letters say of
// which table each is.
Table quellenDs() {
    return {"Quellen_DS",
            {
                currency("Counter"),
                currency("Quelle"),
                currency("Ziel"),
                text("Art_Quelle", 1),
                text("Art_Ziel", 1),
                memoZ("Info"),
            },
            linkIndexes()};
}

Table bilder() {
    return {
        "Bilder",
        {
            currency("Counter"),   boolean("Markierung"),   integer("Marker"), boolean("Druck"),
            text("bildpfad", 255), text("bildfile", 255),   memo("bildtext"),  longInt("groesse"),
            text("MCIfile", 255),  text("MCIPfad", 255),    memo("mcitext"),   text("ca", 6),
            byte("vTag"),          byte("vMonat"),          integer("vJahr"),  textZ("vDatum", 20),
            textZ("vSort", 8),     text("Listentext", 255), currency("Ort"),   currency("Notiz"),
            currency("Status"),    dateTime("geaendert"),
        },
        {counterIndex()}};
}

Table adressen() {
    return {"Adressen",
            {
                currency("Counter"),
                boolean("Markierung"),
                integer("Marker"),
                boolean("Druck"),
                memo("Adresse"),
                text("Listenname", 255),
                memo("Memo"),
                currency("Ort"),
                currency("Notiz"),
                currency("Status"),
                dateTime("geaendert"),
            },
            {counterIndex()}};
}

// The addresses of records: `Ursprung` is the record letter of `Quelle`.
Table adressenDs() {
    return {"Adressen_DS",
            {
                currency("Counter"),
                currency("Quelle"),
                currency("Ziel"),
                text("Ursprung", 1),
            },
            linkIndexes()};
}

// --- Names, key words, research states -----------------------------------------------------

// `Vorkommen` holds the letters of the roles in which a name occurs, each at most once.
Table namen() {
    return {"Namen",
            {
                currency("Counter"),
                text("Namen", 255),
                text("Soundex", 255),
                text("Vorkommen", 10),
                boolean("Marker"),
                boolean("Druck"),
                currency("Notiz"),
                currency("Status"),
            },
            {counterIndex()}};
}

Table stichwort() {
    return {"Stichwort",
            {
                currency("Counter"),
                text("Stichwort", 255),
                dateTime("erfasst"),
                dateTime("geaendert"),
                integer("Marker"),
                boolean("Druck"),
            },
            {counterIndex()}};
}

// Key words of records: `Quelle` the record, `Ursprung` its record letter, `Ziel` the word.
Table stichwortDs() {
    return {"Stichwort_DS",
            {
                currency("Counter"),
                currency("Quelle"),
                currency("Ziel"),
                text("Ursprung", 1),
            },
            linkIndexes()};
}

Table status() {
    return {"Status",
            {
                currency("Counter"),
                text("Namen", 50),
                memo("Memo"),
                dateTime("erfasst"),
                dateTime("geaendert"),
            },
            {counterIndex()}};
}

// --- The host's drawings, galleries and navigation ------------------------------------------

// `Textumfang`: letters for the items that a tree shows; `Flowchart` "IMPORT_FEHLT" where
// nothing was imported.
Table baum() {
    return {"Baum",
            {
                currency("Counter"),
                text("Name", 255),
                text("Textumfang", 10),
                integer("Bildrichtung"),
                memo("Flowchart"),
            },
            {counterIndex()}};
}

// The persons of a tree drawing.
Table baumDs() {
    return {"Baum_DS",
            {
                currency("Counter"),
                currency("Quelle"),
                currency("Ziel"),
            },
            linkIndexes()};
}

Table galerie() {
    return {"Galerie",
            {
                currency("Counter"),
                text("Name", 255),
                text("Hintergrundbild", 255),
            },
            {counterIndex()}};
}

// The pictures of a gallery.
Table galerieDs() {
    return {"Galerie_DS",
            {
                currency("Counter"),
                currency("Quelle"),
                currency("Ziel"),
                memo("Flowchart"),
            },
            linkIndexes()};
}

Table navigation() {
    return {"Navigation",
            {
                integer("Counter"),
                text("Titel", 255),
                text("Fenster", 50),
                byte("Tabulator"),
                currency("Satz"),
                currency("Untersatz"),
            },
            {counterIndex()}};
}

// One row: the version of the file's schema, the marks of name input and the author.
Table version() {
    return {"Version",
            {
                text("Versionname", 50),
                text("KzTitelvor", 1),
                text("KzTitelnach", 1),
                text("KzRufnamevor", 1),
                text("KzRufnamenach", 1),
                text("KzGeburtsnamevor", 1),
                text("KzGeburtsnamenach", 1),
                integer("Navigation"),
                text("GUID_Anwender", 38),
                textZ("Verfasser_Name", 255),
                textZ("Verfasser_Adresse", 255),
                textZ("Verfasser_Telefon", 255),
                textZ("Verfasser_Fax", 255),
                textZ("Verfasser_eMail", 255),
                textZ("Verfasser_HTTP", 255),
                memoZ("Verfasser_Anmerkung"),
                memoZ("GEDCOM_Anmerkung"),
                boolean("Verfasser_gesperrt"),
            },
            {}};
}

// --- Side databases ----------------------------------------------------------------------

// One table of the event catalogue: the event types in one language.
Table eventCatalogue(std::string_view language) {
    std::vector<Field> fields = {currency("Counter")};
    fields.insert(fields.end(), eventTypeFields().begin(), eventTypeFields().end());
    return {language, std::move(fields), {counterIndex(), eventTypeIndex()}};
}

Table historyTexts() {
    return {"Deutsch",
            {
                currency("Counter"),
                integer("Jahr"),
                textZ("Titel", 255),
                memoZ("Text"),
            },
            {counterIndex()}};
}

Table nameCatalogue() {
    return {"Namen",
            {
                currency("Counter"),
                textZ("Namen", 255),
                textZ("Soundex", 255),
                textZ("Vorkommen", 10),
            },
            {counterIndex()}};
}

Table placeCatalogue() {
    return {"Ort",
            {
                currency("Counter"),
                textZ("Name", 255),
                textZ("Soundex", 255),
                textZ("Gebiet", 255),
                textZ("Land", 255),
            },
            {counterIndex()}};
}

// The filters of the grids list the regions (`Gebiet`) and countries (`Land`) found here.
Table addressCatalogue() {
    return {"Adressen",
            {
                currency("Counter"),
                textZ("Listenname", 255),
                memoZ("Adresse"),
                textZ("PLZ", 20),
                textZ("Ort", 255),
                textZ("Gebiet", 255),
                textZ("Land", 255),
            },
            {counterIndex()}};
}

Table noteCatalogue() {
    return {"Notizen",
            {
                currency("Counter"),
                textZ("Name", 255),
                memoZ("Memo"),
            },
            {counterIndex()}};
}

} // namespace

const std::vector<Table>& mainTables() {
    static const std::vector<Table> tables = {
        baum(),       baumDs(),     bilder(),     daten(),     datenDs(),     dokument(),
        ereignis(),   ereignisDs(), familie(),    galerie(),   galerieDs(),   namen(),
        quellenDs(),  notiz(),      ort(),        stichwort(), stichwortDs(), adressen(),
        adressenDs(), version(),    navigation(), status(),    ereignisdb(),
    };
    return tables;
}

const std::vector<SideDatabase>& sideDatabases() {
    static const std::vector<SideDatabase> databases = {
        {"Ereignis.mdb", {eventCatalogue("Deutsch"), eventCatalogue("English")}},
        {"Geschichte.mdb", {historyTexts()}},
        {"namen.mdb", {nameCatalogue()}},
        {"Orte.mdb", {placeCatalogue()}},
        {"Adressen.mdb", {addressCatalogue()}},
        {"Notizen.mdb", {noteCatalogue()}},
    };
    return databases;
}

} // namespace folio::schema
