#include <SceneView3D.h>

#include <QColor>
#include <QTest>

using namespace Brennvik;

// The 3D view's colours of items that name none: the pictures of the
// application show them, on whichever Qt it is built with.
class tst_SceneView3D : public QObject
{
    Q_OBJECT

private slots:
    void fallbackColourFollowsTheNameOnly_data();
    void fallbackColourFollowsTheNameOnly();
};

void tst_SceneView3D::fallbackColourFollowsTheNameOnly_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("hue");

    QTest::newRow("Drawbeads") << "Drawbeads" << 65;
    QTest::newRow("Trim lines") << "Trim lines" << 145;
    QTest::newRow("Forming simulation") << "Forming simulation" << 321;
    QTest::newRow("no name") << QString() << 0;
}

void tst_SceneView3D::fallbackColourFollowsTheNameOnly()
{
    QFETCH(QString, name);
    QFETCH(int, hue);
    QCOMPARE(fallbackTileColor(name), QColor::fromHsv(hue, 70, 210));
}

QTEST_MAIN(tst_SceneView3D)
#include "tst_sceneview3d.moc"
