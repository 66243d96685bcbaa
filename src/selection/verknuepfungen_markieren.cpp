#include "selection/verknuepfungen_markieren.h"

#include "database/tabellen.h"
#include "engine/connection_setup.h"
#include "engine/durchlauf.h"
#include "engine/nebenlauf.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace folio {

namespace {

// A table that the closure marks, with its long-lived cursor, the flag that tells whether
// it marked anything there, and the letter by which the general links name its records.
struct Tabelle {
    Verknuepft tabelle;
    const char* name;
    std::unique_ptr<dao::Recordset>* cursor;
    bool Huelle::*flag;
    char buchstabe;
};

const Tabelle Ereignisse{Verknuepft::Ereignis, "Ereignis", &rs_Ereignis, &Huelle::hat_ereignisse,
                         'E'};
const Tabelle Notizen{Verknuepft::Notiz, "Notiz", &rs_Notiz, &Huelle::hat_notizen, 'R'};
const Tabelle Orte{Verknuepft::Ort, "Ort", &rs_Ort, &Huelle::hat_orte, 'O'};
const Tabelle Dokumente{Verknuepft::Dokument, "Dokument", &rs_Dokument, &Huelle::hat_dokumente,
                        'U'};
const Tabelle Adressen{Verknuepft::Adressen, "Adressen", &rs_Adressen, &Huelle::hat_adressen, 'A'};
const Tabelle Bilder{Verknuepft::Bilder, "Bilder", &rs_Bilder, &Huelle::hat_bilder, 'B'};

// The targets of the general links, in the order of their letters' table.
const Tabelle* const QuellenZiele[] = {&Ereignisse, &Notizen,  &Orte,
                                       &Dokumente,  &Adressen, &Bilder};

// Marks one record: seeks its number on the index Counter; where it exists, it gets the
// mark and the table its flag. A record marked already stays as it is.
void datensatz_markieren(Huelle& h, const Tabelle& t, RecordId nummer) {
    dao::Recordset& rs = **t.cursor;
    rs.Seek("=", Value(nummer));
    if (rs.NoMatch())
        return;
    h.*t.flag = true;
    if (rs.get("markierung").toBool())
        return;
    rs.Edit();
    rs.set("markierung", Value(true));
    rs.Update();
}

// The general links of the records that `quellen` gives (a SELECT of their Counter, or
// one number), whose table has the letter `art`: each target is marked in the table of its
// exact letter; other letters are passed over. The links are read before anything is
// marked, so the records' own table may be among the targets.
void quellen_ziele_markieren(Huelle& h, const std::string& quellen, char art) {
    std::vector<std::unordered_set<RecordId>> ziele(std::size(QuellenZiele));
    auto links = DB->OpenRecordset(std::string("SELECT Art_Ziel, Ziel FROM Quellen_DS WHERE "
                                               "Art_Quelle = '") +
                                   art + "' AND Quelle IN (" + quellen + ") ;");
    for (; !links->Eof(); links->MoveNext()) {
        const std::string buchstabe = links->get(0).text();
        for (std::size_t i = 0; i < ziele.size(); ++i)
            if (buchstabe.size() == 1 && buchstabe[0] == QuellenZiele[i]->buchstabe)
                ziele[i].insert(links->get(1).toRecordId());
    }
    links->Close();
    for (std::size_t i = 0; i < ziele.size(); ++i)
        for (RecordId ziel : ziele[i])
            datensatz_markieren(h, *QuellenZiele[i], ziel);
}

// The kinds of events that the catalogue gives more or fewer than one main person. A kind
// that it doesn't know counts as a kind of one person; where a kind stands twice, its
// first row counts.
std::vector<std::int64_t> arten_mehrerer_personen() {
    std::map<std::int64_t, std::int64_t> hauptpersonen;
    dao::Recordset& katalog = *rs_Deutsch;
    for (katalog.MoveFirst(); !katalog.Eof(); katalog.MoveNext())
        hauptpersonen.emplace(katalog.get("Index").toInt(),
                              katalog.get("maxhauptpersonen").toInt());
    std::vector<std::int64_t> arten;
    for (const auto& [art, anzahl] : hauptpersonen)
        if (anzahl != 1)
            arten.push_back(art);
    return arten;
}

// --- the closure in memory ---------------------------------------------------------------

constexpr std::uint32_t Kein = std::numeric_limits<std::uint32_t>::max();

// The numbers of the records of a table, sorted, and the position of a number among them.
// Where the numbers are whole and without a gap, as most trees number their records, the
// position is reckoned instead of searched.
class Verzeichnis {
public:
    // `nummern` sorted and unique.
    void setzen(std::vector<RecordId> nummern) {
        nummern_ = std::move(nummern);
        dicht_ =
            !nummern_.empty() &&
            nummern_.back().units() - nummern_.front().units() ==
                static_cast<std::int64_t>(nummern_.size() - 1) * RecordId::Scale &&
            std::all_of(nummern_.begin(), nummern_.end(), [](RecordId n) { return n.isWhole(); });
    }
    std::uint32_t position(RecordId n) const {
        if (nummern_.empty())
            return Kein;
        if (dicht_) {
            const std::int64_t d = n.units() - nummern_.front().units();
            if (d < 0 || d % RecordId::Scale != 0 ||
                d / RecordId::Scale >= static_cast<std::int64_t>(nummern_.size()))
                return Kein;
            return static_cast<std::uint32_t>(d / RecordId::Scale);
        }
        auto it = std::lower_bound(nummern_.begin(), nummern_.end(), n);
        return it != nummern_.end() && *it == n ? static_cast<std::uint32_t>(it - nummern_.begin())
                                                : Kein;
    }
    bool enthaelt(RecordId n) const { return position(n) != Kein; }
    std::size_t size() const { return nummern_.size(); }
    RecordId operator[](std::size_t i) const { return nummern_[i]; }

private:
    std::vector<RecordId> nummern_;
    bool dicht_ = false;
};

// One linked table as the closure needs it: the numbers of its records, where they point
// (their place as a position in Ort; the image of a place, the note of a document), the
// kind of an event that needs both partners, and the marks.
struct Bestand {
    Verzeichnis nummern;
    std::vector<std::uint32_t> ort;
    std::vector<RecordId> feld;
    std::vector<bool> paar, markiert;

