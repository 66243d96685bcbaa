// folio-build-sample: writes the sample family tree from its text source, with the picture
// files it names.
//
//   folio-build-sample <sample folder> <language.mdb> <Ereignis.mdb> <Beispiel.SF6>
//                      [<picture folder>]
//
// The file is of the current version, with all its tables. The derived fields (list texts,
// date texts, sort keys, soundex codes) are made by the functions that the program itself
// uses, so that they read exactly as the program would store them; the list texts of persons
// need the language texts, those of events the event catalogue. The file's own event types
// (`Ereignisdb`) are copied from the catalogue for the kinds that its events use, with the
// exceptions that the source declares. The pictures are drawn into the picture folder
// (default: "Bilder" beside the file), except those that the source marks as missing.
#include "sample_file.h"
#include "sample_pictures.h"
#include "sample_source.h"

#include "database/listentexte.h"
#include "database/schema/schema.h"
#include "engine/text_util.h"
#include "frame/globals.h"
#include "frame/sprache.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <iostream>
#include <set>

namespace fs = std::filesystem;

namespace folio::sample_source {

namespace {

std::string cutCharacters(const std::string& text, std::size_t count) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80 && n++ == count)
            return text.substr(0, i);
    return text;
}

class Builder {
public:
    Builder(const Sample& sample, dao::Database& db, dao::Database& catalogue,
            const fs::path& pictures)
        : s_(sample), file_(sample, db), pictures_(pictures) {
        katalog_ = catalogue.OpenRecordset("SELECT * FROM Deutsch", dao::RecordsetType::Dynaset);
    }

    void build() {
        file_.addVersion();
        for (Kind kind :
             {Kind::Status, Kind::Place, Kind::Note, Kind::Source, Kind::Address, Kind::Person})
            for (const Record* record : s_.recordsOf(kind))
                file_.addRecord(*record);
        for (const Record* record : s_.recordsOf(Kind::Picture))
            file_.addPicture(*record, pictures_, drawPicture(*record));
        personListTexts();
        personLinks();
        names();
        eventTypes();
        for (const Record* record : s_.recordsOf(Kind::Event))
            file_.addRecord(*record);
        eventListTexts();
        generalLinks();
    }

private:
    // Draws the file of a picture and its second file; the size of the first, or the size that
    // the source gives for a file deliberately missing.
    long long drawPicture(const Record& r) {
        static const Colour palette[] = {{196, 164, 132}, {120, 160, 90}, {90, 120, 170},
                                         {200, 190, 150}, {170, 90, 80},  {150, 150, 150},
                                         {220, 200, 120}, {100, 140, 140}};
        fs::create_directories(pictures_);
        const fs::path file = pictures_ / r.text("file");
        if (s_.yes(r, "missing")) {
            std::error_code ec;
            fs::remove(file, ec); // left from an older build
            return s_.number(r, *r.find("size"));
        }
        const Colour fill = palette[r.counter % std::size(palette)];
        if (!sample_source::drawPicture(file, fill, Colour{60, 40, 30}))
            throw SourceError(r.file, r.find("file")->line,
                              "file: the builder draws .bmp and .gif files only");
        if (r.has("second-file"))
            writeSound(pictures_ / r.text("second-file"), 220 + static_cast<int>(r.counter));
        return static_cast<long long>(fs::file_size(file));
    }

    // --- Persons --------------------------------------------------------------------------------

