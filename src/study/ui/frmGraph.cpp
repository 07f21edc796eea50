// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/frmGraph.h"

#include "base/titles.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "study/ui/GraphView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

frmGraph::frmGraph(GraphSubject subject, const GraphOptions& options, GraphActions actions,
                   const telvo::ui::FormServices& services, QWidget* parent)
    : Form("frmGraph", titles::Graph, "Graphs.htm", services, parent),
      m_subject(std::move(subject)), m_actions(std::move(actions)) {
    // With all the buttons of a window; only a dialog stays above its parent.
    setWindowFlags((parent ? Qt::Dialog : Qt::Window) | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                   Qt::WindowCloseButtonHint);
    const std::string caption = graphCaption(m_subject.graph, m_subject.caseName);
    setWindowTitle(toQt(titles::Graph) + toQt(caption));

    m_view = new GraphView("grfSF", m_subject.graph, caption, options, this);
    m_reading = textLabel("lblReading", tr("Cross-hair"));
    // Room at all times, so that the graph does not jump when a jump's rule is told.
    m_reading->setMinimumHeight(3 * fontMetrics().lineSpacing());
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
    const QString factor = toQt(factorName(m_subject.graph.kind));
    m_target = new NumberEdit("txtTargetSF", this);
    m_target->setAccessibleName(tr("Target %1").arg(factor));
    m_target->setToolTip(tr("Stability factor whose value is looked for, 0.01 to 1000"));
    m_target->setFixedWidth(fontMetrics().averageCharWidth() * 12);
    connect(m_target, &NumberEdit::characterRefused, this,
            [this](const QString& message) { messages().status(fromQt(message)); });
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
    return row;
}

telvo::ui::Picture frmGraph::picture() const {
    return graphPicture(m_subject.graph, m_view->options(), m_subject.caseName, m_subject.csv);
}

void frmGraph::showReading() {
    m_reading->setText(m_view->readingLines());
}

void frmGraph::findTarget() {
    if (const auto refused = checkTarget(fromQt(m_target->text()), "txtTargetSF")) {
        refuse(*refused);
        return;
    }
    m_found = m_target->value();
    m_crossings->setText(toQt(
        crossingsText(m_subject.graph, m_view->options(), *m_found, m_actions.valuesAt(*m_found))));
    m_crossings->show();
}

void frmGraph::editOptions() {
    const auto options = m_actions.editOptions(this);
    if (!options) return;
    m_view->setOptions(*options);
    if (m_found) // in the units of the axis
        m_crossings->setText(
            toQt(crossingsText(m_subject.graph, *options, *m_found, m_actions.valuesAt(*m_found))));
}

void frmGraph::copy() {
    m_actions.copyPicture(picture(), this);
    messages().status("Graph copied to clipboard");
}

void frmGraph::exportGraph() {
    m_actions.exportPicture(picture(), this);
}

void frmGraph::print() {
    m_actions.printPicture(picture(), this);
}

} // namespace telvo::study::ui