    void markieren(RecordId n) {
        if (const std::uint32_t p = nummern.position(n); p != Kein)
            markiert[p] = true;
    }
    std::vector<RecordId> markierte() const {
        std::vector<RecordId> m;
        for (std::size_t i = 0; i < markiert.size(); ++i)
            if (markiert[i])
                m.push_back(nummern[i]);
        return m;
    }
};

// A field that points to a record: Null counts as 0, which points nowhere.
RecordId verweis(const Value& v) {
    return v.isNull() ? RecordId() : v.toRecordId();
}
RecordId verweis(const dao::Durchlauf& rs, int spalte) {
    return rs.istNull(spalte) ? RecordId() : rs.nummer(spalte);
}

// Reads the rows of `sql` once, forward, without a recordset's bookkeeping; on the run's
// connection or on the one given.
template <class Zeile>
void lesen(const sqlite::Connection& verbindung, const std::string& sql, Zeile&& zeile) {
    dao::Durchlauf rs(verbindung, sql);
    while (rs.weiter())
        zeile(rs);
}
template <class Zeile> void lesen(const std::string& sql, Zeile&& zeile) {
    lesen(DB->connection(), sql, std::forward<Zeile>(zeile));
}

// The letter among `buchstaben` that `text` equals without regard to case as the tree's
// text columns compare ("d" is "D"), or 0.
char buchstabe_ohne_fall(const std::string& text, std::string_view buchstaben) {
    if (text.size() == 1 && static_cast<unsigned char>(text[0]) < 0x80) {
        const char c = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
        return buchstaben.find(c) != std::string_view::npos ? c : 0;
    }
    for (char c : buchstaben)
        if (compareNoCase(text, std::string_view(&c, 1)) == 0)
            return c;
    return 0;
}

// The table that a general link names by its exact letter, or none.
std::optional<Verknuepft> ziel_tabelle(const std::string& buchstabe) {
    if (buchstabe.size() != 1)
        return std::nullopt;
    for (const Tabelle* t : QuellenZiele)
        if (buchstabe[0] == t->buchstabe)
            return t->tabelle;
    return std::nullopt;
}

bool ist_paar_art(const Value& art, const std::vector<std::int64_t>& paar_arten) {
    if (art.kind() == Value::Kind::Integer)
        return std::binary_search(paar_arten.begin(), paar_arten.end(), art.toInt());
    if (art.kind() == Value::Kind::Double)
        return std::any_of(paar_arten.begin(), paar_arten.end(), [&](std::int64_t a) {
            return static_cast<double>(a) == art.toDouble();
        });
    return false;
}

// A link between two records of the linked tables, by their positions.
struct Verbindung {
    std::uint32_t quelle, ziel;
    Verknuepft ziel_tabelle;
};

// A participant as a main person of a couple's event, in the order of Ereignis_DS.
struct Hauptperson {
    std::uint32_t ereignis;
    RecordId person;
};

// The links of Ereignis_DS as read, before the events are known: the person (Quelle) and
// the event (Ziel), Null as 0, whether both are there, and whether the letter is exactly
// "d". Three arrays rather than one of a padded struct: a million persons bring seven
// million links.
struct Teilnahmen {
    std::vector<RecordId> personen, ereignisse;
    std::vector<std::uint8_t> art;
    static constexpr std::uint8_t BeideDa = 1, GenauD = 2;
};

class Rechnung {
public:
    Rechnung(Huelle& h, Huellenanzeige& anzeige, const Personenwahl& personen)
        : h_(h), anzeige_(anzeige), wahl_(personen) {}

