#include "webpage.h"

#include "processlauncher.h"

#include <QLabel>
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
{
    auto *label = new QLabel(tr("This page cannot be shown: a part of Zanmir Launcher is missing.\n"
                                "Installing Zanmir Launcher again repairs it."),
        this);
    label->setObjectName(QStringLiteral("labelPageMissing"));
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
}

void MissingWebPage::setProcessLauncher(ProcessLauncher *launcher)
{
    launcher->writeLog(QStringLiteral("WebPage: cannot load the web pages: %1").arg(m_reason));
}
