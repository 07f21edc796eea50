// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/frmSet.h"

#include "app/folders.h"
#include "base/text.h"
#include "base/titles.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "project/units.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>

namespace telvo::app::ui {

using telvo::ui::describe;
using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

namespace {

/// The file cuts longer values; a data path may still get a separator.
constexpr int LongestText = static_cast<int>(IniFile::longestValue) - 1;

QLineEdit* makeTextBox(const QString& name, const QString& accessibleName, const QString& toolTip) {
    auto* box = new QLineEdit;
    describe(*box, name, accessibleName, toolTip);
    box->setMaxLength(LongestText);
    return box;
}

} // namespace

frmSet::frmSet(SettingsStore& store, const std::string& DataFolder, FileDialogs& dialogs,
               const telvo::ui::FormServices& services, QWidget* parent)
    : SettingsForm(store, SettingsSaveMode::Settings, "frmSet", titles::Settings, "Settings.htm",
                   services, parent),
      m_dialogs(dialogs) {
    auto* layout = new QVBoxLayout(this);
    auto* tabs = new QTabWidget(this);
    tabs->setObjectName("SSTab1");
    tabs->addTab(makeGeneralPage(), tr("&General"));
    tabs->addTab(makeFilesPage(DataFolder), tr("&Files"));
    tabs->addTab(makeHistoryPage(), tr("History &Window"));
    layout->addWidget(tabs);
    layout->addWidget(makeOkCancel());
    tie(
        [this](const Settings& settings) {
            const SettingsTexts shown = textsFromSettings(settings);
            m_dataPath->setText(toQt(shown.DataPath));
            m_historySize->setText(toQt(shown.MaxDisplaySize));
            m_extension->setText(toQt(shown.FileExtension));
        },
        [this](Settings& settings) { acceptSettings(settings, texts()); });
    showValues();
}

QWidget* frmSet::makeGeneralPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    const QString unitTip = tr("Unit system of new projects; open projects keep theirs");
    layout->addWidget(makeChoice("optDefaultUnits", &Settings::DefaultUnits,
                                 tr("Units of New Projects"),
                                 {tr("&English: %1").arg(toQt(project::unitSummary(0))),
                                  tr("&Metric: %1").arg(toQt(project::unitSummary(1)))},
                                 {unitTip, unitTip}, QBoxLayout::TopToBottom));

    auto* start = new QGroupBox(tr("At Start"));
    auto* startLayout = new QVBoxLayout(start);
    addSwitch(*startLayout, "chkShowDisclaim", {&Settings::ShowDisclaim},
              tr("Show the &disclaimer"), tr("Shows the disclaimer whenever the program starts"));
    addSwitch(*startLayout, "chkRemindAnnualUpdates", {&Settings::RemindAnnualUpdates},
              tr("&Remind of updates"),
              tr("Shows the update reminder whenever the program starts, from 360 days after "
                 "20 August 2013"));
    addSwitch(*startLayout, "chkLoadLastInputFile", {&Settings::LoadLastInputFile},
              tr("Open the &last project"), tr("Opens the first project of the recent files"));
    addSwitch(*startLayout, "chkMaxMainMenu", {&Settings::MaxMainMenu},
              tr("Ma&ximize the main window"), tr("Opens the main window as large as the screen"));
    layout->addWidget(start);

    auto* window = new QGroupBox(tr("Main Window"));
    auto* windowLayout = new QVBoxLayout(window);
    addSwitch(*windowLayout, "chkEnableMainMenuToolbar", {&Settings::EnableMainMenuToolbar},
              tr("Show the &toolbar"), tr("Shows the buttons below the menus"));
    addSwitch(*windowLayout, "chkKeepFileNames", {&Settings::KeepFileNames},
              tr("&Keep the names of recent files"),
              tr("Puts every project that is opened or saved on top of the recent files"));
    addSwitch(*windowLayout, "chkShortRecentFiles", {&Settings::ShortRecentFiles},
              tr("Show recent files by their &short names"),
              tr("Shows names in the File menu, not full paths"));
    layout->addWidget(window);
    layout->addStretch();
    return page;
}

QWidget* frmSet::makeFilesPage(const std::string& DataFolder) {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    layout->addLayout(form);

    auto* pathRow = new QHBoxLayout;
    m_dataPath = makeTextBox("txtDataPath", tr("Path for data files"),
                             tr("Folder in which the file dialogs begin"));
    m_dataPath->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
    auto* browse = new QPushButton(tr("&Browse..."));
    describe(*browse, "cmdBrowse", tr("Browse for the data path"), tr("Chooses the folder"));
    browse->setAutoDefault(false);
    connect(browse, &QPushButton::clicked, this, &frmSet::chooseDataPath);
    pathRow->addWidget(m_dataPath, 1);
    pathRow->addWidget(browse);
    auto* pathLabel = new QLabel(tr("Path for d&ata files:"));
    pathLabel->setBuddy(m_dataPath);
    form->addRow(pathLabel, pathRow);

    m_extension = makeTextBox("txtFileExtension", tr("File extension"),
                              tr("Extension of project files: capital letters and digits"));
    m_extension->setFixedWidth(fontMetrics().averageCharWidth() * 12);
    form->addRow(tr("File e&xtension:"), m_extension);

    auto* editor = makeTextBox("txtExternalEditor", tr("External editor"),
                               tr("Program that opens text files outside of this one"));
    form->addRow(tr("External e&ditor:"), editor);
    tie([=](const Settings& settings) { editor->setText(toQt(settings.ExternalEditor)); },
        [=](Settings& settings) { settings.ExternalEditor = trimmed(fromQt(editor->text())); });

    auto* examples = new QGroupBox(tr("Example Files"));
    auto* examplesLayout = new QVBoxLayout(examples);
    const QString note = toQt(copyExamplesNote(DataFolder));
    addSwitch(*examplesLayout, "chkCopyExampleFiles", {&Settings::CopyExampleFiles},
              tr("&Copy example files at start"), tr("Copies the example files that are missing"))
        ->setAccessibleDescription(note);
    auto* noteLabel = new QLabel(note);
    noteLabel->setObjectName("lblCopyExampleFiles");
    noteLabel->setTextFormat(Qt::PlainText);
    noteLabel->setWordWrap(true);
    examplesLayout->addWidget(noteLabel);
    layout->addWidget(examples);
    layout->addStretch();
    return page;
}