    void lesen_und_folgen() {
        tabellen_lesen();
        paar_arten_ = arten_mehrerer_personen();
        // The persons and the links of events are read beside the events, on a second
        // connection where the tree allows it: no pass of those touches the events' arrays.
        Teilnahmen teilnahmen;
        dao::Nebenlauf nebenher(*DB, [&](const sqlite::Connection& verbindung) {
            personen_lesen(verbindung);
            teilnahmen = teilnahmen_lesen(verbindung);
        });
        ereignisse_lesen();
        nebenher.warten();
        anzeige_.balken(0, anzahl_);
        weiter();
        teilnahmen_folgen(teilnahmen);
        teilnahmen = {};
        weiter();
        paare_markieren();
        weiter();
        quellen_lesen();
        weiter();
        adressen_lesen();
        weiter();
        weitere_durchgaenge();
        weiter();
        for (std::size_t t = 0; t < AnzahlVerknuepfte; ++t)
            h_.marken.setzen(static_cast<Verknuepft>(t), b_[t].markierte());
        weiter();
    }

private:
    Bestand& b(Verknuepft t) { return b_[static_cast<std::size_t>(t)]; }
    // The bar moves by one of the seven steps of lesen_und_folgen.
    void weiter() {
        anzeige_.balken(anzahl_ * ++schritt_ / 7, anzahl_);
        anzeige_.ereignisse();
    }

    // Reads the numbers of a table and the fields `felder` after Counter: the first a place,
    // the second any other reference (or an event's kind); sorts them by number.
    void tabelle_lesen(Verknuepft t, const char* felder, int anzahl_felder,
                       const std::vector<std::int64_t>* paar_arten = nullptr) {
        Bestand& ziel = b(t);
        std::vector<RecordId> nummern;
        std::vector<std::uint32_t> ort;
        std::vector<RecordId> feld;
        std::vector<bool> paar;
        const Verzeichnis& orte = b(Verknuepft::Ort).nummern;
        lesen(std::string("SELECT Counter") + felder + " FROM " +
                  VerknuepfteTabellen[static_cast<std::size_t>(t)],
              [&](dao::Durchlauf& rs) {
                  if (rs.istNull(0))
                      return;
                  nummern.push_back(rs.nummer(0));
                  if (t == Verknuepft::Ort) {
                      feld.push_back(verweis(rs, 1));
                      return;
                  }
                  if (anzahl_felder >= 1) {
                      const RecordId o = verweis(rs, 1);
                      ort.push_back(o.isZero() ? Kein : orte.position(o));
                  }
                  if (paar_arten)
                      paar.push_back(ist_paar_art(rs.wert(2), *paar_arten));
                  else if (anzahl_felder >= 2)
                      feld.push_back(verweis(rs, 2));
              });
        ordnen(nummern, ort, feld, paar);
        ziel.nummern.setzen(std::move(nummern));
        ziel.ort = std::move(ort);
        ziel.feld = std::move(feld);
        ziel.paar = std::move(paar);
        ziel.markiert.assign(ziel.nummern.size(), false);
    }

