#include "gedcom/nachschlagen.h"

#include "database/tabellen.h"
#include "engine/connection_setup.h"
#include "engine/durchlauf.h"
#include "engine/text_util.h"
#include "frame/sprache.h"
#include "gedcom/rtf.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>
#include <tuple>
#include <unordered_map>

namespace folio {

namespace {

// Whether a text can stand as a GEDCOM tag: letters, digits and the underscore, at most 31.
bool ist_tag(const std::string& text) {
    return !text.empty() && text.size() <= 31 && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
               c == '_';
    });
}

Ereignisart ereignisart_lesen(dao::Recordset& rs) {
    Ereignisart a;
    a.gedtag = trimmed(rs.get("gedtag").text());
    // Junk where the tag belongs (a damaged table of kinds) would break its line for every
    // reader: the kind goes out as one without a tag does, as EVEN with its name.
    if (!ist_tag(a.gedtag))
        a.gedtag.clear();
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

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
};

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

// The links of persons in other roles than main persons come in the pass over the links
// that reads the main persons' too, instead of one query per event. DISTINCT compares texts
// without regard to case.
} // namespace

void Nachschlagetabellen::beteiligte_ordnen() {
    std::stable_sort(
        beteiligte_.begin(), beteiligte_.end(),
        [](const Beteiligter& a, const Beteiligter& b) { return a.ereignis < b.ereignis; });
    // DISTINCT within each event: the first of equal rows stays.
    std::vector<Beteiligter> verschieden;
    verschieden.reserve(beteiligte_.size());
    std::size_t anfang = 0;
    for (Beteiligter& b : beteiligte_) {
        if (!verschieden.empty() && verschieden.back().ereignis != b.ereignis)
            anfang = verschieden.size();
        const bool schon = std::any_of(
            verschieden.begin() + static_cast<std::ptrdiff_t>(anfang), verschieden.end(),
            [&](const Beteiligter& x) {
                return x.quelle == b.quelle &&
                       gleich(beteiligtentexte_[x.ursprung], beteiligtentexte_[b.ursprung]) &&
                       gleich(beteiligtentexte_[x.asso], beteiligtentexte_[b.asso]);
            });
        if (!schon)
            verschieden.push_back(b);
    }
    verschieden.shrink_to_fit();
    beteiligte_ = std::move(verschieden);
}

// All general links, read in one pass over the table instead of one query per record.
void Nachschlagetabellen::verknuepfungen_laden() {
    verknuepfungen_.reserve(static_cast<std::size_t>(anzahl("SELECT count(*) FROM Quellen_DS")));
    dao::Durchlauf rs(*DB, "SELECT Quelle, Art_Quelle, Ziel, Art_Ziel FROM Quellen_DS");
    while (rs.weiter())
        verknuepfungen_.push_back({rs.nummer(0), grossbuchstabe(buchstabe(rs.text(1))),
                                   buchstabe(rs.text(3)), rs.nummer(2)});
    std::stable_sort(verknuepfungen_.begin(), verknuepfungen_.end(),
                     [](const Verknuepfung& a, const Verknuepfung& b) {
                         if (a.quelle != b.quelle)
                             return a.quelle < b.quelle;
                         if (a.art_quelle != b.art_quelle)
                             return a.art_quelle < b.art_quelle;
                         return grossbuchstabe(a.art_ziel) < grossbuchstabe(b.art_ziel);
                     });
    verknuepfungen_geladen_ = true;
}

// The persons' numbers, marks and sex in one pass, and the persons with associates in one
// pass over their links, instead of a seek or a query per person.
void Nachschlagetabellen::personen_laden() {
    // The mark as a lookup finds it: the field, or for the run's own selection its condition.
    std::string markiert = "Markierung";
    if (personenwahl_.alle)
        markiert.assign("(").append(personenwahl_.suchbedingung()).append(")");
    dao::Durchlauf p(*DB, "SELECT Counter, " + markiert + ", Geschlecht FROM Daten");
    while (p.weiter())
        personen_.push_back({p.nummer(0), {p.wahr(1), p.text(2) == "M"}});
    // The first row of a number is the one that a seek finds.
    std::stable_sort(
        personen_.begin(), personen_.end(),
        [](const PersonEintrag& a, const PersonEintrag& b) { return a.nummer < b.nummer; });
    for (std::size_t i = 1; i < personen_.size(); ++i)
        if (personen_[i].nummer == personen_[i - 1].nummer &&
            (doppelte_personen_.empty() || doppelte_personen_.back() != personen_[i].nummer))
            doppelte_personen_.push_back(personen_[i].nummer);
    dao::Durchlauf z(*DB, "SELECT Quelle FROM Daten_DS WHERE Art = 'Z'");
    while (z.weiter())
        mit_assoziierten_.push_back(z.nummer(0));
    std::sort(mit_assoziierten_.begin(), mit_assoziierten_.end());
    personen_geladen_ = true;
}

