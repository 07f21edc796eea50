// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/frmStudies.h"

#include "base/note.h"
#include "base/titles.h"
#include "base/ui/frmPopUp.h"
#include "base/ui/qtText.h"
#include "chart/ui/frmResolution.h"
#include "project/CaseFile.h"
#include "study/file/Recorder.h"
#include "study/ui/studies/ComparePage.h"
#include "study/ui/studies/DesignPage.h"
#include "study/ui/studies/FindPage.h"
#include "study/ui/studies/frmScatter.h"
#include "study/ui/studies/ScenariosPage.h"
#include "study/ui/studies/ShareCurvePage.h"
#include "study/ui/studies/TablePage.h"
#include "study/ui/studies/TornadoPage.h"
#include "study/ui/studies/UncertaintyPage.h"
#include "table/caseFiles.h"

#include <algorithm>
#include <atomic>
#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPointer>
#include <QProgressDialog>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

constexpr auto Topic = "Studies.htm";
constexpr int ProgressMilliseconds = 200;

/// What a name is made of on every system.
std::string fileNameOf(std::string text) {
    for (char& c : text)
        if (std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos) c = '-';
    return text;
}

} // namespace

frmStudies::frmStudies(StudyActions actions, const telvo::ui::FormServices& services,
                       QWidget* parent)
    : Form("frmStudies", titles::Studies, Topic, services, parent), m_actions(std::move(actions)),
      m_list(new QListWidget(this)), m_stack(new QStackedWidget(this)),
      m_export(new Background(this)) {
    setWindowFlags((parent ? Qt::Dialog : Qt::Window) | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                   Qt::WindowCloseButtonHint);
    m_list->setObjectName("lstStudies");
    m_list->setAccessibleName(tr("Studies"));
    m_list->setToolTip(tr("The studies of this case; Ctrl and a number go to one of them"));
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_stack->setObjectName("stkStudies");

    PageActions pages;
    pages.openAsCase = [this](const CaseChoice& choice) { openAsCase(choice); };
    pages.take = [this](const project::ProjectInput& values, const std::string& what) {
        return m_actions.take(values, what);
    };
    pages.showText = [this](const QString& title, const std::string& text) {
        telvo::ui::frmPopUp(title, text, Topic, this->services(), this).exec();
    };
    pages.settings = m_actions.settings;
    pages.saveAsFiles = [this](const std::vector<CaseChoice>& cases) { saveAsFiles(cases); };
    pages.chooseFiles = [this] {
        return m_actions.files.openFiles("Compare with", m_actions.folder(),
                                         m_actions.caseFilters());
    };
    pages.addToCompare = [this](const std::vector<CaseChoice>& cases) { addToCompare(cases); };
    pages.runs = m_actions.runs;
    pages.makePlan = m_actions.makePlan;
    pages.confirm = [this](const std::string& text) {
        return ask(text, Buttons::YesNo, Answer::No, titles::Message) == Answer::Yes;
    };
    addPage(new TornadoPage(pages, m_stack));
    addPage(new TablePage(pages, m_stack));
    addPage(new FindPage(pages, m_stack));
    addPage(new DesignPage(pages, m_stack));
    addPage(new ScenariosPage(pages, m_stack));
    addPage(new ComparePage(pages, m_stack));
    auto* sure = new UncertaintyPage(
        pages,
        [this](const project::ProjectCase& base, AskedUncertainty& asked) {
            frmScatter form(base, asked, this->services(), this);
            if (form.exec() != QDialog::Accepted) return false;
            asked = form.asked();
            return true;
        },
        m_stack);
    auto* shares = new ShareCurvePage(pages, m_stack);
    connect(sure, &UncertaintyPage::askedChanged, shares, &StudyPage::refresh);
    addPage(sure);
    addPage(shares);

    auto* middle = new QHBoxLayout;
    middle->addLayout(makeSide());
    middle->addWidget(m_stack, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(middle, 1);
    auto* buttons = makeButtons();
    const auto add = [&](const char* name, const QString& text, const QString& toolTip,
                         void (frmStudies::*action)()) {
        auto* button = makeButton(name, text, toolTip, action);
        buttons->addButton(button, QDialogButtonBox::ActionRole);
        m_outlets.push_back(button);
    };
    add("cmdCopyTable", tr("&Copy Table"),
        tr("Copies the selected rows, or the whole table, with headings and units"),
        &frmStudies::copyTable);
    add("cmdCopyPicture", tr("Copy Picture"), tr("Copies the picture to the clipboard"),
        &frmStudies::copyPicture);
    add("cmdExport", tr("E&xport..."),
        tr("Writes the table (CSV, XLSX) or the picture (PNG, SVG, PDF) to a file"),
        &frmStudies::exportResult);
    add("cmdPrint", tr("&Print..."), tr("Prints the picture"), &frmStudies::print);
    auto* close = addButton(*buttons, "cmdClose", tr("C&lose"), QDialogButtonBox::RejectRole);
    close->setToolTip(tr("Closes this window (Esc)"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    layout->addWidget(buttons);

    connect(m_list, &QListWidget::currentRowChanged, this, [this](int row) {
        m_stack->setCurrentIndex(row);
        showButtons();
    });
    int widest = 0;
    for (int row = 0; row < m_list->count(); ++row)
        widest = std::max(widest, m_list->sizeHintForIndex(m_list->model()->index(row, 0)).width());
    m_list->setFixedWidth(widest + 4 * m_list->frameWidth() + 12);
    m_list->setCurrentRow(0);
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 165, metrics.height() * 46);
}

frmStudies::~frmStudies() {
    // A cell in use may hand over its text while it goes, and pages ask this window for settings.
    for (StudyPage* page : m_pages)
        page->disconnect(this);
    delete m_stack;
}

void frmStudies::addPage(StudyPage* page) {
    const auto number = static_cast<int>(m_pages.size());
    m_pages.push_back(page);
    m_stack->addWidget(page);
    auto* item = new QListWidgetItem(page->title() + "\n(" + page->subtitle() + ')', m_list);
    item->setToolTip(tr("Ctrl+%1").arg(number + 1));
    connect(page, &StudyPage::currentChanged, this, &frmStudies::showButtons);
    auto* shortcut =
        new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + number)), this);
    connect(shortcut, &QShortcut::activated, this,
            [this, number] { m_list->setCurrentRow(number); });
}

