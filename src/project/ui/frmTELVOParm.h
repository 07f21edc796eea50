// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"
#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "project/automatic.h"
#include "project/checks.h"
#include "project/inputFields.h"
#include "project/KeyFigures.h"
#include "project/ProjectInput.h"
#include "project/ui/KeptMarks.h"

#include <functional>
#include <map>
#include <optional>
#include <QImage>
#include <QTimer>
#include <set>
#include <string>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QSplitter;
class QTabWidget;
class QVBoxLayout;

namespace telvo::project::ui {

using telvo::ui::NumberEdit;

/// Property of a figure's label: its tool tip while it has a value.
inline constexpr char FigureToolTip[] = "telvoFigureToolTip";

/// The picture of the panel layout, as the plotting side makes it.
struct LayoutPicture {
    QWidget* widget = nullptr;
    /// Draws a case; a refusal leaves the picture empty.
    std::function<std::optional<Refusal>(const ProjectCase&)> draw;
    std::function<QImage()> image;
};

/// What lies above the form and is handed in.
struct ParameterActions {
    /// OK: takes the values into the project copy. Returned: whether they differ from it.
    std::function<bool(const ProjectInput&)> accept;
    /// Runs the analysis and shows the report. Returned: the input that the check before it
    /// refuses.
    std::function<std::optional<Refusal>(const ProjectCase&)> results;
    /// The figures of a case, silently.
    std::function<KeyFigures(const ProjectCase&)> figures;
    std::function<LayoutPicture(QWidget* parent)> makePicture;
};

/// The dialog in which the parameters of the open case are edited. It opens on the project copy by
/// way of the working copy; OK stores into the project copy, Results and View compute from the
/// working copy alone.
class frmTELVOParm : public telvo::ui::Form {
    Q_OBJECT
  public:
    /// Given: confirmCancel  whether closing by any way other than OK asks first
    frmTELVOParm(OpenCase& open, bool confirmCancel, ParameterActions actions,
                 const telvo::ui::FormServices& services, QWidget* parent = nullptr);
    ~frmTELVOParm() override;

    /// The values on screen.
    ProjectInput values() const;

    void accept() override;
    void reject() override;
    void done(int result) override;

  Q_SIGNALS:
    /// The user changed a value.
    void edited();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    // frmTELVOParm_layout.cpp
    void build();
    QWidget* developmentTab();
    QWidget* defaultsTab();
    QWidget* retreatTab();
    QGroupBox* distancesGroup();
    QGroupBox* loadingGroup();
    QWidget* sidePanel();
    /// Tells of automatic values that the record stores and that are not its own.
    QWidget* automaticBanner();
    QWidget* buttonRow();
    /// A frame with the boxes of its fields, in two columns: caption and box.
    QGroupBox* fieldGroup(const std::string& name);
    QCheckBox* addCheck(QGroupBox& group, const std::string& name, const QString& caption,
                        const QString& tip);
    NumberEdit* addNumber(FieldId id);
    QString unitOf(FieldKind kind) const;
    void setTabOrders();

    // frmTELVOParm.cpp
    void fill(const ProjectInput& input);
    ParameterTexts texts() const;
    ProjectCase trialCase();
    NumberEdit& box(FieldId id) const;
    QCheckBox& check(Field flag) const;
    void userEdited();
    void refresh();
    void enableControls();
    void showAutomaticValues();
    void copyEqualSpacing();
    void useAutomaticValues();
    void keepStoredValues();
    void markRefusals();
    std::optional<QString> readPasted(const QString& pasted, FieldKind kind);
    void showFigures();
    KeyFigures figuresOf(const ProjectCase& shown) const;
    void rowToggled(Field row);
    void focusMoved(QWidget* old, QWidget* now);
    void showAdvisory(std::optional<std::string_view> text);
    void showPendingAdvisories();
    void results();
    void view();
    void copyPicture();

    OpenCase& m_open;
    ParameterActions m_actions;
    bool m_confirmCancel;
    bool m_filling = false;
    bool m_edited = false;
    bool m_accepted = false;
    bool m_modified = false;
    bool m_advising = false;
    std::map<std::string, NumberEdit*> m_boxes; ///< every numeric box by its name
    std::map<std::string, QCheckBox*> m_checks; ///< flags of the record
    QCheckBox* m_equal = nullptr;
    std::map<std::string, QLabel*> m_figures;
    QComboBox* m_entries = nullptr;
    QLineEdit* m_entryCount = nullptr;
    QButtonGroup* m_anal = nullptr;
    QTabWidget* m_tabs = nullptr;
    QSplitter* m_splitter = nullptr;
    LayoutPicture m_picture;
    std::optional<KeptMarks> m_kept; ///< of values that the case file did not give
    QTimer Timer1;                   ///< first figures and picture, once the form is on the screen
    QString m_why;                   ///< there are no figures
    std::string m_whyControl;
    std::vector<StaleAutomatic> m_stale; ///< as the form was opened, until they are settled
    QFrame* m_staleBanner = nullptr;
    std::set<std::string> m_touched;              ///< boxes that the user edited or left
    std::string m_leftBox;                        ///< left for a place that is not known yet
    std::vector<std::string> m_pendingAdvisories; ///< boxes that were left and may owe an advisory
};

} // namespace telvo::project::ui
