#include <hostcontract/BasePresenter.h>
#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayItem2DObserver.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/GenericPlotManager.h>
#include <hostcontract/MainWindowPresenter.h>
#include <hostcontract/PlotDescription.h>
#include <hostcontract/ProcessDesignerPresenter.h>
#include <hostcontract/Vector.h>
#include <hostcontract/ViewBase.h>
#include <hostcontract/ViewTransformationProvider.h>
#include <hostcontract/VirtualDrawArea.h>

#include <referencehost/plot2d/MaterialGenerator.h>
#include <referencehost/plot2d/PlotCurveItem2D.h>
#include <referencehost/plot2d/PlotLabelItem.h>
#include <referencehost/plot2d/PlotLegendItem2D.h>
#include <referencehost/plot2d/SamplePlots.h>

#include "SmallStack.h"

#include <QApplication>
#include <QImage>
#include <QTest>
#include <QWidget>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Brennvik;
using Vec3 = Vector<float, 3>;

namespace {

// Records each event with what the item looked like when it came.
class Recorder : public DisplayItem2DObserver
{
public:
    explicit Recorder(std::shared_ptr<DisplayItem2D> item = nullptr)
        : m_item(item)
    {
        observe(item);
    }

    void onDisplayItemModified() override
    {
        events.push_back("modified");
        if (auto item = m_item.lock())
            visibilities.push_back(int(item->getVisibility()));
        if (reaction)
            reaction();
    }
    void onChildAdded(DisplayItem2D* parent, std::shared_ptr<DisplayItem2D> child) override
    {
        events.push_back("added " + child->getDisplayName() + " to " + parent->getDisplayName());
        if (reaction)
            reaction();
    }
    void onChildRemoved(DisplayItem2D* parent, std::shared_ptr<DisplayItem2D> child) override
    {
        events.push_back("removed " + child->getDisplayName() + " from " + parent->getDisplayName()
                         + (child->getParent() ? " (still attached)" : ""));
        if (reaction)
            reaction();
    }

    std::vector<std::string> events;
    std::vector<int> visibilities;
    std::function<void()> reaction;

private:
    std::weak_ptr<DisplayItem2D> m_item;
};

QStringList toStringList(const std::vector<std::string>& texts)
{
    QStringList list;
    for (const std::string& text : texts)
        list << QString::fromStdString(text);
    return list;
}

// Pixels of exactly \a color in \a image.
int countPixels(const QImage& image, const QColor& color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color)
                ++count;
        }
    }
    return count;
}

} // namespace

class tst_Plot2DModel : public QObject
{
    Q_OBJECT

private slots:
    // Items and observers
    void newItemIsVisibleAndPlain();
    void eventComesFromInsideSetVisibility();
    void settingTheSameVisibilityRaisesNothing();
    void drawnAndDataRange_data();
    void drawnAndDataRange();
    void childEventsCarryParentAndChild();
    void insertChildPlacesChildAndRaisesOneEvent();
    void movingChildRaisesRemovedThenAdded();
    void adoptingSelfOrAncestorThrows();
    void removingStrangerRaisesNothing();
    void propertiesInOrderAndReplacedInPlace();
    void observerStoppingDuringEventIsSkipped();
    void observerDestroyedDuringEventIsSkipped();
    void observerStartingDuringEventGetsNextEvent();
    void observerDestructorUnregisters();
    void observerOutlivingItemIsSafe();
    void observerFollowsSeveralItems();
    void itemDroppedByObserverDuringEventSurvivesDispatch();

    // Model, manager, presenters
    void modelCountsUpdatesAndTellsListeners();
    void managerModelCanBeReplacedOrDropped();
    void virtualDrawAreaRepaintsLiveWidgets();
    void designerForgetsDestroyedWidgets();
    void presenterIsBasePresenterThroughVirtualBase();

