// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/ui/frmExplain.h"

#include "base/files.h"
#include "base/note.h"
#include "base/titles.h"
#include "base/ui/Printer.h"
#include "base/ui/qtText.h"
#include "base/ui/WindowPlaces.h"
#include "engine/questions.h"
#include "explain/ui/workingHtml.h"
#include "explain/workingSheet.h"
#include "explain/workingText.h"
#include "report/sheets.h"

#include <algorithm>
#include <cstring>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QPushButton>
#include <QShortcut>
#include <QSpinBox>
#include <QSplitter>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

namespace telvo::explain::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

constexpr char HelpTopicOfWorking[] = "Explain.htm";
constexpr int KeyRole = Qt::UserRole;

/// A title without the pass that its chapter is headed by.
QString shortTitle(const Step& step) {
    QString title = toQt(step.title);
    for (const char* pass : {", development", ", retreat"})
        if (title.endsWith(QLatin1String(pass))) title.chop(static_cast<int>(std::strlen(pass)));
    return title;
}

} // namespace

frmExplain::frmExplain(report::ShownRun shown, const telvo::ui::FormServices& services,
                       telvo::ui::Printer& printer, FileDialogs& dialogs, QWidget* parent)
    : Form("frmExplain", titles::ShowWorking, HelpTopicOfWorking, services, parent),
      m_shown(std::move(shown)), m_printer(printer), m_dialogs(dialogs) {
    // With all the buttons of a window; only a dialog stays above its parent.
    setWindowFlags((parent ? Qt::Dialog : Qt::Window) | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                   Qt::WindowCloseButtonHint);
    setWindowTitle(toQt(titles::ShowWorking) + toQt(withoutFolder(current().FileName)));

    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->setObjectName("splWorking");
    m_splitter->setChildrenCollapsible(false);
    m_splitter->addWidget(makeList());
    m_splitter->addWidget(makeWorking());
    m_splitter->setStretchFactor(1, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_splitter, 1);
    auto* buttons = makeButtons();
    buttons->addButton(makeButton("cmdCopy", tr("&Copy"),
                                  tr("Copies the working that is shown to the clipboard, as text"),
                                  &frmExplain::copy),
                       QDialogButtonBox::ActionRole);
    buttons->addButton(makeButton("cmdPrint", tr("&Print..."),
                                  tr("Prints the working that is shown"), &frmExplain::print),
                       QDialogButtonBox::ActionRole);
    buttons->addButton(makeButton("cmdSave", tr("&Save as Workbook..."),
                                  tr("Saves the whole working as a spreadsheet that computes: "
                                     "change an input there, and every value follows"),
                                  &frmExplain::saveWorkbook),
                       QDialogButtonBox::ActionRole);
    auto* close = addButton(*buttons, "cmdClose", tr("C&lose"), QDialogButtonBox::RejectRole);
    close->setToolTip(tr("Closes this window (Esc)"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    layout->addWidget(buttons);

    const int em = fontMetrics().averageCharWidth();
    resize(em * 160, fontMetrics().lineSpacing() * 38);
    m_splitter->setSizes({em * 72, em * 88});

    computeWorking();
    fillList();
    showFactor();
    m_list->setFocus();
}

void frmExplain::showFactor() {
    const bool retreat = engine::lastPass(m_shown.run->in) == engine::Retreat;
    showQuantity(retreat ? "TELVOSF.retreat" : "TELVOSF.development");
}

void frmExplain::setRun(report::ShownRun shown) {
    m_shown = std::move(shown);
    setWindowTitle(toQt(titles::ShowWorking) + toQt(withoutFolder(current().FileName)));
    computeWorking();
    const std::string shownBefore = m_visited[m_place];
    m_visited.clear(); // some of them may not be there in this run
    m_place = 0;
    fillList();
    showQuantity(shownBefore);
    if (m_visited.empty()) showFactor();
}

void frmExplain::setCaseName(const std::string& fileName) {
    m_shown.rename(fileName);
    setWindowTitle(toQt(titles::ShowWorking) + toQt(withoutFolder(fileName)));
}

void frmExplain::makeShortcut(const QKeySequence& key, QWidget* target) {
    auto* shortcut = new QShortcut(key, this);
    if (auto* pressed = qobject_cast<QPushButton*>(target))
        connect(shortcut, &QShortcut::activated, pressed, &QPushButton::click);
    else
        connect(shortcut, &QShortcut::activated, target,
                [target] { target->setFocus(Qt::ShortcutFocusReason); });
}

QWidget* frmExplain::makeList() {
    auto* side = new QWidget(this);
    m_find = new QLineEdit(side);
    m_find->setObjectName("txtFind");
    m_find->setAccessibleName(tr("Find a quantity"));
    m_find->setToolTip(tr("Part of a quantity's title or name; Return goes to the first one found "
                          "(Ctrl+F)"));
    m_find->setClearButtonEnabled(true);
    connect(m_find, &QLineEdit::textChanged, this, &frmExplain::filter);
    connect(m_find, &QLineEdit::returnPressed, this, &frmExplain::goToFirstFound);
    makeShortcut(QKeySequence::Find, m_find);
    auto* label = new QLabel(tr("&Find:"), side);
    label->setBuddy(m_find);

    m_list = new QTreeWidget(side);
    m_list->setObjectName("lstQuantities");
    m_list->setAccessibleName(tr("Quantities"));
    m_list->setToolTip(tr("Quantities in the order of the calculation; choose one to see how it "
                          "comes about"));
    m_list->setHeaderLabels({tr("Quantity"), tr("Value")});
    m_list->setUniformRowHeights(true);
    // The values are seen whole; of a title the beginning and the end tell most.
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setIndentation(fontMetrics().averageCharWidth() * 2);
    m_list->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &frmExplain::chooseCurrent);

    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_find, 1);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(row);
    layout->addWidget(m_list, 1);
    return side;
}

