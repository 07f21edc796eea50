// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/questions/tornado.h"
#include "study/ui/studies/StudyPage.h"

class QComboBox;
class QGroupBox;

namespace telvo::study::ui {

class OutcomeBox;

/// "What matters?" All inputs over their ranges, as tornado or spider; the range of the input in the
/// selected row is edited above the table.
class TornadoPage : public StudyPage {
    Q_OBJECT
  public:
    TornadoPage(PageActions actions, QWidget* parent);

  protected:
    void fill(bool another) override;
    Result<Compute> read() override;
    void shown() override;

  private:
    void makeFields();
    std::vector<RangedInput> ranges() const;
    void select(const Variable& variable);
    void showRange();
    void readRange();
    void setRange(const std::optional<Range>& range);
    void showForm(const Range& range);

    OutcomeBox* m_outcome;
    QComboBox* m_look;
    QComboBox* m_input;
    QComboBox* m_form;
    telvo::ui::NumberEdit* m_low;
    telvo::ui::NumberEdit* m_high;
    QPushButton* m_default;
    QPushButton* m_allDefault;
    std::shared_ptr<const Tornado> m_tornado;
    std::optional<Fault> m_rangeFault; ///< of what is typed
};

/// The result of a page, for the tests and for whoever draws it elsewhere.
StudyResult tornadoResult(std::shared_ptr<const Tornado> tornado, const project::ProjectCase& base,
                          const TornadoRequest& request, bool spider, std::optional<double> limit);

} // namespace telvo::study::ui
