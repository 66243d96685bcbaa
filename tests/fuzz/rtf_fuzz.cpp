// The reader of stored rich text: any bytes give a text and never throw; a rich text gives
// UTF-8 no longer than three bytes for each byte read, and anything else comes back as it was.
#include "engine/utf8.h"
#include "fuzz_check.h"
#include "gedcom/rtf.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    using namespace folio;
    const std::string eingabe(reinterpret_cast<const char*>(daten), groesse);
    const std::string text = rtf_klartext(eingabe);
    if (eingabe.rfind("{\\rtf", 0) != 0) {
        fuzz::pruefen(text == eingabe, "a value that isn't rich text comes back changed", eingabe);
        return 0;
    }
    fuzz::pruefen(isUtf8(text), "the plain text isn't UTF-8", eingabe);
    fuzz::pruefen(text.size() <= 3 * eingabe.size(), "the plain text grows beyond its source",
                  eingabe);
    return 0;
}
