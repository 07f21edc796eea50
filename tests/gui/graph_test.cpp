// SPDX-License-Identifier: GPL-3.0-or-later
#include "GuiTest.h"
#include "study/ui/frmGraph.h"
#include "study/ui/GraphView.h"

#include <QLabel>
#include <QPainter>

using namespace telvo;
using namespace telvo::study;
using namespace telvo::test;

namespace {

/// SF over a depth of 400 to 1200 ft: 2000 / depth in development; in retreat 1200 / depth up to
/// 600 ft, a tenth less from there to 1000 ft, and nothing beyond.
SfGraph sample() {
    SfGraph graph{GraphKind::DepthCover, 0, 400, 1200, 800, {}, {}};
    graph.curves = {{"Development", {{}}, {}, {}, GraphPoint{800, 2.5}},
                    {"Retreat", {{}, {}}, {}, {}, GraphPoint{800, 1.35}}};
    for (int i = 0; i <= 100; ++i) {
        const double x = 400 + 8 * i;
        graph.curves[0].pieces[0].push_back({x, 2000 / x});
        if (x <= 1000) graph.curves[1].pieces[x > 600].push_back({x, (x > 600 ? 1080 : 1200) / x});
    }
    auto& after = graph.curves[1].pieces[1];
    after.insert(after.begin(), {600.0005, 1.8});
    graph.curves[1].jumps = {{600, 2, 1.8, "arch factor"}, {1000, 1.08, {}, "breadth of the AMZ"}};
    graph.limits = {{"SF 1.5", {{400, 1.5}, {1200, 1.5}}}};
    return graph;
}

GraphOptions options() {
    GraphOptions made;
    made.GraphTitle = "TELVO";
    made.XAxisTitle = "Depth of Cover";
    made.YAxisTitle = "Stability Factor";
    return made;
}

/// The graph window with actions that only remember.
struct Desk {
    RecordedMessages messages;
    std::optional<GraphOptions> edited;
    std::vector<double> targets;
    std::vector<std::string> done;
    std::variant<study::ui::GraphSubject, Refusal> open = Refusal{"no such graph", "Error", ""};
    study::ui::frmGraph form{{sample(), "Mains.TLV", "numbers",
                              [this](double target) {
                                  targets.push_back(target);
                                  return std::vector<Crossing>{
                                      {"Retreat", 600, true, "arch factor"},
                                      {"Retreat", 720, false, {}}};
                              }},
                             options(),
                             {{note("copy"), note("export"), note("print")},
                              [this] { return open; },
                              [this](QWidget*) { return edited; }},
                             {messages, {}}};
    study::ui::GraphView& view = control<study::ui::GraphView>(form, "grfSF");

    std::function<void(const telvo::chart::ui::Picture&, QWidget*)> note(std::string what) {
        return [this, what = std::move(what)](const telvo::chart::ui::Picture& picture, QWidget*) {
            done.push_back(what + " " + picture.name + " " + picture.csv);
        };
    }
    QString text(const char* label) const { return control<QLabel>(form, label).text(); }
};

std::vector<const QCPGraph*> series(const QCustomPlot& chart, const QString& name) {
    std::vector<const QCPGraph*> found;
    for (int i = 0; i < chart.graphCount(); ++i)
        if (chart.graph(i)->name() == name) found.push_back(chart.graph(i));
    return found;
}

} // namespace

class GraphTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void everyPieceIsASeries();
    void optionsChangeTheDrawing();
    void theCrossHairReadsTheCurves();
    void targetsAreLookedFor();
    void aTowerDoesNotFlattenTheRest();
    void picturesAreInkOnWhitePaper();
    void itFollowsTheCaseUnlessItIsPinned();
    void aLabelStandsNearestToItsOwnMark_data();
    void aLabelStandsNearestToItsOwnMark();
};

