// SPDX-License-Identifier: GPL-3.0-or-later
#include "help/ui/frmHelp.h"

#include "base/ui/Form.h"
#include "base/ui/qtText.h"
#include "base/ui/screenRoom.h"
#include "base/ui/WindowPlaces.h"
#include "help/ui/PageView.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QTextCursor>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

namespace telvo::help::ui {

using telvo::ui::describe;
using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

constexpr int AddressRole = Qt::UserRole;

/// A page of the tabs at the left with its boxes one below the other.
QWidget* column(std::initializer_list<QWidget*> widgets) {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    for (QWidget* widget : widgets)
        layout->addWidget(widget);
    return page;
}

} // namespace

frmHelp::frmHelp(HelpBook book, Messages& messages, HelpActions actions,
                 telvo::ui::WindowPlaces* places)
    : m_book(std::move(book)), m_messages(messages), m_actions(std::move(actions)),
      m_places(places) {
    setObjectName("frmHelp");
    setWindowTitle(tr("TELVO Help"));
    setAttribute(Qt::WA_QuitOnClose, false);

    m_tabs = new QTabWidget(this);
    describe(*m_tabs, "SSTab1", tr("Ways to a page"), {});
    m_tabs->addTab(makeContents(), tr("&Contents"));
    m_tabs->addTab(makeIndex(), tr("&Index"));
    m_tabs->addTab(makeSearch(), tr("&Search"));
    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->setObjectName("splHelp");
    m_splitter->setChildrenCollapsible(false);
    m_splitter->addWidget(m_tabs);
    m_splitter->addWidget(makePage());
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    const int letter = fontMetrics().averageCharWidth();
    m_splitter->setSizes({46 * letter, 100 * letter});
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_splitter);
    resize(QSize(150 * letter, 42 * fontMetrics().height())
               .boundedTo(screen()->availableSize() * 9 / 10));
    makeShortcuts();
    // The dialog that is modal changes with the active window.
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &frmHelp::standBesideModalDialog);
}

frmHelp::~frmHelp() = default;

QPushButton* frmHelp::button(const QString& name, const QString& caption, const QString& toolTip,
                             std::function<void()> action) {
    auto* made = new QPushButton(caption, this);
    describe(*made, name, QString(caption).remove('&'), toolTip);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, std::move(action));
    return made;
}

QWidget* frmHelp::makeContents() {
    m_contents = new QTreeWidget;
    describe(*m_contents, "treContents", tr("Contents"), tr("The pages of the help, in order"));
    m_contents->setHeaderHidden(true);
    std::vector<QTreeWidgetItem*> above; // the last item of each level
    for (const Topic& topic : m_book.topics()) {
        above.resize(
            std::min(above.size(), static_cast<std::size_t>(std::max(0, topic.level - 1))));
        auto* item =
            above.empty() ? new QTreeWidgetItem(m_contents) : new QTreeWidgetItem(above.back());
        item->setText(0, toQt(topic.title));
        item->setToolTip(0, toQt(topic.title));
        item->setData(0, AddressRole, toQt(topic.file));
        above.push_back(item);
        m_items.push_back(item);
    }
    connect(m_contents, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (item) open(item->data(0, AddressRole).toString());
    });
    return column({m_contents});
}

