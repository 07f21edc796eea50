// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/frmScatter.h"

#include "base/numbers.h"
#include "base/text.h"
#include "base/titles.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "study/questions/ranges.h"
#include "study/ui/studies/scatterFields.h"

#include <algorithm>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QVBoxLayout>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

namespace {

constexpr auto ScatterTopic = "StudyUncertainty.htm";
using Shape = Scatter::Shape;

enum Column { Name, Text, Mean, Deviation, Columns };

} // namespace

std::string frmScatter::Row::label() const {
    if (input.variables.size() == 1) return input.variables.front().label();
    if (input.shared && input.variables.front().field() == project::Field::XcutCenters)
        return Variable::allDistances().label() + ", one error";
    std::string text;
    for (const Variable& variable : input.variables)
        text += (text.empty() ? "" : ", ") + variable.label();
    return text;
}

frmScatter::frmScatter(const project::ProjectCase& base, AskedUncertainty asked,
                       const telvo::ui::FormServices& services, QWidget* parent)
    : Form("frmScatter", "Inputs that Scatter: ", ScatterTopic, services, parent), m_base(base),
      m_asked(std::move(asked)), m_pairs(m_asked.correlated), m_table(new QTableWidget(this)) {
    setWindowTitle(tr("Inputs that Scatter"));
    makeRows();
    makeTable();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_table, 1);
    auto* below = new QHBoxLayout;
    below->addWidget(makeEditor(), 3);
    below->addWidget(makePairs(), 2);
    layout->addLayout(below);
    auto* buttons = makeButtons();
    auto* ok = addButton(*buttons, "cmdOK", tr("OK"), QDialogButtonBox::AcceptRole);
    ok->setDefault(true);
    auto* cancel = addButton(*buttons, "cmdCancel", tr("Cancel"), QDialogButtonBox::RejectRole);
    connect(ok, &QPushButton::clicked, this, &frmScatter::okay);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    layout->addWidget(buttons);
    showTable();
    showPairs();
    m_table->setCurrentCell(0, Name);
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * 125, metrics.height() * 38);
}

/// What is asked first, then what usually scatters, then all others that change something.
void frmScatter::makeRows() {
    const auto covers = [this](const Variable& variable) {
        return std::any_of(m_rows.begin(), m_rows.end(), [&](const Row& row) {
            const auto& all = row.input.variables;
            return std::find(all.begin(), all.end(), variable) != all.end();
        });
    };
    for (const ScatteredInput& input : m_asked.vary)
        m_rows.push_back({input, true});
    for (const ScatteredInput& input : usualInputs(m_base))
        if (std::none_of(input.variables.begin(), input.variables.end(), covers))
            m_rows.push_back({input, m_asked.vary.empty()});
    for (const Variable& variable : variables()) {
        if (variable.fields(m_base.Input).size() != 1) continue; // several have a row of their own
        if (!covers(variable) && whyWithoutEffect(m_base, variable).empty())
            m_rows.push_back({{{variable}, std::nullopt, false}, false});
    }
}

void frmScatter::makeTable() {
    m_table->setObjectName("tblScatter");
    m_table->setAccessibleName(tr("Inputs"));
    m_table->setToolTip(tr("Inputs that are ticked scatter; Space ticks the selected one"));
    m_table->setColumnCount(Columns);
    m_table->setRowCount(static_cast<int>(m_rows.size()));
    m_table->setHorizontalHeaderLabels(
        {tr("Input"), tr("Scatters"), tr("Mean"), tr("Standard Deviation")});
    m_table->verticalHeader()->hide();
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setTabKeyNavigation(false);
    m_table->horizontalHeader()->setHighlightSections(false);
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const Row& one = m_rows[static_cast<std::size_t>(row)];
        for (int column = 0; column < Columns; ++column) {
            auto* item = new QTableWidgetItem;
            if (column >= Mean) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            m_table->setItem(row, column, item);
        }
        QTableWidgetItem* name = m_table->item(row, Name);
        name->setText(toQt(one.label()));
        name->setFlags(name->flags() | Qt::ItemIsUserCheckable);
        name->setCheckState(one.scatters ? Qt::Checked : Qt::Unchecked);
    }
    connect(m_table, &QTableWidget::itemChanged, this, [this](const QTableWidgetItem* item) {
        if (item->column() != Name) return;
        m_rows[static_cast<std::size_t>(item->row())].scatters = item->checkState() == Qt::Checked;
    });
    connect(m_table, &QTableWidget::currentCellChanged, this, [this](int row, int, int, int) {
        if (row != m_shown) showScatter();
    });
}

