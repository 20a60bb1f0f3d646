#ifndef STATUSICONVIEW_H
#define STATUSICONVIEW_H

#include "iconview.h"

// One face of a version row's update mark.
class StatusIconView : public IconView
{
    Q_OBJECT

public:
    explicit StatusIconView(QWidget *parent = nullptr);
    ~StatusIconView() override;
};

#endif // STATUSICONVIEW_H
