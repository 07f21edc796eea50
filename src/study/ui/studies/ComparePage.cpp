// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/ComparePage.h"

#include "base/files.h"
#include "base/ui/Form.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "study/output/reportDiff.h"

#include <algorithm>
#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QSyntaxHighlighter>
#include <QTabWidget>
#include <QVBoxLayout>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

/// Colors the lines of one report only; the marks in front say it, too.
class DiffColors : public QSyntaxHighlighter {
  public:
    explicit DiffColors(QPlainTextEdit& text) : QSyntaxHighlighter(text.document()), m_text(text) {}

  protected:
    void highlightBlock(const QString& line) override {
        const QPalette& palette = m_text.palette();
        if (line.startsWith('-'))
            setFormat(0, static_cast<int>(line.size()), studyColor(1, palette));
        else if (line.startsWith('+'))
            setFormat(0, static_cast<int>(line.size()), studyColor(0, palette));
        else if (line == "...")
            setFormat(0, 3, palette.color(QPalette::PlaceholderText));
    }

  private:
    QPlainTextEdit& m_text;
};

std::vector<std::string> droppedFiles(const QMimeData& data) {
    std::vector<std::string> paths;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile()) paths.push_back(fromQt(url.toLocalFile()));
    return paths;
}

/// A comparison of the cases as they were read.
std::shared_ptr<const Asked> askedOf(const ComparedCases& made, const CompareOrder& order) {
    auto asked = std::make_shared<Asked>();
    const auto& cases = made.comparison.cases;
    CompareSet set{{}, order.onlyDifferences, {}};
    for (const ComparedCase& one : cases) {
        // A study has no absolute paths.
        const std::string name = utf8FromPath(pathFromUtf8(one.name).relative_path());
        asked->cases.emplace_back(name, one.current);
        if (&one != &cases.front()) set.with.push_back(name);
    }
    set.base = asked->cases[made.comparison.base].first;
    asked->study = {{},
                    asked->cases.front().first,
                    order.own.Units == project::English ? project::English : project::Metric,
                    order.RoundTELVOSF,
                    std::move(set)};
    return asked;
}

/// Another list in a box that keeps what is chosen where it is still there.
void relistNames(QComboBox& box, const std::vector<std::string>& names, int otherwise) {
    const QSignalBlocker quiet(box);
    const QString chosen = box.currentText();
    box.clear();
    for (const std::string& name : names)
        box.addItem(toQt(name));
    const int at = box.findText(chosen);
    box.setCurrentIndex(at >= 0 ? at : std::min(otherwise, box.count() - 1));
}

} // namespace

ComparePage::ComparePage(PageActions actions, QWidget* parent)
    : StudyPage("Compare", tr(CompareTitle), tr("side by side"), std::move(actions), parent) {
    makeFields();
    makeTabs();
    setAcceptDrops(true);
}

void ComparePage::makeFields() {
    auto* row = new QHBoxLayout;
    const auto narrow = [](QComboBox& box) {
        box.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box.setMinimumContentsLength(11);
        box.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    };
    m_add = new QPushButton(tr("&Add Files..."), this);
    telvo::ui::describe(*m_add, named("cmd", "Add"), tr("Add Files"),
                        tr("Adds case files; files may also be dropped here"));
    m_addRun = new QPushButton(tr("Add R&un"), this);
    telvo::ui::describe(*m_addRun, named("cmd", "AddRun"), tr("Add Run"),
                        tr("Adds a case as it was run since the program started"));
    m_files = new QComboBox(this);
    telvo::ui::describe(*m_files, named("cbo", "Files"), tr("Added"),
                        tr("The files, rows and runs that were added"));
    m_remove = new QPushButton(tr("&Remove"), this);
    telvo::ui::describe(*m_remove, named("cmd", "Remove"), tr("Remove"),
                        tr("Takes this case out of the comparison; a file itself stays"));
    m_base = new QComboBox(this);
    telvo::ui::describe(
        *m_base, named("cbo", "Base"), tr("Base"),
        tr("The case that the others are compared with; its units are those of all"));
    m_scenarios = new QCheckBox(tr("Scenar&ios"), this);
    telvo::ui::describe(*m_scenarios, named("chk", "Scenarios"), tr("Scenarios"),
                        tr("Takes the scenarios of the case in, too"));
    m_onlyDifferences = new QCheckBox(tr("Only &differences"), this);
    telvo::ui::describe(*m_onlyDifferences, named("chk", "OnlyDifferences"), tr("Only differences"),
                        tr("Leaves out what is the same in all cases"));
    for (QPushButton* button : {m_add, m_addRun, m_remove})
        button->setAutoDefault(false);
    narrow(*m_files);
    narrow(*m_base);
    auto* baseLabel = new QLabel(tr("&Base:"), this);
    baseLabel->setBuddy(m_base);
    row->addWidget(m_add);
    row->addWidget(m_addRun);
    row->addWidget(m_files, 1);
    row->addWidget(m_remove);
    row->addWidget(m_scenarios);
    fields().addLayout(row);
    auto* second = new QHBoxLayout;
    second->addWidget(baseLabel);
    second->addWidget(m_base, 1);
    second->addWidget(m_onlyDifferences);
    second->addStretch(1);
    fields().addLayout(second);

    connect(m_add, &QPushButton::clicked, this, &ComparePage::addFiles);
    connect(m_addRun, &QPushButton::clicked, this, &ComparePage::showRuns);
    connect(m_remove, &QPushButton::clicked, this, &ComparePage::removeFile);
    connect(m_base, &QComboBox::activated, this, [this] {
        settings().compareBase = fromQt(m_base->currentText());
        renew();
    });
    connect(m_scenarios, &QCheckBox::toggled, this, [this](bool on) {
        settings().compareScenarios = on;
        renew();
    });
    connect(m_onlyDifferences, &QCheckBox::toggled, this, [this](bool on) {
        settings().compareAll = !on;
        renew();
    });
}