QWidget* frmExplain::makeWorking() {
    auto* side = new QWidget(this);
    m_back = makeButton("cmdBack", tr("&Back"), tr("Goes back to the quantity before (Alt+Left)"),
                        &frmExplain::back);
    m_forward =
        makeButton("cmdForward", tr("For&ward"),
                   tr("Goes forward again after going back (Alt+Right)"), &frmExplain::forward);
    makeShortcut(QKeySequence::Back, m_back);
    makeShortcut(QKeySequence::Forward, m_forward);
    m_withAll = new QCheckBox(tr("With &all that leads to it"), side);
    m_withAll->setObjectName("chkWithAll");
    m_withAll->setToolTip(tr("Shows every step that the quantity depends on, in the order of the "
                             "calculation"));
    connect(m_withAll, &QCheckBox::toggled, this, &frmExplain::showWorking);
    m_digits = new QSpinBox(side);
    m_digits->setObjectName("spnDigits");
    m_digits->setAccessibleName(tr("Significant digits"));
    m_digits->setToolTip(tr("Significant digits of the numbers, 1 to %1").arg(MostDigits));
    m_digits->setRange(1, MostDigits);
    m_digits->setValue(DefaultDigits);
    connect(m_digits, &QSpinBox::valueChanged, this, [this] {
        computeWorking();
        fillList();
        showWorking();
    });
    auto* digits = new QLabel(tr("&Digits:"), side);
    digits->setBuddy(m_digits);

    m_text = new QTextBrowser(side);
    m_text->setObjectName("txtWorking");
    m_text->setAccessibleName(tr("Working"));
    m_text->setToolTip(tr("Formula, numbers and result; a link leads to the quantity that a symbol "
                          "stands for"));
    m_text->setOpenLinks(false);
    connect(m_text, &QTextBrowser::anchorClicked, this,
            [this](const QUrl& link) { showQuantity(keyOfLink(link.toString())); });

    auto* row = new QHBoxLayout;
    row->addWidget(m_back);
    row->addWidget(m_forward);
    row->addWidget(m_withAll);
    row->addStretch(1);
    row->addWidget(digits);
    row->addWidget(m_digits);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(row);
    layout->addWidget(m_text, 1);
    return side;
}

void frmExplain::computeWorking() {
    m_all = explain(*m_shown.run, m_shown.options, m_digits->value());
}

void frmExplain::fillList() {
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    for (const Chapter& chapter : m_all) {
        auto* heading = new QTreeWidgetItem(m_list, {toQt(chapter.title)});
        heading->setFirstColumnSpanned(true);
        heading->setFlags(Qt::ItemIsEnabled); // holds quantities, is none
        for (const Step& step : chapter.steps) {
            auto* item = new QTreeWidgetItem(heading, {shortTitle(step), toQt(step.result)});
            item->setData(0, KeyRole, toQt(step.key));
            for (const int column : {0, 1})
                item->setToolTip(column, toQt(step.title + "\n" + step.key));
        }
        // The long lists of inputs and zeros would push the calculation out of sight.
        heading->setExpanded(&chapter != &m_all.front() && chapter.note.empty());
    }
    filter(m_find->text());
    if (!m_visited.empty()) m_list->setCurrentItem(itemOf(m_visited[m_place]));
}

void frmExplain::filter(const QString& text) {
    const QString wanted = text.trimmed();
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        QTreeWidgetItem* heading = m_list->topLevelItem(i);
        bool any = false;
        for (int j = 0; j < heading->childCount(); ++j) {
            QTreeWidgetItem* item = heading->child(j);
            const bool found =
                item->text(0).contains(wanted, Qt::CaseInsensitive) ||
                item->data(0, KeyRole).toString().contains(wanted, Qt::CaseInsensitive);
            item->setHidden(!found);
            any = any || found;
        }
        heading->setHidden(!any);
        if (!wanted.isEmpty()) heading->setExpanded(true);
    }
}

