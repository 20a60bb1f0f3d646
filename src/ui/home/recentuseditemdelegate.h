#ifndef RECENTUSEDITEMDELEGATE_H
#define RECENTUSEDITEMDELEGATE_H

#include <QStyledItemDelegate>

// Paints a recent project's card: its picture, then its file name, time and
// version, centred below.
class RecentUsedItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit RecentUsedItemDelegate(QObject *parent = nullptr);
    ~RecentUsedItemDelegate() override;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

#endif // RECENTUSEDITEMDELEGATE_H
