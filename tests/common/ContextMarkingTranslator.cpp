#include "ContextMarkingTranslator.h"

namespace Brennvik::Test {

bool ContextMarkingTranslator::isEmpty() const
{
    // Installed translators that say they are empty are skipped by Qt.
    return false;
}

QString ContextMarkingTranslator::translate(const char* context, const char* sourceText, const char* disambiguation,
                                            int n) const
{
    Q_UNUSED(disambiguation);
    Q_UNUSED(n);
    return QString::fromLatin1(context) + QLatin1Char(':') + QString::fromUtf8(sourceText);
}

} // namespace Brennvik::Test
