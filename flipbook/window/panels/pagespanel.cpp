#include "flipbook/window/panels/pagespanel.h"

#include "flipbook/window/lists/draglist.h"
#include "flipbook/window/panels/pagemodel.h"
#include "flipbook/window/session.h"

#include <QtWidgets/QVBoxLayout>

PagesPanel::PagesPanel(Session &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_model(new PageModel(session, this))
    , m_view(new DragList(QStringLiteral("application/x-flipbook-page-rows"), this))
{
    m_view->setObjectName(QStringLiteral("pageList"));
    m_view->setAccessibleName(tr("Pages"));
    m_view->setModel(m_model);
    m_view->setFlow(QListView::TopToBottom);
    m_view->setIconSize(QSize(PageModel::ThumbnailSide, PageModel::ThumbnailSide));
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setSpacing(4);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    setMinimumWidth(PageModel::ThumbnailSide + 40);

    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &current) {
                if (Page *page = m_model->pageAt(current.row()))
                    m_session.showPage(page);
            });
    connect(m_model, &PageModel::modelReset, this, &PagesPanel::followSession);
    connect(&session, &Session::pageShown, this, &PagesPanel::followSession);
    followSession();
}

void PagesPanel::followSession()
{
    const int row = m_model->rowOf(m_session.page());
    if (row >= 0 && row != m_view->currentIndex().row())
        m_view->setCurrentIndex(m_model->index(row));
}
