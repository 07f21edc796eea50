// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/layoutPicture.h"

#include "app/settingsOptions.h"
#include "base/ui/qtText.h"
#include "plot/ui/paintDrawing.h"
#include "plot/ui/picture.h"
#include "plot/ui/PlanView.h"

#include <utility>

namespace telvo::app::ui {

std::optional<Refusal> drawPlan(telvo::ui::PlanView& view, const project::ProjectCase& current,
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
    auto* view = new telvo::ui::PlanView("Picture1", parent);
    return {view,
            [view, &settings](const project::ProjectCase& current) {
                return drawPlan(*view, current, settings);
            },
            // All of it at the size of a picture file, whatever room the form has for it.
            [view]() -> QImage {
                if (!view->drawing()) return {};
                telvo::ui::Picture picture;
                picture.paint = [&drawing = *view->drawing()](QPainter& painter,
                                                              const QRectF& page) {
                    telvo::ui::paintDrawing(drawing, painter, page, telvo::ui::paperPalette());
                };
                return telvo::ui::pictureImage(picture, 2 * telvo::ui::ScreenResolution);
            }};
}

} // namespace telvo::app::ui
