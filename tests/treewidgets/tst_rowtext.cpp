// The column-0 text of rows: a shell's type and name follow its display
// name, other items show the name alone, whatever classes came before and
// however many, since whether a class is a shell is kept per class.

#include <debugmenucontent/treewidgets/RowText.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/ShellItem.h>

#include <QTest>

#include <memory>
#include <utility>

using namespace Brennvik;

namespace {

// Classes of their own, so that a sequence can bring many types.
template<int N>
class NumberedItem : public DisplayItem
{
public:
    using DisplayItem::DisplayItem;
};

template<int N>
class NumberedShell : public ShellItem
{
public:
    using ShellItem::ShellItem;
};

std::shared_ptr<DisplayItemInterface> plainOfClass(int n)
{
    const std::string name = "Item " + std::to_string(n);
    switch (n % 20) {
    case 0:
        return std::make_shared<NumberedItem<0>>(name);
    case 1:
        return std::make_shared<NumberedItem<1>>(name);
    case 2:
        return std::make_shared<NumberedItem<2>>(name);
    case 3:
        return std::make_shared<NumberedItem<3>>(name);
    case 4:
        return std::make_shared<NumberedItem<4>>(name);
    case 5:
        return std::make_shared<NumberedItem<5>>(name);
    case 6:
        return std::make_shared<NumberedItem<6>>(name);
    case 7:
        return std::make_shared<NumberedItem<7>>(name);
    case 8:
        return std::make_shared<NumberedItem<8>>(name);
    case 9:
        return std::make_shared<NumberedItem<9>>(name);
    case 10:
        return std::make_shared<NumberedItem<10>>(name);
    case 11:
        return std::make_shared<NumberedItem<11>>(name);
    case 12:
        return std::make_shared<NumberedItem<12>>(name);
    case 13:
        return std::make_shared<NumberedItem<13>>(name);
    case 14:
        return std::make_shared<NumberedItem<14>>(name);
    case 15:
        return std::make_shared<NumberedItem<15>>(name);
    case 16:
        return std::make_shared<NumberedItem<16>>(name);
    case 17:
        return std::make_shared<NumberedItem<17>>(name);
    case 18:
        return std::make_shared<NumberedItem<18>>(name);
    default:
        return std::make_shared<NumberedItem<19>>(name);
    }
}

std::shared_ptr<DisplayItemInterface> shellOfClass(int n)
{
    const std::string name = "Shell " + std::to_string(n);
    if (n % 2 == 0)
        return std::make_shared<NumberedShell<0>>(name, "Tool", "Punch");
    return std::make_shared<NumberedShell<1>>(name, "Blank", "Sheet");
}

} // namespace

class tst_RowText : public QObject
{
    Q_OBJECT

private slots:
    void sequence_data();
    void sequence();
    void goneItemHasNoText();
};

// Each case is a sequence of items: 'p' a plain item of the next of twenty
// classes, 's' a shell of the next of two shell classes, 'P' a plain item of
// the class of the first plain item. Every item must show its own text.
void tst_RowText::sequence_data()
{
    QTest::addColumn<QString>("sequence");
    QTest::newRow("plain") << "p";
    QTest::newRow("shell") << "s";
    QTest::newRow("shell after plain") << "ps";
    QTest::newRow("plain after shell") << "sp";
    QTest::newRow("the same plain class again") << "pPpP";
    QTest::newRow("shells among many plain classes") << "ppppppppsppppppppppppsppp";
    QTest::newRow("more plain classes than are kept, then the first again") << "ppppppppppppppppppppPsP";
    QTest::newRow("shells only") << "ssss";
}

void tst_RowText::sequence()
{
    QFETCH(QString, sequence);
    int plain = 0;
    int shells = 0;
    for (const QChar kind : sequence) {
        std::shared_ptr<DisplayItemInterface> item;
        QString expected;
        if (kind == QLatin1Char('s')) {
            const int n = shells++;
            item = shellOfClass(n);
            expected = QStringLiteral("Shell %1 [%2]").arg(n).arg(n % 2 == 0 ? "Tool: Punch" : "Blank: Sheet");
        } else {
            const int n = kind == QLatin1Char('P') ? 0 : plain++;
            item = plainOfClass(n);
            expected = QStringLiteral("Item %1").arg(n);
        }
        QCOMPARE(rowText(item), expected);
    }
}

void tst_RowText::goneItemHasNoText()
{
    QCOMPARE(rowText(std::shared_ptr<DisplayItemInterface>()), QString());
}

QTEST_GUILESS_MAIN(tst_RowText)
#include "tst_rowtext.moc"
