#include "flipbook/window/commands/filmedit.h"

#include "flipbook/editing/frameeditor.h"
#include "flipbook/object/filmstate.h"
#include "flipbook/window/commands/objectcommands.h"
#include "flipbook/window/session.h"

CBaseObject *FilmEdit::exchange(Session &session, const QString &text, CBaseObject &film,
                                OwnedObject successor)
{
    CBaseObject *arrived = successor.get();
    auto &page = static_cast<Page &>(*film.scene());
    session.push(std::make_unique<ExchangeObjectCommand>(text, page, film, std::move(successor)));
    return arrived;
}

CBaseObject *FilmEdit::apply(Session &session, const QString &text, CBaseObject &film,
                             const std::function<void(FrameEditor &editor)> &edit)
{
    AnimatedObject animated(film);
    // A film that plays is edited at rest.
    if (animated.isPlaying())
        animated.showFrame(animated.shownIndex());
    OwnedObject successor = FilmState(film).withFrames(
        session.plugin(), session.plugin().frames(film), animated.shownIndex());
    FrameEditor editor(*successor);
    edit(editor);
    return exchange(session, text, film, std::move(successor));
}

CBaseObject *FilmEdit::setFrames(Session &session, const QString &text, CBaseObject &film,
                                 const Plugin::Frames &frames, int shown)
{
    AnimatedObject animated(film);
    if (animated.isPlaying())
        animated.showFrame(animated.shownIndex());
    return exchange(session, text, film,
                    FilmState(film).withFrames(session.plugin(), frames, shown));
}