    // The program's own list text of each person, which needs all persons in place.
    void personListTexts() {
        dao::Recordset& rs = file_.table("Daten");
        for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
            const std::string text = cutCharacters(liste_name(rs, false, false, false), 255);
            rs.Edit();
            rs.set("Listentext", Value(text));
            rs.Update();
        }
    }

    // Partners ("E") and associations ("Z").
    void personLinks() {
        long long counter = 0;
        for (const Record* person : s_.recordsOf(Kind::Person))
            for (const Entry& entry : person->entries) {
                if (entry.key != "partner" && entry.key != "association")
                    continue;
                const Reference to = s_.reference(*person, entry);
                const bool partner = entry.key == "partner";
                dao::Recordset& rs = file_.newRow("Daten_DS");
                rs.set("Counter", Value(RecordId(++counter)));
                rs.set("Quelle", Value(RecordId(person->counter)));
                rs.set("Ziel", Value(RecordId(to.number)));
                rs.set("Art", Value(partner ? "E" : "Z"));
                rs.set(partner ? "Info" : "ASSO", Value(to.rest));
                rs.Update();
            }
    }

    // The name list: surnames at birth ("G"), name prefixes ("U"), surname prefixes ("M").
    void names() {
        std::vector<std::pair<std::string, std::string>> list; // name, letters
        for (const Record* person : s_.recordsOf(Kind::Person))
            for (const auto& [key, letter] :
                 {std::pair("surn", 'G'), std::pair("npfx", 'U'), std::pair("spfx", 'M')}) {
                const std::string name(trimBlanks(person->text(key)));
                if (name.empty())
                    continue;
                auto it = std::find_if(list.begin(), list.end(),
                                       [&](const auto& n) { return n.first == name; });
                if (it == list.end())
                    it = list.insert(list.end(), {name, ""});
                if (it->second.find(letter) == std::string::npos)
                    it->second += letter;
            }
        long long counter = 0;
        for (const auto& [name, letters] : list) {
            dao::Recordset& rs = file_.newRow("Namen");
            rs.set("Counter", Value(RecordId(++counter)));
            rs.set("Namen", Value(name));
            rs.set("Soundex", Value(soundex(name)));
            rs.set("Vorkommen", Value(letters));
            rs.Update();
        }
    }

    // --- Events ---------------------------------------------------------------------------------

    const Record* kindRecord(long long index) const {
        for (const Record* k : s_.recordsOf(Kind::EventKind))
            if (k->counter == index)
                return k;
        return nullptr;
    }

    // Positions the catalogue on the kind.
    bool inCatalogue(long long index) {
        katalog_->FindFirst("Index = " + std::to_string(index));
        return !katalog_->NoMatch();
    }

    // The kinds of the events, with the kinds of their `mainindex` chains, copied from the
    // catalogue; a kind that the source declares absent from the file's table stays out.
    void eventTypes() {
        std::set<long long> used;
        for (const Record* event : s_.recordsOf(Kind::Event))
            used.insert(checkedKind(*event));
        for (const Record* k : s_.recordsOf(Kind::EventKind)) {
            if (!used.count(k->counter))
                throw SourceError(k->file, k->line, "no event is of this kind");
            if (k->has("in-catalogue") && !s_.yes(*k, "in-catalogue") && inCatalogue(k->counter))
                throw SourceError(k->file, k->line,
                                  "the catalogue has this kind, though the source says it hasn't");
        }
        std::set<long long> copied;
        for (long long index : used) {
            const Record* k = kindRecord(index);
            if (!inCatalogue(index)) {
                if (!k || !k->has("in-catalogue"))
                    throw std::runtime_error(
                        "the catalogue lacks the event kind " + std::to_string(index) +
                        " of the sample; declare it with \"in-catalogue: no\" if that is meant");
                continue;
            }
            for (long long i = index; i != -1 && !copied.count(i) && inCatalogue(i);) {
                const long long next = katalog_->get("mainindex").toInt();
                const Record* ki = kindRecord(i);
                if (!ki || !ki->has("in-ereignisdb") || s_.yes(*ki, "in-ereignisdb"))
                    copyEventType(ki);
                copied.insert(i);
                i = next;
            }
        }
    }

    // The kind of an event; the name behind its number, if any, must be the catalogue's.
    long long checkedKind(const Record& event) {
        const Entry& entry = *event.find("kind");
        const long long index = s_.number(event, entry);
        const std::size_t blank = entry.value.find(' ');
        if (blank != std::string::npos && inCatalogue(index)) {
            const std::string name(trimBlanks(katalog_->get("Art").text()));
            if (!equalsNoCase(trimBlanks(std::string_view(entry.value).substr(blank)), name))
                throw SourceError(event.file, entry.line,
                                  "kind: the catalogue calls the kind " + std::to_string(index) +
                                      " \"" + name + "\"");
        }
        return index;
    }

    // Copies the catalogue's current row, with the source's changes of name and tag.
    void copyEventType(const Record* changes) {
        dao::Recordset& rs = file_.newRow("Ereignisdb");
        for (const schema::Field& field :
             schema::findTable(schema::mainTables(), "Ereignisdb")->fields)
            rs.set(field.name, katalog_->get(field.name));
        if (changes && changes->has("name"))
            rs.set("Art", Value(changes->text("name")));
        if (changes && changes->has("tag"))
            rs.set("GedTAG", Value(changes->text("tag")));
        rs.Update();
    }

    // The list text of each event, made as the conversion of old files makes it: the first
    // main person, the second found by ereignis_hauptperson, the stored fields.
    void eventListTexts() {
        dao::Recordset& daten = file_.table("Daten");
        dao::Recordset& ereignisdb = file_.table("Ereignisdb");
        const ListentextQuellen q{&file_.db(), &daten, &ereignisdb, katalog_.get()};
        dao::Recordset& rs = file_.table("Ereignis");
        rs.Index("Counter");
        for (const Record* event : s_.recordsOf(Kind::Event)) {
            const Record* first = nullptr;
            if (const Entry* main = event->find("main"))
                first = s_.refs(*event, *main).front();
            const RecordId person1(first ? first->counter : 0);
            const RecordId ereignis(event->counter);
            const RecordId person2 = ereignis_hauptperson(q, person1, ereignis);
            const Record* place = s_.ref(*event, "place");
            rs.Seek("=", Value(ereignis));
            const std::string text =
                ereignis_text(q, "Listentext", person1, static_cast<int>(rs.get("Art").toInt()),
                              rs.get("ca").text(), rs.get("vDatum").text(), rs.get("bDatum").text(),
                              rs.get("Kurztext").text(), rs.get("Grund").text(),
                              place ? std::string(trimBlanks(place->text("name"))) : "", person2);
            rs.Edit();
            rs.set("Listentext", Value(text));
            rs.Update();
        }
    }

    // --- Links ----------------------------------------------------------------------------------

    // Quellen_DS and Adressen_DS, in the order of the source.
    void generalLinks() {
        long long sources = 0, addresses = 0;
        for (const Record& r : s_.records())
            for (const Entry& entry : r.entries) {
                if (entry.key == "link") {
                    const Reference to = s_.reference(r, entry);
                    char target = letterOf(to.target->kind);
                    if (entry.modifier == "lower")
                        target = static_cast<char>(std::tolower(target));
                    dao::Recordset& rs = file_.newRow("Quellen_DS");
                    rs.set("Counter", Value(RecordId(++sources)));
                    rs.set("Quelle", Value(RecordId(r.counter)));
                    rs.set("Ziel", Value(RecordId(to.number)));
                    rs.set("Art_Quelle", Value(std::string(1, letterOf(r.kind))));
                    rs.set("Art_Ziel", Value(std::string(1, target)));
                    rs.set("Info", Value(to.rest));
                    rs.Update();
                } else if (entry.key == "address") {
                    dao::Recordset& rs = file_.newRow("Adressen_DS");
                    rs.set("Counter", Value(RecordId(++addresses)));
                    rs.set("Quelle", Value(RecordId(r.counter)));
                    rs.set("Ziel", Value(RecordId(s_.reference(r, entry).number)));
                    rs.set("Ursprung", Value(std::string(1, letterOf(r.kind))));
                    rs.Update();
                }
            }
    }

    const Sample& s_;
    SampleFile file_;
    fs::path pictures_;
    std::unique_ptr<dao::Recordset> katalog_;
};

} // namespace

} // namespace folio::sample_source

