// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/questions/designChart.h"
#include "study/ui/studies/StudyPage.h"

class QComboBox;

namespace telvo::study::ui {

class InputBox;
class OutcomeBox;

/// "Design chart": the required value of one input over another, for several targets.
class DesignPage : public StudyPage {
    Q_OBJECT
  public:
    DesignPage(PageActions actions, QWidget* parent);

  protected:
    void fill(bool another) override;
    Result<Compute> read() override;

  private:
    struct RangeFields {
        InputBox* input;
        telvo::ui::NumberEdit* from;
        telvo::ui::NumberEdit* to;
        telvo::ui::NumberEdit* step;
    };

    void makeFields();
    void propose(RangeFields& fields, double steps);
    void showRequest(const DesignChartRequest& request);
    Result<Span> readSpan(const RangeFields& fields, double& step) const;

    RangeFields m_required{}, m_over{};
    OutcomeBox* m_outcome;
    QComboBox* m_sense;
    QLineEdit* m_targets;
};

/// Targets as they are written: "1.3, 1.5, suggested".
} // namespace telvo::study::ui