StudyPage& frmStudies::page(StudyKind kind) const {
    return *m_pages[static_cast<std::size_t>(kind)];
}

StudyPage& frmStudies::currentPage() const {
    return *m_pages[static_cast<std::size_t>(std::max(m_list->currentRow(), 0))];
}

void frmStudies::showPage(StudyKind kind) {
    m_list->setCurrentRow(static_cast<int>(kind));
}

void frmStudies::showButtons() {
    const bool ready = !m_pages.empty() && currentPage().isCurrent() && !m_export->isBusy();
    for (QPushButton* button : m_outlets)
        button->setEnabled(ready);
    showName();
}

QString frmStudies::focusTopic() const {
    const QString topic = Form::focusTopic();
    if (topic != Topic || !services().topicOf) return topic;
    const QString ofPage = services().topicOf(objectName(), currentPage().objectName());
    return ofPage.isEmpty() ? topic : ofPage;
}

void frmStudies::setCase(const StudyCase& subject, bool renewed) {
    const bool same =
        m_hasCase && subject.current == m_subject.current && subject.refusal == m_subject.refusal &&
        subject.RoundTELVOSF == m_subject.RoundTELVOSF && subject.options == m_subject.options;
    if (!renewed && same && subject.name == m_subject.name) return showName();
    m_hasCase = true;
    m_subject = subject;
    for (StudyPage* page : m_pages)
        page->setCase(subject, renewed);
    showName();
}

