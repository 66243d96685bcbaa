// An installation for opening family trees: the host's folder with the template and the
// sample database, a data folder with the side databases and the language texts of the
// staged build, the user's settings with a key of their own, a folder for the trees of a
// test, and a scripted platform that records every message.
#pragma once

#include "database/engine.h"
#include "database/oeffnen.h"
#include "database/recordset.h"
#include "database/tabellen.h"
#include "frame/globals.h"
#include "frame/platform.h"
#include "frame/settings_store.h"
#include "frame/sprache.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace folio::test {

struct UpgradeFixture : ::testing::Test {
    TempDir dir;
    std::string host, baeume;
    ScriptedPlatform* scripted = nullptr;
    std::unique_ptr<Platform> previous;

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
        einstellung_schreiben(HostAnwendung, "GUID", "Schluessel", "{00000000-1111-2222-3333-444444444444}");
        sprache_oeffnen(Datenpfad + "/language.mdb");
        auto p = std::make_unique<ScriptedPlatform>();
        scripted = p.get();
        previous = setPlatform(std::move(p));
    }
    void TearDown() override {
        alle_schliessen("");
        DB.reset();
        sprache_schliessen();
        setPlatform(std::move(previous));
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
