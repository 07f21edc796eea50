// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/ui/drawings/uncertaintyDrawing.h"
#include "study/ui/studies/StudyPage.h"

class QLineEdit;

namespace telvo::study::ui {

class InputBox;

/// "How does the share go?" The share of samples that miss each limit over a design variable, for
/// what scatters on the page of the uncertainty.
class ShareCurvePage : public StudyPage {
    Q_OBJECT
  public:
    ShareCurvePage(PageActions actions, QWidget* parent);

  protected:
    void fill(bool another) override;
    Result<Compute> read() override;

  private:
    void makeFields();
    void propose();
    void showRequest(const AskedFragility& asked);
    AskedUncertainty scatterOfCase() const;

    InputBox* m_over;
    telvo::ui::NumberEdit* m_from;
    telvo::ui::NumberEdit* m_to;
    telvo::ui::NumberEdit* m_step;
    telvo::ui::NumberEdit* m_share;
    QLineEdit* m_weights;
};

} // namespace telvo::study::ui
