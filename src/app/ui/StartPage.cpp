// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/StartPage.h"

#include "app/SettingsStore.h"
#include "base/text.h"
#include "base/ui/Form.h"
#include "base/ui/qtText.h"
#include "plot/panelPlan.h"
#include "plot/ui/PlanView.h"
#include "project/CaseFile.h"

#include <algorithm>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace telvo::app::ui {

using telvo::ui::describe;
using telvo::ui::toQt;

namespace {

constexpr int PictureWidth = 200; // pixels of a picture at 100 %
constexpr int PictureHeight = 150;

QLabel* heading(const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    label->setBuddy(buddy);
    return label;
}

/// The plan of an example without its words and dimensions, which could not be read at this size.
QPixmap examplePicture(const project::ProjectCase& example, qreal scale) {
    plot::ui::PlanView view("picExample");
    view.resize(PictureWidth, PictureHeight);
    auto plan = plot::panelPlan(example, {0, 0, 0, 0, 1});
    if (auto* drawing = std::get_if<plot::Drawing>(&plan)) {
        drawing->caption.clear();
        drawing->chains.clear();
        drawing->texts.clear();
        drawing->margins = {};
        view.setDrawing(std::move(*drawing));
    }
    QPixmap picture = QPixmap::fromImage(view.image(scale));
    picture.setDevicePixelRatio(scale);
    return picture;
}

} // namespace

ChoiceList::ChoiceList(const char* name, const QString& accessibleName, QWidget* parent)
    : QListWidget(parent) {
    describe(*this, QString::fromUtf8(name), accessibleName, {});
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(this, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { Q_EMIT chosen(row(item)); });
}

void ChoiceList::restart() {
    // The keyboard begins at the first entry, which is not marked before it comes.
    if (count() > 0)
        selectionModel()->setCurrentIndex(model()->index(0, 0), QItemSelectionModel::NoUpdate);
}

void ChoiceList::keyPressEvent(QKeyEvent* event) {
    const bool choose = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (choose && currentRow() >= 0)
        Q_EMIT chosen(currentRow());
    else
        QListWidget::keyPressEvent(event);
}

void ChoiceList::focusInEvent(QFocusEvent* event) {
    // Whoever comes with the Tab key sees where the keyboard is.
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        setCurrentRow(std::max(currentRow(), 0));
    QListWidget::focusInEvent(event);
}

StartPage::StartPage(StartActions actions, std::vector<std::string> examples, QWidget* parent)
    : QWidget(parent), m_actions(std::move(actions)), m_examples(std::move(examples)) {
    setObjectName("startPage");
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(makeCommands(), 2);

    auto* right = new QVBoxLayout;
    m_exampleList = new ChoiceList("lstExamples", tr("Examples"), this);
    m_exampleList->setViewMode(QListView::IconMode);
    m_exampleList->setResizeMode(QListView::Adjust);
    m_exampleList->setMovement(QListView::Static);
    m_exampleList->setWordWrap(true);
    m_exampleList->setIconSize({PictureWidth, PictureHeight});
    m_exampleList->setGridSize(
        {PictureWidth + fontMetrics().height(), PictureHeight + 4 * fontMetrics().height()});
    m_exampleList->setSpacing(fontMetrics().height() / 2);
    for (const std::string& path : m_examples) {
        auto* item = new QListWidgetItem(QFileInfo(toQt(path)).completeBaseName(), m_exampleList);
        QPixmap paper(PictureWidth, PictureHeight); // keeps the place of the picture
        paper.fill(Qt::white);
        item->setIcon(paper);
        item->setTextAlignment(Qt::AlignHCenter | Qt::AlignTop);
    }
    connect(m_exampleList, &ChoiceList::chosen, this,
            [this](int row) { m_actions.openExample(m_examples[static_cast<std::size_t>(row)]); });
    m_exampleList->restart();
    auto* examplesLabel = heading(tr("E&xamples"), m_exampleList, this);
    examplesLabel->setVisible(!m_examples.empty()); // a copy of the program alone has none
    m_exampleList->setVisible(!m_examples.empty());
    right->addWidget(examplesLabel);
    right->addWidget(m_exampleList, 1);
    layout->addLayout(right, 3);

    m_drawing.setInterval(0);
    connect(&m_drawing, &QTimer::timeout, this, &StartPage::showNextExample);
}

