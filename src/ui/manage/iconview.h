#ifndef ICONVIEW_H
#define ICONVIEW_H

#include <QGraphicsView>
#include <QImage>
#include <QRect>

// A small picture drawn to fit its view, on a see-through background: the
// common part of the pin and the update mark of a version row.
class IconView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit IconView(QWidget *parent = nullptr);
    ~IconView() override;

    // A picture that does not load leaves the view as it was.
    void loadImage(const QString &path);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_image;
    QRect m_rect;
};

#endif // ICONVIEW_H
