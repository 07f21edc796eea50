// SPDX-License-Identifier: GPL-3.0-or-later
//
// The controls of the parameter form and where they lie; what they do is in frmTELVOParm.cpp.
#include "base/ui/qtText.h"
#include "project/advisories.h"
#include "project/inputFields.h"
#include "project/ui/frmTELVOParm.h"
#include "project/units.h"

#include "base/files.h"
#include <algorithm>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSplitter>
#include <QTabWidget>
#include <QVBoxLayout>

namespace telvo::project::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

/// "ONE ACTIVE RETREAT SECTION" as a caption.
QString sentenceCase(std::string_view name) {
    const QString text = toQt(name);
    return text.left(1) + text.mid(1).toLower();
}

QGridLayout* gridOf(QGroupBox& group) {
    return qobject_cast<QGridLayout*>(group.layout());
}

/// Adds a caption and its box in the next row of a frame.
void addRow(QGroupBox& group, const QString& caption, QWidget* field) {
    auto* grid = gridOf(group);
    const int row = grid->rowCount();
    auto* label = new QLabel(caption, &group);
    label->setBuddy(field);
    grid->addWidget(label, row, 0);
    grid->addWidget(field, row, 1);
}

QString labelWithUnit(const QString& label, const QString& unit) {
    return unit.isEmpty() ? label : label + QStringLiteral(" (") + unit + ')';
}

int boxWidth(const QWidget& box, int figures) {
    return box.fontMetrics().horizontalAdvance(QString(figures, QChar('0')));
}

} // namespace

void frmTELVOParm::build() {
    auto* layout = new QVBoxLayout(this);
    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->setObjectName("splParameters");
    m_splitter->setChildrenCollapsible(false);
    m_tabs = new QTabWidget(m_splitter);
    m_tabs->setObjectName("SSTab1");
    m_tabs->addTab(developmentTab(), tr("Development &Geometry"));
    m_tabs->addTab(defaultsTab(), tr("Default &Parameters"));
    m_tabs->addTab(retreatTab(), tr("Retreat &Mining"));
    m_splitter->addWidget(m_tabs);
    m_splitter->addWidget(sidePanel());
    m_splitter->setStretchFactor(1, 1);
    if (!m_stale.empty()) layout->addWidget(automaticBanner());
    layout->addWidget(m_splitter, 1);
    layout->addWidget(buttonRow());
    setWindowTitle(windowTitle() + QStringLiteral(": ") +
                   toQt(withoutFolder(m_open.Project.FileName)));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setTabOrders();
    const QSize boxes = m_tabs->sizeHint(); // and some room for the picture beside them
    resize(boxes.width() * 2, boxes.height() * 15 / 10);

    for (auto& [name, edit] : m_boxes) {
        connect(edit, &QLineEdit::textChanged, this, [this, &control = name] {
            if (!m_filling) m_touched.insert(control);
            userEdited();
        });
        watchNumbers(*edit);
    }
}

/// Unit of a field as the form letters it: that of angles as in the report.
QString frmTELVOParm::unitOf(FieldKind kind) const {
    return kind == FieldKind::Angle ? QStringLiteral("deg")
                                    : toQt(fieldUnit(kind, m_open.Project.Units));
}

NumberEdit* frmTELVOParm::addNumber(FieldId id) {
    const InputField& row = rowOf(id.field);
    const FieldKind kind = row.kind;
    const QString caption = toQt(fullLabelOf(id));
    auto* edit = new NumberEdit(toQt(controlOf(id)), this);
    edit->setAccessibleName(caption);
    // The metric defaults of strength and unit weight have all the digits that a number can have.
    const bool precise = kind == FieldKind::Strength || kind == FieldKind::UnitWeight;
    edit->setMinimumWidth(boxWidth(*edit, precise ? 20 : 11));
    edit->setMaximumWidth(boxWidth(*edit, 22));
    edit->setPasteReader([this, kind](const QString& pasted) { return readPasted(pasted, kind); });
    edit->setToolTip(labelWithUnit(caption, unitOf(kind)) + QStringLiteral("\n") +
                     tr("Valid: %1").arg(toQt(row.valid)));
    m_boxes[controlOf(id)] = edit;
    return edit;
}

