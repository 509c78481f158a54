#include "flipbook/window/icons/icons.h"

#include <QtCore/QFile>
#include <QtGui/QIconEngine>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtGui/QPixmap>
#include <QtSvg/QSvgRenderer>
#include <QtWidgets/QApplication>

#include <memory>

// The drawings are in a static library: nothing else would bring them into the program.
static void loadDrawings()
{
    Q_INIT_RESOURCE(icons);
}

namespace
{

/// Paints a drawing in the colour of the palette, at whatever size and palette it is asked for.
class PaletteIconEngine : public QIconEngine
{
public:
    explicit PaletteIconEngine(const QByteArray &svg)
        : m_svg(svg)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role =
            mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        drawing(QApplication::palette().color(group, role)).render(painter, rect);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new PaletteIconEngine(*this); }

private:
    /// The drawing in @p colour, which is read once as long as the colour stays the same.
    QSvgRenderer &drawing(const QColor &colour)
    {
        if (!m_drawing || m_colour != colour) {
            QByteArray svg = m_svg;
            svg.replace("currentColor", colour.name().toLatin1());
            m_drawing = std::make_shared<QSvgRenderer>(svg);
            m_colour = colour;
        }
        return *m_drawing;
    }

    QByteArray m_svg;
    QColor m_colour;
    std::shared_ptr<QSvgRenderer> m_drawing;
};

} // namespace

QIcon Icons::icon(const QString &name)
{
    if (QIcon::hasThemeIcon(name))
        return QIcon::fromTheme(name);
    loadDrawings();
    QFile file(QStringLiteral(":/flipbook/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return QIcon();
    return QIcon(new PaletteIconEngine(file.readAll()));
}
