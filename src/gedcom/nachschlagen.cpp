#include "gedcom/nachschlagen.h"

#include "database/connection_setup.h"
#include "database/tabellen.h"
#include "database/text_util.h"
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
    std::unordered_map<RecordId, std::vector<Beteiligter>> beteiligte;
    bool verknuepfungen_geladen = false;
    std::unordered_map<RecordId, std::vector<std::pair<std::string, std::vector<Verknuepfung>>>>
        verknuepfungen;
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

bool gleich(const std::string& a, const std::string& b) {
    return compareNoCase(a, b) == 0;
}

// All links of persons in other roles than main persons, read in one pass over the table
// instead of one query per event. DISTINCT compares texts without regard to case.
void beteiligte_laden(Speicher& s) {
    auto rs = DB->OpenRecordset("SELECT Ziel, Quelle, Ursprung, ASSO FROM Ereignis_DS");
    for (; !rs->Eof(); rs->MoveNext()) {
        std::string ursprung = rs->get("Ursprung").text();
        if (upperAscii(ursprung) == "D")
            continue; // main persons are no associates of their own event
        Beteiligter b{rs->get("Quelle").toRecordId(), std::move(ursprung), rs->get("ASSO").text()};
        auto& liste = s.beteiligte[rs->get("Ziel").toRecordId()];
        const bool schon = std::any_of(liste.begin(), liste.end(), [&](const Beteiligter& x) {
            return x.quelle == b.quelle && gleich(x.ursprung, b.ursprung) && gleich(x.asso, b.asso);
        });
        if (!schon)
            liste.push_back(std::move(b));
    }
    s.beteiligte_geladen = true;
}

// All general links, read in one pass over the table instead of one query per record.
void verknuepfungen_laden(Speicher& s) {
    auto rs = DB->OpenRecordset("SELECT Quelle, Art_Quelle, Ziel, Art_Ziel FROM Quellen_DS");
    for (; !rs->Eof(); rs->MoveNext()) {
        auto& arten = s.verknuepfungen[rs->get("Quelle").toRecordId()];
        const std::string art = rs->get("Art_Quelle").text();
        auto it = std::find_if(arten.begin(), arten.end(),
                               [&](const auto& a) { return gleich(a.first, art); });
        if (it == arten.end()) {
            arten.emplace_back(art, std::vector<Verknuepfung>{});
            it = std::prev(arten.end());
        }
        it->second.push_back({rs->get("Ziel").toRecordId(), rs->get("Art_Ziel").text()});
    }
    for (auto& [quelle, arten] : s.verknuepfungen)
        for (auto& [art, liste] : arten)
            std::stable_sort(liste.begin(), liste.end(), [](const auto& a, const auto& b) {
                return compareNoCase(a.art_ziel, b.art_ziel) < 0;
            });
    s.verknuepfungen_geladen = true;
}

} // namespace

const std::vector<Beteiligter>& beteiligte_nachschlagen(RecordId ereignis) {
    static const std::vector<Beteiligter> keine;
    Speicher& s = speicher();
    if (!s.beteiligte_geladen)
        beteiligte_laden(s);
    auto it = s.beteiligte.find(ereignis);
    return it == s.beteiligte.end() ? keine : it->second;
}

const std::vector<Verknuepfung>& verknuepfungen_nachschlagen(RecordId quelle,
                                                             const std::string& art_quelle) {
    static const std::vector<Verknuepfung> keine;
    Speicher& s = speicher();
    if (!s.verknuepfungen_geladen)
        verknuepfungen_laden(s);
    auto it = s.verknuepfungen.find(quelle);
    if (it == s.verknuepfungen.end())
        return keine;
    for (const auto& [art, liste] : it->second)
        if (gleich(art, art_quelle))
            return liste;
    return keine;
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
        e.name = std::string(trimBlanks(ort.get("Name").text()));
        e.hat_text = !trimBlanks(rtf_klartext(ort.get("Memo").text())).empty();
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