QWidget* frmScatter::makeEditor() {
    m_editor = new QGroupBox(this);
    m_editor->setObjectName("grpScatter");
    auto* grid = new QGridLayout(m_editor);
    m_shape = new QComboBox(m_editor);
    telvo::ui::describe(*m_shape, "cboScatterShape", tr("Distribution"),
                        tr("The shape by which the input scatters"));
    for (std::size_t i = 0; i < shapeNames().size(); ++i)
        m_shape->addItem(shapeTitle(static_cast<Shape>(i)));
    m_form = new QComboBox(m_editor);
    telvo::ui::describe(*m_form, "cboScatterForm", tr("Given as"), tr("How its numbers are given"));
    int row = 0;
    const auto add = [&](const QString& caption, QWidget* field, int column) {
        auto* label = new QLabel(caption, m_editor);
        label->setBuddy(field);
        grid->addWidget(label, row, column);
        grid->addWidget(field, row, column + 1);
        return label;
    };
    add(tr("&Distribution:"), m_shape, 0);
    add(tr("&given as"), m_form, 2);
    for (std::size_t i = 0; i < m_numbers.size(); ++i) {
        if (i % 2 == 0) ++row;
        m_numbers[i] = new NumberEdit(QString("txtScatter_%1").arg(i + 1), m_editor);
        m_captions[i] = add({}, m_numbers[i], static_cast<int>(i % 2) * 2);
    }
    ++row;
    m_list = new QPlainTextEdit(m_editor);
    telvo::ui::describe(*m_list, "txtScatterList", tr("Values"),
                        tr("Values between blanks, commas or lines; a discrete value may have a "
                           "weight behind it: 900:2"));
    m_list->setTabChangesFocus(true);
    m_list->setFixedHeight(fontMetrics().height() * 4);
    m_listCaption = new QLabel(tr("&Values:"), m_editor);
    m_listCaption->setBuddy(m_list);
    grid->addWidget(m_listCaption, row, 0, Qt::AlignTop);
    grid->addWidget(m_list, row, 1, 1, 3);
    ++row;
    m_low = new NumberEdit("txtScatterLow", m_editor);
    m_high = new NumberEdit("txtScatterHigh", m_editor);
    add(tr("&Cut below:"), m_low, 0);
    add(tr("cut &above:"), m_high, 2);
    telvo::ui::describe(*m_low, "txtScatterLow", tr("Cut below"),
                        tr("No smaller value is drawn; empty: whatever the parameter form takes"));
    telvo::ui::describe(*m_high, "txtScatterHigh", tr("Cut above"),
                        tr("No larger value is drawn; empty: whatever the parameter form takes"));
    ++row;
    m_effect = new QLabel(m_editor);
    m_effect->setObjectName("lblScatterEffect");
    m_effect->setWordWrap(true);
    m_effect->setMinimumHeight(fontMetrics().height() * 2);
    grid->addWidget(m_effect, row, 0, 1, 3);
    auto* usual = makeButton("cmdUsual", tr("&Usual"), tr("As such an input usually scatters"));
    grid->addWidget(usual, row, 3);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);

    connect(m_shape, &QComboBox::activated, this, [this](int shape) {
        if (const Row* chosen = current())
            setScatter(firstOf(static_cast<Shape>(shape), scatterOf(*chosen),
                               chosen->input.variables.front(), m_base.Input));
    });
    connect(m_form, &QComboBox::activated, this, [this] { readScatter(); });
    for (NumberEdit* box : m_numbers)
        connect(box, &QLineEdit::textEdited, this, &frmScatter::readScatter);
    for (NumberEdit* box : {m_low, m_high})
        connect(box, &QLineEdit::textEdited, this, &frmScatter::readScatter);
    connect(m_list, &QPlainTextEdit::textChanged, this, &frmScatter::readScatter);
    connect(usual, &QPushButton::clicked, this, [this] {
        Row* chosen = current();
        if (!chosen) return;
        chosen->input.scatter.reset();
        showScatter();
        showRowText(m_shown);
    });
    return m_editor;
}

