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
    void whatIsNoNumberMarksTheBox();
    void aPasteIsTakenRightOrRefused();
    void aBoxSelectsItsTextWhenItGetsTheFocus();
    void aRefusalShowsItsControl();
    void aFormRemembersItsSizeAndCopiesItsPicture();
};

void ControlsTest::whatIsNoNumberMarksTheBox() {
    QWidget window;
    ui::NumberEdit box("txtNumber", &window);
    QLineEdit other(&window);
    other.move(0, 60);
    box.setToolTip("above 0");
    show(window);
    QSignalSpy left(&box, &ui::NumberEdit::wrongCharacterLeft);
    typeInto(box, "6,5");
    QCOMPARE(box.text(), "6.5");
    QCOMPARE(box.value(), 6.5);
    QVERIFY(box.objection().isEmpty());
    QCOMPARE(box.toolTip(), "above 0");
    QTest::keyClicks(&box, "x1");
    QCOMPARE(box.text(), "6.5x1");
    QCOMPARE(box.value(), 6.5);
    QCOMPARE(box.toolTip(), "'x' is not a character of a number\nabove 0");
    QVERIFY(box.palette().color(QPalette::Base) != other.palette().color(QPalette::Base));
    QCOMPARE(left.count(), 0); // not at every key
    other.setFocus();
    QCOMPARE(left.count(), 1);
    box.setFocus();
    other.setFocus();
    QCOMPARE(left.count(), 1); // told once
    typeInto(box, "1 200");
    QCOMPARE(box.objection(), "'1 200' is read as 1");
    other.setFocus();
    QCOMPARE(left.count(), 1);
    typeInto(box, "7");
    QCOMPARE(box.toolTip(), "above 0");
    QCOMPARE(box.palette().color(QPalette::Base), other.palette().color(QPalette::Base));
}

void ControlsTest::aPasteIsTakenRightOrRefused() {
    ui::NumberEdit box("txtNumber");
    show(box);
    QSignalSpy refused(&box, &ui::NumberEdit::pasteRefused);
    const auto pasted = [&box](const QString& text) {
        QApplication::clipboard()->setText(text);
        typeInto(box, "1000");
        box.selectAll();
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
        return box.text();
    };
    QCOMPARE(pasted("1,5e2"), "1.5E2");
    QCOMPARE(pasted("1,234.5"), "1234.5");
    QCOMPARE(pasted("1 200\r\n"), "1200");
    QCOMPARE(refused.count(), 0);
    QCOMPARE(pasted("1,234"), "1000");
    QCOMPARE(refused.takeLast().at(0).toString(),
             "'1,234' is not taken: the comma can be a decimal sign or a thousands sign; write "
             "1.234 or 1234");
    QCOMPARE(pasted("12 ft"), "1000");
    QCOMPARE(pasted("80\t90"), "1000");
    QCOMPARE(refused.count(), 2);
    box.setText("15");
    box.setCursorPosition(1);
    QApplication::clipboard()->setText("2");
    box.paste();
    QCOMPARE(box.text(), "125");
    box.undo();
    QCOMPARE(box.text(), "15");
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

    auto& box = control<ui::NumberEdit>(form, "txtSecond");
    box.setToolTip("above 0");
    box.setRefusal("Invalid second");
    box.setRefusal("Invalid still");
    QCOMPARE(box.toolTip(), "Invalid still\nabove 0");
    QVERIFY(box.palette().color(QPalette::Base) != form.palette().color(QPalette::Base));
    box.setRefusal({});
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