    // Widget
    void widgetPaintsDrawnCurvesOnly();
    void widgetRepaintsOnDisplayUpdate();
    void widgetIsFoundAsQObject();
    void widgetPaintsADeepChain();
    void deepChainIsAdoptedCheckedAndFreedOnASmallStack();

    // 3D side
    void vectorAddsComponentWise();
    void transformation_data();
    void transformation();
    void viewForgetsDestroyedWidget();
    void plotLabelCarriesAnchorAndDescription();
    void materialGeneratorPropertyFollowsWindow();
    void samplePlotTree();
};

void tst_Plot2DModel::newItemIsVisibleAndPlain()
{
    auto item = std::make_shared<DisplayItem2D>("Curve");
    QCOMPARE(item->getDisplayName(), std::string("Curve"));
    QCOMPARE(item->getVisibility(), DisplayItem2D::Visible);
    QCOMPARE(int(DisplayItem2D::Visible), 0);
    QCOMPARE(int(DisplayItem2D::NotVisible), 1);
    QVERIFY(item->getChildren().empty());
    QCOMPARE(item->getParent(), nullptr);
    PropertyList business, display;
    item->getProperties(business, display);
    QVERIFY(business.empty());
    QVERIFY(display.empty());
}

void tst_Plot2DModel::eventComesFromInsideSetVisibility()
{
    auto item = std::make_shared<DisplayItem2D>("Curve");
    Recorder recorder(item);
    bool insideCall = false;
    bool heardInside = false;
    recorder.reaction = [&]() { heardInside = insideCall; };

    insideCall = true;
    item->setVisibility(DisplayItem2D::NotVisible);
    insideCall = false;
    // The event came before setVisibility returned, with the new value in place.
    QVERIFY(heardInside);
    QCOMPARE(recorder.events.size(), std::size_t(1));
    QCOMPARE(recorder.visibilities, std::vector<int>{1});
    recorder.reaction = nullptr;

    item->setVisibility(DisplayItem2D::Visibility(2));
    QCOMPARE(recorder.visibilities, (std::vector<int>{1, 2}));
}

void tst_Plot2DModel::settingTheSameVisibilityRaisesNothing()
{
    auto item = std::make_shared<DisplayItem2D>("Curve");
    Recorder recorder(item);
    item->setVisibility(DisplayItem2D::Visible);
    QVERIFY(recorder.events.empty());
}

void tst_Plot2DModel::drawnAndDataRange_data()
{
    QTest::addColumn<int>("parentVisibility");
    QTest::addColumn<int>("childVisibility");
    QTest::addColumn<bool>("drawn");
    QTest::addColumn<bool>("inDataRange");

    QTest::newRow("both visible") << 0 << 0 << true << true;
    QTest::newRow("child hidden") << 0 << 1 << false << true;
    QTest::newRow("parent hidden") << 1 << 0 << false << true;
    QTest::newRow("child excluded") << 0 << 2 << false << false;
    QTest::newRow("parent excluded") << 2 << 0 << false << false;
}

void tst_Plot2DModel::drawnAndDataRange()
{
    QFETCH(int, parentVisibility);
    QFETCH(int, childVisibility);
    QFETCH(bool, drawn);
    QFETCH(bool, inDataRange);

    auto parent = std::make_shared<DisplayItem2D>("Curves");
    auto child = std::make_shared<DisplayItem2D>("Punch");
    parent->appendChild(child);
    parent->setVisibility(DisplayItem2D::Visibility(parentVisibility));
    child->setVisibility(DisplayItem2D::Visibility(childVisibility));
    QCOMPARE(child->isDrawn(), drawn);
    QCOMPARE(child->isInDataRange(), inDataRange);
}

void tst_Plot2DModel::childEventsCarryParentAndChild()
{
    auto parent = std::make_shared<DisplayItem2D>("Curves");
    auto child = std::make_shared<DisplayItem2D>("Punch");
    Recorder recorder(parent);
    Recorder childRecorder(child);

    parent->appendChild(child);
    QCOMPARE(child->getParent(), parent.get());
    QVERIFY(parent->removeChild(child));
    QCOMPARE(child->getParent(), nullptr);

    QCOMPARE(toStringList(recorder.events), (QStringList{"added Punch to Curves", "removed Punch from Curves"}));
    QVERIFY(childRecorder.events.empty()); // child events go to the parent's observers
}

