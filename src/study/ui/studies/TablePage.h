// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/questions/sweep.h"
#include "study/ui/studies/StudyPage.h"

#include <array>
#include <atomic>

class QCheckBox;
class QListWidget;

namespace telvo::study::ui {

class InputBox;

/// "Table of values": one to four inputs over lists of values, with curve or map.
class TablePage : public StudyPage {
    Q_OBJECT
  public:
    TablePage(PageActions actions, QWidget* parent);

  protected:
    void fill(bool another) override;
    Result<Compute> read() override;

  private:
    struct AxisFields {
        InputBox* input;
        telvo::ui::NumberEdit* from;
        telvo::ui::NumberEdit* to;
        telvo::ui::NumberEdit* step;
        QLineEdit* list;
        std::vector<QWidget*> all;
    };

    void makeFields();
    void proposeAxis(std::size_t axis);
    void showAxis(std::size_t axis, const std::string& values);
    void showAxes();
    void listOutcomes();
    std::vector<std::string> checkedOutcomes() const;
    Result<SweepAxis> readAxis(std::size_t axis) const;
    std::string valuesText(std::size_t axis) const;

    std::array<AxisFields, SweepRequest::mostAxes> m_axes{};
    QCheckBox* m_linked;
    QListWidget* m_outcomes;
    telvo::ui::NumberEdit* m_level;
    QCheckBox* m_suggested;
};

/// What a table of values shows.
/// Given: levels  lines of the picture, as sweepLines() takes them
StudyResult sweepResult(std::shared_ptr<const Sweep> sweep,
                        const std::vector<std::optional<double>>& levels);

} // namespace telvo::study::ui
