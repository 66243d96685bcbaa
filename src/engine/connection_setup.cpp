#include "engine/connection_setup.h"

#include "engine/abbruch.h"
#include "engine/errors.h"
#include "engine/jet_like.h"

#include <unicode/ucol.h>
#include <unicode/uiter.h>

#include <cstring>
#include <memory>
#include <thread>

namespace folio {

namespace {

struct CollatorCloser {
    void operator()(UCollator* c) const { ucol_close(c); }
};
using Collator = std::unique_ptr<UCollator, CollatorCloser>;

Collator openCollator() {
    UErrorCode status = U_ZERO_ERROR;
    Collator collator(ucol_open("de", &status));
    if (U_FAILURE(status))
        throw Error(err::EngineError,
                    std::string("Cannot open the German collation: ") + u_errorName(status));
    ucol_setStrength(collator.get(), UCOL_SECONDARY); // case doesn't count, accents do
    return collator;
}

int compareWith(UCollator* collator, int n1, const void* s1, int n2, const void* s2) {
    if (n1 == n2 && std::memcmp(s1, s2, static_cast<std::size_t>(n1)) == 0)
        return 0;
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult r = ucol_strcollUTF8(collator, static_cast<const char*>(s1), n1,
                                                static_cast<const char*>(s2), n2, &status);
    if (U_FAILURE(status)) { // malformed text: fall back to the bytes
        const int c = std::memcmp(s1, s2, static_cast<std::size_t>(std::min(n1, n2)));
        return c != 0 ? c : n1 - n2;
    }
    return r == UCOL_LESS ? -1 : r == UCOL_GREATER ? 1 : 0;
}

int collate(void* collator, int n1, const void* s1, int n2, const void* s2) {
    return compareWith(static_cast<UCollator*>(collator), n1, s1, n2, s2);
}

void destroyCollator(void* collator) {
    ucol_close(static_cast<UCollator*>(collator));
}

void destroyPattern(void* pattern) {
    delete static_cast<jet::LikePattern*>(pattern);
}

// like(pattern, text), which SQLite calls for "text LIKE pattern". The compiled pattern
// is kept with the statement, so a LIKE over many rows compiles its pattern once.
void likeFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
    if (argc != 2) {
        sqlite3_result_error(context, "LIKE with ESCAPE is not supported", -1);
        return;
    }
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL)
        return; // NULL
    auto textOf = [](sqlite3_value* v) {
        const char* t = reinterpret_cast<const char*>(sqlite3_value_text(v));
        return std::string_view(t, static_cast<std::size_t>(sqlite3_value_bytes(v)));
    };
    try {
        const std::string_view text = textOf(argv[1]);
        if (auto* kept = static_cast<jet::LikePattern*>(sqlite3_get_auxdata(context, 0))) {
            sqlite3_result_int(context, kept->matches(text) ? 1 : 0);
            return;
        }
        auto compiled = std::make_unique<jet::LikePattern>(textOf(argv[0]));
        sqlite3_result_int(context, compiled->matches(text) ? 1 : 0);
        sqlite3_set_auxdata(context, 0, compiled.release(), destroyPattern);
    } catch (const std::exception& e) {
        sqlite3_result_error(context, e.what(), -1);
    }
}

struct Warten {
    std::chrono::milliseconds hoechstens{2000};
    std::function<void(const std::string&)> ansage;
};

Warten& warten() {
    static Warten w;
    return w;
}

// SQLite calls this while another connection holds the lock it needs; `count` counts the
// calls of one wait from 0. Returning 0 ends the wait with SQLITE_BUSY.
int besetzt(void* db, int count) {
    constexpr auto Schritt = std::chrono::milliseconds(50);
    const Warten& w = warten();
    if (abbruch_angefordert() || count * Schritt >= w.hoechstens)
        return 0;
    if (count == 0 && w.ansage)
        w.ansage(sqlite3_db_filename(static_cast<sqlite3*>(db), "main"));
    std::this_thread::sleep_for(Schritt);
    return 1;
}

// Called every thousand steps of a statement: a stop asked for interrupts it.
int fortschritt(void*) {
    return abbruch_angefordert() != 0;
}

} // namespace

void wartezeit_setzen(std::chrono::milliseconds hoechstens,
                      std::function<void(const std::string& datei)> ansage) {
    warten() = {hoechstens, std::move(ansage)};
}

void setUpConnection(sqlite::Connection& connection) {
    sqlite3* db = connection.get();
    Collator collator = openCollator();
    int rc = sqlite3_create_collation_v2(db, "NOCASE", SQLITE_UTF8, collator.get(), collate,
                                         destroyCollator);
    if (rc != SQLITE_OK)
        sqlite::raise(db, rc, connection.path(), "NOCASE");
    collator.release(); // owned by the connection now
    rc = sqlite3_create_function_v2(db, "like", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                                    likeFunction, nullptr, nullptr, nullptr);
    if (rc == SQLITE_OK)
        rc = sqlite3_create_function_v2(db, "like", 3, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                                        likeFunction, nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK)
        sqlite::raise(db, rc, connection.path(), "LIKE");
    sqlite3_busy_handler(db, besetzt, db);
    sqlite3_progress_handler(db, 1000, fortschritt, nullptr);
    connection.exec("PRAGMA cache_size = -65536; PRAGMA temp_store = MEMORY; "
                    "PRAGMA mmap_size = 0; PRAGMA synchronous = NORMAL");
}

int compareNoCase(std::string_view a, std::string_view b) {
    static Collator collator = openCollator();
    return compareWith(collator.get(), static_cast<int>(a.size()), a.data(),
                       static_cast<int>(b.size()), b.data());
}

void sortierschluessel(std::string_view text, std::string& schluessel) {
    static Collator collator = openCollator();
    schluessel.clear();
    UCharIterator it;
    uiter_setUTF8(&it, text.data(), static_cast<std::int32_t>(text.size()));
    std::uint32_t zustand[2] = {0, 0};
    std::uint8_t teil[64];
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        const std::int32_t n = ucol_nextSortKeyPart(
            collator.get(), &it, zustand, teil, static_cast<std::int32_t>(sizeof teil), &status);
        if (U_FAILURE(status)) { // malformed text: the bytes themselves
            schluessel.assign(text);
            return;
        }
        schluessel.append(reinterpret_cast<const char*>(teil), static_cast<std::size_t>(n));
        if (n < static_cast<std::int32_t>(sizeof teil))
            return;
    }
}

} // namespace folio
