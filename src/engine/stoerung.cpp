#include "engine/stoerung.h"

#include "engine/errors.h"

#include <sqlite3.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace folio::stoerung {

namespace {

// The plan and the counts; read on every operation of every thread, so lock-free.
std::atomic<bool> aktiv{false};
std::atomic<int> geplante_art{0};
std::atomic<long long> geplante_nummer{0};
std::atomic<bool> geplant_voll{false};
std::atomic<bool> geschehen{false};
std::atomic<long long> zaehler[3];

int index(Art art) {
    return static_cast<int>(art);
}

// --- The counting file system in front of the store's own ----------------------------------

sqlite3_vfs* echtes_vfs = nullptr;
sqlite3_vfs zaehlendes_vfs;

// A file of the counting system: the methods, then the store's own file right behind.
struct Datei {
    sqlite3_file basis;
    sqlite3_file* echt;
};

sqlite3_file* echt(sqlite3_file* f) {
    return reinterpret_cast<Datei*>(f)->echt;
}

int fehlercode(Art art) {
    const int fehler = zaehlen(art);
    if (fehler == 0)
        return SQLITE_OK;
    if (fehler == ENOSPC)
        return SQLITE_FULL;
    return art == Art::Lesen  ? SQLITE_IOERR_READ
           : art == Art::Sync ? SQLITE_IOERR_FSYNC
                              : SQLITE_IOERR_WRITE;
}

int x_close(sqlite3_file* f) {
    const int rc = echt(f)->pMethods ? echt(f)->pMethods->xClose(echt(f)) : SQLITE_OK;
    f->pMethods = nullptr;
    return rc;
}
int x_read(sqlite3_file* f, void* p, int n, sqlite3_int64 wo) {
    const int rc = fehlercode(Art::Lesen);
    return rc != SQLITE_OK ? rc : echt(f)->pMethods->xRead(echt(f), p, n, wo);
}
int x_write(sqlite3_file* f, const void* p, int n, sqlite3_int64 wo) {
    const int rc = fehlercode(Art::Schreiben);
    return rc != SQLITE_OK ? rc : echt(f)->pMethods->xWrite(echt(f), p, n, wo);
}
int x_truncate(sqlite3_file* f, sqlite3_int64 groesse) {
    const int rc = fehlercode(Art::Schreiben);
    return rc != SQLITE_OK ? (rc == SQLITE_FULL ? rc : SQLITE_IOERR_TRUNCATE)
                           : echt(f)->pMethods->xTruncate(echt(f), groesse);
}
int x_sync(sqlite3_file* f, int flags) {
    const int rc = fehlercode(Art::Sync);
    return rc != SQLITE_OK ? rc : echt(f)->pMethods->xSync(echt(f), flags);
}
int x_file_size(sqlite3_file* f, sqlite3_int64* groesse) {
    return echt(f)->pMethods->xFileSize(echt(f), groesse);
}
int x_lock(sqlite3_file* f, int art) {
    return echt(f)->pMethods->xLock(echt(f), art);
}
int x_unlock(sqlite3_file* f, int art) {
    return echt(f)->pMethods->xUnlock(echt(f), art);
}
int x_check_reserved_lock(sqlite3_file* f, int* ja) {
    return echt(f)->pMethods->xCheckReservedLock(echt(f), ja);
}
int x_file_control(sqlite3_file* f, int op, void* arg) {
    return echt(f)->pMethods->xFileControl(echt(f), op, arg);
}
int x_sector_size(sqlite3_file* f) {
    return echt(f)->pMethods->xSectorSize(echt(f));
}
int x_device_characteristics(sqlite3_file* f) {
    return echt(f)->pMethods->xDeviceCharacteristics(echt(f));
}
int x_shm_map(sqlite3_file* f, int seite, int groesse, int erweitern, void volatile** p) {
    return echt(f)->pMethods->xShmMap(echt(f), seite, groesse, erweitern, p);
}
int x_shm_lock(sqlite3_file* f, int offset, int n, int flags) {
    return echt(f)->pMethods->xShmLock(echt(f), offset, n, flags);
}
void x_shm_barrier(sqlite3_file* f) {
    echt(f)->pMethods->xShmBarrier(echt(f));
}
int x_shm_unmap(sqlite3_file* f, int loeschen) {
    return echt(f)->pMethods->xShmUnmap(echt(f), loeschen);
}
int x_fetch(sqlite3_file* f, sqlite3_int64 wo, int n, void** p) {
    return echt(f)->pMethods->xFetch(echt(f), wo, n, p);
}
int x_unfetch(sqlite3_file* f, sqlite3_int64 wo, void* p) {
    return echt(f)->pMethods->xUnfetch(echt(f), wo, p);
}

const sqlite3_io_methods methoden = {
    3,
    x_close,
    x_read,
    x_write,
    x_truncate,
    x_sync,
    x_file_size,
    x_lock,
    x_unlock,
    x_check_reserved_lock,
    x_file_control,
    x_sector_size,
    x_device_characteristics,
    x_shm_map,
    x_shm_lock,
    x_shm_barrier,
    x_shm_unmap,
    x_fetch,
    x_unfetch,
};

int x_open(sqlite3_vfs*, const char* name, sqlite3_file* f, int flags, int* aus) {
    Datei* d = reinterpret_cast<Datei*>(f);
    d->echt = reinterpret_cast<sqlite3_file*>(d + 1);
    d->echt->pMethods = nullptr;
    const int rc = echtes_vfs->xOpen(echtes_vfs, name, d->echt, flags, aus);
    d->basis.pMethods = d->echt->pMethods ? &methoden : nullptr;
    return rc;
}

// Puts the counting file system in front of the store's default one, once: connections
// opened from then on use it; it only counts while a plan is set.
void vfs_einsetzen() {
    static std::once_flag einmal;
    std::call_once(einmal, [] {
        sqlite3_initialize();
        echtes_vfs = sqlite3_vfs_find(nullptr);
        zaehlendes_vfs = *echtes_vfs; // the store's own methods, with its own data
        zaehlendes_vfs.zName = "folio-stoerung";
        zaehlendes_vfs.szOsFile = static_cast<int>(sizeof(Datei)) + echtes_vfs->szOsFile;
        zaehlendes_vfs.xOpen = x_open;
        zaehlendes_vfs.pNext = nullptr;
        sqlite3_vfs_register(&zaehlendes_vfs, 1);
    });
}

} // namespace

