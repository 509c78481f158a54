#include "tests/animatedimage/walks/actor.h"
#include "tests/animatedimage/walks/walkfiles.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QPainter>

namespace
{

QList<QImage> pictures(const SavedForm &form)
{
    QList<QImage> list;
    for (int number : form.pictures)
        list.append(PicturePool::instance().image(number));
    return list;
}

void prepare(QDataStream &stream, const Step &step)
{
    stream.setByteOrder(step.order());
    if (step.second > 0)
        stream.setVersion(step.second);
}

/// What the base writes, which it alone knows.
QByteArray baseBytes(CAnimatedImage *object, const Step &step)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    prepare(stream, step);
    object->CBaseObject::save(stream);
    return bytes;
}

/// What the object writes after it; @p gif in place of the pictures.
QByteArray tailBytes(Document *document, const Step &step, const SavedForm &form, QString gif)
{
    QByteArray tail = Wire::bytes({Wire::flag(!gif.isEmpty())}, step.order());
    if (!gif.isEmpty() || step.other) {
        QDataStream stream(&tail, QIODevice::Append);
        prepare(stream, step);
        QList<QImage> list = pictures(form);
        QStringList names;
        QStringList files;
        QString scratch;
        if (gif.isEmpty())
            document->streamImageList(stream, list, names, files, true);
        else
            document->streamFileReference(stream, gif, scratch, true);
    } else {
        QVector<WireItem> items{Wire::number(form.pictures.size())};
        for (int picture : form.pictures)
            items.append(Wire::picture(picture));
        tail += Wire::bytes(items, step.order());
    }
    return tail + Wire::bytes({Wire::number(form.interval), Wire::flag(form.keepRatio),
                               Wire::flag(form.mirror), Wire::flag(form.flip),
                               Wire::number(form.loopCount), Wire::flag(false),
                               Wire::flag(form.isRunning)},
                              step.order());
}

QString gifPath(const Step &step)
{
    return step.number < 0 ? QString() : WalkFiles::instance().sources().at(step.number).path;
}

/// The members that the object itself writes.
QJsonObject ownMembers(Document *document, const SavedForm &form, QString gif)
{
    QJsonObject json{{QStringLiteral("IsGif"), !gif.isEmpty()},
                     {QStringLiteral("ShiftInterval"), form.interval},
                     {QStringLiteral("LockScale"), form.keepRatio},
                     {QStringLiteral("ImageMirror"), form.mirror},
                     {QStringLiteral("ImageFlip"), form.flip},
                     {QStringLiteral("LoopCount"), form.loopCount},
                     {QStringLiteral("UseGifInterval"), false},
                     {QStringLiteral("IsRunning"), form.isRunning}};
    QList<QImage> list = pictures(form);
    if (gif.isEmpty())
        document->jsonImageList(json, list, QStringLiteral("ImageList"), true);
    else
        document->jsonFileReference(json, gif, QStringLiteral("GifFileName"), true);
    return json;
}

QString withoutFrames()
{
    return QStringLiteral("ImageList");
}

} // namespace

Found Actor::copyByStream(const Step &step, const Outcome &expected)
{
    CAnimatedImage *source = m_objects[size_t(step.object)];
    const int target = 1 - step.object;
    setKeepsImagesInline(!step.other);
    Found found;
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    prepare(out, step);
    found.result = source->save(out);
    const QByteArray base = baseBytes(source, step);
    const QByteArray tail = tailBytes(documentOf(step.object), step, expected.form, QString());
    if (bytes != base + tail)
        found.complaint = QStringLiteral("the stream form: %1 bytes, not %2")
                              .arg(bytes.size())
                              .arg(base.size() + tail.size());
    if (step.number >= 0)
        bytes = base + tailBytes(documentOf(step.object), step, expected.form, gifPath(step));
    bytes.chop(step.missing);

    CAnimatedImage *loaded = newObject();
    if (StagePage *page = pageOf(m_objects[size_t(target)]))
        page->addObject(loaded);
    QDataStream in(bytes);
    prepare(in, step);
    found.result = loaded->load(in) && found.result;
    setKeepsImagesInline(true);
    putInPlace(target, loaded, step.flag);
    return found;
}

Found Actor::copyByJson(const Step &step, const Outcome &expected)
{
    CAnimatedImage *source = m_objects[size_t(step.object)];
    const int target = 1 - step.object;
    setKeepsImagesInline(!step.other);
    Found found;
    QJsonObject json;
    found.result = source->saveJson(json);
    QJsonObject whole;
    source->CBaseObject::saveJson(whole);
    const QJsonObject base = whole;
    const auto add = [&whole](const QJsonObject &members) {
        for (auto member = members.begin(); member != members.end(); ++member)
            whole.insert(member.key(), member.value());
    };
    add(ownMembers(documentOf(step.object), expected.form, QString()));
    if (json != whole)
        found.complaint = QStringLiteral("the JSON form: ") +
                          QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact));
    if (step.number >= 0) {
        whole = base;
        add(ownMembers(documentOf(step.object), expected.form, gifPath(step)));
    }
    for (const QString &key : step.texts)
        whole.remove(key);
    const QJsonObject given = whole;

    CAnimatedImage *loaded = newObject();
    if (StagePage *page = pageOf(m_objects[size_t(target)]))
        page->addObject(loaded);
    found.result = loaded->loadJson(whole) && found.result;
    QJsonObject left = given;
    for (const QString &key : expected.missingKeys) {
        if (key != withoutFrames())
            left.insert(key, QJsonValue::Null);
    }
    // Whether the list of pictures is added as well is the document's choice.
    whole.remove(withoutFrames());
    left.remove(withoutFrames());
    if (whole != left && found.complaint.isEmpty())
        found.complaint = QStringLiteral("the members that reading adds");
    setKeepsImagesInline(true);
    putInPlace(target, loaded, step.flag);
    return found;
}

Found Actor::compareThumbnails(const Step &step, CAnimatedImage *object, const ModelObject &model)
{
    Found found;
    ThumbnailList list{{QStringLiteral("before"), QImage()}};
    object->GetAllThumbnail(step.flag, list);
    bool equal = list.size() == model.frames.size() + 1 &&
                 list.constFirst().first == QStringLiteral("before");
    PicturePool &pool = PicturePool::instance();
    for (int i = 0; equal && i < model.frames.size(); ++i) {
        const ModelFrame &frame = model.frames.at(i);
        const int picture = step.flag ? frame.picture : pool.thumbnail(frame.picture);
        equal = list.at(i + 1).first == frame.name && list.at(i + 1).second == pool.image(picture);
    }
    if (!equal)
        found.complaint = QStringLiteral("the list of thumbnails");
    return found;
}

Found Actor::comparePainting(const Step &step, CAnimatedImage *object, ModelObject model)
{
    Found found;
    constexpr int side = 40;
    QImage painted(side, side, QImage::Format_ARGB32_Premultiplied);
    painted.fill(step.flag ? Qt::white : Qt::transparent);
    QImage expected = painted;
    {
        QPainter painter(&painted);
        painter.translate(step.point);
        object->OnQPainterDraw(&painter);
        const auto hints =
            QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform;
        if ((painter.renderHints() & hints) != hints)
            found.complaint = QStringLiteral("the render hints");
    }
    object->OnQPainterDraw(nullptr);
    model.paint(expected, step.point);
    if (painted != expected)
        found.complaint = QStringLiteral("what is painted");
    return found;
}
