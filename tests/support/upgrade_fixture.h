// An installation for opening family trees: the host's folder with the template and the
// sample database, a data folder with the side databases and the language texts of the
// staged build, the user's settings with a key of their own, a folder for the trees of a
// test, and a scripted platform that records every message.
#pragma once

#include "database/oeffnen.h"
#include "database/schema/schema.h"
#include "database/tabellen.h"
#include "database/upgrade/kette.h"
#include "engine/engine.h"
#include "engine/errors.h"
#include "engine/recordset.h"
#include "engine/text_util.h"
#include "frame/globals.h"
#include "frame/platform.h"
#include "frame/settings_store.h"
#include "frame/sprache.h"
#include "frame/start.h"
#include "support/scripted_scope.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace folio::test {

// Where a family tree differs from the current schema: tables, fields with their type, the
// size of texts and the zero-length flag, and indexes with their fields and uniqueness.
// The order of fields doesn't count, nor the case of names. Empty when the file is alike.
inline std::vector<std::string> schema_unterschiede(dao::Database& db) {
    std::vector<std::string> u;
    std::vector<std::string> tabellen = db.TableNames();
    for (const schema::Table& t : schema::mainTables()) {
        std::erase_if(tabellen, [&](const std::string& n) { return equalsNoCase(n, t.name); });
        if (!db.hasTable(t.name)) {
            u.push_back("table " + std::string(t.name) + " missing");
            continue;
        }
        dao::TableDef def = db.tableDef(t.name);
        std::vector<dao::FieldDef> felder = def.Fields();
        for (const schema::Field& f : t.fields) {
            auto it = std::find_if(felder.begin(), felder.end(), [&](const dao::FieldDef& d) {
                return equalsNoCase(d.Name, f.name);
            });
            const std::string name = std::string(t.name) + "." + std::string(f.name);
            if (it == felder.end()) {
                u.push_back(name + " missing");
                continue;
            }
            if (it->Type != f.type)
                u.push_back(name + " has another type");
            else if (f.type == FieldType::Text && it->Size != f.size)
                u.push_back(name + " has the size " + std::to_string(it->Size));
            if (isTextType(f.type) && it->AllowZeroLength != f.zeroLength)
                u.push_back(name + (f.zeroLength ? " refuses" : " allows") + " the empty text");
            felder.erase(it);
        }
        for (const dao::FieldDef& d : felder)
            u.push_back(std::string(t.name) + "." + d.Name + " is too many");
        std::vector<dao::IndexDef> indexe = def.Indexes();
        for (const schema::Index& i : t.indexes) {
            auto it = std::find_if(indexe.begin(), indexe.end(), [&](const dao::IndexDef& d) {
                return equalsNoCase(d.Name, i.name);
            });
            const std::string name = "index " + std::string(t.name) + "." + std::string(i.name);
            if (it == indexe.end()) {
                u.push_back(name + " missing");
                continue;
            }
            std::vector<std::string> erwartet(i.fields.begin(), i.fields.end());
            bool gleich = it->Fields.size() == erwartet.size() && it->Unique == i.unique;
            for (std::size_t k = 0; gleich && k < erwartet.size(); ++k)
                gleich = equalsNoCase(it->Fields[k], erwartet[k]);
            if (!gleich)
                u.push_back(name + " differs");
            indexe.erase(it);
        }
        for (const dao::IndexDef& d : indexe)
            u.push_back("index " + std::string(t.name) + "." + d.Name + " is too many");
    }
    for (const std::string& t : tabellen)
        u.push_back("table " + t + " is too many");
    return u;
}

struct UpgradeFixture : ::testing::Test {
    TempDir dir;
    std::string host, baeume;
    ScriptedScope scripted;

    void SetUp() override {
        namespace fs = std::filesystem;
        const char* stage = std::getenv("FOLIO_STAGE");
        ASSERT_TRUE(stage) << "FOLIO_STAGE names the staged folders";
        host = dir.file("Stammfolio");
        baeume = dir.file("Baeume");
        Datenpfad = dir.file("Daten");
        fs::create_directories(host);
        fs::create_directories(baeume);
        fs::copy(std::string(stage) + "/Daten", Datenpfad, fs::copy_options::recursive);
        for (const char* f : {"SF.MDB", "Beispiel.SF6"})
            fs::copy_file(std::string(stage) + "/Stammfolio/" + f, host + "/" + f);
        Programmpfad = Stammpfad = host;
        Sprache = "Deutsch";
        setenv("XDG_CONFIG_HOME", dir.file("home/.config").c_str(), 1);
        einstellung_schreiben(HostAnwendung, "GUID", "Schluessel",
                              "{00000000-1111-2222-3333-444444444444}");
        sprache_oeffnen(Datenpfad + "/language.mdb");
    }
    void TearDown() override {
        upgrade::vor_abschluss() = nullptr;
        alle_schliessen("");
        DB.reset();
        sprache_schliessen();
    }

    // A tree of the current version in the trees' folder.
    std::string vorlage(const std::string& name) {
        const std::string pfad = baeume + "/" + name;
        std::filesystem::copy_file(host + "/SF.MDB", pfad);
        return pfad;
    }

    Geoeffnet oeffnen(const std::string& name) {
        std::string pfad = baeume, datei = name;
        return datenbank_oeffnen(pfad, datei, false, false);
    }

    // Closes what is open, the progress form too.
    void schliessen() {
        alle_schliessen("");
        DB.reset();
        Fortschrittfrm().entladen();
    }

    // A fresh start for the next attempt: nothing open, the trees' folder empty, no message.
    void neu_anfangen() {
        schliessen();
        for (const auto& f : std::filesystem::directory_iterator(baeume))
            std::filesystem::remove(f.path());
        scripted->shown.clear();
    }

    // Opens the tree as the program does: "" where it opened, else what the user was told or
    // what was raised.
    std::string oeffnen_versuchen(const std::string& name) {
        try {
            if (oeffnen(name) == Geoeffnet::Ja)
                return "";
            return scripted->shown.empty() ? "?" : scripted->shown.back().text;
        } catch (const Error& e) {
            return e.what();
        }
    }

    // Opens the tree with the chain's step of that number failing as a full disk would make
    // it fail, and closes what the failed opening left.
    void oeffnen_scheitert_bei(int nummer, const std::string& name) {
        upgrade::vor_abschluss() = [nummer](int schritt) {
            if (schritt == nummer)
                throw Error(3026, "Nicht genügend Speicherplatz auf der Festplatte.");
        };
        EXPECT_THROW(oeffnen(name), Error);
        upgrade::vor_abschluss() = nullptr;
        alle_schliessen("");
        DB.reset();
    }

    std::string version() {
        rs_Version->MoveFirst();
        return rs_Version->get("Versionname").text();
    }

    // Every message shown, one after the other.
    std::string messages() const {
        std::string all;
        for (const MessageRequest& m : scripted->shown)
            all += m.text + "\n---\n";
        return all;
    }
};

} // namespace folio::test
