#pragma once

#include <QTranslator>

namespace Brennvik::Test {

/// A translator that "translates" every text to "<context>:<text>", so that a
/// test reads from a widget's text in which translation context it was looked up.
class ContextMarkingTranslator : public QTranslator
{
public:
    using QTranslator::QTranslator;

    bool isEmpty() const override;
    QString translate(const char* context, const char* sourceText, const char* disambiguation = nullptr,
                      int n = -1) const override;
};

} // namespace Brennvik::Test
