#include "sample_file.h"

#include "sample_rtf.h"

#include "database/listentexte.h"
#include "database/schema/schema.h"

#include <cctype>
#include <cstdio>

namespace folio::sample_source {

namespace {

// The qualifier fields' value where there is none: six blanks as the upgrade writes them in
// persons and events, one blank in pictures and documents.
constexpr const char* NoQualifierLong = "      ";
constexpr const char* NoQualifierShort = " ";

Value counterOf(const Record* record) {
    return Value(RecordId(record ? record->counter : 0));
}

// A rich-text field: rich text unless the source says "(plain)"; one blank where the source
// has nothing, as these fields don't take the empty text.
Value richValue(const Record& record, std::string_view key) {
    const Entry* entry = record.find(key);
    if (!entry)
        return Value(" ");
    return Value(entry->modifier == "plain" ? plainText(entry->lines) : richText(entry->lines));
}

Value plainValue(const Record& record, std::string_view key, const char* empty) {
    const Entry* entry = record.find(key);
    return Value(entry ? plainText(entry->lines) : std::string(empty));
}

Value textValue(const Record& record, std::string_view key, const char* empty = "") {
    const Entry* entry = record.find(key);
    return Value(entry ? entry->value : std::string(empty));
}

std::string trimmed(const std::string& s) {
    const std::size_t first = s.find_first_not_of(' ');
    return first == std::string::npos ? "" : s.substr(first, s.find_last_not_of(' ') - first + 1);
}

DateTime toDateTime(const Stamp& d) {
    return DateTime::fromDateTime(d.year, d.month, d.day, d.hour, d.minute, 0);
}

} // namespace

std::string sortKey(const Date& d) {
    char buf[40]; // room for any int the format may meet
    if (d.year == 0)
        return "";
    if (d.day > 0)
        std::snprintf(buf, sizeof buf, "%04d%02d%02d", d.year, d.month, d.day);
    else if (d.month > 0)
        std::snprintf(buf, sizeof buf, "%04d%02d", d.year, d.month);
    else
        std::snprintf(buf, sizeof buf, "%04d", d.year);
    return buf;
}

SampleFile::SampleFile(const Sample& sample, dao::Database& db) : s_(sample), db_(db) {
    defaultStamp_ = toDateTime(s_.stamp(s_.file(), *s_.file().find("changed")));
}

dao::Recordset& SampleFile::table(std::string_view name) {
    auto& rs = tables_[std::string(name)];
    if (!rs)
        rs = db_.OpenRecordset(name, dao::RecordsetType::Table);
    return *rs;
}

dao::Recordset& SampleFile::newRow(std::string_view name) {
    dao::Recordset& rs = table(name);
    rs.AddNew();
    for (const schema::Field& field : schema::findTable(schema::mainTables(), name)->fields)
        rs.set(field.name, schema::emptyValue(field));
    return rs;
}

// --- Values -----------------------------------------------------------------------------------

DateTime SampleFile::stamp(const Record& record, std::string_view key) const {
    const Entry* entry = record.find(key);
    return entry ? toDateTime(s_.stamp(record, *entry)) : defaultStamp_;
}

// The date group of `prefix` ("G", "v"...) and the qualifier field `ca`, if there is one.
void SampleFile::setDate(dao::Recordset& rs, const Record& record, std::string_view key,
                         const std::string& prefix, const char* ca, const char* noQualifier) {
    const Entry* entry = record.find(key);
    if (ca)
        rs.set(ca, Value(noQualifier));
    if (!entry)
        return;
    const Date d = s_.date(record, *entry);
    rs.set(prefix + "Tag", Value(d.day));
    rs.set(prefix + "Monat", Value(d.month));
    rs.set(prefix + "Jahr", Value(d.year));
    rs.set(prefix + "Datum", Value(datum_text(d.day, d.month, d.year, 0)));
    rs.set(prefix + "Sort", Value(sortKey(d)));
    if (ca && !d.qualifier.empty())
        rs.set(ca, Value(d.qualifier));
}

void SampleFile::setMarks(dao::Recordset& rs, const Record& record) {
    const bool marked = s_.yes(record, "marked");
    rs.set("Counter", Value(RecordId(record.counter)));
    rs.set("Markierung", Value(marked));
    rs.set("Marker", Value(marked ? 1 : 0));
}

void SampleFile::setRef(dao::Recordset& rs, const Record& record, std::string_view field,
                        std::string_view key) {
    rs.set(field, counterOf(s_.ref(record, key)));
}

// --- Rows -------------------------------------------------------------------------------------

void SampleFile::addVersion() {
    schema::writeVersionRow(db_);
    const Record& f = s_.file();
    dao::Recordset& rs = table("Version");
    rs.MoveFirst();
    rs.Edit();
    rs.set("GUID_Anwender", textValue(f, "user-guid", " "));
    rs.set("Verfasser_Name", textValue(f, "author-name"));
    rs.set("Verfasser_Adresse", textValue(f, "author-address"));
    rs.set("Verfasser_Telefon", textValue(f, "author-phone"));
    rs.set("Verfasser_Fax", textValue(f, "author-fax"));
    rs.set("Verfasser_eMail", textValue(f, "author-email"));
    rs.set("Verfasser_HTTP", textValue(f, "author-web"));
    rs.set("Verfasser_Anmerkung", plainValue(f, "author-note", ""));
    rs.set("GEDCOM_Anmerkung", plainValue(f, "gedcom-note", ""));
    rs.set("Verfasser_gesperrt", Value(s_.yes(f, "author-locked")));
    rs.Update();
}

void SampleFile::addRecord(const Record& r) {
    switch (r.kind) {
    case Kind::Status: {
        dao::Recordset& rs = newRow("Status");
        rs.set("Counter", Value(RecordId(r.counter)));
        rs.set("Namen", textValue(r, "name"));
        rs.set("Memo", richValue(r, "memo"));
        rs.set("erfasst", Value(stamp(r, "entered")));
        rs.set("geaendert", Value(stamp(r, "changed")));
        rs.Update();
        break;
    }
    case Kind::Place: {
        dao::Recordset& rs = newRow("Ort");
        setMarks(rs, r);
        rs.set("Name", textValue(r, "name"));
        rs.set("Soundex", Value(soundex(r.text("name"))));
        rs.set("Memo", richValue(r, "memo"));
        setRef(rs, r, "Oberort", "parent");
        setRef(rs, r, "Bild", "picture");
        setRef(rs, r, "Notiz", "note");
        setRef(rs, r, "Status", "status");
        rs.Update();
        break;
    }
    case Kind::Note: {
        dao::Recordset& rs = newRow("Notiz");
        setMarks(rs, r);
        rs.set("Name", textValue(r, "name"));
        rs.set("Memo", richValue(r, "memo"));
        rs.set("Dateipfad", textValue(r, "file"));
        setRef(rs, r, "Obernotiz", "parent");
        setRef(rs, r, "Status", "status");
        rs.set("erfasst", Value(stamp(r, "entered")));
        rs.set("geaendert", Value(stamp(r, "changed")));
        rs.Update();
        break;
    }
    case Kind::Source: {
        dao::Recordset& rs = newRow("Dokument");
        setMarks(rs, r);
        rs.set("Dok_art", textValue(r, "kind", " "));
        rs.set("Vorlage", textValue(r, "form", " "));
        setRef(rs, r, "Oberdoc", "parent");
        rs.set("Dateipfad", textValue(r, "file", " "));
        setDate(rs, r, "date", "v", "ca", NoQualifierShort);
        rs.set("Listentext", textValue(r, "title"));
        rs.set("Text", richValue(r, "text"));
        setRef(rs, r, "Ort", "place");
        setRef(rs, r, "Bild", "picture");
        setRef(rs, r, "Notiz", "note");
        setRef(rs, r, "Status", "status");
        rs.set("geaendert", Value(stamp(r, "changed")));
        rs.Update();
        break;
    }
    case Kind::Address: {
        dao::Recordset& rs = newRow("Adressen");
        setMarks(rs, r);
        rs.set("Adresse", richValue(r, "lines"));
        rs.set("Listenname", textValue(r, "listname"));
        rs.set("Memo", richValue(r, "memo"));
        setRef(rs, r, "Ort", "place");
        setRef(rs, r, "Notiz", "note");
        setRef(rs, r, "Status", "status");
        rs.set("geaendert", Value(stamp(r, "changed")));
        rs.Update();
        break;
    }
    case Kind::Person:
        addPerson(r);
        break;
    case Kind::Event:
        addEvent(r);
        break;
    default:
        break;
    }
}

void SampleFile::addPicture(const Record& r, const std::filesystem::path& folder, long long size) {
    dao::Recordset& rs = newRow("Bilder");
    setMarks(rs, r);
    rs.set("bildpfad", Value(folder.string()));
    rs.set("bildfile", textValue(r, "file"));
    rs.set("bildtext", plainValue(r, "description", " "));
    rs.set("groesse", Value(size));
    if (r.has("second-file")) {
        rs.set("MCIfile", textValue(r, "second-file"));
        rs.set("MCIPfad", Value(folder.string()));
    }
    rs.set("mcitext", plainValue(r, "second-text", " "));
    setDate(rs, r, "date", "v", "ca", NoQualifierShort);
    rs.set("Listentext", textValue(r, "title"));
    setRef(rs, r, "Ort", "place");
    setRef(rs, r, "Notiz", "note");
    setRef(rs, r, "Status", "status");
    rs.set("geaendert", Value(stamp(r, "changed")));
    rs.Update();
}

// The list text waits until all persons are in place (build_sample.cpp).
void SampleFile::addPerson(const Record& r) {
    dao::Recordset& rs = newRow("Daten");
    setMarks(rs, r);
    rs.set("Lebt", Value(s_.yes(r, "living")));
    const std::string sex = r.text("sex");
    rs.set("Geschlecht", Value(sex.empty() || sex == "-" ? " " : sex));
    setRef(rs, r, "Vater", "father");
    setRef(rs, r, "Mutter", "mother");
    for (const char* piece : {"NPFX", "GIVN", "SPFX", "SURN", "Familienname", "NFSX", "TITL",
                              "NICK", "ABBR", "RufNamen", "Patronym"}) {
        std::string key = piece;
        for (char& c : key)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        rs.set(piece, textValue(r, key));
    }
    rs.set("NameNOTE", plainValue(r, "namenote", ""));
    setDate(rs, r, "born", "G", "ca1", NoQualifierLong);
    setDate(rs, r, "died", "S", "ca2", NoQualifierLong);
    setRef(rs, r, "GOrt", "born-at");
    setRef(rs, r, "SOrt", "died-at");
    setRef(rs, r, "Ort", "lives-at");
    setRef(rs, r, "Bild", "picture");
    setRef(rs, r, "Notiz", "note");
    setRef(rs, r, "Status", "status");
    rs.set("OCCU", textValue(r, "occu"));
    rs.set("Religion", textValue(r, "religion"));
    rs.set("Memo", richValue(r, "memo"));
    const std::string surn = trimmed(r.text("surn")), givn = trimmed(r.text("givn"));
    rs.set("NNSoundex", Value(surn.empty() ? " " : soundex(surn)));
    rs.set("VNSoundex", Value(givn.empty() ? " " : soundex(givn)));
    rs.set("Plausgeburt", Value(-1));
    rs.set("OnlineDB", Value(true));
    const std::string guid = r.text("guid");
    rs.set("GUID", guid.empty() ? Value() : Value(guid == "blank" ? " " : guid));
    rs.set("geaendert", Value(stamp(r, "changed")));
    rs.Update();
}

// The list text waits until all events and their participants are in place.
void SampleFile::addEvent(const Record& r) {
    dao::Recordset& rs = newRow("Ereignis");
    setMarks(rs, r);
    rs.set("Art", Value(s_.number(r, *r.find("kind"))));
    setDate(rs, r, "date", "v", "ca", NoQualifierLong);
    setDate(rs, r, "until", "b", nullptr, nullptr);
    rs.set("Kurztext", textValue(r, "kurztext", " "));
    rs.set("Text", richValue(r, "text"));
    rs.set("Grund", textValue(r, "grund", " "));
    const Entry* level = r.find("level");
    rs.set("Level", Value(level ? s_.number(r, *level) : 1));
    setRef(rs, r, "Ort", "place");
    setRef(rs, r, "Bild", "picture");
    setRef(rs, r, "Notiz", "note");
    setRef(rs, r, "Status", "status");
    rs.set("geaendert", Value(stamp(r, "changed")));
    rs.Update();
    for (const Entry& entry : r.entries) {
        if (entry.key == "main") {
            for (const Record* person : s_.refs(r, entry))
                addParticipant(r, *person, "d", "");
        } else if (entry.key == "role") {
            const Role role = s_.role(r, entry);
            addParticipant(r, *role.person, std::string(1, role.letter), role.asso);
        }
    }
}

void SampleFile::addParticipant(const Record& event, const Record& person,
                                const std::string& letter, const std::string& asso) {
    dao::Recordset& rs = newRow("Ereignis_DS");
    rs.set("Counter", Value(RecordId(++participants_)));
    rs.set("Quelle", Value(RecordId(person.counter)));
    rs.set("Ziel", Value(RecordId(event.counter)));
    rs.set("Ursprung", Value(letter));
    rs.set("ASSO", Value(asso));
    rs.Update();
}

} // namespace folio::sample_source