void frmExplain::goToFirstFound() {
    for (QTreeWidgetItemIterator i(m_list, QTreeWidgetItemIterator::NotHidden); *i; ++i)
        if ((*i)->data(0, KeyRole).isValid()) {
            m_list->setCurrentItem(*i);
            m_list->setFocus();
            return;
        }
    messages().status("No quantity found");
}

QTreeWidgetItem* frmExplain::itemOf(const std::string& key) const {
    const QString wanted = toQt(key);
    for (QTreeWidgetItemIterator i(m_list); *i; ++i)
        if ((*i)->data(0, KeyRole).toString() == wanted) return *i;
    return nullptr;
}

void frmExplain::chooseCurrent(QTreeWidgetItem* item) {
    if (item && item->data(0, KeyRole).isValid())
        showQuantity(fromQt(item->data(0, KeyRole).toString()));
}

void frmExplain::showQuantity(const std::string& key) {
    if (!findStep(m_all, key)) return;
    if (!m_visited.empty() && m_visited[m_place] == key) return;
    if (!m_visited.empty()) m_visited.resize(m_place + 1); // a new way ends the old one
    m_visited.push_back(key);
    m_place = m_visited.size() - 1;
    showWorking();
}

void frmExplain::go(int step) {
    m_place = static_cast<std::size_t>(static_cast<int>(m_place) + step);
    showWorking();
}

void frmExplain::back() {
    go(-1);
}

void frmExplain::forward() {
    go(1);
}

Chapters frmExplain::shown() const {
    const std::string& key = m_visited[m_place];
    Chapters chapters = leadingTo(m_all, key);
    if (m_withAll->isChecked()) return chapters;
    for (Chapter& chapter : chapters)
        std::erase_if(chapter.steps, [&](const Step& step) { return step.key != key; });
    std::erase_if(chapters, [](const Chapter& chapter) { return chapter.steps.empty(); });
    return chapters;
}

void frmExplain::showWorking() {
    const QWidget* pressed = focusWidget();
    m_text->setHtml(workingHtml(shown(), m_all));
    m_text->scrollToAnchor(toQt(m_visited[m_place])); // what leads to it stands above
    m_back->setEnabled(m_place > 0);
    m_forward->setEnabled(m_place + 1 < m_visited.size());
    if (pressed && !pressed->isEnabled()) m_text->setFocus();

    const QSignalBlocker quiet(m_list);
    QTreeWidgetItem* item = itemOf(m_visited[m_place]);
    m_list->setCurrentItem(item);
    if (item && !item->isHidden()) m_list->scrollToItem(item);
}

void frmExplain::copy() {
    QApplication::clipboard()->setText(toQt(workingText(shown())));
    telvo::note(messages(), "Working copied to clipboard");
}

void frmExplain::print() {
    const Step* step = findStep(m_all, m_visited[m_place]);
    QTextDocument document;
    document.setDefaultStyleSheet("a, body { color: black; text-decoration: none; }");
    document.setHtml("<body><p><b>" + toQt(titles::ShowWorking).toHtmlEscaped() +
                     toQt(step->title).toHtmlEscaped() + "</b><br/>" +
                     tr("Project File: %1").arg(toQt(current().FileName).toHtmlEscaped()) + "</p>" +
                     workingHtml(shown(), m_all) + "</body>");
    const bool printed =
        m_printer.print(current().FileName, this, tr("Print Working"), [&](QPrinter& printer) {
            document.print(&printer);
            return printer.printerState() != QPrinter::Error;
        });
    telvo::note(messages(), printed ? "Working printed" : "Printing aborted");
}

void frmExplain::saveWorkbook() {
    // Beside the case, where it has a file.
    const QFileInfo file(toQt(current().FileName));
    const QString folder = file.isAbsolute() ? file.path() : QDir::homePath();
    const auto path = m_dialogs.saveFile(
        "Save as Workbook", fromQt(folder + '/' + file.completeBaseName() + tr(" working.xlsx")),
        {"Workbooks (*.xlsx)"}, "xlsx");
    if (!path) return messages().status("Saving cancelled");
    const WorkingSheets working = workingSheets(
        *m_shown.run, m_shown.options, "TELVO " + fromQt(QApplication::applicationVersion()));
    const auto bytes = table::writeSheets(working.sheets);
    std::vector<std::string> remarks;
    const Status written =
        bytes ? writeFile(*path, *bytes, Existing::Replace, &remarks) : Status(bytes.fault());
    if (!written) {
        messages().status("Saving failed");
        return messages().tell(faultText(written.fault()),
                               std::string(titles::ShowWorking).append(titles::Error));
    }
    for (const std::string& remark : remarks)
        messages().history(remark);
    telvo::note(messages(), "Working saved as workbook");
}

void frmExplain::showEvent(QShowEvent* event) {
    if (services().places) services().places->restore(*m_splitter);
    Form::showEvent(event);
}

void frmExplain::done(int result) {
    if (services().places && isVisible()) services().places->save(*m_splitter);
    Form::done(result);
}

} // namespace telvo::explain::ui
