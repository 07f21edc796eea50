// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/ui/PlanView.h"

#include "GuiTest.h"
#include "plot/panelPlan.h"
#include "plot/ui/paintDrawing.h"
#include "project/CaseFile.h"

#include <QSet>
#include <QWheelEvent>

using namespace telvo;
using namespace telvo::test;

namespace {

plot::Drawing plan(const char* example) {
    project::ProjectCase read;
    project::readCaseFile(std::string(TELVO_EXAMPLES_DIR) + "/" + example, read);
    return std::get<plot::Drawing>(plot::panelPlan(read, {}));
}

int coloursOf(const QImage& image) {
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y));
    return static_cast<int>(colours.size());
}

void turnWheel(QWidget& view, QPointF at, int notches) {
    QWheelEvent event(at, view.mapToGlobal(at), {}, {0, 120 * notches}, {}, {}, {}, false);
    QApplication::sendEvent(&view, &event);
}

} // namespace

class PlanViewTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void init();
    void showsADrawingOrAMessage();
    void zoomsAtThePointerAndFitsAgain();
    void movesByDraggingAndByKeys();
    void picturesAreOnWhitePaperInEveryTheme();

  private:
    std::unique_ptr<plot::ui::PlanView> m_view;
};

void PlanViewTest::init() {
    m_view = std::make_unique<plot::ui::PlanView>("Picture1");
    m_view->resize(600, 450);
    m_view->setDrawing(plan("bleeder-rows-c-d.TLV"));
    show(*m_view);
    m_view->setFocus();
}

void PlanViewTest::showsADrawingOrAMessage() {
    QVERIFY(coloursOf(m_view->grab().toImage()) > 20);
    QVERIFY(m_view->accessibleDescription().contains("ONE ACTIVE SECTION AND TWO SIDE GOBS"));
    turnWheel(*m_view, {300, 200}, 2);
    m_view->setDrawing(plan("two-side-gobs.TLV"));
    QVERIFY(m_view->zoom().factor > 1.5); // what is looked at stays in view

    m_view->setMessage("Invalid Pillar Dimensions");
    QVERIFY(!m_view->drawing());
    QCOMPARE(m_view->zoom(), plot::Zoom());
    QCOMPARE(m_view->accessibleDescription(), "Invalid Pillar Dimensions");
    const int words = coloursOf(m_view->grab().toImage());
    m_view->setMessage({});
    QVERIFY(coloursOf(m_view->grab().toImage()) < words);
    QTest::keyClick(m_view.get(), Qt::Key_Plus);
    turnWheel(*m_view, {300, 200}, 1);
}

void PlanViewTest::zoomsAtThePointerAndFitsAgain() {
    const QImage whole = m_view->grab().toImage();
    // Where the pointer rests the drawing stays: turning forth and back moves nothing there.
    turnWheel(*m_view, {450, 150}, 3);
    const plot::Zoom closer = m_view->zoom();
    QCOMPARE(closer.factor, 1.25 * 1.25 * 1.25);
    turnWheel(*m_view, {450, 150}, 1);
    turnWheel(*m_view, {450, 150}, -1);
    QVERIFY(std::abs(m_view->zoom().centre.x - closer.centre.x) < 1e-6);
    QVERIFY(std::abs(m_view->zoom().centre.y - closer.centre.y) < 1e-6);
    QTest::mouseDClick(m_view.get(), Qt::LeftButton);
    QCOMPARE(m_view->grab().toImage(), whole);

    QTest::keyClick(m_view.get(), Qt::Key_Plus);
    QCOMPARE(m_view->zoom().factor, 1.25);
    QTest::keyClick(m_view.get(), Qt::Key_Minus);
    QTest::keyClick(m_view.get(), Qt::Key_Minus);
    QCOMPARE(m_view->zoom(), plot::Zoom());
    for (int i = 0; i < 40; ++i)
        QTest::keyClick(m_view.get(), Qt::Key_Plus);
    QCOMPARE(m_view->zoom().factor, 64.0);
    QVERIFY(!m_view->grab().isNull());
    QTest::keyClick(m_view.get(), Qt::Key_Home);
    QCOMPARE(m_view->zoom(), plot::Zoom());
    m_view->resize(300, 500);
    QVERIFY(coloursOf(m_view->grab().toImage()) > 20);
}

void PlanViewTest::movesByDraggingAndByKeys() {
    QTest::keyClick(m_view.get(), Qt::Key_Right);
    QCOMPARE(m_view->zoom(), plot::Zoom()); // all of it is in view
    turnWheel(*m_view, {300, 225}, 4);
    const plot::Point before = m_view->zoom().centre;
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, {300, 200});
    QTest::mouseMove(m_view.get(), {340, 200});
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, {340, 200});
    QVERIFY(m_view->zoom().centre.x < before.x);
    QCOMPARE(m_view->zoom().centre.y, before.y);
    QTest::keyClick(m_view.get(), Qt::Key_Down);
    QVERIFY(m_view->zoom().centre.y < before.y);
    for (int i = 0; i < 200; ++i)
        QTest::keyClick(m_view.get(), Qt::Key_Down);
    QCOMPARE(m_view->zoom().centre.y, m_view->drawing()->bounds.bottom); // never out of sight
}

void PlanViewTest::picturesAreOnWhitePaperInEveryTheme() {
    const QImage light = m_view->image(2);
    QCOMPARE(light.size(), QSize(1200, 900));
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Text, QColor(230, 230, 230));
    m_view->setPalette(dark);
    QCOMPARE(m_view->image(2), light);
    QVERIFY(qGray(m_view->grab().toImage().pixel(2, 300)) < 60);
    QCOMPARE(light.pixelColor(2, 600), QColor(Qt::white));
    QVERIFY(m_view->image(1e9).width() <= 16000);
}

QTEST_MAIN(PlanViewTest)
#include "planView_test.moc"
