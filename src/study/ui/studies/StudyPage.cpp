// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/StudyPage.h"

#include "base/numbers.h"
#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

namespace {

constexpr int RestMilliseconds = 80;      // after the last key
constexpr int PatienceMilliseconds = 300; // until it is said that it takes long
constexpr std::size_t MostCompared = 20;  // rows that are marked at once
constexpr auto RefusedField = "telvoRefusedField";

std::string foundIn(double milliseconds) {
    return milliseconds < 1000 ? generalNumber(std::ceil(milliseconds)) + " ms"
                               : generalNumber(milliseconds / 1000, 3) + " s";
}

} // namespace

/// A veil over a result that does not belong to case and fields any more.
class Wash : public QWidget {
  public:
    explicit Wash(QWidget& over) : QWidget(over.parentWidget()), m_over(over) {
        setObjectName("wash");
        setAttribute(Qt::WA_TransparentForMouseEvents);
        over.installEventFilter(this);
        hide();
    }

  protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
            setGeometry(m_over.geometry());
        return QWidget::eventFilter(object, event);
    }
    void paintEvent(QPaintEvent*) override {
        QColor veil = palette().color(QPalette::Window);
        veil.setAlpha(170);
        QPainter(this).fillRect(rect(), veil);
    }

  private:
    QWidget& m_over;
};

StudyPage::StudyPage(const QString& prefix, const QString& title, const QString& subtitle,
                     PageActions actions, QWidget* parent)
    : QWidget(parent), m_prefix(prefix), m_title(title), m_subtitle(subtitle),
      m_actions(std::move(actions)), m_background(new Background(this)), m_rest(new QTimer(this)),
      m_patience(new QTimer(this)), m_headline(new QLabel(this)), m_remark(new QLabel(this)),
      m_problem(new QLabel(this)), m_fields(new QVBoxLayout), m_splitter(nullptr), m_chart(nullptr),
      m_table(nullptr), m_foot(new QLabel(this)), m_left(new QPushButton(this)),
      m_stop(new QPushButton(tr("&Stop"), this)), m_wash(nullptr) {
    setObjectName("page" + prefix);
    const auto setUp = [&](QLabel& label, const char* what, const QString& name) {
        label.setObjectName(named("lbl", what));
        label.setAccessibleName(name);
        label.setTextFormat(Qt::PlainText);
        label.setWordWrap(true);
        label.setTextInteractionFlags(Qt::TextSelectableByMouse);
    };
    setUp(*m_headline, "Headline", tr("Answer"));
    setUp(*m_remark, "Remark", tr("How it was found"));
    setUp(*m_problem, "Problem", tr("What is wrong"));
    setUp(*m_foot, "Foot", tr("About this result"));
    QFont bold = m_headline->font();
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    bold.setBold(true);
    m_headline->setFont(bold);
    telvo::ui::markRefused(*m_problem, {});
    m_problem->setAutoFillBackground(true);
    m_problem->setMargin(4);
    m_problem->hide();
    m_remark->hide();

    m_splitter = new QSplitter(Qt::Vertical, this);
    m_splitter->setObjectName(named("spl", ""));
    m_splitter->setChildrenCollapsible(false);
    auto* scroll = new QScrollArea(m_splitter);
    scroll->setObjectName(named("scr", "Picture"));
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    m_chart = new StudyChart(named("cht", ""), scroll);
    scroll->setWidget(m_chart);
    m_table = new StudyTableView(named("tbl", ""), m_splitter);
    m_splitter->addWidget(scroll);
    m_splitter->addWidget(m_table);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 2);

    telvo::ui::describe(*m_left, named("cmd", "NotComputed"), tr("Not computed"), {});
    m_left->setFlat(true);
    m_left->setAutoDefault(false);
    m_left->hide();
    telvo::ui::describe(*m_stop, named("cmd", "Stop"), tr("Stop"),
                        tr("Ends what is being computed or sorted"));
    m_stop->setAutoDefault(false);
    m_stop->hide();
    auto* foot = new QHBoxLayout;
    foot->addWidget(m_foot, 1);
    foot->addWidget(m_left);
    foot->addWidget(m_stop);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_headline);
    layout->addWidget(m_remark);
    layout->addLayout(m_fields);
    layout->addWidget(m_problem);
    layout->addWidget(m_splitter, 1);
    layout->addLayout(foot);
    m_wash = new Wash(*m_splitter);
    m_wash->raise();

    m_rest->setSingleShot(true);
    m_rest->setInterval(RestMilliseconds);
    connect(m_rest, &QTimer::timeout, this, &StudyPage::compute);
    m_patience->setSingleShot(true);
    m_patience->setInterval(PatienceMilliseconds);
    connect(m_patience, &QTimer::timeout, this, &StudyPage::showBusy);
    connect(m_background, &Background::failed, this, [this](const QString& why) {
        refuse({"The study could not be finished: " + fromQt(why), ""});
    });
    connect(m_table, &StudyTableView::sortingChanged, this, &StudyPage::showBusy);
    connect(m_stop, &QPushButton::clicked, this, [this] {
        m_table->stopSorting();
        m_background->stop();
    });
    connect(m_left, &QPushButton::clicked, this,
            [this] { m_actions.showText(tr("Not computed"), fromQt(m_left->toolTip())); });
    connect(m_table, &StudyTableView::openRow, this, [this](std::size_t row, int column) {
        if (edits(row, column) || !m_result.ofRow) return;
        openChoices(m_result.ofRow(row, column));
    });
    connect(m_table, &StudyTableView::menuAsked, this,
            [this](std::size_t row, int column, const QPoint& at) {
                showMenu(m_result.ofRow ? m_result.ofRow(row, column) : std::vector<CaseChoice>(),
                         row, at);
            });
    const auto ofSpot = [this](std::optional<std::size_t> id) {
        std::vector<CaseChoice> choices;
        if (id && m_result.ofSpot)
            if (auto choice = m_result.ofSpot(*id)) choices.push_back(std::move(*choice));
        return choices;
    };
    connect(m_chart, &StudyChart::openSpot, this,
            [this, ofSpot](std::size_t id) { openChoices(ofSpot(id)); });
    connect(m_chart, &StudyChart::menuAsked, this,
            [this, ofSpot](std::optional<std::size_t> id, const QPoint& at) {
                showMenu(ofSpot(id), std::nullopt, at);
            });
}

