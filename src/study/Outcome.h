// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"
#include "engine/Frame.h"
#include "engine/quantities.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::study {

/// What a study reads off a run: one number of the results, the smaller one of both sides, or how
/// far such a number lies above a limit.
class Outcome {
  public:
    /// By the name that results give a quantity: "TELVOSF.retreat", "PillarStrength.2"; with
    /// "smallest" in the place of the side, "BarrierSF.retreat.smallest", the smaller one of the
    /// sides that have it. Nothing for any other text.
    static std::optional<Outcome> named(std::string_view name);
    /// Stability factor of the panel in a pass, or of the barrier of a side (3, 4).
    static Outcome factor(int pass, int side);

    /// The same number less a limit: negative where the limit is not reached.
    Outcome marginTo(double limit) const;
    /// The same factor less the one that the warnings suggest: of the panel at the depth and in the
    /// surroundings of the case, of a barrier 1.5. Nothing for what is neither.
    std::optional<Outcome> marginToSuggested() const;
    bool asksForSuggested() const { return m_suggested != Suggested::No; }
    /// Likewise of the panel, which follows the depth; that of a barrier does not.
    bool asksForSuggestedOfPanel() const { return m_suggested == Suggested::OfPanel; }

    /// As named() takes it; with a limit "BarrierSF.retreat.first - 1.5".
    std::string name() const;
    /// As screens name it: "Retreat factor of the panel", "Front abutment load, first side".
    std::string label() const;
    engine::Kind kind() const { return m_kind; }
    /// "1.61", "523.4 psf": a value with its unit, to four digits.
    std::string text(double value, std::int16_t units) const;
    /// Development or Retreat; 0 of what no pass has for itself.
    int pass() const;

    /// Whether a case has it: what belongs to a side needs that side, and a factor its barrier.
    bool isDefined(const engine::Frame& frame, const project::ProjectInput& in) const;
    /// Its value in a run of a case for which it is defined.
    /// Given: suggested  factor that the warnings suggest for the panel; where it is asked for
    double of(const engine::AnalysisResults& results, const engine::Frame& frame,
              const project::ProjectInput& in, double suggested = 0) const;

    /// The quantities of results that it is made of, by name; one, or one per side.
    std::vector<std::string> quantities() const;
    std::size_t parts() const { return m_count; }
    /// Likewise its value, from these.
    /// Given: quantities  in the same order
    double from(std::span<const double> quantities, const engine::Frame& frame,
                const project::ProjectInput& in, double suggested = 0) const;

  private:
    /// Where a number lies in the record of results.
    struct Place {
        std::size_t offset = 0;
        bool single = false;
        int side = 0;   ///< 0: of the panel
        int pillar = 0; ///< 0: of no single one
    };

    Outcome() = default;
    std::string quantityOf(const Place& place) const;
    double lessLimit(double value, double suggested) const;
    bool add(std::string_view path);
    bool has(const Place& place, const engine::Frame& frame, const project::ProjectInput& in) const;

    std::string m_name;
    engine::Kind m_kind = engine::Kind::Number;
    std::array<Place, 2> m_places{};
    std::size_t m_count = 0;
    double m_limit = 0;
    enum class Suggested : std::uint8_t { No, OfPanel, OfBarrier };
    Suggested m_suggested = Suggested::No;
};

/// Every outcome that a case has, as a list to choose from: the factors first, retreat before
/// development and with the smaller one of both sides, then all quantities in report order.
std::vector<Outcome> outcomesOf(const project::ProjectCase& base);

} // namespace telvo::study