void tst_Plot2DModel::insertChildPlacesChildAndRaisesOneEvent()
{
    auto parent = std::make_shared<DisplayItem2D>("Curves");
    parent->appendChild(std::make_shared<DisplayItem2D>("a"));
    parent->appendChild(std::make_shared<DisplayItem2D>("b"));
    Recorder recorder(parent);
    parent->insertChild(0, std::make_shared<DisplayItem2D>("first"));
    QCOMPARE(parent->getChildren().front()->getDisplayName(), std::string("first"));
    QCOMPARE(toStringList(recorder.events), QStringList{"added first to Curves"});
    QVERIFY_EXCEPTION_THROWN(parent->insertChild(9, std::make_shared<DisplayItem2D>("far")), std::out_of_range);
}

void tst_Plot2DModel::movingChildRaisesRemovedThenAdded()
{
    auto root = std::make_shared<DisplayItem2D>("root");
    auto left = std::make_shared<DisplayItem2D>("left");
    auto right = std::make_shared<DisplayItem2D>("right");
    auto child = std::make_shared<DisplayItem2D>("child");
    root->appendChild(left);
    root->appendChild(right);
    left->appendChild(child);
    Recorder leftRecorder(left);
    Recorder rightRecorder(right);

    right->appendChild(child);
    QCOMPARE(toStringList(leftRecorder.events), QStringList{"removed child from left"});
    QCOMPARE(toStringList(rightRecorder.events), QStringList{"added child to right"});
    QVERIFY(left->getChildren().empty());
    QCOMPARE(child->getParent(), right.get());

    // Appending a child again moves it to the end.
    right->appendChild(std::make_shared<DisplayItem2D>("other"));
    right->appendChild(child);
    QCOMPARE(right->getChildren().back(), child);
    QCOMPARE(right->getChildren().size(), std::size_t(2));
}

void tst_Plot2DModel::adoptingSelfOrAncestorThrows()
{
    auto root = std::make_shared<DisplayItem2D>("root");
    auto child = std::make_shared<DisplayItem2D>("child");
    root->appendChild(child);
    QVERIFY_EXCEPTION_THROWN(root->appendChild(root), std::invalid_argument);
    QVERIFY_EXCEPTION_THROWN(child->appendChild(root), std::invalid_argument);
    QVERIFY_EXCEPTION_THROWN(root->appendChild(nullptr), std::invalid_argument);
}

void tst_Plot2DModel::removingStrangerRaisesNothing()
{
    auto root = std::make_shared<DisplayItem2D>("root");
    Recorder recorder(root);
    QVERIFY(!root->removeChild(std::make_shared<DisplayItem2D>("stranger")));
    QVERIFY(!root->removeChild(nullptr));
    QVERIFY(recorder.events.empty());
}

void tst_Plot2DModel::propertiesInOrderAndReplacedInPlace()
{
    auto curve = std::make_shared<PlotCurveItem2D>("Punch", QColor(255, 0, 0), std::vector<QPointF>{{0, 0}, {1, 1}});
    Recorder recorder(curve);
    curve->setBusinessProperty("tool", "Punch");
    curve->setBusinessProperty("unit", "kN");
    curve->setDisplayProperty("line", "solid");
    curve->setBusinessProperty("tool", "Upper punch");
    QCOMPARE(recorder.events.size(), std::size_t(4));

    PropertyList business, display;
    curve->getProperties(business, display);
    QCOMPARE(business, (PropertyList{{"tool", "Upper punch"}, {"unit", "kN"}}));
    QCOMPARE(display, (PropertyList{{"color", "#ff0000"}, {"points", "2"}, {"line", "solid"}}));
}

