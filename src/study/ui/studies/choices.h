// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/Outcome.h"
#include "study/Variable.h"

#include <optional>
#include <QComboBox>
#include <vector>

/// Lists to choose inputs and results from. They are filled anew when the case changes and keep what
/// is chosen, also where the case does not have it any more.
namespace telvo::study::ui {

/// Inputs: those that change something in the case first, the others with their reason below.
class InputBox : public QComboBox {
    Q_OBJECT
  public:
    InputBox(const QString& name, const QString& accessibleName, const QString& toolTip,
             QWidget* parent);
    /// Given: mayBeNone  the first entry chooses no input
    void list(const project::ProjectCase& base, bool mayBeNone = false);
    Variable variable() const;
    void choose(const Variable& variable);
};

/// Results: factors first.
class OutcomeBox : public QComboBox {
    Q_OBJECT
  public:
    OutcomeBox(const QString& name, const QString& accessibleName, const QString& toolTip,
               QWidget* parent);
    void list(const project::ProjectCase& base);
    std::optional<Outcome> outcome() const;
    void choose(const std::string& name);
};

} // namespace telvo::study::ui
