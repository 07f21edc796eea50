// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/questions/find.h"
#include "study/ui/studies/StudyPage.h"

#include <array>

class QCheckBox;
class QComboBox;

namespace telvo::study::ui {

class InputBox;
class OutcomeBox;

/// "Find a value": the intervals of one input in which a result meets a target.
class FindPage : public StudyPage {
    Q_OBJECT
  public:
    FindPage(PageActions actions, QWidget* parent);

  protected:
    void fill(bool another) override;
    Result<Compute> read() override;
    void shown() override;

  private:
    void makeFields();
    void proposeRange();
    void proposeTarget();
    void showRequest(const FindRequest& request);
    void take();

    InputBox* m_input;
    telvo::ui::NumberEdit* m_low;
    telvo::ui::NumberEdit* m_high;
    telvo::ui::NumberEdit* m_step;
    OutcomeBox* m_outcome;
    QComboBox* m_sense;
    telvo::ui::NumberEdit* m_target;
    QCheckBox* m_suggested;
    QPushButton* m_take;
    std::optional<FindRequest> m_request; ///< of the result that is shown
};

/// What a search over a case is asked first.
FindRequest firstFindRequest(const project::ProjectCase& base);

} // namespace telvo::study::ui