int main(int argc, char** argv) {
    using namespace folio;
    if (argc < 5 || argc > 6) {
        std::cerr << "usage: " << (argc > 0 ? argv[0] : "folio-build-sample")
                  << " <sample folder> <language.mdb> <Ereignis.mdb> <Beispiel.SF6>"
                     " [<picture folder>]\n";
        return 2;
    }
    try {
        const fs::path language = fs::absolute(argv[2]);
        const fs::path target = fs::absolute(argv[4]);
        const fs::path pictures =
            argc == 6 ? fs::absolute(argv[5]) : target.parent_path() / "Bilder";
        // The date texts follow programm.ini of the data folder, as in the program.
        Datenpfad = language.parent_path().string();
        sprache_oeffnen(language.string());
        const sample_source::Sample sample = sample_source::readFolder(argv[1]);
        std::unique_ptr<dao::Database> catalogue = dao::OpenDatabase(argv[3], false, true);
        schema::writeDatabase(target, schema::mainTables(), [&](dao::Database& db) {
            sample_source::Builder(sample, db, *catalogue, pictures).build();
        });
        catalogue->Close();
        sprache_schliessen();
    } catch (const std::exception& e) {
        std::cerr << "folio-build-sample: " << e.what() << '\n';
        return 1;
    }
    return 0;
}