void tst_Plot2DModel::observerStoppingDuringEventIsSkipped()
{
    auto item = std::make_shared<DisplayItem2D>("item");
    Recorder first(item);
    Recorder second(item);
    first.reaction = [&second, &item]() { second.stopObserving(item); };
    item->notifyModified();
    QCOMPARE(first.events.size(), std::size_t(1));
    QVERIFY(second.events.empty());
    QCOMPARE(item->observerCount(), std::size_t(1));
}

void tst_Plot2DModel::observerDestroyedDuringEventIsSkipped()
{
    auto item = std::make_shared<DisplayItem2D>("item");
    Recorder first(item);
    auto second = std::make_unique<Recorder>(item);
    first.reaction = [&second]() { second.reset(); };
    item->notifyModified();
    QCOMPARE(first.events.size(), std::size_t(1));
    QVERIFY(!second);
    QCOMPARE(item->observerCount(), std::size_t(1));
}

void tst_Plot2DModel::observerStartingDuringEventGetsNextEvent()
{
    auto item = std::make_shared<DisplayItem2D>("item");
    Recorder first(item);
    Recorder late;
    first.reaction = [&late, &item]() { late.observe(item); };
    item->notifyModified();
    QVERIFY(late.events.empty());
    item->notifyModified();
    QCOMPARE(late.events.size(), std::size_t(1));
}

void tst_Plot2DModel::observerDestructorUnregisters()
{
    auto item = std::make_shared<DisplayItem2D>("item");
    {
        Recorder recorder(item);
        QVERIFY(item->isObservedBy(&recorder));
        QCOMPARE(recorder.observedItemCount(), std::size_t(1));
    }
    QCOMPARE(item->observerCount(), std::size_t(0));
    item->notifyModified(); // nobody left to call
}

void tst_Plot2DModel::observerOutlivingItemIsSafe()
{
    Recorder recorder;
    {
        auto item = std::make_shared<DisplayItem2D>("item");
        recorder.observe(item);
        QCOMPARE(recorder.observedItemCount(), std::size_t(1));
    }
    QCOMPARE(recorder.observedItemCount(), std::size_t(0));
    recorder.stopObservingAll();
}

void tst_Plot2DModel::observerFollowsSeveralItems()
{
    auto a = std::make_shared<DisplayItem2D>("a");
    auto b = std::make_shared<DisplayItem2D>("b");
    Recorder recorder;
    recorder.observe(a);
    recorder.observe(b);
    recorder.observe(a); // once only
    a->notifyModified();
    b->notifyModified();
    QCOMPARE(recorder.events.size(), std::size_t(2));
    QCOMPARE(a->observerCount(), std::size_t(1));
    recorder.stopObserving(a);
    a->notifyModified();
    QCOMPARE(recorder.events.size(), std::size_t(2));
    QCOMPARE(recorder.observedItemCount(), std::size_t(1));
}

void tst_Plot2DModel::itemDroppedByObserverDuringEventSurvivesDispatch()
{
    auto item = std::make_shared<DisplayItem2D>("item");
    std::weak_ptr<DisplayItem2D> weak = item;
    Recorder first(item);
    Recorder second(item);
    first.reaction = [&item]() { item.reset(); };
    weak.lock()->notifyModified();
    // The item lived until its dispatch ended: both observers heard of it.
    QCOMPARE(first.events.size(), std::size_t(1));
    QCOMPARE(second.events.size(), std::size_t(1));
    QVERIFY(weak.expired());
}

