// SPDX-License-Identifier: MIT
// Image, overlays and tools of the image view.
#include "view/PictureView.h"

#include "tests/support/QtTestMain.h"
#include "view/ZoomGraphicsView.h"

#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QMouseEvent>

#include <memory>

class PictureViewTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void aNewSceneIsEmptyAndUnscaled();
    void theFirstFrameOfAScene();
    void aDisplayedFrameIsNotPaintedAgain();
    void theCrossIsPaintedIntoACopy();
    void framesAreFittedOnDemand();
    void overlaysMoveToANewScene();
    void aRemovedOverlayIsDeleted();
    void aToolReceivesTheMouseInImagePixels();
    void aToolMayLeaveTheMouseToTheView();

private:
    QImage displayed() const { return m_images->item()->pixmap().toImage(); }

    QObject m_owner; // of all scenes
    std::unique_ptr<ZoomGraphicsView> m_view;
    std::unique_ptr<PictureView> m_images;
};

namespace {

QPixmap greyPixmap(int width = 40, int height = 30)
{
    QPixmap pixmap(width, height);
    pixmap.fill(Qt::gray);
    return pixmap;
}

/// Records events, and reports them as used or not.
class RecordingTool : public ImageTool {
public:
    explicit RecordingTool(bool uses) : m_uses(uses) {}
    bool mouseEvent(const QMouseEvent &event, QPointF at) override
    {
        types.push_back(event.type());
        last = at;
        return m_uses;
    }
    std::vector<QEvent::Type> types;
    QPointF last;

private:
    const bool m_uses;
};

} // namespace

void PictureViewTest::init()
{
    m_images = std::make_unique<PictureView>();
    m_view = std::make_unique<ZoomGraphicsView>(nullptr);
    m_view->resize(200, 200);
    m_images->attach(m_view.get());
    m_images->renewScene(&m_owner);
}

void PictureViewTest::aNewSceneIsEmptyAndUnscaled()
{
    const QGraphicsScene *first = m_view->scene();
    m_images->showFrame(greyPixmap(), {});
    m_view->scale(2, 2);
    m_images->renewScene(&m_owner);
    QVERIFY(m_view->scene() != first);
    QCOMPARE(first->parent(), &m_owner); // the previous scene stays, without its image
    QVERIFY(first->items().isEmpty());
    QVERIFY(m_images->item()->pixmap().isNull());
    QVERIFY(!m_images->hasFrame());
    QVERIFY(m_view->transform().isIdentity());
    QCOMPARE(m_view->dragMode(), QGraphicsView::ScrollHandDrag);
}

void PictureViewTest::theFirstFrameOfAScene()
{
    QVERIFY(!m_images->hasFrame());
    QVERIFY(m_images->showFrame(greyPixmap(), {}));
    QVERIFY(m_images->hasFrame());
    QVERIFY(!m_images->showFrame(greyPixmap(), {}));
    m_images->renewScene(&m_owner);
    QVERIFY(m_images->showFrame(greyPixmap(), {}));
}

void PictureViewTest::aDisplayedFrameIsNotPaintedAgain()
{
    const QPixmap frame = greyPixmap();
    CenterCross cross;
    m_images->showFrame(frame, cross);
    const qint64 painted = m_images->item()->pixmap().cacheKey();
    m_images->showFrame(frame, cross);
    QCOMPARE(m_images->item()->pixmap().cacheKey(), painted);
    cross.width = 3;
    m_images->showFrame(frame, cross);
    QVERIFY(m_images->item()->pixmap().cacheKey() != painted);
    m_images->showFrame(frame, {});
    QCOMPARE(m_images->item()->pixmap().cacheKey(), frame.cacheKey());
}

void PictureViewTest::theCrossIsPaintedIntoACopy()
{
    const QPixmap frame = greyPixmap(41, 31);
    CenterCross cross;
    cross.width = 1;
    cross.color = Qt::blue;
    m_images->showFrame(frame, cross);
    for (int x = 0; x < 41; ++x) {
        for (int y = 0; y < 31; ++y)
            QCOMPARE(displayed().pixelColor(x, y) == QColor(Qt::blue), x == 20 || y == 15);
    }
    QCOMPARE(frame.toImage(), greyPixmap(41, 31).toImage());
}

void PictureViewTest::framesAreFittedOnDemand()
{
    m_images->showFrame(greyPixmap(), {});
    QVERIFY(m_view->transform().isIdentity());
    m_images->fit() = true;
    m_images->showFrame(greyPixmap(), {});
    QVERIFY(m_view->transform().m11() > 4);
}

void PictureViewTest::overlaysMoveToANewScene()
{
    auto *overlay = new QGraphicsRectItem(1, 2, 3, 4);
    m_images->addOverlay(overlay);
    m_images->renewScene(&m_owner);
    QCOMPARE(overlay->scene(), m_view->scene());
    // Above the image.
    QCOMPARE(m_view->scene()->items(QPointF(2, 3)).first(), static_cast<QGraphicsItem *>(overlay));
}

void PictureViewTest::aRemovedOverlayIsDeleted()
{
    auto *overlay = new QGraphicsRectItem(1, 2, 3, 4);
    m_images->addOverlay(overlay);
    m_images->removeOverlay(overlay);
    QCOMPARE(m_view->scene()->items().size(), 1);
    m_images->renewScene(&m_owner);
    QCOMPARE(m_view->scene()->items().size(), 1);
}

void PictureViewTest::aToolReceivesTheMouseInImagePixels()
{
    m_images->showFrame(greyPixmap(), {});
    m_view->scale(2, 2);
    RecordingTool tool(true);
    m_images->setTool(&tool);
    const QPoint at = m_view->mapFromScene(QPointF(10, 5));
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QVERIFY((tool.last - QPointF(10, 5)).manhattanLength() <= 1);
    QVERIFY(m_view->viewport()->cursor().shape() != Qt::ClosedHandCursor); // the view does not drag
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QCOMPARE(tool.types,
             (std::vector<QEvent::Type>{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    m_images->setTool(nullptr);
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QCOMPARE(tool.types.size(), std::size_t{2});
}

void PictureViewTest::aToolMayLeaveTheMouseToTheView()
{
    RecordingTool tool(false);
    m_images->setTool(&tool);
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(9, 9));
    QCOMPARE(m_view->viewport()->cursor().shape(), Qt::ClosedHandCursor);
}

ORVALIS_QTEST_MAIN(PictureViewTest)
#include "PictureViewTest.moc"