    // Sorts the rows by number where the table didn't give them so; of two rows of one
    // number the first counts.
    static void ordnen(std::vector<RecordId>& nummern, std::vector<std::uint32_t>& ort,
                       std::vector<RecordId>& feld, std::vector<bool>& paar) {
        if (std::adjacent_find(nummern.begin(), nummern.end(), std::greater_equal<>()) ==
            nummern.end())
            return;
        std::vector<std::uint32_t> folge(nummern.size());
        for (std::uint32_t i = 0; i < folge.size(); ++i)
            folge[i] = i;
        std::stable_sort(folge.begin(), folge.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return nummern[a] < nummern[b]; });
        folge.erase(
            std::unique(folge.begin(), folge.end(),
                        [&](std::uint32_t a, std::uint32_t b) { return nummern[a] == nummern[b]; }),
            folge.end());
        auto umstellen = [&](auto& v) {
            if (v.empty())
                return;
            std::remove_reference_t<decltype(v)> neu;
            neu.reserve(folge.size());
            for (std::uint32_t i : folge)
                neu.push_back(v[i]);
            v = std::move(neu);
        };
        umstellen(nummern);
        umstellen(ort);
        umstellen(feld);
        umstellen(paar);
    }

    void tabellen_lesen() {
        tabelle_lesen(Verknuepft::Ort, ", Bild", 1);
        tabelle_lesen(Verknuepft::Bilder, ", Ort", 1);
        tabelle_lesen(Verknuepft::Notiz, "", 0);
        tabelle_lesen(Verknuepft::Adressen, ", Ort", 1);
        tabelle_lesen(Verknuepft::Dokument, ", Ort, Notiz", 2);
    }

    // Pass 1, the fields of the marked persons: their places and their image.
    void personen_lesen(const sqlite::Connection& verbindung) {
        std::vector<RecordId> personen;
        lesen(verbindung,
              "SELECT Counter, Ort, GOrt, SOrt, Bild FROM Daten WHERE " + wahl_.bedingung(),
              [&](dao::Durchlauf& rs) {
                  if (!rs.istNull(0))
                      personen.push_back(rs.nummer(0));
                  for (int feld = 1; feld <= 4; ++feld)
                      if (const RecordId n = verweis(rs, feld); !n.isZero())
                          b(feld < 4 ? Verknuepft::Ort : Verknuepft::Bilder).markieren(n);
              });
        anzahl_ = static_cast<long long>(personen.size());
        std::sort(personen.begin(), personen.end());
        personen.erase(std::unique(personen.begin(), personen.end()), personen.end());
        personen_.setzen(std::move(personen));
    }

    void ereignisse_lesen() { tabelle_lesen(Verknuepft::Ereignis, ", Ort, Art", 2, &paar_arten_); }

    static Teilnahmen teilnahmen_lesen(const sqlite::Connection& verbindung) {
        Teilnahmen t;
        // Room for every link spares the copies of growing, beside the events being read.
        dao::Durchlauf anzahl(verbindung, "SELECT count(*) FROM Ereignis_DS");
        const auto zeilen = static_cast<std::size_t>(anzahl.weiter() ? anzahl.ganz(0) : 0);
        t.personen.reserve(zeilen);
        t.ereignisse.reserve(zeilen);
        t.art.reserve(zeilen);
        lesen(verbindung, "SELECT Quelle, Ziel, Ursprung FROM Ereignis_DS",
              [&](dao::Durchlauf& rs) {
                  t.personen.push_back(verweis(rs, 0));
                  t.ereignisse.push_back(verweis(rs, 1));
                  t.art.push_back(
                      static_cast<std::uint8_t>((rs.istNull(0) || rs.istNull(1) ? 0 : t.BeideDa) |
                                                (rs.textAnsicht(2) == "d" ? t.GenauD : 0)));
              });
        return t;
    }

    // Pass 1, the events of the marked persons: those of one person at once; a couple's
    // event becomes a candidate, and the main persons of couples' events are kept in the
    // order of the table.
    void teilnahmen_folgen(const Teilnahmen& t) {
        Bestand& e = b(Verknuepft::Ereignis);
        kandidat_.assign(e.nummern.size(), false);
        for (std::size_t i = 0; i < t.ereignisse.size(); ++i) {
            const std::uint32_t p = e.nummern.position(t.ereignisse[i]);
            if (p == Kein)
                continue;
            if (t.art[i] & t.BeideDa && personen_.enthaelt(t.personen[i])) {
                if (e.paar[p])
                    kandidat_[p] = true;
                else
                    e.markiert[p] = true;
            }
            if (e.paar[p] && t.art[i] & t.GenauD)
                hauptpersonen_.push_back({p, t.personen[i]});
        }
    }

