// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/Form.h"
#include "base/ui/qtText.h"
#include "base/ui/WindowPlaces.h"
#include "GuiTest.h"
#include "help/ui/frmHelp.h"
#include "help/ui/PageView.h"

#include <fstream>
#include <memory>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QWindow>

using namespace telvo;
using namespace telvo::test;
using help::ui::frmHelp;
using help::ui::PageView;

namespace {

/// A small help in a folder of its own, and its window.
struct Fixture {
    QTemporaryDir folder;
    RecordedMessages messages;
    QUrl opened;
    int printed = 0;
    std::unique_ptr<telvo::ui::WindowPlaces> places;
    std::unique_ptr<frmHelp> window;

    void put(const char* name, const char* text) const {
        std::ofstream(folder.filePath(name).toStdString()) << text;
    }
    Fixture() {
        put("contents.txt", "T\t1\tPanel.htm\tThe panel\n"
                            "T\t2\tDepth.htm\tDepth of Cover\n"
                            "K\toverburden\tDepth.htm\n"
                            "K\tzone\tPanel.htm#zone\n"
                            "C\tfrmSample/txtDepth\tDepth.htm\n"
                            "T\t1\tHelpWindow.htm\tHelp window\n");
        put("search.txt", "Panel.htm\tPillars and their depth\nDepth.htm\tOverburden\n");
        put("Panel.htm", "<h1>The panel</h1><p><a href=\"Depth.htm\">on</a> "
                         "<a href=\"http://example.org/a\">out</a> tunnel tunnel "
                         "<img src=\"formulas/f.png\"/></p><p><a name=\"zone\"></a>zone</p>");
        put("Depth.htm", "<h1>Depth</h1>");
        put("HelpWindow.htm", "<h1>Help</h1>");
        QDir().mkpath(folder.filePath("formulas"));
        QImage formula(40, 20, QImage::Format_ARGB32);
        formula.fill(Qt::black);
        formula.save(folder.filePath("formulas/f.png"));
        places =
            std::make_unique<telvo::ui::WindowPlaces>(folder.filePath("places.ini").toStdString());
        make();
    }
    void make() {
        auto book = help::HelpBook::open(folder.path().toStdString() + '/');
        help::ui::HelpActions actions;
        actions.print = [this](QTextDocument&, QWidget*) { ++printed; };
        actions.openExternal = [this](const QUrl& url) { opened = url; };
        window =
            std::make_unique<frmHelp>(std::move(*book), messages, std::move(actions), places.get());
    }
    QString page() const { return control<PageView>(*window, "txtPage").source().fileName(); }
};

class Sample : public telvo::ui::Form {
  public:
    explicit Sample(const telvo::ui::FormServices& services)
        : Form("frmSample", "Sample: ", "Panel.htm", services) {
        auto* layout = new QVBoxLayout(this);
        for (const char* name : {"txtDepth", "txtOther"}) {
            auto* box = new QLineEdit(this);
            box->setObjectName(name);
            layout->addWidget(box);
        }
    }
};

} // namespace

class HelpTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void contentsIndexAndSearchOpenPages() {
        Fixture f;
        f.window->showTopic({});
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        QCOMPARE(f.page(), "Panel.htm");
        auto& contents = control<QTreeWidget>(*f.window, "treContents");
        QVERIFY(contents.hasFocus());
        QTest::keyClick(&contents, Qt::Key_Right); // opens the chapter
        QTest::keyClick(&contents, Qt::Key_Down);
        QCOMPARE(f.page(), "Depth.htm");
        QVERIFY(f.window->windowTitle().contains("Depth of Cover"));

        f.window->showTopic("Index");
        auto& filter = control<QLineEdit>(*f.window, "txtIndex");
        QVERIFY(filter.hasFocus());
        QTest::keyClicks(&filter, "ZON");
        QTest::keyClick(&filter, Qt::Key_Return);
        QCOMPARE(f.page(), "Panel.htm");
        QCOMPARE(contents.currentItem()->text(0), "The panel");

