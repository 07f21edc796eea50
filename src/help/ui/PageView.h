// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTextBrowser>

namespace telvo::help::ui {

/// A page of the help in the colors of the desktop. A picture that is wider than the window is
/// shown smaller. Links that leave the help are reported, not followed.
class PageView : public QTextBrowser {
    Q_OBJECT
  public:
    /// Given: folder  where the pages lie, and their pictures
    explicit PageView(const QString& folder, QWidget* parent = nullptr);

    QVariant loadResource(int type, const QUrl& name) override;

  Q_SIGNALS:
    void externalLink(const QUrl& url);

  protected:
    void doSetSource(const QUrl& url, QTextDocument::ResourceType type) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    QVariant picture(const QString& file) const;
    void fitPictures();

    QString m_folder;
};

} // namespace telvo::help::ui
