#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/base/zipwriter.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/object/plugin.h"
#include "framework/page.h"
#include "fuzz/fuzzing.h"

#include <QtCore/QCryptographicHash>
#include <QtGui/QPainter>

namespace
{

QList<QByteArray> parts(const QByteArray &input)
{
    const QByteArray separator("\n--\n");
    QList<QByteArray> found;
    int from = 0;
    for (int at = input.indexOf(separator); at >= 0; at = input.indexOf(separator, from)) {
        found.append(input.mid(from, at - from));
        from = at + separator.size();
    }
    found.append(input.mid(from));
    return found;
}

/// The archive of a document: the text of document.json, and pictures, each after a line of two
/// hyphens. In the text $1 is the digest of the first picture, and so on, so that changed text and
/// changed pictures get past the check sums.
QByteArray archive(const QByteArray &input)
{
    QList<QByteArray> pictures = parts(input);
    QByteArray text = pictures.takeFirst();
    ZipWriter zip;
    for (int i = 0; i < pictures.size(); ++i) {
        const QByteArray digest =
            QCryptographicHash::hash(pictures.at(i), QCryptographicHash::Md5).toHex();
        text.replace('$' + QByteArray::number(i + 1), digest);
        zip.add(QStringLiteral("pictures/%1.png").arg(QString::fromLatin1(digest)), pictures.at(i));
    }
    zip.add(QStringLiteral("document.json"), text);
    return zip.finished();
}

QString file(const QByteArray &content)
{
    return Fuzzing::file(reinterpret_cast<const uint8_t *>(content.constData()),
                         size_t(content.size()), QStringLiteral(".flipbook"));
}

/// What a view does with a page.
void look(Page &page)
{
    QImage canvas(8, 8, QImage::Format_ARGB32);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    page.render(&painter, canvas.rect(), page.pageRect());
    page.objectAt(page.pageRect().center());
}

/// A page is looked at while it is edited and while it is presented.
void look(Document &document)
{
    for (Page *page : document.pages())
        look(*page);
    document.enterAlternateMode();
    for (Page *page : document.pages())
        look(*page);
    document.leaveAlternateMode();
}

} // namespace

/// A document file: it is read whole or refused, and what was read can be painted. Input that
/// begins like an archive is one, other input becomes one.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const Plugin plugin;
    const QByteArray input = Fuzzing::bytes(data, size);
    const QString path = file(input.startsWith("PK") ? input : archive(input));
    try {
        Reading reading(Fuzzing::MaxMemory, false);
        const LoadedDocument loaded = loadDocument(plugin, path, reading);
        Fuzzing::require(loaded.document != nullptr, "neither a document nor a failure");
        look(*loaded.document);
    } catch (const Failure &) {
        return 0;
    }
    return 0;
}
