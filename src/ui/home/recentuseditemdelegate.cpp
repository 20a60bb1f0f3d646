#include "recentuseditemdelegate.h"

#include "recentuseditem.h"

#include <QApplication>
#include <QPainter>

namespace {

// A card, from its top left corner: the picture, then three lines of text
// centred in a column narrower than the grid cell of 180 by 220.
const QPoint kPictureOffset(15, 10);
const int kTextLeft = 10;
const int kTextWidth = 160;
const int kFileNameTop = 165;
const int kFileNameHeight = 20;
const int kFileNamePointSize = 11;
const int kTimestampTop = 187;
const int kVersionTop = 202;
const int kSmallLineHeight = 15;
const int kSmallPointSize = 9;
// Larger than the view's grid on purpose: the grid decides the layout.
const QSize kSizeHint(200, 250);

} // namespace

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
    painter->drawImage(option.rect.topLeft() + kPictureOffset, item.getThumbnail());

    // Long texts are cut at their rectangle, neither elided nor wrapped.
    QFont font = QApplication::font();
    font.setPointSize(kFileNamePointSize);
    painter->setFont(font);
    painter->drawText(
        QRect(x + kTextLeft, y + kFileNameTop, kTextWidth, kFileNameHeight), Qt::AlignCenter, item.fileName());

    font = QApplication::font();
    font.setPointSize(kSmallPointSize);
    painter->setFont(font);
    painter->drawText(
        QRect(x + kTextLeft, y + kTimestampTop, kTextWidth, kSmallLineHeight), Qt::AlignCenter, item.timestamp());
    painter->drawText(
        QRect(x + kTextLeft, y + kVersionTop, kTextWidth, kSmallLineHeight), Qt::AlignCenter, item.versionText());
    painter->restore();
}

QSize RecentUsedItemDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return kSizeHint;
}
