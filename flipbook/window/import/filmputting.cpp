#include "flipbook/window/import/filmputting.h"

#include "flipbook/object/animatedobject.h"
#include "flipbook/window/commands/filmedit.h"
#include "flipbook/window/commands/objectcommands.h"
#include "flipbook/window/import/filmplaces.h"
#include "flipbook/window/import/importcontroller.h"
#include "flipbook/window/messagebar.h"
#include "flipbook/window/play/presentcontroller.h"
#include "flipbook/window/session.h"
#include "framework/objecthandles.h"

#include <QtCore/QFileInfo>
#include <QtCore/QLocale>

#include <memory>

namespace
{

QString fileName(const QString &path)
{
    return QFileInfo(path).fileName();
}

QString seconds(qint64 ms)
{
    return QLocale().toString(double(ms) / 1000.0, 'g', 4);
}

/// The rhythm is kept; the message offers the other way.
void offerEven(Session &session, MessageBar &messages, ReadFilm &film, CBaseObject &rhythmic)
{
    const auto even = std::make_shared<OwnedObject>(std::move(film.even));
    const AnimatedObject evenFilm(**even);
    const qint64 evenMs = qint64(evenFilm.frameCount()) * evenFilm.intervalMs();
    const int count = AnimatedObject(rhythmic).frameCount();
    const QPointer<CBaseObject> present(&rhythmic);
    messages.tell(MessageBar::Kind::Information,
                  ImportController::tr("The frames of %1 have different durations, %2 s in total. "
                                       "Its timing is preserved with %3 frames.")
                      .arg(fileName(film.path), seconds(film.lengthMs))
                      .arg(count),
                  {{ImportController::tr("Same duration for all: %1 s").arg(seconds(evenMs)),
                    [&session, even, present] {
                        if (!*even || !present || !present->scene())
                            return;
                        ObjectHandles::setGeometry(**even, ObjectHandles::geometryOf(*present));
                        FilmEdit::exchange(session, ImportController::tr("Use Same Duration"),
                                           *present, std::move(*even));
                    }}});
}

} // namespace

void putFilms(Session &session, MessageBar &messages, std::vector<ReadFilm> films,
              std::optional<QPointF> place)
{
    if (films.empty())
        return;
    Page &page = *session.page();
    std::vector<OwnedObject> objects;
    QList<CBaseObject *> arrived;
    for (ReadFilm &film : films) {
        arrived.append(film.object.get());
        objects.push_back(std::move(film.object));
    }
    placeFilms(arrived, page.pageRect(), place);
    const QString text = films.size() == 1
                             ? ImportController::tr("Add %1").arg(fileName(films.front().path))
                             : ImportController::tr("Add %1 Objects").arg(films.size());
    session.push(std::make_unique<AddObjectsCommand>(text, page, std::move(objects)));
    for (CBaseObject *object : qAsConst(arrived)) {
        if (playsByItself() && AnimatedObject(*object).frameCount() > 1)
            AnimatedObject(*object).setPlaying(true);
    }
    for (std::size_t i = 0; i < films.size(); ++i) {
        if (!films[i].warnings.isEmpty())
            messages.tell(
                MessageBar::Kind::Warning,
                QStringLiteral("%1: %2").arg(fileName(films[i].path),
                                             films[i].warnings.join(QStringLiteral("; "))));
        if (films[i].even)
            offerEven(session, messages, films[i], *arrived.at(int(i)));
    }
}
