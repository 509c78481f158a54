#include "flipbook/window/page/onionskin.h"

#include "flipbook/object/animatedobject.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/page/pageview.h"
#include "flipbook/window/session.h"

#include <QtGui/QPainter>
#include <QtWidgets/QAction>

namespace
{

constexpr double Opacity = 0.3;

/// Paints @p picture where @p film shows its frame, at the scale of that frame.
void paintNeighbour(QPainter &painter, CBaseObject &film, const QImage &picture)
{
    const QSize shown = film.getImageSize();
    if (picture.isNull() || shown.isEmpty())
        return;
    const QSizeF size(film.getSize().width() * picture.width() / shown.width(),
                      film.getSize().height() * picture.height() / shown.height());
    painter.save();
    painter.setTransform(film.sceneTransform(), true);
    painter.translate(film.getClientRect().center());
    painter.scale(film.isMirrored() ? -1.0 : 1.0, film.isFlipped() ? -1.0 : 1.0);
    painter.drawImage(QRectF(QPointF(-size.width() / 2, -size.height() / 2), size), picture);
    painter.restore();
}

} // namespace

OnionSkin::OnionSkin(Session &session, PageView &view, ActionSet &actions)
    : QObject(&view)
    , m_session(session)
{
    QAction *action = actions.add({QStringLiteral("onion-skin"),
                                   tr("&Onion skin"),
                                   QString(),
                                   {QKeySequence(Qt::CTRL | Qt::Key_K)},
                                   tr("Show the previous and the next frame faintly")});
    action->setCheckable(true);
    connect(action, &QAction::toggled, this, [this, &view](bool on) {
        m_isOn = on;
        view.viewport()->update();
    });
    connect(&view, &PageView::paintsOverPage, this, &OnionSkin::paint, Qt::DirectConnection);
}

void OnionSkin::paint(QPainter &painter) const
{
    CBaseObject *film = m_session.film();
    if (!m_isOn || !film || AnimatedObject(*film).isPlaying())
        return;
    const Plugin::Frames frames = m_session.plugin().frames(*film);
    const int shown = AnimatedObject(*film).shownIndex();
    painter.save();
    painter.setOpacity(Opacity);
    for (const int neighbour : {shown - 1, shown + 1}) {
        if (neighbour >= 0 && neighbour < frames.size())
            paintNeighbour(painter, *film, frames.at(neighbour).second);
    }
    painter.restore();
}
