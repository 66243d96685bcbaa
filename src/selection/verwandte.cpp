#include "selection/verwandte.h"

#include "database/tabellen.h"
#include "frame/platform.h"

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace folio {

namespace {

// A list of the walk with a set beside it, so that asking whether a person stands in it
// doesn't walk the list. The list keeps its order and may hold a person twice where the
// walk adds one twice.
template <typename Zeile> struct Liste {
    std::vector<Zeile> zeilen;
    std::unordered_set<RecordId> enthalten;
    void anfuegen(const Zeile& z, RecordId nummer) {
        zeilen.push_back(z);
        enthalten.insert(nummer);
    }
    bool hat(RecordId nummer) const { return enthalten.count(nummer) != 0; }
};

struct Verwandter {
    int generation;
    RecordId nummer;
};

class Walk {
public:
    Walk(RecordId angeklickt, bool neuer_stand, bool ehepartner)
        : neuer_stand_(neuer_stand), ehepartner_(ehepartner) {
        verwandte_.anfuegen({1, angeklickt}, angeklickt);
        partner_liste_.zeilen.push_back(RecordId()); // held free for the ticked person
    }

    void vorfahren(const std::function<void()>& nach_vorfahren);
    void nachfahren();
    void ehepartner();

private:
    void partner_vormerken(RecordId nummer) {
        if (ehepartner_)
            partner_liste_.anfuegen(nummer, nummer);
    }
    // Gives the current person of rs_Daten the new state.
    void markieren();
    void alle_markieren();
    // The children of each person, as "Select Counter FROM Daten WHERE Vater = N OR Mutter
    // = N ORDER BY Gjahr ;" gives them: read once per walk, since the parents' fields have
    // no index.
    const std::vector<RecordId>& kinder(RecordId person);

    bool neuer_stand_;
    bool ehepartner_;
    Liste<Verwandter> verwandte_;
    Liste<RecordId> partner_liste_;
    bool kinder_gelesen_ = false;
    std::unordered_map<RecordId, std::vector<RecordId>> kinder_;
};

void Walk::markieren() {
    dao::Recordset& d = *rs_Daten;
    if (d.get("markierung").toBool() == neuer_stand_)
        return;
    d.Edit();
    d.set("markierung", Value(neuer_stand_));
    d.Update();
}

void Walk::alle_markieren() {
    dao::Recordset& d = *rs_Daten;
    for (const Verwandter& v : verwandte_.zeilen) {
        d.Seek("=", Value(v.nummer));
        if (!d.NoMatch())
            markieren();
    }
}

void Walk::vorfahren(const std::function<void()>& nach_vorfahren) {
    dao::Recordset& d = *rs_Daten;
    d.Index("Counter");
    for (std::size_t i = 0; i < verwandte_.zeilen.size(); ++i) {
        const Verwandter v = verwandte_.zeilen[i];
        if (v.generation >= VorfahrenGrenze)
            continue;
        d.Seek("=", Value(v.nummer));
        if (d.NoMatch())
            continue;
        RecordId eltern[] = {d.get("vater").toRecordId(), d.get("mutter").toRecordId()};
        for (RecordId& e : eltern)
            if (e > RecordId() && verwandte_.hat(e))
                e = RecordId();
        for (RecordId e : eltern)
            if (!e.isZero()) {
                verwandte_.anfuegen({v.generation + 1, e}, e);
                partner_vormerken(e);
            }
    }
    alle_markieren();
    if (nach_vorfahren)
        nach_vorfahren();
    platform().doEvents();
}

const std::vector<RecordId>& Walk::kinder(RecordId person) {
    if (!kinder_gelesen_) {
        kinder_gelesen_ = true;
        struct Kind {
            RecordId eltern, kind;
            bool ohne_jahr;
            std::int64_t jahr;
        };
        std::vector<Kind> alle;
        auto rs = DB->OpenRecordset("Select Counter, Vater, Mutter, Gjahr FROM Daten ;");
        for (; !rs->Eof(); rs->MoveNext()) {
            const Value jahr = rs->get(3);
            const RecordId kind = rs->get(0).toRecordId();
            const RecordId vater = rs->get(1).toRecordId(), mutter = rs->get(2).toRecordId();
            alle.push_back({vater, kind, jahr.isNull(), jahr.isNull() ? 0 : jahr.toInt()});
            if (mutter != vater)
                alle.push_back({mutter, kind, jahr.isNull(), jahr.isNull() ? 0 : jahr.toInt()});
        }
        // Sorted by the birth year, a missing year first; children of the same year stay in
        // the order of the table.
        std::stable_sort(alle.begin(), alle.end(), [](const Kind& a, const Kind& b) {
            return std::tie(a.eltern, b.ohne_jahr, a.jahr) <
                   std::tie(b.eltern, a.ohne_jahr, b.jahr);
        });
        for (const Kind& k : alle)
            kinder_[k.eltern].push_back(k.kind);
    }
    static const std::vector<RecordId> keine;
    auto it = kinder_.find(person);
    return it == kinder_.end() ? keine : it->second;
}

void Walk::nachfahren() {
    // The ancestors are out of the list (and already marked); the test whether a child is
    // known looks at the rows from row 1 on, so a loop back to the ticked person enters it
    // once more.
    verwandte_.zeilen.resize(1);
    verwandte_.enthalten.clear();
    for (std::size_t i = 0; i < verwandte_.zeilen.size(); ++i) {
        const Verwandter v = verwandte_.zeilen[i];
        if (v.generation >= NachfahrenGrenze)
            continue;
        for (RecordId kind : kinder(v.nummer)) {
            if (verwandte_.hat(kind))
                continue;
            verwandte_.anfuegen({v.generation + 1, kind}, kind);
            partner_vormerken(kind);
        }
    }
    alle_markieren();
}

void Walk::ehepartner() {
    dao::Recordset& d = *rs_Daten;
    d.Index("Counter");
    const RecordId angeklickt = verwandte_.zeilen.front().nummer;
    partner_liste_.zeilen.front() = angeklickt;
    partner_liste_.enthalten.insert(angeklickt);
    for (std::size_t i = 0; i < partner_liste_.zeilen.size(); ++i) {
        const RecordId nummer = partner_liste_.zeilen[i];
        if (nummer.isZero())
            continue;
        const std::string n = nummer.numberText();
        auto ehen = DB->OpenRecordset(
            "Select DISTINCT Ziel , Quelle FROM Daten_DS WHERE Art = 'E' AND ( Quelle =" + n +
            "OR ZIEL = " + n + ") ;");
        for (; !ehen->Eof(); ehen->MoveNext()) {
            const RecordId ziel = ehen->get("ziel").toRecordId();
            const RecordId partner = ziel != nummer ? ziel : ehen->get("quelle").toRecordId();
            d.Seek("=", Value(partner));
            if (d.NoMatch())
                continue;
            markieren();
            const RecordId gefunden = d.get("Counter").toRecordId();
            if (!partner_liste_.hat(gefunden))
                partner_liste_.anfuegen(gefunden, gefunden);
        }
    }
}

} // namespace

void verwandte_markieren(RecordId person, bool markierung, const Verwandtenwahl& wahl,
                         const std::function<void()>& nach_vorfahren) {
    // The marks of a walk are written together.
    dao::Transaction schreiben(*DB);
    Walk walk(person, markierung, wahl.ehepartner);
    if (wahl.vorfahren)
        walk.vorfahren(nach_vorfahren);
    if (wahl.nachfahren)
        walk.nachfahren();
    if (wahl.ehepartner)
        walk.ehepartner();
    if (wahl.ohne_lebende)
        DB->Execute("Update Daten Set Markierung = 0 WHERE Lebt = TRUE ;", dao::dbFailOnError);
    schreiben.commit();
}

} // namespace folio