QWidget* frmScatter::makePairs() {
    auto* group = new QGroupBox(tr("Inputs that Move Together"), this);
    auto* layout = new QVBoxLayout(group);
    m_pairTable = new QTableWidget(0, 3, group);
    m_pairTable->setObjectName("tblTogether");
    m_pairTable->setAccessibleName(tr("Inputs that move together"));
    m_pairTable->setToolTip(tr("Pairs of inputs with their rank correlation; Del takes one out"));
    m_pairTable->setHorizontalHeaderLabels({tr("Input"), tr("and"), tr("Rank Correlation")});
    m_pairTable->verticalHeader()->hide();
    m_pairTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_pairTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pairTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pairTable->setTabKeyNavigation(false);
    layout->addWidget(m_pairTable, 1);
    m_first = new QComboBox(group);
    m_second = new QComboBox(group);
    telvo::ui::describe(*m_first, "cboTogetherFirst", tr("First input"),
                        tr("One of the inputs that move together"));
    telvo::ui::describe(*m_second, "cboTogetherSecond", tr("Second input"),
                        tr("The other one of them"));
    for (QComboBox* box : {m_first, m_second}) {
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(14);
        for (const Row& row : m_rows)
            box->addItem(toQt(row.label()), toQt(row.input.variables.front().name()));
    }
    m_rank = new NumberEdit("txtTogetherRank", group);
    telvo::ui::describe(*m_rank, "txtTogetherRank", tr("Rank correlation"),
                        tr("From -1, against each other, to 1, with each other"));
    m_rank->setMaximumWidth(fontMetrics().averageCharWidth() * 10);
    auto* boxes = new QHBoxLayout;
    boxes->addWidget(m_first, 1);
    boxes->addWidget(m_second, 1);
    boxes->addWidget(m_rank);
    layout->addLayout(boxes);
    auto* add = makeButton("cmdTogetherAdd", tr("Add &Pair"), tr("Adds the pair, or changes it"),
                           &frmScatter::addPair);
    auto* remove = makeButton("cmdTogetherRemove", tr("&Remove"), tr("Takes the pair out"));
    connect(remove, &QPushButton::clicked, this, [this] {
        const int row = m_pairTable->currentRow();
        if (row < 0) return;
        m_pairs.erase(m_pairs.begin() + row);
        showPairs();
    });
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(add);
    buttons->addWidget(remove);
    layout->addLayout(buttons);
    return group;
}

frmScatter::Row* frmScatter::current() {
    const int row = m_table->currentRow();
    return row < 0 ? nullptr : &m_rows[static_cast<std::size_t>(row)];
}

Scatter frmScatter::scatterOf(const Row& row) const {
    return row.input.scatter.value_or(usualScatter(row.input.variables.front(), m_base.Units));
}

void frmScatter::showTable() {
    for (int row = 0; row < m_table->rowCount(); ++row)
        showRowText(row);
    m_table->resizeColumnsToContents();
    m_table->horizontalHeader()->setSectionResizeMode(Text, QHeaderView::Stretch);
}

void frmScatter::showRowText(int row) {
    const Row& one = m_rows[static_cast<std::size_t>(row)];
    const Scatter scatter = scatterOf(one);
    const Variable& variable = one.input.variables.front();
    m_table->item(row, Text)->setText(toQt(scatterText(scatter)));
    const auto made = distributionOf(scatter, variable, m_base.Input);
    m_table->item(row, Mean)->setText(made ? toQt(variable.text(made->mean(), m_base.Units, 6))
                                           : QString());
    m_table->item(row, Deviation)
        ->setText(made ? toQt(variable.text(made->sd(), m_base.Units, 4)) : QString());
}