void tst_Plot2DModel::modelCountsUpdatesAndTellsListeners()
{
    DisplayModel2D model;
    QCOMPARE(model.getRootDisplayItem(), nullptr);
    std::vector<int> heard;
    const int id = model.addUpdateListener([&heard](DisplayUpdate2D update) { heard.push_back(int(update)); });
    model.doDisplayUpdate(DisplayUpdate2D::Full);
    model.doDisplayUpdate(DisplayUpdate2D::Items);
    QCOMPARE(model.displayUpdateCount(), 2);
    QCOMPARE(model.lastDisplayUpdate(), DisplayUpdate2D::Items);
    QCOMPARE(heard, (std::vector<int>{0, 1}));
    model.removeUpdateListener(id);
    model.doDisplayUpdate(DisplayUpdate2D::Full);
    QCOMPARE(heard.size(), std::size_t(2));
    QCOMPARE(int(DisplayUpdate2D::Full), 0);
}

void tst_Plot2DModel::managerModelCanBeReplacedOrDropped()
{
    GenericPlotManager manager("Force");
    DisplayModel2DProvider& provider = manager;
    QVERIFY(provider.getDisplayModel2D());
    auto other = std::make_shared<DisplayModel2D>();
    manager.setDisplayModel2D(other);
    QCOMPARE(provider.getDisplayModel2D(), other.get());
    manager.setDisplayModel2D(nullptr);
    QCOMPARE(provider.getDisplayModel2D(), nullptr);
    QCOMPARE(manager.title(), std::string("Force"));
}

void tst_Plot2DModel::virtualDrawAreaRepaintsLiveWidgets()
{
    VirtualDrawArea area;
    auto* kept = new QWidget;
    auto* gone = new QWidget;
    area.addWidget(kept);
    area.addWidget(gone);
    area.addWidget(kept);
    QCOMPARE(area.widgets().size(), std::size_t(2));
    delete gone;
    QCOMPARE(area.redraw(), 1);
    QCOMPARE(area.redrawCount(), 1);
    QCOMPARE(area.widgets(), std::vector<QWidget*>{kept});
    delete kept;
}

void tst_Plot2DModel::designerForgetsDestroyedWidgets()
{
    ProcessDesignerPresenter designer;
    auto* a = new QWidget;
    auto* b = new QWidget;
    designer.addDrawArea2D(a);
    designer.addDrawArea2D(b);
    designer.addDrawArea2D(nullptr);
    QCOMPARE(designer.getDrawAreas2D(), (std::set<QWidget*>{a, b}));
    QCOMPARE(designer.getVirtualDrawArea()->widgets().size(), std::size_t(2));
    delete a;
    QCOMPARE(designer.getDrawAreas2D(), std::set<QWidget*>{b});
    designer.removeDrawArea2D(b);
    QVERIFY(designer.getDrawAreas2D().empty());
    QVERIFY(designer.getVirtualDrawArea()->widgets().empty());
    delete b;
}

void tst_Plot2DModel::presenterIsBasePresenterThroughVirtualBase()
{
    MainWindowPresenter presenter;
    ProcessDesignerPresenter* left = presenter.getLeftProcessDesigner();
    QVERIFY(left);
    QVERIFY(presenter.getRightProcessDesigner() && presenter.getRightProcessDesigner() != left);
    BasePresenter* base = left;
    QVERIFY(base->getVirtualDrawArea());
    QCOMPARE(base->getVirtualDrawArea(), left->getVirtualDrawArea());
    static_assert(std::is_base_of_v<BasePresenter, ProcessDesignerPresenter>, "a presenter");
}