QWidget* frmHelp::makeIndex() {
    m_filter = new QLineEdit;
    describe(*m_filter, "txtIndex", tr("Words of the index"),
             tr("Shows the lines of the index that hold this text"));
    m_filter->setPlaceholderText(tr("Type a part of a word"));
    m_filter->setClearButtonEnabled(true);
    m_index = new QListWidget;
    describe(*m_index, "lstIndex", tr("Index"), tr("Enter opens the page"));
    for (const IndexLine& line : m_book.index()) {
        const bool same = line.words == line.title;
        auto* item = new QListWidgetItem(
            same ? toQt(line.words) : toQt(line.words + "  (" + line.title + ')'), m_index);
        item->setData(AddressRole, toQt(line.address));
        item->setToolTip(item->text());
    }
    m_index->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_filter, &QLineEdit::textChanged, this, &frmHelp::filterIndex);
    connect(m_index, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        if (item && m_index->hasFocus()) open(item->data(AddressRole).toString());
    });
    const auto openItem = [this](QListWidgetItem* item) {
        open(item->data(AddressRole).toString());
    };
    connect(m_index, &QListWidget::itemClicked, this, openItem);
    connect(m_index, &QListWidget::itemActivated, this, openItem);
    connect(m_filter, &QLineEdit::returnPressed, this, [this, openItem] {
        if (auto* item = m_index->currentItem(); item && !item->isHidden()) openItem(item);
    });
    return column({m_filter, m_index});
}

QWidget* frmHelp::makeSearch() {
    m_query = new QLineEdit;
    describe(*m_query, "txtSearch", tr("Words to search for"),
             tr("Finds the pages that hold all of these words"));
    m_query->setPlaceholderText(tr("Words, then Enter"));
    m_query->setClearButtonEnabled(true);
    m_hitCount = new QLabel;
    m_hitCount->setObjectName("lblHits");
    m_hits = new QListWidget;
    describe(*m_hits, "lstSearch", tr("Pages found"), tr("Enter opens the page"));
    m_hits->setWordWrap(true);
    m_hits->setSpacing(fontMetrics().height() / 4);
    m_hits->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_query, &QLineEdit::returnPressed, this, &frmHelp::search);
    const auto openItem = [this](QListWidgetItem* item) {
        open(item->data(AddressRole).toString());
    };
    connect(m_hits, &QListWidget::itemClicked, this, openItem);
    connect(m_hits, &QListWidget::itemActivated, this, openItem);
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(m_query, 1);
    layout->addWidget(button("cmdSearch", tr("S&earch"), tr("Finds the pages with these words"),
                             [this] { search(); }));
    return column({row, m_hitCount, m_hits});
}

QWidget* frmHelp::makePage() {
    m_page = new PageView(toQt(m_book.folder()));
    describe(*m_page, "txtPage", tr("Page of the help"), {});
    connect(m_page, &PageView::externalLink, this, &frmHelp::followLink);
    connect(m_page, &QTextBrowser::sourceChanged, this, &frmHelp::pageChanged);
    m_back = button("cmdBack", tr("&Back"), tr("Shows the page seen before (Alt+Left)"),
                    [this] { m_page->backward(); });
    m_forward = button("cmdForward", tr("&Forward"), tr("Undoes Back (Alt+Right)"),
                       [this] { m_page->forward(); });
    connect(m_page, &QTextBrowser::backwardAvailable, m_back, &QPushButton::setEnabled);
    connect(m_page, &QTextBrowser::forwardAvailable, m_forward, &QPushButton::setEnabled);
    m_back->setEnabled(false);
    m_forward->setEnabled(false);
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins({});
    auto* row = new QHBoxLayout;
    row->addWidget(m_back);
    row->addWidget(m_forward);
    row->addWidget(button("cmdHome", tr("&Home"), tr("Shows the first page (Alt+Home)"),
                          [this] { open(toQt(m_book.topics().front().file)); }));
    row->addStretch(1);
    row->addWidget(button("cmdFind", tr("Fi&nd..."), tr("Looks for words on this page (Ctrl+F)"),
                          [this] { showFindBar(); }));
    row->addWidget(button("cmdPrint", tr("&Print..."), tr("Prints this page (Ctrl+P)"), [this] {
        if (m_actions.print) m_actions.print(*m_page->document(), this);
    }));
    layout->addLayout(row);
    layout->addWidget(m_page, 1);
    layout->addWidget(makeFindBar());
    return page;
}