/// The selected row in the editor.
void frmScatter::showScatter() {
    if (m_fault && m_shown >= 0) showRowText(m_shown); // what was typed there is no distribution
    m_fault.reset();
    const Row* row = current();
    m_shown = m_table->currentRow();
    m_editor->setEnabled(row != nullptr);
    if (!row) return;
    m_editor->setTitle(tr("Scatter of: %1").arg(toQt(row->label())));
    const Scatter scatter = scatterOf(*row);
    m_shape->setCurrentIndex(static_cast<int>(scatter.shape));
    showFields();
    const Family family = familyOf(scatter.shape);
    std::vector<std::optional<double>> numbers;
    if (family == Family::ByMean) {
        m_form->setCurrentIndex(scatter.sd ? 1 : 0);
        numbers = {scatter.mean, scatter.sd ? scatter.sd : scatter.cov};
        if (!scatter.sd && scatter.cov) numbers[1] = 100 * *scatter.cov;
    } else {
        m_form->setCurrentIndex(static_cast<int>(scatter.pointsAre));
        numbers.assign(scatter.points.begin(), scatter.points.end());
        if (family == Family::Beta)
            numbers.insert(numbers.begin(), scatter.shapes.begin(), scatter.shapes.end());
    }
    if (family == Family::List) numbers.clear();
    numbers.resize(m_numbers.size());
    for (std::size_t i = 0; i < m_numbers.size(); ++i)
        m_numbers[i]->setText(numbers[i] ? toQt(generalNumber(*numbers[i], 10)) : QString());
    QString list;
    if (family == Family::List)
        for (std::size_t i = 0; i < scatter.points.size(); ++i) {
            list += (i == 0 ? "" : ", ") + toQt(generalNumber(scatter.points[i]));
            if (i < scatter.weights.size()) list += ':' + toQt(generalNumber(scatter.weights[i]));
        }
    const QSignalBlocker quiet(m_list);
    m_list->setPlainText(list);
    m_low->setText(scatter.low ? toQt(generalNumber(*scatter.low)) : QString());
    m_high->setText(scatter.high ? toQt(generalNumber(*scatter.high)) : QString());
    showEffect(scatter);
}

/// The boxes that the shape needs.
void frmScatter::showFields() {
    const auto shape = static_cast<Shape>(m_shape->currentIndex());
    const Family family = familyOf(shape);
    const std::vector<QString> captions = captionsOf(shape);
    for (std::size_t i = 0; i < m_numbers.size(); ++i) {
        const bool used = i < captions.size();
        m_captions[i]->setVisible(used);
        m_numbers[i]->setVisible(used);
        if (!used) continue;
        m_captions[i]->setText(captions[i] + ':');
        telvo::ui::describe(*m_numbers[i], m_numbers[i]->objectName(), captions[i],
                            family == Family::ByMean && i == 0
                                ? tr("Empty: the case's own value, which it follows")
                                : QString());
    }
    m_numbers[0]->setPlaceholderText(family == Family::ByMean ? tr("own value") : QString());
    for (QWidget* one : std::initializer_list<QWidget*>{m_list, m_listCaption})
        one->setVisible(family == Family::List);
    const QStringList forms =
        family == Family::ByMean
            ? QStringList{tr("coefficient of variation, %"), tr("standard deviation")}
            : QStringList{tr("values"), tr("offsets from the own value"),
                          tr("percent of the own value")};
    const int chosen = m_form->currentIndex();
    m_form->clear();
    m_form->addItems(forms);
    m_form->setCurrentIndex(std::clamp(chosen, 0, static_cast<int>(forms.size()) - 1));
}

Result<Scatter> frmScatter::typed() const {
    Scatter scatter;
    scatter.shape = static_cast<Shape>(m_shape->currentIndex());
    const Family family = familyOf(scatter.shape);
    const auto numberIn = [](const NumberEdit& box) -> Result<std::optional<double>> {
        const QString text = box.text().trimmed();
        if (text.isEmpty()) return std::optional<double>();
        const auto number = numberOf(fromQt(text));
        if (!number) return Fault{"enter a number", fromQt(box.objectName())};
        return std::optional(*number);
    };
    std::vector<double> numbers;
    std::optional<double> mean;
    const std::size_t count = captionsOf(scatter.shape).size();
    for (std::size_t i = 0; i < count; ++i) {
        const auto number = numberIn(*m_numbers[i]);
        if (!number) return number.fault();
        if (family == Family::ByMean && i == 0) {
            mean = *number;
        } else if (*number) {
            numbers.push_back(**number);
        } else {
            return Fault{"enter a number", fromQt(m_numbers[i]->objectName())};
        }
    }
    if (family == Family::ByMean) {
        scatter.mean = mean;
        if (m_shown >= 0)
            scatter.cutSd = scatterOf(m_rows[static_cast<std::size_t>(m_shown)]).cutSd;
        if (m_form->currentIndex() == 1)
            scatter.sd = numbers[0];
        else
            scatter.cov = numbers[0] / 100;
    } else {
        scatter.pointsAre = static_cast<Scatter::Points>(std::max(m_form->currentIndex(), 0));
        if (family == Family::Beta) {
            scatter.shapes.assign(numbers.begin(), numbers.begin() + 2);
            numbers.erase(numbers.begin(), numbers.begin() + 2);
        }
        scatter.points = numbers;
    }
    if (family == Family::List) {
        const auto list = listOf(fromQt(m_list->toPlainText()));
        if (!list) return list.fault();
        for (const auto& [value, weight] : *list) {
            scatter.points.push_back(value);
            if (weight || !scatter.weights.empty()) {
                scatter.weights.resize(scatter.points.size() - 1, 1);
                scatter.weights.push_back(weight.value_or(1));
            }
        }
    }
    for (const auto& [box, end] : {std::pair{m_low, &scatter.low}, {m_high, &scatter.high}}) {
        const auto number = numberIn(*box);
        if (!number) return number.fault();
        *end = *number;
    }
    return scatter;
}