StudyPage::~StudyPage() = default;

QString StudyPage::named(const char* kind, const char* what) const {
    return QLatin1String(kind) + m_prefix + QLatin1String(what);
}

NumberEdit* StudyPage::makeNumber(const char* what, const QString& accessibleName,
                                  const QString& toolTip) {
    auto* box = new NumberEdit(named("txt", what), this);
    box->setAccessibleName(accessibleName);
    box->setToolTip(toolTip);
    box->setFixedWidth(fontMetrics().averageCharWidth() * 11);
    connect(box, &QLineEdit::textEdited, this, &StudyPage::renewSoon);
    connect(box, &NumberEdit::pasteRefused, this, [this, box](const QString& why) {
        refuse({fromQt(why), fromQt(box->objectName())});
    });
    return box;
}

Result<double> StudyPage::numberIn(const NumberEdit& box) const {
    const std::string where = fromQt(box.objectName());
    const std::string name = fromQt(box.accessibleName());
    if (const auto value = numberOf(fromQt(box.text()))) return *value;
    const QString why = box.objection();
    return Fault{name + ": " + (why.isEmpty() ? std::string("enter a number") : fromQt(why)),
                 where};
}

std::shared_ptr<const Asked> StudyPage::asking(Study::Request request, unsigned threads) const {
    const project::ProjectCase& own = m_subject.current;
    return std::make_shared<const Asked>(
        Asked{{{}, m_subject.name, own.Units, m_subject.RoundTELVOSF, std::move(request)},
              {{m_subject.name, own}},
              threads});
}

void StudyPage::setCase(const StudyCase& subject, bool another) {
    m_subject = subject;
    if (another) m_edited = false;
    fill(another);
    refresh();
}

void StudyPage::refresh() {
    if (isVisible()) {
        compute();
    } else {
        m_background->cancel();
        m_due = true;
        setCurrent(false);
    }
}

void StudyPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (m_due) compute();
}

void StudyPage::renewSoon() {
    m_edited = true;
    m_background->cancel(); // what it makes belongs to other fields
    setCurrent(false);
    m_rest->start();
}

void StudyPage::renew() {
    m_edited = true;
    compute();
}

void StudyPage::compute() {
    m_rest->stop();
    m_due = false;
    setCurrent(false);
    clearRefusals();
    m_background->cancel();
    if (!m_subject.refusal.empty()) return refuse({m_subject.refusal, ""});
    Result<Compute> compute = read();
    if (!compute) return refuse(compute.fault());
    m_progress->store(0);
    m_patience->start();
    m_background->start([this, run = std::move(*compute)](const std::stop_token& stop) {
        const auto begin = std::chrono::steady_clock::now();
        auto made = std::make_shared<Result<StudyResult>>(run(stop));
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - begin;
        return [this, made, took] {
            if (*made)
                showResult(std::move(**made), took.count());
            else
                refuse(made->fault());
        };
    });
}

void StudyPage::showResult(StudyResult result, double milliseconds) {
    m_result = std::move(result);
    m_patience->stop();
    m_headline->setText(toQt(m_result.headline));
    m_remark->setText(toQt(m_result.remark));
    m_remark->setVisible(!m_result.remark.empty());
    m_table->setTable(m_result.table);
    m_chart->setDrawing(m_result.drawing);
    showFoot(milliseconds);
    setCurrent(true);
    showBusy();
    shown();
}

