#include "frame/meldung.h"

#include "engine/text_util.h"
#include "frame/form.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/platform.h"
#include "frame/sprache.h"

namespace folio {

int meldung(const std::string& text, int stil, const std::string& titel, int /*reserviert1*/,
            int /*reserviert2*/, bool mit_checkbox, const std::string& checkbox_text,
            int checkbox_wert, int nummer, Form* besitzer, const std::string& ini_schluessel) {
    MessageRequest request;
    request.text = text;
    request.style = stil;
    request.title = titel;
    request.checkboxShown = mit_checkbox;
    request.checkboxText = checkbox_text;
    request.checkboxValue = checkbox_wert;
    request.number = nummer;
    if (besitzer)
        request.owner = besitzer->name();
    const MessageAnswer answer = platform().showMessage(request);
    if (!ini_schluessel.empty())
        ini_schreiben(programm_ini(), "Msgboxen", ini_schluessel,
                      std::to_string(answer.checkboxValue));
    return answer.button;
}

int meldung_abschaltbar(const std::string& text, int stil, const std::string& titel,
                        const std::string& ini_schluessel, int nummer) {
    if (numericValue(ini_lesen(programm_ini(), "Msgboxen", ini_schluessel, "1")) != 1)
        return 0;
    return meldung(text, stil, titel, 0, 0, true, sprachtext("485 Meldung weiterhin anzeigen"), 1,
                   nummer, nullptr, ini_schluessel);
}

} // namespace folio
