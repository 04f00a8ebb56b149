// SPDX-License-Identifier: MIT
// Takes the vault's write lock for the file named on the command line, says "locked" and keeps
// it until it is killed: a writer that dies in the middle of a write, for the lock tests.
#include "vault/VaultFileLock.h"

#include <QCoreApplication>

#include <cstdio>
#include <unistd.h>

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: vault_lock_holder DATA_FILE\n", stderr);
        return 2;
    }
    Tessaline::VaultFileLock lock(QString::fromLocal8Bit(argv[1]));
    const Tessaline::Expected<void> locked = lock.acquire();
    if (!locked) {
        std::fprintf(stderr, "%s\n", qPrintable(locked.error()));
        return 1;
    }
    std::fputs("locked\n", stdout);
    std::fflush(stdout);
    for (;;)
        pause();
}