    // Pass 1, the couples' events: the first and the last main person decide; both must be
    // selected. Fewer than two main persons (or one of number 0) leave the event out silently.
    void paare_markieren() {
        std::stable_sort(
            hauptpersonen_.begin(), hauptpersonen_.end(),
            [](const Hauptperson& a, const Hauptperson& b) { return a.ereignis < b.ereignis; });
        Bestand& e = b(Verknuepft::Ereignis);
        for (auto i = hauptpersonen_.begin(); i != hauptpersonen_.end();) {
            auto ende = std::find_if(i, hauptpersonen_.end(), [&](const Hauptperson& h) {
                return h.ereignis != i->ereignis;
            });
            const RecordId erster = i->person;
            const RecordId zweiter = ende - i >= 2 ? (ende - 1)->person : RecordId();
            if (kandidat_[i->ereignis] && !erster.isZero() && !zweiter.isZero()) {
                if (personen_.enthaelt(erster) && personen_.enthaelt(zweiter))
                    e.markiert[i->ereignis] = true;
                else
                    h_.partner_fehlt = true;
            }
            i = ende;
        }
        hauptpersonen_ = {};
        kandidat_ = {};
    }

    // The general links. Those of the marked persons are followed at once (pass 1); those
    // of the other tables are kept for their passes, by positions.
    void quellen_lesen() {
        lesen("SELECT Quelle, Art_Quelle, Ziel, Art_Ziel FROM Quellen_DS", [&](dao::Durchlauf& rs) {
            const std::optional<Verknuepft> t = ziel_tabelle(rs.wert(3).text());
            const Value quelle = rs.wert(0);
            if (!t || quelle.isNull())
                return;
            const char art = buchstabe_ohne_fall(rs.wert(1).text(), "DEUAB");
            if (!art)
                return;
            // A target of Null is looked up as 0, as a seek does.
            const std::uint32_t ziel = b(*t).nummern.position(verweis(rs.wert(2)));
            if (ziel == Kein)
                return;
            if (art == 'D') {
                if (personen_.enthaelt(quelle.toRecordId()))
                    b(*t).markiert[ziel] = true;
                return;
            }
            const Verknuepft q = art == 'E'   ? Verknuepft::Ereignis
                                 : art == 'U' ? Verknuepft::Dokument
                                 : art == 'A' ? Verknuepft::Adressen
                                              : Verknuepft::Bilder;
            const std::uint32_t von = b(q).nummern.position(quelle.toRecordId());
            if (von != Kein)
                quellen_[static_cast<std::size_t>(q)].push_back({von, ziel, *t});
        });
    }

    // The address links, the same way: to an address that exists, never to 0.
    void adressen_lesen() {
        lesen("SELECT Quelle, Ziel, Ursprung FROM Adressen_DS", [&](dao::Durchlauf& rs) {
            const Value quelle = rs.wert(0), ziel = rs.wert(1);
            if (quelle.isNull() || verweis(ziel).isZero())
                return;
            const char art = buchstabe_ohne_fall(rs.wert(2).text(), "DURO");
            if (!art)
                return;
            const std::uint32_t adresse =
                b(Verknuepft::Adressen).nummern.position(ziel.toRecordId());
            if (adresse == Kein)
                return;
            if (art == 'D') {
                if (personen_.enthaelt(quelle.toRecordId()))
                    b(Verknuepft::Adressen).markiert[adresse] = true;
                return;
            }
            const Verknuepft q = art == 'U'   ? Verknuepft::Dokument
                                 : art == 'R' ? Verknuepft::Notiz
                                              : Verknuepft::Ort;
            const std::uint32_t von = b(q).nummern.position(quelle.toRecordId());
            if (von != Kein)
                adressen_[static_cast<std::size_t>(q)].push_back(
                    {von, adresse, Verknuepft::Adressen});
        });
    }

    // The places of the marked records of a table.
    void orte_folgen(Verknuepft t) {
        Bestand& von = b(t);
        Bestand& orte = b(Verknuepft::Ort);
        for (std::size_t i = 0; i < von.markiert.size(); ++i)
            if (von.markiert[i] && von.ort[i] != Kein)
                orte.markiert[von.ort[i]] = true;
    }

