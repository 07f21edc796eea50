// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"

#include <functional>
#include <string>

class QCheckBox;
class QComboBox;
class QFontComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPlainTextEdit;
class QSpinBox;
class QTextDocument;
class QToolButton;

namespace telvo::library::ui {

/// What the browser remembers; names and values are those of the settings' section "TextBrowse".
struct BrowseOptions {
    std::string BrowseFontName;
    float BrowseFontSize = 10;         ///< points, 7 to 24
    std::int16_t BrowseFontBold = 0;   ///< -1 or 0
    std::int16_t BrowseFontItalic = 0; ///< -1 or 0
    std::string BrowseDefaultFilter;   ///< pattern of the filter list
    std::int16_t BrowseUseNotepad = 0; ///< 1: files open in the outside editor
    bool operator==(const BrowseOptions&) const = default;
};

/// What the browser has done for it.
struct BrowseActions {
    std::function<void(const std::string& path)> openOutside;
    std::function<void(const QTextDocument& text, const std::string& path, QWidget* parent)> print;
    std::function<void(const BrowseOptions& changed)> keep;
};

/// The text browser: folders and files on the left, the chosen file on the right, read only.
class frmTextBrow : public telvo::ui::Form {
    Q_OBJECT
  public:
    /// Given: folder     where it begins
    ///        extension  of project files
    frmTextBrow(BrowseOptions options, const std::string& folder, const std::string& extension,
                BrowseActions actions, const telvo::ui::FormServices& services,
                QWidget* parent = nullptr);

    void done(int result) override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QWidget* makeFilePane(const std::string& extension);
    QWidget* makeTextPane();
    QLayout* makeFindRow();
    QLayout* makeFontRow();
    QDialogButtonBox* makeButtonRow();

    void enterFolder(const QString& folder);
    void listFiles(const QString& chosen = {});
    void showFile();
    void activate(const QListWidgetItem* item);
    void openOutside();
    void find(bool backward);
    void copy();
    void print();
    void applyFont();
    QString filterPattern() const;
    QString chosenFile() const;
    BrowseOptions options() const;

    BrowseOptions m_options;
    BrowseActions m_actions;
    QString m_folder;
    QString m_shown; ///< path of the file in the view; empty: none
    QLineEdit* m_folderBox = nullptr;
    QListWidget* m_files = nullptr;
    QComboBox* m_filter = nullptr;
    QCheckBox* m_outside = nullptr;
    QPlainTextEdit* m_text = nullptr;
    QLabel* m_heading = nullptr;
    QLineEdit* m_find = nullptr;
    QCheckBox* m_matchCase = nullptr;
    QFontComboBox* m_family = nullptr;
    QSpinBox* m_size = nullptr;
    QToolButton* m_bold = nullptr;
    QToolButton* m_italic = nullptr;
    QPushButton* m_editor = nullptr;
};

} // namespace telvo::library::ui
