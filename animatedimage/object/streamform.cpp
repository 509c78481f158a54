#include "animatedimage/core/picturestream.h"
#include "animatedimage/object/savedform.h"
#include "host/gddocument.h"

#include <QtCore/QDataStream>

#include <new>

bool CAnimatedImage::save(QDataStream &stream)
try {
    QList<QImage> images = SavedForm{*this}.storeOtherParams();
    CBaseObject::save(stream);
    getBelongDoc();

    const bool isGifReference = false;
    stream << isGifReference;
    if (m_belongDoc->keepsImagesInline()) {
        stream << images;
    } else {
        QStringList names;
        QStringList files;
        m_belongDoc->streamImageList(stream, images, names, files, true);
    }

    const bool usesGifInterval = false;
    stream << qint32(m_shiftInterval) << m_keepRatio << m_mirror << m_flip << qint32(m_loopCount)
           << usesGifInterval << m_isRunning;
    return true;
} catch (const std::bad_alloc &) {
    return false;
}

bool CAnimatedImage::load(QDataStream &stream)
try {
    CBaseObject::load(stream);
    SavedForm::Frames saved = SavedForm{*this}.restoreOtherParams();
    getBelongDoc();

    bool isGifReference = false;
    QString gifPath;
    stream >> isGifReference;
    if (isGifReference) {
        QString scratch;
        m_belongDoc->streamFileReference(stream, gifPath, scratch, false);
    } else if (m_belongDoc->keepsImagesInline()) {
        saved.images = PictureStream::readList(stream);
    } else {
        QStringList names;
        QStringList files;
        m_belongDoc->streamImageList(stream, saved.images, names, files, false);
    }

    qint32 shiftInterval = 0;
    qint32 loopCount = 0;
    bool usesGifInterval = false;
    stream >> shiftInterval >> m_keepRatio >> m_mirror >> m_flip >> loopCount >> usesGifInterval >>
        m_isRunning;
    m_shiftInterval = shiftInterval;
    m_loopCount = loopCount;
    m_isRunning = false;

    if (isGifReference)
        loadFromGifFile(gifPath);
    SavedForm{*this}.finishLoading(saved);
    return true;
} catch (const std::bad_alloc &) {
    return false;
}