void tst_Plot2DModel::widgetPaintsDrawnCurvesOnly()
{
    const QColor red(255, 0, 0);
    const QColor blue(0, 0, 255);
    auto root = std::make_shared<DisplayItem2D>("Plot");
    auto redCurve = std::make_shared<PlotCurveItem2D>("Red", red, std::vector<QPointF>{{0, 0}, {10, 10}});
    auto group = std::make_shared<DisplayItem2D>("Group");
    auto blueCurve = std::make_shared<PlotCurveItem2D>("Blue", blue, std::vector<QPointF>{{0, 10}, {10, 0}});
    root->appendChild(redCurve);
    root->appendChild(group);
    group->appendChild(blueCurve);

    GenericPlotManager manager;
    manager.getDisplayModel2D()->setRootDisplayItem(root);
    BkHQWidget2D widget;
    widget.resize(300, 200);
    widget.setPlotManager(&manager);
    QCOMPARE(widget.getPlotManager(), &manager);

    QVERIFY(countPixels(widget.grab().toImage(), red) > 20);
    QVERIFY(countPixels(widget.grab().toImage(), blue) > 20);

    redCurve->setVisibility(DisplayItem2D::NotVisible);
    QCOMPARE(countPixels(widget.grab().toImage(), red), 0);
    QVERIFY(countPixels(widget.grab().toImage(), blue) > 20);

    group->setVisibility(DisplayItem2D::NotVisible); // hides its subtree
    QCOMPARE(countPixels(widget.grab().toImage(), blue), 0);

    widget.setPlotManager(nullptr);
    QCOMPARE(countPixels(widget.grab().toImage(), red), 0);
}

// A plot whose items nest far deeper than a recursive walk's stack allows:
// the curve at the bottom is drawn, and the chain is freed with the manager.
void tst_Plot2DModel::widgetPaintsADeepChain()
{
    const QColor red(255, 0, 0);
    // Built from the bottom up, so that each adoption checks a short way up.
    std::shared_ptr<DisplayItem2D> top
        = std::make_shared<PlotCurveItem2D>("Red", red, std::vector<QPointF>{{0, 0}, {10, 10}});
    for (int level = 0; level < 300000; ++level) {
        auto parent = std::make_shared<DisplayItem2D>("Level");
        parent->appendChild(top);
        top = std::move(parent);
    }
    {
        GenericPlotManager manager;
        manager.getDisplayModel2D()->setRootDisplayItem(top);
        BkHQWidget2D widget;
        widget.resize(300, 200);
        widget.setPlotManager(&manager);
        QVERIFY(countPixels(widget.grab().toImage(), red) > 20);
        top->setVisibility(DisplayItem2D::NotVisible); // hides the whole chain
        QCOMPARE(countPixels(widget.grab().toImage(), red), 0);
        widget.setPlotManager(nullptr);
    }
    top.reset();
}

void tst_Plot2DModel::deepChainIsAdoptedCheckedAndFreedOnASmallStack()
{
    bool refusedCycle = false;
    bool refusedSelf = false;
    std::size_t depth = 0;
    Test::runOnSmallStack([&] {
        // Built from the top down: every adoption is below a deep item.
        auto root = std::make_shared<DisplayItem2D>("Root");
        std::shared_ptr<DisplayItem2D> bottom = root;
        for (int level = 0; level < 20000; ++level) {
            auto child = std::make_shared<DisplayItem2D>("Level");
            bottom->appendChild(child);
            bottom = std::move(child);
        }
        try {
            bottom->appendChild(root);
        } catch (const std::invalid_argument&) {
            refusedCycle = true;
        }
        try {
            bottom->appendChild(bottom);
        } catch (const std::invalid_argument&) {
            refusedSelf = true;
        }
        for (const DisplayItem2D* item = bottom.get(); item->getParent(); item = item->getParent())
            ++depth;
        bottom.reset();
        root.reset();
    });
    QVERIFY(refusedCycle);
    QVERIFY(refusedSelf);
    QCOMPARE(depth, std::size_t(20000));
}

