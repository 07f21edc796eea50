// SPDX-License-Identifier: GPL-3.0-or-later
#include "GuiTest.h"
#include "library/ui/frmResource.h"
#include "library/ui/frmTextBrow.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>

using namespace telvo;
using namespace telvo::test;
using library::ui::frmResource;
using library::ui::frmTextBrow;

namespace {

/// A folder with files, and a browser in it.
struct Shelf {
    QTemporaryDir folder;
    RecordedMessages messages;
    library::ui::BrowseOptions kept;
    std::vector<std::string> done;

    Shelf() {
        write("a.TLV", "TELVO_602\r\nsecond line\r\nTelvo again\r\n");
        write("b.tlv", "other");
        write("c.KRV", "sibling");
        write("d.dat", "numbers");
        write("binary.dat", QByteArray("\0\1\2", 3));
        QDir(folder.path()).mkdir("inner");
    }
    void write(const QString& name, const QByteArray& bytes) const {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QFile::WriteOnly));
        file.write(bytes);
    }
    frmTextBrow open(library::ui::BrowseOptions options = {}) {
        library::ui::BrowseActions actions;
        actions.openOutside = [this](const std::string& path) { done.push_back("edit " + path); };
        actions.print = [this](const QTextDocument&, const std::string& path, QWidget*) {
            done.push_back("print " + path);
        };
        actions.keep = [this](const library::ui::BrowseOptions& now) { kept = now; };
        return {std::move(options),
                folder.path().toStdString(),
                "TLV",
                std::move(actions),
                {messages, {}}};
    }
    std::string path(const char* name) const { return folder.filePath(name).toStdString(); }
};

QStringList names(const QWidget& form) {
    QStringList listed;
    const auto& files = control<QListWidget>(form, "lstFiles");
    for (int i = 0; i < files.count(); ++i)
        listed += files.item(i)->text();
    return listed;
}

void choose(const QWidget& form, const QString& name) {
    auto& files = control<QListWidget>(form, "lstFiles");
    files.setCurrentItem(files.findItems(name, Qt::MatchExactly).value(0));
}

QString shownText(const QWidget& form) {
    return control<QPlainTextEdit>(form, "txtFile").toPlainText();
}

} // namespace

class LibraryTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void filesAreListedByFilter() {
        Shelf shelf;
        frmTextBrow form = shelf.open();
        show(form);
        QCOMPARE(names(form), (QStringList{"..", "inner", "a.TLV", "b.tlv"}));
        auto& filter = control<QComboBox>(form, "cboFilter");
        filter.setCurrentIndex(1);
        Q_EMIT filter.activated(1);
        QCOMPARE(names(form), (QStringList{"..", "inner", "c.KRV"}));
        typeInto(filter, "dat");
        QTest::keyClick(&filter, Qt::Key_Return);
        QCOMPARE(names(form), (QStringList{"..", "inner", "binary.dat", "d.dat"}));
        QVERIFY(form.isVisible()); // Enter chose the filter and closed nothing
        form.reject();
        QCOMPARE(shelf.kept.BrowseDefaultFilter, "dat");

