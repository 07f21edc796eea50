// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/output/StudyAnswer.h"
#include "study/output/sweepLines.h"
#include "study/ui/drawings/Drawing.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The pictures of studies, as windows show them and the console writes them.
namespace telvo::study::ui {

/// Places of a bar of a tornado: its ends, and where the outcome is least and most.
enum TornadoEnd : std::size_t { LowEnd, HighEnd, LeastEnd, MostEnd, TornadoEnds };
/// Nothing where it could not be computed.
std::optional<GraphPoint> tornadoPoint(const TornadoBar& bar, std::size_t end);
/// What is to say on a bar: why it has no effect, how many values were not computed.
std::string tornadoRemark(const TornadoBar& bar);

/// Bars, or all inputs as lines over one axis. Its places are numbered bar * TornadoEnds + end.
/// Given: suggested  factor of the warnings, where the outcome has one
Drawing tornadoDrawing(std::shared_ptr<const TornadoAnswer> answer, bool spider,
                       std::optional<double> suggested);

/// The outcome over the input, with the intervals in which the criterion holds. Its places stand at
/// the input's values.
Drawing findDrawing(std::shared_ptr<const FindAnswer> answer);

/// A curve of required values per target, hatched where nothing helps. Its places stand at the
/// values of both inputs.
Drawing designDrawing(std::shared_ptr<const DesignAnswer> answer);
/// A target as text: "1.5", "suggested".
std::string designTarget(const DesignAnswer& answer, std::size_t curve);

/// Curves over one input, or a map over two, with lines where the first outcome takes a value. Its
/// places are numbered by row. Without a picture for more inputs.
Drawing sweepDrawing(std::shared_ptr<const Sweep> sweep, std::vector<SweepLine> lines);
/// "row 7: Depth of Cover 850 ft".
std::string sweepRowName(const Sweep& sweep, std::size_t row);
inline constexpr auto NoSweepPicture =
    "A picture is drawn of one input, or of two in all combinations.";

/// The picture of any answer.
Drawing drawingOf(const StudyAnswer& answer, const StudyLook& look, int RoundTELVOSF);

} // namespace telvo::study::ui
