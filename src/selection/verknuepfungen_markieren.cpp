#include "selection/verknuepfungen_markieren.h"

#include "database/tabellen.h"

#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace folio {

namespace {

// A table that the closure marks, with its long-lived cursor, the flag that tells whether
// it marked anything there, and the letter by which the general links name its records.
struct Tabelle {
    const char* name;
    std::unique_ptr<dao::Recordset>* cursor;
    bool Huelle::*flag;
    char buchstabe;
};

const Tabelle Ereignisse{"Ereignis", &rs_Ereignis, &Huelle::hat_ereignisse, 'E'};
const Tabelle Notizen{"Notiz", &rs_Notiz, &Huelle::hat_notizen, 'R'};
const Tabelle Orte{"Ort", &rs_Ort, &Huelle::hat_orte, 'O'};
const Tabelle Dokumente{"Dokument", &rs_Dokument, &Huelle::hat_dokumente, 'U'};
const Tabelle Adressen{"Adressen", &rs_Adressen, &Huelle::hat_adressen, 'A'};
const Tabelle Bilder{"Bilder", &rs_Bilder, &Huelle::hat_bilder, 'B'};

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

// Marks the records of a table whose Counter is one of the numbers that `nummern` (a
// SELECT of one column) gives and that meet `bedingung`, and sets the table's flag where
// any was found. A number without a record marks nothing. One statement does for all
// numbers what a seek, Edit and Update does for each: marking is the same whatever the
// order, and a record marked twice is marked once.
void markieren(Huelle& h, const Tabelle& t, const std::string& nummern,
               const std::string& bedingung = "") {
    DB->Execute(std::string("UPDATE ") + t.name + " SET Markierung = -1 WHERE Counter IN (" +
                    nummern + ")" + (bedingung.empty() ? "" : " AND " + bedingung) + " ;",
                dao::dbFailOnError);
    if (DB->RecordsAffected() > 0)
        h.*t.flag = true;
}

// The numbers in a field of the marked records of a table, where the field isn't 0 (a
// Null counts as 0).
std::string feld_der_markierten(const char* feld, const char* tabelle) {
    return std::string("SELECT ") + feld + " FROM " + tabelle + " WHERE Markierung = True AND " +
           feld + " <> 0";
}

std::string counter_der_markierten(const char* tabelle) {
    return std::string("SELECT Counter FROM ") + tabelle + " WHERE Markierung = True";
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

// The addresses of the records that `quellen` gives, whose table has the letter `art` in
// Adressen_DS; a link to the number 0 is skipped.
void adressen_markieren(Huelle& h, const std::string& quellen, char art) {
    markieren(h, Adressen,
              std::string("SELECT Ziel FROM Adressen_DS WHERE ursprung = '") + art +
                  "' AND Ziel <> 0 AND Quelle IN (" + quellen + ")");
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

std::string liste(const std::vector<std::int64_t>& zahlen) {
    std::string s;
    for (std::int64_t z : zahlen)
        s += (s.empty() ? "" : ", ") + std::to_string(z);
    return s;
}

// The couples' events among `ereignisse` that are to be marked: those whose first and last
// link as a main person (exactly "d", in the order of the table) name two persons who are
// both selected; a person missing from Daten counts as not selected. Where a partner isn't
// selected, `partner_fehlt` is set; an event with fewer than two such links is left out in
// silence. The links and the selected persons are read once for all the events.
std::vector<RecordId> paare_waehlen(const std::vector<RecordId>& ereignisse, bool& partner_fehlt) {
    struct Partner {
        RecordId erster, zweiter;
        bool erster_gelesen = false;
    };
    std::unordered_map<RecordId, Partner> partner;
    partner.reserve(ereignisse.size());
    for (RecordId e : ereignisse)
        partner.emplace(e, Partner{});
    auto links =
        DB->OpenRecordset("SELECT Ziel, Quelle, Ursprung FROM Ereignis_DS WHERE Ursprung = 'd' ;");
    for (; !links->Eof(); links->MoveNext()) {
        if (links->get(2).text() != "d")
            continue;
        auto it = partner.find(links->get(0).toRecordId());
        if (it == partner.end())
            continue;
        Partner& p = it->second;
        (p.erster_gelesen ? p.zweiter : p.erster) = links->get(1).toRecordId();
        p.erster_gelesen = true;
    }
    links->Close();

    std::unordered_set<RecordId> gewaehlt;
    auto personen = DB->OpenRecordset("SELECT Counter FROM Daten WHERE Markierung = True ;");
    for (; !personen->Eof(); personen->MoveNext())
        gewaehlt.insert(personen->get(0).toRecordId());
    personen->Close();

    std::vector<RecordId> nehmen;
    for (RecordId e : ereignisse) {
        const Partner& p = partner[e];
        if (p.erster.isZero() || p.zweiter.isZero())
            continue;
        if (gewaehlt.count(p.erster) && gewaehlt.count(p.zweiter))
            nehmen.push_back(e);
        else
            partner_fehlt = true;
    }
    return nehmen;
}

// Pass 1: what the marked persons bring: their events (a couple's event only with both
// partners), their places, their image, their general links and their addresses.
void personen_durchgang(Huelle& h, Huellenanzeige& anzeige) {
    const std::string personen = counter_der_markierten("Daten");
    const std::int64_t anzahl =
        DB->OpenRecordset("SELECT count(*) FROM Daten WHERE Markierung = True")->get(0).toInt();
    anzeige.balken(0, anzahl);
    constexpr int Schritte = 8;
    int schritt = 0;
    auto weiter = [&] {
        anzeige.balken(anzahl * ++schritt / Schritte, anzahl);
        anzeige.ereignisse();
    };

    const std::string ereignisse_der_personen =
        "SELECT Ziel FROM Ereignis_DS WHERE Quelle IN (" + personen + ")";
    const std::vector<std::int64_t> paar_arten = arten_mehrerer_personen();
    markieren(h, Ereignisse, ereignisse_der_personen,
              paar_arten.empty() ? "" : "(Art IS NULL OR Art NOT IN (" + liste(paar_arten) + "))");
    weiter();
    if (!paar_arten.empty()) {
        std::vector<RecordId> paare;
        auto kandidaten =
            DB->OpenRecordset("SELECT Counter FROM Ereignis WHERE Art IN (" + liste(paar_arten) +
                              ") AND Counter IN (" + ereignisse_der_personen + ") ;");
        for (; !kandidaten->Eof(); kandidaten->MoveNext())
            paare.push_back(kandidaten->get(0).toRecordId());
        kandidaten->Close();
        for (RecordId e : paare_waehlen(paare, h.partner_fehlt))
            datensatz_markieren(h, Ereignisse, e);
    }
    weiter();
    for (const char* feld : {"Ort", "GOrt", "SOrt"}) {
        markieren(h, Orte, feld_der_markierten(feld, "Daten"));
        weiter();
    }
    markieren(h, Bilder, feld_der_markierten("Bild", "Daten"));
    weiter();
    quellen_ziele_markieren(h, personen, 'D');
    weiter();
    adressen_markieren(h, personen, 'D');
    weiter();
}

// Passes 2 to 9. Each works on the records of its table that are marked when it begins;
// what it marks in that same table itself isn't visited.
void weitere_durchgaenge(Huelle& h, Huellenanzeige& anzeige) {
    // 2: events.
    markieren(h, Orte, feld_der_markierten("Ort", "Ereignis"));
    quellen_ziele_markieren(h, counter_der_markierten("Ereignis"), 'E');
    // 3: documents.
    markieren(h, Orte, feld_der_markierten("Ort", "Dokument"));
    adressen_markieren(h, counter_der_markierten("Dokument"), 'U');
    quellen_ziele_markieren(h, counter_der_markierten("Dokument"), 'U');
    anzeige.ereignisse();
    // 4: notes.
    adressen_markieren(h, counter_der_markierten("Notiz"), 'R');
    // 5: addresses.
    markieren(h, Orte, feld_der_markierten("Ort", "Adressen"));
    quellen_ziele_markieren(h, counter_der_markierten("Adressen"), 'A');
    // 6: images.
    markieren(h, Orte, feld_der_markierten("Ort", "Bilder"));
    quellen_ziele_markieren(h, counter_der_markierten("Bilder"), 'B');
    // 7: places to their images.
    markieren(h, Bilder, feld_der_markierten("Bild", "Ort"));
    // 8: documents to their notes.
    markieren(h, Notizen, feld_der_markierten("Notiz", "Dokument"));
    // 9: places to their addresses.
    adressen_markieren(h, counter_der_markierten("Ort"), 'O');
}

} // namespace

void quellen_markieren(Huelle& h, RecordId datensatz, const std::string& Datensatz_art) {
    if (Datensatz_art.size() == 1)
        quellen_ziele_markieren(h, datensatz.sqlLiteral(), Datensatz_art[0]);
}

Huelle huelle_bilden(Huellenanzeige& anzeige) {
    Huelle h;
    // One transaction: the passes write many records, and a failure leaves the marks as
    // they were before.
    dao::Transaction schreiben(*DB);
    for (const char* sql : {"Update Ereignis Set Markierung = 0 WHERE Markierung <> 0  ;",
                            "Update Dokument Set Markierung = 0 WHERE Markierung <> 0 ;",
                            "Update Notiz Set Markierung = 0 WHERE Markierung <> 0 ;",
                            "Update Bilder Set Markierung = 0 WHERE Markierung <> 0 ;",
                            "Update Ort Set Markierung = 0 WHERE Markierung <> 0 ;",
                            "Update Adressen Set Markierung = 0 WHERE Markierung <> 0 ;"})
        DB->Execute(sql, dao::dbFailOnError);
    for (dao::Recordset* rs : {rs_Ereignis.get(), rs_Dokument.get(), rs_Notiz.get(),
                               rs_Bilder.get(), rs_Ort.get(), rs_Adressen.get()})
        rs->Index("Counter");
    personen_durchgang(h, anzeige);
    weitere_durchgaenge(h, anzeige);
    schreiben.commit();
    return h;
}

} // namespace folio