void ComparePage::makeTabs() {
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(named("tab", ""));
    m_tabs->setAccessibleName(tr("Table, reports and plans"));
    m_tabs->addTab(&tableView(), tr("&Table"));

    auto* pair = new QWidget(m_tabs);
    auto* layout = new QVBoxLayout(pair);
    auto* row = new QHBoxLayout;
    m_first = new QComboBox(pair);
    m_second = new QComboBox(pair);
    telvo::ui::describe(*m_first, named("cbo", "First"), tr("First of two cases"),
                        tr("The case whose lines are marked -"));
    telvo::ui::describe(*m_second, named("cbo", "Second"), tr("Second of two cases"),
                        tr("The case whose lines are marked +"));
    for (QComboBox* box : {m_first, m_second}) {
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(11);
        connect(box, &QComboBox::activated, this, &ComparePage::showPair);
        row->addWidget(box, 1);
    }
    layout->addLayout(row);
    auto* views = new QTabWidget(pair);
    views->setObjectName(named("tab", "Pair"));
    views->setDocumentMode(true);
    m_reports = new QPlainTextEdit(views);
    telvo::ui::describe(*m_reports, named("txt", "Reports"), tr("Reports line by line"), {});
    m_reports->setReadOnly(true);
    m_reports->setMinimumHeight(4 * fontMetrics().height());
    m_reports->setTabChangesFocus(true);
    m_reports->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_reports->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    new DiffColors(*m_reports);
    views->addTab(m_reports, tr("R&eports"));
    if (actions().makePlan) {
        auto* plans = new QWidget(views);
        auto* both = new QHBoxLayout(plans);
        both->setContentsMargins(0, 0, 0, 0);
        m_firstPlan = actions().makePlan(named("plan", "First"), plans);
        m_secondPlan = actions().makePlan(named("plan", "Second"), plans);
        for (QWidget* plan : {m_firstPlan.widget, m_secondPlan.widget}) {
            plan->setMinimumSize(QSize(12, 4) * fontMetrics().height());
            both->addWidget(plan, 1);
        }
        views->addTab(plans, tr("P&lans"));
    }
    layout->addWidget(views, 1);
    m_tabs->addTab(pair, tr("T&wo Cases"));
    splitter().addWidget(m_tabs);
    splitter().setStretchFactor(0, 2);
    splitter().setStretchFactor(1, 3);
}

void ComparePage::fill(bool another) {
    if (another) {
        const QSignalBlocker quietScenarios(m_scenarios), quietAll(m_onlyDifferences);
        m_scenarios->setChecked(settings().compareScenarios);
        m_onlyDifferences->setChecked(!settings().compareAll);
        m_cases.reset();
        for (QComboBox* box : {m_base, m_first, m_second})
            box->clear();
    }
    listCases();
}

