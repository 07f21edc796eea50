// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"
#include "project/ProjectInput.h"

#include <string>

class QLineEdit;

namespace telvo::project::ui {

class DescriptionEdit;

/// Edits the title and the description of a case.
class frmTELVODesc : public telvo::ui::Form {
    Q_OBJECT
  public:
    frmTELVODesc(const ProjectCase& current, const telvo::ui::FormServices& services,
                 QWidget* parent = nullptr);

    /// Whether the form was closed with OK.
    bool accepted() const { return m_accepted; }
    /// Whether it was, and title() or description() differs from that of the case.
    bool modified() const { return m_accepted && changed(); }
    /// What the controls hold at this moment, in the form in which a case holds it; as the case had
    /// it where nothing was changed.
    std::string title() const;
    std::string description() const;

    void done(int result) override;
    void reject() override;

  protected:
    void showEvent(QShowEvent* event) override;

  Q_SIGNALS:
    /// The title or the description was changed.
    void edited();

  private:
    QLineEdit* makeTitle();
    DescriptionEdit* makeDescription();
    bool changed() const;

    ProjectCase m_current;
    QLineEdit* m_title = nullptr;
    DescriptionEdit* m_description = nullptr;
    QString m_openedTitle; ///< the texts as the controls first showed them
    QString m_openedDescription;
    bool m_accepted = false;
};

} // namespace telvo::project::ui
