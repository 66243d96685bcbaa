#include "gedcom/familientabelle.h"

#include <algorithm>

namespace folio {

std::size_t
Familientabelle::PaarHash::operator()(const std::pair<RecordId, RecordId>& p) const noexcept {
    return std::hash<RecordId>{}(p.first) * 1000003u ^ std::hash<RecordId>{}(p.second);
}

std::optional<std::size_t> Familientabelle::suchen(RecordId vater, RecordId mutter) const {
    auto it = erste_.find({vater, mutter});
    if (it == erste_.end())
        return std::nullopt;
    return it->second;
}

std::size_t Familientabelle::hinzufuegen(RecordId vater, RecordId mutter) {
    zeilen_.push_back({vater, mutter});
    const auto nummer = static_cast<std::uint32_t>(zeilen_.size());
    naechste_.push_back(0);
    letzte_.push_back(0);
    auto [it, neu] = erste_.try_emplace({vater, mutter}, nummer);
    if (neu) {
        letzte_[nummer - 1] = nummer;
    } else {
        std::uint32_t& letzte = letzte_[it->second - 1];
        naechste_[letzte - 1] = nummer;
        letzte = nummer;
    }
    nach_person_fertig_ = false;
    return nummer;
}

std::vector<std::size_t> Familientabelle::zeilen_mit_eltern(RecordId vater, RecordId mutter) const {
    std::vector<std::size_t> zeilen;
    auto it = erste_.find({vater, mutter});
    for (std::uint32_t z = it == erste_.end() ? 0 : it->second; z != 0; z = naechste_[z - 1])
        zeilen.push_back(z);
    return zeilen;
}

std::vector<std::size_t> Familientabelle::zeilen_mit_person(RecordId person) const {
    if (!nach_person_fertig_) {
        nach_person_.clear();
        for (std::uint32_t i = 1; i <= zeilen_.size(); ++i) {
            const Familie& f = zeilen_[i - 1];
            if (!f.vater.isZero())
                nach_person_.emplace_back(f.vater, i);
            if (!f.mutter.isZero() && f.mutter != f.vater)
                nach_person_.emplace_back(f.mutter, i);
        }
        std::sort(nach_person_.begin(), nach_person_.end());
        nach_person_.shrink_to_fit();
        nach_person_fertig_ = true;
    }
    std::vector<std::size_t> zeilen;
    for (auto it = std::lower_bound(nach_person_.begin(), nach_person_.end(),
                                    std::pair(person, std::uint32_t{0}));
         it != nach_person_.end() && it->first == person; ++it)
        zeilen.push_back(it->second);
    return zeilen;
}

void Familientabelle::vorbereiten() const {
    zeilen_mit_person(RecordId());
    sortieren();
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
