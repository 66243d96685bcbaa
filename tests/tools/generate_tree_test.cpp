#include "generate_tree.h"

#include "engine/engine.h"
#include "engine/recordset.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

using namespace folio;

namespace {

std::int64_t count(dao::Database& db, const std::string& sql) {
    auto rs = db.OpenRecordset(sql);
    return rs->get(0).toInt();
}

std::string fingerprint(const std::string& path) {
    auto db = dao::OpenDatabase(path, false, true);
    auto rs = db->OpenRecordset(
        "SELECT count(*) AS n, sum(Counter * GJahr) AS a, sum(length(GIVN)) AS b, "
        "sum(Vater + Mutter) AS c FROM Daten");
    return rs->get("n").text() + "/" + rs->get("a").text() + "/" + rs->get("b").text() + "/" +
           rs->get("c").text();
}

} // namespace

TEST(Generator, TreeIsWholeAndInRealisticProportions) {
    test::TempDir dir;
    const std::string path = dir.file("gen.SF6");
    const generator::Counts c = generator::generateTree({1500, 7, ""}, path);
    EXPECT_EQ(c.persons, 1500);
    EXPECT_GT(c.events, 4 * c.persons);
    EXPECT_LT(c.events, 7 * c.persons);
    EXPECT_EQ(c.sourceLinks, 2 * c.persons);

    auto db = dao::OpenDatabase(path);
    EXPECT_EQ(count(*db, "SELECT count(*) FROM Daten"), 1500);
    // Every reference points at a record.
    for (const char* field : {"Vater", "Mutter"})
        EXPECT_EQ(
            count(*db, std::string("SELECT count(*) FROM Daten d WHERE d.") + field +
                           " <> 0 AND NOT EXISTS (SELECT 1 FROM Daten p WHERE p.Counter = d." +
                           field + ")"),
            0)
            << field;
    for (const auto& [table, field, target] :
         std::vector<std::tuple<const char*, const char*, const char*>>{
             {"Daten", "GOrt", "Ort"},
             {"Daten", "Bild", "Bilder"},
             {"Daten", "Notiz", "Notiz"},
             {"Ereignis", "Ort", "Ort"},
             {"Ort", "Oberort", "Ort"},
             {"Adressen", "Ort", "Ort"},
             {"Ereignis_DS", "Quelle", "Daten"},
             {"Ereignis_DS", "Ziel", "Ereignis"},
             {"Daten_DS", "Quelle", "Daten"},
             {"Daten_DS", "Ziel", "Daten"},
             {"Adressen_DS", "Ziel", "Adressen"}})
        EXPECT_EQ(count(*db, std::string("SELECT count(*) FROM ") + table + " x WHERE x." + field +
                                 " <> 0 AND NOT EXISTS (SELECT 1 FROM " + target +
                                 " t WHERE t.Counter = x." + field + ")"),
                  0)
            << table << "." << field;
    EXPECT_EQ(count(*db, "SELECT count(*) FROM Quellen_DS q WHERE NOT EXISTS (SELECT 1 FROM "
                         "Dokument t WHERE t.Counter = q.Ziel) AND Art_Ziel = 'U'"),
              0);
    // Every event has a main person, and marriages have two.
    EXPECT_EQ(count(*db, "SELECT count(*) FROM Ereignis e WHERE NOT EXISTS (SELECT 1 FROM "
                         "Ereignis_DS l WHERE l.Ziel = e.Counter AND l.Ursprung = 'd')"),
              0);
    EXPECT_EQ(count(*db, "SELECT count(*) FROM Ereignis e WHERE Art = 10 AND (SELECT count(*) "
                         "FROM Ereignis_DS l WHERE l.Ziel = e.Counter AND l.Ursprung = 'd') <> 2"),
              0);
    // Sort keys agree with the date fields.
    auto rs = db->OpenRecordset("SELECT GTag, GMonat, GJahr, GSort FROM Daten");
    for (; !rs->Eof(); rs->MoveNext()) {
        char key[16];
        const auto d = rs->get("GTag").toInt(), m = rs->get("GMonat").toInt(),
                   y = rs->get("GJahr").toInt();
        std::snprintf(key, sizeof key,
                      d   ? "%04lld%02lld%02lld"
                      : m ? "%04lld%02lld"
                          : "%04lld",
                      static_cast<long long>(y), static_cast<long long>(m),
                      static_cast<long long>(d));
        ASSERT_EQ(rs->get("GSort").text(), y ? key : "");
    }
}

TEST(Generator, SameSeedSameTree) {
    test::TempDir dir;
    generator::generateTree({400, 11, ""}, dir.file("a.SF6"));
    generator::generateTree({400, 11, ""}, dir.file("b.SF6"));
    generator::generateTree({400, 12, ""}, dir.file("c.SF6"));
    EXPECT_EQ(fingerprint(dir.file("a.SF6")), fingerprint(dir.file("b.SF6")));
    EXPECT_NE(fingerprint(dir.file("a.SF6")), fingerprint(dir.file("c.SF6")));
}
