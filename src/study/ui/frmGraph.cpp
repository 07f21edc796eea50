// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/frmGraph.h"

#include "base/note.h"
#include "base/titles.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "study/ui/GraphView.h"

#include <algorithm>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

namespace {

constexpr int ReadingLines = 4; // the values at the cross-hair and what is told of jumps

} // namespace

frmGraph::frmGraph(GraphSubject subject, const GraphOptions& options, GraphActions actions,
                   const telvo::ui::FormServices& services, QWidget* parent)
    : Form("frmGraph", titles::Graph, "Graphs.htm", services, parent),
      m_subject(std::move(subject)), m_actions(std::move(actions)) {
    // With all the buttons of a window; only a dialog stays above its parent.
    setWindowFlags((parent ? Qt::Dialog : Qt::Window) | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                   Qt::WindowCloseButtonHint);
    m_view = new GraphView("grfSF", m_subject.graph,
                           graphCaption(m_subject.graph, m_subject.caseName), options, this);
    m_reading = textLabel("lblReading", tr("Cross-hair"));
    // The same room at all times, so that the graph does not jump when a jump's rule is told.
    m_reading->setWordWrap(false);
    m_reading->setFixedHeight(ReadingLines * fontMetrics().lineSpacing() + 4);
    m_reading->setMinimumWidth(1);
    m_reading->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_reading->setToolTip(tr("Values of the curves at the cross-hair, which follows the mouse and "
                             "the left and right arrow keys"));
    m_crossings = textLabel("lblCrossings", tr("Values found"));
    m_crossings->hide();

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_reading);
    layout->addLayout(makeTargetRow());
    layout->addWidget(m_crossings);
    auto* buttons = makeButtons();
    const auto add = [&](const char* name, const QString& text, const QString& toolTip,
                         void (frmGraph::*action)()) {
        buttons->addButton(makeButton(name, text, toolTip, action), QDialogButtonBox::ActionRole);
    };
    add("cmdOptions", tr("&Options..."), tr("Changes how graphs are drawn"),
        &frmGraph::editOptions);
    add("cmdCopy", tr("&Copy"), tr("Copies the graph to the clipboard"), &frmGraph::copy);
    add("cmdExport", tr("&Export..."), tr("Writes the graph, or its numbers, to a file"),
        &frmGraph::exportGraph);
    add("cmdPrint", tr("&Print..."), tr("Prints the graph"), &frmGraph::print);
    auto* close = addButton(*buttons, "cmdClose", tr("C&lose"), QDialogButtonBox::RejectRole);
    close->setToolTip(tr("Closes this window (Esc)"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    layout->addWidget(buttons);

    connect(m_view, &GraphView::readingChanged, this, &frmGraph::showReading);
    connect(m_pin, &QCheckBox::toggled, this, [this] { caseChanged(m_reason); });
    setRunAgain([window = QPointer(this)] {
        if (window) window->computeAnew();
    });
    showTitle();
    showReading();
    m_view->setFocus();
}

QLabel* frmGraph::textLabel(const QString& name, const QString& accessibleName) {
    auto* label = new QLabel(this);
    label->setObjectName(name);
    label->setAccessibleName(accessibleName);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QHBoxLayout* frmGraph::makeTargetRow() {
    const QString factor = toQt(rowOf(m_subject.graph.kind).factorName());
    m_target = new NumberEdit("txtTargetSF", this);
    m_target->setAccessibleName(tr("Target %1").arg(factor));
    m_target->setToolTip(tr("Stability factor whose value is looked for, 0.01 to 1000"));
    m_target->setFixedWidth(fontMetrics().averageCharWidth() * 12);
    watchNumbers(*m_target);
    auto* label = new QLabel(tr("&Value at %1 =").arg(factor), this);
    label->setBuddy(m_target);
    auto* find = makeButton("cmdFindTarget", tr("&Find"),
                            tr("Tells where the curves have this factor"), &frmGraph::findTarget);
    find->setDefault(true); // Return in the box
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_target);
    row->addWidget(find);
    row->addStretch();
    m_pin = new QCheckBox(tr("P&in to this case"), this);
    telvo::ui::describe(
        *m_pin, "chkPin", tr("Pin to this case"),
        tr("Keeps this graph when the open case changes; else it follows the case"));
    row->addWidget(m_pin);
    return row;
}

chart::ui::Picture frmGraph::picture() const {
    return graphPicture(m_subject.graph, m_view->options(), m_subject.caseName, m_subject.csv);
}

void frmGraph::showReading() {
    const QString lines = m_view->readingLines();
    QStringList shown;
    for (const QString& line : lines.split('\n'))
        shown.append(fontMetrics().elidedText(line, Qt::ElideRight, std::max(width() - 30, 100)));
    m_reading->setText(shown.join('\n'));
    m_reading->setToolTip(lines);
}

void frmGraph::showTitle() {
    QString title = toQt(titles::Graph) + toQt(graphCaption(m_subject.graph, m_subject.caseName));
    if (m_pin->isChecked())
        title += m_reason.empty() ? tr(" (pinned)") : tr(" (pinned, not the open case any more)");
    else if (!m_reason.empty())
        title += tr(" (not the open case any more)");
    setWindowTitle(title);
}

void frmGraph::showSubject(GraphSubject subject) {
    m_subject = std::move(subject);
    m_reason.clear();
    m_view->setGraph(m_subject.graph, graphCaption(m_subject.graph, m_subject.caseName));
    if (m_found) // at the values of this case
        m_crossings->setText(toQt(crossingsText(m_subject.graph, m_view->options(), *m_found,
                                                m_subject.valuesAt(*m_found))));
    setOutdated({});
    showTitle();
}

void frmGraph::setCaseName(const std::string& name) {
    if (name == m_subject.caseName) return;
    m_subject.caseName = name;
    const double reading = m_view->reading();
    m_view->setGraph(m_subject.graph, graphCaption(m_subject.graph, name));
    m_view->setReading(reading);
    showTitle();
}

void frmGraph::caseChanged(const std::string& reason) {
    m_reason = reason;
    if (!reason.empty() && !m_pin->isChecked()) {
        computeAnew();
        return;
    }
    setOutdated(reason.empty() ? QString() : tr("This graph is pinned. ") + toQt(reason));
    showTitle();
}

void frmGraph::computeAnew() {
    if (!m_actions.ofOpenCase) return;
    auto made = m_actions.ofOpenCase();
    if (auto* subject = std::get_if<GraphSubject>(&made)) {
        showSubject(std::move(*subject));
        return;
    }
    // The old curves stay, with the word that they are old.
    if (m_reason.empty()) m_reason = "The open case has no such graph.";
    setOutdated(tr("This is the graph of the case as it was. The open case has none: %1")
                    .arg(toQt(std::get<Refusal>(made).message)));
    showTitle();
}

void frmGraph::findTarget() {
    if (refuseUnreadNumber()) return;
    if (const auto refused = checkTarget(fromQt(m_target->text()), "txtTargetSF")) {
        refuse(*refused);
        return;
    }
    m_found = m_target->value();
    m_crossings->setText(toQt(
        crossingsText(m_subject.graph, m_view->options(), *m_found, m_subject.valuesAt(*m_found))));
    m_crossings->show();
}

void frmGraph::editOptions() {
    const auto options = m_actions.editOptions(this);
    if (!options) return;
    m_view->setOptions(*options);
    if (m_found) // in the units of the axis
        m_crossings->setText(
            toQt(crossingsText(m_subject.graph, *options, *m_found, m_subject.valuesAt(*m_found))));
}

void frmGraph::copy() {
    m_actions.copyPicture(picture(), this);
    telvo::note(messages(), "Graph copied to clipboard");
}

void frmGraph::exportGraph() {
    m_actions.exportPicture(picture(), this);
}

void frmGraph::print() {
    m_actions.printPicture(picture(), this);
}

} // namespace telvo::study::ui
