// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/ui/plotPicture.h"

#include "base/files.h"
#include "plot/ui/DistributionChart.h"
#include "plot/ui/paintDrawing.h"

#include <utility>

namespace telvo::plot::ui {

using chart::ui::Picture;

Picture planPicture(plot::Drawing drawing) {
    Picture picture;
    picture.paint = [drawing = std::move(drawing)](QPainter& painter, const QRectF& page) {
        paintDrawing(drawing, painter, page, chart::ui::paperPalette());
    };
    return picture;
}

std::variant<Picture, Refusal> plotPicture(plot::PictureKind kind, const run::Run& run,
                                           const report::ReportOptions& options, int pass,
                                           const plot::PlanOptions& plan) {
    Picture picture;
    if (plot::rowOf(kind).isPlan) {
        auto drawn = plot::planOf(kind, run, options, pass, plan);
        if (auto* refused = std::get_if<Refusal>(&drawn)) return std::move(*refused);
        picture = planPicture(std::get<plot::Drawing>(std::move(drawn)));
    } else {
        picture = distributionPicture(plot::distributionOf(kind, run, options, pass), {});
    }
    if (plot::rowOf(kind).isPlan && plot::rowOf(kind).hasNumbers)
        picture.csv = plot::distributionCsv(plot::distributionOf(kind, run, options, pass));
    picture.caseName = withoutFolder(run.current.FileName);
    return picture;
}

} // namespace telvo::plot::ui
