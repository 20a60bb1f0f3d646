#ifndef DEPLOYMENTCONFIG_H
#define DEPLOYMENTCONFIG_H

#include <QString>
#include <QStringList>

class QUrl;

// Deployment values fixed at build time. Each can be overridden at run time by
// an environment variable of the same name, so that a deployment, the demo and
// the tests can point the launcher at their own servers.
//
// The two server addresses are https by default. Plain http is used only where
// it is named: by the build or the environment, or for this machine.
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

    // True for plain http to the host and port of a server address above that
    // the build or the environment gave as plain http: the deployment asked
    // for it there.
    static bool isNamedPlainHttp(const QUrl &url);
    // What the log says at start about the server addresses: each one in use
    // over plain http, and each one of the environment that was ignored.
    static QStringList addressNotes();

private:
    static QString value(const char *name, const char *builtIn);
    static QString serverAddress(const char *name, const char *builtIn);
};

#endif // DEPLOYMENTCONFIG_H
