#include "animatedimage/object/animatedimage.h"

#include "animatedimage/core/framelist.h"
#include "animatedimage/core/jsonkeys.h"
#include "animatedimage/core/thumbnail.h"
#include "animatedimage/object/liveobjects.h"
#include "host/framework.h"
#include "host/gddocument.h"
#include "host/gdpage.h"
#include "host/notificationcodes.h"

#include <QtCore/QTimer>

#include <new>

CAnimatedImage::CAnimatedImage(int objectId, bool editable, QGraphicsItem *parent)
    : CBaseObject(objectId, editable, parent, nullptr)
    , m_belongDoc(nullptr)
    , m_shiftTimer(nullptr)
    , m_isRunning(false)
    , m_runningIndex(0)
    , m_loopsDone(0)
    , m_shiftInterval(200)
    , m_keepRatio(true)
    , m_mirror(false)
    , m_flip(false)
    , m_loopCount(LoopForever)
    , m_playEnabled(true)
    , m_wasRunning(false)
    , m_elapsedMs(0)
    , m_animatedType(-1)
    , m_savedRunning(false)
    , m_savedIndex(0)
    , m_handleSize(getHandleSize())
{
    m_objName = QStringLiteral("animated image");
    m_rectStale = true;
    m_hasShape = true;

    m_shiftTimer = new QTimer(this);
    m_shiftTimer->setInterval(m_shiftInterval);
    connect(m_shiftTimer, SIGNAL(timeout()), this, SLOT(onShiftTimeout()));

    LiveObjects::add(this);
}

CAnimatedImage::~CAnimatedImage()
{
    LiveObjects::remove(this);
    delete m_shiftTimer;
    m_shiftTimer = nullptr;
}

int CAnimatedImage::type() const
{
    return TypeNumber;
}

void CAnimatedImage::Release()
{
    delete this;
}

QString CAnimatedImage::getObjName()
{
    return m_objName;
}

QSize CAnimatedImage::getImageSize()
{
    return isFrame(m_runningIndex) ? m_portraits.at(m_runningIndex).image.size() : QSize(0, 0);
}

void CAnimatedImage::getBelongDoc()
try {
    if (const IGdPage *page = GetPage())
        m_belongDoc = page->document();
    if (!m_belongDoc)
        m_belongDoc = GetFramework()->defaultDocument();
} catch (const std::bad_alloc &) {
}

bool CAnimatedImage::isFrame(int index) const
{
    return FrameList::holds(m_portraits.size(), index);
}

bool CAnimatedImage::isBackgroundType() const
{
    return m_animatedType == BackgroundType;
}

bool CAnimatedImage::isAlternateMode() const
{
    return m_belongDoc && m_belongDoc->alternateMode() != 0;
}

QString CAnimatedImage::nameOnPage() const
{
    return getOtherParams(JsonKey::ObjectName).toString();
}

void CAnimatedImage::addFrames(const QList<CAnimatedPortrait> &frames)
{
    framesWithSizes() += frames;
    m_regions.noteNewFrames();
}

QList<CAnimatedPortrait> &CAnimatedImage::framesWithSizes()
{
    m_scale.apply(m_portraits);
    return m_portraits;
}

bool CAnimatedImage::notifyShownContent()
{
    return outlives([this] { notifyObjPropertyChanged(PropertyChange::ShownContent, QString()); });
}

QString CAnimatedImage::generatePortraitName(const QString &baseText, bool stemAllowed) const
try {
    return FrameList::freeName(m_portraits, baseText, stemAllowed);
} catch (const std::bad_alloc &) {
    return QString();
}

void CAnimatedImage::GetAllThumbnail(bool fullSize, ThumbnailList &out) const
try {
    // All or none, without memory too.
    ThumbnailList all;
    for (const CAnimatedPortrait &frame : m_portraits)
        all.append({frame.name, fullSize ? frame.image : thumbnail(frame.image)});
    out += all;
} catch (const std::bad_alloc &) {
}