/// The star is of the studies, not of the case.
void frmStudies::showName() {
    const bool changed = m_hasCase && m_actions.isChanged();
    const QString title = toQt(titles::Studies) + toQt(m_subject.name) + (changed ? "*" : "");
    if (title != windowTitle()) setWindowTitle(title);
    m_save->setEnabled(changed);
}

QLayout* frmStudies::makeSide() {
    auto* side = new QVBoxLayout;
    side->addWidget(m_list, 1);
    auto* open = makeButton("cmdOpenStudy", tr("Open Study..."),
                            tr("Takes what a study file asks (Ctrl+O)"));
    m_save = makeButton("cmdSaveStudy", tr("Save Stud&y"),
                        tr("Keeps ranges, scenarios and what the pages ask in a study file beside "
                           "the case (Ctrl+S)"));
    const auto on = [this](QPushButton* button, QKeySequence::StandardKey key,
                           const std::function<void()>& action) {
        connect(button, &QPushButton::clicked, this, action);
        connect(new QShortcut(key, this), &QShortcut::activated, button, &QPushButton::click);
    };
    on(open, QKeySequence::Open, m_actions.open);
    on(m_save, QKeySequence::Save, m_actions.save);
    side->addWidget(open);
    side->addWidget(m_save);
    return side;
}

void frmStudies::openAsCase(const CaseChoice& choice) {
    const std::string why = m_actions.openAsCase(choice.make(), choice.what);
    if (!why.empty()) tell(why, titles::Message);
}

void frmStudies::addToCompare(const std::vector<CaseChoice>& cases) {
    for (const CaseChoice& one : cases) {
        project::ProjectCase made = one.make();
        std::string name = one.what;
        if (!name.empty() && name.front() >= 'a' && name.front() <= 'z')
            name.front() = static_cast<char>(name.front() - 'a' + 'A');
        auto& all = m_actions.settings().compareCases;
        if (std::none_of(all.begin(), all.end(), [&](const NamedCase& known) {
                return known.first == name && known.second.Input == made.Input;
            }))
            all.emplace_back(std::move(name), std::move(made));
    }
    page(StudyKind::Compare).setCase(m_subject, false);
    telvo::note(messages(), cases.size() == 1
                                ? "Added to Compare: " + cases.front().what
                                : std::to_string(cases.size()) + " cases added to Compare");
}

void frmStudies::saveAsFiles(const std::vector<CaseChoice>& cases) {
    const auto folder = m_actions.files.chooseFolder("Save as Case Files", m_actions.folder());
    if (!folder) return;
    const std::string stem = fromQt(QFileInfo(toQt(m_subject.name)).completeBaseName());
    table::CaseFileNames names;
    std::vector<std::string> paths;
    std::string existing;
    for (const CaseChoice& one : cases) {
        table::CaseRow row;
        row.number = static_cast<std::uint32_t>(paths.size() + 1);
        row.current.Title = stem + " - " + one.what;
        const std::string name = names.next(row);
        paths.push_back(*folder + '/' + name);
        if (QFileInfo::exists(toQt(paths.back()))) existing += "\n" + name;
    }
    if (!existing.empty() && ask("These files are there already. Replace them?\n" + existing,
                                 Buttons::YesNo, Answer::No, titles::Message) != Answer::Yes) {
        messages().status("No case files written");
        return;
    }
    const Existing policy = existing.empty() ? Existing::Refuse : Existing::Replace;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        project::ProjectCase made = cases[i].make();
        if (const Status saved = project::saveCaseFile(made, paths[i], policy); !saved) {
            messages().status("Save failed");
            return tell(faultText(saved.fault()), titles::Error);
        }
        messages().history("Case file written: " + paths[i]);
    }
    messages().status(std::to_string(cases.size()) +
                      (cases.size() == 1 ? " case file written" : " case files written"));
}

void frmStudies::copyTable() {
    const auto text = currentPage().table().copied();
    if (!text) return tell(text.fault().message, titles::Error);
    QApplication::clipboard()->setText(toQt(*text));
    telvo::note(messages(), "Table copied to clipboard");
}