const std::string& Nachschlagetabellen::sprachtext(int nummer) {
    auto it = sprachtexte_.find(nummer);
    if (it == sprachtexte_.end())
        it = sprachtexte_.emplace(nummer, folio::sprachtext(std::to_string(nummer))).first;
    return it->second;
}

bool Nachschlagetabellen::hat_assoziierte(RecordId person) {
    if (!personen_geladen_)
        personen_laden();
    return std::binary_search(mit_assoziierten_.begin(), mit_assoziierten_.end(), person);
}

std::optional<Nachschlagetabellen::Person> Nachschlagetabellen::person(RecordId nummer) {
    if (!personen_geladen_)
        personen_laden();
    auto it = std::lower_bound(personen_.begin(), personen_.end(), nummer,
                               [](const PersonEintrag& e, RecordId n) { return e.nummer < n; });
    if (it == personen_.end() || it->nummer != nummer)
        return std::nullopt;
    return it->person;
}

bool Nachschlagetabellen::doppelte_person(RecordId nummer) {
    if (!personen_geladen_)
        personen_laden();
    return !doppelte_personen_.empty() &&
           std::binary_search(doppelte_personen_.begin(), doppelte_personen_.end(), nummer);
}

const Ereignistabelle& Nachschlagetabellen::ereignisse() {
    if (ereignisse_geladen_)
        return ereignisse_;
    // A handful of letters and roles stand in a million links: each text is kept once.
    std::unordered_map<std::string, std::uint32_t, TextHash, std::equal_to<>> nummern;
    auto nummer = [&](std::string_view text) {
        auto it = nummern.find(text);
        if (it == nummern.end()) {
            it = nummern.emplace(text, static_cast<std::uint32_t>(beteiligtentexte_.size())).first;
            beteiligtentexte_.emplace_back(text);
        }
        return it->second;
    };
    // Quelle, Ziel, Ursprung, ASSO of a link whose letter isn't "d" or "D".
    ereignisse_.laden(marken_, mit_aenderung_, [&](const dao::Durchlauf& l) {
        const std::uint32_t ursprung = nummer(l.textAnsicht(2));
        beteiligte_.push_back({l.nummer(1), l.nummer(0), ursprung, nummer(l.textAnsicht(3))});
    });
    beteiligte_ordnen();
    ereignisse_geladen_ = true;
    return ereignisse_;
}

bool Nachschlagetabellen::markiert(Verknuepft tabelle, dao::Recordset& rs) {
    return marken_ ? marken_->markiert(tabelle, rs.get("Counter").toRecordId())
                   : rs.get("markierung").toBool();
}

std::span<const Beteiligter> Nachschlagetabellen::beteiligte(RecordId ereignis) {
    ereignisse(); // read with the links of main persons
    auto von = std::lower_bound(beteiligte_.begin(), beteiligte_.end(), ereignis,
                                [](const Beteiligter& b, RecordId e) { return b.ereignis < e; });
    auto bis = std::upper_bound(von, beteiligte_.end(), ereignis,
                                [](RecordId e, const Beteiligter& b) { return e < b.ereignis; });
    return {von, bis};
}

std::span<const Verknuepfung> Nachschlagetabellen::verknuepfungen(RecordId quelle,
                                                                  const std::string& art_quelle) {
    if (!verknuepfungen_geladen_)
        verknuepfungen_laden();
    const char art = grossbuchstabe(buchstabe(art_quelle));
    if (art == '\0')
        return {};
    const std::pair<RecordId, char> schluessel{quelle, art};
    auto vor = [](const Verknuepfung& v, const std::pair<RecordId, char>& k) {
        return std::pair(v.quelle, v.art_quelle) < k;
    };
    auto von = std::lower_bound(verknuepfungen_.begin(), verknuepfungen_.end(), schluessel, vor);
    // A record has a handful of links: the end of them is found by walking.
    auto bis = von;
    while (bis != verknuepfungen_.end() && bis->quelle == quelle && bis->art_quelle == art)
        ++bis;
    return {von, bis};
}

const Ereignisart* Nachschlagetabellen::ereignisart(std::int64_t art) {
    auto& arten = arten_;
    auto it = arten.find(art);
    if (it == arten.end())
        it = arten.emplace(art, ereignisart_suchen(art)).first;
    return it->second ? &*it->second : nullptr;
}