QGroupBox* frmTELVOParm::fieldGroup(const std::string& name) {
    auto* group = new QGroupBox(toQt(name), this);
    auto* grid = new QGridLayout(group);
    grid->setColumnStretch(0, 1);
    for (const Field field : FormOrder) {
        const InputField& row = rowOf(field);
        if (row.group == name && row.isTextBox())
            addRow(*group, labelWithUnit(toQt(row.label), unitOf(row.kind)), addNumber(field));
    }
    return group;
}

QCheckBox* frmTELVOParm::addCheck(QGroupBox& group, const std::string& name, const QString& caption,
                                  const QString& tip) {
    auto* box = new QCheckBox(caption, &group);
    box->setObjectName(toQt(name));
    box->setAccessibleName(QString(caption).remove('&'));
    box->setToolTip(tip);
    m_checks[name] = box;
    auto* grid = gridOf(group);
    grid->addWidget(box, grid->rowCount(), 0, 1, 2);
    return box;
}

QWidget* frmTELVOParm::developmentTab() {
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    auto* entries = fieldGroup("Entries and Crosscuts");

    m_entries = new QComboBox(entries);
    m_entries->setObjectName("Combo1");
    m_entries->setAccessibleName(tr("Choose the number of entries"));
    m_entries->setToolTip(tr("Number of entries, 2 to 10"));
    for (int i = 2; i <= MaxEntries; ++i)
        m_entries->addItem(toQt(std::to_string(i)));
    m_entryCount = new QLineEdit(entries);
    m_entryCount->setObjectName("txtNumberEntries");
    m_entryCount->setAccessibleName(tr("Number of Entries"));
    m_entryCount->setToolTip(tr("Number of entries of the case; choose another one beside it"));
    m_entryCount->setReadOnly(true);
    m_entryCount->setFocusPolicy(Qt::NoFocus);
    m_entryCount->setAlignment(Qt::AlignRight);
    m_entryCount->setMaximumWidth(m_entryCount->fontMetrics().horizontalAdvance("00000"));
    connect(m_entries, &QComboBox::activated, this, [this] {
        m_entryCount->setText(m_entries->currentText());
        userEdited();
    });
    auto* pair = new QWidget(entries);
    auto* pairLayout = new QHBoxLayout(pair);
    pairLayout->setContentsMargins({});
    pairLayout->addWidget(m_entryCount);
    pairLayout->addWidget(m_entries, 1);
    auto* grid = gridOf(*entries);
    auto* label = new QLabel(tr("&Number of Entries"), entries);
    label->setBuddy(m_entries);
    grid->addWidget(label, grid->rowCount(), 0);
    grid->addWidget(pair, grid->rowCount() - 1, 1);

    layout->addWidget(entries);
    layout->addWidget(distancesGroup());
    layout->addStretch(1);
    return page;
}

QGroupBox* frmTELVOParm::distancesGroup() {
    const InputField& distances = rowOf(Field::XcutCenters);
    auto* group = new QGroupBox(labelWithUnit(toQt(distances.group), unitOf(distances.kind)), this);
    auto* grid = new QGridLayout(group);
    m_equal = addCheck(*group, "chkEqual", tr("E&qual entry spacing"),
                       tr("All distances are that of the first two entries"));
    grid->addWidget(m_equal, 0, 0, 1, 6);
    connect(m_equal, &QCheckBox::toggled, this, &frmTELVOParm::userEdited);
    constexpr int perRow = 3;
    for (int i = 1; i < MaxEntries; ++i) {
        const QString number = toQt(std::to_string(i));
        auto* edit = addNumber({Field::XcutCenters, i});
        auto* label = new QLabel(QStringLiteral("#") + number, group);
        label->setObjectName(QStringLiteral("Label23_") + number);
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        label->setBuddy(edit);
        const int row = 1 + (i - 1) / perRow;
        const int column = 2 * ((i - 1) % perRow);
        grid->addWidget(label, row, column);
        grid->addWidget(edit, row, column + 1);
        grid->setColumnStretch(column + 1, 1);
    }
    return group;
}

