// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/ui/frmTextBrow.h"

#include "base/note.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "library/viewedFile.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFontComboBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QStyle>
#include <QTextDocumentFragment>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

namespace telvo::library::ui {

using telvo::ui::describe;
using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

enum EntryRole { PathRole = Qt::UserRole, FolderRole };

/// A folder as it is shown: with the separators of the system, ended by one.
QString shownFolder(const QString& folder) {
    const QString native = QDir::toNativeSeparators(folder);
    return native.endsWith(QDir::separator()) ? native : native + QDir::separator();
}

} // namespace

frmTextBrow::frmTextBrow(BrowseOptions options, const std::string& folder,
                         const std::string& extension, BrowseActions actions,
                         const telvo::ui::FormServices& services, QWidget* parent)
    : Form("frmTextBrow", titles::TextBrowser, "TextBrowser.htm", services, parent),
      m_options(std::move(options)), m_actions(std::move(actions)) {
    setWindowTitle(tr("View Source Files"));
    auto* layout = new QVBoxLayout(this);
    auto* splitter = new QSplitter(this);
    splitter->setObjectName("splTextBrow");
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(makeFilePane(extension));
    splitter->addWidget(makeTextPane());
    splitter->setStretchFactor(1, 1);
    layout->addWidget(splitter, 1);
    layout->addWidget(makeButtonRow());
    applyFont();
    enterFolder(toQt(folder));
    m_files->setFocus();
    const int letter = fontMetrics().averageCharWidth();
    splitter->setSizes({40 * letter, 90 * letter});
    resize(130 * letter, 40 * fontMetrics().height());
}

QWidget* frmTextBrow::makeFilePane(const std::string& extension) {
    auto* pane = new QWidget;
    auto* layout = new QVBoxLayout(pane);
    layout->setContentsMargins({});
    const auto addLabelled = [&](const QString& caption, QWidget* control, int stretch = 0) {
        auto* label = new QLabel(caption);
        label->setBuddy(control);
        layout->addWidget(label);
        layout->addWidget(control, stretch);
    };
    m_folderBox = new QLineEdit;
    describe(*m_folderBox, "txtFolder", tr("Folder"),
             tr("Folder that is listed; Enter goes there"));
    connect(m_folderBox, &QLineEdit::returnPressed, this,
            [this] { enterFolder(m_folderBox->text()); });
    addLabelled(tr("F&older:"), m_folderBox);

    m_files = new QListWidget;
    describe(*m_files, "lstFiles", tr("Files"),
             tr("Folders and files; Enter or a double click opens, Backspace goes up"));
    connect(m_files, &QListWidget::currentItemChanged, this, &frmTextBrow::showFile);
    connect(m_files, &QListWidget::itemActivated, this, &frmTextBrow::activate);
    addLabelled(tr("&Files:"), m_files, 1);

    m_filter = new QComboBox;
    describe(*m_filter, "cboFilter", tr("Filter"),
             tr("Which files are listed; type patterns such as *.dat; *.out"));
    m_filter->setEditable(true);
    m_filter->setInsertPolicy(QComboBox::NoInsert);
    m_filter->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    for (const BrowseFilter& filter : browseFilters(extension))
        m_filter->addItem(toQt(filter.label), toQt(filter.patterns));
    const QString preset = toQt(m_options.BrowseDefaultFilter);
    if (const int known = m_filter->findData(preset); known >= 0)
        m_filter->setCurrentIndex(known);
    else if (!preset.trimmed().isEmpty())
        m_filter->setEditText(preset);
    connect(m_filter, &QComboBox::activated, this, [this] { listFiles(); });
    connect(m_filter->lineEdit(), &QLineEdit::editingFinished, this, [this] {
        if (m_filter->findText(m_filter->currentText()) < 0) listFiles(m_shown);
    });
    addLabelled(tr("F&ilter:"), m_filter);

    m_outside = new QCheckBox(tr("&Use outside editor"));
    describe(*m_outside, "chkUseNotepad", m_outside->text(),
             tr("Enter or a double click opens a file in the external editor of the settings"));
    m_outside->setChecked(m_options.BrowseUseNotepad == 1);
    layout->addWidget(m_outside);
    return pane;
}

