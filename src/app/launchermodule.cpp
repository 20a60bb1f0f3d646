#include "launchermodule.h"

#include <QCoreApplication>
#include <QLibrary>

bool LauncherModule::load(QLibrary &library, const QString &fileName)
{
    const QString folder = QCoreApplication::applicationDirPath();
    for (const QString &path :
        { folder + QLatin1Char('/') + fileName, folder + QStringLiteral("/" ZANMIR_MODULE_FOLDER "/") + fileName }) {
        library.setFileName(path);
        if (library.load())
            return true;
    }
    return false;
}
