#include "database/markenstand.h"

#include "engine/errors.h"
#include "engine/text_util.h"

#include <algorithm>

namespace folio {

std::optional<Verknuepft> verknuepfte_tabelle(std::string_view name) {
    for (std::size_t i = 0; i < AnzahlVerknuepfte; ++i)
        if (equalsNoCase(name, VerknuepfteTabellen[i]))
            return static_cast<Verknuepft>(i);
    return std::nullopt;
}

void Markenstand::setzen(Verknuepft tabelle, std::vector<RecordId> nummern) {
    std::sort(nummern.begin(), nummern.end());
    nummern.erase(std::unique(nummern.begin(), nummern.end()), nummern.end());
    nummern.shrink_to_fit();
    nummern_[static_cast<std::size_t>(tabelle)] = std::move(nummern);
}

bool Markenstand::markiert(Verknuepft tabelle, RecordId nummer) const {
    const std::vector<RecordId>& n = nummern(tabelle);
    return std::binary_search(n.begin(), n.end(), nummer);
}

void Markenstand::schreiben() const {
    throw Error(err::OperationNotSupported, "Markenstand::schreiben");
}

} // namespace folio
