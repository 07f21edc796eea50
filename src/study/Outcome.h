// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/AnalysisResults.h"
#include "engine/Frame.h"
#include "engine/quantities.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

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

    /// As named() takes it; with a limit "BarrierSF.retreat.first - 1.5".
    std::string name() const;
    engine::Kind kind() const { return m_kind; }

    /// Whether a case has it: what belongs to a side needs that side, and a factor its barrier.
    bool isDefined(const engine::Frame& frame, const project::ProjectInput& in) const;
    /// Its value in a run of a case for which it is defined.
    double of(const engine::AnalysisResults& results, const engine::Frame& frame,
              const project::ProjectInput& in) const;

  private:
    /// Where a number lies in the record of results.
    struct Place {
        std::size_t offset = 0;
        bool single = false;
        int side = 0; ///< 0: of the panel
    };

    Outcome() = default;
    bool add(std::string_view path);
    bool has(const Place& place, const engine::Frame& frame, const project::ProjectInput& in) const;

    std::string m_name;
    engine::Kind m_kind = engine::Kind::Number;
    std::array<Place, 2> m_places{};
    std::size_t m_count = 0;
    double m_limit = 0;
};

} // namespace telvo::study
