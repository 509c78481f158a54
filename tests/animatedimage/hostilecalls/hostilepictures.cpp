#include "tests/animatedimage/hostilecalls/hostilepictures.h"

#include "tests/animatedimage/hostilecalls/pngbuilder.h"

#include <QtCore/QList>
#include <QtCore/QPair>

namespace
{

using namespace PngBuilder;
using Visit = std::function<void(const QString &, const QByteArray &)>;
using Named = QPair<QString, QByteArray>;

/// Headers that claim sizes, and what may follow one.
void visitSizes(const Visit &visit)
{
    const QList<QPair<quint32, quint32>> sizes{{0, 1},
                                               {1, 1},
                                               {1000, 1000},
                                               {1448, 1448},
                                               {2000, 2000},
                                               {4096, 4096},
                                               {4096, 4097},
                                               {65535, 65535},
                                               {16777216, 1},
                                               {1, 16777216},
                                               {1, 0x7fffffff},
                                               {0x7fffffff, 1},
                                               {0x7fffffff, 0x7fffffff},
                                               {0xffffffff, 0xffffffff}};
    const QList<QPair<int, int>> kinds{{1, 0}, {8, 0}, {16, 0}, {8, 2}, {16, 2},
                                       {4, 3}, {8, 3}, {8, 4},  {8, 6}, {16, 6}};
    const QByteArray someData = chunk("IDAT", deflated(QByteArray(200, '\0')));
    const QByteArray manyData = chunk("IDAT", deflated(QByteArray(2000000, '\0')).left(1500));
    const QList<Named> contents{
        {QStringLiteral("nothing"), QByteArray()},
        {QStringLiteral("no data"), chunk("IEND", QByteArray())},
        {QStringLiteral("too little data"), someData},
        {QStringLiteral("cut data"), manyData},
        {QStringLiteral("a text beyond the end"), chunk("tEXt", "Comment", 0x7fffffff)},
        {QStringLiteral("a text of 60 MB"), chunk("tEXt", "Comment", 60 << 20)},
        {QStringLiteral("a profile beyond the end"), chunk("iCCP", "a", 0x7ffffffe)},
        {QStringLiteral("data beyond the end"), chunk("IDAT", "a", 0x7fffffff)},
        {QStringLiteral("a palette beyond the end"), chunk("PLTE", "abc", 768000)},
    };
    for (const auto &size : sizes) {
        for (const auto &kind : kinds) {
            for (const bool interlaced : {false, true}) {
                const QByteArray begin = signature() + header(size.first, size.second, kind.first,
                                                              kind.second, interlaced);
                for (const Named &content : contents) {
                    visit(QStringLiteral("%1 x %2 of kind %3/%4: %5")
                              .arg(size.first)
                              .arg(size.second)
                              .arg(kind.first)
                              .arg(kind.second)
                              .arg(content.first),
                          begin + content.second);
                }
            }
        }
    }
}

/// Texts that expand to megabytes, in a file without pixels.
void visitTexts(const Visit &visit)
{
    const QByteArray end = chunk("IEND", QByteArray());
    const QList<Named> ends{
        {QStringLiteral("nothing"), QByteArray()},
        {QStringLiteral("no data"), end},
        {QStringLiteral("too little data"), chunk("IDAT", QByteArray()) + end},
        {QStringLiteral("a cut end"), chunk("IDAT", deflated(QByteArray(5, '\0'))) + end.left(7)},
    };
    for (const int size : {1000, 1000000, 7000000, 20000000}) {
        const QByteArray text = compressedText(size);
        for (const int texts : {1, 3, 20}) {
            for (const Named &after : ends)
                visit(QStringLiteral("%1 texts of %2 characters, then %3")
                          .arg(texts)
                          .arg(size)
                          .arg(after.first),
                      signature() + header(1, 1, 8, 6) + text.repeated(texts) + after.second);
        }
    }
}

} // namespace

void visitHostilePictures(const Visit &visit)
{
    visitSizes(visit);
    visitTexts(visit);
}