void GraphTest::everyPieceIsASeries() {
    const Desk desk;
    QCOMPARE(desk.form.windowTitle(), "Graph: SF vs Depth of Cover - Mains.TLV");
    const auto pieces = series(desk.view, "piece:Retreat");
    QCOMPARE(pieces.size(), 2U);
    QCOMPARE(pieces[0]->data()->at(25)->key, 600.0); // 400 + 8 * 25, the last before the jump
    QCOMPARE(pieces[0]->data()->size(), 26);
    QCOMPARE(pieces[1]->data()->at(0)->value, 1.8);
    QCOMPARE((pieces[1]->data()->constEnd() - 1)->key, 1000.0);
    const auto jumps = series(desk.view, "jumps:Retreat"); // none towards the gap
    QCOMPARE(jumps.size(), 1U);
    QCOMPARE(jumps[0]->data()->at(0)->value, 2.0);
    QCOMPARE(jumps[0]->data()->at(1)->value, 1.8);
    QCOMPARE(series(desk.view, "open:Retreat").at(0)->data()->at(0)->value, 1.8);
    QCOMPARE(series(desk.view, "closed:Retreat").at(0)->data()->at(1)->key, 1000.0);
    QCOMPARE(series(desk.view, "own:Retreat").at(0)->data()->at(0)->value, 1.35);
    QCOMPARE(series(desk.view, "limit:SF 1.5").size(), 1U);
    const int symbols = series(desk.view, "symbols:Development").at(0)->data()->size();
    QVERIFY(symbols >= 15 && symbols <= 25);
}

void GraphTest::optionsChangeTheDrawing() {
    Desk desk;
    show(desk.form);
    QVERIFY(!desk.view.xAxis->grid()->visible() && !desk.view.yAxis->grid()->visible());
    QCOMPARE(desk.view.legend->itemCount(), 3);
    click(desk.form, "cmdOptions"); // cancelled
    QCOMPARE(desk.view.options().GraphUnits, 0);
    desk.edited = options();
    desk.edited->GridStyle = 1;
    desk.edited->GraphStyle = 2;
    desk.edited->CurveLegend = 0;
    desk.edited->GraphUnits = 1;
    click(desk.form, "cmdOptions");
    QVERIFY(!desk.view.xAxis->grid()->visible() && desk.view.yAxis->grid()->visible());
    QCOMPARE(desk.view.legend->itemCount(), 0);
    QVERIFY(series(desk.view, "symbols:Retreat").empty());
    QCOMPARE(desk.view.xAxis->label(), "Depth of Cover (m)");
    // 400 ft are 121.92 m, and 800 ft are 243.84 m.
    const double first = series(desk.view, "piece:Development").at(0)->data()->at(0)->key;
    QVERIFY(std::abs(first - 121.92) < 1e-9);
    QCOMPARE(desk.text("lblReading"), "Depth of cover 243.84 m: development 2.50, retreat 1.35");
    desk.edited->GraphStyle = 1;
    click(desk.form, "cmdOptions");
    QCOMPARE(series(desk.view, "piece:Retreat").at(0)->pen().style(), Qt::NoPen);
    QCOMPARE(series(desk.view, "symbols:Retreat").size(), 1U);
}

void GraphTest::theCrossHairReadsTheCurves() {
    Desk desk;
    show(desk.form);
    QVERIFY(desk.view.hasFocus());
    QTest::keyClick(&desk.view, Qt::Key_Right); // 200 readings or more on 800 ft: steps of 2 ft
    QCOMPARE(desk.view.reading(), 802.0);
    QTest::keyClick(&desk.view, Qt::Key_Left, Qt::ControlModifier);
    QCOMPARE(desk.view.reading(), 782.0);
    QTest::keyClick(&desk.view, Qt::Key_End);
    QCOMPARE(desk.text("lblReading"), "Depth of cover 1200 ft: development 1.67, retreat no value");
    QTest::mouseMove(&desk.view, QPoint(static_cast<int>(desk.view.xAxis->coordToPixel(600)), 150));
    QTRY_VERIFY(std::abs(desk.view.reading() - 600) <= 2);
    desk.view.setReading(600); // the value of the place itself lies before the jump
    QCOMPARE(desk.text("lblReading"), "Depth of cover 600 ft: development 3.33, retreat 2.00\n"
                                      "Retreat jumps at 600 ft from 2.00 to 1.80: arch factor");
    desk.view.setReading(1e9);
    QCOMPARE(desk.view.reading(), 1200.0);
}

