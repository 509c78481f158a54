#include "flipbook/window/commands/filmedit.h"

#include "flipbook/editing/frameeditor.h"
#include "flipbook/object/filmstate.h"
#include "flipbook/object/objectprotocol.h"
#include "flipbook/window/commands/objectcommands.h"
#include "flipbook/window/session.h"
#include "host/specialpropertyids.h"

namespace
{

/// A film that plays is edited at rest.
void stop(AnimatedObject &film)
{
    if (film.isPlaying())
        film.showFrame(film.shownIndex());
}

/// Of the same state and frames.
OwnedObject successorOf(Session &session, CBaseObject &film)
{
    AnimatedObject animated(film);
    stop(animated);
    return FilmState(film).withFrames(session.plugin(), session.plugin().frames(film),
                                      animated.shownIndex());
}

} // namespace

CBaseObject *FilmEdit::exchange(Session &session, const QString &text, CBaseObject &film,
                                OwnedObject successor)
{
    CBaseObject *arrived = successor.get();
    auto &page = static_cast<Page &>(*film.scene());
    session.push(std::make_unique<ExchangeObjectsCommand>(text, page, film, std::move(successor)));
    return arrived;
}

CBaseObject *FilmEdit::apply(Session &session, const QString &text, CBaseObject &film,
                             const std::function<void(FrameEditor &editor)> &edit)
{
    OwnedObject successor = successorOf(session, film);
    FrameEditor editor(*successor);
    edit(editor);
    return exchange(session, text, film, std::move(successor));
}

CBaseObject *FilmEdit::setFrames(Session &session, const QString &text, CBaseObject &film,
                                 const Plugin::Frames &frames, int shown)
{
    AnimatedObject animated(film);
    stop(animated);
    return exchange(session, text, film,
                    FilmState(film).withFrames(session.plugin(), frames, shown));
}

bool FilmEdit::isBackground(CBaseObject &film)
{
    return ObjectProtocol::ask<qint32>(film, SpecialPropertyId::AnimatedType) == 1;
}

void FilmEdit::setBackground(Session &session, const QString &text,
                             const QList<CBaseObject *> &films, bool background)
{
    QList<CBaseObject *> changed;
    std::vector<OwnedObject> successors;
    for (CBaseObject *film : films) {
        if (isBackground(*film) == background)
            continue;
        OwnedObject successor = successorOf(session, *film);
        const bool isUndoable = false;
        ObjectProtocol::tell(*successor, SpecialPropertyId::AnimatedType,
                             qint32(background ? 1 : 0), isUndoable);
        if (background)
            successor->setSize(successor->getSize(), false, false);
        changed.append(film);
        successors.push_back(std::move(successor));
    }
    if (changed.isEmpty())
        return;
    auto &page = static_cast<Page &>(*changed.first()->scene());
    session.push(std::make_unique<ExchangeObjectsCommand>(
        text, page, changed, std::move(successors),
        background ? Page::Layer::Background : Page::Layer::Normal));
}
