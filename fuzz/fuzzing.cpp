#include "fuzz/fuzzing.h"

#include "host/attributeids.h"
#include "host/gdpage.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <cstdlib>
#include <map>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    new QApplication(*argc, *argv);
    return 0;
}

namespace
{

template<typename... Values>
void send(CAnimatedImage &image, int id, const Values &...values)
{
    QDataStream stream(Request::packed(values...));
    image.SetAttribute(id, stream, true);
}

/// What a view does with an object.
void look(CAnimatedImage &image)
{
    QImage canvas(8, 8, QImage::Format_ARGB32);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    image.paint(&painter, nullptr, nullptr);
    image.contains(QPointF(1, 1));
    image.boundingRect();
    image.getImageSize();
    image.getPos();
}

/// The tile of a background has four times the size of the object.
bool isPresentable(const CAnimatedImage &image)
{
    const QSizeF size = image.getSize();
    constexpr double tileBytesPerPixel = 16.0;
    return size.width() * size.height() * tileBytesPerPixel <= double(Fuzzing::MaxMemory);
}

void step(CAnimatedImage &image)
{
    send(image, AttributeId::EnableTimer, false);
    send(image, AttributeId::StartSteppedPlayback, false, false);
    for (int tick = 0; tick < 3; ++tick)
        send(image, AttributeId::SteppedTick);
    look(image);
    send(image, AttributeId::EnableTimer, true);
}

void present(CAnimatedImage &image)
{
    auto &document = dynamic_cast<StageDocument &>(*image.GetPage()->document());
    send(image, AttributeId::EnterAlternateMode);
    document.setAlternateMode(1);
    look(image);
    image.setPos(image.getPos() + QPointF(3, -2), true);
    look(image);
    step(image);
    document.setAlternateMode(0);
    send(image, AttributeId::LeaveAlternateMode);
}

} // namespace

namespace Fuzzing
{

QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
}

const QDir &folder()
{
    static const QTemporaryDir made;
    static const QDir folder(made.path());
    return folder;
}

QString file(const uint8_t *data, size_t size, const QString &suffix)
{
    const QString path = folder().filePath(QStringLiteral("input") + suffix);
    write(path, bytes(data, size));
    return path;
}

void write(const QString &path, const QByteArray &content)
{
    static std::map<QString, QFile> files;
    QFile &file = files[path];
    if (!file.isOpen()) {
        file.setFileName(path);
        require(file.open(QIODevice::ReadWrite), "the file could not be opened");
    }
    const bool isWritten = (file.size() == content.size() || file.resize(content.size())) &&
                           file.seek(0) && file.write(content) == content.size() && file.flush();
    require(isWritten, "the file could not be written");
}

void use(CAnimatedImage &image)
{
    look(image);
    if (isPresentable(image))
        present(image);
    look(image);
}

void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

} // namespace Fuzzing