void Nachschlagetabellen::alles_laden() {
    if (alles_geladen_)
        return;
    ereignisse();
    for (std::int64_t art : ereignisse_.arten())
        ereignisart(art);
    if (!verknuepfungen_geladen_)
        verknuepfungen_laden();
    if (!personen_geladen_)
        personen_laden();
    for (int zeichen = 0; zeichen < 256; ++zeichen) // the roles by the letter of a link
        sprachtext(1800 + zeichen);
    // Every record that a person or an event may point to, looked up as a writer looks it up.
    auto jeder = [](const char* tabelle, const std::function<void(RecordId)>& nachschlagen) {
        std::vector<RecordId> nummern;
        dao::Durchlauf d(*DB, std::string("SELECT DISTINCT Counter FROM ") + tabelle +
                                  " WHERE Counter IS NOT NULL");
        while (d.weiter())
            nummern.push_back(d.nummer(0));
        for (RecordId n : nummern)
            nachschlagen(n);
    };
    jeder("Ort", [&](RecordId n) { ort(n); });
    jeder("Adressen", [&](RecordId n) { adresse(n); });
    // A table that couldn't be opened (its cursor is null) holds nothing to point to.
    for (const auto& [t, name, rs] :
         {std::tuple(Verknuepft::Bilder, "Bilder", rs_Bilder.get()),
          std::tuple(Verknuepft::Notiz, "Notiz", rs_Notiz.get()),
          std::tuple(Verknuepft::Dokument, "Dokument", rs_Dokument.get())})
        if (rs)
            jeder(name, [&, t = t, rs = rs](RecordId n) { markiert(t, rs, n); });
    orte_ganz_ = adressen_ganz_ = true;
    for (Verknuepft t : {Verknuepft::Bilder, Verknuepft::Notiz, Verknuepft::Dokument})
        ganz_[static_cast<std::size_t>(t)] = true;
    alles_geladen_ = true;
}

const AdressEintrag& Nachschlagetabellen::adresse(RecordId datensatz) {
    static const AdressEintrag keine;
    auto it = adressen_.find(datensatz);
    if (it != adressen_.end())
        return it->second;
    if (adressen_ganz_)
        return keine;
    AdressEintrag e;
    dao::Recordset& rs = *rs_Adressen;
    rs.Index("Counter");
    rs.Seek("=", Value(datensatz));
    if (!rs.NoMatch() && markiert(Verknuepft::Adressen, rs)) {
        e.markiert = true;
        e.adresse = rtf_klartext(rs.get("adresse").text());
        e.listenname = rs.get("Listenname").text();
        e.ort = rs.get("Ort").toRecordId();
        e.memo = rtf_klartext(rs.get("Memo").text());
    }
    return adressen_.emplace(datensatz, std::move(e)).first->second;
}

const OrtEintrag& Nachschlagetabellen::ort(RecordId datensatz) {
    static const OrtEintrag keiner;
    auto& orte = orte_;
    auto it = orte.find(datensatz);
    if (it != orte.end())
        return it->second;
    if (orte_ganz_)
        return keiner;
    OrtEintrag e;
    dao::Recordset& ort = *rs_Ort;
    ort.Index("Counter");
    ort.Seek("=", Value(datensatz));
    if (!ort.NoMatch() && markiert(Verknuepft::Ort, ort)) {
        e.markiert = true;
        e.counter = ort.get("Counter").toRecordId();
        e.notiz = ort.get("Notiz").toRecordId();
        e.bild = ort.get("Bild").toRecordId();
        e.name = trimmed(ort.get("Name").text());
        e.hat_text = !isBlank(rtf_klartext(ort.get("Memo").text()));
    }
    return orte.emplace(datensatz, std::move(e)).first->second;
}

const std::string* Nachschlagetabellen::markiert(Verknuepft tabelle, dao::Recordset* rs,
                                                 RecordId datensatz) {
    if (!rs)
        return nullptr; // a table that couldn't be opened holds no record to point to
    auto& ziele = markiert_[static_cast<std::size_t>(tabelle)];
    auto it = ziele.find(datensatz);
    if (it == ziele.end() && ganz_[static_cast<std::size_t>(tabelle)])
        return nullptr;
    if (it == ziele.end()) {
        std::optional<std::string> counter;
        rs->Index("Counter");
        rs->Seek("=", Value(datensatz));
        if (!rs->NoMatch() && markiert(tabelle, *rs))
            counter = rs->get("Counter").toRecordId().text();
        it = ziele.emplace(datensatz, std::move(counter)).first;
    }
    return it->second ? &*it->second : nullptr;
}

} // namespace folio
