#ifndef PINICONWIDGET_H
#define PINICONWIDGET_H

#include <QWidget>

namespace Ui {
class PinIconWidget;
}

// The star of a version row: a solid star when pinned, an outline when not.
class PinIconWidget : public QWidget
{
    Q_OBJECT

public:
    explicit PinIconWidget(QWidget *parent = nullptr);
    ~PinIconWidget() override;

    // Shows the state without telling anybody.
    void setPinned(bool pinned);
    // Flips the state and tells the row.
    void togglePinned();

signals:
    void signalIconPinned(bool pinned);

private:
    Ui::PinIconWidget *ui;
};

#endif // PINICONWIDGET_H