void tst_Plot2DModel::widgetRepaintsOnDisplayUpdate()
{
    GenericPlotManager manager;
    auto root = std::make_shared<DisplayItem2D>("Plot");
    root->appendChild(std::make_shared<PlotLegendItem2D>("Legend"));
    manager.getDisplayModel2D()->setRootDisplayItem(root);

    struct PaintCounter : BkHQWidget2D
    {
        int paints = 0;
        void paintEvent(QPaintEvent* event) override
        {
            ++paints;
            BkHQWidget2D::paintEvent(event);
        }
    } widget;
    widget.resize(200, 150);
    widget.setPlotManager(&manager);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QCoreApplication::processEvents();
    const int before = widget.paints;
    manager.getDisplayModel2D()->doDisplayUpdate(DisplayUpdate2D::Full);
    QTRY_VERIFY(widget.paints > before);

    // A replaced model is followed; the dropped one no longer reaches the widget.
    auto replacement = std::make_shared<DisplayModel2D>();
    DisplayModel2D* old = manager.getDisplayModel2D();
    auto keepOld = manager.sharedDisplayModel2D();
    manager.setDisplayModel2D(replacement);
    widget.repaint();
    const int afterRepaint = widget.paints;
    old->doDisplayUpdate(DisplayUpdate2D::Full);
    QCoreApplication::processEvents();
    QCOMPARE(widget.paints, afterRepaint);
    replacement->doDisplayUpdate(DisplayUpdate2D::Full);
    QTRY_VERIFY(widget.paints > afterRepaint);
}

void tst_Plot2DModel::widgetIsFoundAsQObject()
{
    QWidget window;
    auto* inner = new QWidget(&window);
    auto* plot = new BkHQWidget2D(inner);
    plot->setObjectName("any name");
    QCOMPARE(window.findChildren<BkHQWidget2D*>(), QList<BkHQWidget2D*>{plot});
    QObject* object = plot;
    QCOMPARE(qobject_cast<BkHQWidget2D*>(object), plot);
    QCOMPARE(QString(BkHQWidget2D::staticMetaObject.className()), QStringLiteral("Brennvik::BkHQWidget2D"));
}

void tst_Plot2DModel::vectorAddsComponentWise()
{
    Vector<float, 3> zero;
    QCOMPARE(zero.x(), 0.0f);
    QCOMPARE(zero.y(), 0.0f);
    QCOMPARE(zero.z(), 0.0f);
    Vector<float, 3> a(1.5f, -2.0f, 3.0f);
    Vector<float, 3>& result = (a += Vector<float, 3>(0.5f, 1.0f, -3.0f));
    QCOMPARE(&result, &a);
    QCOMPARE(a, Vec3(2.0f, -1.0f, 0.0f));
}

void tst_Plot2DModel::transformation_data()
{
    QTest::addColumn<float>("scale");
    QTest::addColumn<float>("azimuth");
    QTest::addColumn<float>("elevation");
    QTest::addColumn<QVector<float>>("world");
    QTest::addColumn<QVector<float>>("pixel");

    QTest::newRow("default: y up on screen")
        << 1.0f << 0.0f << 0.0f << QVector<float>{12.9f, 3.7f, 5.0f} << QVector<float>{12.9f, -3.7f, 5.0f};
    QTest::newRow("scaled about the origin")
        << 2.0f << 0.0f << 0.0f << QVector<float>{1.0f, 1.0f, 0.0f} << QVector<float>{102.0f, 48.0f, 0.0f};
    QTest::newRow("turned a quarter") << 1.0f << 90.0f << 0.0f << QVector<float>{1.0f, 0.0f, 0.0f}
                                      << QVector<float>{100.0f, 49.0f, 0.0f};
    QTest::newRow("seen from the front") << 1.0f << 0.0f << 90.0f << QVector<float>{0.0f, 1.0f, 1.0f}
                                         << QVector<float>{100.0f, 49.0f, -1.0f};
}

void tst_Plot2DModel::transformation()
{
    QFETCH(float, scale);
    QFETCH(float, azimuth);
    QFETCH(float, elevation);
    QFETCH(QVector<float>, world);
    QFETCH(QVector<float>, pixel);

    ViewTransformationProvider provider;
    if (scale != 1.0f || azimuth != 0.0f || elevation != 0.0f)
        provider.setOrigin(100.0f, 50.0f);
    provider.setScale(scale);
    provider.setAzimuth(azimuth);
    provider.setElevation(elevation);
    const Vector<float, 3> result
        = provider.transformWorldToPixelCoordinates(Vector<float, 3>(world[0], world[1], world[2]));
    QVERIFY2(qAbs(result.x() - pixel[0]) < 1e-4f, qPrintable(QString::number(result.x())));
    QVERIFY2(qAbs(result.y() - pixel[1]) < 1e-4f, qPrintable(QString::number(result.y())));
    QVERIFY2(qAbs(result.z() - pixel[2]) < 1e-4f, qPrintable(QString::number(result.z())));
}

