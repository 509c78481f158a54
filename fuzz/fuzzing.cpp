#include "fuzz/fuzzing.h"

#include "host/attributeids.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <cstdlib>

#include <unistd.h>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    new QApplication(*argc, *argv);
    return 0;
}

QByteArray Fuzzing::bytes(const uint8_t *data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
}

QString Fuzzing::file(const uint8_t *data, size_t size, const QString &suffix)
{
    const QString path =
        QDir::temp().filePath(QStringLiteral("fuzz-%1%2").arg(QString::number(getpid()), suffix));
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes(data, size)) == qint64(size),
            "the file could not be written");
    return path;
}

void Fuzzing::use(CAnimatedImage &image)
{
    QImage canvas(8, 8, QImage::Format_ARGB32);
    QPainter painter(&canvas);
    image.OnQPainterDraw(&painter);
    image.shape();
    image.boundingRect();
    image.getImageSize();
}

void Fuzzing::require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}
