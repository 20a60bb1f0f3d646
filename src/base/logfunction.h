#ifndef LOGFUNCTION_H
#define LOGFUNCTION_H

#include <QString>

#include <functional>

// How a lower layer writes to the process log without knowing the object that
// owns it: the launcher hands one of these down.
using LogFunction = std::function<void(const QString &message)>;

#endif // LOGFUNCTION_H