QWidget* frmHelp::makeFindBar() {
    m_findBar = new QWidget;
    m_findBar->setObjectName("findBar");
    auto* layout = new QHBoxLayout(m_findBar);
    layout->setContentsMargins({});
    m_findText = new QLineEdit;
    describe(*m_findText, "txtFind", tr("Words to find on this page"),
             tr("Enter finds the next place, Shift+Enter the one before"));
    m_findText->setClearButtonEnabled(true);
    auto* label = new QLabel(tr("Find &on page:"));
    label->setBuddy(m_findText);
    m_findResult = new QLabel;
    m_findResult->setObjectName("lblFind");
    layout->addWidget(label);
    layout->addWidget(m_findText, 1);
    layout->addWidget(button("cmdFindPrevious", tr("Pre&vious"), tr("Finds the place before"),
                             [this] { find(true); }));
    layout->addWidget(
        button("cmdFindNext", tr("Ne&xt"), tr("Finds the next place"), [this] { find(false); }));
    layout->addWidget(m_findResult);
    connect(m_findText, &QLineEdit::returnPressed, this,
            [this] { find(QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)); });
    m_findBar->hide();
    return m_findBar;
}

void frmHelp::makeShortcuts() {
    const std::pair<QKeySequence, std::function<void()>> shortcuts[] = {
        {QKeySequence("Alt+Left"), [this] { m_back->click(); }},
        {QKeySequence("Alt+Right"), [this] { m_forward->click(); }},
        {QKeySequence("Alt+Home"), [this] { open(toQt(m_book.topics().front().file)); }},
        {QKeySequence("Ctrl+F"), [this] { showFindBar(); }},
        {QKeySequence("F3"), [this] { find(false); }},
        {QKeySequence("Ctrl+P"),
         [this] {
             if (m_actions.print) m_actions.print(*m_page->document(), this);
         }},
        {QKeySequence("Ctrl++"), [this] { m_page->zoomIn(); }},
        {QKeySequence("Ctrl+="), [this] { m_page->zoomIn(); }},
        {QKeySequence("Ctrl+-"), [this] { m_page->zoomOut(); }},
        {QKeySequence("F1"), [this] { open("HelpWindow.htm"); }},
    };
    for (const auto& [keys, action] : shortcuts)
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
}

void frmHelp::showTopic(const QString& address) {
    if (address.isEmpty() || address == "Index") {
        m_tabs->setCurrentIndex(address.isEmpty() ? 0 : 1);
        if (m_page->source().isEmpty()) open(toQt(m_book.topics().front().file));
    } else {
        open(address);
    }
    if (!m_placed && m_places) {
        m_places->restore(*this);
        m_places->restore(*m_splitter);
        resize(size().boundedTo(telvo::ui::roomOnScreen(*this)));
    }
    m_placed = true;
    winId(); // the window of the system, which the modal dialog is told of
    standBesideModalDialog();
    if (isMinimized()) showNormal();
    show();
    raise();
    activateWindow();
    QWidget* first = m_page;
    if (address.isEmpty())
        first = m_contents;
    else if (address == "Index")
        first = m_filter;
    first->setFocus(Qt::OtherFocusReason);
}

QString frmHelp::addressOf(const QString& form, const QString& control) const {
    return toQt(m_book.addressOf(fromQt(form), fromQt(control)));
}

QString frmHelp::addressOfLine(const QString& topicFile, const QString& line) const {
    return toQt(m_book.addressOfLine(fromQt(topicFile), fromQt(line)));
}

QString frmHelp::addressOfMessage(std::string_view message) const {
    return toQt(m_book.addressOfMessage(message));
}

void frmHelp::open(const QString& address) {
    if (m_book.find(fromQt(address)) == HelpBook::npos) {
        m_messages.status("The help has no page " + fromQt(address));
        if (m_page->source().isEmpty()) open(toQt(m_book.topics().front().file));
        return;
    }
    QUrl url = QUrl::fromLocalFile(toQt(m_book.folder()) + address.section('#', 0, 0));
    if (address.contains('#')) url.setFragment(address.section('#', 1));
    if (url.adjusted(QUrl::RemoveFragment) == m_page->source().adjusted(QUrl::RemoveFragment) &&
        !url.hasFragment())
        return;
    m_page->setSource(url);
}