QWidget* frmTextBrow::makeTextPane() {
    auto* pane = new QWidget;
    auto* layout = new QVBoxLayout(pane);
    layout->setContentsMargins({});
    m_heading = new QLabel;
    m_heading->setObjectName("lblFile");
    m_heading->setTextFormat(Qt::PlainText);
    m_heading->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_heading->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layout->addWidget(m_heading);
    m_text = new QPlainTextEdit;
    describe(*m_text, "txtFile", tr("Text of the file"),
             tr("The file as it is on disk, read only"));
    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setTabChangesFocus(true);
    layout->addWidget(m_text, 1);
    layout->addLayout(makeFindRow());
    layout->addLayout(makeFontRow());
    return pane;
}

QLayout* frmTextBrow::makeFindRow() {
    auto* row = new QHBoxLayout;
    m_find = new QLineEdit;
    describe(*m_find, "txtFind", tr("Text to find"), tr("Text to find (Ctrl+F); Enter finds it"));
    auto* label = new QLabel(tr("Fi&nd:"));
    label->setBuddy(m_find);
    row->addWidget(label);
    row->addWidget(m_find, 1);
    const auto addFind = [&](const char* name, const QString& caption, const QString& toolTip,
                             bool backward) {
        auto* button = new QPushButton(caption);
        describe(*button, name, caption, toolTip);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, backward] { find(backward); });
        row->addWidget(button);
    };
    addFind("cmdFindNext", tr("Ne&xt"), tr("Finds the text farther down (F3)"), false);
    addFind("cmdFindPrevious", tr("Pre&vious"), tr("Finds the text farther up (Shift+F3)"), true);
    m_matchCase = new QCheckBox(tr("&Match case"));
    describe(*m_matchCase, "chkMatchCase", m_matchCase->text(),
             tr("Capital and small letters differ"));
    row->addWidget(m_matchCase);
    return row;
}

QLayout* frmTextBrow::makeFontRow() {
    auto* row = new QHBoxLayout;
    m_family = new QFontComboBox;
    describe(*m_family, "cboFont", tr("Font"), tr("Font of the text"));
    m_family->setFontFilters(QFontComboBox::MonospacedFonts);
    m_family->setEditable(false);
    const QString name = toQt(m_options.BrowseFontName);
    // A font that is missing here, or has no fixed pitch, stays the user's choice until another one
    // is made.
    if (!name.isEmpty() && m_family->findText(name) >= 0) m_family->setCurrentText(name);
    m_size = new QSpinBox;
    describe(*m_size, "spnFontSize", tr("Font size"), tr("Size in points, 7 to 24"));
    m_size->setRange(7, 24);
    m_size->setSuffix(tr(" pt"));
    m_size->setValue(static_cast<int>(m_options.BrowseFontSize));
    const auto makeStyle = [&](const char* style, const QString& letter, const QString& caption,
                               bool on) {
        auto* button = new QToolButton;
        describe(*button, style, caption, caption);
        button->setText(letter);
        button->setCheckable(true);
        button->setChecked(on);
        button->setFocusPolicy(Qt::TabFocus);
        connect(button, &QToolButton::toggled, this, &frmTextBrow::applyFont);
        return button;
    };
    m_bold = makeStyle("cmdBold", tr("B"), tr("Bold"), m_options.BrowseFontBold != 0);
    m_italic = makeStyle("cmdItalic", tr("I"), tr("Italic"), m_options.BrowseFontItalic != 0);
    QFont bold = m_bold->font();
    bold.setBold(true);
    m_bold->setFont(bold);
    QFont italic = m_italic->font();
    italic.setItalic(true);
    m_italic->setFont(italic);
    connect(m_family, &QComboBox::activated, this, [this] {
        m_options.BrowseFontName = fromQt(m_family->currentText());
        applyFont();
    });
    connect(m_size, &QSpinBox::valueChanged, this, &frmTextBrow::applyFont);
    auto* label = new QLabel(tr("Fon&t:"));
    label->setBuddy(m_family);
    row->addWidget(label);
    row->addWidget(m_family, 1);
    for (QWidget* control : {static_cast<QWidget*>(m_size), static_cast<QWidget*>(m_bold),
                             static_cast<QWidget*>(m_italic)})
        row->addWidget(control);
    row->addStretch(1);
    return row;
}

