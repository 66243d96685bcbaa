#include "wizard/rangfolge.h"

#include "engine/connection_setup.h"

#include <algorithm>
#include <numeric>

namespace folio {

void Rangfolge::hinzufuegen(const sqlite::Statement& s, int spalte) {
    if (s.type(spalte) == SQLITE_NULL) {
        wert_.push_back(0);
    } else if (text_) {
        const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(s.get(), spalte));
        const std::string_view t(p,
                                 static_cast<std::size_t>(sqlite3_column_bytes(s.get(), spalte)));
        const auto [it, neu] = texte_.try_emplace(std::string(t), texte_.size() + 1);
        wert_.push_back(it->second);
    } else {
        const auto [it, neu] = zahlen_.try_emplace(s.real(spalte), zahlen_.size() + 1);
        wert_.push_back(it->second);
    }
}

std::vector<std::uint32_t> Rangfolge::folge(bool absteigend) const {
    const std::vector<std::uint32_t> rang = raenge();
    const std::uint32_t hoechster = rang.empty() ? 0 : *std::max_element(rang.begin(), rang.end());
    std::vector<std::uint32_t> anfang(static_cast<std::size_t>(hoechster) + 2, 0);
    auto platz = [&](std::uint32_t wert) {
        return absteigend ? hoechster - rang[wert] : rang[wert];
    };
    for (std::uint32_t w : wert_)
        ++anfang[platz(w) + 1];
    for (std::size_t i = 1; i < anfang.size(); ++i)
        anfang[i] += anfang[i - 1];
    std::vector<std::uint32_t> folge(wert_.size());
    for (std::size_t zeile = 0; zeile < wert_.size(); ++zeile)
        folge[anfang[platz(wert_[zeile])]++] = static_cast<std::uint32_t>(zeile);
    return folge;
}

std::vector<std::uint32_t> Rangfolge::raenge() const {
    const std::size_t anzahl = (text_ ? texte_.size() : zahlen_.size()) + 1;
    std::vector<std::uint32_t> werte(anzahl - 1);
    std::iota(werte.begin(), werte.end(), 1u);
    std::vector<std::uint32_t> rang(anzahl, 0);
    if (text_) {
        std::vector<std::string> schluessel(anzahl);
        for (const auto& [t, w] : texte_)
            sortierschluessel(t, schluessel[w]);
        std::sort(werte.begin(), werte.end(),
                  [&](std::uint32_t a, std::uint32_t b) { return schluessel[a] < schluessel[b]; });
        for (std::size_t i = 0; i < werte.size(); ++i)
            rang[werte[i]] = i > 0 && schluessel[werte[i]] == schluessel[werte[i - 1]]
                                 ? rang[werte[i - 1]]
                                 : static_cast<std::uint32_t>(i) + 1;
    } else {
        std::vector<double> zahl(anzahl);
        for (const auto& [z, w] : zahlen_)
            zahl[w] = z;
        std::sort(werte.begin(), werte.end(),
                  [&](std::uint32_t a, std::uint32_t b) { return zahl[a] < zahl[b]; });
        for (std::size_t i = 0; i < werte.size(); ++i)
            rang[werte[i]] = static_cast<std::uint32_t>(i) + 1;
    }
    return rang;
}

} // namespace folio