void StudyPage::showFoot(double milliseconds) {
    const Tally& tally = m_result.tally;
    const std::size_t left = tally.notComputed();
    std::string text = sourceLine(m_subject.name, tally, m_result.stopped, foundIn(milliseconds));
    if (left == 0) text += ", all computed";
    m_foot->setText(toQt(text));
    QString list;
    for (const Tally::Left& one : tally.left)
        list += toQt(groupedCount(one.runs) + ": " + one.message) + '\n';
    m_left->setText(tr("%1 could not be computed...").arg(toQt(groupedCount(left))));
    m_left->setToolTip(list.trimmed());
    m_left->setVisible(left > 0);
}

void StudyPage::showBusy() {
    const bool busy = m_background->isBusy();
    m_stop->setVisible(busy || m_table->isSorting());
    if (!busy) return;
    const int percent = m_progress->load();
    m_foot->setText(percent > 0 ? tr("Computing: %1 %").arg(percent) : tr("Computing..."));
    m_patience->start();
}

void StudyPage::refuse(const Fault& fault) {
    m_patience->stop();
    QString text = toQt(fault.message);
    if (auto* field = findChild<QWidget*>(toQt(fault.where)); field && !fault.where.empty()) {
        if (auto* box = qobject_cast<NumberEdit*>(field))
            box->setRefusal(text);
        else
            telvo::ui::markRefused(*field, text);
        field->setProperty(RefusedField, true);
    }
    telvo::ui::markRefused(*m_problem, text);
    QPalette colors = m_problem->palette();
    colors.setColor(QPalette::Window, colors.color(QPalette::Base));
    colors.setColor(QPalette::WindowText, colors.color(QPalette::Text));
    m_problem->setPalette(colors);
    m_problem->setText(text);
    m_problem->show();
    showBusy();
}

void StudyPage::clearRefusals() {
    m_problem->hide();
    m_problem->clear();
    for (auto* field : findChildren<QWidget*>()) {
        if (!field->property(RefusedField).toBool()) continue;
        field->setProperty(RefusedField, false);
        if (auto* box = qobject_cast<NumberEdit*>(field))
            box->setRefusal({});
        else
            telvo::ui::markRefused(*field, {});
    }
}

void StudyPage::setCurrent(bool current) {
    m_current = current;
    m_wash->setGeometry(m_splitter->geometry());
    m_wash->setVisible(!current);
    m_headline->setEnabled(current);
    m_remark->setEnabled(current);
    m_foot->setEnabled(current);
    Q_EMIT currentChanged();
}

std::string StudyPage::headline() const {
    return m_result.headline;
}

std::string StudyPage::footLine() const {
    return fromQt(m_foot->text());
}

chart::ui::Picture StudyPage::picture() const {
    auto picture = pictureOf(m_result.drawing, fromQt(m_title) + " - " + m_subject.name,
                             pictureSource(m_subject.name, m_result.tally, m_result.stopped));
    picture.caseName = m_subject.name;
    return picture;
}

void StudyPage::openChoices(const std::vector<CaseChoice>& choices) {
    if (m_current && !choices.empty()) m_actions.openAsCase(choices.front());
}

/// The cases of the selected rows where there are several, else of the place alone.
std::vector<CaseChoice> StudyPage::markedCases(const std::vector<CaseChoice>& choices,
                                               std::optional<std::size_t> row) const {
    const std::vector<std::size_t> selected =
        row ? m_table->selectedRows(MostCompared) : std::vector<std::size_t>();
    std::vector<CaseChoice> marked;
    if (selected.size() > 1 && m_result.ofRow &&
        std::find(selected.begin(), selected.end(), *row) != selected.end()) {
        for (const std::size_t one : selected)
            if (auto all = m_result.ofRow(one, 0); !all.empty())
                marked.push_back(std::move(all.front()));
    } else if (!choices.empty()) {
        marked.push_back(choices.front());
    }
    return marked;
}

void StudyPage::showMenu(const std::vector<CaseChoice>& choices, std::optional<std::size_t> row,
                         const QPoint& globalPos) {
    if (!m_current) return;
    QMenu menu(this);
    menu.setObjectName("mnuStudyPlace");
    for (const CaseChoice& choice : choices)
        connect(menu.addAction(tr("&Open as Case: %1").arg(toQt(choice.what).replace('&', "&&"))),
                &QAction::triggered, this, [this, choice] { m_actions.openAsCase(choice); });
    if (const auto marked = markedCases(choices, row); !marked.empty())
        connect(menu.addAction(marked.size() == 1
                                   ? tr("Add to &Compare")
                                   : tr("Add %1 Rows to &Compare").arg(marked.size())),
                &QAction::triggered, this, [this, marked] { m_actions.addToCompare(marked); });
    if (row) addToMenu(menu, *row);
    if (!menu.isEmpty()) menu.exec(globalPos);
}

} // namespace telvo::study::ui