void GraphTest::targetsAreLookedFor() {
    Desk desk;
    show(desk.form);
    type(desk.form, "txtTargetSF", "0");
    QTest::keyClick(&control(desk.form, "txtTargetSF"), Qt::Key_Return);
    QVERIFY(desk.messages.asked.back().starts_with("Graph: Range Error: Stability factor: Value"));
    QVERIFY(desk.targets.empty() && !control(desk.form, "lblCrossings").isVisible());
    type(desk.form, "txtTargetSF", "1,5");
    QTest::keyClick(&control(desk.form, "txtTargetSF"), Qt::Key_Return);
    QCOMPARE(desk.targets, std::vector<double>{1.5});
    QCOMPARE(desk.text("lblCrossings"), "Development: never SF = 1.5 from 400 ft to 1200 ft\n"
                                        "Retreat: 600 ft (jump: arch factor); 720 ft");
}

void GraphTest::aTowerDoesNotFlattenTheRest() {
    SfGraph graph = sample();
    graph.curves[0].pieces[0][0].y = 1e6;
    const Span span = factorSpan(graph);
    QCOMPARE(span.low, 0.0);
    QVERIFY(span.high > 2.5 && span.high < 12);
    QCOMPARE(factorSpan({}).high, 1.0); // nothing to show
}

void GraphTest::picturesAreInkOnWhitePaper() {
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    Desk desk;
    desk.form.setPalette(dark);
    QCOMPARE(desk.view.xAxis->labelColor(), QColor(Qt::white));
    for (const char* name : {"cmdExport", "cmdCopy", "cmdPrint"})
        click(desk.form, name);
    const std::string picture = " SF vs Depth of Cover - Mains.TLV numbers";
    QCOMPARE(desk.done,
             (std::vector<std::string>{"export" + picture, "copy" + picture, "print" + picture}));
    // A device of twice the resolution, as a printer is: the page keeps its size.
    QImage paper(700, 500, QImage::Format_RGB32);
    paper.setDotsPerMeterX(2 * paper.dotsPerMeterX());
    paper.setDotsPerMeterY(2 * paper.dotsPerMeterY());
    paper.fill(Qt::white);
    QPainter painter(&paper);
    desk.form.picture().paint(painter, QRectF(50, 50, 400, 300));
    painter.end();
    QRegion inked;
    for (int y = 0; y < paper.height(); ++y)
        for (int x = 0; x < paper.width(); ++x)
            if (paper.pixelColor(x, y).lightness() < 128) inked += QRect(x, y, 1, 1);
    QVERIFY(QRect(50, 50, 400, 300).contains(inked.boundingRect()));
    QVERIFY(inked.boundingRect().width() > 300 && inked.boundingRect().height() > 250);
}

