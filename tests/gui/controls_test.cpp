// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/WindowPlaces.h"
#include "GuiTest.h"

#include <QClipboard>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QVBoxLayout>

using namespace telvo;
using namespace telvo::test;

namespace {

/// A form with a number on its second tab.
class SampleForm : public ui::Form {
  public:
    explicit SampleForm(const ui::FormServices& services)
        : Form("frmSample", "Sample: ", "Sample.htm", services) {
        auto* layout = new QVBoxLayout(this);
        auto* tabs = new QTabWidget(this);
        for (const char* name : {"txtFirst", "txtSecond"}) {
            auto* page = new QWidget;
            auto* pageLayout = new QVBoxLayout(page);
            pageLayout->addWidget(new ui::NumberEdit(name, page));
            tabs->addTab(page, name);
        }
        layout->addWidget(tabs);
        auto* buttons = makeButtons();
        addButton(*buttons, "cmdOK", "OK", QDialogButtonBox::AcceptRole);
        layout->addWidget(buttons);
    }
    using Form::refuse;
};

} // namespace

class ControlsTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void numbersTakeOnlyTheirOwnCharacters();
    void aBoxSelectsItsTextWhenItGetsTheFocus();
    void aRefusalShowsItsControl();
    void aFormRemembersItsSizeAndCopiesItsPicture();
};

void ControlsTest::numbersTakeOnlyTheirOwnCharacters() {
    ui::NumberEdit box("txtNumber");
    show(box);
    QSignalSpy refused(&box, &ui::NumberEdit::characterRefused);
    typeInto(box, "6,5");
    QCOMPARE(box.text(), "6.5");
    QCOMPARE(box.value(), 6.5);
    QTest::keyClicks(&box, "x");
    QCOMPARE(box.text(), "6.5");
    QCOMPARE(refused.count(), 1);
    QCOMPARE(refused.at(0).at(0).toString(), "'x' is not a character of a number");
    QApplication::clipboard()->setText("1,5e2");
    box.selectAll();
    box.paste();
    QCOMPARE(box.value(), 150.0);
    QApplication::clipboard()->setText("12 ft");
    box.selectAll();
    box.paste();
    QCOMPARE(box.text(), "1.5e2");
    QCOMPARE(refused.count(), 2);
}

void ControlsTest::aBoxSelectsItsTextWhenItGetsTheFocus() {
    QWidget window;
    ui::NumberEdit first("txtFirst", &window);
    ui::NumberEdit second("txtSecond", &window);
    second.move(0, 60);
    second.setText("1000");
    show(window);
    first.setFocus();
    QTest::keyClick(&first, Qt::Key_Tab);
    QCOMPARE(second.selectedText(), "1000");
    first.setFocus();
    QTest::mouseClick(&second, Qt::LeftButton);
    QCOMPARE(second.selectedText(), "1000");
    QTest::mouseClick(&second, Qt::LeftButton, {}, QPoint(second.width() - 4, 8));
    QVERIFY(second.selectedText().isEmpty()); // a second click sets the cursor
}

void ControlsTest::aRefusalShowsItsControl() {
    RecordedMessages messages;
    SampleForm form({messages, {}});
    show(form);
    form.refuse({"Invalid second", "Range Error", "txtSecond"});
    QCOMPARE(messages.asked.back(), "Sample: Range Error: Invalid second");
    QCOMPARE(form.findChild<QTabWidget*>()->currentIndex(), 1);
    QVERIFY(control(form, "txtSecond").hasFocus());

    auto& box = control<QLineEdit>(form, "txtSecond");
    box.setToolTip("above 0");
    ui::markRefused(box, "Invalid second");
    ui::markRefused(box, "Invalid still");
    QCOMPARE(box.toolTip(), "Invalid still\nabove 0");
    QVERIFY(box.palette().color(QPalette::Base) != form.palette().color(QPalette::Base));
    ui::markRefused(box, {});
    QCOMPARE(box.toolTip(), "above 0");
    QCOMPARE(box.palette().color(QPalette::Base), form.palette().color(QPalette::Base));
}

void ControlsTest::aFormRemembersItsSizeAndCopiesItsPicture() {
    const QTemporaryDir folder;
    RecordedMessages messages;
    ui::WindowPlaces places(folder.filePath("windows.ini").toStdString());
    QString topic;
    const ui::FormServices services{messages, [&](const QString& shown) { topic = shown; },
                                    &places};
    {
        SampleForm form(services);
        show(form);
        form.resize(480, 333);
        click(form, "cmdScreenshot");
        QCOMPARE(QApplication::clipboard()->image().size(), QSize(480, 333));
        QCOMPARE(messages.lastStatus(), "Screenshot of dialog copied to clipboard");
        QTest::keyClick(&form, Qt::Key_F1);
        QCOMPARE(topic, "Sample.htm");
        QTest::keyClick(&form, Qt::Key_Escape);
        QVERIFY(!form.isVisible());
    }
    SampleForm form(services);
    show(form);
    QCOMPARE(form.size(), QSize(480, 333));
}

QTEST_MAIN(ControlsTest)
#include "controls_test.moc"
