#include "steps.h"

#include "framework/framework.h"
#include "host/attributeids.h"
#include "host/specialpropertyids.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/request.h"

#include <QtCore/QFile>
#include <QtWidgets/QUndoStack>

namespace
{

/// A request that sets something, and one that gets something.
Step setting(const char *name, int id, const QByteArray &input)
{
    return {QLatin1String(name), [id, input](Subject &subject) { subject.set(id, input); }};
}

Step getting(const char *name, int id, const QByteArray &input)
{
    return {QLatin1String(name), [id, input](Subject &subject) { subject.get(id, input); }};
}

Step attribute(const char *name, int id, const QByteArray &input)
{
    return {QLatin1String(name),
            [id, input](Subject &subject) { subject.setAttribute(id, input); }};
}

} // namespace

Steps::Steps(unsigned seed)
    : m_random(seed)
{
}

int Steps::number(int low, int high)
{
    return low + int(m_random() % unsigned(high - low + 1));
}

/// An index, sometimes of no frame.
qint32 Steps::index()
{
    return chance(10) ? number(-2, m_frameCount + 2) : number(0, qMax(0, m_frameCount - 1));
}

QImage Steps::picture()
{
    if (chance(5))
        return {};
    if (chance(15))
        return m_lastPicture;
    const bool isLarge = chance(3);
    const QSize size(isLarge ? number(258, 300) : number(1, 24), isLarge ? 257 : number(1, 24));
    constexpr QImage::Format formats[] = {
        QImage::Format_ARGB32,     QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied,
        QImage::Format_Grayscale8, QImage::Format_RGB32,  QImage::Format_RGB888};
    QImage image(size, QImage::Format_ARGB32);
    const int density = number(0, 100);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            line[x] = chance(density) ? 0xff204080u : 0u;
    }
    m_lastPicture = image.convertToFormat(formats[number(0, 5)]);
    return m_lastPicture;
}

QString Steps::pictureFile()
{
    const QString path = m_files.filePath(QStringLiteral("p%1_1.png").arg(++m_fileCount));
    picture().save(path);
    return path;
}

QString Steps::folder()
{
    const auto truth = [this] { return chance(50) ? "true" : "false"; };
    QByteArray list;
    for (int i = number(0, 4); i > 0; --i) {
        const QString name = QStringLiteral("f%1.png").arg(++m_fileCount);
        picture().save(m_files.filePath(name));
        list += (list.isEmpty() ? "" : ", ") + QByteArray("{\"filename\": \"") + name.toLatin1() +
                "\"}";
    }
    QFile config(m_files.filePath(QStringLiteral("config.json")));
    if (config.open(QIODevice::WriteOnly)) {
        config.write(QByteArray("{\"ImageList\": [") + list + "], \"ImageMirror\": " + truth() +
                     ", \"ImageFlip\": " + truth() + "}");
    }
    return m_files.path();
}

QString Steps::gif()
{
    const QString path = m_files.filePath(QStringLiteral("g%1.gif").arg(++m_fileCount));
    const QSize screen(number(4, 20), number(4, 20));
    GifBuilder film(screen.width(), screen.height());
    for (int i = number(1, 5); i > 0; --i) {
        GifBuilder::Frame frame;
        frame.rect = QRect(number(0, 2), number(0, 2), number(1, screen.width() - 2),
                           number(1, screen.height() - 2));
        frame.colorIndex = number(0, 3);
        frame.disposal = GifBuilder::RestoreBackground;
        film.add(frame);
    }
    film.write(path);
    return path;
}

Step Steps::next(int frameCount)
{
    m_frameCount = frameCount;
    constexpr int mostFrames = 30;
    if (frameCount == 0 || frameCount > mostFrames)
        return newFrames();
    using Maker = Step (Steps::*)();
    constexpr Maker makers[] = {&Steps::playback,  &Steps::playback,   &Steps::geometry,
                                &Steps::geometry,  &Steps::geometry,   &Steps::frameEdit,
                                &Steps::frameEdit, &Steps::insertion,  &Steps::undoable,
                                &Steps::undoable,  &Steps::takingOver, &Steps::mode,
                                &Steps::newFrames};
    return (this->*makers[number(0, int(std::size(makers)) - 1)])();
}

Step Steps::playback()
{
    switch (number(0, 9)) {
    case 0:
        return setting("play", SpecialPropertyId::Running, Request::packed(chance(70)));
    case 1:
        return setting("previous", SpecialPropertyId::ShowPreviousFrame, {});
    case 2:
        return setting("next", SpecialPropertyId::ShowNextFrame, {});
    case 3:
    case 4:
        return setting("show", SpecialPropertyId::ShowFrameAt, Request::packed(index()));
    case 5:
        return attribute("start steps", AttributeId::StartSteppedPlayback,
                         Request::packed(false, chance(30)));
    case 6:
        return attribute("enable timer", AttributeId::EnableTimer, Request::packed(chance(60)));
    case 7:
        return attribute("step", AttributeId::SteppedTick, {});
    default:
        return {QStringLiteral("tick"), [](Subject &subject) {
                    QMetaObject::invokeMethod(subject.image(), "onShiftTimeout");
                }};
    }
}

