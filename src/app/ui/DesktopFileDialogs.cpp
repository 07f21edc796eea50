// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/DesktopFileDialogs.h"

#include "base/ui/qtText.h"
#include "base/ui/WindowPlaces.h"

#include <algorithm>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QMessageBox>
#include <QRegularExpression>
#include <QSplitter>
#include <QTreeView>

namespace telvo::app::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

/// A file system of lower-case names keeps "case.tlv" too.
QString withLowerCase(const std::string& filter) {
    QString text = toQt(filter);
    const auto start = text.lastIndexOf(QStringLiteral("(*."));
    const QString pattern = text.mid(start + 1).chopped(1);
    if (start >= 0 && pattern != pattern.toLower())
        text.insert(text.size() - 1, ' ' + pattern.toLower());
    return text == QStringLiteral("All Files (*.*)") ? QStringLiteral("All Files (*)") : text;
}

QStringList filterList(const std::vector<std::string>& filters) {
    QStringList list;
    for (const std::string& filter : filters)
        list << withLowerCase(filter);
    return list;
}

/// The first extension of a filter; empty for all files.
QString extensionOf(const QString& filter) {
    static const QRegularExpression pattern(QStringLiteral("\\(\\*\\.(\\w+)"));
    return pattern.match(filter).captured(1);
}

bool endsWith(const QString& name, const QString& extension) {
    return !extension.isEmpty() && name.size() > extension.size() + 1 &&
           name.endsWith('.' + extension, Qt::CaseInsensitive);
}

/// A dialog whose columns and places are seen in full, of a size that is remembered.
class WideFileDialog : public QFileDialog {
  public:
    WideFileDialog(std::string_view title, const QString& folder,
                   const std::vector<std::string>& filters, telvo::ui::WindowPlaces* places)
        : QFileDialog(QApplication::activeWindow(), toQt(title), folder), m_places(places) {
        setObjectName("dlgFile");
        setNameFilters(filterList(filters));
        const int em = fontMetrics().averageCharWidth();
        resize(em * 130, fontMetrics().height() * 30);
        if (m_places) m_places->restore(*this);
        if (auto* splitter = findChild<QSplitter*>("splitter"))
            splitter->setSizes({em * 24, width() - em * 24});
        if (auto* files = findChild<QTreeView*>("treeView")) {
            setViewMode(QFileDialog::Detail);
            files->header()->setStretchLastSection(false);
            files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
            files->header()->setSectionResizeMode(0, QHeaderView::Stretch);
        }
    }

    void done(int result) override {
        if (m_places) m_places->save(*this);
        QFileDialog::done(result);
    }

    std::optional<std::string> choose() {
        if (exec() != QDialog::Accepted || selectedFiles().isEmpty()) return std::nullopt;
        return fromQt(QDir::toNativeSeparators(selectedFiles().first()));
    }

  private:
    telvo::ui::WindowPlaces* m_places;
};

/// Names the file with its extension before it asks whether one of that name is replaced.
class SaveFileDialog : public WideFileDialog {
  public:
    SaveFileDialog(std::string_view title, const QFileInfo& start,
                   const std::vector<std::string>& filters, std::string_view extension,
                   telvo::ui::WindowPlaces* places)
        : WideFileDialog(title, start.path(), filters, places), m_extension(toQt(extension)) {
        setAcceptMode(QFileDialog::AcceptSave);
        setFileMode(QFileDialog::AnyFile);
        setOption(QFileDialog::DontConfirmOverwrite); // it would ask about the name as typed
        selectFile(start.fileName());
        connect(this, &QFileDialog::filterSelected, this, &SaveFileDialog::followFilter);
    }

    void accept() override {
        if (!selectedFiles().isEmpty() && QFileInfo(selectedFiles().first()).isDir()) {
            QFileDialog::accept(); // goes into the folder
            return;
        }
        const QString path = savedPath();
        if (QFileInfo::exists(path) &&
            QMessageBox::warning(this, windowTitle(),
                                 tr("%1 already exists.\nDo you want to replace it?")
                                     .arg(QFileInfo(path).fileName()),
                                 QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No) != QMessageBox::Yes)
            return;
        QFileDialog::accept();
    }

    QString savedPath() const {
        if (selectedFiles().isEmpty()) return {};
        return savedName(selectedFiles().first(), nameFilters(), selectedNameFilter(), m_extension);
    }

  private:
    /// A picture that is to be of another kind takes that kind's extension.
    void followFilter(const QString& filter) {
        if (selectedFiles().isEmpty() || extensionOf(filter).isEmpty()) return;
        QString name = QFileInfo(selectedFiles().first()).fileName();
        for (const QString& other : nameFilters())
            if (const QString old = extensionOf(other); endsWith(name, old)) {
                name.chop(old.size());
                selectFile(name + extensionOf(filter));
                return;
            }
    }

    QString m_extension;
};

} // namespace

QString savedName(const QString& name, const QStringList& filters, const QString& chosenFilter,
                  const QString& extension) {
    const bool ends = std::any_of(filters.begin(), filters.end(), [&](const QString& filter) {
        return endsWith(name, extensionOf(filter));
    });
    if (ends || endsWith(name, extension)) return name;
    if (const QString wanted = extensionOf(chosenFilter); !wanted.isEmpty())
        return name + '.' + wanted;
    const bool hasPoint = QFileInfo(name).fileName().contains('.');
    return hasPoint || extension.isEmpty() ? name : name + '.' + extension;
}

std::optional<std::string> DesktopFileDialogs::openFile(std::string_view title,
                                                        std::string_view folder,
                                                        const std::vector<std::string>& filters) {
    WideFileDialog dialog(title, toQt(folder), filters, m_places);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return dialog.choose();
}

std::vector<std::string> DesktopFileDialogs::openFiles(std::string_view title,
                                                       std::string_view folder,
                                                       const std::vector<std::string>& filters) {
    WideFileDialog dialog(title, toQt(folder), filters, m_places);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    std::vector<std::string> paths;
    if (dialog.choose())
        for (const QString& path : dialog.selectedFiles())
            paths.push_back(fromQt(QDir::toNativeSeparators(path)));
    return paths;
}

std::optional<std::string> DesktopFileDialogs::saveFile(std::string_view title,
                                                        std::string_view proposal,
                                                        const std::vector<std::string>& filters,
                                                        std::string_view extension) {
    SaveFileDialog dialog(title, QFileInfo(toQt(proposal)), filters, extension, m_places);
    if (!dialog.choose()) return std::nullopt;
    return fromQt(QDir::toNativeSeparators(dialog.savedPath()));
}

std::optional<std::string> DesktopFileDialogs::chooseFolder(std::string_view title,
                                                            std::string_view folder) {
    const QString path =
        QFileDialog::getExistingDirectory(QApplication::activeWindow(), toQt(title), toQt(folder));
    if (path.isEmpty()) return std::nullopt;
    return fromQt(QDir::toNativeSeparators(path));
}

} // namespace telvo::app::ui