void GraphTest::itFollowsTheCaseUnlessItIsPinned() {
    Desk desk;
    show(desk.form);
    const auto banner = [&desk] {
        const auto* label = desk.form.findChild<QLabel*>("lblOutdated");
        return label && label->isVisible() ? label->text() : QString();
    };
    SfGraph other = sample();
    other.ownValue = 600;
    for (Curve& curve : other.curves)
        curve.own = GraphPoint{600, 1.17};
    desk.open = study::ui::GraphSubject{other, "North.TLV", "other numbers", {}};
    desk.form.caseChanged("");
    QCOMPARE(desk.form.windowTitle(), "Graph: SF vs Depth of Cover - Mains.TLV");
    desk.form.caseChanged("Depth of Cover is 600 ft now.");
    QCOMPARE(desk.form.windowTitle(), "Graph: SF vs Depth of Cover - North.TLV");
    QCOMPARE(series(desk.view, "own:Retreat").at(0)->data()->at(0)->value, 1.17);
    QCOMPARE(desk.view.reading(), 600.0);
    QCOMPARE(banner(), QString());
    desk.form.setCaseName("North 2.TLV");
    QCOMPARE(desk.form.windowTitle(), "Graph: SF vs Depth of Cover - North 2.TLV");

    click(desk.form, "chkPin");
    desk.open = study::ui::GraphSubject{sample(), "Mains.TLV", "numbers", {}};
    desk.form.caseChanged("Another case is open.");
    QCOMPARE(desk.form.windowTitle(), "Graph: SF vs Depth of Cover - North 2.TLV (pinned, not the "
                                      "open case any more)");
    QCOMPARE(banner(), "This graph is pinned. Another case is open.");
    QCOMPARE(series(desk.view, "own:Retreat").at(0)->data()->at(0)->value, 1.17);
    QTest::keyClick(&desk.form, Qt::Key_F5);
    QTRY_COMPARE(desk.form.windowTitle(), "Graph: SF vs Depth of Cover - Mains.TLV (pinned)");
    QCOMPARE(banner(), QString());

    // A case that has no such graph leaves the old one, and says so.
    click(desk.form, "chkPin");
    desk.open = Refusal{"no such graph", "Error", ""};
    desk.form.caseChanged("Another case is open.");
    QVERIFY(banner().contains("The open case has none: no such graph"));
    QCOMPARE(desk.form.windowTitle(),
             "Graph: SF vs Depth of Cover - Mains.TLV (not the open case any more)");
}

void GraphTest::aLabelStandsNearestToItsOwnMark_data() {
    QTest::addColumn<double>("development");
    QTest::addColumn<double>("retreat");
    // Far apart, close, closer, the wrong way round, and alike.
    for (const auto& [development, retreat] :
         {std::pair{2.5, 1.35}, {1.79, 1.65}, {1.70, 1.66}, {1.66, 1.70}, {1.5, 1.5}})
        QTest::addRow("%g and %g", development, retreat) << development << retreat;
}

void GraphTest::aLabelStandsNearestToItsOwnMark() {
    QFETCH(double, development);
    QFETCH(double, retreat);
    SfGraph graph = sample();
    for (const auto& [curve, own] : {std::pair{0U, development}, {1U, retreat}})
        for (auto& piece : graph.curves[curve].pieces)
            for (GraphPoint& point : piece)
                point.y = own * 800 / point.x;
    graph.curves[0].own->y = development;
    graph.curves[1].own->y = retreat;
    for (const double place : {800.0, 404.0, 1196.0}) {
        for (Curve& curve : graph.curves)
            curve.own->x = place;
        for (const QSize size : {QSize(420, 330), QSize(700, 500), QSize(1500, 900)}) {
            study::ui::GraphView view("grfSF", graph, "caption", options());
            view.resize(size);
            view.show();
            view.replot();
            const auto boxOf = [&view](const QString& curve) {
                const auto* label = view.findChild<QCPItemText*>("ownLabel:" + curve);
                return QRectF(label->topLeft->pixelPosition(), label->bottomRight->pixelPosition());
            };
            const auto gap = [&](const QRectF& box, double y) {
                const QPointF mark(view.xAxis->coordToPixel(place), view.yAxis->coordToPixel(y));
                return std::hypot(std::max({box.left() - mark.x(), mark.x() - box.right(), 0.0}),
                                  std::max({box.top() - mark.y(), mark.y() - box.bottom(), 0.0}));
            };
            const QRectF first = boxOf("Development"), second = boxOf("Retreat");
            QVERIFY(!first.intersects(second));
            if (development == retreat) continue;
            QVERIFY(gap(first, development) < gap(first, retreat));
            QVERIFY(gap(second, retreat) < gap(second, development));
        }
    }
}

QTEST_MAIN(GraphTest)
#include "graph_test.moc"