QWidget* StartPage::makeCommands() {
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins({});
    const auto add = [&](const char* name, const QString& caption, const QString& tip, auto slot) {
        auto* button = new QPushButton(caption, page);
        describe(*button, QString::fromUtf8(name), caption, tip);
        connect(button, &QPushButton::clicked, this, slot);
        layout->addWidget(button);
        return button;
    };
    auto* first = add("cmdNewEnglish", tr("New case, &English units"),
                      tr("Begins a case in ft, psi and pcf and opens its parameters"),
                      [this] { m_actions.newCase(project::English); });
    add("cmdNewMetric", tr("New case, &metric units"),
        tr("Begins a case in m, MPa and kN/m3 and opens its parameters"),
        [this] { m_actions.newCase(project::Metric); });
    add("cmdOpenFile", tr("Open a &project file..."), tr("Opens a case that was saved"),
        [this] { m_actions.open(); });
    add("cmdTutorial", tr("&Tutorial"), tr("Four panels from start to end, in the help"),
        [this] { m_actions.tutorial(); });
    layout->insertWidget(0, heading(tr("Start"), first, page));
    layout->addSpacing(fontMetrics().height() / 2);

    m_recent = new ChoiceList("lstRecent", tr("Recent files"), page);
    m_recentLabel = heading(tr("&Recent files"), m_recent, page);
    connect(m_recent, &ChoiceList::chosen, this, [this](int row) {
        m_actions.openRecent(m_recent->item(row)->data(Qt::UserRole).toInt());
    });
    layout->addWidget(m_recentLabel);
    layout->addWidget(m_recent, 1);

    m_copyList = new ChoiceList("lstKept", tr("Cases to bring back"), page);
    m_copiesLabel = heading(tr("Cases to &bring back"), m_copyList, page);
    connect(m_copyList, &ChoiceList::chosen, this,
            [this](int row) { m_actions.bringBack(m_copies[static_cast<std::size_t>(row)]); });
    layout->addWidget(m_copiesLabel);
    layout->addWidget(m_copyList, 1);
    layout->addStretch();
    return page;
}

void StartPage::showLists(const SettingsStore& settings, std::vector<KeptCopy> copies) {
    m_recent->clear();
    for (int slot = 1; slot <= 4 && settings.values().KeepFileNames == 1; ++slot) {
        const QString caption = toQt(recentFileCaption(settings.values(), slot));
        if (caption.isEmpty()) continue;
        auto* item = new QListWidgetItem(caption, m_recent);
        item->setData(Qt::UserRole, slot);
        item->setToolTip(caption.toHtmlEscaped());
    }
    m_recent->restart();
    m_recentLabel->setVisible(m_recent->count() > 0);
    m_recent->setVisible(m_recent->count() > 0);

    m_copies = std::move(copies);
    m_copyList->clear();
    for (const KeptCopy& copy : m_copies) {
        const QString time = QLocale().toString(copy.time, QLocale::ShortFormat);
        auto* item = new QListWidgetItem(
            (copy.discarded ? tr("%1, discarded %2") : tr("%1, left unsaved %2"))
                .arg(QFileInfo(copy.name).fileName(), time),
            m_copyList);
        item->setToolTip(copy.name.toHtmlEscaped());
    }
    m_copyList->restart();
    m_copiesLabel->setVisible(!m_copies.empty());
    m_copyList->setVisible(!m_copies.empty());
}

void StartPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (m_drawn < m_exampleList->count()) m_drawing.start();
}

void StartPage::showNextExample() {
    if (!isVisible() || m_drawn >= m_exampleList->count()) {
        m_drawing.stop();
        return;
    }
    QListWidgetItem& item = *m_exampleList->item(m_drawn);
    const std::string& path = m_examples[static_cast<std::size_t>(m_drawn)];
    ++m_drawn;
    project::ProjectCase example;
    if (project::readCaseFile(path, example).fault) return; // its name stays
    item.setIcon(examplePicture(example, devicePixelRatioF()));
    if (!example.Title.empty()) item.setText(toQt(withoutControls(example.Title)));
    item.setToolTip(QFileInfo(toQt(path)).fileName().toHtmlEscaped());
}

} // namespace telvo::app::ui
