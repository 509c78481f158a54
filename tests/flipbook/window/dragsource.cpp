// dragsource FILE X Y: a small window of another program, at this place of the screen, from which
// the mouse drags FILE. It ends after the drop, with status 0 if the file was taken.
#include <QtCore/QMimeData>
#include <QtCore/QUrl>
#include <QtGui/QDrag>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace
{

constexpr int side = 60;

class DragSource : public QWidget
{
public:
    explicit DragSource(const QString &file)
        : m_file(file)
    {
    }

protected:
    void mouseMoveEvent(QMouseEvent *) override
    {
        auto *data = new QMimeData;
        data->setUrls({QUrl::fromLocalFile(m_file)});
        auto *drag = new QDrag(this);
        drag->setMimeData(data);
        // Qt deletes the drag when the other program has fetched the data.
        connect(drag, &QObject::destroyed, [] { QCoreApplication::exit(0); });
        if (drag->exec(Qt::CopyAction) != Qt::CopyAction)
            QCoreApplication::exit(1);
    }

private:
    QString m_file;
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    DragSource source(arguments.at(1));
    source.setWindowTitle(QStringLiteral("Drag source"));
    source.setGeometry(arguments.at(2).toInt(), arguments.at(3).toInt(), side, side);
    source.show();
    return QApplication::exec();
}
