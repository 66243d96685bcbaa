#include "gedcom/familientabelle.h"

namespace folio {

namespace {
const std::vector<std::size_t> Keine;
const std::vector<RecordId> KeineKinder;
} // namespace

std::size_t
Familientabelle::PaarHash::operator()(const std::pair<RecordId, RecordId>& p) const noexcept {
    return std::hash<RecordId>{}(p.first) * 1000003u ^ std::hash<RecordId>{}(p.second);
}

std::optional<std::size_t> Familientabelle::suchen(RecordId vater, RecordId mutter) const {
    const auto& z = zeilen_mit_eltern(vater, mutter);
    if (z.empty())
        return std::nullopt;
    return z.front();
}

std::size_t Familientabelle::hinzufuegen(RecordId vater, RecordId mutter) {
    zeilen_.push_back({vater, mutter});
    const std::size_t nummer = zeilen_.size();
    paare_[{vater, mutter}].push_back(nummer);
    if (!vater.isZero())
        personen_[vater].push_back(nummer);
    if (!mutter.isZero() && mutter != vater)
        personen_[mutter].push_back(nummer);
    return nummer;
}

const std::vector<std::size_t>& Familientabelle::zeilen_mit_eltern(RecordId vater,
                                                                   RecordId mutter) const {
    auto it = paare_.find({vater, mutter});
    return it == paare_.end() ? Keine : it->second;
}

const std::vector<std::size_t>& Familientabelle::zeilen_mit_person(RecordId person) const {
    auto it = personen_.find(person);
    return it == personen_.end() ? Keine : it->second;
}

void Familientabelle::kind_merken(RecordId kind, RecordId vater, RecordId mutter) {
    if (!vater.isZero() && !mutter.isZero())
        kinderPaar_[{vater, mutter}].push_back(kind);
    if (!vater.isZero())
        kinderVater_[vater].push_back(kind);
    if (!mutter.isZero())
        kinderMutter_[mutter].push_back(kind);
}

const std::vector<RecordId>& Familientabelle::kinder(RecordId vater, RecordId mutter) const {
    if (!vater.isZero() && !mutter.isZero()) {
        auto it = kinderPaar_.find({vater, mutter});
        return it == kinderPaar_.end() ? KeineKinder : it->second;
    }
    const auto& nach = vater.isZero() ? kinderMutter_ : kinderVater_;
    auto it = nach.find(vater.isZero() ? mutter : vater);
    return it == nach.end() ? KeineKinder : it->second;
}

} // namespace folio
