// A family tree for the selection: persons, events and the records they reach, added by
// number, and the wizard's form with its switches off and the closure not run.
#pragma once

#include "support/export_fixture.h"

#include <set>
#include <string>

namespace folio::test {

struct SelectionFixture : ExportFixture {
    int link = 0;

    void SetUp() override {
        ExportFixture::SetUp();
        AuswahlForm& form = Auswahl();
        for (const char* key : {"Vorfahren", "Nachfahren", "Ehepartner", "Lebend"})
            form.knopf(0, key).set("Value", Value(0));
        form.verknuepfungen_aktuell = false;
        form.DBGrid(1).items("Rows").clear();
        form.weiter_freigeben(false);
    }

    void person(int id, bool markiert, int vater = 0, int mutter = 0, bool lebt = false,
                std::initializer_list<std::pair<const char*, Value>> mehr = {}) {
        add("Daten", {{"Counter", Value(RecordId(id))},
                      {"Markierung", Value(markiert)},
                      {"Lebt", Value(lebt)},
                      {"Vater", Value(RecordId(vater))},
                      {"Mutter", Value(RecordId(mutter))}});
        for (const auto& [feld, wert] : mehr)
            setzen("Daten", id, feld, wert);
    }
    void setzen(const char* tabelle, int id, const char* feld, const Value& wert) {
        auto rs = DB->OpenRecordset(std::string("SELECT * FROM ") + tabelle +
                                    " WHERE Counter = " + std::to_string(id));
        rs->Edit();
        rs->set(feld, wert);
        rs->Update();
    }
    void ereignis(int id, int art, int ort = 0, int bild = 0) {
        add("Ereignis", {{"Counter", Value(RecordId(id))},
                         {"Art", Value(art)},
                         {"Ort", Value(RecordId(ort))},
                         {"Bild", Value(RecordId(bild))}});
    }
    void teilnahme(int person, int ereignis, const char* ursprung) {
        add("Ereignis_DS", {{"Counter", Value(RecordId(++link))},
                            {"Quelle", Value(RecordId(person))},
                            {"Ziel", Value(RecordId(ereignis))},
                            {"Ursprung", Value(ursprung)}});
    }
    void ehe(int a, int b) {
        add("Daten_DS", {{"Counter", Value(RecordId(++link))},
                         {"Quelle", Value(RecordId(a))},
                         {"Ziel", Value(RecordId(b))},
                         {"Art", Value("E")}});
    }
    void quelle(int von, const char* art_von, int nach, const char* art_nach) {
        add("Quellen_DS", {{"Counter", Value(RecordId(++link))},
                           {"Quelle", Value(RecordId(von))},
                           {"Art_Quelle", Value(art_von)},
                           {"Ziel", Value(RecordId(nach))},
                           {"Art_Ziel", Value(art_nach)}});
    }
    void adresse_von(int von, const char* ursprung, int adresse) {
        add("Adressen_DS", {{"Counter", Value(RecordId(++link))},
                            {"Quelle", Value(RecordId(von))},
                            {"Ziel", Value(RecordId(adresse))},
                            {"Ursprung", Value(ursprung)}});
    }
    // A record of one of the linked tables, with the fields that point on.
    void datensatz(const char* tabelle, int id,
                   std::initializer_list<std::pair<const char*, Value>> felder = {}) {
        add(tabelle, {{"Counter", Value(RecordId(id))}});
        for (const auto& [feld, wert] : felder)
            setzen(tabelle, id, feld, wert);
    }

    // The numbers of the marked records of a table.
    std::set<int> markiert(const char* tabelle) {
        std::set<int> s;
        auto rs = DB->OpenRecordset(std::string("SELECT Counter FROM ") + tabelle +
                                    " WHERE Markierung = TRUE");
        for (; !rs->Eof(); rs->MoveNext())
            s.insert(static_cast<int>(rs->get(0).toInt()));
        return s;
    }
};

} // namespace folio::test
