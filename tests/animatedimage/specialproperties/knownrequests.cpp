#include "tests/animatedimage/specialproperties/knownrequests.h"

#include "tests/support/pictures.h"
#include "tests/support/request.h"

QList<KnownRequest> knownRequests(const QString &file, CAnimatedImage *other)
{
    using R = KnownRequest;
    const qint32 first = 0;
    const qint32 last = 2;
    const auto handle = reinterpret_cast<qint64>(static_cast<CGDRootObject *>(other));
    const auto packed = [](const auto &...values) { return Request::packed(values...); };
    return {
        {R::Get, 5005, R::Reads, packed(first), true},
        {R::Get, 5006, R::Reads, {}, true},
        {R::Get, 5007, R::Reads, packed(first), true},
        {R::Get, 5008, R::Reads, {}, true},
        {R::Get, 5010, R::ChangesAndAnswers, packed(first), true},
        {R::Get, 5011, R::ChangesAndAnswers, packed(first, last), true},
        {R::Get, 5012, R::Reads, {}, true},
        {R::Get, 5013, R::Reads, {}, true},
        {R::Get, 5014, R::ChangesAndAnswers, packed(first, file), true},
        {R::Get, 5017, R::Reads, {}, true},
        {R::Get, 5018, R::Reads, {}, true},
        {R::Get, 5019, R::Reads, {}, true},
        {R::Get, 5020, R::Changes, packed(file), true},
        {R::Get, 5021, R::Reads, {}, true},
        {R::Set, 5001, R::Changes, {}, true},
        {R::Set, 5002, R::Changes, {}, true},
        {R::Set, 5003, R::Changes, packed(last), true},
        {R::Set, 5004, R::Changes, packed(QStringLiteral("f_3")), true},
        {R::Set, 5005, R::Changes, packed(first, QStringLiteral("new")), true},
        {R::Set, 5007, R::ChangesAndAnswers, packed(true, first, Pictures::solid(9, 7, Qt::cyan)),
         true},
        {R::Set, 5008, R::Changes, packed(qint32(5), false), true},
        {R::Set, 5009, R::Changes, packed(last), false},
        {R::Set, 5013, R::Changes, packed(true), false},
        {R::Set, 5015, R::ChangesAndAnswers, packed(first, last), false},
        {R::Set, 5016, R::Changes, packed(handle), false},
    };
}