        frmTextBrow again = shelf.open(shelf.kept);
        QCOMPARE(names(again), (QStringList{"..", "inner", "binary.dat", "d.dat"}));
    }

    void filesAreShownAndFoldersEntered() {
        Shelf shelf;
        frmTextBrow form = shelf.open();
        show(form);
        choose(form, "a.TLV");
        QCOMPARE(shownText(form), "TELVO_602\nsecond line\nTelvo again\n");
        QVERIFY(control<QPlainTextEdit>(form, "txtFile").isReadOnly());
        click(form, "cmdPrint");
        click(form, "cmdCopy");
        QCOMPARE(QApplication::clipboard()->text(), shownText(form));
        QVERIFY(shelf.done == std::vector<std::string>{"print " + shelf.path("a.TLV")});

        choose(form, "inner");
        auto& files = control<QListWidget>(form, "lstFiles");
        files.setFocus();
        QTest::keyClick(&files, Qt::Key_Return);
        QCOMPARE(names(form), QStringList{".."});
        QVERIFY(!control<QPushButton>(form, "cmdEditor").isEnabled());
        QTest::keyClick(&files, Qt::Key_Backspace);
        QCOMPARE(files.currentItem()->text(), "inner");
        typeInto(control(form, "cboFilter"), "*.dat");
        QTest::keyClick(&control(form, "cboFilter"), Qt::Key_Return);
        choose(form, "binary.dat");
        QVERIFY(control<QLabel>(form, "lblFile").text().contains("not a text file"));
        QCOMPARE(shownText(form), "");

        type(form, "txtFolder", "/no/such/folder");
        QTest::keyClick(&control(form, "txtFolder"), Qt::Key_Return);
        QVERIFY(shelf.messages.asked.back().find("no such folder: /no/such/folder") !=
                std::string::npos);
        QVERIFY(names(form).contains("binary.dat"));
    }

    void findsWrapsAndTells() {
        Shelf shelf;
        frmTextBrow form = shelf.open();
        show(form);
        choose(form, "a.TLV");
        auto& text = control<QPlainTextEdit>(form, "txtFile");
        type(form, "txtFind", "telvo");
        const auto line = [&] { return text.textCursor().blockNumber(); };
        QTest::keyClick(&control(form, "txtFind"), Qt::Key_Return);
        QCOMPARE(line(), 0);
        QTest::keyClick(&form, Qt::Key_F3);
        QCOMPARE(line(), 2);
        click(form, "cmdFindNext"); // from the top again
        QCOMPARE(line(), 0);
        control<QCheckBox>(form, "chkMatchCase").setChecked(true);
        type(form, "txtFind", "Telvo");
        click(form, "cmdFindPrevious");
        QCOMPARE(line(), 2);
        type(form, "txtFind", "zebra");
        click(form, "cmdFindNext");
        QVERIFY(shelf.messages.asked.back().find("Not found: zebra") != std::string::npos);
        QCOMPARE(line(), 2);
    }

    void theOutsideEditorAndTheFontAreRemembered() {
        Shelf shelf;
        library::ui::BrowseOptions options;
        options.BrowseFontName = "No such font";
        options.BrowseFontBold = -1;
        frmTextBrow form = shelf.open(options);
        show(form);
        choose(form, "a.TLV");
        click(form, "chkUseNotepad");
        auto& files = control<QListWidget>(form, "lstFiles");
        files.setFocus();
        QTest::keyClick(&files, Qt::Key_Return);
        QVERIFY(shelf.done == std::vector<std::string>{"edit " + shelf.path("a.TLV")});
        control<QSpinBox>(form, "spnFontSize").setValue(14);
        const QFont font = control<QPlainTextEdit>(form, "txtFile").font();
        QCOMPARE(font.pointSize(), 14);
        QVERIFY(font.bold());
        form.reject();
        options.BrowseFontSize = 14;
        options.BrowseUseNotepad = 1;
        options.BrowseDefaultFilter = "*.TLV";
        QVERIFY(shelf.kept == options);
    }

    void documentsAreOpenedOrMissed() {
        Shelf shelf;
        shelf.write("Resources.lst",
                    "TELVO.PDF; Program manual\nCases.xlsx; Case table template\n");
        bool mayOpen = false;
        library::ui::ResourceActions actions;
        actions.open = [&](const std::string& path) { shelf.done.push_back(path); };
        actions.confirmSpreadsheet = [&](QWidget*) { return mayOpen; };
        actions.importCase = [&](QWidget*) { return mayOpen; };
        frmResource form(shelf.folder.path().toStdString() + "/", actions, {shelf.messages, {}});
        show(form);
        auto& list = control<QListWidget>(form, "lstResources");
        QCOMPARE(list.count(), 2);
        QTest::keyClick(&list, Qt::Key_Return);
        list.setCurrentRow(1);
        click(form, "cmdOpen"); // refused by the question
        mayOpen = true;
        click(form, "cmdOpen");
        QVERIFY(shelf.done ==
                (std::vector<std::string>{shelf.path("TELVO.PDF"), shelf.path("Cases.xlsx")}));
        click(form, "cmdImport");
        QCOMPARE(form.result(), QDialog::Accepted);

        frmResource empty("/no/such/", actions, {shelf.messages, {}});
        QTimer::singleShot(0, &empty, &QDialog::reject);
        empty.exec();
        QVERIFY(shelf.messages.asked.back().find("Requested File not found: /no/such/") !=
                std::string::npos);
    }
};

QTEST_MAIN(LibraryTest)
#include "library_test.moc"
