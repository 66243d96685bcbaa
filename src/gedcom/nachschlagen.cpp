#include "gedcom/nachschlagen.h"

#include "engine/connection_setup.h"
#include "database/tabellen.h"
#include "engine/text_util.h"
#include "gedcom/ereignisse.h"
#include "gedcom/rtf.h"

#include <algorithm>
#include <map>
#include <optional>
#include <unordered_map>

namespace folio {

namespace {

struct Speicher {
    const dao::Database* db = nullptr;
    std::uint64_t generation = 0;
    std::unordered_map<RecordId, OrtEintrag> orte;
    std::unordered_map<std::int64_t, std::optional<Ereignisart>> arten;
    bool beteiligte_geladen = false;
    std::vector<Beteiligter> beteiligte; // by event
    bool hauptereignisse_geladen = false;
    std::vector<Hauptereignis> hauptereignisse; // by person
    bool verknuepfungen_geladen = false;
    std::vector<Verknuepfung> verknuepfungen; // by record, kind and target letter
    std::map<const dao::Recordset*, std::unordered_map<RecordId, std::optional<std::string>>>
        markiert;
};

Speicher& speicher() {
    static Speicher s;
    if (s.db != DB.get() || !DB || s.generation != DB->writeGeneration()) {
        s.orte.clear();
        s.arten.clear();
        s.beteiligte.clear();
        s.beteiligte_geladen = false;
        s.verknuepfungen.clear();
        s.verknuepfungen_geladen = false;
        s.hauptereignisse.clear();
        s.hauptereignisse_geladen = false;
        s.markiert.clear();
        s.db = DB.get();
        s.generation = DB ? DB->writeGeneration() : 0;
    }
    return s;
}

Ereignisart ereignisart_lesen(dao::Recordset& rs) {
    Ereignisart a;
    a.gedtag = rs.get("gedtag").text();
    a.art = rs.get("Art").text();
    a.maxhauptpersonen = rs.get("maxhauptpersonen").toInt();
    a.causAlsTag = rs.get("CAUSasTAG").toBool();
    return a;
}

std::optional<Ereignisart> ereignisart_suchen(std::int64_t art) {
    if (rs_Ereignisdb) {
        rs_Ereignisdb->Index("Index");
        rs_Ereignisdb->Seek("=", Value(static_cast<long long>(art)));
        if (!rs_Ereignisdb->NoMatch())
            return ereignisart_lesen(*rs_Ereignisdb);
    }
    rs_Deutsch->FindFirst("Index = " + std::to_string(art));
    if (!rs_Deutsch->NoMatch())
        return ereignisart_lesen(*rs_Deutsch);
    return std::nullopt;
}

// The number that a query of a count gives; it sizes the tables read per run at once, so
// that they don't grow by doubling.
std::int64_t anzahl(const std::string& sql) {
    return DB->OpenRecordset(sql)->get(0).toInt();
}

bool gleich(const std::string& a, const std::string& b) {
    return compareNoCase(a, b) == 0;
}

char grossbuchstabe(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// A one-letter text as its letter; 0 for a text of another length.
char buchstabe(const std::string& s) {
    return s.size() == 1 ? s[0] : '\0';
}

// All links of persons in other roles than main persons, read in one pass over the table
// instead of one query per event. DISTINCT compares texts without regard to case.
void beteiligte_laden(Speicher& s) {
    auto rs = DB->OpenRecordset("SELECT Ziel, Quelle, Ursprung, ASSO FROM Ereignis_DS");
    for (; !rs->Eof(); rs->MoveNext()) {
        std::string ursprung = rs->get("Ursprung").text();
        if (upperAscii(ursprung) == "D")
            continue; // main persons are no associates of their own event
        s.beteiligte.push_back({rs->get("Ziel").toRecordId(), rs->get("Quelle").toRecordId(),
                                std::move(ursprung), rs->get("ASSO").text()});
    }
    std::stable_sort(
        s.beteiligte.begin(), s.beteiligte.end(),
        [](const Beteiligter& a, const Beteiligter& b) { return a.ereignis < b.ereignis; });
    // DISTINCT within each event: the first of equal rows stays.
    std::vector<Beteiligter> verschieden;
    verschieden.reserve(s.beteiligte.size());
    std::size_t anfang = 0;
    for (Beteiligter& b : s.beteiligte) {
        if (!verschieden.empty() && verschieden.back().ereignis != b.ereignis)
            anfang = verschieden.size();
        const bool schon = std::any_of(verschieden.begin() + static_cast<std::ptrdiff_t>(anfang),
                                       verschieden.end(), [&](const Beteiligter& x) {
                                           return x.quelle == b.quelle &&
                                                  gleich(x.ursprung, b.ursprung) &&
                                                  gleich(x.asso, b.asso);
                                       });
        if (!schon)
            verschieden.push_back(std::move(b));
    }
    verschieden.shrink_to_fit();
    s.beteiligte = std::move(verschieden);
    s.beteiligte_geladen = true;
}

// All general links, read in one pass over the table instead of one query per record.
void verknuepfungen_laden(Speicher& s) {
    s.verknuepfungen.reserve(static_cast<std::size_t>(anzahl("SELECT count(*) FROM Quellen_DS")));
    auto rs = DB->OpenRecordset("SELECT Quelle, Art_Quelle, Ziel, Art_Ziel FROM Quellen_DS");
    for (; !rs->Eof(); rs->MoveNext())
        s.verknuepfungen.push_back({rs->get("Quelle").toRecordId(),
                                    grossbuchstabe(buchstabe(rs->get("Art_Quelle").text())),
                                    buchstabe(rs->get("Art_Ziel").text()),
                                    rs->get("Ziel").toRecordId()});
    std::stable_sort(s.verknuepfungen.begin(), s.verknuepfungen.end(),
                     [](const Verknuepfung& a, const Verknuepfung& b) {
                         if (a.quelle != b.quelle)
                             return a.quelle < b.quelle;
                         if (a.art_quelle != b.art_quelle)
                             return a.art_quelle < b.art_quelle;
                         return grossbuchstabe(a.art_ziel) < grossbuchstabe(b.art_ziel);
                     });
    s.verknuepfungen_geladen = true;
}

// The links of main persons with the sort keys of their events, in one pass over each of
// the two tables instead of a query per person and a seek per event.
void hauptereignisse_laden(Speicher& s) {
    std::vector<std::pair<RecordId, RecordId>> schluessel; // event, sort key
    schluessel.reserve(static_cast<std::size_t>(anzahl("SELECT count(*) FROM Ereignis")));
    // An upper bound: the comparison finds "D" too.
    s.hauptereignisse.reserve(
        static_cast<std::size_t>(anzahl("SELECT count(*) FROM Ereignis_DS WHERE Ursprung = 'd'")));
    {
        auto rs = DB->OpenRecordset("SELECT Counter, vJahr, vMonat, vTag FROM Ereignis");
        for (; !rs->Eof(); rs->MoveNext())
            schluessel.emplace_back(
                rs->get("Counter").toRecordId(),
                ereignis_sortschluessel(static_cast<int>(rs->get("vJahr").toInt()),
                                        static_cast<int>(rs->get("vMonat").toInt()),
                                        static_cast<int>(rs->get("vTag").toInt())));
    }
    // The first row of a number is the one a seek finds.
    std::stable_sort(schluessel.begin(), schluessel.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    auto rs = DB->OpenRecordset("SELECT Quelle, Ziel, Ursprung FROM Ereignis_DS");
    for (; !rs->Eof(); rs->MoveNext()) {
        if (rs->get("Ursprung").text() != "d")
            continue;
        const RecordId ziel = rs->get("Ziel").toRecordId();
        auto it = std::lower_bound(schluessel.begin(), schluessel.end(), ziel,
                                   [](const auto& e, RecordId z) { return e.first < z; });
        if (it != schluessel.end() && it->first == ziel)
            s.hauptereignisse.push_back({rs->get("Quelle").toRecordId(), ziel, it->second});
    }
    std::stable_sort(
        s.hauptereignisse.begin(), s.hauptereignisse.end(),
        [](const Hauptereignis& a, const Hauptereignis& b) { return a.person < b.person; });
    s.hauptereignisse_geladen = true;
}

} // namespace

std::span<const Hauptereignis> hauptereignisse_nachschlagen(RecordId person) {
    Speicher& s = speicher();
    if (!s.hauptereignisse_geladen)
        hauptereignisse_laden(s);
    auto von = std::lower_bound(s.hauptereignisse.begin(), s.hauptereignisse.end(), person,
                                [](const Hauptereignis& h, RecordId p) { return h.person < p; });
    auto bis = std::upper_bound(von, s.hauptereignisse.end(), person,
                                [](RecordId p, const Hauptereignis& h) { return p < h.person; });
    return {von, bis};
}

std::span<const Beteiligter> beteiligte_nachschlagen(RecordId ereignis) {
    Speicher& s = speicher();
    if (!s.beteiligte_geladen)
        beteiligte_laden(s);
    auto von = std::lower_bound(s.beteiligte.begin(), s.beteiligte.end(), ereignis,
                                [](const Beteiligter& b, RecordId e) { return b.ereignis < e; });
    auto bis = std::upper_bound(von, s.beteiligte.end(), ereignis,
                                [](RecordId e, const Beteiligter& b) { return e < b.ereignis; });
    return {von, bis};
}

std::span<const Verknuepfung> verknuepfungen_nachschlagen(RecordId quelle,
                                                          const std::string& art_quelle) {
    Speicher& s = speicher();
    if (!s.verknuepfungen_geladen)
        verknuepfungen_laden(s);
    const char art = grossbuchstabe(buchstabe(art_quelle));
    if (art == '\0')
        return {};
    const std::pair<RecordId, char> schluessel{quelle, art};
    auto vor = [](const Verknuepfung& v, const std::pair<RecordId, char>& k) {
        return std::pair(v.quelle, v.art_quelle) < k;
    };
    auto nach = [](const std::pair<RecordId, char>& k, const Verknuepfung& v) {
        return k < std::pair(v.quelle, v.art_quelle);
    };
    auto von = std::lower_bound(s.verknuepfungen.begin(), s.verknuepfungen.end(), schluessel, vor);
    auto bis = std::upper_bound(von, s.verknuepfungen.end(), schluessel, nach);
    return {von, bis};
}

const Ereignisart* ereignisart_nachschlagen(std::int64_t art) {
    auto& arten = speicher().arten;
    auto it = arten.find(art);
    if (it == arten.end())
        it = arten.emplace(art, ereignisart_suchen(art)).first;
    return it->second ? &*it->second : nullptr;
}

const OrtEintrag& ort_nachschlagen(RecordId datensatz) {
    auto& orte = speicher().orte;
    auto it = orte.find(datensatz);
    if (it != orte.end())
        return it->second;
    OrtEintrag e;
    dao::Recordset& ort = *rs_Ort;
    ort.Index("Counter");
    ort.Seek("=", Value(datensatz));
    if (!ort.NoMatch() && ort.get("markierung").toBool()) {
        e.markiert = true;
        e.counter = ort.get("Counter").toRecordId();
        e.notiz = ort.get("Notiz").toRecordId();
        e.bild = ort.get("Bild").toRecordId();
        e.name = trimmed(ort.get("Name").text());
        e.hat_text = !isBlank(rtf_klartext(ort.get("Memo").text()));
    }
    return orte.emplace(datensatz, std::move(e)).first->second;
}

const std::string* markiert_nachschlagen(dao::Recordset& rs, RecordId datensatz) {
    auto& ziele = speicher().markiert[&rs];
    auto it = ziele.find(datensatz);
    if (it == ziele.end()) {
        std::optional<std::string> counter;
        rs.Index("Counter");
        rs.Seek("=", Value(datensatz));
        if (!rs.NoMatch() && rs.get("markierung").toBool())
            counter = rs.get("Counter").toRecordId().text();
        it = ziele.emplace(datensatz, std::move(counter)).first;
    }
    return it->second ? &*it->second : nullptr;
}

} // namespace folio
