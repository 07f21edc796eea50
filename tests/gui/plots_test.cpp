// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/ui/frmPlots.h"

#include "GuiTest.h"
#include "plot/ui/DistributionChart.h"
#include "plot/ui/PlanView.h"
#include "project/CaseFile.h"
#include "run/caseRun.h"

#include <QAction>
#include <QCheckBox>
#include <QPainter>
#include <QTimer>

using namespace telvo;
using namespace telvo::test;

class PlotsTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void menuSwitchesWhatIsShown();
    void retreatIsOfferedOnlyWhereTheReportShowsIt();
    void picturesCarryTheirNumbersAndStayOnPaper();
    void picturesAreAlikeAtEveryResolution();
    void figuresNeverMeet_data();
    void figuresNeverMeet();
    void remindsOfThePrinterUntilTold();

  private:
    void open(const char* example);
    QAction& choice(const char* name) { return *m_window->findChild<QAction*>(name); }

    RecordedMessages m_messages;
    QStringList m_done; // commands that reached the actions
    std::unique_ptr<plot::ui::frmPlots> m_window;
};

void PlotsTest::open(const char* example) {
    m_done.clear();
    project::ProjectCase read;
    project::readCaseFile(std::string(TELVO_EXAMPLES_DIR) + "/" + example, read);
    const auto run = run::runCase(read);
    const auto note = [this](const char* what) {
        return [this, what](const chart::ui::Picture& picture, QWidget*) {
            m_done.append(QString(what) + ": " + QString::fromStdString(picture.name));
        };
    };
    m_window = std::make_unique<plot::ui::frmPlots>(
        plot::ui::PlotsView{
            {std::make_shared<const run::Run>(std::get<run::Run>(run)), {}}, {}, true},
        plot::ui::PlotActions{note("copy"), note("export"), note("print"),
                              [this] { m_done.append("stop"); }},
        ui::FormServices{m_messages, {}, nullptr});
    m_window->load();
}

void PlotsTest::menuSwitchesWhatIsShown() {
    open("two-side-gobs.TLV");
    QCOMPARE(m_window->windowTitle(), "Plots: two-side-gobs.TLV");
    auto& plan = control<plot::ui::PlanView>(*m_window, "Picture1");
    auto& chart = control<plot::ui::DistributionChart>(*m_window, "Picture2");
    QVERIFY(plan.isVisible() && !plan.drawing()->key);
    QVERIFY(choice("mnuRetreat").isChecked());

    choice("mnuStresses").trigger();
    QVERIFY(chart.isVisible() && !choice("mnuPanelLayout").isChecked());
    const double retreat = chart.distribution().bars.back().height;
    choice("mnuDevelopment").trigger();
    QVERIFY(chart.distribution().bars.back().height < retreat);
    QVERIFY(chart.accessibleDescription().contains("Pillar 4, 60 ft wide: stress "));

    choice("mnuCapacity").trigger();
    QCOMPARE(chart.distribution().bars.size(), 4U);
    QVERIFY(!choice("mnuDevelopment").isEnabled() && !choice("mnuRetreat").isEnabled());
    choice("mnuStressPlan").trigger();
    QVERIFY(plan.isVisible() && plan.drawing()->key);
    QCOMPARE(plan.drawing()->caption.back(), "Individual pillar stresses, development");
}

void PlotsTest::retreatIsOfferedOnlyWhereTheReportShowsIt() {
    open("development-mains.TLV");
    QVERIFY(choice("mnuDevelopment").isChecked());
    QVERIFY(!choice("mnuRetreat").isEnabled());
    choice("mnuCapacity").trigger();
    choice("mnuStresses").trigger();
    QVERIFY(!choice("mnuRetreat").isEnabled());
}

