// Speed of the database layer on a generated table of persons: filling it, Seek by Counter,
// a walk reading fields, a dynaset over the marked rows, Seek + Edit + Update as the marking
// passes do it, and one UPDATE over all rows.
//
//   bench_database [rows] [folder]      (default 1000000 rows, the system's temp folder)

#include "engine/engine.h"
#include "engine/recordset.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

using namespace folio;
using Clock = std::chrono::steady_clock;

namespace {

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void report(const char* what, long long count, double seconds) {
    std::printf("%-44s %10lld in %7.3f s  = %12.0f per second\n", what, count, seconds,
                seconds > 0 ? count / seconds : 0.0);
}

void createTable(dao::Database& db) {
    using dao::TableDef;
    TableDef t = dao::Database::CreateTableDef("Daten");
    auto text = [&](const char* name) {
        auto f = TableDef::CreateField(name, FieldType::Text, 255);
        f.AllowZeroLength = true;
        t.AppendField(f);
    };
    t.AppendField(TableDef::CreateField("Counter", FieldType::Currency));
    t.AppendField(TableDef::CreateField("Markierung", FieldType::Boolean));
    t.AppendField(TableDef::CreateField("Marker", FieldType::Integer));
    t.AppendField(TableDef::CreateField("Lebt", FieldType::Boolean));
    t.AppendField(TableDef::CreateField("Geschlecht", FieldType::Text, 1));
    t.AppendField(TableDef::CreateField("Vater", FieldType::Currency));
    t.AppendField(TableDef::CreateField("Mutter", FieldType::Currency));
    text("GIVN");
    text("SURN");
    text("Listentext");
    t.AppendField(TableDef::CreateField("GJahr", FieldType::Integer));
    t.AppendField(TableDef::CreateField("GSort", FieldType::Text, 8));
    t.AppendField(TableDef::CreateField("GOrt", FieldType::Currency));
    t.AppendIndex(TableDef::CreateIndex("Counter", {"Counter"}));
    db.AppendTableDef(t);
}

} // namespace

int main(int argc, char** argv) {
    long long rows = 1000000;
    if (argc > 1) {
        char* ende = nullptr;
        rows = std::strtoll(argv[1], &ende, 10);
        if (ende == argv[1] || *ende != '\0' || rows <= 0) {
            std::fprintf(stderr,
                         "usage: bench_database [ROWS [FOLDER]]  ('%s' is no number of rows)\n",
                         argv[1]);
            return 2;
        }
    }
    const std::filesystem::path folder =
        argc > 2 ? std::filesystem::path(argv[2]) : std::filesystem::temp_directory_path();
    const std::string path = (folder / "bench_database.SF6").string();
    std::filesystem::remove(path);
    static const char* given[] = {"Johann", "Maria", "Anna", "Georg", "Elisabeth", "Friedrich"};
    static const char* surnames[] = {"Müller", "Schmidt", "Schneider", "Fischer", "Weber", "Huber"};

    try {
        auto db = dao::engine().workspace(0).CreateDatabase(path);
        createTable(*db);

        auto start = Clock::now();
        {
            dao::Transaction t(*db);
            auto rs = db->OpenRecordset("Daten");
            for (long long i = 1; i <= rows; ++i) {
                rs->AddNew();
                rs->set("Counter", Value(RecordId(i)));
                rs->set("Markierung", Value(i % 3 == 0));
                rs->set("Marker", Value(0));
                rs->set("Lebt", Value(i > rows - rows / 10));
                rs->set("Geschlecht", Value(i % 2 ? "M" : "F"));
                rs->set("Vater", Value(RecordId(i / 2)));
                rs->set("Mutter", Value(RecordId(i / 2 + 1)));
                rs->set("GIVN", Value(given[i % 6]));
                rs->set("SURN", Value(surnames[i % 5]));
                rs->set("Listentext", Value(std::string(surnames[i % 5]) + " " + given[i % 6]));
                rs->set("GJahr", Value(static_cast<int>(1600 + i % 400)));
                rs->set("GSort", Value(std::to_string(1600 + i % 400) + "0101"));
                rs->set("GOrt", Value(RecordId(i % 1000)));
                rs->Update();
            }
            t.commit();
        }
        report("AddNew/Update (one transaction)", rows, secondsSince(start));
        std::printf("file size: %.1f MB\n", std::filesystem::file_size(path) / 1e6);

        auto rs = db->OpenRecordset("Daten", dao::RecordsetType::Table);
        rs->Index("Counter");
        std::mt19937_64 random(42);
        const long long seeks = rows;
        long long found = 0;
        start = Clock::now();
        for (long long i = 0; i < seeks; ++i) {
            rs->Seek("=", Value(RecordId(static_cast<long long>(random() % rows) + 1)));
            if (!rs->NoMatch() && rs->get("Markierung").toBool())
                ++found;
        }
        report("Seek by Counter, read Markierung", seeks, secondsSince(start));

        start = Clock::now();
        long long walked = 0, men = 0;
        for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) {
            ++walked;
            men += rs->get("Geschlecht").text() == "M";
            men += rs->get("Vater").toRecordId().isZero();
            men += rs->get("GJahr").toInt() == 0;
        }
        report("table walk in index order, read 3 fields", walked, secondsSince(start));

        start = Clock::now();
        auto marked = db->OpenRecordset("SELECT * FROM Daten WHERE Markierung = TRUE ;");
        long long dynRows = 0;
        for (; !marked->Eof(); marked->MoveNext()) {
            ++dynRows;
            men += marked->get("Listentext").text().size() > 200;
        }
        report("dynaset over marked rows, read 1 field", dynRows, secondsSince(start));
        marked->Close();

        start = Clock::now();
        {
            dao::Transaction t(*db);
            for (long long i = 0; i < seeks / 4; ++i) {
                rs->Seek("=", Value(RecordId(static_cast<long long>(random() % rows) + 1)));
                rs->Edit();
                rs->set("Markierung", Value(true));
                rs->Update();
            }
            t.commit();
        }
        report("Seek + Edit + Update (one transaction)", seeks / 4, secondsSince(start));

        start = Clock::now();
        db->Execute("Update Daten Set Marker = 1 WHERE Markierung = -1 ;", dao::dbFailOnError);
        const long long updated = db->RecordsAffected();
        report("Execute UPDATE ... WHERE Markierung = -1", updated, secondsSince(start));
        start = Clock::now();
        db->Execute("UPDATE Daten SET Marker = 0 ;", dao::dbFailOnError);
        report("Execute UPDATE over all rows", db->RecordsAffected(), secondsSince(start));
        if (found + men < 0)
            std::printf("%lld\n", found + men); // keeps the reads from being optimised away
    } catch (const std::exception& e) {
        std::fprintf(stderr, "bench_database: %s\n", e.what());
        return 1;
    }
    std::filesystem::remove(path);
    return 0;
}
