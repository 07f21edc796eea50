// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/layoutPicture.h"

#include "app/settingsOptions.h"
#include "base/ui/qtText.h"
#include "chart/ui/picture.h"
#include "plot/ui/paintDrawing.h"
#include "plot/ui/PlanView.h"

#include <utility>

namespace telvo::app::ui {

std::optional<Refusal> drawPlan(plot::ui::PlanView& view, const project::ProjectCase& current,
                                const SettingsStore& settings) {
    auto plan = plot::panelPlan(current, planOptions(settings.values()));
    if (auto* refused = std::get_if<Refusal>(&plan)) {
        view.setMessage(telvo::ui::toQt(refused->message));
        return std::move(*refused);
    }
    view.setDrawing(std::move(std::get<plot::Drawing>(plan)));
    return std::nullopt;
}

project::ui::LayoutPicture layoutPicture(const SettingsStore& settings, QWidget* parent) {
    auto* view = new plot::ui::PlanView("Picture1", parent);
    return {view,
            [view, &settings](const project::ProjectCase& current) {
                return drawPlan(*view, current, settings);
            },
            // All of it at the size of a picture file, whatever room the form has for it.
            [view]() -> QImage {
                if (!view->drawing()) return {};
                chart::ui::Picture picture;
                picture.paint = [&drawing = *view->drawing()](QPainter& painter,
                                                              const QRectF& page) {
                    plot::ui::paintDrawing(drawing, painter, page, chart::ui::paperPalette());
                };
                return chart::ui::pictureImage(picture, 2 * chart::ui::ScreenResolution);
            }};
}

} // namespace telvo::app::ui