        control<QTabWidget>(*f.window, "SSTab1").setCurrentIndex(2);
        type(*f.window, "txtSearch", "depth");
        QTest::keyClick(&control(*f.window, "txtSearch"), Qt::Key_Return);
        auto& hits = control<QListWidget>(*f.window, "lstSearch");
        QCOMPARE(hits.count(), 2);
        QVERIFY(hits.item(0)->text().startsWith("Depth of Cover\n"));
        QTest::keyClick(&hits, Qt::Key_Return);
        QCOMPARE(f.page(), "Depth.htm");
        type(*f.window, "txtSearch", "tonnage");
        click(*f.window, "cmdSearch");
        QCOMPARE(hits.count(), 0);
        QVERIFY(!control<QLabel>(*f.window, "lblHits").text().isEmpty());
    }

    void backForwardAndHome() {
        Fixture f;
        f.window->showTopic("Panel.htm");
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        QVERIFY(!control(*f.window, "cmdBack").isEnabled());
        f.window->showTopic("Depth.htm");
        click(*f.window, "cmdBack");
        QCOMPARE(f.page(), "Panel.htm");
        click(*f.window, "cmdForward");
        QCOMPARE(f.page(), "Depth.htm");
        click(*f.window, "cmdHome");
        QCOMPARE(f.page(), "Panel.htm");
        f.window->showTopic("NoSuch.htm");
        QCOMPARE(f.page(), "Panel.htm");
        QTest::keyClick(f.window.get(), Qt::Key_F1);
        QTRY_COMPARE(f.page(), "HelpWindow.htm");
    }

    void findsOnThePageRoundItsEnd() {
        Fixture f;
        f.window->showTopic("Panel.htm");
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        click(*f.window, "cmdFind");
        auto& words = control<QLineEdit>(*f.window, "txtFind");
        QTRY_VERIFY(words.hasFocus());
        QTest::keyClicks(&words, "tunnel");
        auto& page = control<PageView>(*f.window, "txtPage");
        std::vector<int> places;
        for (int i = 0; i < 3; ++i) {
            click(*f.window, "cmdFindNext");
            places.push_back(page.textCursor().selectionStart());
        }
        QVERIFY(places[1] > places[0]);
        QCOMPARE(places[2], places[0]);
        typeInto(words, "shaft");
        click(*f.window, "cmdFindPrevious");
        QVERIFY(!control<QLabel>(*f.window, "lblFind").text().isEmpty());
        QTest::keyClick(&words, Qt::Key_Escape);
        QVERIFY(f.window->isVisible() && !words.isVisible());
        QTest::keyClick(&page, Qt::Key_Escape);
        QVERIFY(!f.window->isVisible());
    }

    void externalLinksAreFollowedAfterAQuestionOnly() {
        Fixture f;
        f.window->showTopic("Panel.htm");
        auto& page = control<PageView>(*f.window, "txtPage");
        f.messages.answers = {Answer::No, Answer::Yes};
        page.setSource(QUrl("http://example.org/a"));
        QVERIFY(f.opened.isEmpty());
        page.setSource(QUrl("http://example.org/a"));
        QCOMPARE(f.opened, QUrl("http://example.org/a"));
        QCOMPARE(f.page(), "Panel.htm");
        click(*f.window, "cmdPrint");
        QCOMPARE(f.printed, 1);
    }

    void formulasTakeTheColourOfTheText() {
        Fixture f;
        QPalette dark = f.window->palette();
        dark.setColor(QPalette::Text, Qt::white);
        control(*f.window, "txtPage").setPalette(dark);
        f.window->showTopic("Panel.htm");
        const auto picture = control<PageView>(*f.window, "txtPage")
                                 .loadResource(QTextDocument::ImageResource, QUrl("formulas/f.png"))
                                 .value<QImage>();
        QCOMPARE(picture.pixelColor(3, 3), QColor(Qt::white));
        QCOMPARE(picture.width() / picture.devicePixelRatio(), 20.0);
    }

    void aWidePictureIsShownAsWideAsTheWindow() {
        Fixture f;
        f.put("Panel.htm", "<p><img src=\"formulas/f.png\" width=\"900\" height=\"300\"/></p>"
                           "<p><img src=\"formulas/f.png\" width=\"40\" height=\"20\"/></p>");
        f.window->resize(800, 500);
        f.window->showTopic("Panel.htm");
        auto& page = control<PageView>(*f.window, "txtPage");
        const auto picture = [&](int block) {
            return page.document()
                ->findBlockByNumber(block)
                .begin()
                .fragment()
                .charFormat()
                .toImageFormat();
        };
        QVERIFY(picture(0).width() < page.viewport()->width());
        QCOMPARE(page.horizontalScrollBar()->maximum(), 0);
        QVERIFY(qAbs(picture(0).width() - 3 * picture(0).height()) < 1e-6);
        QCOMPARE(picture(1).width(), 40.0);
        const double before = picture(0).width();
        f.window->resize(1000, 500);
        QTRY_VERIFY(picture(0).width() > before);
        f.window->resize(1600, 500);
        QTRY_COMPARE(picture(0).width(), 900.0);
    }

    void f1OpensTheTopicOfTheFieldElseThatOfTheForm() {
        Fixture f;
        const telvo::ui::FormServices services{
            f.messages, [&f](const QString& topic) { f.window->showTopic(topic); }, nullptr,
            [&f](const QString& form, const QString& name) {
                return f.window->addressOf(form, name);
            }};
        Sample form(services);
        form.setModal(true);
        show(form);
        control(form, "txtDepth").setFocus();
        QTest::keyClick(&control(form, "txtDepth"), Qt::Key_F1);
        QCOMPARE(f.page(), "Depth.htm");
        // The form is modal, and the help can be used all the same.
        QVERIFY(QTest::qWaitForWindowActive(f.window.get()));
        click(*f.window, "cmdHome");
        QCOMPARE(f.page(), "Panel.htm");

        f.window->showTopic("Depth.htm");
        form.activateWindow();
        control(form, "txtOther").setFocus();
        QTest::keyClick(&control(form, "txtOther"), Qt::Key_F1);
        QCOMPARE(f.page(), "Panel.htm");
    }

    void aDialogThatOpensLaterDoesNotBlockTheHelpEither() {
        Fixture f;
        f.window->showTopic("Depth.htm");
        {
            Sample form({f.messages, {}});
            form.setModal(true);
            show(form);
            QTRY_COMPARE(f.window->windowHandle()->transientParent(), form.windowHandle());
            f.window->activateWindow();
            click(*f.window, "cmdHome");
            QCOMPARE(f.page(), "Panel.htm");
        }
        QVERIFY(f.window->isVisible());
        f.window->showTopic("Depth.htm");
        QCOMPARE(f.window->windowHandle()->transientParent(), nullptr);
    }

    void sizeIsRemembered() {
        Fixture f;
        f.window->showTopic({});
        f.window->resize(700, 555);
        f.window->close();
        f.make();
        f.window->showTopic({});
        QCOMPARE(f.window->size(), QSize(700, 555));
    }
};

QTEST_MAIN(HelpTest)
#include "help_test.moc"
