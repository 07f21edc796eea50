// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/ui/drawings/uncertaintyDrawing.h"
#include "study/ui/studies/StudyPage.h"

#include <functional>

class QCheckBox;
class QComboBox;

namespace telvo::study::ui {

class OutcomeBox;

/// Changes which inputs scatter and how; false when the user did not want it.
using EditScatter = std::function<bool(const project::ProjectCase& base, AskedUncertainty& asked)>;

/// "How sure is it?" Inputs that scatter, the share of samples that miss each limit, what drives it.
class UncertaintyPage : public StudyPage {
    Q_OBJECT
  public:
    UncertaintyPage(PageActions actions, EditScatter editScatter, QWidget* parent);

  Q_SIGNALS:
    /// Limits, scatter or samples are others now.
    void askedChanged();

  protected:
    void fill(bool another) override;
    Result<Compute> read() override;
    void shown() override;

  private:
    void makeFields();
    void makeLimitFields();
    std::vector<Criterion> limits() const;
    void listLimits(int current);
    void listSamples();
    void addLimit();
    void keep();

    EditScatter m_editScatter;
    QComboBox* m_view;
    QComboBox* m_limit;
    QPushButton* m_remove;
    OutcomeBox* m_outcome;
    QComboBox* m_sense;
    telvo::ui::NumberEdit* m_target;
    QCheckBox* m_suggested;
    QComboBox* m_samples;
    telvo::ui::NumberEdit* m_seed;
    QPushButton* m_inputs;
    AskedUncertainty m_asked; ///< as it is kept beside the case; what it leaves out is usual
    UncertaintyPtr m_answer;  ///< to what the fields ask; nothing: to be computed
};

enum class UncertaintyView { Shares, Importance, Convergence, Samples };

/// Table and picture of an answer.
StudyResult uncertaintyResult(const UncertaintyPtr& answer, UncertaintyView view,
                              std::size_t criterion);

} // namespace telvo::study::ui
