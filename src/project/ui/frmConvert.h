// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"
#include "project/ProjectInput.h"

namespace telvo::project::ui {

/// Converts the case to the other unit system, after it has told what that means.
class frmConvert : public telvo::ui::Form {
    Q_OBJECT
  public:
    frmConvert(const ProjectCase& current, const telvo::ui::FormServices& services,
               QWidget* parent = nullptr);

    /// The converted case under its new name when the form was accepted, else the case as given.
    const ProjectCase& converted() const { return m_converted; }

    void accept() override;

  private:
    QWidget* makeComparison();
    QString notes() const;

    Result<ProjectCase> m_outcome;
    ProjectCase m_current;
    ProjectCase m_converted;
};

} // namespace telvo::project::ui
