// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"
#include "help/HelpBook.h"

#include <functional>
#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSplitter;
class QTabWidget;
class QTextDocument;
class QTreeWidget;
class QTreeWidgetItem;

namespace telvo::ui {
class WindowPlaces;
}

namespace telvo::help::ui {

class PageView;

/// What the help window has done for it.
struct HelpActions {
    std::function<void(QTextDocument&, QWidget* parent)> print;
    std::function<void(const QUrl&)> openExternal; ///< after the user has agreed
};

/// The help: contents, index and search at the left, the page at the right. One window, not modal;
/// it stays usable while a modal dialog is open.
class frmHelp : public QWidget {
    Q_OBJECT
  public:
    frmHelp(HelpBook book, Messages& messages, HelpActions actions,
            telvo::ui::WindowPlaces* places = nullptr);
    ~frmHelp() override;

    /// Shows the window with a page, such as "EntryHeight.htm" or "ReportPage2.htm#amz-area"; ""
    /// shows the contents, "Index" the index. An unknown page shows the first one and tells so.
    void showTopic(const QString& address);
    /// Where F1 on a control leads: HelpBook::addressOf().
    QString addressOf(const QString& form, const QString& control) const;
    /// Where F1 on a printed line leads: HelpBook::addressOfLine().
    QString addressOfLine(const QString& topicFile, const QString& line) const;
    /// Where a message is explained: HelpBook::addressOfMessage().
    QString addressOfMessage(std::string_view message) const;

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QWidget* makeContents();
    QWidget* makeIndex();
    QWidget* makeSearch();
    QWidget* makePage();
    QWidget* makeFindBar();
    QPushButton* button(const QString& name, const QString& caption, const QString& toolTip,
                        std::function<void()> action);
    void makeShortcuts();

    void open(const QString& address);
    void pageChanged(const QUrl& url);
    void filterIndex(const QString& text);
    void search();
    void showFindBar();
    void find(bool backward);
    void followLink(const QUrl& url);
    void standBesideModalDialog();

    HelpBook m_book;
    Messages& m_messages;
    HelpActions m_actions;
    telvo::ui::WindowPlaces* m_places;
    bool m_placed = false;

    QSplitter* m_splitter = nullptr;
    QTabWidget* m_tabs = nullptr;
    QTreeWidget* m_contents = nullptr;
    std::vector<QTreeWidgetItem*> m_items; ///< one per topic
    QLineEdit* m_filter = nullptr;
    QListWidget* m_index = nullptr;
    QLineEdit* m_query = nullptr;
    QListWidget* m_hits = nullptr;
    QLabel* m_hitCount = nullptr;
    PageView* m_page = nullptr;
    QWidget* m_findBar = nullptr;
    QLineEdit* m_findText = nullptr;
    QLabel* m_findResult = nullptr;
    QPushButton* m_back = nullptr;
    QPushButton* m_forward = nullptr;
};

} // namespace telvo::help::ui
