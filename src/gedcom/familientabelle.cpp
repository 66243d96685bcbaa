#include "gedcom/familientabelle.h"

#include <algorithm>

namespace folio {

namespace {
const std::vector<std::size_t> Keine;
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
    if (vater.isZero() && mutter.isZero())
        return;
    kinder_.push_back({kind, vater, mutter});
    sortiert_ = false;
}

void Familientabelle::sortieren() const {
    if (sortiert_)
        return;
    auto ordnen = [&](std::vector<std::uint32_t>& index, auto schluessel) {
        index.clear();
        for (std::uint32_t i = 0; i < kinder_.size(); ++i)
            if (!schluessel(kinder_[i]).first.isZero() || !schluessel(kinder_[i]).second.isZero())
                index.push_back(i);
        std::stable_sort(index.begin(), index.end(), [&](std::uint32_t a, std::uint32_t b) {
            return schluessel(kinder_[a]) < schluessel(kinder_[b]);
        });
    };
    ordnen(nachPaar_, [](const Kind& k) {
        return k.vater.isZero() || k.mutter.isZero() ? std::pair(RecordId(), RecordId())
                                                     : std::pair(k.vater, k.mutter);
    });
    ordnen(nachVater_, [](const Kind& k) { return std::pair(k.vater, RecordId()); });
    ordnen(nachMutter_, [](const Kind& k) { return std::pair(RecordId(), k.mutter); });
    sortiert_ = true;
}

std::vector<RecordId> Familientabelle::kinder(RecordId vater, RecordId mutter) const {
    sortieren();
    const bool beide = !vater.isZero() && !mutter.isZero();
    const std::vector<std::uint32_t>& index = beide            ? nachPaar_
                                              : vater.isZero() ? nachMutter_
                                                               : nachVater_;
    auto schluessel = [&](const Kind& k) {
        return beide            ? std::pair(k.vater, k.mutter)
               : vater.isZero() ? std::pair(RecordId(), k.mutter)
                                : std::pair(k.vater, RecordId());
    };
    const std::pair gesucht = beide            ? std::pair(vater, mutter)
                              : vater.isZero() ? std::pair(RecordId(), mutter)
                                               : std::pair(vater, RecordId());
    auto von =
        std::lower_bound(index.begin(), index.end(), gesucht, [&](std::uint32_t i, const auto& g) {
            return schluessel(kinder_[i]) < g;
        });
    std::vector<RecordId> ergebnis;
    for (auto it = von; it != index.end() && schluessel(kinder_[*it]) == gesucht; ++it)
        ergebnis.push_back(kinder_[*it].kind);
    return ergebnis;
}

} // namespace folio