QWidget* frmTELVOParm::defaultsTab() {
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(fieldGroup("Rock"));
    auto* zone = fieldGroup("Active Mining Zone");
    auto* AMZ = addCheck(*zone, "chkAMZ", tr("Set the breadth &automatically"),
                         tr("5 times the square root of the depth of cover, in feet"));
    auto* arch = fieldGroup("Pressure Arch");
    auto* factor = addCheck(*arch, "chkArch", tr("Set the &factor automatically"),
                            tr("From the depth of cover and the panel width"));
    layout->addWidget(zone);
    layout->addWidget(arch);
    layout->addStretch(1);
    // The user's click, not the filling of the form, owes an advisory.
    const auto automatic = [this](QCheckBox* check) {
        connect(check, &QCheckBox::toggled, this, [this, check](bool on) {
            if (m_filling) return;
            userEdited();
            if (!on)
                showAdvisory(advisory(AdvisoryTrigger::Cleared, fromQt(check->objectName()), 0,
                                      m_open.Project.Units));
        });
    };
    automatic(AMZ);
    automatic(factor);
    return page;
}

QGroupBox* frmTELVOParm::loadingGroup() {
    auto* group = new QGroupBox(tr("Loading Condition"), this);
    auto* layout = new QVBoxLayout(group);
    m_anal = new QButtonGroup(this);
    m_anal->setObjectName("optAnal");
    for (int anal = 0; anal <= 3; ++anal) {
        auto* option = new QRadioButton(sentenceCase(LoadingConditionNames[anal]), group);
        option->setObjectName(QStringLiteral("optAnal_") + toQt(std::to_string(anal)));
        option->setAccessibleName(option->text());
        option->setToolTip(tr("The gobs that the analysis counts with; the boxes of the others are "
                              "kept but not used"));
        m_anal->addButton(option, anal);
        layout->addWidget(option);
    }
    connect(m_anal, &QButtonGroup::idToggled, this, [this](int anal, bool on) {
        if (!on || m_filling) return;
        userEdited();
        showAdvisory(
            advisory(AdvisoryTrigger::AnalSelected, "optAnal", anal, m_open.Project.Units));
    });
    return group;
}

QWidget* frmTELVOParm::retreatTab() {
    auto* page = new QWidget(this);
    auto* layout = new QGridLayout(page);
    auto* active = fieldGroup("Active Gob");
    auto* first = fieldGroup("First Gob");
    auto* second = fieldGroup("Second Gob");
    const std::map<std::string_view, QGroupBox*> groups = {
        {"Active Gob", active}, {"First Gob", first}, {"Second Gob", second}};
    for (const Field field : FormOrder) {
        const InputField& row = rowOf(field);
        if (!row.isFlag() || row.tab != ParameterTab::RetreatMining) continue;
        const QChar letter(row.name.back());
        auto* leave = addCheck(*groups.at(row.group), controlOf(field),
                               tr("Leave pillar Row '&%1' in place").arg(letter),
                               tr("Row %1 of pillars is left standing").arg(letter));
        connect(leave, &QCheckBox::toggled, this, [this, field] { rowToggled(field); });
    }
    // The width of a bleeder row stands below its box.
    for (const auto& [group, field] : {std::pair{first, Field::WidthC}, {second, Field::WidthD}}) {
        auto* grid = gridOf(*group);
        QWidget* width = &box(field);
        auto* label = grid->itemAtPosition(grid->rowCount() - 2, 0)->widget();
        grid->addWidget(label, grid->rowCount(), 0);
        grid->addWidget(width, grid->rowCount() - 1, 1);
    }
    layout->addWidget(loadingGroup(), 0, 0);
    layout->addWidget(active, 0, 1);
    layout->addWidget(first, 1, 0);
    layout->addWidget(second, 1, 1);
    layout->setRowStretch(2, 1);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    return page;
}

QWidget* frmTELVOParm::automaticBanner() {
    m_staleBanner = new QFrame(this);
    m_staleBanner->setObjectName("fraAutomatic");
    m_staleBanner->setFrameShape(QFrame::StyledPanel);
    std::string words;
    for (const StaleAutomatic& value : m_stale)
        words += value.remark + ". ";
    auto* label = new QLabel(
        toQt(words) + tr("The form shows the automatic value; OK takes it into the case."),
        m_staleBanner);
    label->setObjectName("lblAutomatic");
    label->setAccessibleName(tr("Automatic values that are not those of the case"));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    auto* use = makeButton("cmdUseAutomatic", tr("&Use Automatic"),
                           tr("The values that the form shows; they go into the case with OK"),
                           &frmTELVOParm::useAutomaticValues);
    auto* keep = makeButton("cmdKeepStored", tr("&Keep Stored"),
                            tr("The values of the case, entered and no longer automatic"),
                            &frmTELVOParm::keepStoredValues);
    auto* row = new QHBoxLayout(m_staleBanner);
    row->addWidget(label, 1);
    row->addWidget(use);
    row->addWidget(keep);
    return m_staleBanner;
}

