#include "screeninfo.h"

ScreenInfo::ScreenInfo(QObject *parent)
    : QObject(parent)
{ }

ScreenInfo::~ScreenInfo() = default;