void ComparePage::listCases() {
    std::vector<std::string> files;
    for (const std::string& path : settings().compareFiles)
        files.push_back(withoutFolder(path));
    for (const NamedCase& one : settings().compareCases)
        files.push_back(one.first);
    relistNames(*m_files, files, m_files->count());
    for (std::size_t i = 0; i < settings().compareFiles.size(); ++i)
        m_files->setItemData(static_cast<int>(i), toQt(settings().compareFiles[i]),
                             Qt::ToolTipRole);
    m_addRun->setEnabled(!actions().runs().empty());
    m_remove->setEnabled(!files.empty());
    m_files->setEnabled(!files.empty());
    std::vector<std::string> names;
    if (m_cases)
        for (const ComparedCase& one : m_cases->comparison.cases)
            names.push_back(one.name);
    const int base = m_cases ? static_cast<int>(m_cases->comparison.base) : 0;
    relistNames(*m_base, names, base);
    if (m_cases) m_base->setCurrentIndex(base);
    relistNames(*m_first, names, base);
    relistNames(*m_second, names, base == 0 ? 1 : 0);
}

void ComparePage::addFiles() {
    add(actions().chooseFiles());
}

void ComparePage::add(const std::vector<std::string>& paths) {
    auto& files = settings().compareFiles;
    const std::size_t before = files.size();
    for (const std::string& path : paths)
        if (std::find(files.begin(), files.end(), path) == files.end()) files.push_back(path);
    if (files.size() == before) return;
    listCases();
    m_files->setCurrentIndex(m_files->count() - 1);
    renew();
}

void ComparePage::showRuns() {
    QMenu menu(this);
    menu.setObjectName("mnuCompareRuns");
    for (const NamedCase& run : actions().runs())
        connect(menu.addAction(toQt(run.first).replace('&', "&&")), &QAction::triggered, this,
                [this, run] {
                    actions().addToCompare({{run.first, [run] { return run.second; }}});
                });
    if (!menu.isEmpty()) menu.exec(m_addRun->mapToGlobal(QPoint(0, m_addRun->height())));
}

void ComparePage::removeFile() {
    const int at = m_files->currentIndex();
    auto& files = settings().compareFiles;
    auto& cases = settings().compareCases;
    const auto ofCases = at - static_cast<int>(files.size());
    if (at < 0 || ofCases >= static_cast<int>(cases.size())) return;
    if (ofCases < 0)
        files.erase(files.begin() + at);
    else
        cases.erase(cases.begin() + ofCases);
    listCases();
    renew();
}

/// Scenarios and files may be others than when it was shown last.
void ComparePage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    renew();
}

void ComparePage::dragEnterEvent(QDragEnterEvent* event) {
    if (!droppedFiles(*event->mimeData()).empty()) event->acceptProposedAction();
}

void ComparePage::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    add(droppedFiles(*event->mimeData()));
}

Result<StudyPage::Compute> ComparePage::read() {
    CompareOrder order;
    order.own = subject().current;
    order.ownName = subject().name;
    if (m_scenarios->isChecked()) order.scenarios = settings().scenarios;
    order.cases = settings().compareCases;
    order.files = settings().compareFiles;
    order.base = settings().compareBase;
    order.onlyDifferences = m_onlyDifferences->isChecked();
    order.RoundTELVOSF = subject().RoundTELVOSF;
    return Compute([order](const std::stop_token&) {
        auto result = compareResult(order);
        if (result)
            result->asked =
                askedOf(*std::static_pointer_cast<const ComparedCases>(result->made), order);
        return result;
    });
}

void ComparePage::shown() {
    m_cases = std::static_pointer_cast<const ComparedCases>(result().made);
    listCases();
    showPair();
}

/// Reports and plans of the two cases that are chosen.
void ComparePage::showPair() {
    if (!m_cases) return;
    const auto& cases = m_cases->comparison.cases;
    const auto chosen = [&](const QComboBox& box) {
        return &cases[static_cast<std::size_t>(
            std::clamp(box.currentIndex(), 0, static_cast<int>(cases.size()) - 1))];
    };
    const ComparedCase *first = chosen(*m_first), *second = chosen(*m_second);
    QStringList lines;
    for (const ComparedCase* one : {first, second})
        if (!one->run) lines << tr("%1 has no report: %2").arg(toQt(one->name), toQt(one->message));
    if (lines.isEmpty()) {
        report::ReportOptions options = subject().options;
        for (const std::string& line :
             reportDiff(first->name, *first->run, second->name, *second->run, options))
            lines << toQt(line);
        if (lines.size() == 2) lines << tr("Both reports are the same.");
    }
    const QString text = lines.join('\n');
    if (text != m_reports->toPlainText()) m_reports->setPlainText(text);
    if (m_firstPlan.show) m_firstPlan.show(first->current);
    if (m_secondPlan.show) m_secondPlan.show(second->current);
}

} // namespace telvo::study::ui