    // The kept links (general or address links) of the records of `t` that are marked
    // when the pass begins; what they mark in `t` itself isn't followed.
    void verbindungen_folgen(
        Verknuepft t,
        std::array<std::vector<Verbindung>, AnzahlVerknuepfte> Rechnung::*verbindungen) {
        const std::vector<bool> markiert = b(t).markiert;
        for (const Verbindung& v : (this->*verbindungen)[static_cast<std::size_t>(t)])
            if (markiert[v.quelle])
                b(v.ziel_tabelle).markiert[v.ziel] = true;
    }

    // The references in `feld` of the marked records of `t`, into `nach`.
    void feld_folgen(Verknuepft t, Verknuepft nach) {
        Bestand& von = b(t);
        for (std::size_t i = 0; i < von.markiert.size(); ++i)
            if (von.markiert[i] && !von.feld[i].isZero())
                b(nach).markieren(von.feld[i]);
    }

    void weitere_durchgaenge() {
        using V = Verknuepft;
        // 2: events.
        orte_folgen(V::Ereignis);
        verbindungen_folgen(V::Ereignis, &Rechnung::quellen_);
        // 3: documents.
        orte_folgen(V::Dokument);
        verbindungen_folgen(V::Dokument, &Rechnung::adressen_);
        verbindungen_folgen(V::Dokument, &Rechnung::quellen_);
        // 4: notes.
        verbindungen_folgen(V::Notiz, &Rechnung::adressen_);
        // 5: addresses.
        orte_folgen(V::Adressen);
        verbindungen_folgen(V::Adressen, &Rechnung::quellen_);
        // 6: images.
        orte_folgen(V::Bilder);
        verbindungen_folgen(V::Bilder, &Rechnung::quellen_);
        // 7: places to their images.
        feld_folgen(V::Ort, V::Bilder);
        // 8: documents to their notes.
        feld_folgen(V::Dokument, V::Notiz);
        // 9: places to their addresses.
        verbindungen_folgen(V::Ort, &Rechnung::adressen_);
    }

    Huelle& h_;
    Huellenanzeige& anzeige_;
    const Personenwahl& wahl_;
    long long anzahl_ = 0;
    int schritt_ = 0;
    std::array<Bestand, AnzahlVerknuepfte> b_;
    Verzeichnis personen_;
    std::vector<std::int64_t> paar_arten_;
    std::vector<bool> kandidat_;
    std::vector<Hauptperson> hauptpersonen_;
    // The kept links of each table: its general links and its address links.
    std::array<std::vector<Verbindung>, AnzahlVerknuepfte> quellen_, adressen_;
};

} // namespace

void quellen_markieren(Huelle& h, RecordId datensatz, const std::string& Datensatz_art) {
    if (Datensatz_art.size() == 1)
        quellen_ziele_markieren(h, datensatz.sqlLiteral(), Datensatz_art[0]);
}

Huelle huelle_berechnen(Huellenanzeige& anzeige, const Personenwahl& personen) {
    Huelle h;
    // One read of the tree: its tables don't change between the statements.
    std::optional<dao::Transaction> lesen;
    if (!DB->inTransaction())
        lesen.emplace(*DB, false);
    Rechnung(h, anzeige, personen).lesen_und_folgen();
    h.hat_ereignisse = h.marken.anzahl(Verknuepft::Ereignis) > 0;
    h.hat_orte = h.marken.anzahl(Verknuepft::Ort) > 0;
    h.hat_notizen = h.marken.anzahl(Verknuepft::Notiz) > 0;
    h.hat_dokumente = h.marken.anzahl(Verknuepft::Dokument) > 0;
    h.hat_bilder = h.marken.anzahl(Verknuepft::Bilder) > 0;
    h.hat_adressen = h.marken.anzahl(Verknuepft::Adressen) > 0;
    if (lesen)
        lesen->commit();
    return h;
}

Huelle huelle_bilden(Huellenanzeige& anzeige) {
    // One transaction: a failure leaves the marks as they were before.
    dao::Transaction schreiben(*DB);
    Huelle h = huelle_berechnen(anzeige);
    h.marken.schreiben();
    // The cursors stand on their numbers, as the seeks of quellen_markieren need them.
    for (dao::Recordset* rs : {rs_Ereignis.get(), rs_Dokument.get(), rs_Notiz.get(),
                               rs_Bilder.get(), rs_Ort.get(), rs_Adressen.get()})
        rs->Index("Counter");
    schreiben.commit();
    return h;
}

} // namespace folio