QWidget* frmTELVOParm::sidePanel() {
    auto* panel = new QWidget(this);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins({});
    auto* figures = new QGroupBox(tr("With these values"), panel);
    auto* form = new QFormLayout(figures);
    const QString unit = unitOf(FieldKind::Length);
    const struct {
        const char* name;
        QString caption;
        QString tip;
    } rows[] = {
        {"lblPanelWidth", labelWithUnit(tr("Panel Width"), unit),
         tr("Sum of the center to center distances")},
        {"lblDevelopmentSF", tr("Stability Factor, Development"), tr("As the report prints it")},
        {"lblRetreatSF", tr("Stability Factor, Retreat"), tr("As the report prints it")},
        {"lblBarrierSF", tr("Governing Barrier Stability Factor"),
         tr("The lowest of the barriers in use, development and retreat")}};
    for (const auto& row : rows) {
        auto* value = new QLabel(QStringLiteral("\u2013"), figures);
        value->setObjectName(row.name);
        value->setAccessibleName(row.caption);
        value->setToolTip(row.tip);
        value->setProperty(FigureToolTip, row.tip);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        m_figures[row.name] = value;
        if (m_figures.size() < std::size(rows)) {
            form->addRow(row.caption, value);
        } else { // the last one has the barrier's side and pass behind it
            form->addRow(new QLabel(row.caption, figures));
            form->addRow(value);
        }
    }
    auto* why = new QLabel(figures);
    why->setObjectName("lblWhy");
    why->setAccessibleName(tr("Why there are no factors"));
    why->setWordWrap(true);
    why->setTextInteractionFlags(Qt::TextSelectableByMouse);
    why->hide();
    m_figures["lblWhy"] = why;
    form->addRow(why);
    layout->addWidget(figures);
    if (m_actions.makePicture) {
        m_picture = m_actions.makePicture(panel);
        m_picture.widget->setObjectName("Picture1");
        m_picture.widget->setAccessibleName(tr("Panel layout"));
        m_picture.widget->setMinimumSize(240, 200);
        layout->addWidget(m_picture.widget, 1);
    }
    return panel;
}

QWidget* frmTELVOParm::buttonRow() {
    auto* buttons = makeButtons();
    addButton(*buttons, "cmdOK", tr("OK"), QDialogButtonBox::AcceptRole)
        ->setToolTip(tr("Checks the values and takes them into the case"));
    addButton(*buttons, "cmdCancel", tr("Cancel"), QDialogButtonBox::RejectRole)
        ->setToolTip(tr("Closes the form and leaves the case as it was"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmTELVOParm::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmTELVOParm::reject);
    const auto action = [&](const char* name, const QString& caption, const QString& tip,
                            void (frmTELVOParm::*slot)()) {
        auto* button = addButton(*buttons, name, caption, QDialogButtonBox::ActionRole);
        button->setToolTip(tip);
        connect(button, &QPushButton::clicked, this, slot);
    };
    action("cmdResults", tr("&Results"), tr("Runs the analysis on these values; the case stays"),
           &frmTELVOParm::results);
    if (m_actions.makePicture) {
        action("cmdView", tr("&View"), tr("Draws the panel layout of these values"),
               &frmTELVOParm::view);
        action("cmdCopyClip", tr("Copy &Layout"), tr("Copies the panel layout to the clipboard"),
               &frmTELVOParm::copyPicture);
    }
    return buttons;
}

void frmTELVOParm::setTabOrders() {
    QWidget* previous = m_tabs;
    const auto follow = [&](const std::string& name) {
        auto* next = findChild<QWidget*>(toQt(name));
        setTabOrder(previous, next);
        previous = next;
    };
    for (const Field field : FormOrder) {
        const std::string control = controlOf(field);
        if (field == Field::NumberEntries) {
            follow("Combo1");
        } else if (field == Field::XcutCenters) {
            follow("chkEqual");
            for (int i = 1; i < MaxEntries; ++i)
                follow(controlOf({field, i}));
        } else if (field == Field::Anal) {
            for (int anal = 0; anal <= 3; ++anal)
                follow(control + '_' + std::to_string(anal));
        } else if (!control.empty()) {
            follow(control);
        }
    }
}

} // namespace telvo::project::ui
