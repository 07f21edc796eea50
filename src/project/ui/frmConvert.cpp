// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ui/frmConvert.h"

#include "base/titles.h"
#include "base/ui/qtText.h"
#include "project/conversionNotes.h"
#include "project/ui/readOnlyLine.h"
#include "project/units.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace telvo::project::ui {

using telvo::ui::toQt;

frmConvert::frmConvert(const ProjectCase& current, const telvo::ui::FormServices& services,
                       QWidget* parent)
    : Form("frmConvert", titles::FileConversion, "FileConversion.htm", services, parent),
      m_outcome(convertedCase(current)), m_current(current), m_converted(current) {
    auto* remarks = new QLabel(notes(), this);
    remarks->setObjectName("lblNotes");
    remarks->setTextFormat(Qt::PlainText);
    remarks->setTextInteractionFlags(Qt::TextSelectableByMouse);
    remarks->setWordWrap(true);
    // A wrapped label does not ask for its height by itself where the screen is small.
    remarks->setMinimumWidth(remarks->fontMetrics().averageCharWidth() * 60);
    remarks->setMinimumHeight(remarks->heightForWidth(remarks->minimumWidth()));

    auto* buttons = makeButtons();
    auto* convert = addButton(*buttons, "cmdOK", tr("Con&vert"), QDialogButtonBox::AcceptRole);
    convert->setToolTip(tr("Converts the case; it is not saved yet"));
    auto* cancel = addButton(*buttons, "cmdCancel", tr("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setToolTip(tr("Leaves the case as it is"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmConvert::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmConvert::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makeComparison());
    layout->addSpacing(layout->spacing());
    layout->addWidget(remarks, 1);
    layout->addWidget(buttons);
    convert->setFocus();
}

QWidget* frmConvert::makeComparison() {
    const std::int16_t target = m_current.Units == English ? Metric : English;
    const auto system = [](std::int16_t units) {
        return (units == English ? tr("English: %1") : tr("Metric: %1"))
            .arg(toQt(unitSummary(units)));
    };
    // The name is what conversion would give it; a case that cannot be converted has none.
    const QString newName = m_outcome ? toQt(m_outcome->FileName) : QString();

    auto* widget = new QWidget(this);
    auto* grid = new QGridLayout(widget);
    grid->setContentsMargins({});
    const auto row = [&](int at, const QString& label, const QString& name, const QString& meaning,
                         const QString& text) {
        auto* line = makeReadOnlyLine(name, meaning, widget);
        line->setText(text);
        line->setCursorPosition(0);
        auto* caption = new QLabel(label, widget);
        caption->setBuddy(line);
        grid->addWidget(caption, at, 0);
        grid->addWidget(line, at, 1);
        return line;
    };
    row(0, tr("&From:"), "txtFromUnits", tr("Units of the case now"), system(m_current.Units));
    row(1, tr("&To:"), "txtToUnits", tr("Units after the conversion"), system(target));
    row(2, tr("F&ile now:"), "txtFileName", toQt(m_current.FileName),
        QFileInfo(toQt(m_current.FileName)).fileName())
        ->setAccessibleName(tr("File name now"));
    row(3, tr("&New name:"), "txtNewFileName", newName, QFileInfo(newName).fileName())
        ->setAccessibleName(tr("File name after the conversion"));
    return widget;
}

QString frmConvert::notes() const {
    const bool taken = m_outcome && QFileInfo::exists(toQt(m_outcome->FileName));
    QStringList paragraphs;
    for (const std::string& note : conversionNotes(m_current, m_outcome, taken))
        paragraphs << toQt(note);
    return paragraphs.join("\n\n");
}

void frmConvert::accept() {
    if (!m_outcome) return tell(faultText(m_outcome.fault()), titles::Error);
    m_converted = *m_outcome;
    Form::accept();
}

} // namespace telvo::project::ui
