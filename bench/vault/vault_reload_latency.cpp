// SPDX-License-Identifier: MIT
// How long a store that follows its file takes to show an outside change: from the moment
// another writer (here a second store, as the command line would) has replaced the file to the
// watching store's published change. Prints each run and the median; asserts nothing.
//   vault_reload_latency [RUNS]   (default 15)
#include "vault/VaultCodec.h"
#include "vault/VaultStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>

using namespace Tessaline;

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const int runs = argc > 1 ? std::max(1, QString::fromLocal8Bit(argv[1]).toInt()) : 15;

    QTemporaryDir dir;
    VaultStore::Configuration configuration;
    configuration.dataFilePath = dir.filePath(QStringLiteral("Tessaline/keybinds.json"));
    VaultStore watching(configuration);
    watching.followOutsideChanges();
    VaultStore writer(configuration);
    const ShortcutItem target = writer.data().global.at(0);

    QList<double> latencies;
    for (int run = 0; run < runs; ++run) {
        // Let the previous run's events settle first.
        QEventLoop settle;
        QTimer::singleShot(300, &settle, &QEventLoop::quit);
        settle.exec();

        QEventLoop loop;
        QElapsedTimer elapsed;
        const QMetaObject::Connection seen =
            QObject::connect(&watching, &VaultStore::dataChanged, &loop, &QEventLoop::quit);
        QTimer::singleShot(10000, &loop, &QEventLoop::quit);
        writer.toggleFavorite(*writer.storedItem(target.id(), TrackedApp::placeholder()),
                              TrackedApp::placeholder());
        elapsed.start();
        loop.exec();
        QObject::disconnect(seen);
        const double ms = static_cast<double>(elapsed.nsecsElapsed()) / 1e6;
        const TrackedApp anywhere = TrackedApp::placeholder();
        const bool followed =
            watching.storedItem(target.id(), anywhere) == writer.storedItem(target.id(), anywhere);
        std::printf("run %2d: %7.1f ms%s\n", run + 1, ms, followed ? "" : " (not followed)");
        latencies.append(ms);
    }
    std::sort(latencies.begin(), latencies.end());
    std::printf("median of %d runs: %.1f ms (min %.1f, max %.1f)\n", runs,
                latencies.at(latencies.size() / 2), latencies.first(), latencies.last());
    return 0;
}
