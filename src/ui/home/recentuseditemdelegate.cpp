#include "recentuseditemdelegate.h"

#include "recentuseditem.h"

#include <QApplication>
#include <QPainter>

RecentUsedItemDelegate::RecentUsedItemDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{ }

RecentUsedItemDelegate::~RecentUsedItemDelegate() = default;

void RecentUsedItemDelegate::paint(
    QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    // Selection and hover first.
    QStyledItemDelegate::paint(painter, option, index);

    painter->save();
    const RecentUsedItem item = index.data(Qt::DisplayRole).value<RecentUsedItem>();
    const int x = option.rect.x();
    const int y = option.rect.y();
    painter->drawImage(x + 15, y + 10, item.getThumbnail());

    // Long texts are cut at their rectangle, neither elided nor wrapped.
    QFont font = QApplication::font();
    font.setPointSize(11);
    painter->setFont(font);
    painter->drawText(QRect(x + 10, y + 165, 160, 20), Qt::AlignCenter, item.fileName());

    font = QApplication::font();
    font.setPointSize(9);
    painter->setFont(font);
    painter->drawText(QRect(x + 10, y + 187, 160, 15), Qt::AlignCenter, item.timestamp());
    painter->drawText(QRect(x + 10, y + 202, 160, 15), Qt::AlignCenter, item.versionText());
    painter->restore();
}

QSize RecentUsedItemDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    // Larger than the view's grid of 180 by 220 on purpose: the grid decides
    // the layout.
    return QSize(200, 250);
}
