// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/geometry.h"

namespace telvo::engine {

double pillarLength(const WorkingInputs& in) {
    const double length = (in.Sc - in.We / in.SinTheta) * in.SinTheta;
    const double rounding = 1e-12 * in.Sc;
    return length < 0 && length > -rounding ? 0 : length;
}

void panelGeometry(const WorkingInputs& in, AnalysisResults& r) {
    const double sine = in.SinTheta;
    r.PanelWidth = in.PanelWidth;
    r.AMZBreadth = in.B;
    r.AMZArea = in.B * in.PanelWidth;
    r.PillarLength = pillarLength(in);

    double areas = 0;
    for (int i = 1; i <= in.NumberPillars; ++i) {
        r.PillarSkewWidth[i] = in.PillarGrossWidth[i] / sine;
        r.PillarArea[i] = r.PillarLength * r.PillarSkewWidth[i];
        areas += r.PillarArea[i];

        r.MinDimension[i] = in.PillarGrossWidth[i];
        r.MaxDimension[i] = r.PillarLength / sine;
        if (r.PillarLength <= in.PillarGrossWidth[i]) {
            r.MinDimension[i] = r.PillarLength;
            r.MaxDimension[i] = r.PillarSkewWidth[i];
        }
    }
    r.PillarAreaAMZ = areas * in.B / in.Sc;
    r.ExtractionRatioAMZ = (r.AMZArea - r.PillarAreaAMZ) / r.AMZArea;
}

ActiveRows activeRows(const WorkingInputs& in) {
    ActiveRows rows{1, in.NumberPillars, in.PanelWidth};
    if (in.rowLeft(1)) {
        rows.width = in.PanelWidth - in.EntryCenter[1];
        rows.first = 2;
    }
    if (in.rowLeft(2)) {
        rows.width -= in.EntryCenter[in.NumberPillars];
        rows.last = in.NumberPillars - 1;
    }
    return rows;
}

} // namespace telvo::engine