void frmStudies::copyPicture() {
    m_actions.picture.copyPicture(currentPage().picture(), this);
    telvo::note(messages(), "Picture copied to clipboard");
}

void frmStudies::print() {
    m_actions.picture.printPicture(currentPage().picture(), this);
}

void frmStudies::exportResult() {
    messages().status("Export study");
    const std::string name = fileNameOf(fromQt(QFileInfo(toQt(m_subject.name)).completeBaseName()) +
                                        " - " + fromQt(currentPage().title()));
    const auto path = m_actions.files.saveFile(
        "Export Study", m_actions.folder() + '/' + name + ".csv",
        {"Comma Separated Values (*.csv)", "Workbook (*.xlsx)", "PNG Picture (*.png)",
         "SVG Drawing (*.svg)", "PDF Document (*.pdf)"},
        "csv");
    if (!path) {
        messages().status("Export cancelled");
        return;
    }
    const QString ending = QFileInfo(toQt(*path)).suffix().toLower();
    if (ending == "csv" || ending == "xlsx")
        exportTableTo(*path);
    else
        exportPictureTo(*path);
}

void frmStudies::exportPictureTo(const std::string& path) {
    const chart::ui::Picture picture = currentPage().picture();
    int dpi = chart::ui::DefaultResolution;
    if (path.ends_with(".png") || path.ends_with(".PNG")) {
        chart::ui::frmResolution form(picture.size, this);
        if (form.exec() != QDialog::Accepted) {
            messages().status("Export cancelled");
            return;
        }
        dpi = form.resolution();
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const Status written = chart::ui::exportPicture(picture, path, dpi);
    QApplication::restoreOverrideCursor();
    endExport(path, written);
}

void frmStudies::exportTableTo(const std::string& path) {
    const auto table = currentPage().table().rows().table();
    const RowOrder order = currentPage().table().rows().order();
    const auto done = std::make_shared<std::atomic<std::size_t>>(0);
    m_progress = new QProgressDialog(tr("Writing the table..."), tr("Stop"), 0,
                                     static_cast<int>(table->rows), this);
    m_progress->setObjectName("dlgExport");
    m_progress->setWindowModality(Qt::WindowModal);
    m_progress->setMinimumDuration(ProgressMilliseconds);
    m_progress->setAutoReset(false);
    auto* clock = new QTimer(m_progress);
    connect(clock, &QTimer::timeout, m_progress,
            [dialog = m_progress, done] { dialog->setValue(static_cast<int>(done->load())); });
    clock->start(50);
    connect(m_progress, &QProgressDialog::canceled, m_export, &Background::stop);
    const auto asked = currentPage().result().asked;
    const Tally tally = currentPage().result().tally;
    m_export->start([this, table, order, path, done, asked, tally](const std::stop_token& stop) {
        TableDigits digits;
        auto written = std::make_shared<Status>(writeTable(
            *table, order, path, stop, [done](std::size_t rows) { done->store(rows); }, &digits));
        auto record = std::make_shared<Status>(success());
        if (*written && asked)
            *record = writeRecordOf(*asked, {path, *table, order, std::move(digits), tally});
        return [this, path, written, record, asked] {
            endExport(path, *written);
            if (!*written) return;
            if (!*record)
                tell("The table was written, the record of its run was not. " +
                         faultText(record->fault()),
                     titles::Error);
            else if (asked)
                messages().history("Record of the run: " + recordFileOf(path));
        };
    });
    showButtons();
}

void frmStudies::endExport(const std::string& path, const Status& written) {
    if (m_progress) m_progress->deleteLater();
    m_progress = nullptr;
    showButtons();
    if (!written) {
        messages().status("Export failed");
        tell(faultText(written.fault()), titles::Error);
        return;
    }
    messages().history("Study exported: " + path);
    messages().status("Study exported");
}

} // namespace telvo::study::ui