void PlotsTest::picturesCarryTheirNumbersAndStayOnPaper() {
    open("two-side-gobs.TLV");
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Text, QColor(230, 230, 230));
    m_window->setPalette(dark);
    QVERIFY(m_window->picture().csv.empty()); // the layout has no numbers
    for (const char* name : {"mnuPanelLayout", "mnuCapacity", "mnuStresses", "mnuCapacityPlan",
                             "mnuStressPlan", "mnuStrengthToStressPlan"}) {
        choice(name).trigger();
        const chart::ui::Picture picture = m_window->picture();
        QCOMPARE(picture.csv.empty(), name == QByteArray("mnuPanelLayout"));
        QVERIFY2(picture.name.find_first_of("/\\:&") == std::string::npos, picture.name.c_str());
        QImage image(picture.size.toSize(), QImage::Format_RGB32);
        image.fill(Qt::gray);
        QPainter painter(&image);
        picture.paint(painter, QRectF(QPointF(), picture.size));
        painter.end();
        QCOMPARE(image.pixelColor(3, 3), QColor(Qt::white));
        QCOMPARE(image.pixelColor(image.width() - 3, image.height() - 3), QColor(Qt::white));
    }
    QCOMPARE(qGray(control(*m_window, "Picture1").grab().toImage().pixel(3, 3)), 30);
    click(*m_window, "cmdCopy");
    click(*m_window, "cmdExport");
    QCOMPARE(m_done, QStringList({"copy: two-side-gobs Colored Plan Strength to Stress",
                                  "export: two-side-gobs Colored Plan Strength to Stress"}));
}

void PlotsTest::picturesAreAlikeAtEveryResolution() {
    open("two-side-gobs.TLV");
    choice("mnuStresses").trigger();
    const chart::ui::Picture picture = m_window->picture();
    const auto painted = [&](int dpi) {
        const double scale = dpi / 96.0;
        QImage image((picture.size * scale).toSize(), QImage::Format_RGB32);
        image.setDotsPerMeterX(qRound(dpi / 0.0254));
        image.setDotsPerMeterY(image.dotsPerMeterX());
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(scale, scale);
        picture.paint(painter, QRectF(QPointF(), picture.size));
        painter.end();
        return image.scaled(90, 70, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    const QImage coarse = painted(96);
    const QImage fine = painted(384);
    int different = 0;
    for (int y = 0; y < 70; ++y)
        for (int x = 0; x < 90; ++x)
            different += std::abs(qGray(coarse.pixel(x, y)) - qGray(fine.pixel(x, y))) > 60;
    QVERIFY2(different < 60, qPrintable(QString::number(different)));
}

void PlotsTest::figuresNeverMeet_data() {
    QTest::addColumn<QString>("example");
    for (const char* example : {"two-side-gobs.TLV", "deep-cover.TLV", "one-side-gob-slab-cut.TLV",
                                "metric-two-side-gobs.TLV", "retreat-one-section.TLV"})
        QTest::newRow(example) << example;
}

void PlotsTest::figuresNeverMeet() {
    QFETCH(QString, example);
    open(example.toUtf8());
    choice("mnuStresses").trigger();
    for (const QSize size : {QSize(440, 420), QSize(900, 700), QSize(1600, 500)}) {
        m_window->resize(size);
        QTest::qWait(20);
        auto& chart = control<plot::ui::DistributionChart>(*m_window, "Picture2");
        std::vector<QRectF> taken;
        for (int i = 0; i < chart.itemCount(); ++i) {
            const auto* figure = qobject_cast<QCPItemText*>(chart.item(i));
            if (!figure || !figure->visible()) continue;
            const QPointF corner = figure->topLeft->pixelPosition();
            const QRectF box = QRectF(corner, figure->bottomRight->pixelPosition())
                                   .normalized()
                                   .adjusted(2, 2, -2, -2);
            QVERIFY(chart.rect().contains(box.toRect()));
            for (const QRectF& other : taken)
                QVERIFY2(!other.intersects(box), qPrintable(figure->objectName()));
            taken.push_back(box);
        }
        QVERIFY(taken.size() >= chart.distribution().bars.size());
    }
}

void PlotsTest::remindsOfThePrinterUntilTold() {
    open("retreat-one-section.TLV");
    int reminders = 0;
    const auto printAnswering = [&](bool never, const char* button) {
        QTimer::singleShot(0, this, [&reminders, never, button] {
            auto* reminder = QApplication::activeModalWidget();
            if (!reminder) return;
            ++reminders;
            control<QCheckBox>(*reminder, "chkDoNotShow").setChecked(never);
            click(*reminder, button);
        });
        click(*m_window, "cmdPrint");
        QTest::qWait(0);
    };
    const QString printed = "print: retreat-one-section Panel Layout";
    printAnswering(true, "cmdCancel"); // neither printed nor given up
    QCOMPARE(m_done, QStringList());
    printAnswering(false, "cmdOK");
    QCOMPARE(m_done, QStringList({printed}));
    printAnswering(true, "cmdOK");
    printAnswering(true, "cmdOK");
    QCOMPARE(m_done, QStringList({printed, "stop", printed, printed}));
    QCOMPARE(reminders, 3);
}

QTEST_MAIN(PlotsTest)
#include "plots_test.moc"
