#ifndef PINICONVIEW_H
#define PINICONVIEW_H

#include "iconview.h"

class PinIconWidget;

// One face of the pin star; a left press on it flips the pin.
class PinIconView : public IconView
{
    Q_OBJECT

public:
    explicit PinIconView(QWidget *parent = nullptr);
    ~PinIconView() override;

    void setOwner(PinIconWidget *owner) { m_owner = owner; }

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    PinIconWidget *m_owner = nullptr;
};

#endif // PINICONVIEW_H
