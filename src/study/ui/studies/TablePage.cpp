// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/TablePage.h"

#include "base/numbers.h"
#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "study/questions/searchGrid.h"
#include "study/ui/studies/choices.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>
#include <thread>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

namespace {

constexpr double FirstSteps = 10; // of a range that nobody has chosen yet
constexpr std::size_t RowsOnOneThread = 50'000;

} // namespace

TablePage::TablePage(PageActions actions, QWidget* parent)
    : StudyPage("Table", tr(SweepTitle), tr("data table"), std::move(actions), parent) {
    makeFields();
}

void TablePage::makeFields() {
    auto* grid = new QGridLayout;
    for (std::size_t a = 0; a < m_axes.size(); ++a) {
        AxisFields& axis = m_axes[a];
        const std::string number = std::to_string(a + 1);
        const auto name = [&number](const char* what) { return what + ("_" + number); };
        axis.input = new InputBox(named("cbo", name("Input").c_str()), tr("Input %1").arg(a + 1),
                                  tr("An input that varies"), this);
        axis.from = makeNumber(name("From").c_str(), tr("From"), tr("First value"));
        axis.to = makeNumber(name("To").c_str(), tr("To"), tr("Last value"));
        axis.step = makeNumber(name("Step").c_str(), tr("Step"), tr("From a value to the next"));
        for (NumberEdit* box : {axis.from, axis.to, axis.step})
            box->setFixedWidth(fontMetrics().averageCharWidth() * 9);
        axis.list = new QLineEdit(this);
        telvo::ui::describe(*axis.list, named("txt", name("List").c_str()), tr("List of values"),
                            tr("Values with commas, such as 6, 8, 10:20:5; they take the place of "
                               "from, to and step"));
        axis.list->setPlaceholderText(tr("or a list"));
        axis.list->setMinimumWidth(fontMetrics().averageCharWidth() * 10);
        const auto row = static_cast<int>(a);
        int column = 0;
        const auto add = [&](const QString& caption, QWidget* field) {
            auto* label = new QLabel(caption, this);
            label->setBuddy(field);
            grid->addWidget(label, row, column++);
            grid->addWidget(field, row, column++);
            axis.all.push_back(label);
            axis.all.push_back(field);
        };
        axis.input->setMinimumContentsLength(12);
        add(tr("Input &%1:").arg(a + 1), axis.input);
        add(tr("from"), axis.from);
        add(tr("to"), axis.to);
        add(tr("step"), axis.step);
        grid->addWidget(axis.list, row, column);
        axis.all.push_back(axis.list);
        connect(axis.input, &QComboBox::activated, this, [this, a] {
            proposeAxis(a);
            showAxes();
            renew();
        });
        connect(axis.list, &QLineEdit::textEdited, this, [this] {
            showAxes();
            renewSoon();
        });
    }
    m_linked = new QCheckBox(tr("lin&ked, value by value"), this);
    telvo::ui::describe(*m_linked, named("chk", "Linked"), tr("Linked"),
                        tr("The inputs go side by side instead of in all combinations"));
    connect(m_linked, &QCheckBox::clicked, this, [this] { renew(); });
    m_outcomes = new QListWidget(this);
    telvo::ui::describe(*m_outcomes, named("lst", "Outcomes"), tr("Results"),
                        tr("The results of the table; the picture shows the first one"));
    m_outcomes->setMaximumHeight(fontMetrics().height() * 8);
    m_outcomes->setMinimumHeight(fontMetrics().height() * 4);
    m_outcomes->setMinimumWidth(fontMetrics().averageCharWidth() * 18);
    connect(m_outcomes, &QListWidget::itemChanged, this, [this] { renewSoon(); });

    m_level = makeNumber("Level", tr("Line at"),
                         tr("Draws a line where the first result has this value; may be empty"));
    m_suggested = new QCheckBox(tr("s&uggested"), this);
    telvo::ui::describe(*m_suggested, named("chk", "Suggested"), tr("Suggested"),
                        tr("The line is where the suggested factor is reached"));
    connect(m_suggested, &QCheckBox::clicked, this, [this] {
        m_level->setEnabled(!m_suggested->isChecked());
        renew();
    });
    auto* level = new QHBoxLayout;
    auto* label = new QLabel(tr("Li&ne at:"), this);
    label->setBuddy(m_level);
    level->addWidget(m_linked);
    level->addSpacing(12);
    level->addWidget(label);
    level->addWidget(m_level);
    level->addWidget(m_suggested);
    level->addStretch();

    auto* left = new QVBoxLayout;
    left->addLayout(grid);
    left->addLayout(level);
    left->addStretch();
    grid->setColumnStretch(8, 1);
    auto* both = new QHBoxLayout;
    both->addLayout(left, 3);
    both->addWidget(m_outcomes, 2);
    fields().addLayout(both);
}

