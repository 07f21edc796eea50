// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDialogs.h"
#include "base/ui/Form.h"
#include "chart/ui/picture.h"
#include "study/ui/studies/StudyPage.h"

#include <functional>
#include <string>
#include <vector>

class QListWidget;
class QProgressDialog;
class QStackedWidget;

namespace telvo::study::ui {

/// The pages, in the order of menu and list.
enum class StudyKind {
    WhatMatters,
    TableOfValues,
    FindValue,
    DesignChart,
    Scenarios,
    Compare,
    HowSure,
    ShareCurve
};
inline constexpr std::size_t StudyKinds = 8;

/// What the window of the studies has done for it.
struct StudyActions {
    chart::ui::PictureActions picture;
    FileDialogs& files;
    std::function<std::vector<std::string>()> caseFilters; ///< of a dialog that opens case files
    std::function<std::string()> folder;                   ///< where exports are proposed to go
    /// Opens a case as a new untitled one, after the question about unsaved changes.
    /// Returned: why it was not opened; empty when it was, and when the user did not want it.
    std::function<std::string(const project::ProjectCase& current, const std::string& what)>
        openAsCase;
    /// Takes values into the open case. Returned: why they were not taken; empty when they were.
    std::function<std::string(const project::ProjectInput& values, const std::string& what)> take;
    std::function<PlanPane(const QString& name, QWidget* parent)> makePlan;
    // What is asked of the case on screen, which its study file keeps.
    std::function<StudySettings&()> settings;
    std::function<bool()> isChanged; ///< since it was read or written
    std::function<void()> save;
    std::function<void()> open;
    /// Cases as they were run since the program started, the last one first.
    std::function<std::vector<NamedCase>()> runs;
};

/// The studies of the case on screen, not modal: a list of pages at the left, the page at the right.
class frmStudies : public telvo::ui::Form {
    Q_OBJECT
  public:
    frmStudies(StudyActions actions, const telvo::ui::FormServices& services,
               QWidget* parent = nullptr);
    ~frmStudies() override;

    void showPage(StudyKind kind);
    /// The case on screen, whenever it may have changed. Pages that are not shown compute when they
    /// are.
    /// Given: renewed  the fields begin anew from the settings of the case
    void setCase(const StudyCase& subject, bool renewed);
    StudyPage& page(StudyKind kind) const;
    StudyPage& currentPage() const;

  protected:
    QString focusTopic() const override;

  private:
    void addPage(StudyPage* page);
    QLayout* makeSide();
    void showButtons();
    void showName();
    void openAsCase(const CaseChoice& choice);
    void addToCompare(const std::vector<CaseChoice>& cases);
    void saveAsFiles(const std::vector<CaseChoice>& cases);
    void copyTable();
    void copyPicture();
    void exportResult();
    void exportPictureTo(const std::string& path);
    void exportTableTo(const std::string& path);
    void endExport(const std::string& path, const Status& written);
    void print();

    StudyActions m_actions;
    StudyCase m_subject;
    bool m_hasCase = false;
    QListWidget* m_list;
    QPushButton* m_save = nullptr;
    QStackedWidget* m_stack;
    std::vector<StudyPage*> m_pages;
    std::vector<QPushButton*> m_outlets; ///< buttons that need a result
    Background* m_export;
    QProgressDialog* m_progress = nullptr;
};

} // namespace telvo::study::ui
