#include <hostcontract/BKPushButton.h>

namespace Brennvik {

BKPushButton::BKPushButton(QWidget* parent)
    : QPushButton(parent)
{
}

BKPushButton::~BKPushButton() = default;

QWidget* BKPushButton::getStatusWidget() const
{
    return const_cast<BKPushButton*>(this);
}

} // namespace Brennvik