void TablePage::listOutcomes() {
    const auto checked = checkedOutcomes();
    const QSignalBlocker quiet(m_outcomes);
    const auto all = outcomesOf(subject().current);
    bool same = m_outcomes->count() == static_cast<int>(all.size());
    for (int i = 0; same && i < m_outcomes->count(); ++i)
        same = fromQt(m_outcomes->item(i)->data(Qt::UserRole).toString()) ==
               all[static_cast<std::size_t>(i)].name();
    if (same) return;
    m_outcomes->clear();
    for (const Outcome& outcome : all) {
        auto* item = new QListWidgetItem(toQt(outcome.label()), m_outcomes);
        item->setData(Qt::UserRole, toQt(outcome.name()));
        const bool on = std::find(checked.begin(), checked.end(), outcome.name()) != checked.end();
        item->setCheckState(on ? Qt::Checked : Qt::Unchecked);
    }
}

std::vector<std::string> TablePage::checkedOutcomes() const {
    std::vector<std::string> names;
    for (int i = 0; i < m_outcomes->count(); ++i)
        if (m_outcomes->item(i)->checkState() == Qt::Checked)
            names.push_back(fromQt(m_outcomes->item(i)->data(Qt::UserRole).toString()));
    return names;
}

void TablePage::proposeAxis(std::size_t axis) {
    const Variable variable = m_axes[axis].input->variable();
    const Span range = defaultSearchRange(subject().current, variable);
    const double least = defaultStep(variable, subject().current.Units);
    // A round step that makes about ten.
    double step = least;
    while ((range.high - range.low) / step > 2 * FirstSteps)
        step *= (range.high - range.low) / step > 10 * FirstSteps ? 10 : 2;
    m_axes[axis].from->setText(toQt(generalNumber(range.low)));
    m_axes[axis].to->setText(toQt(generalNumber(range.high)));
    m_axes[axis].step->setText(toQt(generalNumber(step)));
    m_axes[axis].list->clear();
}

void TablePage::showAxis(std::size_t axis, const std::string& values) {
    AxisFields& fields = m_axes[axis];
    const QStringList parts = toQt(values).split(':');
    const bool list = parts.size() != 3 || values.find(',') != std::string::npos;
    fields.list->setText(list ? toQt(values) : QString());
    NumberEdit* boxes[] = {fields.from, fields.to, fields.step};
    for (qsizetype i = 0; i < 3; ++i)
        boxes[i]->setText(list ? QString() : parts[i]);
}

void TablePage::showAxes() {
    bool shown = true;
    for (AxisFields& axis : m_axes) {
        for (QWidget* field : axis.all)
            field->setVisible(shown);
        const bool used = !axis.input->currentData().toString().isEmpty();
        const bool listed = !axis.list->text().trimmed().isEmpty();
        for (NumberEdit* box : {axis.from, axis.to, axis.step})
            box->setEnabled(used && !listed);
        axis.list->setEnabled(used);
        shown = shown && used;
    }
    m_linked->setEnabled(!m_axes[1].input->currentData().toString().isEmpty());
}