void frmHelp::pageChanged(const QUrl& url) {
    const std::size_t topic = m_book.find(fromQt(url.fileName()));
    if (topic == HelpBook::npos) return;
    const QSignalBlocker quiet(m_contents); // it follows the page here, not the other way round
    m_contents->setCurrentItem(m_items[topic]);
    m_contents->scrollToItem(m_items[topic]);
    setWindowTitle(tr("%1 - TELVO Help").arg(toQt(m_book.topics()[topic].title)));
}

void frmHelp::filterIndex(const QString& text) {
    QListWidgetItem* first = nullptr;
    for (int i = 0; i < m_index->count(); ++i) {
        auto* item = m_index->item(i);
        item->setHidden(!item->text().contains(text, Qt::CaseInsensitive));
        if (!first && !item->isHidden()) first = item;
    }
    m_index->setCurrentItem(first);
}

void frmHelp::search() {
    m_hits->clear();
    const std::vector<SearchHit> found = m_book.search(fromQt(m_query->text()));
    for (const SearchHit& hit : found) {
        const Topic& topic = m_book.topics()[hit.topic];
        auto* item = new QListWidgetItem(toQt(topic.title + '\n' + hit.excerpt), m_hits);
        item->setData(AddressRole, toQt(topic.file));
    }
    m_hitCount->setText(found.empty()       ? tr("No page holds these words.")
                        : found.size() == 1 ? tr("1 page")
                                            : tr("%1 pages").arg(found.size()));
    if (!found.empty()) {
        m_hits->setCurrentRow(0);
        m_hits->setFocus(Qt::OtherFocusReason);
        m_findText->setText(m_query->text().trimmed()); // F3 then goes from place to place
    }
}

void frmHelp::showFindBar() {
    m_findBar->show();
    m_findText->setFocus(Qt::ShortcutFocusReason);
    m_findText->selectAll();
}

void frmHelp::find(bool backward) {
    const QString words = m_findText->text();
    if (words.isEmpty()) return showFindBar();
    QTextDocument::FindFlags flags;
    flags.setFlag(QTextDocument::FindBackward, backward);
    bool found = m_page->find(words, flags);
    if (!found) { // on from the other end
        QTextCursor cursor = m_page->textCursor();
        cursor.movePosition(backward ? QTextCursor::End : QTextCursor::Start);
        m_page->setTextCursor(cursor);
        found = m_page->find(words, flags);
    }
    m_findResult->setText(found ? QString() : tr("Not on this page"));
}

void frmHelp::followLink(const QUrl& url) {
    const std::string text = "Open this address outside of the program?\n" + fromQt(url.toString());
    if (m_actions.openExternal &&
        m_messages.ask(text, Buttons::YesNo, Answer::No, "Help: Message") == Answer::Yes)
        m_actions.openExternal(url);
}

/// A modal dialog blocks every window but those that stand above it.
void frmHelp::standBesideModalDialog() {
    if (!windowHandle()) return;
    QWindow* modal = QGuiApplication::modalWindow();
    if (modal != windowHandle() && windowHandle()->transientParent() != modal)
        windowHandle()->setTransientParent(modal);
}

bool frmHelp::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::WindowBlocked:
        // The dialog is not among the modal windows before this event is over.
        QMetaObject::invokeMethod(this, &frmHelp::standBesideModalDialog, Qt::QueuedConnection);
        break;
    case QEvent::Hide:
        if (m_places && m_placed) {
            m_places->save(*this);
            m_places->save(*m_splitter);
        }
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void frmHelp::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
    if (m_findBar->isVisible()) {
        m_findBar->hide();
        m_page->setFocus(Qt::OtherFocusReason);
    } else {
        close();
    }
}

} // namespace telvo::help::ui
