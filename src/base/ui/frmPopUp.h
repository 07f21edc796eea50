// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"

namespace telvo::ui {

/// Shows a text that is too long for a message box. Modal when it is run with exec().
class frmPopUp : public Form {
    Q_OBJECT
  public:
    /// Given: text  any line breaks; paragraphs are wrapped at the window's width
    frmPopUp(const QString& title, std::string_view text, const QString& helpTopic,
             const FormServices& services, QWidget* parent = nullptr);
};

} // namespace telvo::ui
