// The driver of the upgrade chain: the three sections in their order, and the program's
// version written into the file at every opening.
#include "database/upgrade/kette.h"

#include "database/dateiversion.h"
#include "database/oeffnen.h"
#include "database/schema/schema.h"
#include "database/tabellen.h"
#include "database/upgrade/abschnitt1.h"
#include "database/upgrade/abschnitt2.h"
#include "database/upgrade/lauf.h"
#include "frame/form.h"
#include "frame/platform.h"
#include "frame/start.h"

#include <cmath>
#include <cstdio>
#include <random>

namespace folio {

bool version_mindestens(const std::string& version, const std::string& marke) {
    return version >= marke;
}

double numerische_version(const std::string& version) {
    // The leading number and its first decimal, as far as the text is a number.
    std::size_t i = 0;
    while (i < version.size() && version[i] == ' ')
        ++i;
    double wert = 0;
    bool ziffern = false;
    for (; i < version.size() && version[i] >= '0' && version[i] <= '9'; ++i) {
        wert = wert * 10 + (version[i] - '0');
        ziffern = true;
    }
    if (ziffern && i + 1 < version.size() && version[i] == '.' && version[i + 1] >= '0' &&
        version[i + 1] <= '9')
        wert += (version[i + 1] - '0') / 10.0;
    return wert;
}

std::string neue_guid() {
    static std::mt19937_64 zufall{std::random_device{}()};
    const std::uint64_t a = zufall(), b = zufall();
    char text[39];
    std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%04X-%012llX}",
                  static_cast<unsigned>(a >> 32), static_cast<unsigned>((a >> 16) & 0xFFFF),
                  static_cast<unsigned>((a & 0x0FFF) | 0x4000),
                  static_cast<unsigned>(((b >> 48) & 0x3FFF) | 0x8000),
                  static_cast<unsigned long long>(b & 0xFFFFFFFFFFFFULL));
    return text;
}

DateTime datum_aus_teilen(int tag, int monat, int jahr) {
    return DateTime::fromDate(jahr == 0 ? 4000 : jahr, monat == 0 ? 1 : monat, tag == 0 ? 1 : tag);
}

void datenbank_aktualisieren(std::string& pfad, std::string& datei, bool ohne_komprimieren) {
    Fortschrittfrm().set("MousePointer", Value(MausSanduhr));
    upgrade::Lauf lauf(pfad, datei);
    if (upgrade::offen("Version").RecordCount() == 0) // before any step changes the file
        throw ohne_versionszeile(DB->Name());
    const std::string version = upgrade::versionname();
    // A file without a version name counts as one of the old schema.
    if (version.empty() || !version_mindestens(version, "5.0.190"))
        upgrade::abschnitt1(lauf, ohne_komprimieren);
    upgrade::abschnitt2(lauf);
    upgrade::abschnitt3(lauf);

    lauf.schritt(70, [] {
        dao::Recordset& v = upgrade::offen("Version");
        v.MoveFirst();
        v.Edit();
        v.set("Versionname", Value(std::string(schema::CurrentVersion)));
        v.Update();
    });
    Fortschrittfrm().set("MousePointer", Value(MausNormal));
    if (lauf.gemeldet[1]) {
        Fortschrittfrm().entladen();
        upgrade::wieder_oeffnen(pfad, datei, false);
    }
}

} // namespace folio
