// SPDX-License-Identifier: MIT
#include "common/Expected.h"

#include <QtTest>

#include <memory>

using Tessaline::Expected;
using Tessaline::Unexpected;

namespace {

Expected<int> half(int value)
{
    if (value % 2 != 0)
        return Unexpected(QStringLiteral("%1 is odd").arg(value));
    return value / 2;
}

Expected<void> requireEven(int value)
{
    if (value % 2 != 0)
        return Unexpected(QStringLiteral("odd"));
    return {};
}

} // namespace

class TestExpected : public QObject
{
    Q_OBJECT

private slots:
    void aValueReadsBack()
    {
        const Expected<int> result = half(8);
        QVERIFY(result.has_value());
        QVERIFY(static_cast<bool>(result));
        QCOMPARE(result.value(), 4);
        QCOMPARE(*result, 4);
        QCOMPARE(result.value_or(-1), 4);
    }

    void aFailureCarriesItsReason()
    {
        const Expected<int> result = half(7);
        QVERIFY(!result.has_value());
        QVERIFY(!result);
        QCOMPARE(result.error(), QStringLiteral("7 is odd"));
        QCOMPARE(result.value_or(-1), -1);
    }

    void moveOnlyValuesMoveOut()
    {
        Expected<std::unique_ptr<int>> result(std::make_unique<int>(5));
        QCOMPARE(**result, 5);
        result->reset(new int(6));
        const std::unique_ptr<int> taken = std::move(result).value();
        QCOMPARE(*taken, 6);
    }

    void voidResults()
    {
        QVERIFY(requireEven(2).has_value());
        const Expected<void> failed = requireEven(3);
        QVERIFY(!failed);
        QCOMPARE(failed.error(), QStringLiteral("odd"));
    }

    void otherErrorTypes()
    {
        const Expected<QString, int> failed = Unexpected(42);
        QVERIFY(!failed);
        QCOMPARE(failed.error(), 42);
        const Expected<QString, int> done = QStringLiteral("done");
        QCOMPARE(done->size(), 4);
    }
};

QTEST_APPLESS_MAIN(TestExpected)
#include "tst_Expected.moc"
