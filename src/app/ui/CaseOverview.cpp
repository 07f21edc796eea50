// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/CaseOverview.h"

#include "app/ProjectSession.h"
#include "app/SettingsStore.h"
#include "app/ui/layoutPicture.h"
#include "base/text.h"
#include "base/ui/qtText.h"
#include "plot/ui/PlanView.h"
#include "project/caseFacts.h"
#include "project/keptItems.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace telvo::app::ui {

using telvo::ui::toQt;

namespace {

QLabel* plainLabel(const QString& name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

/// A name in one line; one too long for the window loses its middle, the tool tip has all of it.
class NameLabel : public QLabel {
  public:
    using QLabel::QLabel;

    void showName(const QString& name) {
        m_name = name;
        shorten();
    }

  protected:
    void resizeEvent(QResizeEvent* event) override {
        QLabel::resizeEvent(event);
        shorten();
    }

  private:
    void shorten() {
        setText(fontMetrics().elidedText(m_name, Qt::ElideMiddle, contentsRect().width()));
    }

    QString m_name;
};

} // namespace

CaseOverview::CaseOverview(const ProjectSession& session, const SettingsStore& settings,
                           QWidget* parent)
    : QWidget(parent), m_session(session), m_settings(settings) {
    setObjectName("caseOverview");
    auto* layout = new QHBoxLayout(this);
    auto* left = new QWidget(this);
    auto* column = new QVBoxLayout(left);
    column->setContentsMargins({});
    m_title = plainLabel("lblTitle", left);
    QFont large = m_title->font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    large.setBold(true);
    m_title->setFont(large);
    m_file = new NameLabel(left);
    m_file->setObjectName("lblFile");
    m_file->setTextFormat(Qt::PlainText);
    // A long name without blanks must not set the width of the window.
    for (QLabel* label : {m_title, m_file})
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    column->addWidget(m_title);
    column->addWidget(m_file);
    m_factBox = new QWidget(left);
    // A form layout would give a wrapped value too little height.
    auto* facts = new QGridLayout(m_factBox);
    facts->setContentsMargins({});
    facts->setColumnStretch(1, 1);
    for (const project::CaseFact& fact : project::caseFacts({}, {})) {
        auto* value = plainLabel(toQt(fact.control), m_factBox);
        value->setAccessibleName(toQt(fact.caption));
        m_facts.push_back(value);
        auto* label = new QLabel(toQt(fact.caption), m_factBox);
        label->setWordWrap(true);
        const int row = facts->rowCount();
        facts->addWidget(label, row, 0, Qt::AlignTop);
        facts->addWidget(value, row, 1);
    }
    m_kept = plainLabel("lblKept", left);
    m_kept->setMargin(fontMetrics().height() / 3);
    m_keptBox = new QScrollArea(left); // half a file leaves a long list
    m_keptBox->setWidget(m_kept);
    m_keptBox->setWidgetResizable(true);
    m_keptBox->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_keptBox->setFixedHeight(fontMetrics().height() * 8);
    column->addWidget(m_keptBox);
    column->addSpacing(fontMetrics().height() / 2);
    column->addWidget(m_factBox);
    m_automatic = plainLabel("lblAutomatic", left);
    column->addWidget(m_automatic);
    column->addStretch(1);
    // A window too low for all facts scrolls them; squeezed ones would lose their last lines.
    auto* area = new QScrollArea(this);
    area->setObjectName("scrFacts");
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(left);
    area->setMinimumWidth(left->minimumSizeHint().width() +
                          area->verticalScrollBar()->sizeHint().width());
    layout->addWidget(area, 1);

    m_plan = new plot::ui::PlanView("picPlan", this);
    m_plan->setAccessibleName(tr("Plan of the panel"));
    m_plan->setMinimumWidth(fontMetrics().averageCharWidth() * 30);
    layout->addWidget(m_plan, 2);
}

void CaseOverview::showCase() {
    const project::ProjectCase& current = m_session.project();
    const bool empty = m_session.isEmpty();
    const QString title = toQt(withoutControls(current.Title));
    m_title->setText(title.isEmpty() ? tr("(no title)") : title);
    static_cast<NameLabel*>(m_file)->showName(toQt(m_session.windowTitle()));
    // A tool tip would take a name like "<b>" for markup.
    m_file->setToolTip(
        QStringLiteral("<span>%1</span>").arg(toQt(current.FileName).toHtmlEscaped()));
    showKept();
    m_factBox->setVisible(!empty);
    m_plan->setVisible(!empty);
    QStringList stale;
    if (!empty)
        for (const std::string& note : run::recordNotes(current))
            stale.append(tr("Note: %1.").arg(toQt(note)));
    if (!stale.isEmpty())
        stale.append(tr("OK in Input, Project Parameters takes the automatic values."));
    m_automatic->setText(stale.join('\n'));
    m_automatic->setVisible(!stale.isEmpty());
    if (empty) return;
    showFacts();
    showPlan();
}

void CaseOverview::showFacts() {
    const auto facts =
        project::caseFacts(m_session.project(), m_session.figuresOfOpen(m_session.project()));
    for (std::size_t i = 0; i < facts.size(); ++i) {
        m_facts[i]->setText(facts[i].text.empty() ? QStringLiteral("\u2013") : toQt(facts[i].text));
        m_facts[i]->setToolTip(toQt(facts[i].why)); // a dash says why
    }
}

void CaseOverview::showKept() {
    const project::KeptItems& kept = m_session.kept();
    m_keptBox->setVisible(!kept.items.empty());
    if (kept.items.empty()) return;
    const project::ProjectCase& current = m_session.project();
    std::string text = kept.damaged ? "The file was damaged. " : "The file is of an older level. ";
    text += "Not in it, but from " + project::keptOrigin(kept, current) + ": " +
            project::keptItemsText(kept, current) + '.';
    if (kept.damaged) text += "\nInput, Project Parameters: look at them and press OK.";
    m_kept->setText(toQt(text));
}

void CaseOverview::showPlan() {
    (void)drawPlan(*m_plan, m_session.project(), m_settings);
}

} // namespace telvo::app::ui
