#include "gedcom/nachschlagen.h"

#include "database/tabellen.h"
#include "database/text_util.h"
#include "gedcom/rtf.h"

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
    std::map<const dao::Recordset*, std::unordered_map<RecordId, std::optional<std::string>>>
        markiert;
};

Speicher& speicher() {
    static Speicher s;
    if (s.db != DB.get() || !DB || s.generation != DB->writeGeneration()) {
        s.orte.clear();
        s.arten.clear();
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

} // namespace

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
