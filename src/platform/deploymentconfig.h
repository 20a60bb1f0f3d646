#ifndef DEPLOYMENTCONFIG_H
#define DEPLOYMENTCONFIG_H

#include <QString>
#include <QStringList>

// Deployment values fixed at build time. Each can be overridden at run time by
// an environment variable of the same name, so that a deployment, the demo and
// the tests can point the launcher at their own servers.
class DeploymentConfig
{
public:
    // Root of the update server, without a trailing slash ("ZANMIR_SERVER_BASE").
    static QString serverBase();
    // Host whose name lookup tells whether the network is there ("ZANMIR_PUBLIC_HOST").
    static QString publicHost();
    // Root of the online store, without a trailing slash ("ZANMIR_STORE_URL").
    static QString storeUrl();
    // The service hosts of the proxy bypass test, in their fixed order ("ZANMIR_SERVICE_HOSTS").
    static QStringList serviceHosts();
    // Milliseconds that one HTTP fetch may take in all ("ZANMIR_HTTP_TIMEOUT_MS");
    // a value that is not a positive number gives way to the build default.
    static int httpTimeoutMs();

private:
    static QString value(const char *name, const char *builtIn);
};

#endif // DEPLOYMENTCONFIG_H
