#include "webpage.h"

#include "processlauncher.h"

#include <QLabel>
#include <QLayout>
#include <QVBoxLayout>

WebPage *WebPage::makeInPlaceOf(QWidget *placeholder)
{
    QWidget *parent = placeholder->parentWidget();
    WebPage *page = make(parent);
    page->setObjectName(placeholder->objectName());
    delete parent->layout()->replaceWidget(placeholder, page);
    delete placeholder;
    return page;
}

MissingWebPage::MissingWebPage(const QString &reason, QWidget *parent)
    : WebPage(parent)
    , m_reason(reason)
    , m_label(new QLabel(this))
{
    m_label->setObjectName(QStringLiteral("labelPageMissing"));
    m_label->setText(tr("This page cannot be shown: a part of Zanmir Launcher is missing.\n"
                        "Installing Zanmir Launcher again repairs it."));
    m_label->setAlignment(Qt::AlignCenter);
    m_label->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_label);
}

void MissingWebPage::setProcessLauncher(ProcessLauncher *launcher)
{
    launcher->writeLog(QStringLiteral("WebPage: cannot load the web pages: %1").arg(m_reason));
}
