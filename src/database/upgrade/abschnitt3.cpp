// The third section, for every file: each picture learns the size of its file.
#include "database/tabellen.h"
#include "database/upgrade/abschnitt2.h"
#include "database/upgrade/kette.h"
#include "database/upgrade/lauf.h"
#include "engine/text_util.h"
#include "frame/fenster.h"
#include "frame/platform.h"
#include "frame/start.h"

#include <filesystem>

namespace folio::upgrade {

void abschnitt3(Lauf& lauf) {
    lauf.abschnitt = 3;
    if (version_mindestens(versionname(), "6.0.105") || !lauf.feld_fehlt("Bilder", "groesse"))
        return;
    lauf.schritt(61, [&] {
        lauf.hinweis();
        lauf.felder_anlegen({{"Bilder", "groesse", FieldType::Long}});
        auto bilder = DB->OpenRecordset("Select bildpfad,bildfile, groesse  FROM Bilder  ;");
        Zeilenbalken balken("Überarbeite Bildgroessen");
        balken.maximum(*bilder);
        for (; !bilder->Eof(); bilder->MoveNext()) {
            balken.weiter();
            const std::string pfad(
                trimBlanks(bilder->get("bildpfad").text() + bilder->get("bildfile").text()));
            std::error_code ec;
            const double groesse = !pfad.empty() && std::filesystem::is_regular_file(pfad, ec)
                                       ? datei_groesse(pfad)
                                       : 0;
            bilder->Edit();
            bilder->set("groesse", Value(static_cast<long long>(groesse)));
            bilder->Update();
            platform().doEvents();
        }
        balken.bar.set("Value", Value(0));
    });
    Fortschrittfrm().entladen();
}

} // namespace folio::upgrade