QWidget* frmSet::makeHistoryPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    addSwitch(*layout, "chkDisplayHistoryWin", {&Settings::DisplayHistoryWin},
              tr("&Show the history window"),
              tr("Shows the log of commands and messages in the main window"));
    auto* form = new QFormLayout;
    auto* size = new NumberEdit("txtMaxDisplaySize");
    const QString caption = tr("Si&ze of Command History Window:");
    describe(*size, size->objectName(), caption,
             tr("Characters kept before the oldest lines go, %1")
                 .arg(rangeText(&Settings::MaxDisplaySize)));
    size->setFixedWidth(fontMetrics().averageCharWidth() * 12);
    watchNumbers(*size);
    auto* sizeRow = new QHBoxLayout;
    sizeRow->addWidget(size);
    sizeRow->addWidget(new QLabel(tr("characters")));
    sizeRow->addStretch();
    auto* sizeLabel = new QLabel(caption);
    sizeLabel->setBuddy(size);
    form->addRow(sizeLabel, sizeRow);
    m_historySize = size;
    layout->addLayout(form);
    layout->addWidget(makeFontGroup());
    layout->addStretch();
    return page;
}

QWidget* frmSet::makeFontGroup() {
    auto* frame = new QGroupBox(tr("Font"));
    auto* layout = new QVBoxLayout(frame);
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    layout->addLayout(form);

    auto* family = new QComboBox;
    describe(*family, "cboDisplayFontName", tr("Font family"), tr("Font of the history window"));
    family->addItems(QFontDatabase::families());
    form->addRow(tr("Fa&mily:"), family);
    auto* size = new QSpinBox;
    describe(*size, "spnDisplayFontSize", tr("Font size"),
             tr("Size in points, %1").arg(rangeText(&Settings::DisplayFontSize)));
    limit(*size, &Settings::DisplayFontSize);
    size->setSuffix(tr(" pt"));
    size->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    form->addRow(tr("S&ize:"), size);
    auto* style = new QHBoxLayout;
    auto* bold = addSwitch(*style, "chkDisplayFontBold", {&Settings::DisplayFontBold, -1, 0},
                           tr("&Bold"), tr("Bold history lines"));
    auto* italic = addSwitch(*style, "chkDisplayFontItalic", {&Settings::DisplayFontItalic, -1, 0},
                             tr("I&talic"), tr("Italic history lines"));
    style->addStretch();
    form->addRow(QString(), style);
    auto* sample = new QLabel(tr("Message: Current file is empty"));
    describe(*sample, "lblSample", tr("Sample of the font"), tr("A history line in this font"));
    sample->setAlignment(Qt::AlignCenter);
    sample->setFrameShape(QFrame::StyledPanel);
    sample->setMinimumHeight(fontMetrics().height() * 3);
    sample->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layout->addWidget(sample);

    const auto showSample = [=] {
        QFont font(family->currentText(), size->value());
        font.setBold(bold->isChecked());
        font.setItalic(italic->isChecked());
        sample->setFont(font);
    };
    connect(family, &QComboBox::currentTextChanged, sample, showSample);
    connect(size, &QSpinBox::valueChanged, sample, showSample);
    connect(bold, &QCheckBox::toggled, sample, showSample);
    connect(italic, &QCheckBox::toggled, sample, showSample);

    tie(
        [=](const Settings& settings) {
            const QString name = toQt(settings.DisplayFontName);
            // A font that this machine does not have stays the user's choice.
            if (family->findText(name) < 0) family->insertItem(0, name);
            family->setCurrentText(name);
            size->setValue(static_cast<int>(settings.DisplayFontSize));
        },
        [=](Settings& settings) {
            settings.DisplayFontName = fromQt(family->currentText());
            settings.DisplayFontSize = static_cast<float>(size->value());
        });
    return frame;
}

void frmSet::chooseDataPath() {
    if (const auto folder =
            m_dialogs.chooseFolder("Path for Data Files", fromQt(m_dataPath->text())))
        m_dataPath->setText(toQt(*folder));
}

SettingsTexts frmSet::texts() const {
    return {fromQt(m_dataPath->text()), fromQt(m_historySize->text()), fromQt(m_extension->text())};
}

void frmSet::accept() {
    if (auto refused = checkSettings(texts())) {
        refused->control = "txt" + refused->control;
        refuse(*refused);
        return;
    }
    if (refuseUnreadNumber()) return;
    m_modified = keepChanges();
    SettingsForm::accept();
}

void frmSet::done(int result) {
    const std::string_view outcome = m_modified ? "Settings Modified" : "Settings Not Modified";
    SettingsForm::done(result);
    messages().history(outcome);
    messages().status(outcome);
}

} // namespace telvo::app::ui