void TablePage::fill(bool another) {
    for (std::size_t a = 0; a < m_axes.size(); ++a)
        m_axes[a].input->list(subject().current, a > 0);
    listOutcomes();
    if (!another) return;
    const auto& asked = settings().table;
    for (std::size_t a = 0; a < m_axes.size(); ++a) {
        InputBox& box = *m_axes[a].input;
        const QSignalBlocker quiet(&box);
        if (asked && a < asked->axes.size()) {
            box.choose(asked->axes[a].variable);
            showAxis(a, asked->axes[a].values);
        } else if (a == 0) {
            box.choose(project::Field::DepthCover);
            proposeAxis(a);
        } else {
            box.setCurrentIndex(0);
            showAxis(a, "");
        }
    }
    m_linked->setChecked(asked && asked->linked);
    {
        const QSignalBlocker quiet(m_outcomes);
        const std::vector<std::string> first =
            asked ? asked->outcomes
                  : std::vector<std::string>{"TELVOSF.retreat", "TELVOSF.development"};
        for (int i = 0; i < m_outcomes->count(); ++i) {
            const std::string name = fromQt(m_outcomes->item(i)->data(Qt::UserRole).toString());
            const bool on = std::find(first.begin(), first.end(), name) != first.end();
            m_outcomes->item(i)->setCheckState(on ? Qt::Checked : Qt::Unchecked);
        }
    }
    m_suggested->setChecked(!asked || asked->suggested);
    m_level->setEnabled(!m_suggested->isChecked());
    m_level->setText(asked && asked->level ? toQt(generalNumber(*asked->level)) : QString());
    showAxes();
}

std::string TablePage::valuesText(std::size_t axis) const {
    const AxisFields& fields = m_axes[axis];
    if (const QString list = fields.list->text().trimmed(); !list.isEmpty()) return fromQt(list);
    return fromQt(fields.from->text().trimmed() + ':' + fields.to->text().trimmed() + ':' +
                  fields.step->text().trimmed());
}

Result<SweepAxis> TablePage::readAxis(std::size_t axis) const {
    const AxisFields& fields = m_axes[axis];
    const bool listed = !fields.list->text().trimmed().isEmpty();
    if (!listed)
        for (const NumberEdit* box : {fields.from, fields.to, fields.step})
            if (const auto number = numberIn(*box); !number) return number.fault();
    auto values = parseValues(valuesText(axis));
    if (!values)
        return Fault{values.fault().message,
                     fromQt((listed ? fields.list : fields.step)->objectName())};
    return SweepAxis{fields.input->variable(), std::move(*values)};
}

Result<StudyPage::Compute> TablePage::read() {
    TableRequest asked;
    SweepRequest request;
    for (std::size_t a = 0; a < m_axes.size(); ++a) {
        if (m_axes[a].input->currentData().toString().isEmpty()) break;
        auto axis = readAxis(a);
        if (!axis) return axis.fault();
        const auto [low, high] = std::minmax_element(axis->values.begin(), axis->values.end());
        if (const Span range{*low, *high}; range.low < range.high)
            if (const auto why = refusedRange(subject().current, axis->variable, range))
                return Fault{why->message, fromQt(m_axes[a].input->objectName())};
        asked.axes.push_back({axis->variable, valuesText(a)});
        request.axes.push_back(std::move(*axis));
    }
    asked.linked = request.linked = m_linked->isChecked() && request.axes.size() > 1;
    asked.outcomes = checkedOutcomes();
    for (const std::string& name : asked.outcomes)
        request.outcomes.push_back(*Outcome::named(name));
    if (request.outcomes.empty())
        return Fault{"Check a result in the list", fromQt(m_outcomes->objectName())};
    asked.suggested = m_suggested->isChecked();
    std::vector<std::optional<double>> levels;
    if (asked.suggested) {
        levels.emplace_back(std::nullopt);
    } else if (!m_level->text().trimmed().isEmpty()) {
        const auto level = numberIn(*m_level);
        if (!level) return level.fault();
        asked.level = *level;
        levels.emplace_back(*level);
    }
    if (isEdited()) settings().table = asked;
    std::size_t rows = 1;
    for (const SweepAxis& axis : request.axes)
        rows = request.linked ? axis.values.size()
                              : std::min(rows * axis.values.size(), MostSweepRows + 1);
    const unsigned threads =
        rows > RowsOnOneThread ? std::max(1U, std::thread::hardware_concurrency()) : 1;
    return Compute([request, run = asking(request, threads), threads, levels,
                    base = subject().current, rounding = subject().RoundTELVOSF,
                    done = progress()](const std::stop_token& stop) -> Result<StudyResult> {
        auto made =
            sweep(base, request, rounding, threads, stop, [done](std::size_t of, std::size_t all) {
                done->store(static_cast<int>(100 * of / std::max<std::size_t>(all, 1)));
            });
        if (!made) return made.fault();
        StudyResult result = sweepResult(std::make_shared<const Sweep>(std::move(*made)), levels);
        if (!result.stopped) result.asked = run;
        return result;
    });
}

} // namespace telvo::study::ui