Step Steps::geometry()
{
    const QSizeF size(number(0, 60) / 2.0, number(1, 60) * 1.3);
    const QPointF place(number(-30, 60), number(-30, 60));
    const bool flag = chance(50);
    switch (number(0, 7)) {
    case 0:
    case 1:
        return {QStringLiteral("size"),
                [=](Subject &subject) { subject.image()->setSize(size, flag, true); }};
    case 2:
    case 3:
        return {QStringLiteral("centre"),
                [=](Subject &subject) { subject.image()->setCenterPos(place, size, 30.0, flag); }};
    case 4:
        return {QStringLiteral("mirror"),
                [=](Subject &subject) { subject.image()->setMirror(flag, true); }};
    case 5:
        return {QStringLiteral("flip"),
                [=](Subject &subject) { subject.image()->setFlip(flag, true); }};
    case 6:
        return {QStringLiteral("place"),
                [=](Subject &subject) { subject.image()->setPos(place, true); }};
    default:
        return {QStringLiteral("rotation"), [=](Subject &subject) {
                    subject.image()->setKTRotateType(flag ? 2 : 0);
                    subject.image()->setRotate(place.x(), true);
                }};
    }
}

Step Steps::frameEdit()
{
    switch (number(0, 3)) {
    case 0:
        return setting("delete", SpecialPropertyId::DeleteFrame, Request::packed(index()));
    case 1:
        return setting("move", SpecialPropertyId::MoveFrame, Request::packed(index(), index()));
    case 2:
        return setting("replace", SpecialPropertyId::FrameImage,
                       Request::packed(false, index(), picture()));
    default:
        return setting("move down", SpecialPropertyId::MoveFrame,
                       Request::packed(qint32(0), index()));
    }
}

Step Steps::insertion()
{
    switch (number(0, 2)) {
    case 0:
        return getting("blank", SpecialPropertyId::InsertBlankFrame, Request::packed(index()));
    case 1:
        return getting("duplicate", SpecialPropertyId::DuplicateFrame,
                       Request::packed(index(), index()));
    default:
        return getting("file", SpecialPropertyId::InsertImageFile,
                       Request::packed(index(), pictureFile()));
    }
}

Step Steps::undoable()
{
    switch (number(0, 5)) {
    case 0:
    case 1:
        return getting("replace all", SpecialPropertyId::ReplaceAllFrames,
                       Request::packed(pictureFile()));
    case 2:
    case 3:
        return {QStringLiteral("undo"),
                [](Subject &) { Framework::instance().undoStack()->undo(); }};
    case 4:
        return {QStringLiteral("redo"),
                [](Subject &) { Framework::instance().undoStack()->redo(); }};
    default:
        return setting("type", SpecialPropertyId::AnimatedType,
                       Request::packed(qint32(number(0, 1)), chance(50)));
    }
}

Step Steps::takingOver()
{
    const bool own = chance(25);
    switch (number(0, 3)) {
    case 0:
        return {QStringLiteral("copy"), [own](Subject &subject) {
                    CGDRootObject *source = own ? subject.image() : subject.other();
                    subject.set(SpecialPropertyId::CopyFromObject,
                                Request::packed(reinterpret_cast<qint64>(source)));
                }};
    case 1:
        return {QStringLiteral("load"), [](Subject &subject) {
                    QDataStream stream(subject.saved());
                    subject.image()->load(stream);
                }};
    case 2: {
        const QString path = gif();
        const bool mirror = chance(50);
        const QSizeF size(number(1, 50), number(1, 50));
        return {QStringLiteral("change the other"), [=](Subject &subject) {
                    subject.other()->loadFromFile(path);
                    subject.other()->setMirror(mirror, true);
                    subject.other()->setCenterPos(QPointF(5, 5), size, 0.0, mirror);
                }};
    }
    default:
        return {QStringLiteral("shape of the other"),
                [](Subject &subject) { (void)subject.other()->shape(); }};
    }
}

Step Steps::newFrames()
{
    if (chance(40)) {
        const QString path = gif();
        return {QStringLiteral("load a GIF"),
                [path](Subject &subject) { subject.image()->loadFromFile(path); }};
    }
    if (chance(50)) {
        const QString path = folder();
        return {QStringLiteral("load a folder"),
                [path](Subject &subject) { subject.image()->loadFromFile(path); }};
    }
    const QImage image = picture();
    return {QStringLiteral("load a picture"),
            [image](Subject &subject) { subject.image()->loadFromImage(&image); }};
}

Step Steps::mode()
{
    if (chance(50)) {
        return {QStringLiteral("present"),
                [](Subject &subject) { subject.document().enterAlternateMode(); }};
    }
    return {QStringLiteral("edit"),
            [](Subject &subject) { subject.document().leaveAlternateMode(); }};
}
