// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream(stdout) << "tessaline-vault: not built yet\n";
    return 1;
}