QDialogButtonBox* frmTextBrow::makeButtonRow() {
    auto* buttons = makeButtons();
    const auto add = [&](const QString& name, const QString& caption, const QString& toolTip,
                         auto action) {
        auto* button = addButton(*buttons, name, caption, QDialogButtonBox::ActionRole);
        button->setToolTip(toolTip);
        connect(button, &QPushButton::clicked, this, action);
        return button;
    };
    m_editor =
        add("cmdEditor", tr("Open in &Editor"),
            tr("Opens the file in the external editor of the settings"), &frmTextBrow::openOutside);
    add("cmdCopy", tr("&Copy"), tr("Copies the selected text, or all of it, to the clipboard"),
        &frmTextBrow::copy);
    add("cmdPrint", tr("&Print"), tr("Prints the text"), &frmTextBrow::print);
    auto* close = addButton(*buttons, "cmdClose", tr("C&lose"), QDialogButtonBox::RejectRole);
    close->setToolTip(tr("Closes this window (Esc)"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    for (QAbstractButton* button : buttons->buttons())
        qobject_cast<QPushButton*>(button)->setAutoDefault(false); // Enter belongs to the boxes
    return buttons;
}

void frmTextBrow::enterFolder(const QString& folder) {
    const QFileInfo entered(QDir::fromNativeSeparators(folder.trimmed()));
    if (!entered.isDir() || !entered.isReadable()) {
        tell(fromQt(entered.exists() ? tr("The folder cannot be read: %1").arg(folder)
                                     : tr("There is no such folder: %1").arg(folder)),
             titles::Error);
        m_folderBox->setText(shownFolder(m_folder));
        return;
    }
    const QString left = m_folder;
    m_folder = entered.absoluteFilePath();
    m_folderBox->setText(shownFolder(m_folder));
    listFiles(left); // going up, the folder that was left is the current entry
}

QString frmTextBrow::filterPattern() const {
    const int listed = m_filter->findText(m_filter->currentText());
    return listed >= 0 ? m_filter->itemData(listed).toString() : m_filter->currentText();
}

void frmTextBrow::listFiles(const QString& chosen) {
    QStringList patterns;
    for (const std::string& pattern : typedPatterns(fromQt(filterPattern())))
        patterns += toQt(pattern);
    const QDir folder(m_folder);
    const QSignalBlocker quiet(m_files);
    m_files->clear();
    const auto add = [&](const QString& name, const QString& path, bool isFolder) {
        auto* item = new QListWidgetItem(
            style()->standardIcon(isFolder ? QStyle::SP_DirIcon : QStyle::SP_FileIcon), name,
            m_files);
        item->setData(PathRole, path);
        item->setData(FolderRole, isFolder);
        if (path == chosen) m_files->setCurrentItem(item);
    };
    if (!folder.isRoot()) add("..", QFileInfo(m_folder).absolutePath(), true);
    const auto order = QDir::Name | QDir::IgnoreCase;
    for (const QFileInfo& one : folder.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, order))
        add(one.fileName(), one.absoluteFilePath(), true);
    for (const QFileInfo& one : folder.entryInfoList(patterns, QDir::Files, order))
        add(one.fileName(), one.absoluteFilePath(), false);
    if (!m_files->currentItem() && m_files->count() > 0) m_files->setCurrentRow(0);
    showFile();
}

QString frmTextBrow::chosenFile() const {
    const QListWidgetItem* item = m_files->currentItem();
    return item && !item->data(FolderRole).toBool() ? item->data(PathRole).toString() : QString();
}

void frmTextBrow::showFile() {
    const QString path = chosenFile();
    m_editor->setEnabled(!path.isEmpty());
    m_shown.clear();
    m_text->clear();
    if (path.isEmpty()) {
        m_heading->setText(tr("No file is chosen."));
        return;
    }
    const auto text = readForView(fromQt(path));
    if (!text) {
        m_heading->setText(QFileInfo(path).fileName() + ": " + toQt(text.fault().message));
        return;
    }
    m_shown = path;
    m_text->setPlainText(toQt(*text));
    m_heading->setText(QDir::toNativeSeparators(path));
    telvo::note(messages(), "Viewing: " + fromQt(path));
}

void frmTextBrow::activate(const QListWidgetItem* item) {
    if (!item) return;
    if (item->data(FolderRole).toBool())
        enterFolder(item->data(PathRole).toString());
    else if (m_outside->isChecked())
        openOutside();
    else
        m_text->setFocus();
}

void frmTextBrow::openOutside() {
    if (const QString path = chosenFile(); !path.isEmpty()) m_actions.openOutside(fromQt(path));
}

void frmTextBrow::find(bool backward) {
    const QString wanted = m_find->text();
    if (wanted.isEmpty()) {
        m_find->setFocus();
        return;
    }
    QTextDocument::FindFlags flags;
    flags.setFlag(QTextDocument::FindBackward, backward);
    flags.setFlag(QTextDocument::FindCaseSensitively, m_matchCase->isChecked());
    if (m_text->find(wanted, flags)) {
        messages().status("Found: " + fromQt(wanted));
        return;
    }
    const QTextCursor before = m_text->textCursor();
    m_text->moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    if (m_text->find(wanted, flags)) {
        messages().status("Found, going on from the other end: " + fromQt(wanted));
        return;
    }
    m_text->setTextCursor(before);
    tell("Not found: " + fromQt(wanted), titles::Message);
    m_find->setFocus();
}

void frmTextBrow::copy() {
    const QString selected = m_text->textCursor().selection().toPlainText();
    QApplication::clipboard()->setText(selected.isEmpty() ? m_text->toPlainText() : selected);
    telvo::note(messages(),
                selected.isEmpty() ? "File copied to clipboard" : "Selection copied to clipboard");
}

void frmTextBrow::print() {
    if (m_shown.isEmpty())
        messages().status("No file is shown");
    else
        m_actions.print(*m_text->document(), fromQt(m_shown), this);
}

void frmTextBrow::applyFont() {
    QFont font = m_family->currentFont();
    font.setPointSize(m_size->value());
    font.setBold(m_bold->isChecked());
    font.setItalic(m_italic->isChecked());
    m_text->setFont(font);
}

BrowseOptions frmTextBrow::options() const {
    BrowseOptions now = m_options;
    now.BrowseFontSize = static_cast<float>(m_size->value());
    now.BrowseFontBold = m_bold->isChecked() ? -1 : 0;
    now.BrowseFontItalic = m_italic->isChecked() ? -1 : 0;
    now.BrowseDefaultFilter = fromQt(filterPattern());
    now.BrowseUseNotepad = m_outside->isChecked() ? 1 : 0;
    return now;
}

void frmTextBrow::done(int result) {
    m_actions.keep(options());
    Form::done(result);
}

void frmTextBrow::keyPressEvent(QKeyEvent* event) {
    if (event == QKeySequence::Find) {
        m_find->setFocus();
        m_find->selectAll();
    } else if (event == QKeySequence::FindNext || event == QKeySequence::FindPrevious) {
        find(event == QKeySequence::FindPrevious);
    } else if (event->key() == Qt::Key_Backspace && m_files->hasFocus()) {
        enterFolder(QFileInfo(m_folder).absolutePath());
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (m_find->hasFocus()) find(false); // and no button is pressed
    } else {
        Form::keyPressEvent(event);
    }
}

} // namespace telvo::library::ui