void tst_Plot2DModel::viewForgetsDestroyedWidget()
{
    ViewBase view;
    QCOMPARE(view.getViewWidget(), nullptr);
    auto* widget = new QWidget;
    view.setViewWidget(widget);
    QCOMPARE(view.getViewWidget(), widget);
    view.mainWindowTransformationProvider().setScale(3.0f);
    QCOMPARE(view.getMainWindowTransformationProvider().scale(), 3.0f);
    delete widget;
    QCOMPARE(view.getViewWidget(), nullptr);
}

void tst_Plot2DModel::plotLabelCarriesAnchorAndDescription()
{
    DisplayModel2D model;
    auto description = std::make_shared<PlotDescription>("Punch force", &model);
    auto label = std::make_shared<PlotLabelItem>("Force label", "Punch force", description,
                                                 Vector<float, 3>(1.0f, 2.0f, 3.0f));
    QCOMPARE(label->getPlotDescription(), description.get());
    QCOMPARE(label->getPlotDescription()->getDisplayModel2D(), &model);
    QCOMPARE(label->getAnchorPointForDisplay(), Vec3(1.0f, 2.0f, 3.0f));
    std::shared_ptr<DisplayItemInterface> asInterface = label;
    QVERIFY(std::dynamic_pointer_cast<PlotLabelDisplayItem>(asInterface));
    QVERIFY(std::dynamic_pointer_cast<LabelDisplayItem>(asInterface));

    auto copy = std::dynamic_pointer_cast<PlotLabelItem>(label->copyWithoutChildren());
    QVERIFY(copy);
    QCOMPARE(copy->getPlotDescription(), description.get());
    QCOMPARE(copy->getAnchorPointForDisplay(), label->getAnchorPointForDisplay());
    QCOMPARE(copy->getLabel(), std::string("Punch force"));
    QCOMPARE(copy->typeName(), std::string("PlotLabelItem"));

    PropertyList business, display;
    label->getProperties(business, display);
    QVERIFY(std::find(display.begin(), display.end(), Property("plot", "Punch force")) != display.end());
    QVERIFY(std::find(display.begin(), display.end(), Property("anchor", "1, 2, 3")) != display.end());
}

void tst_Plot2DModel::materialGeneratorPropertyFollowsWindow()
{
    QCOMPARE(materialGeneratorWindow(), nullptr);
    auto* window = new QWidget;
    setMaterialGeneratorWindow(window);
    QCOMPARE(materialGeneratorWindow(), window);
    QCOMPARE(qApp->property("MaterialGenerator").value<QWidget*>(), window);
    delete window;
    QVERIFY(!qApp->property("MaterialGenerator").isValid());
    QCOMPARE(materialGeneratorWindow(), nullptr);

    auto* other = new QWidget;
    setMaterialGeneratorWindow(other);
    setMaterialGeneratorWindow(nullptr);
    QVERIFY(!qApp->property("MaterialGenerator").isValid());
    delete other;
}

void tst_Plot2DModel::samplePlotTree()
{
    const auto root = buildSamplePlotTree("Punch force", "Force [kN]");
    QCOMPARE(root->getDisplayName(), std::string("Punch force"));
    std::vector<std::string> names;
    for (const auto& child : root->getChildren())
        names.push_back(child->getDisplayName());
    QCOMPARE(toStringList(names), (QStringList{"Axes", "Curves", "Legend"}));
    QCOMPARE(root->getChildren()[1]->getChildren().size(), std::size_t(3));
}

QTEST_MAIN(tst_Plot2DModel)
#include "tst_plot2dmodel.moc"