void frmScatter::readScatter() {
    Row* row = current();
    if (!row) return;
    for (NumberEdit* box : m_numbers)
        box->setRefusal({});
    auto read = typed();
    if (read) {
        const auto made = distributionOf(*read, row->input.variables.front(), m_base.Input);
        if (made) {
            m_fault.reset();
            row->input.scatter = *read;
            QTableWidgetItem* name = m_table->item(m_shown, Name);
            name->setCheckState(Qt::Checked); // whoever says how it scatters wants it to
            showRowText(m_shown);
            return showEffect(*read);
        }
        m_fault = made.fault();
    } else {
        m_fault = read.fault();
    }
    m_effect->setText(toQt(m_fault->message));
    if (auto* box = findChild<NumberEdit*>(toQt(m_fault->where)))
        box->setRefusal(toQt(m_fault->message));
}

void frmScatter::setScatter(const Scatter& scatter) {
    Row* row = current();
    if (!row) return;
    row->input.scatter = scatter;
    m_table->item(m_shown, Name)->setCheckState(Qt::Checked);
    showScatter();
    showRowText(m_shown);
}

void frmScatter::showEffect(const Scatter& scatter) {
    const Row* row = current();
    const Variable& variable = row->input.variables.front();
    const auto made = distributionOf(scatter, variable, m_base.Input);
    if (!made) return m_effect->setText(toQt(made.fault().message));
    const auto text = [&](double value) { return toQt(variable.text(value, m_base.Units, 5)); };
    m_effect->setText(
        tr("Mean %1, standard deviation %2; 9 of 10 samples from %3 to %4")
            .arg(text(made->mean()), text(made->sd()), text(made->at(0.05)), text(made->at(0.95))));
}

void frmScatter::showPairs() {
    m_pairTable->setRowCount(static_cast<int>(m_pairs.size()));
    for (int row = 0; row < m_pairTable->rowCount(); ++row) {
        const auto& pair = m_pairs[static_cast<std::size_t>(row)];
        const std::string texts[] = {pair.first.label(), pair.second.label(),
                                     generalNumber(pair.rank)};
        for (int column = 0; column < 3; ++column)
            m_pairTable->setItem(row, column, new QTableWidgetItem(toQt(texts[column])));
    }
}

void frmScatter::addPair() {
    const auto first = variableNamed(fromQt(m_first->currentData().toString()));
    const auto second = variableNamed(fromQt(m_second->currentData().toString()));
    const auto rank = numberOf(fromQt(m_rank->text().trimmed()));
    if (!rank || !(*rank > -1 && *rank < 1))
        return refuse({"A rank correlation lies between -1 and 1", {}, "txtTogetherRank"});
    if (!first || !second || *first == *second)
        return refuse({"Choose two inputs", {}, "cboTogetherSecond"});
    const auto same = [&](const AskedUncertainty::Together& one) {
        return (one.first == *first && one.second == *second) ||
               (one.first == *second && one.second == *first);
    };
    std::erase_if(m_pairs, same);
    if (*rank != 0) m_pairs.push_back({*first, *second, *rank});
    showPairs();
}

void frmScatter::okay() {
    if (m_fault) return refuse({m_fault->message, {}, m_fault->where});
    AskedUncertainty asked = m_asked;
    asked.vary.clear();
    for (const Row& row : m_rows)
        if (row.scatters) asked.vary.push_back(row.input);
    if (asked.vary.empty()) return refuse({"Tick one input at least", {}, "tblScatter"});
    asked.correlated = m_pairs;
    if (const auto request = requestOf(asked, m_base); !request)
        return refuse({request.fault().message, {}, "tblTogether"});
    m_asked = std::move(asked);
    accept();
}

} // namespace telvo::study::ui