void einrichten(const Plan& plan) {
    vfs_einsetzen();
    for (auto& z : zaehler)
        z = 0;
    geplante_art = index(plan.art);
    geplante_nummer = plan.nummer;
    geplant_voll = plan.voll;
    geschehen = false;
    aktiv = true;
}

void aufheben() {
    aktiv = false;
}

long long gezaehlt(Art art) {
    return zaehler[index(art)];
}

bool ausgeloest() {
    return geschehen;
}

int zaehlen(Art art) {
    if (!aktiv.load(std::memory_order_relaxed))
        return 0;
    const long long nummer = ++zaehler[index(art)];
    if (index(art) != geplante_art)
        return 0;
    if (geplant_voll ? nummer < geplante_nummer : nummer != geplante_nummer)
        return 0;
    geschehen = true;
    return geplant_voll ? ENOSPC : EIO;
}

void aus_umgebung() {
    const char* text = std::getenv("FOLIO_TEST_IO");
    if (!text || !*text)
        return;
    const std::string wert(text);
    const std::size_t doppelpunkt = wert.find(':');
    const std::string art = wert.substr(0, doppelpunkt);
    Plan plan;
    plan.voll = art == "full";
    if (art == "read")
        plan.art = Art::Lesen;
    else if (art == "sync")
        plan.art = Art::Sync;
    else if (art != "write" && art != "full")
        throw Error(err::InvalidArgument, "FOLIO_TEST_IO: unknown kind of operation: " + wert);
    const char* zahl =
        wert.c_str() + (doppelpunkt == std::string::npos ? wert.size() : doppelpunkt + 1);
    const auto [ende, fehler] = std::from_chars(zahl, wert.c_str() + wert.size(), plan.nummer);
    if (fehler != std::errc() || *ende != '\0' || plan.nummer < 1)
        throw Error(err::InvalidArgument, "FOLIO_TEST_IO: no operation number: " + wert);
    einrichten(plan);
    // What was counted, for the test that loops over the operations of a whole run.
    std::atexit([] {
        std::fprintf(stderr, "FOLIO_TEST_IO read=%lld write=%lld sync=%lld failed=%d\n",
                     gezaehlt(Art::Lesen), gezaehlt(Art::Schreiben), gezaehlt(Art::Sync),
                     ausgeloest() ? 1 : 0);
    });
}

} // namespace folio::stoerung
